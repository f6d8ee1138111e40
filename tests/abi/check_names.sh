#!/usr/bin/env bash
# Names of one source are local: the linker merges symbols of the same name, and two sources may have the same names in
# unnamed namespaces. Usage: check_names.sh LIBRARY
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
