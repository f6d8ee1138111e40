#!/usr/bin/env python3
"""How long an editor waits for "dcm lsp". Usage: measure.py DCM FILE [TIMES]

Each time a blank is typed in the middle of the file, the answers are awaited. The median and the longest time are printed,
and the processor time of the server for each, which does not depend on what else the machine does.
"""
import statistics
import sys
import time

sys.dont_write_bytecode = True

from client import Client

URI = "file:///measured.xml"


def processor_time(client):
    """In milliseconds; on Linux."""
    with open("/proc/%d/schedstat" % client.process.pid, encoding="ascii") as file:
        return int(file.read().split()[0]) / 1e6


def main(dcm, path, times=50):
    with open(path, encoding="utf-8", newline="") as file:
        text = file.read()
    client = Client(dcm)
    client.request("initialize", capabilities={})
    client.notify("textDocument/didOpen",
                  textDocument={"uri": URI, "languageId": "xml", "version": 0, "text": text})
    client.diagnostics()
    line = text.count("\n", 0, len(text) // 2)
    place = {"line": line, "character": 0}
    document = {"uri": URI}

    def type_a_blank(version):
        client.notify("textDocument/didChange", textDocument={"uri": URI, "version": version},
                      contentChanges=[{"range": {"start": place, "end": place}, "text": " "}])
        client.diagnostics()

    def ask(method):
        return lambda _: client.request("textDocument/" + method, textDocument=document, position=place)

    print("%s: %d bytes, %d times" % (path, len(text.encode()), times))
    for name, action in [("diagnostics", type_a_blank)] + [
            (method, ask(method)) for method in ("completion", "hover", "references", "documentSymbol")]:
        taken = []
        before = processor_time(client)
        for i in range(times):
            begin = time.perf_counter()
            action(i + 1)
            taken.append(1000 * (time.perf_counter() - begin))
        print("%-15s median %6.1f ms, longest %6.1f ms, processor %6.1f ms" %
              (name, statistics.median(taken), max(taken), (processor_time(client) - before) / times))
    assert client.end() == 0


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], *map(int, sys.argv[3:]))
