#!/usr/bin/env python3
"""Compares figures in documents with the source that determines them.

Usage: check_figures.py SOURCE_FOLDER

Each row has a document, an expression for the figure in it (line ends there count as blanks), the source, an
expression for the figure there (a number, a product or a shift), and the unit of the document. A figure that is not
found is a fault, too: a change of a sentence requires a change of its row.
"""
import re
import sys
from pathlib import Path

MIB = 1 << 20
MB = 1000 * 1000

INPUT = "common/input_file.h", r"kSizeMax = (.*);"
TOOL_INPUT = "tools/dcm/description/input_file.h", r"kMostMebibytes = (.*);"
SELECTION = "common/selection.cpp"
LIMITS = "tools/dcm/description/parse_limits.h"
ENGINE = "tools/dcm/check/engine.cpp"
DESCRIBED = "tools/dcm/description/described.cpp"
FAILURES = "tools/dcm/check/rules/query-fails.cpp", r"kMostFailures = (.*);"
EXPANSION = "common/xml.cpp", r"kDocumentExpansionMax = (.*);"
OUTPUT = DESCRIBED, r"kMostOutputOfAny = (.*);"
DECODED_OF_BYTE = ENGINE, r"kMostDecodedOfByte = (.*);"
FRAME = "tests/frame/frame_layout_test.cpp", r"EXPECT_SIZE\(DcmFrameInfo, (\d+)\)"
SLOT = "tests/slot/slot_layout_test.cpp", r"sizeof\(DcmSlotInfo\) == (\d+)\)"
CARD = "tests/card/card_layout_test.cpp", r"sizeof\(DcmCardInfo\) == (\d+)\)"
VM = "tests/vm/vm_port_test.cpp", r"sizeof\(DcmVmPortInfo\) == (\d+)\)"

