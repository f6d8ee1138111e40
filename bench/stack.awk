# The deepest stack of the library's own frames for each query and report function, without libxml2 and libc. The inputs, in
# this order: the roots, with the size of the record on their stack; the compiler's files on frames and calls; callgrind's
# output of a run, which has each function with all its callers, including calls through tables. Direct calls of the last
# function of each chain are added. Fails if a root needs more than `limit` bytes without its record.
function withoutFile(name) {
    sub(/^.*:/, "", name)
    return name
}
# The bytes of a function and its callees. Parameters after the gap are local variables.
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
# Adds a chain of callers; the last callee comes first.
function takeChain(chain,    name, count, i, bytes) {
    count = split(chain, name, "'")
    bytes = 0
    for (i = 1; i <= count; i++) {
        # callgrind appends a number for recursion.
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
    # Functions in several files may have the same name.
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
