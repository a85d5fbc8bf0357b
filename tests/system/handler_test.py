"""The handler as it ships: its request flow, step by step."""
import os
import pathlib
import re
import shutil
import unittest

import harness
from harness import ERROR_ANSWER, LOG, PID_FILE, answer, errors, install_config, request

FAULT = f"({harness.CONFIG}): Error reading end tag.."
RETRYING = f"  main(): Failed to parse config {FAULT} Retrying..."
GIVING_UP = f"  main(): Unable to parse config file {FAULT}"

ONE_CORE = "taskset", "-c", str(min(os.sched_getaffinity(0))), harness.QUERY


class Flow(unittest.TestCase):
    def setUp(self):
        install_config()

    def test_answers_and_only_logs_a_live_duplicate(self):
        names = "query", "other"
        sleeping = ([shutil.copy("/bin/sleep", f"/home/{name}"), "1000"] for name in names)
        live, other = (self.enterContext(harness.running(command)).pid for command in sleeping)
        met = [(3, "  cPidFile::cPidFile(): Found another instance of process running "
                f"(PROCESS: query, PID: {live})")]
        written = [(5, "  cPidFile::WriteFile(): Writing pid PID to pidfile '/var/run/query.pid'")]
        for stored, logged in (("", written), ("9" * 20, written), ("4194305", written),
                               (str(other), written), (f"  {live}abc rest", met), ("word", []),
                               ("0", []), ("\n", []), ("+4194305", []), (" -1", []),
                               (" " * 55 + "4194305", written), (" " * 56 + "4194305", []),
                               (" " * 63 + "4194305", [])):
            PID_FILE.write_text(stored)
            status, output, log = request("GET", "b=dns/server[2]/@priority&a=//hostname/text()")
            self.assertEqual((status, output), (0, answer(a="gateway-7", b="2")), stored)
            log = [(level, re.sub(r"pid \d+", "pid PID", text)) for level, text in log]
            self.assertEqual(log, logged, stored)
            left = PID_FILE.exists() and PID_FILE.read_text()
            self.assertEqual(left, logged is not written and stored)
        PID_FILE.unlink()
        os.mkfifo(PID_FILE)
        self.assertEqual(request(), (0, answer(), []))
        self.assertTrue(PID_FILE.is_fifo())
        PID_FILE.unlink()
        self.assertEqual(request()[:2], (0, answer()))

    def test_failed_requests_write_nothing(self):
        for method in ("HEAD", "Get", ""):
            refused = 255, b"", [(3, "  main(): CGI parse failed.")]
            self.assertEqual(request(method, "a=/"), refused, method)
        harness.CONFIG.unlink()
        status, output, log = request("GET", "a=/")
        missing = f"  main(): Config file ({harness.CONFIG}) is missing or not readable."
        self.assertEqual((status, output, errors(log)), (255, b"", [missing]))
        self.assertFalse(PID_FILE.exists())

    def test_broken_document_gets_a_second_chance(self):
        install_config(b"<c><v>1</c>")
        status, output, log = request("GET", "a=v")
        self.assertEqual((status, output, errors(log)), (0, ERROR_ANSWER, [RETRYING, GIVING_UP]))
        harness.CONFIG.unlink()
        os.mkfifo(harness.CONFIG)
        self.assertEqual(request("GET", "a=v")[:2], (0, ERROR_ANSWER))
        harness.CONFIG.unlink()
        install_config(b"<c><v>1</c>")

        process = harness.start("GET", "a=v/@of")
        harness.wait_for(lambda: RETRYING in errors(LOG.take()))
        self.assertEqual(PID_FILE.read_text(), str(process.pid))
        PID_FILE.write_text("1")  # now another instance's
        install_config(b"<c><v of='1\r\n2\r'/></c>\0<")
        self.assertEqual((process.communicate()[0], process.returncode), (answer(a="1\\n2\\n"), 0))
        self.assertEqual((errors(LOG.take()), PID_FILE.read_text()), ([], "1"))
        PID_FILE.unlink()

    def test_both_peers_get_a_signal_that_no_response_waits_for(self):
        killall = pathlib.Path("/tmp/killall")
        killall.write_text("#!/bin/sh\necho $* $(readlink /proc/$$/fd/[0-29]) >/tmp/part.$3\n"
                           "echo $(tr '\\0' '\\n' </proc/$$/environ | sort) $PPID >>/tmp/part.$3\n"
                           "mv /tmp/part.$3 /tmp/told.$3\nexec sleep 1000\n")
        killall.chmod(0o755)
        seen = {"PATH": "/tmp:/usr/bin:/bin", "TZ": "UTC", "LC_ALL": "C", "BASH_ENV": "/x",
                "HTTP_X": "y", "LOCAL_URI": "/y", "LANGX": "y"}

        def check_told(parent):
            for name in ("brolvex", "tamsorin"):
                told = pathlib.Path(f"/tmp/told.{name}")
                harness.wait_for(told.exists)
                kept = f"LC_ALL=C PATH={seen['PATH']} PWD=.+ SHLVL=\\d TZ=UTC _=\\S+"
                streams = "/dev/null /dev/null /dev/null"
                self.assertRegex(told.read_text(),
                                 f"^-q -USR2 {name} {streams}\n{kept} {parent}\n$")
                told.unlink()
        # Loading it outlasts the start of a shell.
        install_config(b"<c>" + b"<v/>" * (2000 if harness.EMULATOR else 20000) + b"</c>")
        leaking = "sh", "-c", 'exec "$0" 9</dev/zero', harness.QUERY
        for method, status, command, parent in (
                ("GET", 0, leaking, r"\d+"), ("HEAD", 255, ONE_CORE, 1),
                ("GET", 0, ONE_CORE, 1)):  # init: the handler has ended
            with self.subTest(method, command=command):
                self.assertEqual(request(method, command=command, **seen)[0], status)
                check_told(parent)
        process = harness.start("POST", CONTENT_LENGTH="5", command=ONE_CORE, **seen)
        check_told(process.pid)  # does not wait for the body
        self.assertEqual(process.communicate(b"a=//b")[0], answer(a=""))

    @unittest.skipUnless(harness.OTHER_USERS, "only root may have a shell keep the processor")
    def test_no_child_that_waits_for_the_processor_holds_the_response(self):
        bash, done, ended = (pathlib.Path("/tmp", name) for name in ("bash", "done", "ended"))
        # Once the handler has ended, the first shell keeps the processor, for some seconds at most.
        bash.write_text("#!/bin/sh\n"
                        "while [ $PPID != 1 ] && [ -e /proc/$PPID ]; do sleep 0.01; done\n"
                        f"until [ -e {done} ] || [ ${{turn:=0}} = 3000000 ]; do\n"
                        f"turn=$((turn + 1))\ndone\n>{ended}\n")
        bash.chmod(0o755)
        self.addCleanup(done.touch)
        command = "chrt", "-f", "1", *ONE_CORE
        response = request("GET", "a=//mtu[. = 1500]/text()", command=command, PATH="/tmp:/bin")
        self.assertEqual((*response[:2], ended.exists()), (0, answer(a="1500"), False))
