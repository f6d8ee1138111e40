# The functions of a C header as the man page has them: a line ".Ft TYPE" and a line ".Fn NAME ARGUMENT ..." for each.
function trimmed(text)
{
    gsub(/^[ \t]+|[ \t]+$/, "", text)
    return text
}

/^DCM_API / { prototype = "" ; isOpen = 1 }
isOpen {
    line = $0
    sub(/\/\*.*/, "", line)
    prototype = prototype " " trimmed(line)
    if (line !~ /;/)
        next
    isOpen = 0
    sub(/^ *DCM_API /, "", prototype)
    sub(/ DCM_NONNULL\([0-9, ]*\);/, ";", prototype)
    sub(/\);.*/, "", prototype)
    open = index(prototype, "(")
    head = substr(prototype, 1, open - 1)
    count = split(substr(prototype, open + 1), arguments, ",")
    name = head
    sub(/.*[ *]/, "", name)
    type = trimmed(substr(head, 1, length(head) - length(name)))
    print ".Ft " (type ~ / / ? "\"" type "\"" : type)
    text = ".Fn " name
    for (i = 1; i <= count; i++)
        text = text " \"" trimmed(arguments[i]) "\""
    print text
}
