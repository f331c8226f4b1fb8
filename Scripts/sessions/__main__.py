"""Starts whole desktop sessions, headless, one after the other, and tries the application in each as a user would.

    python3 -B Scripts/sessions [--build FOLDER | --installed FOLDER] [--quick | --update-table] [SESSION ...]

Without names, all sessions; of Debian 12, whose packages it installs. The application is that of build/release, of
another build folder, or installed under a folder. Each session runs in namespaces and in a scratch home of its own:
its processes all end with it, and nothing of the user's desktop is seen or changed. What was seen is written to
build/sessions: results.json, and screenshots in a folder per session.

  --quick         only icon, panel, banner, jump and end, in one login; exits with status 77 where packages cannot be
                  installed or namespaces cannot be made
  --update-table  also records the results in docs/sessions.json, and renews docs/sessions.md and the table in README.md
                  from them

Exits with status 0 only if nothing was "not seen".
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path[:0] = [str(HERE), str(ROOT / "Scripts/demonstration")]

import table  # noqa: E402
from names import NAMES, NOT_SEEN  # noqa: E402

OUTPUT = ROOT / "build/sessions"
RESULTS = OUTPUT / "results.json"
SKIPPED = 77

# Seconds for one login.
LIMIT = 900

# $1 becomes /tmp, so that sockets and locks of displays are the session's own. The shell, as the first process,
# reaps what others leave; "$@" runs as an ordinary user.
INSIDE = """
mount --bind "$1" /tmp || exit 1
mkdir -pm 1777 /tmp/.X11-unix /tmp/.ICE-unix
ip link set lo up 2>/dev/null
shift
"$@" &
wait $!
"""
NOBODY = 65534


def prefix_of_namespaces():
    """The command that runs the rest of its words in namespaces of their own, as an ordinary user. Root becomes
    nobody, since compositors refuse root."""
    user, group = os.getuid(), os.getgid()
    isolated = ["--mount", "--pid", "--ipc", "--net", "--fork", "--kill-child", "--mount-proc"]
    inner = ["bash", "-c", INSIDE, "session"]
    if user == 0:
        return (["unshare", *isolated, *inner],
                ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", "--no-new-privs"])
    return (["unshare", "--user", "--map-root-user", *isolated, *inner],
            ["unshare", "--user", f"--map-user={user}", f"--map-group={group}"])


def copy_inside(build, folder):
    """Copies what a session needs into the folder that becomes its /tmp."""
    if not (build / "cmake_install.cmake").exists():
        shutil.copytree(build, folder / "corvane")
    else:
        install(build, folder / "corvane")
    for part in ("Scripts/sessions", "Scripts/demonstration", "Tests/Data/agent-payloads"):
        shutil.copytree(ROOT / part, folder / "tree" / part, ignore=shutil.ignore_patterns("__pycache__"))
    (folder / "results").mkdir()


def install(build, prefix):
    done = subprocess.run(["cmake", "--install", str(build), "--prefix", str(prefix)], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"{build} could not be installed:\n{done.stdout}")


def own(folder):
    # Not the folder itself: compositors want the owner of /tmp to own the sockets' folder in it.
    for path in folder.rglob("*"):
        os.chown(path, NOBODY, NOBODY, follow_symlinks=False)


def hindrance():
    """Why no session can run here; None if it can."""
    with tempfile.TemporaryDirectory(prefix="corvane-session.") as folder:
        outside, inside = prefix_of_namespaces()
        tried = subprocess.run([*outside, folder, *inside, "true"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True, check=False)
    return f"namespaces cannot be made here: {tried.stdout.strip()}" if tried.returncode != 0 else None


def try_session(name, build, quick):
    """Runs both logins of a session; returns its checks."""
    folder = Path(tempfile.mkdtemp(prefix="corvane-session."))
    folder.chmod(0o755)
    try:
        copy_inside(build, folder)
        if os.getuid() == 0:
            own(folder)
        folder.chmod(0o1777)
        told = run_login(name, "quick" if quick else "first", folder)
        if not quick and told.get("icon") and "autostart" not in told["checks"]:
            told = run_login(name, "again", folder)
        pictures = OUTPUT / name
        shutil.rmtree(pictures, ignore_errors=True)
        pictures.mkdir(parents=True)
        for picture in sorted((folder / "results").glob("*.png")):
            shutil.copyfile(picture, pictures / picture.name)
        for log in sorted((folder / "user").glob("*.log")):
            shutil.copyfile(log, pictures / log.name)
        return told["checks"]
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def run_login(name, login, folder):
    outside, inside = prefix_of_namespaces()
    command = [*outside, str(folder), *inside, "/usr/bin/python3", "-B", "/tmp/tree/Scripts/sessions/worker.py", name, login,
               "/tmp/results"]
    environment = {"PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin", "CORVANE_PREFIX": "/tmp/corvane"}
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, env=environment, cwd="/", start_new_session=True) as process:
        try:
            process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            print(f"    the {login} login was ended after {LIMIT} s", flush=True)
        finally:
            # It takes everything inside with it.
            process.kill()
    file = folder / "results/results.json"
    told = json.loads(file.read_text()) if file.exists() else {"checks": {}}
    if process.returncode != 0:
        told["checks"][f"{login}-login"] = {"state": NOT_SEEN, "detail": f"ended with status {process.returncode}"}
    return told


def main():
    from definitions import COMMON, SESSIONS

    # Else neither the processes in the namespaces would end nor their folder be removed.
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: sys.exit(128 + received))
    words = sys.argv[1:]
    build = ROOT / "build/release"
    for option in ("--build", "--installed"):
        if option in words:
            at = words.index(option)
            build = Path(words[at + 1]).resolve()
            del words[at:at + 2]
    update = "--update-table" in words
    quick = "--quick" in words
    names = [word for word in words if word not in ("--update-table", "--quick")] or list(SESSIONS)
    if any(name not in SESSIONS for name in names):
        sys.exit(f"{__doc__}\nSessions: {' '.join(SESSIONS)}")
    why = hindrance() if shutil.which("apt-get") else "the sessions are made of Debian's packages; there is no apt-get here"
    if why:
        print(why, file=sys.stderr)
        return SKIPPED if quick else 1
    OUTPUT.mkdir(parents=True, exist_ok=True)
    results, bad = {}, 0
    for name in names:
        session = SESSIONS[name]
        start = time.monotonic()
        print(f"== {session.title} ({name})", flush=True)
        if subprocess.run([ROOT / "Scripts/dependencies", "demo", *COMMON, *session.packages], check=False).returncode != 0:
            return SKIPPED if quick else 1
        checks = try_session(name, build, quick)
        missing = sum(1 for check in checks.values() if check["state"] == NOT_SEEN)
        bad += missing
        print(f"   {len(checks)} checks, {missing} not seen, {time.monotonic() - start:.0f} s", flush=True)
        if quick:
            continue
        results = json.loads(RESULTS.read_text()) if RESULTS.exists() else {}
        results[name] = {"title": session.title, "seconds": round(time.monotonic() - start), "checks": checks}
        RESULTS.write_text(json.dumps(results, indent=1) + "\n")
    if update:
        table.write(ROOT, {name: results[name] for name in SESSIONS if name in results}, NAMES)
    print(f"{bad} checks were not seen. Screenshots and results.json: {OUTPUT.relative_to(ROOT)}")
    return 0 if bad == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
