# The deepest stack that each query and dumper builds of the library's own frames; libxml2 and the libc come on top.
# Reads, in this order: the roots, with the record that each holds; the compiler's notes on frames and calls;
# callgrind's record of a run, which names each function with all its callers and so shows what is called through
# tables. To each of these chains comes what its last function may call without tables. Fails when a root needs more
# than `limit` bytes beside its record.
function withoutFile(name) {
    sub(/^.*:/, "", name)
    return name
}
# The bytes from a function downwards. What follows the gap are local variables.
function below(name,    called, count, i, bytes, most) {
    if (name in depth)
        return depth[name]
    if (name in isOpen) {
        recursive[name] = 1
        return 0
    }
    isOpen[name] = 1
    most = 0
    count = split(calls[name], called, " ")
    for (i = 1; i <= count; i++) {
        bytes = below(called[i])
        if (bytes > most)
            most = bytes
    }
    delete isOpen[name]
    return depth[name] = frame[name] + most
}
# Takes a chain of callers, the last called first.
function takeChain(chain,    name, count, i, bytes) {
    count = split(chain, name, "'")
    bytes = 0
    for (i = 1; i <= count; i++) {
        # Recursion is marked by a number.
        if (!(name[i] in frame))
            continue
        bytes += bytes == 0 ? below(name[i]) : frame[name[i]]
        if (name[i] in record && bytes > deepest[name[i]]) {
            deepest[name[i]] = bytes
            deepestChain[name[i]] = chain
        }
    }
}

FILENAME != lastFile {
    lastFile = FILENAME
    kind = FILENAME ~ /\.ci$/ ? "frames" : (FILENAME ~ /callgrind/ ? "run" : "roots")
}
kind == "roots" {
    roots[++rootCount] = $1
    record[$1] = $2
}
kind == "frames" && /^node: .* bytes \(/ {
    match($0, /title: "[^"]*"/)
    name = withoutFile(substr($0, RSTART + 8, RLENGTH - 9))
    match($0, /[0-9]+ bytes \(/)
    bytes = substr($0, RSTART, RLENGTH) + 0
    # A name may stand for a function in each of several files.
    if (bytes > frame[name])
        frame[name] = bytes
}
kind == "frames" && /^edge: / {
    split($0, part, "\"")
    calls[withoutFile(part[2])] = calls[withoutFile(part[2])] " " withoutFile(part[4])
}
kind == "run" && /^c?fn=\([0-9]+\) / {
    sub(/^[^ ]* /, "")
    takeChain($0)
}

END {
    printf "%-26s %7s %7s %7s\n", "bytes of stack", "all", "record", "beside"
    for (i = 1; i <= rootCount; i++) {
        name = roots[i]
        if (!(name in deepest)) {
            printf "%-26s was not called\n", name
            failed = 1
            continue
        }
        beside = deepest[name] - record[name]
        printf "%-26s %7d %7d %7d%s\n", name, deepest[name], record[name], beside, (beside > limit ? " exceeded" : "")
        if (beside > limit)
            failed = 1
        if (beside > worst) {
            worst = beside
            worstName = name
        }
    }
    for (name in recursive)
        printf "counted once, though it calls itself: %d bytes of %s\n", frame[name], name | "c++filt"
    close("c++filt")
    printf "the deepest, limit %d:\n", limit
    count = split(deepestChain[worstName], link, "'")
    for (i = 1; i <= count; i++)
        if (link[i] in frame)
            printf "  %6d %s\n", frame[link[i]], link[i] | "c++filt"
    exit failed
}
