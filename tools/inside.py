"""How tools that use the tests' harness start."""
import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def harness(program):
    """The harness, inside the sandbox and with that handler; restarts the tool there first."""
    program = program.resolve(strict=True)
    if "KESTO_QUERY" not in os.environ:
        sandbox = sys.executable, ROOT / "tools/sandbox", "--keep", ROOT, "--keep", program.parent, "--"
        os.execve(sys.executable, [*sandbox, sys.executable, *sys.argv],
                  dict(os.environ, KESTO_SOURCE=str(ROOT), KESTO_QUERY=str(program)))
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(ROOT / "tests/system"))
    import harness as tests_harness
    return tests_harness
