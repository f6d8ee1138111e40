# Compares callgrind's counts for each case: libxml2 parsing and freeing the file, and the query. Each input file has one of
# the two counts, named floor|BYTES|LIMIT|CASE or query|.... Fails if a query exceeds its limit.
/^desc: Trigger: Client Request: / {
    sub(/^desc: Trigger: Client Request: /, "")
    split($0, section, "|")
}
/^summary: / && section[4] != "" {
    name = section[4]
    if (!(name in bytes)) {
        names[++count] = name
        bytes[name] = section[2]
        limit[name] = (section[3] + 0 > 0 ? section[3] : "")
    }
    instructions[name, section[1]] += $2
    section[4] = ""
}
END {
    printf "%-30s %9s %11s %11s %7s %5s\n", "", "bytes", "floor", "query", "ratio", "limit"
    for (i = 1; i <= count; i++) {
        name = names[i]
        ratio = instructions[name, "query"] / instructions[name, "floor"]
        isOver = (limit[name] != "" && ratio > limit[name])
        printf "%-30s %9d %11d %11d %7.4f %5s%s\n", name, bytes[name], instructions[name, "floor"], \
            instructions[name, "query"], ratio, limit[name], (isOver ? " exceeded" : "")
        over += isOver
    }
    exit (count == 0 || over > 0)
}
