"""The handler behind each web server that has a configuration, queried with curl."""
import concurrent.futures
import os
import pathlib
import shutil
import unittest

import harness
from harness import curl

# Configuration: the program; what a client gets for a request that the handler refuses, for a body above the limit and
# for a path after the program's name (a status, 0 for no response, or None if there is no limit); the added headers.
SERVERS = {
    "apache": ("apache2", 500, 413, 404, (b"nosniff", b"no-store")),
    "busybox-httpd": ("busybox", 0, None, 200, (b"", b"")),
    "lighttpd": ("lighttpd", 500, 413, 404, (b"nosniff", b"no-store")),
    "nginx": ("fcgiwrap", 502, 413, 404, (b"nosniff", b"no-store")),
}
HEADERS = "-o/dev/null", "-w%{content_type} %header{x-content-type-options} %header{cache-control}%{http_code}"
SOURCE, STORED = pathlib.Path("/home/upload.bin"), pathlib.Path("/tmp/upload.bin")
FIELDS = "plus%2B+%26+equals%3D=//user[@name='jmueller']/fullname/text()", "id=//rule[@id = '90' and 1+1 = 2]/@id"
VALUES = {"plus+ & equals=": "Jana Müller", "id": "90"}


def answered(**values):
    return harness.answer(**values).partition(b"\r\n\r\n")[2], 200


class Servers(unittest.TestCase):
    def check_answers(self, url):
        encoded = [argument for field in FIELDS for argument in ("--data-urlencode", field)]
        for arguments in (("-G", *encoded), encoded):
            self.assertEqual(curl(*arguments, url), answered(**VALUES))

    def check_uploads(self, url, too_large):
        SOURCE.write_bytes(os.urandom(10 << 20) + b"\r\n" * 1000)
        for options in ((), ("--limit-rate", "20M")):
            parts = "-F", "a=//hostname/text()", "-F", "b=//mtu\r\n[1]\n/text()", "-F", f"f=@{SOURCE}"
            self.assertEqual(curl(*options, *parts, url), answered(a="gateway-7", b="1500", f=""))
            self.assertEqual(STORED.read_bytes(), SOURCE.read_bytes())
        STORED.unlink()
        for program, limit in (("query", 64 << 20), ("page", 64 << 10)) if too_large else ():
            os.truncate(SOURCE, limit)
            self.assertEqual(curl("-F", f"f=@{SOURCE}", url + "/../" + program)[1], too_large)
            self.assertFalse(STORED.exists())

    def check_headers(self, folder, added):
        pathlib.Path("/home/httpd/html/index.html").write_text("<p>Device</p>")
        self.assertEqual(curl(*HEADERS, folder + "/../"), (b"text/html %b " % added[0], 200))
        self.assertEqual(curl(*HEADERS, folder + "/query"), (b"application/json %b %b" % added, 200))

    def check_refusals(self, url, refused, behind):
        self.assertEqual((curl("-X", "DELETE", url)[1], curl(url + "/a/b")[1]), (refused, behind))
        self.assertNotEqual(curl("-X", "TRACE", url)[1], 200)

    def check_many_at_a_time(self, url):
        with concurrent.futures.ThreadPoolExecutor(100) as pool:
            for response in pool.map(curl, [f"{url}?k=//hostname/text()"] * 100):
                self.assertEqual(response, answered(k="gateway-7"))

    def test_each(self):
        harness.install_config()
        self.assertEqual({path.name for path in harness.SERVER_CONFIGS.iterdir()},
                         {f"{name}.conf" for name in SERVERS} | {"lighttpd.init"})
        for name, (program, refused, too_large, behind, added) in SERVERS.items():
            with self.subTest(name):
                if shutil.which(program, path=harness.PATH) is None:
                    self.skipTest(f"{program} is not installed")
                if name in ("apache", "nginx") and not harness.OTHER_USERS:
                    self.skipTest("cannot become www-data")
                with harness.server(name) as folder:
                    self.check_answers(folder + "/query")
                    self.check_uploads(folder + "/query", too_large)
                    self.check_headers(folder, added)
                    self.check_refusals(folder + "/query", refused, behind)
                    self.check_many_at_a_time(folder + "/query")
