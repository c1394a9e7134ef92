#!/usr/bin/env python3
"""Injects faults into the portable core one at a time and counts those the
native unit and link tests and the export tool's tests catch
(scripts/mutation.sh runs it; see there).

  mutation.py run BUILD [--seed S] [--count N] [--scenario NAME]... [--win64 DIR]
  mutation.py list [--seed S] [--count N]     the faults that would be tried
  --only GLOB (repeatable)                    draws faults only in those files of src/
  mutation.py restore BUILD                   puts back a file left mutated

A fault is one edit of one line of a src/ .cpp file that is not Windows-only:
a comparison or arithmetic operator swapped, a bound moved by one, a constant
changed, a call or assignment removed, a condition negated. Each site's place
in the draw is a hash of the seed, the file name, the line's text and the
edit, so an edit elsewhere in the tree does not change which faults are
drawn. A fault that does not compile is not counted and the next one is
drawn. A fault is caught when a test fails or runs past its time limit; the
link tests, which time a real pty, must fail three times out of three.
"""
import argparse
import collections
import fnmatch
import hashlib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SWAP = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
        "+": "-", "-": "+", "*": "/", "/": "*", "+=": "-=", "-=": "+=", "&&": "||", "||": "&&"}
RELATIONAL = re.compile(r"(?<=\s)(<=|>=|==|!=|<|>|&&|\|\|)(?=\s)")
ARITHMETIC = re.compile(r"(?<=\s)(\+=|-=|\+|-|\*|/)(?=\s)")
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+\.\d*f?|\d+)(?![\w.])")
STATEMENT = re.compile(r"^(?!return\b|break\b|continue\b|case\b|default\b|else\b)"
                       r"[A-Za-z_][\w.\->\[\]:]*\s*(\(.*\)|(\+|-|\*|/|\||&)?=\s.*|\+\+|--);$")
DECLARATION = re.compile(r"^(const\s+|static\s+|unsigned\s+)*[A-Za-z_][\w:<>]*[\s*&]+[A-Za-z_]\w*\s*(=|\[|;|\()")


def sources():
    out = []
    for top, _, files in os.walk(os.path.join(ROOT, "src")):
        out += [os.path.join(top, f) for f in files if f.endswith(".cpp") and not f.endswith("_win32.cpp")]
    return sorted(out)


def masked(text):
    """The text with comments and string and character literals blanked, so
    that columns still match."""
    out, i, n = list(text), 0, len(text)
    while i < n:
        two = text[i:i + 2]
        if two == "//":
            j = text.find("\n", i)
            j = n if j < 0 else j
        elif two == "/*":
            j = text.find("*/", i + 2) + 2
        elif text[i] in "\"'":
            j = i + 1
            while j < n and text[j] != text[i]:
                j += 2 if text[j] == "\\" else 1
            j += 1
        else:
            i += 1
            continue
        for k in range(i, min(j, n)):
            if out[k] != "\n":
                out[k] = " "
        i = j
    return "".join(out)


def closing(line, at):
    depth = 0
    for k in range(at, len(line)):
        depth += {"(": 1, ")": -1}.get(line[k], 0)
        if depth == 0:
            return k
    return -1


def line_edits(line, mask):
    """(kind, new line) for every fault of one line."""
    s = mask.strip()
    if not s or s.startswith("#") or "template" in s or "operator" in s:
        return []
    edits = []
    for m in RELATIONAL.finditer(mask):
        edits.append(("relational", line[:m.start()] + SWAP[m[1]] + line[m.end():]))
    if not DECLARATION.match(s) or "=" in s:
        for m in ARITHMETIC.finditer(mask):
            edits.append(("arithmetic", line[:m.start()] + SWAP[m[1]] + line[m.end():]))
    if not re.match(r"^(static\s+)?(const\s+)?\w+\s+\w+\[", s):  # array sizes only pad
        bound = RELATIONAL.search(mask) is not None or "[" in s
        for m in NUMBER.finditer(mask):
            v = m[1]
            if v.startswith("0x"):
                new = "0x%X" % (int(v, 16) + 1)
            elif "." in v:
                new = repr(float(v.rstrip("f")) + 1.0) + ("f" if v.endswith("f") else "")
            else:
                new = str(int(v) + 1) if bound or int(v) > 1 else str(1 - int(v))
            edits.append(("bound" if bound and "." not in v else "constant", line[:m.start()] + new + line[m.end():]))
    if STATEMENT.match(s) and not DECLARATION.match(s) and s.count("(") == s.count(")"):
        at = mask.index(s)
        edits.append(("removed", line[:at] + ";" + line[at + len(s):]))
    for m in re.finditer(r"\b(if|while)\s*\(", mask):
        end = closing(mask, m.end() - 1)
        if end > 0:
            edits.append(("negated", line[:m.end()] + "!(" + line[m.end():end] + ")" + line[end:]))
    return edits


