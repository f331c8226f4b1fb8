"""What a screenshot shows: where two of them differ, which words can be read, and how well a shape stands out."""

import difflib
import re
import subprocess
from collections import Counter

from PIL import Image, ImageChops, ImageOps

# Colours closer than this, per channel, count as equal: video encoders and blending leave such differences.
EQUAL = 12
# The same for bars whose colour has a gradient, or what is behind them shining through.
EQUAL_IN_BAR = 40


def cut(area):
    """PIL's box of an area: left, top, width, height."""
    left, top, width, height = area
    return left, top, left + width, top + height


def changes(before, after, area, equal=EQUAL):
    """A mask of the pixels within an area that differ."""
    difference = ImageChops.difference(before.crop(cut(area)), after.crop(cut(area)))
    largest = None
    for channel in difference.split():
        largest = channel if largest is None else ImageChops.lighter(largest, channel)
    return largest.point(lambda value: 255 if value > equal else 0)


def changed_share(before, after, area):
    mask = changes(before, after, area)
    return mask.histogram()[255] / (mask.width * mask.height)


def changed_part(before, after, area):
    """The smallest part of an area that contains all changes; None without any."""
    box = changes(before, after, area).getbbox()
    return (area[0] + box[0], area[1] + box[1], box[2] - box[0], box[3] - box[1]) if box else None


def changed_spans(before, after, area, gap=5):
    """The spans of columns, left to right, in which a bar has changed: (left, width)."""
    mask = changes(before, after, area, EQUAL_IN_BAR)
    columns = [column for column in range(mask.width) if mask.crop((column, 0, column + 1, mask.height)).getbbox()]
    spans = []
    for column in columns:
        if spans and column - spans[-1][1] <= gap:
            spans[-1][1] = column
        else:
            spans.append([column, column])
    return [(area[0] + first, last - first + 1) for first, last in spans]


def shape_at(picture, area, column, gap=3):
    """The area of what is drawn around a column of a bar, on the bar's colour there."""
    left, top, _, height = area
    near = min(max(left, column - 18), picture.width - 36), top, 36, height
    crop = picture.crop(cut(near))
    background = Counter(crop.getdata()).most_common(1)[0][0]
    plain = Image.new("RGB", picture.size, background)
    spans = changed_spans(plain, picture, near, gap)
    first, width = min(spans, key=lambda span: max(span[0] - column, column - span[0] - span[1], 0), default=(column - 12, 24))
    box = changes(plain, picture, (first, top, width, height), EQUAL_IN_BAR).getbbox() or (0, 0, width, height)
    return first, top + box[1], width, box[3] - box[1]


def tone(picture, area):
    """How light an area is in the mean, 0 to 255."""
    grey = picture.crop(cut(area)).convert("L")
    return sum(value * count for value, count in enumerate(grey.histogram())) / (grey.width * grey.height)


def luminance(color):
    linear = [value / 255 / 12.92 if value <= 10 else ((value / 255 + 0.055) / 1.055) ** 2.4 for value in color]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(picture, area, share, margin=2):
    """The best contrast ratio between the ground, the commonest colour of the area and a margin around it, and any tone
    that at least this share of the area itself has: what is beside it may be of other colours."""
    left, top, width, height = area
    around = left - margin, top - margin, width + 2 * margin, height + 2 * margin
    crop = picture.crop(cut(around)).quantize(16, dither=Image.Dither.NONE).convert("RGB")
    background = luminance(Counter(crop.getdata()).most_common(1)[0][0])
    counts = Counter(crop.crop((margin, margin, margin + width, margin + height)).getdata())
    ratios = [1.0]
    for color, count in counts.items():
        if count >= share * width * height:
            light, dark = sorted((luminance(color), background), reverse=True)
            ratios.append((light + 0.05) / (dark + 0.05))
    return max(ratios)


def read(picture, area=None):
    """The words that optical character recognition finds, whatever the polarity."""
    crop = picture.crop(cut(area)) if area else picture
    grey = ImageOps.autocontrast(crop.convert("L").resize((crop.width * 3, crop.height * 3), Image.Resampling.LANCZOS))
    words = []
    for image in (grey, ImageOps.invert(grey)):
        file = subprocess.run(["tesseract", "stdin", "stdout", "--psm", "11"], input=png(image), stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, check=False, env={"OMP_THREAD_LIMIT": "1", "PATH": "/usr/bin:/bin"})
        words.extend(file.stdout.decode(errors="replace").split())
    return words


def png(image):
    import io
    stream = io.BytesIO()
    image.save(stream, "PNG")
    return stream.getvalue()


def letters(text):
    return re.sub(r"[^a-z0-9]", "", text.lower())


def missing_words(expected, found):
    """The expected words that are not among those read, but for a letter that was misread."""
    plain = [letters(word) for word in found]
    joined = "".join(plain)

    def is_there(word):
        return word in joined or any(difflib.SequenceMatcher(None, word, other).ratio() >= 0.8 for other in plain)

    return [word for word in expected.split() if letters(word) and not is_there(letters(word))]
