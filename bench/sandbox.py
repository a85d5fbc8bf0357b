"""Private namespaces in which the handler, as it ships, finds our document at its compiled-in path
and its signals reach nobody outside."""

import os
import shutil
import stat
import subprocess
import sys
from pathlib import Path

BIN = "/run/bench/"
CONFIG = "/home/httpd/kestoconfig/conf/config.xml"
INSIDE = "--inside"


def enter():
    """Goes on in namespaces of our own: returns only there, as their process 1."""
    if INSIDE in sys.argv:
        return
    command = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if os.getuid() != 0:
        command += ["--user", "--map-root-user"]
    os.execvp(command[0], [*command, sys.executable, *sys.argv, INSIDE])


def furnish(programs):
    """Hides /run, /home and /tmp behind empty file systems in memory, with the programs in BIN.
    Returns what syslog(3) finds."""
    mount_empty(os.path.realpath("/var/run"))
    os.makedirs(BIN)
    for program in programs:
        shutil.copy(program, BIN)
    mount_empty("/home")
    mount_empty("/tmp")
    Path(CONFIG).parent.mkdir(parents=True)
    # A log daemon would answer on the measured core, and keep what it is told.
    if os.path.exists("/dev/log") and stat.S_ISSOCK(os.stat("/dev/log").st_mode):
        subprocess.check_call(["mount", "--bind", "/dev/null", "/dev/log"])
    return "no /dev/log: messages of the handler are dropped by the C library"


def mount_empty(path):
    subprocess.check_call(["mount", "-t", "tmpfs", "tmpfs", path])


def processes():
    """The command name of every live process here."""
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            text = Path("/proc", entry, "stat").read_text()
        except OSError:
            continue  # it has ended
        name, rest = text[text.index("(") + 1:].rsplit(") ", 1)
        if not rest.startswith("Z"):
            found.append(name)
    return found


def reap():
    """Buries the orphans that process 1 inherits, until none is left."""
    try:
        while True:
            os.wait()
    except ChildProcessError:
        pass