def faults(seed, only=()):
    """Every fault of the tree (or of the files named in only), in the order the seed draws them."""
    out = []
    for path in sources():
        if only and not any(fnmatch.fnmatch(os.path.relpath(path, ROOT), g) for g in only):
            continue
        text = open(path, encoding="latin-1").read()
        lines, masks = text.split("\n"), masked(text).split("\n")
        seen = {}
        for no, (line, mask) in enumerate(zip(lines, masks)):
            key = line.strip()
            seen[key] = seen.get(key, 0) + 1
            for n, (kind, new) in enumerate(line_edits(line, mask)):
                h = hashlib.sha256(f"{seed}|{os.path.basename(path)}|{key}|{seen[key]}|{n}|{new.strip()}".encode())
                out.append((h.hexdigest(), path, no, kind, line, new))
    out.sort()
    return out


def describe(f):
    return f"{os.path.relpath(f[1], ROOT)}:{f[2] + 1}: {f[3]}: {f[4].strip()}  =>  {f[5].strip()}"


def key(f):
    """A fault apart from its path and line number, which other changes move."""
    return f"{os.path.basename(f[1])}: {f[3]}: {f[4].strip()}  =>  {f[5].strip()}"


def logged(path):
    """How many faults of each key an earlier run tried."""
    found = re.findall(r"^\[\d+/\d+ \d+ s\] [^:]+: \S*?([^/\s]+):\d+: (\w+: .*)$",
                       open(path).read() if path else "", re.M)
    return collections.Counter(f"{name}: {rest}" for name, rest in found)


def backup_dir(build):
    return os.path.join(build, "mutation-backup")


def restore(build, quiet=False):
    """Puts back every source file saved before it was mutated."""
    d = backup_dir(build)
    if not os.path.isdir(d):
        return
    for name in os.listdir(d):
        if name.endswith(".path"):
            dest = open(os.path.join(d, name)).read()
            shutil.copyfile(os.path.join(d, name[:-5]), dest)
            os.utime(dest)  # newer than the mutant's object: ninja builds it again
            if not quiet:
                print(f"restored {os.path.relpath(dest, ROOT)}", file=sys.stderr)
    shutil.rmtree(d)


def mutate(build, f):
    d = backup_dir(build)
    os.makedirs(d, exist_ok=True)
    shutil.copyfile(f[1], os.path.join(d, "orig"))
    with open(os.path.join(d, "orig.path"), "w") as p:
        p.write(f[1])
    lines = open(f[1], encoding="latin-1").read().split("\n")
    lines[f[2]] = f[5]
    with open(f[1], "w", encoding="latin-1") as out:
        out.write("\n".join(lines))


def sh(cmd, limit, **kw):
    """The exit status ("timeout" past the limit) and the output."""
    try:
        r = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=limit, **kw)
        return r.returncode, r.stdout.decode("latin-1")
    except subprocess.TimeoutExpired:
        return "timeout", ""


