#!/usr/bin/env python3
"""Mutation testing: changes the library's sources, one place at a time, and runs the build and the tests.

Usage: mutate.py COUNT SEED

Works in a copy of the tree below build/mutate. A mutant is killed when it does not compile, when a test fails or when
the tests do not end. Mutants with the same behaviour as the original are listed in tests/mutation/equivalent.txt.
"""

import collections
import difflib
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build/mutate"
TREE = WORK / "tree"
BUILD = WORK / "build"
LOG = WORK / "log"
LIBRARY = ("common", "led", "frame", "slot", "card", "vm")
EQUIVALENT = ROOT / "tests/mutation/equivalent.txt"
REQUIRED = 95

# The fastest and most thorough program runs first; the others run on its survivors.
PROGRAMS = (
    ("dcm_tests", BUILD / "tests/dcm_tests"),
    ("dcm_reliability_tests", BUILD / "tests/reliability/dcm_reliability_tests"),
)
# Limits for a mutant that allocates, writes or compiles without end.
MEMORY, FILE, BUILD_SECONDS = 4 << 30, 256 << 20, 1800

FLIPPED = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&"}
TOKEN = re.compile(
    r"""(?P<skipped>//.*|/\*.*?\*/|'(?:[^'\\]|\\.)*')
      | (?P<text>"(?:[^"\\]|\\.)*")
      | (?P<word>[A-Za-z_]\w*)
      | (?P<number>\d[\w.]*)
      | (?P<comparison>(?<=\ )(?:==|!=|<=|>=|<|>|&&|\|\|)(?=\ |$))
    """,
    re.VERBOSE,
)
STATEMENT = re.compile(r"(?!return\b|.*= (delete|default);)[\w*(+-].*;$")
DECLARATION = re.compile(r"(inline|static|const|constexpr|typedef|friend|class|struct|enum)\b|[\w:]+(<.*>)?[ *&]+\w+[;({\[ ]")
ENDED = re.compile(r"(^|[;{}):]|\belse)$")
# Lines that only the compiler checks, and declarations.
IGNORED = re.compile(r"\s*(#|static_assert|extern |namespace |using |template )")

Mutant = collections.namedtuple("Mutant", "file line original changed what")


def one_more(number):
    """The literal with another value, in the same notation."""
    digits, suffix = re.fullmatch(r"(0[xX][0-9A-Fa-f]+|\d+)([uUlL]*)", number).groups()
    if digits[:2] in ("0x", "0X"):
        return f"0x{int(digits, 16) + 1:X}{suffix}"
    return f"{int(digits) + 1}{suffix}"


def replacement(kind, token):
    if kind == "comparison":
        return FLIPPED[token]
    if kind == "number":
        return one_more(token)
    if kind == "text":
        return '"~' + token[1:]
    return {"true": "false", "false": "true"}.get(token) if kind == "word" else None


def code_of(line):
    return re.sub(r"\s*//.*", "", line).strip()


def is_statement(code, before):
    """Whether a line is one that may be left out: a whole statement, and no declaration."""
    return (STATEMENT.match(code) and not DECLARATION.match(code) and code.count("(") == code.count(")")
            and ENDED.search(before))


def mutants_of_line(file, number, line, before):
    for match in TOKEN.finditer(line):
        changed = replacement(match.lastgroup, match.group())
        if changed is not None:
            start, end = match.span()
            yield Mutant(file, number, line, line[:start] + changed + line[end:], f"{match.group()} -> {changed}")
    if is_statement(code_of(line), before):
        yield Mutant(file, number, line, line[: len(line) - len(line.lstrip())] + ";", "dropped")


def mutants_of_file(file):
    assertion = False
    before = ""
    for number, line in enumerate((ROOT / file).read_text(encoding="utf-8").splitlines()):
        assertion = assertion or "static_assert" in line
        if not assertion and not IGNORED.match(line):
            yield from mutants_of_line(file, number, line, before)
        assertion = assertion and not line.endswith(";")
        before = code_of(line) or before


def key(mutant):
    return (mutant.file, mutant.original.strip(), mutant.what)


def equivalents():
    """Paragraphs of "FILE: LINE", the mutation, and the reason, which may take several lines."""
    named = set()
    for paragraph in EQUIVALENT.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in paragraph.splitlines() if line and not line.startswith("#")]
        if not lines:
            continue
        if len(lines) < 3:
            sys.exit(f"{EQUIVALENT}: needs a line, a mutation and a reason: {lines[0]}")
        file, _, line = lines[0].partition(": ")
        named.add((file, line, lines[1].strip()))
    return named


