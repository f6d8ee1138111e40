#!/usr/bin/env python3
"""Follows the worked examples of CONTRIBUTING.md in a copy of the tree.

Usage: check_contributing.py SOURCE_FOLDER BUILD_FOLDER CMAKE

A block "```diff FILE" changes a file: unmarked lines show the place, "-" and "+" the change, "@@" separates places.
Any other block with a path, "```cpp FILE", is a new file. Only the changed sources and their tests are compiled, by the
build of the copy; they are linked with the other objects of BUILD_FOLDER, which the changes do not affect.
"""
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

# Tests that watch over every change, besides those that an example changes.
WATCHING_TESTS = [
    "tests/format/format_test.cpp",
    "tests/format/header_words_test.cpp",
    "tests/tool/corpus_test.cpp",
    "tests/tool/coverage_test.cpp",
    "tests/tool/rule_pages_test.cpp",
]
# What "./dev reference" writes.
REFERENCE = ["docs/format.md", "docs/checks/coverage.md", "schema/dcm-description.rnc"]
PROGRAMS = {"dcm_tests": r"tests/(?!tool/).*_test\.cpp", "dcm_tool_tests": r"tests/tool/.*_test\.cpp"}
LIBRARY = r"(card|common|frame|led|slot|vm)/.*\.cpp"
TOOL = r"tools/dcm/.*\.cpp"
# The fuzzers are built by another compiler: their sources are only checked.
CHECKED = r"fuzz/.*\.cpp"


def fail(text):
    sys.exit(f"CONTRIBUTING.md: {text}")


def run(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)
    return done.returncode, done.stdout


def run_well(command, **options):
    status, output = run(command, **options)
    if status != 0:
        fail(f"{shlex.join(map(str, command))} fails:\n{output}")
    return output


def failures(output):
    """The failures in the output of GoogleTest, without the reports of the library."""
    lines = output.splitlines()
    starts = [i for i, line in enumerate(lines) if line.endswith(": Failure")]
    return [line for i in starts for line in lines[i : i + 8]] or lines[-20:]


def blocks_of(text):
    """(heading, kind, path, lines) of each block with a path."""
    heading, fence, kind, path, lines = "", None, "", "", []
    for line in text.splitlines():
        if fence is None and line.startswith("## "):
            heading = line[3:]
        elif fence is None and (start := re.fullmatch(r"(`{3,})(\S*) ?(\S*)", line)):
            fence, kind, path = start.groups()
            lines = []
        elif line == fence:
            if path:
                yield heading, kind, path, lines
            fence = None
        elif fence is not None:
            lines.append(line)


def places_in(lines):
    """(before, after) of each place that a diff changes."""
    places = [([], [])]
    for line in lines:
        if line == "@@":
            places.append(([], []))
            continue
        if line[:1] not in ("+", "-", " ", ""):
            fail(f"a line of a diff begins with ' ', '-' or '+': {line}")
        if line[:1] != "+":
            places[-1][0].append(line[1:])
        if line[:1] != "-":
            places[-1][1].append(line[1:])
    return places


def change(copy, path, lines):
    file = copy / path
    if not file.exists():
        fail(f"there is no {path}")
    text = "\n" + file.read_text()
    for before, after in places_in(lines):
        old = "\n" + "\n".join(before) + "\n"
        if text.count(old) != 1:
            fail(f"{path} has this {text.count(old)} times instead of once:{old}")
        text = text.replace(old, "\n" + "\n".join(after) + "\n")
    file.write_text(text[1:])


def follow(copy):
    """Applies all examples; returns the files that they change or add."""
    examples = {}
    for heading, kind, path, lines in blocks_of((copy / "CONTRIBUTING.md").read_text()):
        files = examples.setdefault(heading, [])
        if path not in files:
            files.append(path)
        if kind == "diff":
            change(copy, path, lines)
        elif (copy / path).exists():
            fail(f"{path} is there already")
        else:
            (copy / path).write_text("\n".join(lines) + "\n")
    if len(examples) != 3:
        fail(f"three examples change files, not {list(examples)}")
    for heading, files in examples.items():
        print(f"{heading}: {len(files)} files by hand: {' '.join(files)}")
    return sorted({path for files in examples.values() for path in files})


def matching(pattern, paths):
    return [path for path in paths if re.fullmatch(pattern, path)]


def including(copy, path):
    """The sources that include a list of macros."""
    line = f'#include "{path}"'
    return [str(file.relative_to(copy)) for file in (copy / path).parent.rglob("*.cpp") if line in file.read_text()]


