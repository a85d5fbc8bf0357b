"""A single run of a CGI program, and medians over alternating runs."""

import statistics
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

import documents

BUILD = Path(__file__).resolve().parent.parent / "build" / "bench"
BIN = BUILD / "measured"
CONFIG = Path("/home/httpd/kestoconfig/conf/config.xml")
QUICK = "--quick" in sys.argv
# What `launch` reports about one run: times in milliseconds, peak memory in MB. The answer ends with the end of file,
# which may come after its last byte: child processes that hold the pipe delay it.
Sample = namedtuple("Sample", "last_byte answered ended own everything peak")
MULTIPART = "multipart/form-data; boundary=" + documents.BOUNDARY.decode()


def environment(**variables):
    """The variables of a request, as a web server sets them."""
    return {"PATH": "/usr/bin:/bin", "GATEWAY_INTERFACE": "CGI/1.1", "SCRIPT_NAME": "/cgi-bin/query", **variables,
            "SERVER_NAME": "127.0.0.1", "SERVER_PORT": "80", "SERVER_PROTOCOL": "HTTP/1.1", "REMOTE_ADDR": "127.0.0.1"}


def get(kilobytes, keys):
    """A query with that many keys for the document of that size."""
    return environment(REQUEST_METHOD="GET", QUERY_STRING=documents.query_string(kilobytes, keys))


def post(length, content_type=MULTIPART):
    """A request with a body of that length."""
    return environment(REQUEST_METHOD="POST", CONTENT_LENGTH=str(length), CONTENT_TYPE=content_type)


def launched(program, env, stdin=subprocess.DEVNULL, *options):
    """Starts a measured run; sample() collects its result."""
    return subprocess.Popen([BIN / "launch", BIN / program, *options], env=env, stdin=stdin, stdout=subprocess.PIPE)


def sample(process):
    """The Sample of a run; exits if the program failed."""
    *numbers, status = map(int, process.communicate()[0].split())
    if status != 0:
        sys.exit(f"{process.args[1]} failed with wait status {status}")
    return Sample(*(n / 1000 for n in numbers[:-1]), peak=numbers[-1] / 1024)


def medians(cases, repeats):
    """The median of every field for each case (name: function that returns a Sample). The cases
    take turns, after two warm-up rounds."""
    samples = {name: [] for name in cases}
    for turn in range(-2, max(3, repeats // 5) if QUICK else repeats):
        for name, measure in cases.items():
            taken = measure()
            if turn >= 0:
                samples[name].append(taken)
    return {name: Sample(*map(statistics.median, zip(*taken))) for name, taken in samples.items()}


def request_medians(cases, repeats):
    """medians() of requests without a body; each case has the arguments of launched()."""
    return medians({name: lambda c=case: sample(launched(*c)) for name, case in cases.items()}, repeats)


def use_document(kilobytes):
    """Installs the document of that size as the one that every program reads."""
    CONFIG.parent.mkdir(parents=True, exist_ok=True)
    CONFIG.write_bytes(documents.document(kilobytes))


def check_answers(kilobytes, keys, commands):
    """Switches to the document of that size and exits unless the commands give the same answer as
    the handler, with a value for every key. Returns what each prints on standard error."""
    use_document(kilobytes)
    env = get(kilobytes, keys)
    ours, *others = (subprocess.run(command, env=env, capture_output=True) for command in (BIN / "query", *commands))
    if ours.stdout.count(b'" : "') != keys or b'" : ""' in ours.stdout:
        sys.exit(f"empty values with {kilobytes} KB, {keys} keys:\n{ours.stdout!r}")
    for other in others:
        if other.stdout != ours.stdout:
            sys.exit(f"{other.args} answers differently with {kilobytes} KB:\n{ours.stdout!r}\n{other.stdout!r}")
    return [other.stderr for other in others]
