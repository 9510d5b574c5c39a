#!/usr/bin/env python3
"""Hands a plain and a hostile mail through `mailer` to one real mail client under Xvfb,
has the client save each compose window as a draft and checks the drafts.

    run_client.py CLIENT MAILER [--timeout SECONDS]

Everything runs in a throw-away HOME with its own X display and D-Bus session. The test
makes itself the subreaper of all it starts, so even the daemons a client leaves behind stay
its descendants; at the end each one is stopped by its pid. Prints a PASS or FAIL line per
mail; the exit status is 0 only when every mail passed."""

import argparse
import ctypes
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.dont_write_bytecode = True  # nothing generated beside the sources
import drafts  # noqa: E402
from clients import CLIENTS  # noqa: E402
from mails import MAILS  # noqa: E402

PR_SET_CHILD_SUBREAPER = 36
MAILER_LIMIT = 60        # seconds the tool may take to hand one mail off
WINDOW_LIMIT = 60        # seconds a client may take to show its compose window
SETTLE = 3               # seconds a compose window gets to fill in its fields and files
DRAFT_LIMIT = 20         # seconds a client may take to save a draft


class Timeout(Exception):
    pass


class Failure(Exception):
    pass


def _raise_timeout(signum, frame):
    raise Timeout(f"hard time limit reached (signal {signum})")


def descendants():
    """Every live process below this one, parents before children."""
    children = {}
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat") as stat:
                fields = stat.read().rsplit(")", 1)[1].split()
        except OSError:
            continue
        if fields[0] != "Z":
            children.setdefault(int(fields[1]), []).append(int(entry))
    found, pending = [], [os.getpid()]
    while pending:
        for child in children.get(pending.pop(), []):
            found.append(child)
            pending.append(child)
    return found


def reap():
    while True:
        try:
            pid, _ = os.waitpid(-1, os.WNOHANG)
        except ChildProcessError:
            return
        if pid == 0:
            return


def stop_everything():
    """Stops every descendant by its pid: politely first, then for good."""
    for sig, grace in ((signal.SIGTERM, 3.0), (signal.SIGKILL, 2.0)):
        deadline = time.monotonic() + grace
        while True:
            reap()
            remaining = descendants()
            if not remaining or time.monotonic() > deadline:
                break
            for pid in remaining:
                try:
                    os.kill(pid, sig)
                except ProcessLookupError:
                    pass
            time.sleep(0.2)
    reap()
    return descendants()


class Session:
    """A throw-away HOME, an X display and a D-Bus session bus."""

    def __init__(self, root):
        self.root = root
        self.home = root / "home"
        runtime = root / "runtime"
        for folder in (self.home, runtime, root / "tmp", root / "xdg-config-dirs", root / "files"):
            folder.mkdir(mode=0o700)
        self.log = open(root / "session.log", "wb")
        self.env = {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "USER": os.environ.get("USER", "tester"),
            "LOGNAME": os.environ.get("LOGNAME", "tester"),
            "TMPDIR": str(root / "tmp"),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_DIRS": str(root / "xdg-config-dirs"),
            "XDG_DATA_DIRS": os.environ.get("XDG_DATA_DIRS") or "/usr/local/share:/usr/share",
            # No accessibility bus, crash reporter or profile chooser to wait for.
            "NO_AT_BRIDGE": "1",
            "GTK_A11Y": "none",
            "MOZ_CRASHREPORTER_DISABLE": "1",
            "MOZ_LEGACY_PROFILES": "1",
        }

    def start(self, argv, **options):
        return subprocess.Popen(argv, env=self.env, stdin=subprocess.DEVNULL, stdout=self.log,
                                stderr=self.log, start_new_session=True, **options)

    def _first_line(self, fd, what):
        text = b""
        deadline = time.monotonic() + 20
        while not text.endswith(b"\n"):
            if not select.select([fd], [], [], max(0, deadline - time.monotonic()))[0]:
                raise Failure(f"{what} did not start")
            chunk = os.read(fd, 256)
            if not chunk:
                raise Failure(f"{what} did not start")
            text += chunk
        os.close(fd)
        return text.decode().strip()

    def start_display(self):
        read_end, write_end = os.pipe()
        self.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x1024x24",
                    "-nolisten", "tcp"], pass_fds=(write_end,))
        os.close(write_end)
        self.env["DISPLAY"] = ":" + self._first_line(read_end, "Xvfb")

    def start_bus(self):
        read_end, write_end = os.pipe()
        self.start(["dbus-daemon", "--session", "--nofork", f"--print-address={write_end}",
                    f"--address=unix:dir={self.env['XDG_RUNTIME_DIR']}"], pass_fds=(write_end,))
        os.close(write_end)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self._first_line(read_end, "dbus-daemon")

    def xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *arguments], env=self.env, capture_output=True, timeout=15)
        return done.stdout.decode(errors="replace").split()

    def window_names(self):
        """The names of the windows shown: what a failure report needs to be understood."""
        try:
            names = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "", "getwindowname", "%@"],
                                   env=self.env, capture_output=True, timeout=15).stdout
        except (OSError, subprocess.TimeoutExpired):
            return []
        return sorted(set(names.decode(errors="replace").splitlines()) - {""})


