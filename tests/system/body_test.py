"""Request bodies with an upload that the file system takes in full or in part."""
import os
import pathlib
import socket
import unittest

import harness
from harness import answer, post

MULTIPART = "multipart/form-data; boundary=XyZ"
FIELD = b'--XyZ\r\nContent-Disposition: form-data; name="a"\r\n\r\n//mtu[. = 1500]/text()\r\n'
FILE = b'--XyZ\r\nContent-Disposition: form-data; name="f"; filename="stored.bin"\r\n\r\n'
END = b"\r\n--XyZ--\r\n"
STORED = pathlib.Path("/tmp/stored.bin")


class Bodies(unittest.TestCase):
    def setUp(self):
        harness.install_config()

    def test_disk_takes_only_part_of_an_upload(self):
        STORED.write_bytes(b"what an earlier request left")
        content = os.urandom(3 << 20)
        limit = "prlimit", "--fsize=1000001:", harness.QUERY
        limited = post(FIELD + FILE + content + END, MULTIPART, command=limit)
        self.assertEqual(limited, (0, answer(a="1500", f=""), []))
        self.assertEqual(STORED.read_bytes(), content[:1000001])
        self.assertFalse(harness.PID_FILE.exists())

    def test_memory_is_flat_and_one_socket_may_be_both_streams(self):
        harness.install_config(b'<c><mtu x="' + b"x" * (3 << 20) + b'">1500</mtu></c>')
        peaks = []
        for size in (1 << 20, 64 << 20):
            body = FIELD.replace(b"text()", b"@x") * 400 + FILE + b"\r\n--Xy" * (size // 6)
            client, both = socket.socketpair()
            process = harness.start("POST", stdin=both, CONTENT_TYPE=MULTIPART,
                                    CONTENT_LENGTH=str(len(body + END)),
                                    command=("sh", "-c", f"exec {harness.QUERY} >&0"))
            both.close()
            client.sendall(body)
            harness.wait_for(lambda: STORED.stat().st_size > size - 100)
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
            peaks.append(int(status.split("VmHWM:")[1].split()[0]))
            self.assertIn("NoNewPrivs:\t1", status)
            client.sendall(END)
            self.assertEqual(client.makefile("rb").read(), answer(a="x" * (3 << 20), f=""))
            process.communicate()
        self.assertLess(peaks[1], peaks[0] + 512, "kilobytes")
