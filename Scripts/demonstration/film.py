"""A moving picture of what the screen shows, as an animated PNG."""

import subprocess
import time

from PIL import Image

from scratch import Failure

# How long a frame is shown at least and at most, in milliseconds: checks make pauses that nobody wants to watch, and
# viewers slow down what is shorter.
SHORTEST, LONGEST = 30, 1800
LAST = 2500

# A file that a page loads at once, in bytes.
LARGEST = 1_000_000


class Film:
    """Records an area of the screen from its construction until it is saved."""

    _still = 0

    def __init__(self, scratch, observer, area):
        self._folder = scratch.folder / "film"
        self._folder.mkdir()
        self._scratch = scratch
        self._began = time.monotonic()
        self._recorder = scratch.start("film", [observer, "record", self._folder, area], stdin=subprocess.PIPE)

    def mark_still(self):
        """What the screen shows now is the picture for viewers that show no animation."""
        self._still = (time.monotonic() - self._began) * 1000

    def save(self, file):
        """Ends the recording and writes it. Returns the number of frames and the size of the file in bytes."""
        self._recorder.stdin.close()
        times = {}
        if self._recorder.wait(timeout=60) == 0:
            times = {int(frame.stem): frame for frame in self._folder.glob("*.png")}
        if len(times) < 3:
            raise Failure("the screen could not be recorded", "see its message above", self._scratch.printed("film"))
        order = sorted(times)
        frames = [Image.open(times[time]).convert("RGB") for time in order]
        lengths = [later - earlier for earlier, later in zip(order, order[1:])]
        still = frames[max(0, sum(frame <= self._still for frame in order) - 1)]
        shown = [min(max(length, SHORTEST), LONGEST) for length in lengths] + [LAST]
        still.save(file, save_all=True, append_images=frames, default_image=True, duration=shown, loop=0, optimize=True)
        size = file.stat().st_size
        if size > LARGEST:
            raise Failure(f"the moving picture has {size} bytes", f"record a smaller area: {LARGEST} are the limit")
        return len(frames), size
