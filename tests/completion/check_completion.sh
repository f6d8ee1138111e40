#!/usr/bin/env bash
# What the tool offers shells for a command line. Usage: check_completion.sh DCM SOURCE_FOLDER CASE
set -euo pipefail

dcm=$1
source=$2
example=$source/examples/device.xml
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# candidates INDEX WORD...: the words that are offered and continue the one with the index, sorted.
candidates() {
    local beginning=${*:$1 + 2:1}
    "$dcm" --complete "$@" | cut -f 1 | awk -v beginning="$beginning" 'index($0, beginning) == 1 || /^:/' | sort
}

# offers_at INDEX WHAT OFFER... -- WORD...: exactly these are offered, in any order.
offers_at() {
    local index=$1 what=$2 expected=''
    shift 2
    while [ "$1" != -- ]; do
        expected+=$1$'\n'
        shift
    done
    shift
    local offered
    offered=$(candidates "$index" "$@")
    expected=$(printf %s "$expected" | sort)
    [ "$offered" = "$expected" ] && return 0
    printf 'not so: %s\n--- offered\n%s\n--- expected\n%s\n' "$what" "$offered" "$expected"
    exit 1
}

# offers WHAT OFFER... -- WORD...: the same at the last word.
offers() {
    local words=$#
    for word in "$@"; do
        words=$((words - 1))
        [ "$word" != -- ] || break
    done
    offers_at "$((words - 1))" "$@"
}

completes_commands_and_options() {
    offers 'a command by its beginning' frame -- fr
    offers 'the options of a command' --file -- frame 1 --fi
    offers 'the options of the tool' --help --version --log -- --
    offers 'the options of the command above, too' --file -- export card --fi
    offers 'commands that help explains' export explain -- help ex
    offers 'commands of commands that help explains' frame slot card -- help export ''
    offers 'the value of an option' json -- check --format j
    offers 'the value of an option in the same word' --format=json -- check --format=j
    offers 'nothing for a value that can be anything' -- check --jobs ''
    offers 'nothing after the last argument' -- version ''
    offers 'nothing of a command that there is not' -- chek -x
}

# Each command and option that the help shows is offered.
completes_whatever_the_help_shows() {
    local command option count=0
    local commands
    commands=$("$dcm" --help | awk '/^Subcommands:|^SUBCOMMANDS:/ { on = 1; next } on && /^  [a-z]/ { print $1 }')
    [ "$commands" != '' ] || { echo 'the help shows no commands' && exit 1; }
    for command in $commands; do
        "$dcm" --complete 0 | cut -f 1 | grep -qxF "$command" || { echo "not offered: $command" && exit 1; }
        for option in $("$dcm" "$command" --help | grep -oE '^  (-[A-Za-z],)?--?[A-Za-z-]+' | tr ',' ' '); do
            "$dcm" --complete 1 "$command" - | cut -f 1 | grep -qxF -e "$option" || {
                echo "not offered: $command $option"
                exit 1
            }
            count=$((count + 1))
        done
    done
    [ "$count" -ge 25 ] || { echo "only $count options in the help" && exit 1; }
}

# What every shell shows behind a candidate.
says_what_candidates_mean() {
    "$dcm" --complete 0 | grep -qF $'check\tCheck descriptions for mistakes'
    "$dcm" --complete 3 card -f "$example" | grep -qF $'0x0402\tMultiplexing transponder, 10 x 10G to 100G'
    ! "$dcm" --complete 0 | grep -vE $'^[a-z-]+\t.+$'
}

completes_types_and_modes_from_the_file() {
    offers 'the types of frames' 1 2 -- frame --file "$example" ''
    offers 'the types of slots, each of a list' 0x12 0x21 0x22 0x24 0x25 -- slot -f "$example" 0x
    offers 'types of cards by their beginning' 0x0401 0x0402 0x0403 -- card --file="$example" 0x04
    offers 'the modes of a card type' 0 1 -- card --file "$example" 0x0402 ''
    offers 'the modes of a card type in another base' 0 1 -- card --file "$example" 1026 ''
    offers 'nothing behind a frame type' -- frame --file "$example" 1 ''
    offers_at 1 'types of a file that is named after the cursor' 1 2 -- frame '' --file "$example"
    offers_at 1 'the same in one word' 1 2 -- frame '' --file="$example"
}

completes_types_of_the_right_kind_in_any_layout() {
    cat >"$folder/device.xml" <<'XML'
<device>
  <!-- <card typeid="9"/>
       <card typeid="10"/> -->
  <frame typeid="1">
    <fanctrl-entity><fanctrl><card typeid="21">1-16</card></fanctrl></fanctrl-entity>
    <card>1-16</card>
  </frame>
  <card
      mode='7'
      typeid = '0x11'
  />
  <card name="typeid=&quot;3&quot;" typeid="12"/><card-of-another-kind typeid="13"/>
  <card/><card typeid="nonsense"/>
</device>
XML
    offers 'types of cards, and of nothing else of this name' 0 0x11 12 -- card --file "$folder/device.xml" ''
    offers 'a mode' 7 -- card --file "$folder/device.xml" 17 ''
    offers 'no types of a file that is not there' -- card --file "$folder/none.xml" ''
    offers 'no types from standard input, which is the terminal' -- card --file - '' < <(
        echo '<device><card typeid="5"/></device>'
    )
    echo '<device><card typeid="1">' >"$folder/torn.xml"
    offers 'no types of a file that is not well-formed' -- card --file "$folder/torn.xml" ''
}

completes_virtual_machines_files_and_folders() {
    mkdir "$folder/device"
    touch "$folder/device/vm-3.xml" "$folder/device/vm-14.xml" "$folder/device/vm-x.xml" "$folder/device/vm-3.xml~" \
        "$folder/device/vm-1000.xml"
    offers 'virtual machines' 3 14 -- vm --root "$folder" ''
    # shellcheck disable=SC2088 # as a shell hands it over
    HOME=$folder offers 'virtual machines of a folder in the home folder' 3 14 -- vm --root '~/' ''
    offers 'no machines of a folder that is not there' -- vm --root "$folder/none" ''
    offers 'folders' :folders -- vm --root ''
    offers 'files' :files -- frame 1 --file ''
    offers 'files of a command that takes no type' :files -- list x
    offers 'several files' :files -- check a.xml b
}

completes_checks() {
    offers 'when to use colours' auto always never -- check --color ''
    offers 'what is explained' octal-number -- check --explain oct
    offers 'checks to do' octal-number -- check --only oct
    offers 'formats of findings' text gcc github checkstyle json sarif -- check --format ''
    offers 'checks to leave out' no-octal-number -- check -W no-oct
    offers 'checks whose findings are errors' error=octal-number -- check -W error=oct
}

completes_exports() {
    offers 'what can be exported' frame slot card -- export ''
    offers 'types to export' 1 2 -- export --file "$example" frame ''
    offers 'modes to export' 0 1 -- export --file "$example" card 0x0402 ''
    offers 'what can be shown' frame slot card -- show ''
    offers 'types to show' 1 2 -- show --width 80 --file "$example" frame ''
    offers 'when to colour a page' auto always never -- show --color ''
}

completes_drawings() {
    local example=$source/examples/device.xml
    offers 'what can be drawn' frame card -- draw ''
    offers 'types to draw behind options' 0x0401 0x0402 0x0403 -- draw -f "$example" --led fan = stop card 0x04
    offers 'an option of frames' --fit -- draw frame 1 --fit
    offers 'files to write' "$source/examples/device.xml" -- draw card 1 -o "$source/examples/dev"
}

"$3"