FIGURES = [
    # The records.
    ("docs/api/memory.md", r"\| DcmFrameInfo +\| ([\d,]+)", FRAME, 1),
    ("docs/api/memory.md", r"\| DcmSlotInfo +\| ([\d,]+)", SLOT, 1),
    ("docs/api/memory.md", r"\| DcmCardInfo +\| ([\d,]+)", CARD, 1),
    ("docs/api/memory.md", r"\| DcmVmPortInfo +\| ([\d,]+)", VM, 1),
    ("docs/performance.md", r"\(record ([\d,]+)\)", FRAME, 1),
    ("docs/performance.md", r" card [\d,]+ \(([\d,]+)\)", CARD, 1),
    ("docs/performance.md", r" slot [\d,]+ \(([\d,]+)\)", SLOT, 1),
    ("docs/reliability.md", r"a record of ([\d,]+) bytes", FRAME, 1),
    # The library.
    ("SECURITY.md", r"regular file of at most (\d+) MiB", INPUT, MIB),
    ("docs/reliability.md", r"regular file of at most (\d+) MiB", INPUT, MIB),
    ("docs/reliability.md", r"more than (\d+) MiB, also when", INPUT, MIB),
    ("docs/api/memory.md", r"text and to (\d+) MiB", EXPANSION, MIB),
    ("docs/architecture.md", r"depth above (\d+)", (SELECTION, r"kDepthMax = (.*);"), 1),
    ("docs/architecture.md", r"text above ([\d,]+) bytes", (SELECTION, r"kTextMax = (.*);"), 1),
    ("docs/architecture.md", r"(\d+) KiB of \.text", ("scripts/bench.sh", r"limit=\$\(\((.*?)\)\)"), 1024),
    ("docs/performance.md", r"The limit is ([\d,]+):", ("scripts/bench.sh", r"-v limit=(\d+)"), 1),
    # The tool.
    ("man/dcm.1", r"regular files of at most (\d+) MiB", TOOL_INPUT, 1),
    ("man/dcm.1", r"the blocks of (\d+) KiB", ("tools/dcm/commands/list.cpp", r"kBlock = (.*);"), 1024),
    ("docs/reliability.md", r"the first (\d+) findings", ("tools/dcm/check/findings.h", r"kMostOfRule = (.*);"), 1),
    ("docs/reliability.md", r"(\d+) bytes, at a", ("tools/dcm/description/texts.h", r"kMostShown = (.*);"), 1),
    ("docs/reliability.md", r"(\d+) MiB and \d+ times (?:its size|the size)", (ENGINE, r"kMostDecoded = (.*);"), MIB),
    ("docs/reliability.md", r"\d+ MiB and (\d+) times (?:its size|the size)", DECODED_OF_BYTE, 1),
    ("docs/reliability.md", r"slot or card (\d+) faults|at most (\d+) faults in", FAILURES, 1),
    ("docs/reliability.md", r"more than (\d+) attributes", (LIMITS, r"kMostAttributes = (.*);"), 1),
    ("docs/reliability.md", r"more than ([\d,]+) declarations", (LIMITS, r"kMostDeclarations = (.*);"), 1),
    ("docs/reliability.md", r"more than ([\d,]+) alternatives", (LIMITS, r"kMostAlternatives = (.*);"), 1),
    ("docs/reliability.md", r"more than ([\d,]+) different names", (LIMITS, r"kMostNames = (.*);"), 1),
    ("docs/reliability.md", r"more than (\d+) namespaces", (LIMITS, r"kMostNamespaces = (.*);"), 1),
    ("docs/reliability.md", r"more than (\d+) times the (?:file's )?size", (LIMITS, r"kMostTreeOfByte = (.*);"), 1),
    ("docs/reliability.md", r"size(?: of the file)? and more than (\d+) MB", (LIMITS, r"kMostTreeOfAny = (.*);"), MB),
    ("docs/reliability.md", r"expand to more than (\d+) MB", (LIMITS, r"kMostExpansion = (.*);"), MB),
    ("docs/reliability.md", r"size(?: of the file)? and (\d+) MB: the", OUTPUT, MB),
    ("docs/reliability.md", r"more than ([\d,]+) type ids", ("tools/dcm/records/json_text.cpp", r"kMost = (.*);"), 1),
    ("docs/reliability.md", r"the table has the first (\d+)", ("tools/dcm/commands/list.cpp", r"kShown = (.*);"), 1),
    ("docs/reliability.md", r"(\d+) messages of the library", (DESCRIBED, r"kMostShownMessages = (.*);"), 1),
]


def number(text):
    """The value of "64", "11,176", "8'000'000", "size_t{4} * 1000" or "size_t{1} << 20"."""
    plain = re.sub(r"[,']", "", re.sub(r"\w+\{(\d+)\}", r"\1", text))
    if not re.fullmatch(r"[\d *<]+", plain):
        return None
    return eval(plain)  # pylint: disable=eval-used


def figures(file, expression):
    text = file.read_text()
    if file.suffix in (".md", ".1"):
        text = re.sub(r"\s+", " ", text)
    return [next(group for group in match.groups() if group) for match in re.finditer(expression, text)]


def statuses(source):
    """The exit statuses that the tool has and dcm.1 does not list, or the other way round."""
    has = set(re.findall(r"= (\d+)", (source / "tools/dcm/exit.h").read_text()))
    section = (source / "man/dcm.1").read_text().split(".Sh EXIT STATUS")[1].split(".Sh ")[0]
    return sorted(has ^ set(re.findall(r"^\.It (\d+)", section, re.M)))


def main():
    source = Path(sys.argv[1])
    faults = []
    for document, place, (path, expression), unit in FIGURES:
        said = figures(source / document, place)
        found = [number(text) for text in figures(source / path, expression)]
        if not said:
            faults.append(f"{document}: nothing like '{place}'")
        elif not found or None in found:
            faults.append(f"{path}: no figure like '{expression}'")
        elif any(number(text) * unit != found[0] for text in said):
            faults.append(f"{document} has {', '.join(said)} where {path} has {found[0]} ('{place}')")
    faults += [f"man/dcm.1 and tools/dcm/exit.h differ in the status {status}" for status in statuses(source)]
    print("\n".join(faults) or f"{len(FIGURES)} figures and the exit statuses are as their sources have them")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
