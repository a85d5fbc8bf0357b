"""The packages, as dpkg installs and removes them. The servers' configurations are those in them."""
import os
import subprocess
import unittest

import harness
from servers_test import Servers  # noqa: F401, runs here too


def tearDownModule():
    names = subprocess.check_output(["dpkg-query", "-W", "-f", "${binary:Package}\\n", "kesto-query", "libcgilib-dev"],
                                    text=True).split()
    files = subprocess.check_output(["dpkg", "-L", *names], text=True).split("\n")
    harness.dpkg("--purge", *names)
    left = [path for path in files if os.path.isfile(path)]
    assert len(files) > 20 and not left, left


if __name__ == "__main__":
    unittest.main()
