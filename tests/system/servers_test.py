"""The handler behind every web server that there is a configuration for."""
import os
import pathlib
import unittest

import harness
from harness import answer, curl

SERVERS = [path.stem for path in sorted(harness.SERVER_CONFIGS.glob("*.conf"))]
# What a client gets for a request that the handler refuses, and for a body above the limit.
REFUSED = {"apache": 500, "busybox-httpd": 0, "lighttpd": 500, "nginx": 502}
TOO_LARGE = {"apache": 413, "lighttpd": 413, "nginx": 413}
LIMIT = 64 << 20
MAPPED = [tuple(map(int, line.split())) for line in pathlib.Path("/proc/self/uid_map").read_text().splitlines()]
CHANGES_USER = any(count > 1 for _, _, count in MAPPED)


class Servers(unittest.TestCase):
    def setUp(self):
        harness.install_config()

    def check(self, name, url):
        query = url + "/query"
        values = "a=//hostname/text()", "b=//mtu[. = 1500]/text()"
        encoded = [argument for value in values for argument in ("--data-urlencode", value)]
        expected = answer(a="gateway-7", b="1500").split(b"\r\n\r\n")[1]
        self.assertEqual(curl("-G", *encoded, query), (expected, 200))
        self.assertEqual(curl(*encoded, query), (expected, 200))

        source, stored = pathlib.Path("/home/upload.bin"), pathlib.Path("/tmp/upload.bin")
        source.write_bytes(os.urandom(2 << 20) + b"\r\n" * 1000)
        parts = [argument for value in (*values, f"c=@{source}") for argument in ("-F", value)]
        self.assertEqual(curl(*parts, query), (expected.replace(b"}}", b',"c" : ""}}'), 200))
        self.assertEqual(stored.read_bytes(), source.read_bytes())
        stored.unlink()

        self.assertEqual(curl("-X", "DELETE", query)[1], REFUSED[name])
        if name in TOO_LARGE:
            with source.open("wb") as file:
                file.truncate(LIMIT + 1)
            self.assertEqual(curl("-F", f"c=@{source}", query)[1], TOO_LARGE[name])
            self.assertFalse(stored.exists())

    def test_each(self):
        for name in SERVERS:
            with self.subTest(name):
                if name in ("apache", "nginx") and not CHANGES_USER:
                    self.skipTest("started by a user who cannot become www-data")
                with harness.server(name) as url:
                    self.check(name, url)


if __name__ == "__main__":
    unittest.main()
