# The instructions of a query by function, without those of its callees.
function idOf(text) {
    match(text, /^\([0-9]+\)/)
    if (length(text) > RLENGTH)
        names[substr(text, 1, RLENGTH)] = substr(text, RLENGTH + 2)
    return substr(text, 1, RLENGTH)
}
FNR == 1 { isOwn = 0 }
/^desc: Trigger: Client Request: query\|/ { isOwn = 1 }
!isOwn && !/^c?fn=/ { next }
/^fn=/ { current = idOf(substr($0, 4)); next }
/^cfn=/ { called = idOf(substr($0, 5)); next }
/^calls=/ { sub(/^calls=/, ""); calls[called] += $1; isCall = 1; next }
/^[0-9+*-]/ {
    # The line after a call is the cost of the callee.
    if (!isCall) {
        own[current] += $2
        total += $2
    }
    isCall = 0
}
END {
    for (id in own)
        printf "%10d %5.1f%% %8d calls  %s\n", own[id], 100 * own[id] / total, calls[id], names[id] | "sort -rn"
}
