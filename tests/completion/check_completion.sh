#!/usr/bin/env bash
# What bash offers for a command line. Usage: check_completion.sh DCM SOURCE_FOLDER CASE
set -euo pipefail

dcm=$1
source=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# shellcheck source=completions/dcm
source "$source/completions/dcm"

# offers WHAT WORD... -- LINE...: bash offers exactly these words, in any order, at the end of the line, which begins
# behind "dcm". Offers that repeat count once.
offers() {
    local what=$1 expected=()
    shift
    while [ "$1" != -- ]; do
        expected+=("$1")
        shift
    done
    shift
    COMP_WORDS=("$dcm" "$@")
    COMP_CWORD=$#
    complete_line
    local offered wanted
    offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort -u)
    wanted=$(printf '%s\n' "${expected[@]}" | sort -u)
    [ "$offered" = "$wanted" ] && return 0
    printf 'not so: %s\n--- offered\n%s\n--- expected\n%s\n' "$what" "$offered" "$wanted"
    exit 1
}

complete_line() {
    COMPREPLY=()
    _dcm "$dcm" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
}

# has WORD: bash offers the word among others, after complete_line.
has() {
    grep -qxF -e "$1" <(printf '%s\n' "${COMPREPLY[@]}") || {
        echo "not offered: $1"
        exit 1
    }
}

completes_commands_and_options() {
    offers 'a command by its beginning' frame -- fr
    offers 'the options of a command' --file -- frame 1 --fi
    COMP_WORDS=("$dcm" '') COMP_CWORD=1
    complete_line
    local command
    for command in frame slot card vm; do
        has "$command"
    done
    COMP_WORDS=("$dcm" -) COMP_CWORD=1
    complete_line
    has --help
    has --version
    has --log
}

# Whatever the help shows is offered.
completes_whatever_the_help_shows() {
    local command option count=0
    for command in $("$dcm" --help | sed -n '/^Subcommands:/,$ s/^  \([a-z-]*\)  *[A-Z].*/\1/p'); do
        COMP_WORDS=("$dcm" "$command" -) COMP_CWORD=2
        complete_line
        for option in $("$dcm" "$command" --help | grep -oE '^  (-[A-Za-z],)?--[a-z-]+' | grep -oE -e '--[a-z-]+'); do
            has "$option"
            count=$((count + 1))
        done
    done
    [ "$count" -ge 8 ] || { echo "only $count options in the help" && exit 1; }
}

completes_types_and_modes_from_the_file() {
    local example=$source/examples/device.xml
    offers 'the types of frames' 1 2 -- frame --file "$example" ''
    offers 'the types of slots, each of a list' 0x12 0x21 0x22 0x24 0x25 -- slot -f "$example" 0x
    offers 'types of cards by their beginning' 0x0401 0x0402 0x0403 -- card --file = "$example" 0x04
    offers 'the modes of a card type' 0 1 -- card --file "$example" 0x0402 ''
    offers 'the modes of a card type in another base' 0 1 -- card --file "$example" 1026 ''
    offers 'nothing behind a frame type' -- frame --file "$example" 1 ''
    COMP_WORDS=("$dcm" frame '' --file "$example") COMP_CWORD=2
    complete_line
    has 2
}

reads_any_layout_of_a_file() {
    cat >"$folder/device.xml" <<'XML'
<device>
  <!-- <card typeid="9"/>
       <card typeid="10"/> -->
  <card
      mode='7'
      typeid = '0x11'
  />
  <card name="typeid=&quot;3&quot;" typeid="12"/><card-of-another-kind typeid="13"/>
  <card/>
</device>
XML
    offers 'types of cards and of no comment' 0 0x11 12 -- card --file "$folder/device.xml" ''
    offers 'a mode' 7 -- card --file "$folder/device.xml" 17 ''
    offers 'no types of a file that is not there' -- card --file "$folder/none.xml" ''
}

completes_virtual_machines_and_files() {
    mkdir "$folder/device" "$folder/a folder"
    touch "$folder/device/vm-3.xml" "$folder/device/vm-14.xml" "$folder/device/vm-x.xml"
    offers 'virtual machines' 3 14 -- vm --root "$folder" ''
    offers 'folders' "$folder/a folder" "$folder/device" -- vm --root "$folder/"
    offers 'files' "$folder/device" -- frame 1 --file "$folder/dev"
}

completes_checks() {
    offers 'forms of output' json -- check --format j
    offers 'when to use colours' auto always never -- check --color ''
    offers 'what is explained' octal-number -- check --explain oct
    offers 'checks to leave out' no-octal-number -- check -W no-oct
    offers 'checks whose findings are errors' octal-number -- check -W error = oct
    offers 'files to check' "$source/examples/device.xml" -- check -W error "$source/examples/dev"
}

completes_exports() {
    local example=$source/examples/device.xml
    offers 'what can be exported' frame slot card -- export ''
    offers 'types to export' 1 2 -- export --file "$example" frame ''
    offers 'modes to export' 0 1 -- export --file "$example" card 0x0402 ''
    offers 'what can be shown' frame slot card -- show ''
    offers 'types to show' 1 2 -- show --width 80 --file "$example" frame ''
    offers 'when to colour a page' auto always never -- show --color ''
}

"$3"