def limits():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE, FILE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def succeeds(command, seconds):
    environment = dict(os.environ, CCACHE_DISABLE="1", TMPDIR=str(WORK / "tmp"))
    with open(LOG, "wb") as log:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=environment,
                                   preexec_fn=limits, start_new_session=True)
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


def compiles():
    return succeeds(["cmake", "--build", BUILD, "--target", *(name for name, _ in PROGRAMS)], BUILD_SECONDS)


def passes(program, seconds):
    shutil.rmtree(WORK / "tmp", ignore_errors=True)
    (WORK / "tmp").mkdir()
    return succeeds([program, "--gtest_fail_fast", "--gtest_brief=1"], seconds)


def write(path, data):
    """Only what differs, so that the next build has little to do."""
    if not path.is_file() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def prepare():
    """Brings the copy up to date and builds it. Gives the time that mutants get for each program's tests."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                            check=True, capture_output=True).stdout
    files = {name for name in map(os.fsdecode, listed.split(b"\0")) if (ROOT / name).is_file()}
    for path in list(TREE.rglob("*")):
        if path.is_file() and str(path.relative_to(TREE)) not in files:
            path.unlink()
    for name in files:
        write(TREE / name, (ROOT / name).read_bytes())
        shutil.copymode(ROOT / name, TREE / name)
    configure = ["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                 "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0", "-DCMAKE_C_FLAGS_DEBUG=-O0 -g0", "-DDCM_WERROR=OFF",
                 "-DDCM_BUILD_TOOL=OFF", "-DDCM_BUILD_TESTS=ON", "-DDCM_INSTALL=OFF"]
    passed = succeeds(configure, BUILD_SECONDS) and compiles()
    seconds = {}
    for name, program in PROGRAMS:
        start = time.monotonic()
        passed = passed and passes(program, BUILD_SECONDS)
        seconds[name] = 30 + 10 * (time.monotonic() - start)
    if not passed:
        sys.stdout.write(LOG.read_text(encoding="utf-8", errors="replace")[-4000:])
        sys.exit("mutate: the tests fail without a change")
    return seconds


def judge(mutant, seconds):
    """Returns what kills the mutant: the compiler, the tests, or nothing."""
    path = TREE / mutant.file
    original = path.read_text(encoding="utf-8")
    lines = original.split("\n")
    lines[mutant.line] = mutant.changed
    path.write_text("\n".join(lines), encoding="utf-8")
    try:
        if not compiles():
            return "compiler"
        return None if all(passes(program, seconds[name]) for name, program in PROGRAMS) else "tests"
    finally:
        path.write_text(original, encoding="utf-8")


def show(mutant):
    lines = (TREE / mutant.file).read_text(encoding="utf-8").splitlines()
    changed = [*lines[: mutant.line], mutant.changed, *lines[mutant.line + 1 :]]
    print(f"survived: {mutant.what}")
    print("\n".join(difflib.unified_diff(lines, changed, mutant.file, mutant.file, n=2, lineterm="")), flush=True)


def sample(count, seed):
    files = sorted(str(path.relative_to(ROOT)) for folder in LIBRARY for path in (ROOT / folder).iterdir()
                   if path.suffix in (".h", ".cpp"))
    candidates = [mutant for file in files for mutant in mutants_of_file(file)]
    named = equivalents()
    stale = named - {key(mutant) for mutant in candidates}
    if stale:
        sys.exit("\n".join(f"{EQUIVALENT}: no such mutant: {': '.join(entry)}" for entry in sorted(stale)))
    random.Random(seed).shuffle(candidates)
    chosen = [mutant for mutant in candidates if key(mutant) not in named][:count]
    print(f"{len(chosen)} of {len(candidates)} mutants, seed {seed}, {len(named)} named as equivalent", flush=True)
    # A restored file is compiled once, not after each of its mutants.
    return sorted(chosen, key=lambda mutant: (mutant.file, mutant.line))


def main():
    count, seed = int(sys.argv[1]), int(sys.argv[2])
    chosen = sample(count, seed)
    seconds = prepare()
    killed = collections.Counter()
    start = time.monotonic()
    for done, mutant in enumerate(chosen, 1):
        killer = judge(mutant, seconds)
        killed[killer] += 1
        if killer is None:
            show(mutant)
        if done % 20 == 0:
            print(f"{done} tried after {time.monotonic() - start:.0f} s, {killed[None]} survived", flush=True)
    dead = killed["tests"] + killed["compiler"]
    share = 100 * dead / len(chosen)
    print(f"mutants: {dead} of {len(chosen)} killed ({share:.1f} %), {killed['tests']} by the tests, "
          f"{killed['compiler']} by the compiler; seed {seed}")
    sys.exit(0 if share >= REQUIRED else f"mutate: less than {REQUIRED} % are killed")


if __name__ == "__main__":
    main()
