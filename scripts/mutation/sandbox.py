"""Runs one test of a changed program where it can do no harm: with process numbers, a
network and mounts of its own, on file systems that cannot be written to but for a
folder which is its /tmp and its home, and with limits. What lies in /tmp is out of its
sight: the project cannot be built there."""
import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

MEMORY = 8 << 20  # KiB of addresses
FILES = 1 << 24  # blocks of 512 bytes: tests write files beyond 4 GiB, of nothing mostly
# The shell that is process 1 of the test's world. What the test leaves behind ends with it.
WORLD = f"""
mount --bind "$1" /tmp && mount -o remount,bind,ro / || exit 125
mount -o remount,bind,ro /sys 2>/dev/null
ip link set lo up 2>/dev/null
ulimit -v {MEMORY} && ulimit -f {FILES} && ulimit -c 0 || exit 125
cd "$2" || exit 125
shift 2
"$@"
"""
REFUSED = 125


class Outcome:
    def __init__(self, code, seconds):
        self.code = code  # None: it took too long
        self.seconds = seconds

    @property
    def good(self):
        return self.code == 0


def run(command, folder, limit, mutant=0, reached=None):
    """Runs a test's command in a folder, with a change on; with none, fills the file of
    what is reached, which begins as a row of zeros."""
    scratch = Path(tempfile.mkdtemp(prefix="mutation-"))
    try:
        scratch.chmod(0o1777)
        (scratch / "home").mkdir()
        settings = ["HOME=/tmp/home", "TMPDIR=/tmp", "XDG_CONFIG_HOME=/tmp/home/.config",
                    "XDG_DATA_HOME=/tmp/home/.local/share", "XDG_CACHE_HOME=/tmp/home/.cache"]
        if mutant:
            settings.append(f"MUTANT={mutant}")
        if reached:
            (scratch / "reached").write_bytes(bytes(reached))
            (scratch / "reached").chmod(0o666)
            settings.append("MUTANTS_REACHED=/tmp/reached")
        began = time.monotonic()
        told = (scratch / "output").open("wb")
        process = subprocess.Popen(
            ["nice", "-n", "10", "unshare", *([] if os.geteuid() == 0 else ["--user", "--map-root-user"]),
             "--pid", "--mount", "--net", "--ipc", "--fork", "--kill-child", "--mount-proc",
             "env", "-u", "DISPLAY", *settings, "sh", "-c", WORLD, "world", str(scratch), str(folder), *command],
            stdin=subprocess.DEVNULL, stdout=told, stderr=subprocess.STDOUT, start_new_session=True,
        )
        told.close()
        try:
            code = process.wait(limit)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            code = None
        if code == REFUSED:
            why = (scratch / "output").read_text(errors="replace")
            raise SystemExit(f"mutation: cannot make a world of its own for a test:\n{why}")
        outcome = Outcome(code, time.monotonic() - began)
        found = (scratch / "reached").read_bytes() if reached else b""
        return outcome, {n for n, byte in enumerate(found) if byte}
    finally:
        shutil.rmtree(scratch, ignore_errors=True)
