"""One run of a program as a CGI, and medians over runs that take turns."""

import statistics
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

import documents

BIN = "/run/bench/"
CONFIG = "/home/httpd/kestoconfig/conf/config.xml"

# What `launch` tells of one run: times in milliseconds, peak memory in MB.
Sample = namedtuple("Sample", "answered ended own everything peak")
QUICK = "--quick" in sys.argv


def environment(method, **variables):
    """The variables of a request, as a web server sets them."""
    return {"PATH": "/usr/bin:/bin", "GATEWAY_INTERFACE": "CGI/1.1", "REQUEST_METHOD": method,
            "SCRIPT_NAME": "/cgi-bin/query", "SERVER_NAME": "127.0.0.1", "SERVER_PORT": "80",
            "SERVER_PROTOCOL": "HTTP/1.1", "REMOTE_ADDR": "127.0.0.1", **variables}


def get(kilobytes, keys):
    """A query of that many keys over the document of that size."""
    return environment("GET", QUERY_STRING=documents.query_string(kilobytes, keys))


MULTIPART = "multipart/form-data; boundary=" + documents.BOUNDARY.decode()


def post(length, content_type=MULTIPART):
    """A request with a body of that length."""
    return environment("POST", CONTENT_LENGTH=str(length), CONTENT_TYPE=content_type)


def launched(program, env, stdin=subprocess.DEVNULL):
    """Starts one measured run; sample() ends it."""
    return subprocess.Popen([BIN + "launch", BIN + program], env=env, stdin=stdin,
                            stdout=subprocess.PIPE)


def sample(process):
    """The Sample of a run; ends everything if the program failed."""
    *numbers, status = map(int, process.communicate()[0].split())
    if status != 0:
        sys.exit(f"{process.args[1]} failed with wait status {status}")
    return Sample(*(n / 1000 for n in numbers[:4]), peak=numbers[4] / 1024)


def medians(cases, repeats):
    """The median of every field for each case (name: function that makes one Sample). The cases
    take turns; two rounds before warm up."""
    samples = {name: [] for name in cases}
    for turn in range(-2, max(3, repeats // 5) if QUICK else repeats):
        for name, measure in cases.items():
            taken = measure()
            if turn >= 0:
                samples[name].append(taken)
    return {name: Sample(*map(statistics.median, zip(*taken))) for name, taken in samples.items()}


def request_medians(cases, repeats):
    """medians() of requests without a body: cases of (name, program, environment)."""
    return medians({name: lambda p=program, e=env: sample(launched(p, e))
                    for name, program, env in cases}, repeats)


def use_document(kilobytes):
    """Makes the document of that size the one that every program reads."""
    Path(CONFIG).write_bytes(documents.document(kilobytes))


def check_answers(kilobytes, keys, peers):
    """Ends the run unless the peers answer like the handler, with something for every key."""
    env = get(kilobytes, keys)
    answer, *others = (subprocess.run(BIN + peer, env=env, capture_output=True).stdout
                       for peer in ("query", *peers))
    for peer, other in zip(peers, others):
        if other != answer:
            sys.exit(f"{peer} answers differently, {kilobytes} KB:\n{answer!r}\n{other!r}")
    if answer.count(b'" : "') != keys or b'" : ""' in answer:
        sys.exit(f"empty values, {kilobytes} KB, {keys} keys:\n{answer!r}")
