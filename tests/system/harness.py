"""What the system tests share. They run inside the sandbox only."""
import contextlib
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time
import urllib.parse

CGI_FOLDER = pathlib.Path("/usr/lib/cgi-bin")
QUERY = CGI_FOLDER / "query"
SOURCE = pathlib.Path(os.environ["KESTO_SOURCE"])
EMULATOR = os.environ.get("KESTO_EMULATOR")  # runs the programs, if this machine cannot
BOUNDED = not EMULATOR and os.environ.get("KESTO_SANITIZE") != "ON"  # whether the program bounds its memory
CONFIG = pathlib.Path("/home/httpd/kestoconfig/conf/config.xml")
EXAMPLE = SOURCE / "examples" / "config.xml"
PATH = os.environ["PATH"] + ":/usr/sbin"  # servers are there
PORT = 8080  # of every server configuration
JSON_HEADER = b"Content-type: application/json\r\n\r\n"


class SystemLog:
    """Listens on /dev/log as syslogd does."""

    def __init__(self):
        self._lines = []
        self._marked = threading.Event()
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind("/dev/log")
        threading.Thread(target=self._receive, daemon=True).start()

    def _receive(self):
        while True:
            line = self._socket.recv(1 << 20).decode("latin-1")
            if line == "mark":
                self._marked.set()
            else:
                priority, text = re.match(r"<(\d+)>(?:.{15} )?[^:]*: (.*)", line, re.S).groups()
                self._lines.append((int(priority) & 7, text))

    def take(self):
        """All that has been logged since the last call, as (priority, text)."""
        self._marked.clear()
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
            sender.sendto(b"mark", "/dev/log")
        self._marked.wait()
        lines, self._lines = self._lines, []
        return lines


LOG = SystemLog()


def install(program):
    """Puts a program where web servers find it; behind a script, if only the emulator can run it."""
    path = pathlib.Path(shutil.copy(program, CGI_FOLDER))
    if EMULATOR:
        foreign = pathlib.Path("/run/foreign", path.name)
        foreign.parent.mkdir(exist_ok=True)
        shutil.copy(path, foreign)
        path.write_text(f'#!/bin/sh\nexec {EMULATOR} {foreign} "$@"\n')
        path.chmod(0o755)
    return path


def install_packages(folder):
    """Installs the packages in a folder by dpkg, into layers over the system's own folders. For an ordinary user, whom
    the system's folders do not belong to even in the sandbox, it ends the test as skipped."""
    if not OTHER_USERS:
        print("packages ... skipped 'only root can install them'")
        sys.exit(77)
    for target in ("/usr", "/var/lib/dpkg"):
        upper, work = (pathlib.Path("/run/layers", kind, target[1:]) for kind in ("upper", "work"))
        for path in (upper, work):
            path.mkdir(parents=True)
        layers = f"lowerdir={target},upperdir={upper},workdir={work}"
        subprocess.run(["mount", "-t", "overlay", "-o", layers, "overlay", target], check=True)
    dpkg("--install", *pathlib.Path(folder).glob("*.deb"))


def dpkg(*arguments):
    subprocess.run(["dpkg", "--log=/dev/null", "--no-triggers", *arguments], check=True)


# Whether root of this sandbox is root outside too, and can become other users.
OTHER_USERS = any(line.split()[2] != "1" for line in pathlib.Path("/proc/self/uid_map").read_text().splitlines())
SERVER_CONFIGS = SOURCE / "examples" / "servers"
if "KESTO_PACKAGES" in os.environ:
    SERVER_CONFIGS = pathlib.Path("/usr/share/doc/kesto-query/examples/servers")
    install_packages(os.environ["KESTO_PACKAGES"])
    install(shutil.copy(QUERY, "/run"))
else:
    assert CGI_FOLDER.is_mount(), "to be covered by the sandbox the folder has to exist"
    install(os.environ["KESTO_QUERY"])
pathlib.Path("/home/httpd/html").mkdir(parents=True)


def install_config(text=None):
    CONFIG.parent.mkdir(parents=True, exist_ok=True)
    CONFIG.write_bytes(EXAMPLE.read_bytes() if text is None else text)


def start(method="GET", query="", stdin=subprocess.DEVNULL, command=(QUERY,), **environment):
    """Starts the handler as a web server would, with nothing else in its environment."""
    return subprocess.Popen(
        command, stdin=stdin, stdout=subprocess.PIPE,
        env={"PATH": os.environ["PATH"], "REQUEST_METHOD": method, "QUERY_STRING": query,
             **environment})


def request(*arguments, body=None, **environment):
    """Runs one request to its end: exit status, output and log lines."""
    LOG.take()
    process = start(*arguments, stdin=subprocess.DEVNULL if body is None else subprocess.PIPE, **environment)
    output, _ = process.communicate(body)
    return process.returncode, output, LOG.take()


def post(body, content_type, length=None):
    """Runs one POST request to its end."""
    return request("POST", body=body, CONTENT_TYPE=content_type,
                   CONTENT_LENGTH=str(len(body) if length is None else length))


def answer(**values):
    """The response to a request that was answered with these texts, which need no escapes."""
    fields = ",".join(f'"{key}" : "{values[key]}"' for key in sorted(values))
    return JSON_HEADER + b'{"error" : false, "data" : {' + fields.encode() + b"}}"


def wait_for(condition):
    """Waits until the condition holds and gives its value. The bound only turns a hang into a failure."""
    deadline = time.monotonic() + 60
    while not (value := condition()):
        assert time.monotonic() < deadline, "waited in vain"
        time.sleep(0.01)
    return value


HELPERS = ("query", "bash", "killall", pathlib.Path(EMULATOR or "query").name)


def helpers_gone():
    """Whether no child of an earlier request is left that could still send a signal."""
    for comm in pathlib.Path("/proc").glob("[0-9]*/comm"):
        with contextlib.suppress(OSError):
            if comm.read_text().strip() in HELPERS:
                return False
    return True


@contextlib.contextmanager
def named_process(name, program, *arguments):
    """Runs a copy of an installed program under another name."""
    path = pathlib.Path("/tmp/named") / name
    path.parent.mkdir(exist_ok=True)
    shutil.copy(shutil.which(program), path)
    process = subprocess.Popen([path, *arguments])
    try:
        yield process
    finally:
        process.kill()
        process.wait()


@contextlib.contextmanager
def server(name="lighttpd", *pages):
    """The handler and other programs behind a web server; yields the URL of the CGI folder.

    The configuration itself says how to start with it."""
    for page in pages:
        install(page)
    config = SERVER_CONFIGS / f"{name}.conf"
    commands = re.findall("^#   (.+)", config.read_text(), re.M)
    process = subprocess.Popen(["sh", "-ec", "\n".join(commands)], cwd=SERVER_CONFIGS, start_new_session=True,
                               env={"PATH": PATH})
    try:
        wait_for(lambda: _connects(PORT))
        yield f"http://127.0.0.1:{PORT}/cgi-bin"
    finally:
        os.killpg(process.pid, signal.SIGTERM)
        process.wait()
        wait_for(lambda: not _connects(PORT))


def _connects(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


def curl(*arguments):
    """The response and its HTTP status, 0 if there was no response."""
    output = subprocess.run(["curl", "-sS", "-w", "%{http_code}", *arguments],
                            stdout=subprocess.PIPE).stdout
    return output[:-3], int(output[-3:])


def encoded(**fields):
    return urllib.parse.urlencode(fields)
