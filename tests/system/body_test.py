"""Request bodies: what clients send, what they break off, and what the file system refuses."""
import os
import pathlib
import subprocess
import unittest

import harness
from harness import LOG, answer, install_config, post

URL_ENCODED = "application/x-www-form-urlencoded"
MULTIPART = "multipart/form-data; boundary=XyZ"
FIELD = b'--XyZ\r\nContent-Disposition: form-data; name="a"\r\n\r\n//mtu[. = 1500]/text()\r\n'
END = b"--XyZ--\r\n"


def file_part(name, content):
    return (b'--XyZ\r\nContent-Disposition: form-data; name="f"; filename="' + name.encode() +
            b'"\r\nContent-Type: application/octet-stream\r\n\r\n' + content + b"\r\n")


def start_post(length, kind=MULTIPART):
    return harness.start("POST", stdin=subprocess.PIPE, CONTENT_TYPE=kind, CONTENT_LENGTH=str(length))


def send(process, data):
    process.stdin.write(data)
    process.stdin.flush()


class Bodies(unittest.TestCase):
    def setUp(self):
        install_config()

    def test_answers_while_the_sender_stays_connected(self):
        for kind, body in ((URL_ENCODED, b"a=//hostname/text()"),
                           (MULTIPART, FIELD.replace(b"//mtu[. = 1500]", b"//hostname") + END)):
            process = start_post(len(body), kind)
            stat = pathlib.Path(f"/proc/{process.pid}/stat")
            harness.wait_for(lambda: stat.read_text().split()[2] == "S")  # asleep, not asking again and again
            send(process, body)
            self.assertEqual(process.stdout.read(), answer(a="gateway-7"))
            self.assertEqual(process.wait(), 0)
            process.stdin.close()
            process.stdout.close()

    def test_client_breaks_off(self):
        LOG.take()
        process = start_post(1000000)
        send(process, FIELD + file_part("broken.bin", b"12345"))
        stored = pathlib.Path("/tmp/broken.bin")
        harness.wait_for(lambda: stored.exists() and stored.read_bytes() == b"12345")
        self.assertEqual((process.communicate()[0], process.returncode), (b"", 255))
        self.assertEqual([text for _, text in LOG.take()[-2:]],
                         ["ParseMultipartData - returning 0", "  main(): CGI parse failed."])
        self.assertEqual(stored.read_bytes(), b"12345")

    def test_absurd_lengths(self):
        for kind, body in ((URL_ENCODED, b"a=1"), (MULTIPART, FIELD + END)):
            for length in ("-1", "99999999999999999999", "0", "x", "", (1 << 32) + len(body)):
                self.assertEqual(post(body, kind, length)[:2], (255, b""), (kind, length))

    def test_disk_full_in_the_middle_of_an_upload(self):
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "tmpfs", "/tmp"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/tmp"], check=True)
        content = os.urandom(3 << 20)
        status, output, _ = post(FIELD + file_part("big.bin", content) + END, MULTIPART)
        self.assertEqual((status, output), (0, answer(a="1500", f="")))
        stored = pathlib.Path("/tmp/big.bin").read_bytes()
        self.assertTrue(stored and content.startswith(stored))

    def test_memory_is_flat(self):
        peaks = []
        for size in (1 << 20, 64 << 20):
            body = FIELD * 400 + file_part("flat.bin", b"\r\n--Xy" * (size // 6))
            process = start_post(len(body + END))
            send(process, body)
            stored = pathlib.Path("/tmp/flat.bin")
            harness.wait_for(lambda: stored.stat().st_size > size - 100)
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
            peaks.append(int(status.split("VmHWM:")[1].split()[0]))
            self.assertEqual(process.communicate(END)[0], answer(a="1500", f=""))
            stored.unlink()
        self.assertLess(peaks[1], peaks[0] + 512, "kilobytes")


if __name__ == "__main__":
    unittest.main()
