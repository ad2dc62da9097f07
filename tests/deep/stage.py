"""What the stages of the deep run share: places, builds, and the account of what was found.

A stage prints its results on the standard output, one line each, which begin with its name; what a person
needs to know goes to the standard error. Its exit status is 0 only when it did all that it is for and found
nothing wrong.
"""
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
WORK = ROOT / "build" / "deep"
JOBS = os.cpu_count() or 2


class Stage:
    """The account of one stage."""

    def __init__(self, name):
        self.name = name
        self.faults = 0
        self.started = time.monotonic()

    def result(self, *words):
        print(self.name, *words, flush=True)

    def say(self, text):
        print(f"{self.name}: {text}", file=sys.stderr, flush=True)

    def fault(self, text):
        self.faults += 1
        self.say(f"FAULT: {text}")

    def check(self, good, text):
        """Whether `good`; a fault with `text` otherwise."""
        if not good:
            self.fault(text)
        return good

    def finish(self):
        """The exit status, after the last result lines."""
        self.result("faults", self.faults)
        self.result("seconds", round(time.monotonic() - self.started))
        return 1 if self.faults else 0


def run_quietly(command, log, **options):
    """Runs a command with all its words in the file `log`; whether it succeeded."""
    log.parent.mkdir(parents=True, exist_ok=True)
    with open(log, "ab") as words:
        return subprocess.run(command, stdout=words, stderr=subprocess.STDOUT, cwd=ROOT, check=False,
                              **options).returncode == 0


def use_ninja():
    """As the scripts do: ninja where there is one."""
    if "CMAKE_GENERATOR" not in os.environ and subprocess.run(
            ["sh", "-c", "command -v ninja"], stdout=subprocess.DEVNULL, check=False).returncode == 0:
        os.environ["CMAKE_GENERATOR"] = "Ninja"


def build(folder, log, targets, options):
    """Configures `folder` with `options` and builds `targets` there; whether that worked."""
    log.unlink(missing_ok=True)
    configure = ["cmake", "-S", str(ROOT), "-B", str(folder), *options]
    compile_all = ["cmake", "--build", str(folder), "-j", str(JOBS), "--target", *targets]
    return run_quietly(configure, log) and run_quietly(compile_all, log)


def build_release(stage, targets):
    """Builds `targets` in the release build and gives its folder; ends the stage where that fails."""
    use_ninja()
    log = WORK / stage.name / "build-release.log"
    folder = ROOT / "build" / "release"
    if not build(folder, log, targets, ["--preset", "release"]):
        stage.fault(f"the release build failed: see {log}")
        sys.exit(stage.finish())
    return folder
