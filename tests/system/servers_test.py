"""The handler behind each web server that has a configuration, queried with curl."""
import concurrent.futures
import os
import pathlib
import shutil
import unittest

import harness
from harness import curl

# Configuration: the program; the status of a body above the limit, if there is one; the added
# headers; the status (0 without a response) of a request that the handler refuses, of a path after
# the program's name, and from an address that has no access.
ADDED = b"nosniff", b"SAMEORIGIN", b"no-store"
SERVERS = {
    "apache": ("apache2", 413, ADDED, 500, 404, 200),
    "busybox-httpd": ("busybox", None, (b"", b"", b""), 0, 200, 403),
    "lighttpd": ("lighttpd", 413, ADDED, 500, 404, 200),
    "nginx": ("fcgiwrap", 413, ADDED, 502, 404, 200),
}
HEADERS = ("-o/dev/null", "-w%{content_type} %header{x-content-type-options} "
                          "%header{x-frame-options} %header{cache-control}%{http_code}")
SOURCE, STORED = pathlib.Path("/home/upload.bin"), pathlib.Path("/tmp/upload.bin")
FIELDS = ("--data-urlencode", "plus%2B+%26+equals%3D=//user[@name='jmueller']/fullname/text()",
          "--data-urlencode", "id=//rule[@id = '90' and 1+1 = 2]/@id")
VALUES = {"plus+ & equals=": "Jana Müller", "id": "90"}


def answered(**values):
    return harness.answer(**values).partition(b"\r\n\r\n")[2], 200


class Servers(unittest.TestCase):
    def check_answers(self, url):
        for way in ("-G", "-XPOST"):
            self.assertEqual(curl(way, *FIELDS, url), answered(**VALUES), way)

    def check_uploads(self, url, too_large):
        SOURCE.write_bytes(os.urandom(10 << 20) + b"\r\n" * 1000)
        parts = "-Fa=//hostname/text()", "-Fb=//mtu\r\n[1]\n/text()", f"-Ff=@{SOURCE}"
        for rate in ("1G", "20M"):
            answer = curl("--limit-rate", rate, *parts, url)
            self.assertEqual(answer, answered(a="gateway-7", b="1500", f=""), rate)
            self.assertEqual(STORED.read_bytes(), SOURCE.read_bytes(), rate)
            STORED.unlink()
        for program, limit in (("query", 64 << 20), ("page", 64 << 10)) if too_large else ():
            os.truncate(SOURCE, limit)
            self.assertEqual(curl(parts[-1], f"{url}/../{program}")[1], too_large, program)
            self.assertFalse(STORED.exists(), program)

    def check_headers(self, folder, added):
        pathlib.Path("/home/httpd/html/index.html").write_text("<p>Device</p>")
        for path, expected in (("/../", b"text/html %b %b " % added[:2]),
                               ("/query", b"application/json %b %b %b" % added)):
            self.assertEqual(curl(*HEADERS, folder + path), (expected, 200))

    def check_refusals(self, url, *refused):
        arguments = ("-XDELETE", url), (url + "/a/b",), ("--interface", "127.0.0.2", url)
        self.assertEqual(tuple(curl(*each)[1] for each in arguments), refused)
        self.assertNotEqual(curl("-XTRACE", url)[1], 200)

    def check_many_at_a_time(self, url):
        with concurrent.futures.ThreadPoolExecutor(100) as pool:
            for response in pool.map(curl, [f"{url}?k=//hostname/text()"] * 100):
                self.assertEqual(response, answered(k="gateway-7"))

    def test_each(self):
        harness.install_config()
        self.assertEqual({path.stem for path in harness.SERVER_CONFIGS.iterdir()}, set(SERVERS))
        for name, (program, too_large, added, *refused) in SERVERS.items():
            with self.subTest(name):
                if shutil.which(program, path=harness.PATH) is None:
                    self.skipTest(f"{program} is not installed")
                if name in ("apache", "nginx") and not harness.OTHER_USERS:
                    self.skipTest("cannot become www-data")
                with harness.server(name) as folder:
                    self.check_answers(folder + "/query")
                    self.check_uploads(folder + "/query", too_large)
                    self.check_headers(folder, added)
                    self.check_refusals(folder + "/query", *refused)
                    self.check_many_at_a_time(folder + "/query")
