#!/usr/bin/env bash
# The man pages document every function, command and option. Usage: check_man.sh SOURCE_FOLDER CASE [DCM]
set -euo pipefail

source=$1
dcm=${3-}
here=$(dirname "${BASH_SOURCE[0]}")

# names PAGE PATTERN
names() {
    grep -qE -e "$2" "$source/man/$1" && return 0
    echo "$1 does not have: $2"
    exit 1
}

# dcm(3) has each function of the header, with its type and arguments.
has_every_function() {
    local wanted count=0
    while read -r wanted; do
        grep -qxF -e "$wanted" "$source/man/dcm.3" || { echo "dcm.3 does not have: $wanted" && exit 1; }
        count=$((count + 1))
    done < <(awk -f "$here/prototypes.awk" "$source/include/dcm.h")
    [ "$count" -ge 100 ] || { echo "only $count lines of prototypes" && exit 1; }
}

# dcm(1) has each command and option of the tool.
has_every_command_and_option() {
    local command option count=0
    for command in '' $("$dcm" --help | sed -n '/^Subcommands:/,$ s/^  \([a-z-]*\)  *[A-Z].*/\1/p'); do
        [ -z "$command" ] || names dcm.1 "^\\.Cm $command$"
        # shellcheck disable=SC2086 # empty without a command
        for option in $("$dcm" $command --help | sed -nE 's/^  (-[^ ]*).*/\1/p' | tr ',' ' '); do
            option=${option#-}
            names dcm.1 "(^\\.|[^l] )Fl ${option/#-/Fl }( |\$)"
            count=$((count + 1))
        done
    done
    [ "$count" -ge 10 ] || { echo "only $count options in the help" && exit 1; }
}

"$2"
