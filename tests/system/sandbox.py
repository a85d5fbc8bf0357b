#!/usr/bin/env python3
"""Runs a command in a mount and process namespace of its own, as root or as any user.

/home, /run, /tmp and /dev are private in it (the last with the usual harmless devices only), and
no process outside can be seen or signalled.
"""
import argparse
import os
import subprocess
import sys

COVERED = ("/home", "/run", "/tmp")
DEVICES = ("null", "zero", "full", "random", "urandom", "tty")
SAVED = "/mnt"


def mount(*arguments):
    subprocess.run(("mount",) + arguments, check=True)


def enter():
    user = () if os.geteuid() == 0 else ("--user", "--map-root-user")
    os.execvp("unshare", ("unshare", *user, "--mount", "--pid", "--fork", "--kill-child",
                          "--mount-proc", sys.executable, *sys.argv[:1], "--inside", *sys.argv[1:]))


def cover(kept):
    """Puts an empty folder over each covered one, with the kept ones back in their places."""
    mount("-t", "tmpfs", "tmpfs", SAVED)
    for number, path in enumerate(kept):
        os.mkdir(f"{SAVED}/{number}")
        mount("--bind", path, f"{SAVED}/{number}")
    for path in COVERED:
        mount("-t", "tmpfs", "tmpfs", path)
    for number, path in enumerate(kept):
        if path.startswith(tuple(folder + "/" for folder in COVERED)):
            os.makedirs(path, exist_ok=True)
            mount("--bind", f"{SAVED}/{number}", path)


def replace_devices():
    os.mkdir(SAVED + "/dev")
    mount("--bind", "/dev", SAVED + "/dev")
    mount("-t", "tmpfs", "tmpfs", "/dev")
    for device in DEVICES:
        open(f"/dev/{device}", "w").close()
        mount("--bind", f"{SAVED}/dev/{device}", f"/dev/{device}")
    os.symlink("/proc/self/fd", "/dev/fd")
    os.mkdir("/dev/shm")


def run(command):
    """Runs the command as init does: orphans are reaped, and go when the command has ended."""
    main_process = subprocess.Popen(command)
    while True:
        process, status = os.wait()
        if process == main_process.pid:
            return os.waitstatus_to_exitcode(status) & 0xFF


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--keep", action="append", default=[], help="a folder to keep visible")
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    if not arguments.inside:
        enter()
    cover([os.path.realpath(path) for path in arguments.keep + [sys.base_prefix]])
    replace_devices()
    os.environ["HOME"] = "/tmp"
    sys.exit(run(arguments.command))


if __name__ == "__main__":
    main()
