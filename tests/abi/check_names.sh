#!/usr/bin/env bash
# What belongs to one source is invisible to the others: the linker merges symbols of the same name, and in namespaces
# without a name two sources may well use the same. Usage: check_names.sh LIBRARY
set -euo pipefail

symbols=$(nm --demangle "$1")
grep -q ' T dcmCardInfoGet$' <<<"$symbols" || {
    echo "${1##*/} has no dcmCardInfoGet: these are not its symbols"
    exit 1
}
! grep -E '^[0-9a-f]* +[A-TV-Zuvw] .*anonymous namespace' <<<"$symbols" || {
    echo 'these symbols are shared between sources'
    exit 1
}