class Layers:
    def __init__(self, a):
        self.a, self.build = a, os.path.abspath(a.build)
        self.env = dict(os.environ, CONTROLLER_SIM=os.path.join(self.build, "tools/controller-sim/controller-sim"))
        self.cwd = tempfile.mkdtemp(prefix="veldor-mutation-")
        self.limit = {}
        self.flaky = 0

    def make(self):
        targets = ["veldor_unit_tests", "veldor_link_tests", "veldor-export"]
        return sh(["ninja", "-C", self.build, "-j1"] + targets, 600)[0] == 0

    def tests(self):
        yield "unit", [os.path.join(self.build, "veldor_unit_tests"), "--gtest_brief=1"]
        yield "link", [os.path.join(self.build, "tests/link/veldor_link_tests"), "--gtest_fail_fast", "--gtest_brief=1"]
        # The analysis room is tested through the export tool that uses it.
        yield "export", ["ctest", "--test-dir", self.build, "-R", "^veldor_export_", "--stop-on-failure"]
        if self.a.scenario:
            yield "e2e", ["bash", os.path.join(ROOT, "tests/e2e/run_e2e.sh"), os.path.abspath(self.a.win64), self.build] + self.a.scenario

    def run(self, measure=False):
        """The first layer that fails, with the tests that failed in it, or None."""
        for name, cmd in self.tests():
            if name == "e2e" and sh(["ninja", "-C", self.a.win64, "-j1", "veldor"], 1200)[0] != 0:
                return "e2e build"
            t = time.time()
            rc, out = sh(cmd, None if measure else self.limit[name], cwd=self.cwd, env=self.env)
            if measure:
                self.limit[name] = max(3 * (time.time() - t), time.time() - t + 20)
            # The link tests time a real pty: on a busy machine one can fail
            # by itself. A fault counts only when they fail three times out of three.
            for _ in range(2 if name == "link" and rc != 0 and not measure else 0):
                again, _out = sh(cmd, self.limit[name], cwd=self.cwd, env=self.env)
                if again == 0:
                    rc = 0
                    self.flaky += 1
                    break
            if rc == "timeout":
                return f"{name} (time limit)"
            if rc != 0:
                failed = sorted(set(re.findall(r"^\[  FAILED  \] (\w+\.\w+)|^\s*\d+ - (\w+) \(", out, re.M)))
                failed = sorted({a or b for a, b in failed})
                return f"{name} ({' '.join(failed) or 'failed'})"
        return None


def run(a):
    layers = Layers(a)
    restore(a.build)
    if not layers.make() or layers.run(measure=True):
        sys.exit("mutation: the tree does not build or its tests fail without a fault")
    print("time limits: " + ", ".join(f"{k} {v:.0f} s" for k, v in layers.limit.items()), flush=True)
    caught, tried, survivors, invalid, t0 = 0, 0, [], 0, time.time()
    skip, only = logged(a.skip_log), logged(a.same_as)
    for f in faults(a.seed, a.only):
        if tried == a.count:
            break
        if skip[key(f)] or (a.same_as and not only[key(f)]):
            continue
        only[key(f)] -= 1
        mutate(a.build, f)
        try:
            built = layers.make()
            verdict = layers.run() if built else None
        finally:
            restore(a.build, quiet=True)
        if not built:
            invalid += 1
            continue
        tried += 1
        caught += verdict is not None
        if verdict is None:
            survivors.append(f)
        print(f"[{tried}/{a.count} {time.time() - t0:.0f} s] {'caught by ' + verdict if verdict else 'SURVIVED'}: "
              f"{describe(f)}", flush=True)
    layers.make()
    print(f"\n{invalid} drawn faults did not compile and were skipped; "
          f"{layers.flaky} link failures did not repeat and were not counted")
    print("survivors:")
    for f in survivors:
        print("  " + describe(f))
    print(f"mutation: {caught} of {tried} faults caught ({100.0 * caught / max(tried, 1):.1f} %)")


def main():
    p = argparse.ArgumentParser()
    p.add_argument("command", choices=["run", "list", "restore"])
    p.add_argument("build", nargs="?")
    p.add_argument("--seed", type=int, default=18)
    p.add_argument("--count", type=int, default=250)
    p.add_argument("--only", action="append", default=[], help="draw faults only in these files (globs under the tree, src/link/*.cpp)")
    p.add_argument("--scenario", action="append", default=[], help="an end-to-end scenario to run as well")
    p.add_argument("--win64", help="the x86_64 Windows build folder that the scenarios run")
    p.add_argument("--skip-log", help="the output of an earlier run: draw other faults than those it tried")
    p.add_argument("--same-as", help="the output of an earlier run: try only the faults it tried, wherever they moved")
    a = p.parse_args()
    if a.command == "list":
        for f in faults(a.seed, a.only)[:a.count]:
            print(describe(f))
        return
    if not a.build or (a.scenario and not a.win64):
        p.error("a build folder is needed (and --win64 with --scenario)")
    if a.command == "restore":
        restore(a.build)
        return
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    run(a)


if __name__ == "__main__":
    main()
