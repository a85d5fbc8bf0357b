"""Shared code of the system tests, which run only inside the sandbox."""
import contextlib
import os
import pathlib
import queue
import re
import shutil
import signal
import socket
import subprocess
import threading
import time

CGI_FOLDER = pathlib.Path("/usr/lib/cgi-bin")
QUERY = CGI_FOLDER / "query"
EMULATOR = os.environ.get("KESTO_EMULATOR")  # runs the programs, if this machine cannot
LIMITED = not EMULATOR and os.environ.get("KESTO_SANITIZE") != "ON"  # the handler's memory
CONFIG = pathlib.Path("/home/httpd/kestoconfig/conf/config.xml")
EXAMPLES = pathlib.Path(os.environ["KESTO_SOURCE"], "examples")
PATH = os.environ["PATH"] + ":/usr/sbin"  # where servers are installed
URL = "http://127.0.0.1:8080/cgi-bin"  # the same for every server configuration
JSON_HEADER = b"Content-type: application/json\r\n\r\n"
ERROR_ANSWER = JSON_HEADER + b'{"error" : true, "data" : {}}'
PID_FILE = pathlib.Path("/run/query.pid")
# Whether root in this sandbox is also root outside and can become other users.
UID_MAP = pathlib.Path("/proc/self/uid_map").read_text().splitlines()
OTHER_USERS = any(line.split()[2] != "1" for line in UID_MAP)


class SystemLog:
    """Listens on /dev/log as syslogd does."""

    def __init__(self):
        self._lines = queue.SimpleQueue()
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind("/dev/log")
        threading.Thread(target=self._receive, daemon=True).start()

    def _receive(self):
        while True:
            self._lines.put(self._socket.recv(1 << 20))

    def take(self):
        """Everything logged since the last call, as (priority, text)."""
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
            sender.sendto(b"mark", "/dev/log")
        lines = [line.decode("latin-1") for line in iter(self._lines.get, b"mark")]
        return [(int(line[1:line.index(">")]) & 7, line.partition(": ")[2]) for line in lines]


LOG = SystemLog()


def install(program):
    """Puts a program where web servers find it, behind a script if only the emulator can run it."""
    path = pathlib.Path(shutil.copy(program, CGI_FOLDER))
    if EMULATOR:
        foreign = shutil.copy(program, f"/run/{path.name}")
        path.write_text(f'#!/bin/sh\nexec {EMULATOR} {foreign} "$@"\n')
    return path


def install_config(text=None):
    CONFIG.parent.mkdir(parents=True, exist_ok=True)
    CONFIG.write_bytes((EXAMPLES / "config.xml").read_bytes() if text is None else text)


def start(method="GET", query="", stdin=subprocess.PIPE, command=(QUERY,), **environment):
    """Starts the handler as a web server would, with nothing else in its environment."""
    environment = {"PATH": os.environ["PATH"], "REQUEST_METHOD": method, "QUERY_STRING": query,
                   **environment}
    return subprocess.Popen(command, stdin=stdin, stdout=subprocess.PIPE, env=environment)


def request(*arguments, body=None, **environment):
    """Runs one request to completion and returns exit status, output and log lines."""
    LOG.take()
    process = start(*arguments, **environment)
    output, _ = process.communicate(body, timeout=60)
    return process.returncode, output, LOG.take()


def post(body, content_type="", length=None, **options):
    """Runs one POST request to completion and returns exit status, output and logged errors."""
    status, output, log = request("POST", body=body, CONTENT_TYPE=content_type,
                                  CONTENT_LENGTH=str(length or len(body)), **options)
    return status, output, errors(log)


def errors(log):
    return [text for priority, text in log if priority == 3]


def answer(**values):
    """The response that contains these values, which need no escaping."""
    fields = ",".join(f'"{key}" : "{values[key]}"' for key in sorted(values))
    return JSON_HEADER + b'{"error" : false, "data" : {' + fields.encode() + b"}}"


def wait_for(condition):
    """Returns the condition's value once it is true. The limit only turns a hang into a failure."""
    deadline = time.monotonic() + 60
    while not (value := condition()):
        assert time.monotonic() < deadline, "timed out waiting"
        time.sleep(0.01)
    return value


@contextlib.contextmanager
def running(command, **options):
    """Runs a process, with whatever it starts, for the duration of a with statement."""
    process = subprocess.Popen(command, start_new_session=True, **options)
    try:
        yield process
    finally:
        os.killpg(process.pid, signal.SIGTERM)
        with contextlib.suppress(ProcessLookupError):  # when the last one has gone
            wait_for(lambda: process.poll() is not None and os.killpg(process.pid, 0))


@contextlib.contextmanager
def server(name="lighttpd", *pages):
    """The URL of the programs behind a web server that starts as its configuration says."""
    for page in pages:
        install(page)
    commands = re.findall("^#   (.+)", (SERVER_CONFIGS / f"{name}.conf").read_text(), re.M)
    with running(["sh", "-ec", "\n".join(commands)], cwd=SERVER_CONFIGS, env={"PATH": PATH}):
        wait_for(lambda: curl(URL)[1])
        yield URL


def curl(*arguments):
    """The response and its HTTP status, 0 if there was no response."""
    command = "curl", "-s", "-w", "%{http_code}", *arguments
    output = subprocess.run(command, stdout=subprocess.PIPE).stdout
    return output[:-3], int(output[-3:])


# If a folder of packages is given, programs and server configurations are taken from there.
SERVER_CONFIGS = EXAMPLES / "servers"
UNPACKED = pathlib.Path("/run/unpacked")
assert CGI_FOLDER.is_mount(), "the folder must exist for the sandbox to cover it"
if "KESTO_PACKAGES" in os.environ:
    for package in pathlib.Path(os.environ["KESTO_PACKAGES"]).glob("*.deb"):
        subprocess.run(["dpkg-deb", "-x", package, UNPACKED], check=True)
    SERVER_CONFIGS = UNPACKED / "usr/share/doc/kesto-query/examples/servers"
install(UNPACKED / "usr/lib/cgi-bin/query" if UNPACKED.exists() else os.environ["KESTO_QUERY"])
pathlib.Path("/home/httpd/html").mkdir(parents=True)