class Builds:
    """The build of the sources as they are, and a new one of the copy, of which only some objects are made."""

    def __init__(self, built, copy, cmake):
        self.built = built
        self.folder = copy / "build"
        cache = (built / "CMakeCache.txt").read_text()
        kept = re.findall(r"^(CMAKE_(?:BUILD_TYPE|(?:C|CXX)_(?:COMPILER|FLAGS)):\w+=.*)$", cache, re.M)
        # Debug information and more optimisation would only take time.
        fast = [f"-DCMAKE_CXX_FLAGS_{kind}=-O1" for kind in ("DEBUG", "RELEASE", "RELWITHDEBINFO")]
        run_well([cmake, "-S", copy, "-B", self.folder, "-G", "Ninja", *(f"-D{entry}" for entry in kept), *fast])
        self.ninja = ["ninja", "-C", self.folder]
        self.compiler = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache, re.M).group(1)
        targets = run_well([*self.ninja, "-t", "targets", "all"])
        self.objects = re.findall(r"^(\S+\.o): ", targets, re.M)

    def objects_of(self, sources):
        """The objects that are made of sources, of the programs' own where there are several."""
        found = []
        for source in sources:
            names = [name for name in self.objects if re.sub(r"CMakeFiles/\w+\.dir/|\.o$", "", name) == source]
            names = [name for name in names if "growth" not in name]
            if not names:
                fail(f"the build makes no object of {source}")
            found.append(names[0])
        return found

    def compile(self, names):
        run_well([*self.ninja, *names])

    def check(self, sources, copy):
        """Compiles sources with the flags of the copy's tests, to nothing."""
        name = next(name for name in self.objects if name.endswith("dcm_host.dir/host/host.cpp.o"))
        command = shlex.split(run_well([*self.ninja, "-t", "commands", name]).splitlines()[-1])
        flags = [word for word in command if re.match(r"-(std|W)", word)]
        xml = re.findall(r"-isystem \S*libxml2\S*", (self.folder / "build.ninja").read_text())[0].split()
        for source in sources:
            run_well([self.compiler, *flags, "-fsyntax-only", f"-I{copy}", f"-I{copy}/include", *xml, copy / source])

    def link(self, program, objects, output):
        """Links a program of the build with these objects instead of its own. The libraries follow them."""
        command = run_well(["ninja", "-C", self.built, "-t", "commands", program]).splitlines()[-1]
        words = shlex.split(re.search(r"&& (.* -o .*) && :$", command).group(1))
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        words[first:first] = [str(self.folder / name) for name in objects]
        words = [word for word in words if word not in objects]
        words[words.index("-o") + 1] = str(output)
        run_well(words, cwd=self.built)


def main():
    source, built, cmake = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
    with tempfile.TemporaryDirectory() as folder:
        copy = Path(folder) / "copy"
        left_out = [source / "build", source / ".git"]
        shutil.copytree(source, copy, ignore=lambda at, names: [name for name in names if Path(at) / name in left_out])
        changed = follow(copy)
        builds = Builds(built, copy, cmake)

        library = builds.objects_of(matching(LIBRARY, changed))
        lists = [source for path in matching(r".*\.def", changed) for source in including(copy, path)]
        tool = builds.objects_of(matching(TOOL, changed) + lists)
        # Objects in which documents are embedded.
        if matching(r"docs/checks/.*\.md", changed):
            tool += [name for name in builds.objects if name.endswith("rule_pages.cpp.o")]
        if "docs/format/elements.txt" in changed:
            library += [name for name in builds.objects if name.endswith("built_in_prose.cpp.o")]
        tests = {
            program: builds.objects_of(sorted({*matching(pattern, changed), *matching(pattern, WATCHING_TESTS)}))
            for program, pattern in PROGRAMS.items()
        }
        builds.compile([*library, *tool, *(name for names in tests.values() for name in names)])

        builds.check(matching(CHECKED, changed), copy)

        # "./dev reference", then the tests.
        writer = Path(folder) / "dcm-format"
        builds.link("tools/format/dcm-format", library, writer)
        run_well([writer, copy, *(copy / name for name in REFERENCE)])
        written = [name for name in REFERENCE if (copy / name).read_bytes() != (source / name).read_bytes()]
        print(f"written by ./dev reference: {' '.join(written)}")
        for program, names in tests.items():
            output = Path(folder) / program
            tested = library + (tool if program == "dcm_tool_tests" else [])
            builds.link(f"tests/{program}", names + tested, output)
            status, said = run([output, "--gtest_brief=1"], cwd=folder)
            if status != 0:
                fail(f"with the change, tests of {program} fail:\n" + "\n".join(failures(said)))
            print(said.splitlines()[-1])
            # The same tests notice when the changes of the library and the tool are missing.
            builds.link(f"tests/{program}", names, output)
            if run([output, "--gtest_brief=1", "--gtest_fail_fast"], cwd=folder)[0] == 0:
                fail(f"the tests of {program} pass without the change")


if __name__ == "__main__":
    main()
