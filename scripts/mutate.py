#!/usr/bin/env python3
"""Counts how many small faults in src/ the tests notice.

Makes one mutation at a time in a private copy of the tree, build/mutate, rebuilds the library and
runs the test programs. A mutant is KILLED if a test fails, crashes or takes too long, and SURVIVED
if all pass. The sample is fixed by the seed and the mutated lines, so editing one file leaves the
sample of the others. Mutants listed in scripts/mutate_equivalent.txt are left out: no input can
show them.
"""
import argparse
import collections
import concurrent.futures as futures
import fcntl
import fnmatch
import hashlib
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
from pathlib import Path

sys.dont_write_bytecode = True
import mutations  # noqa: E402


class Broken(Exception):
    """The run cannot go on."""


def read_equivalents(path):
    """The mutants known to be equivalent: blocks of a file, a -line, +lines or + *, the reason."""
    known = set()
    if path.exists():
        for block in re.split(r"\n\s*\n", path.read_text()):
            lines = [line for line in block.splitlines() if not line.startswith("#")]
            after = [line[1:].strip() for line in lines if line[0] == "+"]
            if len(lines) > len(after) + 2 and after and lines[1][0] == "-":
                known |= {(lines[0].strip(), lines[1][1:].strip(), text) for text in after}
            elif lines:
                raise Broken(f"{path}: not a block of file, -line, +lines and reason:\n{block}")
    return known


def choose(root, options):
    """The sampled mutants in the order of their places, and the number of equivalent ones."""
    pattern, line = options.files or f"src/{options.room or '*'}/*", None
    if options.line:
        pattern, _, line = options.line.rpartition(":")
    files = sorted(str(f.relative_to(root)) for f in (root / "src").rglob("*")
                   if f.suffix in (".cpp", ".h") and fnmatch.fnmatch(f.relative_to(root), pattern))
    found = [m for file in files
             for m in mutations.mutants_of(root, file) if line in (None, str(m.line))]
    known = read_equivalents(root / "scripts" / "mutate_equivalent.txt")
    kept = [m for m in found if not {(m.file, m.before, m.after), (m.file, m.before, "*")} & known]
    if not kept:
        raise Broken(f"no mutants in '{pattern}'{' at line ' + line if line else ''}")

    def rank(mutant):
        key = f"{options.seed} {mutant.file} {mutant.before} {mutant.after}"
        return hashlib.sha256(key.encode()).digest()

    count = options.count if options.count is not None else 0 if line else 100
    sample = sorted(kept, key=rank)[:count or None]
    return sorted(sample, key=lambda m: (m.file, m.start)), len(found) - len(kept)


class Workshop:
    """A private copy of the tree with a build folder of its own, and the processes run in it."""

    def __init__(self, root, index, gtest_filter):
        self.tree = root / "build" / "mutate" / str(index) / "tree"
        self.build = self.tree.parent / "build"
        self.filter = gtest_filter
        self.env = {"CCACHE_BASEDIR": str(root), **os.environ}
        self.cpu_limit, self.programs = 600, []
        self.process, self.stopped = None, False
        self.copy(root)

    def copy(self, root):
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=root,
                                check=True, capture_output=True, text=True).stdout.splitlines()
        wanted = {file for file in listed if (root / file).is_file()}
        for old in [f for f in self.tree.rglob("*") if f.is_file()]:
            if str(old.relative_to(self.tree)) not in wanted:
                old.unlink()
        for file in wanted:  # Only what differs, for the sake of the build.
            content, copy = (root / file).read_bytes(), self.tree / file
            if not copy.exists() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(content)

    def run(self, command, timeout, **env):
        """The exit code and the output; the code is None if the time ran out."""
        if self.stopped:
            raise Broken("stopped")
        self.process = subprocess.Popen(
            command, env={**self.env, **env}, text=True, errors="replace", preexec_fn=os.setpgrp,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        try:
            output, _ = self.process.communicate(timeout=timeout)
        except subprocess.TimeoutExpired:
            self.kill()
            return None, self.process.communicate()[0]
        if self.stopped:
            raise Broken("stopped")
        return self.process.returncode, output

    def kill(self):
        if self.process and self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)

    def make(self, *targets, **env):
        return self.run(["cmake", "--build", self.build, "--parallel", "1", "--target", *targets],
                        1800, **env)

    def prepare(self):
        """Configures, builds everything and passes the tests once without a mutation."""
        off = [f"-DSCANLINE_{what}=OFF" for what in
               ("BUILD_BENCHMARKS", "BUILD_EXAMPLES", "BUILD_PROGRAM", "BUILD_PYTHON", "BUILD_DOCS",
                "INSTALL", "WARNINGS")]
        if shutil.which("ccache"):
            off.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        code, output = self.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                                 "-DCMAKE_BUILD_TYPE=None",
                                 "-DCMAKE_CXX_FLAGS=-O1 -DNDEBUG -D_GLIBCXX_ASSERTIONS", *off], 600)
        for lists in sorted((self.tree / "tests").rglob("CMakeLists.txt")):
            folder = self.build / lists.parent.relative_to(self.tree)
            names = re.findall(r"add_executable\(\s*(scanline\w*_tests)\b", lists.read_text())
            self.programs += [folder / name for name in names]
        if code == 0:
            code, output = self.make("scanline", *(p.name for p in self.programs))
        if code != 0:
            raise Broken(f"the tree does not build:\n{output[-3000:]}")
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        if fault := self.test():
            raise Broken(f"the tests fail without a mutation: {fault}")
        after = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        self.cpu_limit = 10 + 3 * round(after - before)

    def test(self):
        """What noticed the fault first, a test or a program; or None."""
        ran = 0
        for program in self.programs:
            limits = f'ulimit -c 0 -t {self.cpu_limit} -v 8000000; exec "$@"'
            code, output = self.run(
                ["sh", "-c", limits, "sh", program, "--gtest_fail_fast", "--gtest_color=no",
                 f"--gtest_filter={self.filter}"], 10 * self.cpu_limit)
            ran += int((re.search(r"Running (\d+) test", output) or [0, 0])[1])
            if code != 0:
                names = re.findall(r"\[ (?: FAILED |RUN     ) \] (\S+)", output)
                how = {None: "time ", -signal.SIGXCPU: "time "}.get(code, "")
                return how + (names[-1] if names else f"{program.name}, exit {code}")
        if ran == 0:
            raise Broken(f"no tests match '{self.filter}'")

    def judge(self, mutant):
        path = self.tree / mutant.file
        source = path.read_text()
        path.write_text(source[:mutant.start] + mutant.text + source[mutant.end:])
        try:
            code, _ = self.make("scanline", CCACHE_READONLY="1")
            if code != 0:
                return "not compiled", None
            fault = self.test()
            return ("killed", fault) if fault else ("SURVIVED", None)
        finally:
            path.write_text(source)


