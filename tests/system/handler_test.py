"""The handler as it ships: its request flow, and its answers through a real web server."""
import os
import pathlib
import subprocess
import unittest

import harness
from harness import LOG, answer, encoded, install_config, request

PID_FILE = pathlib.Path("/run/query.pid")
ERROR_ANSWER = harness.JSON_HEADER + b'{"error" : true, "data" : {}}'
RETRYING = f"  main(): Failed to parse config ({harness.CONFIG}): Error reading end tag.. Retrying..."
GIVING_UP = f"  main(): Unable to parse config file ({harness.CONFIG}): Error reading end tag.."


def wait_for_all(paths):
    harness.wait_for(lambda: all(path.exists() for path in paths))


def errors(log):
    return [text for priority, text in log if priority == 3]


class Flow(unittest.TestCase):
    def setUp(self):
        install_config()

    def test_answers_and_cleans_up(self):
        status, output, log = request("GET", encoded(b="dns/server[2]/@priority", a="//hostname/text()"))
        self.assertEqual((status, output), (0, answer(a="gateway-7", b="2")))
        self.assertEqual([priority for priority, _ in log], [5])
        self.assertRegex(log[0][1], r"^  cPidFile::WriteFile\(\): Writing pid \d+ to pidfile '/var/run/query.pid'$")
        self.assertFalse(PID_FILE.exists())
        self.assertEqual(request()[:2], (0, answer()))

    def test_failed_requests_write_nothing(self):
        for method in ("HEAD", "Get", ""):
            self.assertEqual(request(method, "a=/"), (255, b"", [(3, "  main(): CGI parse failed.")]))
        harness.CONFIG.unlink()
        status, output, log = request("GET", "a=/")
        self.assertEqual((status, output), (255, b""))
        self.assertEqual(errors(log), [f"  main(): Config file ({harness.CONFIG}) is missing or not readable."])
        self.assertFalse(PID_FILE.exists())

    def test_broken_document_gets_a_second_chance(self):
        install_config(b"<c><v>1</c>")
        status, output, log = request("GET", "a=v")
        self.assertEqual((status, output, errors(log)), (0, ERROR_ANSWER, [RETRYING, GIVING_UP]))

        process = harness.start("GET", "a=v/text()")
        harness.wait_for(lambda: RETRYING in errors(LOG.take()))
        install_config(b"<c><v>1</v></c>")
        self.assertEqual((process.communicate()[0], process.returncode), (answer(a="1"), 0))
        self.assertEqual(errors(LOG.take()), [])

    def test_live_duplicate_is_only_logged(self):
        with harness.named_process("query", "sleep", "1000") as other:
            PID_FILE.write_text(str(other.pid))
            status, output, log = request("GET", "a=//hostname/text()")
            self.assertEqual((status, output), (0, answer(a="gateway-7")))
            self.assertEqual(log, [(3, "  cPidFile::cPidFile(): Found another instance of process running "
                                       f"(PROCESS: query, PID: {other.pid})")])
            self.assertEqual(PID_FILE.read_text(), str(other.pid))
        PID_FILE.unlink()

    def test_full_standard_output_is_reported(self):
        with open("/dev/full", "wb") as full:
            status = subprocess.run([harness.QUERY], stdout=full, env={"REQUEST_METHOD": "GET"}).returncode
        self.assertEqual((status, errors(LOG.take())), (255, ["  main(): Unable to write response."]))


class Peers(unittest.TestCase):
    def setUp(self):
        install_config()
        harness.wait_for(harness.helpers_gone)

    def test_both_get_the_signal_for_failed_requests_too(self):
        names = ("brolvex", "tamsorin")
        ready, marks = ([pathlib.Path(f"/tmp/{what}.{name}") for name in names] for what in ("ready", "got"))
        loop = 'trap "> /tmp/got.$0" USR2; > /tmp/ready.$0; while :; do sleep 0.01; done'
        with harness.named_process("brolvex", "bash", "-c", loop, "brolvex"), \
                harness.named_process("tamsorin", "bash", "-c", loop, "tamsorin"):
            wait_for_all(ready)
            for method, status in (("GET", 0), ("HEAD", 255)):
                self.assertEqual(request(method)[0], status)
                wait_for_all(marks)
                for mark in marks:
                    mark.unlink()

    def test_response_ends_while_killall_still_runs(self):
        folder = pathlib.Path("/tmp/slow")
        folder.mkdir()
        killall = folder / "killall"
        killall.write_text('#!/bin/sh\nfds=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2)\n'
                           'echo "$fds" > /tmp/slow/fds.$3; env > /tmp/slow/env.$3; mv /tmp/slow/fds.$3 /tmp/slow/at.$3\n'
                           'read line < /tmp/slow/gate; > /tmp/slow/end.$3\n')
        killall.chmod(0o755)
        os.mkfifo(folder / "gate")
        process = harness.start("GET", "", PATH=f"{folder}:{os.environ['PATH']}", HTTP_X="() { :;}", SERVER_PORT="1")
        self.assertEqual(process.communicate()[0], answer())
        started = [folder / "at.brolvex", folder / "at.tamsorin"]
        wait_for_all(started)
        for path in started:
            self.assertEqual(path.read_text(), "/dev/null\n" * 3)
            names = {line.partition("=")[0] for line in (folder / f"env{path.suffix}").read_text().splitlines()}
            self.assertLessEqual(names - {"OLDPWD", "PWD", "SHLVL", "_"}, {"PATH", "SERVER_PORT"})
        ended = [folder / "end.brolvex", folder / "end.tamsorin"]
        self.assertFalse(any(path.exists() for path in ended))
        with open(folder / "gate", "w", buffering=1) as gate:
            gate.write("go\ngo\n")
            wait_for_all(ended)


if __name__ == "__main__":
    unittest.main()
