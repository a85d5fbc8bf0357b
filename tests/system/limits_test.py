"""Requests that try to take everything, and a handler that has next to nothing."""
import concurrent.futures
import os
import pathlib
import subprocess
import unittest

import harness
from harness import ERROR_ANSWER, PID_FILE, QUERY, answer, install_config, post

MULTIPART = "multipart/form-data; boundary=X"


def document(copies):
    example = (harness.EXAMPLES / "config.xml").read_bytes().partition(b"?>")[2]
    return b"<c>" + example * copies + b"</c>"


@unittest.skipUnless(harness.LIMITED, "no limit under an emulator or with AddressSanitizer")
class Memory(unittest.TestCase):
    def test_hostile_requests(self):
        install_config(document(16))
        for name, body, content_type in (
                ("node sets", b"k=//node()" + b"/following::node()/preceding::node()" * 60, ""),
                ("values", b"&".join(b"%d=/" % number for number in range(18000)), ""),
                ("names", b"&".join(b"%x=" % number for number in range(2_000_000)), ""),
                ("text", b'--X\r\nname="a"\r\n\r\n' + bytes(150 << 20), MULTIPART)):
            out_of_memory = 255, b"", ["  main(): Out of memory."]
            self.assertEqual(post(body, content_type), out_of_memory, name)
            self.assertFalse(PID_FILE.exists(), name)

    def test_large_documents(self):
        install_config(b"<c>" + b"<v/>" * (8 << 20) + b"</c>")
        self.assertRegex(str(post(b"k=v")), r'"error" : true.*: Out of memory. Retrying')
        harness.CONFIG.unlink()
        harness.CONFIG.mkdir()
        self.addCleanup(harness.CONFIG.rmdir)
        self.assertEqual(post(b"k=v")[:2], (0, ERROR_ANSWER))

    def test_no_document_is_refused_for_memory_it_does_not_need(self):
        text = b"x" * (12 << 20)
        install_config(b"<c><v>1</v><long>" + text + b"</long></c>")
        self.assertEqual(post(b"k=v/text()"), (0, answer(k="1"), []))

        interfaces = b'<interface name="eth0"><mtu>1500</mtu></interface>\n' * 123000
        whole = b"<c><v>1</v>" + interfaces + b"</c>"
        install_config(whole[:-1])
        process = harness.start("GET", "k=v/text()")
        harness.wait_for(lambda: harness.errors(harness.LOG.take()))
        install_config(whole)
        self.assertEqual((process.communicate()[0], process.returncode), (answer(k="1"), 0))

    def test_little_memory_gives_no_wrong_answer(self):
        install_config(document(16))

        def outcome(kibibytes):
            query = "a=(//dns)[1]&b=//rule[1]/@id|//hostname/@*|//mtu/text()&c=//location/.."
            command = "prlimit", f"--as={kibibytes << 10}", QUERY
            process = harness.start("GET", query, command=command)
            return process.communicate()[0], process.returncode
        right = outcome(1 << 20)
        self.assertIn(b"10.4.0.3", right[0])
        with concurrent.futures.ThreadPoolExecutor(32) as pool:
            step = int(os.environ.get("KESTO_STEP", 16))
            outcomes = list(pool.map(outcome, range(1152, 8192, step)))
        self.assertIn((ERROR_ANSWER, 0), outcomes)
        for output, status in outcomes:
            self.assertIn((output, status), (right, (ERROR_ANSWER, 0), (b"", status or 1)))
        self.assertEqual((outcomes[-1], PID_FILE.exists()), (right, False))


class Process(unittest.TestCase):
    def test_processor_time(self):
        install_config()
        limited = "prlimit", "--cpu=1:", QUERY
        used_up = 255, b"", ["  main(): Processor time is used up."]
        self.assertEqual(post(b"k=//*[//*[//*[//*[//x]]]]", command=limited), used_up, "evaluating")
        pathlib.Path("/tmp/sink").symlink_to("/dev/null")
        header = pathlib.Path("/tmp/header")
        header.write_bytes(b'--X\r\nname="f"; filename="sink"\r\n\r\n')
        with harness.running(["cat", header, "/dev/zero"], stdout=subprocess.PIPE) as client:
            parsing = post(None, MULTIPART, 1 << 62, stdin=client.stdout, command=limited)
        client.stdout.close()
        self.assertEqual(parsing, used_up, "parsing")

    def test_little_stack(self):
        install_config()
        nested = b"(" * 700 + b"//mtu/text()" + b")" * 700
        outcome = post(b"k=" + nested, command=("prlimit", "--stack=65536:", QUERY))
        self.assertEqual(outcome, (0, answer(k="1500"), []))

    def test_closed_streams_and_arguments(self):
        install_config()
        body = b'--X\r\nname="a"\r\n\r\n//hostname/text()\r\n--X--\r\n'
        foreign = pathlib.Path("/run/sshd.pid")
        foreign.write_text("1")
        # The emulator's process keeps the words that it was started with.
        words = "" if harness.EMULATOR else "x /x/sshd"
        for redirection, outcome in (("<&-", (255, b"", ["  main(): CGI parse failed."])),
                                     (">&-", (255, b"", ["  main(): Unable to write response."])),
                                     ("2>&-", (0, answer(a="gateway-7"), []))):
            command = "sh", "-c", f"exec {QUERY} {words} {redirection}"
            self.assertEqual(post(body, MULTIPART, command=command), outcome, redirection)
            self.assertEqual(foreign.read_text(), "1", "named by an argument")
