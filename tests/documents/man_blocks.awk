# Converts the command lines and excerpts of a manual page to console blocks of Markdown, and drops the rest of the page.
function plain(text)
{
    gsub(/\\-/, "-", text)
    gsub(/\\\(aq/, "'", text)
    gsub(/\\\(dq/, "\"", text)
    gsub(/\\e/, "\\", text)
    gsub(/\\&/, "", text)
    return text
}

BEGIN { fence = "```" }

/^\.\\" \$ / { commands[++count] = plain(substr($0, 5)); next }

/^\.Bd .*-literal/ { isLiteral = 1; isConsole = count > 0; isFirst = 1; next }
isLiteral && /^\.Ed/ {
    if (isConsole)
        print fence
    isLiteral = 0
    count = 0
    next
}
isLiteral {
    text = plain($0)
    if (isFirst) {
        isFirst = 0
        if (text ~ /^\$ /)
            isConsole = 1
        if (isConsole)
            print fence "console"
        for (i = 1; i <= count; i++)
            print commands[i]
    }
    # An excerpt without a command to compare it with is shown as a command, which fails.
    if (!isConsole && text ~ /: (error|warning): |^\[_?dcm[A-Za-z]+:/)
        text = "dcm has-printed-this " text
    print (isConsole ? "" : "    ") text
    next
}

/^\.Dl (\$ )?dcm / {
    text = plain($0)
    sub(/^\.Dl (\$ )?/, "", text)
    # Other programs need not be installed.
    sub(/ \| jq .*/, "", text)
    print fence "console"
    print "$ " text
    print "..."
    print fence
    next
}
