#!/usr/bin/env bash
# Checks the hardening of a linked file. Usage: check_hardening.sh FILE [fortified]
# A function of the file has a frame of several pages. A file is fortified if GCC built it for glibc.
set -euo pipefail
export LC_ALL=C

file=$1
fortified=${2-}
failed=0

complain() {
    printf '%s %s\n' "${file##*/}" "$1"
    failed=1
}

dynamic=$(readelf --wide --dynamic "$file")
segments=$(readelf --wide --program-headers "$file")
imported=$(readelf --wide --dyn-syms "$file" | awk '$7 == "UND" { sub(/@.*/, "", $8); print $8 }')

grep -q '(FLAGS.*\<\(BIND_\)\?NOW\>' <<<"$dynamic" || complain 'binds its functions when they are first called'
grep -q ' GNU_RELRO ' <<<"$segments" || complain 'leaves its pointers writable'
grep -q ' DYN (' <<<"$(readelf --wide --file-header "$file")" || complain 'is loaded at a fixed address'
! grep ' GNU_STACK .* RWE ' <<<"$segments" || complain 'has a stack that can be executed'
grep -qx '__stack_chk_fail' <<<"$imported" || complain 'has no guards on its stack'
if [ "$fortified" = fortified ]; then
    grep -qx '__[a-z]*_chk' <<<"$imported" || complain 'has bounds that libc does not check'
fi

# The rest is in the machine code of this architecture.
if readelf --wide --file-header "$file" | grep -q 'Machine: .*X86-64'; then
    # Addresses of the functions that others may call, except for those of libc, and of those that begin with the
    # instruction for indirect branch targets.
    called=$(readelf --wide --symbols "$file" |
        awk '$4 == "FUNC" && $5 == "GLOBAL" && $7 != "UND" && $8 !~ /^_(init|fini|start)$/ { print $2 }' | sort -u)
    code=$(objdump --disassemble --no-show-raw-insn --wide "$file")
    marked=$(awk '/^[0-9a-f]+ <.*>:$/ { address = $1; getline; if (/endbr64/) print address }' <<<"$code" | sort -u)
    unmarked=$(comm -23 <(echo "$called") <(echo "$marked") | wc -l)
    [ "$unmarked" -eq 0 ] || complain "has $unmarked functions without the mark of a place to jump to"
    # A frame of several pages is allocated one page at a time.
    # shellcheck disable=SC2016  # constants of the compiler
    steps=$(sed -nE 's/.*\<sub +\$(0x[0-9a-f]+),%rsp.*/\1/p' <<<"$code" | sort -u)
    grep -qx 0x1000 <<<"$steps" || complain 'touches none of the pages of its large frames'
    for step in $steps; do
        ((step <= 0x1000)) || complain "takes $step bytes of its stack at once"
    done
fi

exit "$failed"
