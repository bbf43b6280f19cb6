"""All faults of a folder in one build (switches.py), and what the folder's tests say to each: of
the tests, those that reach it are run, the quickest first."""

import json
import os
import re
import shutil
import sys
import threading
from collections import defaultdict

from switches import Switched, faults_with_errors
from tree import OUT, ROOT, Tree, processor_seconds

ROUNDS = 40  # of building, leaving out what does not compile
FILTER_LENGTH = 100_000  # characters of a list of tests


class Test:
    """A test of a GoogleTest program, or a whole command."""

    def __init__(self, command, where, name=None):
        self.command, self.where, self.name = command, where, name
        self.seconds, self.reached = 0.0, set()


class Switchboard:
    def __init__(self, folder, asan, paths, faults, seconds, skip):
        """paths, faults: all of the folder; the number of each is its place, counted from 1. seconds:
        the most that the tests of one fault may take, as far as they took it without a fault. skip:
        a pattern of tests that are not asked."""
        self.tree = Tree("switched", folder, asan, f" -Wno-narrowing -I{ROOT}/tests/mutants")
        self.paths, self.faults = paths, dict(enumerate(faults, 1))
        self.names = {fault["name"]: number for number, fault in self.faults.items()}
        self.seconds, self.skip = seconds, skip
        self.store = OUT / f"{folder}.left_out.json"
        self.switched = {}
        self.tests = []
        self.local = threading.local()

    def prepare(self):
        self.tree.path.mkdir(parents=True, exist_ok=True)
        self.build()
        self.trace()

    def read(self):
        """What the last build of all left out: numbers of faults, and (path, name) of what is
        constexpr."""
        stored = json.loads(self.store.read_text()) if self.store.exists() else {}
        return ({self.names[n] for n in stored.get("faults", []) if n in self.names},
                {tuple(x) for x in stored.get("names", [])})

    def lay_out(self, left_out, kept):
        # A source without a fault may hold a constant of a type whose values are switched.
        of_path = {path: {} for path in self.paths if "constinit" in (ROOT / path).read_text()}
        for number, fault in self.faults.items():
            of_path.setdefault(fault["path"], {})[number] = fault["fault"]
        self.switched = {path: Switched((ROOT / path).read_text(), faults, left_out,
                                        {name for where, name in kept if where == path})
                         for path, faults in of_path.items()}

    def build(self):
        left_out, kept = self.read()
        for turn in range(ROUNDS):
            self.lay_out(left_out, kept)
            self.tree.update({path: one.text for path, one in self.switched.items()})
            if turn == 0:
                self.tree.configure()
            self.store.write_text(json.dumps({
                "faults": sorted(self.faults[n]["name"] for n in left_out), "names": sorted(kept)}))
            status, printed = self.tree.make(keep=0)
            if status == 0:
                break
            paths = {os.path.realpath(self.tree.path / path): path for path in self.switched}
            of_real = {real: self.switched[path] for real, path in paths.items()}
            numbers, names = faults_with_errors(printed, of_real, self.tree.build)
            if not numbers | names:
                (OUT / "switched.log").write_text(printed)
                sys.exit("mutants: an error that belongs to no fault; see out/mutants/switched.log")
            left_out |= numbers
            kept |= {(paths[real], name) for real, name in names}
        else:
            sys.exit("mutants: the faults do not build together")

    def trace(self):
        """Finds the tests, and which faults each of them reaches."""
        for command, where in self.tree.commands():
            with open(command[0], "rb") as program:
                is_gtest = len(command) == 1 and b"gtest_list_tests" in program.read()
            if not is_gtest:
                self.tests.append(Test(command, where))
                continue
            _, printed = self.tree.call(*command, "--gtest_list_tests", cwd=where)
            suite = ""
            for line in printed.splitlines():
                word = line.split("#")[0].strip()
                if line.startswith("  ") and not re.search(self.skip, suite + word):
                    self.tests.append(Test(command, where, suite + word))
                elif word.endswith("."):
                    suite = word
        file = self.scratch() / "trace"
        for test in self.tests:
            file.unlink(missing_ok=True)
            began = processor_seconds()
            test.seconds = 600.0
            if self.run([test], 0, {"MUTANT_TRACE": str(file)}) != 0:
                sys.exit(f"mutants: {test.command[0]} {test.name or ''} fails without a fault")
            test.seconds = processor_seconds() - began
            # The tests of a program start together, and only once: what it tells of itself counts.
            told = re.search(r"\((\d+) ms total\)", self.local.printed)
            if test.name and told:
                test.seconds = int(told.group(1)) / 1000
            reached = file.read_bytes() if file.exists() else b""
            test.reached = {i for i, byte in enumerate(reached) if byte}
        self.tests.sort(key=lambda test: test.seconds)

    def scratch(self):
        """A folder for the temporary files of a thread's tests."""
        if not hasattr(self.local, "folder"):
            self.local.folder = OUT / "scratch" / str(threading.get_ident())
        shutil.rmtree(self.local.folder, ignore_errors=True)
        self.local.folder.mkdir(parents=True)
        return self.local.folder

    def run(self, tests, number, more=None):
        """The exit status of tests of one program. A fault may make it run for ever."""
        seconds = sum(test.seconds for test in tests)
        command = list(tests[0].command)
        if tests[0].name:
            command += ["--gtest_brief=1", "--gtest_filter=" + ":".join(t.name for t in tests)]
        folder = self.local.folder if more else self.scratch()
        environment = {"MUTANT": str(number), "TMPDIR": str(folder), **(more or {})}
        status, self.local.printed = self.tree.call(
            *command, limit=600, cpu=3 + int(5 * seconds), cwd=tests[0].where, more=environment)
        return status

    def portions(self, number):
        """The tests that reach a fault: a second of the quickest, then the others."""
        waiting = [test for test in self.tests if number in test.reached]
        for most in (1.0, self.seconds):
            programs, spent, length = defaultdict(list), 0.0, 0
            while waiting and (spent == 0 or spent + waiting[0].seconds <= most):
                test = waiting.pop(0)
                spent += test.seconds
                length += len(test.name or "") + 1
                key = tuple(test.command) if test.name else id(test)
                programs[key, length // FILTER_LENGTH].append(test)
            yield from programs.values()

    def has(self, fault):
        number = self.names[fault["name"]]
        return any(number in one.numbers for one in self.switched.values())

    def ask(self, fault):
        """"noticed", "passed", or "unreached" when no test comes to the place."""
        number, result = self.names[fault["name"]], "unreached"
        for tests in self.portions(number):
            result = "passed"
            if self.run(tests, number) != 0:
                return "noticed"
        return result
