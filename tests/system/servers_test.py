"""The handler behind the web servers that there are configurations for, asked by curl."""
import os
import pathlib
import shutil
import unittest

import harness
from harness import curl

# Configuration: the program, and what a client gets for a request that the handler refuses and for a body above the
# limit: a status, 0 for no response, or None where there is no limit.
SERVERS = {
    "apache": ("apache2", 500, 413),
    "busybox-httpd": ("busybox", 0, None),
    "lighttpd": ("lighttpd", 500, 413),
    "nginx": ("fcgiwrap", 502, 413),
}
SOURCE, STORED = pathlib.Path("/home/upload.bin"), pathlib.Path("/tmp/upload.bin")
FIELDS = ("plus%2B+%26+equals%3D=//user[@name='jmueller']/fullname/text()", "cpu=concat('100%', ' & more')",
          "loc=//location/text()", "id=//rule[@id = '90' and 1+1 = 2]/@id")
VALUES = {"plus+ & equals=": "Jana Müller", "cpu": "", "loc": "Süd-Werk, Halle 4 <Kühlung & Pumpen>", "id": "90"}


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
        if too_large:
            os.truncate(SOURCE, 64 << 20)
            self.assertEqual(curl("-F", f"f=@{SOURCE}", url)[1], too_large)
            self.assertFalse(STORED.exists())

    def test_each(self):
        harness.install_config()
        self.assertEqual({path.stem for path in harness.SERVER_CONFIGS.iterdir()}, set(SERVERS))
        for name, (program, refused, too_large) in SERVERS.items():
            with self.subTest(name):
                if shutil.which(program, path=harness.PATH) is None:
                    self.skipTest(f"{program} is not installed")
                if name in ("apache", "nginx") and not harness.OTHER_USERS:
                    self.skipTest("cannot become www-data")
                with harness.server(name) as folder:
                    self.check_answers(folder + "/query")
                    self.check_uploads(folder + "/query", too_large)
                    self.assertEqual(curl("-X", "DELETE", folder + "/query")[1], refused)
