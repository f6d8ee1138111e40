#!/usr/bin/env bash
# The man pages document every function, command and option. Usage: check_man.sh SOURCE_FOLDER CASE [DCM]
set -euo pipefail

source=$(realpath "$1")
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

# candidates WORD...: what can follow these words.
candidates() {
    "$dcm" --complete $# "$@" '' | cut -f 1
    "$dcm" --complete $# "$@" - | cut -f 1
}

# documents WORD...: dcm(1) has whatever can follow these words, commands and options, and so on below those commands.
documents() {
    local word
    while read -r word; do
        case $word in
        -*) names dcm.1 "(^\\.|[^l] )Fl ${word/#-/}( |\$)" ;;
        *) names dcm.1 "^\\.Cm ([a-z|]+ )*$word( |\$)" ;;
        esac
        count=$((count + 1))
    done < <(candidates "$@" | grep -E "^-|^($commands)\$" | sed -E 's/^--/-Fl /')
}

# dcm(1) has each command and option of the tool.
has_every_command_and_option() {
    local command count=0 commands='frame|slot|card'
    commands+='|'$("$dcm" --complete 0 | cut -f 1 | paste -sd '|')
    documents
    for command in ${commands//|/ }; do
        documents "$command"
    done
    for command in card slot frame; do
        documents new "$command"
        documents export "$command"
    done
    [ "$count" -ge 60 ] || { echo "only $count commands and options" && exit 1; }
}

# The commands that dcm(1) shows, as they are typed.
shown_commands() {
    sed -n 's/^\.Dl dcm /dcm /p' "$source/man/dcm.1" | sed "s/\\\\(aq/'/g; s/\\\\-/-/g"
}

# Each runs where the files are that it names.
runs_every_command_that_it_shows() {
    local folder command count=0
    folder=$(mktemp -d)
    # shellcheck disable=SC2064 # now
    trap "rm -rf '$folder'" EXIT
    mkdir "$folder/bin"
    ln -s "$(realpath "$dcm")" "$folder/bin/dcm"
    cp "$source/examples/device.xml" "$folder"
    cd "$folder"
    while read -r command; do
        # What is piped into another program is of interest as far as it goes without that one.
        [[ $command != *'| jq'* ]] || command -v jq >/dev/null || command=${command%%|*}
        PATH=$folder/bin:$PATH bash -c "set -o pipefail; $command" >out 2>err </dev/null || {
            echo "does not work: $command"
            cat out err
            exit 1
        }
        count=$((count + 1))
    done < <(shown_commands)
    [ "$count" -ge 8 ] || { echo "only $count commands" && exit 1; }
}


# The forms of the commands, as readers see them.
shows_the_forms_of_commands() {
    command -v mandoc >/dev/null || { echo 'skipped: there is no mandoc' && exit 77; }
    local forms form
    forms=$(mandoc -T ascii -O width=200 "$source/man/dcm.1" | sed 's/.\x08//g')
    for form in 'dcm export [-f FILE] [frame [TYPE] | slot [TYPE] | card [TYPE [MODE]]]' 'dcm card TYPE [MODE] [-f FILE]' \
        'dcm list [--json] [-f FILE | FILE]' 'dcm vm -f FILE' 'dcm check --list-checks | --explain NAME' \
        'dcm new slot --type NUMBER [--ports LIST]' 'dcm words [VOCABULARY]'; do
        grep -qxF "     $form" <<<"$forms" || {
            echo "not in the synopsis: $form"
            exit 1
        }
    done
    mandoc -T lint -W warning "$source/man/dcm.1"
}

"$2"
