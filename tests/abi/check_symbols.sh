#!/usr/bin/env bash
# Compares the exported and the undefined symbols of libdcm.so with the two lists in this folder.
# Usage: check_symbols.sh LIBRARY [READELF]
set -euo pipefail
export LC_ALL=C

library=$1
readelf=${2:-readelf}
here=$(cd "$(dirname "$0")" && pwd)
failed=0

# symbols exported|undefined: names without version. The table of readelf has Num Value Size Type Bind Vis Ndx Name. Weak
# references are those of the toolchain (__gmon_start__, _ITM_*, __cxa_finalize).
symbols() {
    "$readelf" --dyn-syms --wide "$library" | awk -v wanted="$1" '
        $1 ~ /^[0-9]+:$/ && NF >= 8 && $5 != "LOCAL" {
            kind = $7 != "UND" ? "exported" : $5 == "WEAK" ? "weak" : "undefined"
            sub(/@.*/, "", $8)
            if (kind == wanted)
                print $8
        }' | sort -u
}

# A list without its comments.
listed() {
    sed -e 's/[[:space:]]*#.*//' -e '/^$/d' "$here/$1" | sort -u
}

# complain TITLE LINES: prints nothing without lines.
complain() {
    [ -n "$2" ] || return 0
    printf '%s:\n%s\n' "$1" "$2"
    failed=1
}

exported=$(symbols exported)
complain 'declared in the list of exported symbols, but not exported' \
    "$(comm -23 <(listed exported-symbols.txt) <(echo "$exported"))"
complain 'exported, but not in the list of exported symbols' \
    "$(comm -13 <(listed exported-symbols.txt) <(echo "$exported"))"

# The library needs one name of each line of the list, and no others.
undefined=$(symbols undefined)
complain 'in the list of undefined symbols, but not asked for' \
    "$(awk 'NR == FNR { asked[$0]; next } {
        found = /\?/
        for (i = 1; i <= NF; i++)
            found = found || $i in asked
    } !found' <(echo "$undefined") <(listed undefined-symbols.txt))"
complain 'asked for, but not in the list of undefined symbols' \
    "$(comm -13 <(listed undefined-symbols.txt | tr ' ' '\n' | sort -u) <(echo "$undefined"))"

dynamic=$("$readelf" --dynamic --wide "$library")
needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p' <<<"$dynamic")
complain 'libraries that it must not need' "$(grep -vE '^lib(c|xml2)\.|^ld-' <<<"$needed" || true)"
grep -q '^libxml2\.so' <<<"$needed" || complain 'it does not name the library that it needs' libxml2
soname=$(sed -n 's/.*(SONAME).*\[\(.*\)\]$/\1/p' <<<"$dynamic")
[ "$soname" = libdcm.so.1 ] || complain 'its soname is not libdcm.so.1' "'$soname'"

exit "$failed"
