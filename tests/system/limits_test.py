"""Requests that want to take everything, and a handler that has next to nothing."""
import concurrent.futures
import pathlib
import unittest

import harness
from harness import QUERY, answer, install_config, request

PID_FILE = pathlib.Path("/run/query.pid")
ERROR_ANSWER = harness.JSON_HEADER + b'{"error" : true, "data" : {}}'
MULTIPART = "multipart/form-data; boundary=X"


def document(copies):
    text = (harness.EXAMPLES / "config.xml").read_bytes().partition(b"?>")[2]
    return b"<c>" + text * copies + b"</c>"


def ask(body, content_type="", **options):
    status, output, log = request("POST", body=body, CONTENT_TYPE=content_type, CONTENT_LENGTH=str(len(body)), **options)
    return status, output, [text for priority, text in log if priority == 3]


@unittest.skipUnless(harness.BOUNDED, "an emulator, or a program with AddressSanitizer, is not bounded in memory")
class Memory(unittest.TestCase):
    def test_hostile_requests(self):
        install_config(document(16))
        for name, body, content_type in (
                ("node sets", b"k=//node()" + b"/following::node()/preceding::node()" * 60, ""),
                ("values", b"&".join(b"%d=/" % number for number in range(18000)), ""),
                ("names", b"&".join(b"%x=" % number for number in range(2_000_000)), ""),
                ("text", b'--X\r\nname="a"\r\n\r\n' + bytes(150 << 20), MULTIPART)):
            with self.subTest(name):
                self.assertEqual(ask(body, content_type), (255, b"", ["  main(): Out of memory."]))
                self.assertFalse(PID_FILE.exists())

    def test_large_documents(self):
        install_config(document(256))
        status, output, _ = ask(b"&".join(b"%d=//rule[%d]/@id" % (number, number % 9) for number in range(1000)))
        self.assertEqual((status, output.count(b'" : "10"')), (0, 111))
        install_config(b"<c>" + b"<v/>" * (8 << 20) + b"</c>")
        self.assertEqual(ask(b"k=v")[:2], (0, ERROR_ANSWER))
        harness.CONFIG.unlink()
        harness.CONFIG.mkdir()
        self.addCleanup(harness.CONFIG.rmdir)
        status, output, log = ask(b"k=v")
        self.assertEqual((status, output, len(log)), (0, ERROR_ANSWER, 2))

    def test_little_memory_gives_no_wrong_answer(self):
        install_config(document(16))
        query = "a=(//dns)[1]&b=//rule[1]/@id|//hostname/@*|//mtu/text()&c=//location/.."

        def outcome(kibibytes):
            process = harness.start("GET", query, command=("prlimit", f"--as={kibibytes << 10}", QUERY))
            return process.communicate()[0], process.returncode
        right = outcome(1 << 20)
        self.assertIn(b"10.4.0.3", right[0])
        with concurrent.futures.ThreadPoolExecutor(32) as pool:
            outcomes = list(pool.map(outcome, range(1152, 8192, 16)))
        self.assertEqual(outcomes[-1], right)
        self.assertIn((ERROR_ANSWER, 0), outcomes)
        for output, status in outcomes:
            self.assertIn((output, status), (right, (ERROR_ANSWER, 0), (b"", status or 1)))
        self.assertFalse(PID_FILE.exists())


class Process(unittest.TestCase):
    def setUp(self):
        install_config()

    def test_processor_time(self):
        outcome = ask(b"k=//*[//*[//*[//*[//x]]]]", command=("prlimit", "--cpu=1:", QUERY))
        self.assertEqual(outcome, (255, b"", ["  main(): Processor time is used up."]))

    def test_closed_streams(self):
        for redirection, outcome in (("<&-", (255, b"", ["  main(): CGI parse failed."])),
                                     (">&-", (255, b"", ["  main(): Unable to write response."])),
                                     ("2>&-", (0, answer(a="gateway-7"), []))):
            body = b'--X\r\nname="a"\r\n\r\n//hostname/text()\r\n--X--\r\n'
            command = "sh", "-c", f"exec {QUERY} {redirection}"
            self.assertEqual(ask(body, MULTIPART, command=command), outcome, redirection)

    @unittest.skipIf(harness.EMULATOR, "the emulator shows the process with the arguments it was started with")
    def test_arguments_name_nobody(self):
        other = pathlib.Path("/run/sshd.pid")
        other.write_text("1")
        log = request("GET", "", command=(QUERY, "x y", "/x/sshd"))[2]
        self.assertTrue(log[0][1].endswith(" to pidfile '/var/run/query.pid'"), log)
        self.assertEqual(other.read_text(), "1")