def wait_for(what, limit, probe):
    deadline = time.monotonic() + limit
    while True:
        result = probe()
        if result:
            return result
        if time.monotonic() > deadline:
            raise Failure(f"no {what} after {limit} s")
        time.sleep(0.5)


def hand_off(session, mail, mailer):
    """Runs the tool on a mailer file for `mail`; the file must be gone afterwards and the
    attachments still there."""
    folder = session.root / "files" / mail.key
    folder.mkdir()
    for name, data in mail.attachments.items():
        (folder / name).write_bytes(data)
    mailer_file = session.root / f"{mail.key}.xml"
    mailer_file.write_text(mail.mailer_file(folder), encoding="utf-8")
    done = subprocess.run([str(mailer), str(mailer_file)], env=session.env, cwd=session.root,
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=MAILER_LIMIT)
    if done.returncode != 0:
        raise Failure(f"mailer exited with {done.returncode}")
    if done.stdout or done.stderr:
        raise Failure(f"mailer printed {(done.stdout + done.stderr)[:200]!r}")
    if mailer_file.exists():
        raise Failure("the mailer file was not deleted")
    missing = [name for name in mail.attachments if not (folder / name).exists()]
    if missing:
        raise Failure(f"attachments deleted: {missing}")


def saved_draft(session, client, mail, known):
    """Has the compose window of `mail` saved as a draft; answers the draft's bytes."""
    window = wait_for("compose window", WINDOW_LIMIT,
                      lambda: session.xdotool("search", "--onlyvisible", "--name",
                                              client.window_pattern(mail.key)))[0]
    time.sleep(SETTLE)

    def new_draft():
        try:
            found = [raw for raw in client.drafts(session.home)
                     if raw not in known and mail.key in drafts.subject_of(raw)]
        except OSError:
            return None  # a draft being written or replaced just now
        return found[-1] if found else None

    for attempt in range(2):
        session.xdotool("windowfocus", "--sync", window)
        session.xdotool("key", "--clearmodifiers", "ctrl+s")
        try:
            raw = wait_for("draft", DRAFT_LIMIT // 2, new_draft)
            break
        except Failure:
            if attempt == 1:
                raise
    # The client may still be writing it: read until it stops changing.
    while True:
        time.sleep(1)
        again = new_draft()
        if again == raw:
            return raw
        raw = again or raw


def checked_draft(session, client, mail, known):
    """The differences between `mail` and the draft saved from its compose window. A slow
    client may not have filled everything in when the first draft is saved, so a draft with
    differences is saved once more a little later and that one counts; a wrong hand-off
    stays wrong."""
    raw = saved_draft(session, client, mail, known)
    known.append(raw)
    problems = drafts.problems(raw, mail)
    if problems:
        time.sleep(SETTLE)
        try:
            raw = saved_draft(session, client, mail, known)
        except Failure:
            return problems  # saving again changed nothing: the first draft stands
        known.append(raw)
        problems = drafts.problems(raw, mail)
    return problems


def run(client_name, mailer, limit, keep):
    client = CLIENTS[client_name]
    root = Path(tempfile.mkdtemp(prefix="real-clients-"))
    session = Session(root)
    results = []
    try:
        signal.alarm(limit)
        session.start_display()
        session.start_bus()
        client.prepare(session.home)
        known = []
        for mail in MAILS:
            label = f"{client.name} {mail.key}"
            try:
                hand_off(session, mail, mailer)
                problems = checked_draft(session, client, mail, known)
            except (Failure, subprocess.TimeoutExpired, OSError) as failure:
                problems = [str(failure), "windows: " + repr(session.window_names())]
            results.append((label, problems))
    except Timeout as timeout:
        results.append((client.name, [str(timeout)]))
    finally:
        signal.alarm(0)
        left = stop_everything()
        session.log.close()
        if keep:
            print(f"kept {root}", flush=True)
        else:
            shutil.rmtree(root, ignore_errors=True)
    if left:
        results.append((client.name, [f"processes left running: {left}"]))
    for label, problems in results:
        print(("PASS " if not problems else "FAIL ") + label, flush=True)
        for problem in problems:
            print("    " + problem, flush=True)
    return 0 if results and all(not problems for _, problems in results) else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("client", choices=sorted(CLIENTS))
    parser.add_argument("mailer", type=Path)
    parser.add_argument("--timeout", type=int, default=120, help="hard limit in seconds")
    parser.add_argument("--keep", action="store_true", help="keep the HOME and drafts to look at")
    arguments = parser.parse_args()
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        sys.exit("cannot become the subreaper of the processes this test starts")
    signal.signal(signal.SIGALRM, _raise_timeout)
    signal.signal(signal.SIGTERM, _raise_timeout)
    signal.signal(signal.SIGINT, _raise_timeout)
    sys.exit(run(arguments.client, arguments.mailer.resolve(), arguments.timeout, arguments.keep))


if __name__ == "__main__":
    main()
