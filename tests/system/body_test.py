"""Request bodies: sent in full, cut short by the client, or refused by the file system."""
import os
import pathlib
import subprocess
import unittest

import harness
from harness import LOG, answer, post

MULTIPART = "multipart/form-data; boundary=XyZ"
FIELD = b'--XyZ\r\nContent-Disposition: form-data; name="a"\r\n\r\n//mtu[. = 1500]/text()\r\n'
FILE = b'--XyZ\r\nContent-Disposition: form-data; name="f"; filename="stored.bin"\r\n\r\n'
END = b"\r\n--XyZ--\r\n"
STORED = pathlib.Path("/tmp/stored.bin")


def start_post(length, sent):
    process = harness.start("POST", CONTENT_TYPE=MULTIPART, CONTENT_LENGTH=str(length))
    process.stdin.write(sent)
    process.stdin.flush()
    return process


class Bodies(unittest.TestCase):
    def setUp(self):
        harness.install_config()

    def test_client_breaks_off(self):
        LOG.take()
        process = start_post(1000000, FIELD + FILE + b"12345")
        harness.wait_for(lambda: STORED.exists() and STORED.read_bytes() == b"12345")
        self.assertEqual((process.communicate()[0], process.returncode), (b"", 255))
        self.assertEqual([text for _, text in LOG.take()[-2:]],
                         ["ParseMultipartData - returning 0", "  main(): CGI parse failed."])
        self.assertEqual(STORED.read_bytes(), b"12345")
        self.assertEqual(post(FIELD + END[2:], MULTIPART, 1000)[:2], (255, b""))  # client gone before the read

    def test_disk_full_in_the_middle_of_an_upload(self):
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "tmpfs", "/tmp"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/tmp"], check=True)
        STORED.write_bytes(b"what an earlier request left")
        content = os.urandom(3 << 20)
        self.assertEqual(post(FIELD + FILE + content + END, MULTIPART)[:2], (0, answer(a="1500", f="")))
        stored = STORED.read_bytes()
        self.assertTrue(stored and content.startswith(stored))
        limited = post(FIELD + FILE + content + END, MULTIPART, command=("prlimit", "--fsize=1:", harness.QUERY))
        self.assertEqual((*limited, STORED.read_bytes()), (0, answer(a="1500", f=""), [], content[:1]))
        self.assertFalse(harness.PID_FILE.exists())

    def test_memory_is_flat(self):
        peaks = []
        for size in (1 << 20, 64 << 20):
            body = FIELD * 400 + FILE + b"\r\n--Xy" * (size // 6)
            process = start_post(len(body + END), body)
            harness.wait_for(lambda: STORED.stat().st_size > size - 100)
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
            peaks.append(int(status.split("VmHWM:")[1].split()[0]))
            self.assertIn("NoNewPrivs:\t1", status)
            self.assertEqual(process.communicate(END)[0], answer(a="1500", f=""))
        self.assertLess(peaks[1], peaks[0] + 512, "kilobytes")
