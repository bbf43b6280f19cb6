"""A copy of the checkout with a build of its own, in which faults are put and a folder's tests
run."""

import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
OUT = (ROOT / "out" / "mutants").resolve()
# Where the tests of a folder are not just those of tests/unit/FOLDER: targets, and ctest's -R.
TESTS = {
    # Mostly what the player and the shell keep there.
    "app": ([f"tests/unit/{folder}/all" for folder in ("app", "player", "shell")],
            "^(app|player|shell)$"),
    "probe": (["probe_test"], "^probe_test$"),
    "mediaprobe": (["mediaprobe", "mediaprobe_test", "probe_samples"],
                   "^(mediaprobe_test|check_(mediaprobe|pages|json|jobs|terminal))$"),
}
ADDRESS_SPACE = 6 << 30  # bytes; a fault may ask for all there is
# Beyond the end of an array or a span of the library's its assertions see what the sanitizers miss.
SANITIZERS = "-fsanitize=address,undefined -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS"
SWEEPS = "*/*"  # tests over many samples, which take long and notice least


def test_folders(folder):
    """Whose tests the folder is asked of."""
    places = [target.split("/")[2] for target in TESTS.get(folder, ([], ""))[0] if "/" in target]
    return places or [folder]


def processor_seconds():
    """What the programs that have ended took, which a busy machine does not change."""
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


class Tree:
    def __init__(self, name, folder, asan, flags=""):
        self.folder = folder
        self.path = OUT / name
        self.build = self.path / "out" / ("asan" if asan else "plain")
        self.scratch = self.path / "out" / "scratch"
        self.flags = "-O0 -w" + (f" {SANITIZERS}" if asan else "") + flags
        self.space = "unlimited" if asan else str(ADDRESS_SPACE)
        self.targets, self.tests = TESTS.get(folder, ([f"tests/unit/{folder}/all"], None))
        self.limit, self.cpu = 600.0, "unlimited"

    def update(self, instead=None):
        """Makes the copy the same as the checkout, but for the texts of `instead`, by path."""
        instead = instead or {}
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT,
                                check=True, capture_output=True, text=True).stdout.splitlines()
        names = {name for name in listed if (ROOT / name).is_file()}
        for name in names:
            source, copy = ROOT / name, self.path / name
            try:
                text = instead[name].encode() if name in instead else source.read_bytes()
                if not copy.is_file() or copy.read_bytes() != text:
                    copy.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(source, copy)
                    if name in instead:
                        copy.write_bytes(text)
            except FileNotFoundError:
                continue  # it went away meanwhile
        for top in self.path.iterdir():
            if top.name == "out":
                continue
            for path in [top] if top.is_file() else top.rglob("*"):
                if path.is_file() and str(path.relative_to(self.path)) not in names:
                    path.unlink()

    def call(self, *command, limit=600.0, cached=True, cwd=None, more=None, cpu="unlimited"):
        """The exit status and what was printed; None when it took too long. `cpu`: seconds of
        processor time for each program, which do not pass quicker on a busy machine."""
        environment = dict(os.environ, CCACHE_BASEDIR=str(self.path), CCACHE_NOHASHDIR="1",
                           LC_ALL="C.UTF-8", GTEST_FAIL_FAST="1", **(more or {}))
        if not cached:
            environment["CCACHE_DISABLE"] = "1"
        process = subprocess.Popen(["prlimit", f"--as={self.space}", "--core=0", f"--cpu={cpu}",
                                    *command],
                                   cwd=cwd or self.path, env=environment, text=True,
                                   errors="replace", stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True)
        try:
            printed = process.communicate(timeout=limit)[0]
            return process.returncode, printed
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return None, ""

    def make(self, cached=True, keep=1):
        jobs = len(os.sched_getaffinity(0))
        return self.call("ninja", "-C", str(self.build), f"-j{jobs}", f"-k{keep}", *self.targets,
                         limit=3600, cached=cached)

    def ctest(self, *options, **how):
        where = self.build / "tests" / "unit"
        if self.tests is None:
            where /= self.folder
        return self.call("ctest", "--test-dir", str(where), *options,
                         *(["-R", self.tests] if self.tests else []), **how)

    def test(self, gtest_filter="*"):
        return self.ctest("--output-on-failure", "--stop-on-failure", "--timeout",
                          str(int(self.limit)), limit=self.limit * 2, cpu=self.cpu,
                          more={"GTEST_FILTER": gtest_filter})

    def commands(self):
        """What ctest would start, and where."""
        _, printed = self.ctest("--show-only=json-v1")
        for test in json.loads(printed)["tests"]:
            where = [p["value"] for p in test["properties"] if p["name"] == "WORKING_DIRECTORY"]
            yield test["command"], where[0]

    def configure(self):
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        status, printed = self.call("cmake", "-S", ".", "-B", str(self.build), "-G", "Ninja",
                                    "-DCMAKE_BUILD_TYPE=None", f"-DCMAKE_CXX_FLAGS={self.flags}",
                                    *linker)
        if status != 0:
            sys.exit(f"mutants: the tree cannot be configured:\n{printed[-4000:]}")

    def prepare(self):
        self.path.mkdir(parents=True, exist_ok=True)
        self.update()
        self.configure()
        status, printed = self.make()
        if status != 0:
            sys.exit(f"mutants: the tree does not build:\n{printed[-4000:]}")

    def check(self):
        """That the tests pass without a fault, and how long they take."""
        began, used = time.monotonic(), processor_seconds()
        status, printed = self.test()
        if status != 0 or "No tests were found" in printed:
            sys.exit(f"mutants: the tests of {self.folder} fail without a fault:\n"
                     f"{printed[-4000:]}")
        # A busy machine may take far longer than now, but no more of a processor's time.
        self.limit = 120 + 20 * (time.monotonic() - began)
        self.cpu = 3 + int(5 * (processor_seconds() - used))

    def compiled(self):
        """The files below the folder that the tests are made of."""
        _, printed = self.call("ninja", "-C", str(self.build), "-t", "deps")
        found = set()
        for line in printed.splitlines():
            path = (self.build / line.strip()).resolve()
            if line.startswith(" ") and path.is_relative_to(self.path / self.folder):
                found.add(str(path.relative_to(self.path)))
        # Only what the folder's own tests are linked from.
        _, needed = self.call("ninja", "-C", str(self.build), "-t", "inputs", *self.targets)
        sources = {Path(os.path.normpath(self.build / n)) for n in needed.splitlines()}
        return sorted(n for n in found if n.endswith(".h") or (self.path / n) in sources)

    def ask(self, fault):
        """Builds with this one fault and runs the folder's tests."""
        path = self.path / fault["path"]
        sound = path.read_text()
        try:
            path.write_text(sound[:fault["start"]] + fault["put"] + sound[fault["end"]:])
            status, printed = self.make(cached=False)
            if status != 0:
                return "noticed" if "static assertion failed" in printed else "refused"
            for tests in (f"-{SWEEPS}", SWEEPS):
                status, _ = self.test(tests)
                if status != 0:
                    return "noticed"
            return "passed"
        finally:
            path.write_text(sound)
