"""Clients of the handler behind a web server: they send requests of every kind and check each answer byte by byte."""
import collections
import concurrent.futures
import contextlib
import hashlib
import http.client
import random
import re
import socket
import struct
import time
import urllib.parse

TARGET = "/cgi-bin/query"
PATIENCE = 900  # seconds; only turns a hang into a failure
URL_ENCODED = {"Content-Type": "application/x-www-form-urlencoded"}
MULTIPART = {"Content-Type": "multipart/form-data; boundary=XyZ"}
END = b"--XyZ--\r\n"

# Expressions on the example document, and their values as they appear in the answer.
VALUES = {
    "//hostname/text()": "gateway-7", "dns/server[2]/@priority": "2", "//mtu": r"<mtu>1500<\/mtu>", "//absent": "",
    "//location/text()": "Süd-Werk, Halle 4 <Kühlung & Pumpen>", "//rule[@id = '90' and 1+1 = 2]/@id": "90",
    "concat('100%', ' & more')": "", "//user[@name='jmueller']/fullname/text()": "Jana Müller", "][": "",
}
# The errors that these requests cause in the log. The server reaches its limit because closed connections linger.
EXPECTED = re.compile(
    r"  main\(\): (CGI parse failed|Unable to write response)\.|"
    r"  cPidFile::cPidFile\(\): Found another instance of process running \(PROCESS: query, PID: \d+\)|"
    r"ParseMultipartData - (No boundary found in content type|Entity Header is NOT correct last header: BAD LENGTH)\.?|"
    r"ParseMultipartData\(\) - Unable to open tmp file for writing, filename is empty|"
    r"\(mod_cgi\.c\.\d+\) CGI pid \d+ died with signal 13|"  # of a client that disconnected
    r"\(server\.c\.\d+\) \[note\] sockets (disabled, connection limit reached|enabled again)")


def text_part(name, text):
    return f'--XyZ\r\nContent-Disposition: form-data; name="{name}"\r\n\r\n{text}\r\n'.encode()


def file_part(name, content):
    return f'--XyZ\r\nContent-Disposition: form-data; name="f"; filename="{name}"\r\n\r\n'.encode() + content + b"\r\n"


class Client:
    """Its number alone determines its requests. take_upload(name) removes an uploaded file and returns the
    hexadecimal SHA-256 of its content; refusal is the status of a request that the handler refuses, 0 for no
    response."""

    def __init__(self, number, port, take_upload, refusal=500):
        self.number = number
        self.port = port
        self.take_upload = take_upload
        self.refusal = refusal
        self.random = random.Random(number)
        self.counts = collections.Counter()
        self.wrong = []

    def fields(self):
        names = self.random.sample("abcdefgh", self.random.randint(0, 5))
        return {name: self.random.choice(list(VALUES)) for name in names}

    def expect(self, status, body, method, target=TARGET, content=None, headers=()):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=PATIENCE)
        with contextlib.closing(connection):
            connection.request(method, target, content, dict(headers))
            got, answer = 0, b""
            with contextlib.suppress(http.client.RemoteDisconnected):
                response = connection.getresponse()
                got, answer = response.status, response.read()
        if got != status or body is not None and answer != body:
            raise ValueError(f"{method} {target}: {got} {answer[:200]!r} instead of {status} {body!r}")

    def expect_values(self, fields, *request):
        values = ",".join(f'"{key}" : "{VALUES[fields[key]]}"' for key in sorted(fields))
        self.expect(200, f'{{"error" : false, "data" : {{{values}}}}}'.encode(), *request)

    def get(self):
        fields = self.fields()
        self.expect_values(fields, "GET", f"{TARGET}?{urllib.parse.urlencode(fields)}")

    def url_encoded(self):
        fields = self.fields() or {"a": "//mtu"}
        self.expect_values(fields, "POST", TARGET, urllib.parse.urlencode(fields).encode(), URL_ENCODED)

    def multipart(self):
        fields = self.fields()
        parts = b"".join(text_part(name, text) for name, text in fields.items())
        self.expect_values(fields, "POST", TARGET, parts + END, MULTIPART)

    def upload(self):
        name = f"soak-{self.number}.bin"
        content = self.random.randbytes(int(10 ** self.random.uniform(0, 5.5)))
        content += b"\r\n--Xy" * self.random.randint(0, 99)
        parts = text_part("a", "//hostname/text()"), file_part(name, content), END
        self.expect(200, b'{"error" : false, "data" : {"a" : "gateway-7","f" : ""}}', "POST", TARGET, b"".join(parts),
                    MULTIPART)
        if self.take_upload(name) != hashlib.sha256(content).hexdigest():
            raise ValueError(f"{name} differs from the {len(content)} bytes sent")

    def refused(self):
        self.expect(self.refusal, None, *self.random.choice((
            ("DELETE",), ("PUT", TARGET, b"a=//mtu", URL_ENCODED), ("POST", TARGET, b"", URL_ENCODED),
            ("POST", TARGET, END, {"Content-Type": "multipart/form-data"}),
            ("POST", TARGET, text_part("a", "//mtu") + b"--XyZ", MULTIPART),
            ("POST", TARGET, file_part("", b"content") + END, MULTIPART))))

    def broken_off(self):
        """Disconnects during or after the request, by an orderly close or a reset."""
        body = text_part("a", "//mtu") + file_part(f"never-{self.number}.bin", bytes(200000)) + END
        head = f"Host: device\r\nContent-Type: {MULTIPART['Content-Type']}\r\nContent-Length: {len(body)}\r\n\r\n"
        get = f"GET {TARGET}?a=//mtu HTTP/1.1\r\nHost: device\r\n\r\n".encode()
        post = f"POST {TARGET} HTTP/1.1\r\n{head}".encode() + body
        request = self.random.choice((get, get[:self.random.randrange(len(get))],
                                      post[:self.random.randrange(len(post) - 1)]))
        with socket.create_connection(("127.0.0.1", self.port), PATIENCE) as connection:
            if self.random.random() < 0.5:
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            connection.sendall(request)

    KINDS = {"get": 35, "url_encoded": 20, "multipart": 15, "upload": 10, "refused": 10, "broken_off": 10}

    def run(self, count, deadline, kinds):
        for kind in self.random.choices(list(kinds), [self.KINDS[kind] for kind in kinds], k=count):
            if time.monotonic() > deadline:
                self.wrong.append(f"client {self.number}: out of time after {self.counts.total()} of {count} requests")
                break
            try:
                getattr(self, kind)()
            except (OSError, ValueError, http.client.HTTPException) as fault:
                self.wrong.append(f"{kind}: {fault!r}")
                self.counts[kind, "wrong"] += 1
            else:
                self.counts[kind, "as expected"] += 1
        return self


def run(count, clients, *where, kinds=Client.KINDS, seconds=3600):
    """Sends that many requests from that many concurrent clients; returns the outcomes by kind, and what was wrong."""
    deadline = time.monotonic() + seconds
    shares = [count // clients + (number < count % clients) for number in range(clients)]
    with concurrent.futures.ThreadPoolExecutor(clients) as pool:
        done = list(pool.map(lambda number: Client(number, *where).run(shares[number], deadline, kinds),
                             range(clients)))
    return sum((client.counts for client in done), collections.Counter()), [w for client in done for w in client.wrong]
