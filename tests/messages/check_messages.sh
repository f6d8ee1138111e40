#!/usr/bin/env bash
# Checks that each place in the library's sources that can report a failure has done so in some test.
# usage: check_messages.sh SOURCES TEST-PROGRAM [ARGUMENT...] [-- TEST-PROGRAM [ARGUMENT...]]...
set -euo pipefail

root=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The fixture of the tests adds a line for each report: its source line, its function, its text.
export DCM_PROVOKED_MESSAGES=$work/provoked
: >"$DCM_PROVOKED_MESSAGES"
run() {
    # Failing tests are reported elsewhere.
    "$@" >"$work/output" 2>&1 || true
}
command=()
for word in "$@" --; do
    if [ "$word" = -- ]; then
        run "${command[@]}"
        command=()
    else
        command+=("$word")
    fi
done

cd "$root"
find common frame slot card led vm \( -name '*.h' -o -name '*.cpp' \) | LC_ALL=C sort >"$work/sources"
[ -s "$work/sources" ] || { echo "no sources below $root" >&2; exit 1; }

# Prints "FILE TAB FIRST-LINE TAB LAST-LINE TAB TEXT" for each message in the sources.
# shellcheck disable=SC2016  # variables of awk
scan='
    # The end of the literal that starts at position i of text: that of its closing quote.
    function end_of_literal(i,    quote) {
        quote = substr(text, i, 1)
        for (i++; substr(text, i, 1) != quote; i++)
            if (substr(text, i, 1) == "\\")
                i++
        return i
    }
    # Replaces comments by blanks, without the line ends, and drops macro definitions.
    function clean(    i, result, two) {
        result = ""
        for (i = 1; i <= length(text); i++) {
            two = substr(text, i, 2)
            if (two == "//") {
                while (i < length(text) && substr(text, i + 1, 1) != "\n")
                    i++
            } else if (two == "/*") {
                for (i += 2; substr(text, i, 2) != "*/"; i++)
                    if (substr(text, i, 1) == "\n")
                        result = result "\n"
                i++
            } else if (substr(text, i, 1) ~ /["\047]/ && substr(text, i - 1, 1) !~ /[0-9]/) {
                two = end_of_literal(i)
                result = result substr(text, i, two - i + 1)
                i = two
            } else if (substr(text, i, 7) == "#define") {
                for (; i < length(text) && substr(text, i, 1) != "\n"; i++)
                    if (substr(text, i, 2) == "\\\n") {
                        result = result "\n"
                        i++
                    }
                i--
            } else {
                result = result substr(text, i, 1)
            }
        }
        text = result
    }
    # Reads the macro call whose "(" is at position i, and prints its place; the text is argument number wanted.
    function take(i, line, wanted,    depth, argument, message, last, character, at, first) {
        first = line
        argument = 1
        message = ""
        found = 0
        for (depth = 0; ; i++) {
            character = substr(text, i, 1)
            if (character == "\n") {
                line++
            } else if (character == "\"") {
                at = end_of_literal(i)
                if (argument == wanted && depth == 1) {
                    message = message substr(text, i + 1, at - i - 1)
                    found = 1
                }
                i = at
            } else if (character ~ /[([{]/) {
                depth++
            } else if (character ~ /[])}]/) {
                if (--depth == 0)
                    break
            } else if (character == "," && depth == 1) {
                argument++
            } else if (character == "") {
                break
            }
        }
        gsub(/\\"/, "\"", message)
        printf "%s\t%d\t%d\t%s\n", file, first, line, found ? message : "(no literal)"
    }
    function scan_file(    rest, offset, line, before, macro) {
        clean()
        offset = 0
        line = 1
        while (match(substr(text, offset + 1), /DCM_(REPORT|MESSAGE(_[A-Z]+)*)\(/)) {
            before = substr(text, offset + 1, RSTART - 1)
            line += gsub(/\n/, "", before)
            macro = substr(text, offset + RSTART, RLENGTH)
            offset += RSTART - 1 + RLENGTH
            take(offset, line, macro == "DCM_REPORT(" ? 2 : 1)
        }
    }
    { file = $0; text = ""; while ((getline line < file) > 0) text = text line "\n"; close(file); scan_file() }
'
awk "$scan" "$work/sources" >"$work/messages"
[ -s "$work/messages" ] || { echo 'no messages found in the sources' >&2; exit 1; }

# A message is provoked when its text was reported from one of its lines. Messages in several files may have the same text
# and line: then as many functions must have reported it there.
# shellcheck disable=SC2016
compare='
    FNR == NR { lines[$3] = lines[$3] " " $1; function_of[$3, $1] = function_of[$3, $1] " " $2; next }
    {
        places++
        texts += !($4 in known)
        known[$4] = 1
        provoked = 0
        for (line = $2; line <= $3; line++) {
            if (($4, line) in function_of) {
                claimed[$4, line]++
                provoked = split(function_of[$4, line], functions, " ") >= claimed[$4, line]
                break
            }
        }
        if (!provoked) {
            printf "%s:%d: no test provokes this: %s\n", $1, $2, $4
            missing++
        }
    }
    END {
        printf "%d messages at %d places, %d of them provoked\n", texts, places, places - missing
        exit missing > 0
    }
'
sort -u -o "$work/provoked" "$work/provoked"
awk -F '\t' "$compare" "$work/provoked" "$work/messages"