def report(mutant, verdict, fault):
    print(f"{verdict:<12}  {mutant.file}:{mutant.line}" + (f"  by {fault}" if fault else ""))
    print(f"  - {mutant.before}\n  + {mutant.after}", flush=True)


def print_table(counts, equivalent):
    print(f"\n{'room':<14}{'mutants':>8}{'killed':>8}{'survived':>10}{'per cent':>10}")
    total = sum(counts.values(), collections.Counter())
    for room, count in [*sorted(counts.items()), ("all", total)]:
        mutants = count["killed"] + count["SURVIVED"]
        share = f"{100 * count['killed'] / mutants:.1f}" if mutants else "-"
        print(f"{room:<14}{mutants:>8}{count['killed']:>8}{count['SURVIVED']:>10}{share:>10}")
    print(f"not compiled: {total['not compiled']}; left out as equivalent: {equivalent}")


def run(root, options, sample):
    """Tries the mutants and returns how each room fared."""
    counts = collections.defaultdict(collections.Counter)
    printing = threading.Lock()

    def work(shop, mutants):
        shop.prepare()
        for mutant in mutants:
            verdict, fault = shop.judge(mutant)
            with printing:
                counts[mutant.file.split("/")[1]][verdict] += 1
                report(mutant, verdict, fault)

    jobs = min(options.jobs, len(sample))
    shops = [Workshop(root, k, options.gtest_filter) for k in range(jobs)]
    # Neighbours share a compilation, so each worker takes a stretch of the sample.
    cuts = [len(sample) * k // jobs for k in range(jobs + 1)]
    with futures.ThreadPoolExecutor(jobs) as pool:
        try:
            done = [pool.submit(work, shop, sample[cuts[k]:cuts[k + 1]])
                    for k, shop in enumerate(shops)]
            for future in futures.as_completed(done):
                future.result()
        finally:
            for shop in shops:
                shop.stopped = True
                shop.kill()
    return counts


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--room", help="a folder of src/, all unless given")
    parser.add_argument("--files", metavar="GLOB", help="sources by path, such as 'src/trees/l*'")
    parser.add_argument("--line", metavar="FILE:LINE", help="every mutation of one line")
    parser.add_argument("--count", type=int, help="size of the sample, 100; 0 for every mutant")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--gtest-filter", metavar="F", default="*")
    parser.add_argument("--jobs", type=int, default=1, help="copies that work side by side, 1")
    parser.add_argument("--list", action="store_true", help="only list the mutants")
    root = Path(subprocess.getoutput("git rev-parse --show-toplevel"))
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        sample, equivalent = choose(root, options)
        if options.list:
            for mutant in sample:
                report(mutant, "mutant", None)
            return
        (root / "build" / "mutate").mkdir(parents=True, exist_ok=True)
        with open(root / "build" / "mutate" / "lock", "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            print_table(run(root, options, sample), equivalent)
    except BlockingIOError:
        sys.exit("mutate.py: another run is at work in this tree")
    except Broken as fault:
        sys.exit(f"mutate.py: {fault}")
    except (KeyboardInterrupt, BrokenPipeError):
        sys.exit("mutate.py: stopped; the sources were never touched")


if __name__ == "__main__":
    main()
