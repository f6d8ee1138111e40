#!/usr/bin/env bash
# The tool's behaviour at the command line. Usage: check_tool.sh DCM SOURCE_FOLDER CASE
set -euo pipefail

dcm=$1
source=$2
example=$source/examples/device.xml
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
[ ! -t 0 ] || exec </dev/null

# DCM_EMULATOR runs what was built for another machine.
tool() { ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$dcm" "$@"; }

# run ARGUMENT...: leaves status, $folder/out and $folder/err.
run() {
    status=0
    tool "$@" >"$folder/out" 2>"$folder/err" || status=$?
}

# expect WHAT CONDITION...
expect() {
    local what=$1
    shift
    "$@" && return 0
    printf 'not so: %s\nstatus %s\n--- standard output\n' "$what" "$status"
    cat "$folder/out"
    echo '--- standard error'
    cat "$folder/err"
    exit 1
}

# skip WHY: ctest reports a test with this status as skipped.
skip() {
    echo "skipped: $*"
    exit 77
}

# starts_within KILOBYTES: a sanitizer needs more address space than any limit leaves.
starts_within() {
    (
        ulimit -v "$1"
        tool --version
    ) >/dev/null 2>&1 || skip "the tool does not start within $1 kB"
}

says() { grep -qF -- "$2" "$folder/$1"; }
silent() { [ ! -s "$folder/$1" ]; }
exits() { [ "$status" -eq "$1" ]; }
# The report after its "file:" line is the golden one.
prints_golden() { tail -n +3 "$folder/out" | cmp -s - "$source/tests/golden/$1"; }

# Standard output follows a schema of docs/schema, or the one that is built beside the tool.
follows() {
    local schema=$source/docs/schema/$1.schema.json
    [ "$1" != export ] || schema=$(dirname "$dcm")/export.schema.json
    python3 "$source/tests/tool/validate.py" "$schema" "$folder/out"
}
# lists LINE: a line of the list, with any number of blanks between columns.
lists() { tr -s ' ' <"$folder/out" | grep -qxF -- "$1"; }

# A description in which the query of one card fails, that of another ignores a fault, and a slot has no type.
write_faulty() {
    cat >"$folder/faulty.xml" <<'XML'
<device>
  <frame typeid="1"><maxslotnum>3</maxslotnum></frame>
  <slot typeid="2,0x12"/><slot/>
  <card typeid="7" name="seven"><mgt-port num="5"/></card>
  <card typeid="8" mode="1"><temperature-entity num="1"><temperature id="1"><fanctrlbits>x</fanctrlbits></temperature>
  </temperature-entity></card>
</device>
XML
}

prints_each_report() {
    run frame 1 --file "$example"
    expect 'frame 1 prints its report and succeeds' exits 0
    expect 'frame 1 is the golden report' prints_golden frame-1.txt
    expect 'the report names its file' says out "file: $example: "
    expect 'nothing is said on standard error' silent err
    run slot 2 --file "$example"
    expect 'slot 2 succeeds' exits 0
    expect 'slot 2 is the golden report' prints_golden slot-2.txt
    run card 0x402 1 -f "$example"
    expect 'card 0x402 in mode 1 succeeds' exits 0
    expect 'card 0x402 in mode 1 is the golden report' prints_golden card-0x0402-1.txt
    run card 0x402 -f "$example"
    expect 'a card without mode is in mode 0' prints_golden card-0x0402-0.txt
    mkdir "$folder/device"
    cp "$source/examples/vm-3.xml" "$folder/device"
    run vm 3 --root "$folder"
    expect 'vm 3 succeeds' exits 0
    expect 'the port list names its file' says out "filename: $folder/device/vm-3.xml "
}

reads_numbers_in_any_base() {
    for type in 18 0x12 022; do
        run slot "$type" --file "$example"
        expect "slot $type is type 18" says out 'type: 18'
    done
}

fails_with_1_when_the_query_fails() {
    for command in 'frame 99' 'slot 99' 'card 99' 'card 0x402 7'; do
        # shellcheck disable=SC2086 # words of a command
        run $command --file "$example"
        expect "$command fails" exits 1
        expect "$command says why" says out 'can not find'
        expect "$command shows that it failed" says out '!!Failed to get'
    done
    printf '<device>\n<card>\n</device>' >"$folder/torn.xml"
    run card 1 --file "$folder/torn.xml"
    expect 'a file that is not well-formed fails' exits 1
    expect 'the library names it' says out "xmlfile($folder/torn.xml) parse failed("
    expect 'the parser says where' says err "$folder/torn.xml:3: Opening and ending tag mismatch: card line 2 and device"
}

# Files that the tool does not open, with the reasons.
write_unopened() {
    mkdir -p "$folder/unopened/device"
    mkfifo "$folder/fifo"
    python3 -c 'import socket, sys; socket.socket(socket.AF_UNIX).bind(sys.argv[1])' "$folder/socket"
    truncate -s $((64 * 1024 * 1024 + 1)) "$folder/large"
    cat >"$folder/reasons" <<TEXT
$folder/none.xml: No such file or directory
$folder/fifo: not a regular file but a FIFO
$folder/socket: not a regular file but a socket
/dev/zero: not a regular file but a device
$folder/large: larger than 64 MiB
TEXT
}

every_command_opens_regular_files_only() {
    write_unopened
    while IFS= read -r reason; do
        local file=${reason%%: *}
        for command in 'frame 1 --file' 'slot 1 --file' 'card 1 --file' 'list --file' 'list --json --file' 'export --file' \
            'show --file' 'draw frame 1 --file' "diff $example"; do
            # shellcheck disable=SC2086 # words of a command
            run $command "$file"
            expect "$command does not open $file" exits 66
            expect 'standard error says why, and nothing else' [ "$(cat "$folder/err")" = "dcm: $reason" ]
            expect 'standard output is silent' silent out
        done
        run page "$file"
        expect "page does not open $file" exits 66
        run check "$file"
        expect "check does not open $file" exits 66
        expect 'the finding says why' says out "$file: error: cannot be read: ${reason#*: } [unreadable]"
    done <"$folder/reasons"
    run list "$folder/unopened"
    expect 'a command that reads one file does not open a folder' \
        says err "dcm: $folder/unopened: not a regular file but a directory"
    mkfifo "$folder/unopened/device/vm-3.xml"
    run vm 3 --root "$folder/unopened"
    expect 'vm does not open a FIFO' exits 66
    expect 'standard error says why' says err "dcm: $folder/unopened/device/vm-3.xml: not a regular file but a FIFO"
    expect 'standard output is silent' silent out
}

# Text that would control a terminal, or that a reader could mistake for the tool's own: in a value, and in the name of a
# file, which may also contain bytes that no document can contain. U+009B is CSI, U+202E an override, U+2028 a line separator.
hostile_value='&#10;forged&#13;&#10;forged&#x9b;31m&#x202e;&#x2028;'
hostile_bytes=$'\nforged\e[31m\r\nforged\xc2\x9b31m\xe2\x80\xae\xff'

# run_hostile ARGUMENT...: runs a command that prints something, and keeps its output for all_is_harmless.
run_hostile() {
    run "$@"
    expect "'$(printf %q "$*")' prints something" [ -s "$folder/out" -o -s "$folder/err" ]
    cat "$folder/out" "$folder/err" >>"$folder/all"
    echo >>"$folder/all"
}

# The kept output is valid UTF-8 without control characters except line ends, and without lines forged by a file.
all_is_harmless() {
    python3 - "$folder/all" <<'PYTHON'
import re, sys, unicodedata
text = open(sys.argv[1], "rb").read().decode("utf-8")
lines = text.replace("\n\r==", "\n==").replace("\r\n", "\n").split("\n")
bad = [line for line in lines if line.startswith("forged")
       or re.search("[\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]", line)
       or any(unicodedata.category(c) == "Cc" and c != "\t" for c in line)]
sys.exit(f"not harmless: {bad[:9]!r}" if bad else 0)
PYTHON
}

text_of_a_file_reaches_a_terminal_escaped() {
    local name="$folder/$hostile_bytes" kind type
    local value=${hostile_value//&/\\&} # for sed
    mkdir -p "$name/device"
    # Replaces each text of the example, then each word, too, so that queries fail.
    sed -E "s/<(description|ifname|ifname-prefix|modelname)>[^<]*/<\1>$value/; s/ (name|abbrname|name-prefix)=\"[^\"]*/&$value/" \
        "$example" >"$name/texts.xml"
    sed -E "s/>([a-z][a-z0-9-]*)</>\1$value</; s/ (typeid|id)=\"/&$value/" "$name/texts.xml" >"$name/words.xml"
    printf '<device><card typeid="\x9b\x1b[31m\n\nforged\xff"></device>' >"$name/torn.xml"
    printf '<panel-port num="1%s"><ifindex>1</ifindex><forged typeid="%s"/></panel-port>' "$hostile_value" "$hostile_value" \
        >"$name/device/vm-3.xml"
    while read -r kind type _; do
        run_hostile "$kind" "${type%%,*}" --file "$name/texts.xml"
        expect "$kind $type is found" exits 0
        expect 'its report has an end' says out '}'
    done < <(tool list --file "$example" | tail -n +2)
    run card 0x201 --file "$name/texts.xml"
    expect 'what is escaped is still there' says out 'description=?forged??forged'
    for file in texts words torn none; do
        for command in 'frame 1' 'frame 0' 'slot 1' 'slot 0' 'card 1' 'card 0' list 'list --json' export 'export card' 'export card 77' show 'show card' 'show --ascii --width 40' \
            'draw frame 1' 'draw card 0x101' 'draw card 77' 'draw --check card 0x302' 'draw card 1 -o /dev/stdout.svg'; do
            # shellcheck disable=SC2086 # words of a command
            run_hostile --log $command --file "$name/$file.xml"
        done
        run_hostile page "$name/$file.xml"
        for format in text gcc github checkstyle json sarif; do
            run_hostile check --format "$format" "$name/$file.xml"
        done
        for format in text json html; do
            run_hostile diff --format "$format" "$example" "$name/$file.xml"
            run_hostile diff --format "$format" --git-driver "$hostile_bytes" "$name/$file.xml" 0 0 "$example" 0 0
        done
    done
    run_hostile --log vm 3 --root "$name"
    run_hostile list --file "$name/device/vm-3.xml"
    run_hostile check "$name/device/vm-3.xml"
    run_hostile check -W "no-$hostile_bytes" "$example"
    run_hostile diff --for "$hostile_bytes" "$example" "$example"
    run_hostile diff "HEAD:$hostile_bytes" "$example"
    run_hostile git-setup "$hostile_bytes"
    run_hostile frame 1 "$hostile_bytes"
    for command in list export show; do
        run_hostile $command --file - <"$name/torn.xml"
    done
    for command in '' help explain words 'new card --type 1 --name' 'new card --type 1 --ports' 'check --format' 'vm -f' list; do
        # shellcheck disable=SC2086 # words of a command
        run_hostile $command "$hostile_bytes"
    done
    run_hostile card 1 "$name/texts.xml"
    run_hostile --complete 3 card -f "$name/texts.xml" ''
    expect 'names are completed' says out '\n'
    expect 'all of it is harmless' all_is_harmless
}

standard_input_may_be_as_long_as_a_file() {
    head -c $((64 * 1024 * 1024 + 1)) /dev/zero >"$folder/long"
    status=0
    # A pipe has no length.
    # shellcheck disable=SC2002
    cat "$folder/long" | tool list --file - >"$folder/out" 2>"$folder/err" || status=$?
    expect 'standard input that is longer is not read' exits 66
    expect 'standard error says why' says err 'dcm: <stdin>: larger than 64 MiB'
    run check - <"$folder"
    expect 'standard input that is a directory is not read' says out '<stdin>: error: cannot be read: Is a directory'
}

ends_with_71_without_memory() {
    starts_within 600000
    for ((i = 0; i < 300; i++)); do cp "$example" "$folder/$i.xml"; done
    status=0
    (
        ulimit -v 600000
        tool check --jobs 256 "$folder"/*.xml
    ) >"$folder/out" 2>"$folder/err" || status=$?
    if exits 71; then
        expect 'standard error says so' says err 'dcm: out of memory'
    else
        expect 'or nothing is found' exits 0
        expect 'in any file' says out '300 files, nothing found'
    fi
    # A tree that exceeds the memory limit.
    {
        echo "<device><frame typeid='1'>"
        head -n 600000 < <(yes '<a/><a/><a/><a/>')
        echo '</frame></device>'
    } >"$folder/many.xml"
    for command in 'frame 1 -f' 'list -f' 'export -f' 'draw frame 1 -f' check "diff $example"; do
        status=0
        # shellcheck disable=SC2086 # words of a command
        (
            ulimit -v 100000
            tool $command "$folder/many.xml"
        ) >"$folder/out" 2>"$folder/err" || status=$?
        expect "$command ends with 71" exits 71
        expect "$command says out of memory" says err 'dcm: out of memory'
        expect "$command prints nothing" silent out
    done
}

check_works_without_threads() {
    starts_within 600000
    write_checked
    run check "$folder/warning.xml" "$folder/error.xml"
    cp "$folder/out" "$folder/alone"
    status=0
    (
        # Each thread would have a stack of this size.
        ulimit -s 1000000 -v 600000
        tool check --jobs 4 "$folder/warning.xml" "$folder/error.xml"
    ) >"$folder/out" 2>"$folder/err" || status=$?
    expect 'it exits as with one job' exits 2
    expect 'it finds the same' cmp -s "$folder/alone" "$folder/out"
}

fails_with_64_on_wrong_usage() {
    for command in '' 'unknown' 'frame' 'frame x' 'frame 1x' 'frame -1' 'frame 4294967296' 'frame 1 2' 'card 1 2 3' \
        'slot 1 --fil' 'vm 256' 'vm' 'frame 1 --unknown' 'list 1 2' 'list --jso' 'export vm' 'export frame 1 2' 'export card x' \
        'export card 1 2 3'; do
        # shellcheck disable=SC2086 # words of a command
        run $command
        expect "'dcm $command' is wrong usage" exits 64
        expect "'dcm $command' says so on standard error" test -s "$folder/err"
        expect "'dcm $command' prints nothing" silent out
    done
}

helps() {
    run --help
    expect 'help succeeds' exits 0
    cp "$folder/out" "$folder/help"
    run help
    expect 'help is a command, too' cmp -s "$folder/out" "$folder/help"
    local commands
    commands=$(tool --complete 0 | cut -f 1)
    for command in $commands; do
        expect "help names $command" says out "$command"
    done
    expect 'help names the exit statuses' says out '74 the output cannot be written.'
    for command in $commands; do
        run "$command" --help
        expect "$command --help succeeds" exits 0
        expect "$command --help shows its usage" says out "dcm $command"
        cp "$folder/out" "$folder/help"
        run help "$command"
        expect "so does help $command" cmp -s "$folder/out" "$folder/help"
    done
    run export card --help
    cp "$folder/out" "$folder/help"
    run help export card
    expect 'a command of a command has help, too' cmp -s "$folder/out" "$folder/help"
    for version in --version version; do
        run $version
        expect 'the version is printed' exits 0
        expect 'the version is dcm and a number' grep -qE '^dcm [0-9]+\.[0-9]+\.[0-9]+$' "$folder/out"
    done
}

# refuses TEXT ARGUMENT...: wrong usage, and standard error begins with the text.
refuses() {
    local text=$1
    shift
    run "$@"
    expect "'dcm $*' is wrong usage" exits 64
    expect "the answer is: $text" [ "$(head -n 1 "$folder/err")" = "$text" ]
    expect 'standard output is silent' silent out
}

suggests_the_nearest_valid_form() {
    refuses "dcm: 'chek' is not a valid command; did you mean 'check'?" chek
    refuses "dcm: 'chek' is not a valid command; did you mean 'check'?" chek --format json x.xml
    refuses "dcm help: 'exprt' is not a valid command; did you mean 'export'?" help exprt
    refuses "dcm export: 'car' is not a valid command; did you mean 'card'?" export car
    refuses "dcm list: '--jsn' is not an option; did you mean '--json'?" list --jsn
    refuses "dcm: '-f' is not an option of dcm itself; a command's options follow its name: dcm COMMAND -f" -f x list
    refuses "dcm: no command is given; 'dcm help' lists the commands"
    refuses "dcm list: --file has no value" list --file
    refuses "dcm frame: '2' is not expected" frame 1 2
    refuses "dcm help: 'x' is not expected" help list x
    expect 'the help that goes on is named' says err "see 'dcm help help'"
}

takes_words_and_numbers_as_documented() {
    # A number is refused where a word is expected.
    refuses "dcm check: '1' is not a valid value for --format; expected 'text', 'gcc', 'github', 'checkstyle', 'json', 'sarif'" check --format 1 x
    refuses "dcm check: '0x2' is not a valid value for --color; expected 'auto', 'always', 'never'" check --color 0x2 x
    refuses "dcm check: 'jsn' is not a valid value for --format; did you mean 'json'?" check --format jsn x
    refuses "dcm check: '257' is not a valid value for --jobs; expected a number from 1 to 256" check --jobs 257 x
    for number in x 1x -1 4294967296 '1 ' ' 1' +1 0b1 "1'000" 1_000 0o7 08; do
        refuses "dcm frame: '$number' is not a valid TYPE; expected a number in decimal, hexadecimal (0x10) or octal (010)" \
            frame "$number" -f "$example"
    done
    for empty in 'list -f' 'check -f' 'frame 1 -f' 'export --file' 'vm 1 -r' 'check --explain'; do
        # shellcheck disable=SC2086 # words of a command
        run $empty ''
        expect "'dcm $empty '' is wrong usage" exits 64
        expect 'the answer says why' says err ' is empty'
    done
    refuses "dcm frame: TYPE is missing" frame -f "$example"
    refuses "dcm list: --file is given a second time: 'b'" list -f a -f b
}

takes_a_file_either_way() {
    cd "$folder"
    cp "$example" a.xml
    run list -f a.xml
    cp out listed
    run list a.xml
    expect 'list takes a file without -f' cmp -s out listed
    run list - <a.xml
    expect 'standard input, too' exits 0
    run check -f a.xml a.xml
    expect 'check takes files with -f' says out '2 files, nothing found'
    run vm -f "$source/examples/vm-3.xml"
    expect 'vm takes a port list of any name' says out 'ifindex[4]: '
    refuses "dcm list: --file is given a second time: 'b.xml'" list a.xml -f b.xml
    refuses "dcm list: 'b.xml' is not expected; the command reads one file" list a.xml b.xml
    refuses "dcm vm: ID and -f FILE name two port lists" vm 3 -f b.xml
    # The message for a wrong form shows the right one, which works.
    local form
    for form in 'card a.xml' 'card 0x402 a.xml' 'frame 1 a.xml' 'vm a.xml' 'export a.xml' 'export card a.xml' \
        'export card 0x402 a.xml'; do
        # shellcheck disable=SC2086 # words of a command
        run $form
        expect "'dcm $form' is wrong usage" exits 64
        expect 'the answer shows the right form' says err '; a file is named with -f: dcm '
        read -ra words < <(sed -n '1s/.*with -f: dcm //p' err | sed 's/TYPE/1/; s/card 1 /card 0x402 /')
        [ "$form" != 'vm a.xml' ] || words=(vm -f "$source/examples/vm-3.xml")
        run "${words[@]}"
        expect "'dcm ${words[*]}' works" exits 0
    done
    touch 0x1
    run frame 0x1 -f a.xml
    expect 'a number is a number, though a file has its name' exits 0
    refuses "dcm frame: '-' is standard input, which this command does not read; expected the name of a file" frame 1 -f -
    run vm -f a.xml
    expect 'a description is not a port list' exits 66
    expect 'vm says so' says err 'dcm: a.xml: not a port list of a virtual machine'
}

names_the_types_and_modes_that_there_are() {
    run card 0x31 1 -f "$example"
    expect 'an unknown type is answered with the types, written in the same way' \
        says err 'no card has type 0x31; the card types are 0x101, 0x102, '
    run card 0x402 0x7 -f "$example"
    expect 'an unknown mode is answered with the modes' says err 'card type 0x402 has no mode 0x7; its modes are 0 and 1'
    run card 0x101 1 -f "$example"
    expect 'or the only one' says err 'card type 0x101 has no mode 1; its mode is 0'
    run slot 1025 -f "$example"
    expect 'a type of another kind is named' says err 'no slot has type 1025, but a card has; '
    run frame 1 -f "$source/examples/vm-3.xml"
    expect 'of a file that is not a description only the library reports' silent err
    {
        echo '<device>'
        for ((type = 1; type <= 40; type++)); do echo "<card typeid=\"$((type * 16))\"/>"; done
        echo '</device>'
    } >"$folder/many.xml"
    run card 0x9f -f "$folder/many.xml"
    expect 'of many types the nearest are named' says err 'no card has type 0x9f; the nearest card types are 0x90, 0xa0 and 0xb0'
    run frame 1 -f "$folder/many.xml"
    expect 'there may be none' says err 'no frame has type 1; the file describes no frame'
    printf '<device><card typeid="5"><mgt-port num="5"/></card></device>' >"$folder/faulty.xml"
    run card 5 -f "$folder/faulty.xml"
    expect 'a card that is found but fails' exits 1
    expect 'says no more than the library' silent err
}

log_prints_on_standard_error() {
    run frame 99 --file "$example" --log
    expect 'what is logged stands on standard error' says err 'can not find frame with typeid=99.'
    run frame 99 --file "$example"
    expect 'nothing is logged without --log' [ "$(cat "$folder/err")" = "dcm: $example: no frame has type 99; the frame types are 1 and 2" ]
}

the_log_ends_at_a_megabyte() {
    {
        echo '<device>'
        head -n 10000 < <(yes "<card typeid='1'><mgt-port num='5'/></card>")
        echo '</device>'
    } >"$folder/failing.xml"
    run --log check "$folder/failing.xml"
    expect 'the check ends as without it' exits 2
    expect 'the last line says that there is more' says err 'the log has reached 1000 kB: the rest is not shown'
    expect 'there is no more than that' test "$(stat --format=%s "$folder/err")" -lt 1001000
    expect 'what is found is all there' says out '1 file, 10000 errors'
}

exports_the_records_of_queries() {
    run export --file "$example"
    expect 'the export succeeds' exits 0
    expect 'it follows its schema' follows export
    expect 'nothing is said on standard error' silent err
    expect 'it names its file' says out "\"file\": \"$example\""
    for kind in frame slot card; do
        run export "$kind" -f "$example"
        expect "the export of each $kind follows the schema" follows export
        expect "it has each $kind" says out "\"${kind}s\": ["
        expect "it has nothing else" [ "$(grep -cE '^  "(frames|slots|cards|vms)"' "$folder/out")" -eq 1 ]
    done
    run export slot 0x12 --file "$example"
    expect 'a slot is found by its second id' exits 0
    expect 'the record holds the id of the query' says out '"type": 18,'
    run export card 0x402 1 --file "$example"
    expect 'a card in a mode is exported' says out '"name": "Transponder, 100G"'
    expect 'and no other' [ "$(grep -c '"record"' "$folder/out")" -eq 1 ]
    run export card 0x402 --file "$example"
    expect 'a card without mode is in mode 0' says out '"name": "Multiplexing transponder, 10 x 10G to 100G"'
    run export --file "$source/examples/vm-3.xml"
    expect 'a port list is exported, too' exits 0
    expect 'it follows the schema' follows export
}

# page NAME ARGUMENT...: the page equals the example's in tests/tool/pages.
page() {
    local name=$1
    shift
    status=0
    (
        cd "$source"
        unset COLUMNS
        tool show --file examples/device.xml "$@"
    ) >"$folder/out" 2>"$folder/err" || status=$?
    expect "the page $name is there" exits 0
    expect "it is as $name.txt" cmp -s "$folder/out" "$source/tests/tool/pages/$name.txt"
}

shows_the_pages_of_the_example() {
    while read -r kind type mode _; do
        type=${type%%,*}
        [ "$mode" != - ] || mode=
        # shellcheck disable=SC2086 # there may be no mode
        page "$kind-$type${mode:+-$mode}" "$kind" "$type" $mode
    done < <(tool list --file "$example" | tail -n +2)
    page card-0x302-0-coloured card 0x302 --width 80 --color always
    page card-0x302-0-ascii card 0x302 --width 40 --ascii
    run show --file "$source/examples/vm-3.xml"
    expect 'a port list has a page, too' says out '  interface indexes  '
    run show card 77 --file "$example"
    expect 'a card that is not there fails' exits 1
    expect 'and standard error says so' says err 'no card has type 77'
    run show --width 39 --file "$example"
    expect 'a page has a least width' exits 64
}

shows_the_rest_when_a_query_fails() {
    write_faulty
    run show --file "$folder/faulty.xml"
    expect 'a failing query fails the command' exits 1
    expect 'its page says so' says out 'the query fails'
    expect 'the others are there' says out 'Slot type'
    expect 'standard error says where and why' says err "$folder/faulty.xml:4:4: xmlfile($folder/faulty.xml) card decode mgt-port failed, num(=5) invalid."
}

# shown_on_terminal ROWS ARGUMENT...: the output on a terminal with this number of rows.
shown_on_terminal() {
    local rows=$1
    shift
    status=0
    script --quiet --command "stty rows $rows cols 90; LC_ALL=C.UTF-8 PAGER='sed s/^/paged:/' \
        ${DCM_EMULATOR:+$DCM_EMULATOR }$dcm show $* --file $example" /dev/null </dev/null >"$folder/out" 2>&1
}

shows_a_page_on_a_terminal() {
    script --quiet --command true /dev/null </dev/null >"$folder/out" 2>&1 || skip 'this system has no pseudo-terminal'
    unset COLUMNS NO_COLOR
    shown_on_terminal 10 card 0x302
    expect 'a terminal that is too short has a pager' says out 'paged:'
    expect 'the page is coloured' says out $'\e[38;5;75m'
    expect 'it is as wide as the terminal' [ "$(tr -d '\r' <"$folder/out" | sed 's/\x1b\[[0-9;]*m//g; s/^paged://' | wc -L)" -le 90 ]
    shown_on_terminal 10 card 0x302 --no-pager
    expect 'unless there shall be none' [ "$(grep -c paged: "$folder/out")" -eq 0 ]
    shown_on_terminal 200 card 0x302
    expect 'one that is long enough has none' [ "$(grep -c paged: "$folder/out")" -eq 0 ]
    NO_COLOR=1 shown_on_terminal 200 card 0x302
    expect 'NO_COLOR leaves the colours out' [ "$(grep -c $'\e\[' "$folder/out")" -eq 0 ]
    shown_on_terminal 200 card 0x302 --color never
    expect 'so does --color never' [ "$(grep -c $'\e\[' "$folder/out")" -eq 0 ]
}

exports_the_rest_when_a_query_fails() {
    write_faulty
    run export --file "$folder/faulty.xml"
    expect 'a failing query fails the export' exits 1
    expect 'the rest follows the schema' follows export
    expect 'what fails has no record' says out '"record":null'
    expect 'standard error says where and why' says err "$folder/faulty.xml:4:4: xmlfile($folder/faulty.xml) card decode mgt-port failed, num(=5) invalid."
    run export card 8 1 --file "$folder/faulty.xml"
    expect 'an ignored fault does not change the exit status' exits 0
    expect 'a card without a name has that of the card before it, as its query does' says out '"name": "seven"'
    run export card 7 --file "$folder/faulty.xml"
    expect 'a failing card fails' exits 1
    expect 'it is there without record' says out '"record":null'
    run export card 9 --file "$folder/faulty.xml"
    expect 'a type that is not described fails' exits 1
    expect 'nothing is exported' silent out
    expect 'standard error says that it is not there' says err 'no card has type 9; the card types are 7 and 8'
    run export slot 9 --file "$folder/faulty.xml"
    expect 'so it is with a slot' says err 'no slot has type 9; the slot types are 2 and 18'
}

# place_in FILE PATTERN: line and column of the tag at the beginning of a line.
place_in() {
    awk -v pattern="$2" '$0 ~ pattern { print FNR ":" match($0, /</) + 1; exit }' "$1"
}

lists_what_is_described() {
    run list --file "$example"
    expect 'the list succeeds' exits 0
    expect 'nothing is said on standard error' silent err
    expect 'its columns have titles' lists 'KIND TYPE MODE NAME SLOTS PORTS FANS SUPPLIES LEDS PLACE QUERY'
    expect 'a frame is listed' lists "frame 0x1 - - 22 - 12 2 18 $(place_in "$example" '<frame typeid="1"') ok"
    expect 'a slot is listed with all its ids' lists \
        "slot 0x2,0x12 - - - 26 inner 0 0 - $(place_in "$example" '<slot typeid="2,0x12"') ok"
    expect 'a card is listed with its mode' lists \
        "card 0x402 1 Transponder, 100G 1 2 panel, 1 gcc - - 0 $(place_in "$example" '<card typeid="0x0402" mode="1"') ok"
    expect 'ports are counted by kind' lists \
        "card 0x401 0 OTN line card, 2 x OTUC2, 8 clients 2 10 panel, 2 gcc, 2 ppp - - 3 $(place_in "$example" '<card typeid="0x0401"') ok"
    expect 'management ports, too' lists \
        "card 0x102 0 Compact control unit, 4 uplinks 1 4 panel, 1 mgt - - 3 $(place_in "$example" '<card typeid="0x0102"') ok"
    expect 'its columns are aligned' [ "$(sed 's/[^ ]*$//' "$folder/out" | awk '{ print length }' | uniq | wc -l)" -eq 1 ]
    run list --json --file "$example"
    expect 'the list for programs succeeds' exits 0
    expect 'it follows its schema' follows list
    run list --file "$source/examples/vm-3.xml"
    expect 'a port list is listed, too' lists \
        "vm - - - - 5 panel - - - $(place_in "$source/examples/vm-3.xml" '<panel-port') ok"
    write_faulty
    run list --file "$folder/faulty.xml"
    expect 'a failing query fails the list' exits 1
    expect 'it says which' lists 'card 0x7 0 - - - - - - 4:4 fails'
    expect 'a slot without id is listed' lists 'slot - - - - 0 0 0 - 3:27 ok'
    expect 'standard error says why' says err "$folder/faulty.xml:4:4: xmlfile($folder/faulty.xml) card decode mgt-port failed, num(=5) invalid."
    run list --json --file "$folder/faulty.xml"
    expect 'so it is for programs' exits 1
    expect 'the rest follows the schema' follows list
}

# list_on_terminal COLUMNS: the list on a terminal with this number of columns.
list_on_terminal() {
    script --quiet --command "stty cols $1; ${DCM_EMULATOR:+$DCM_EMULATOR }$dcm list -f $2" /dev/null </dev/null |
        tr -d '\r' >"$folder/out"
}

no_line_is_longer_than() { awk -v most="$1" 'length > most { exit 1 }' "$folder/out"; }

the_list_fits_the_terminal() {
    script --quiet --command true /dev/null </dev/null >"$folder/out" 2>&1 || skip 'this system has no pseudo-terminal'
    status=0
    : >"$folder/err"
    local columns
    for columns in 240 120 100 80 60 40 30; do
        list_on_terminal "$columns" "$example"
        expect "the list fits $columns columns" no_line_is_longer_than "$columns"
        expect 'each type is there' [ "$(wc -l <"$folder/out")" -eq "$(tool list "$example" | wc -l)" ]
        expect 'with its kind and mode, and whether its query succeeds' grep -qE '^card +0x402 .*1 .*ok$' "$folder/out"
    done
    list_on_terminal 240 "$example"
    expect 'a wide terminal shows all' cmp -s "$folder/out" <(tool list "$example")
    list_on_terminal 120 "$example"
    expect 'a name is shortened first' lists \
        "card 0x302 0 Ethernet line card, 48 PoE... 1 58 panel - - 106 $(place_in "$example" '<card typeid="0x0302"') ok"
    list_on_terminal 80 "$example"
    expect 'then columns are left out' lists 'KIND TYPE MODE NAME SLOTS PORTS LEDS PLACE QUERY'
    # Characters are not cut in two.
    printf '<device><card typeid="1" name="%s"/></device>' "$(printf 'ä%.0s' {1..60})" >"$folder/long.xml"
    list_on_terminal 80 "$folder/long.xml"
    expect 'a text is cut between characters' iconv -f UTF-8 -t UTF-8 -o /dev/null "$folder/out"
    expect 'behind one that is whole' says out 'ä...'
}

the_help_of_list_describes_its_columns() {
    run help list
    local column
    for column in $(tool list "$example" | head -n 1); do
        expect "$column is described" grep -qE "^  $column +[a-z]" "$folder/out"
    done
}

list_and_export_read_standard_input() {
    for command in list 'list --json' export; do
        # shellcheck disable=SC2086 # words of a command
        run $command --file - <"$example"
        expect "$command reads standard input" exits 0
        expect "$command lists a card of it" grep -qE '0x402|1026' "$folder/out"
    done
}

list_and_export_fail_with_66_without_a_description() {
    printf '<device>\n<card>\n</device>' >"$folder/torn.xml"
    echo '<chassis/>' >"$folder/foreign.xml"
    for command in list export; do
        run "$command" --file "$folder/none.xml"
        expect "$command fails with 66 without a file" exits 66
        expect 'standard error says why' says err "dcm: $folder/none.xml: No such file or directory"
        expect 'standard output is silent' silent out
        run "$command" --file "$folder/torn.xml"
        expect "$command fails with 66 when the file is not well-formed" exits 66
        expect 'standard error says where' says err "$folder/torn.xml:3:"
        run "$command" --file "$folder/foreign.xml"
        expect "$command fails with 66 when the file describes no device" exits 66
        expect 'standard error says so' says err "$folder/foreign.xml:1:1: not a device description"
        expect 'standard output is silent' silent out
    done
}

every_command_is_quiet_without_a_reader() {
    set +o pipefail
    write_checked
    status=0
    local command signal
    while read -r command; do
        # With the signal ignored, write() fails.
        for signal in kills ignored; do
            (
                [ "$signal" = kills ] || trap '' PIPE
                # shellcheck disable=SC2086 # words of a command
                tool $command 2>"$folder/err" | true
            )
            expect "'dcm $command' is quiet when the reader is gone" silent err
        done
    done < <(commands_that_print)
}

# A command line for each command and form of output.
commands_that_print() {
    printf '%s\n' help 'help check' --help 'card --help' version --version '--complete 0' "list -f $example" \
        "list --json -f $example" "export -f $example" "frame 1 -f $example" \
        "slot 2 -f $example" "card 0x402 -f $example" "vm -f $source/examples/vm-3.xml" "check $example" \
        "check --format json $example" "check --format sarif $example" "check $folder/error.xml" \
        "check --format gcc $folder/error.xml" "check --format github $folder/error.xml" \
        "check --format checkstyle $example" \
        "format --minify $example" "check $folder/warning.xml" 'check --list-checks' 'check --explain all' words \
        'words phy-type' explain 'explain card' 'new card --type 1' 'new frame --type 1' 'new slot --type 1' \
        "show -f $example" "draw frame 1 -f $example" "page $example" "diff $folder/warning.xml $example" git-setup
}

every_command_exits_with_74_when_it_cannot_write() {
    write_checked
    local command name count=0
    while read -r command; do
        status=0
        # shellcheck disable=SC2086 # words of a command
        tool $command 2>"$folder/err" >/dev/full || status=$?
        : >"$folder/out"
        expect "'dcm $command' exits with 74 on a full disk" exits 74
        expect 'and prints nothing else' [ "$(cat "$folder/err")" = 'dcm: standard output: No space left on device' ]
        status=0
        # shellcheck disable=SC2086 # words of a command
        tool $command 2>"$folder/err" >&- || status=$?
        expect "'dcm $command' exits with 74 when its output is closed" exits 74
        expect 'and says so' says err 'dcm: standard output: Bad file descriptor'
        count=$((count + 1))
    done < <(
        commands_that_print
        echo "frame 99 -f $example"
    )
    [ "$count" -ge 20 ] || { echo "only $count commands" && exit 1; }
    # Each command of the tool is among them.
    for name in $(tool --complete 0 | cut -f 1); do
        # It prints only what it is asked: lsp_ends_with_its_input.
        [ "$name" != lsp ] || continue
        grep -qE "^$name( |\$)" <(commands_that_print) || { echo "not tested: $name" && exit 1; }
    done
}

explains_elements_and_attributes() {
    run explain card/panel-port/port/phytype
    expect 'an element is explained' exits 0
    expect 'under its path' [ "$(head -n 1 "$folder/out")" = card/panel-port/port/phytype ]
    expect 'with its words' says out 'words: fe, ge, 10ge, '
    expect 'and where their values are' says out 'dcm words phy-type'
    expect 'and an example' says out 'example: <phytype>10ge</phytype>'
    run explain maxslotnum
    expect 'the end of a path is enough' [ "$(head -n 1 "$folder/out")" = frame/maxslotnum ]
    run explain card@typeid
    expect 'an attribute is explained' says out 'value: number from 0 to 4294967295'
    run explain frame
    expect 'an element with others is explained' says out '<slotmap> one; see frame/slotmap'
    expect 'with its attributes' says out 'typeid number from 0 to 4294967295; left out: 0'
    run explain phytype
    expect 'what several elements have is listed' says out 'card/mgt-port/port/phytype '
    # shellcheck disable=SC2016 # Markdown
    expect 'all of them' [ "$(wc -l <"$folder/out")" -eq "$(grep -cE '^\| `<phytype>`' "$source/docs/format.md")" ]
    run explain panel-port
    expect 'another of the same name is named' says out 'card/panel-port '
    run explain
    expect 'all are listed' [ "$(wc -l <"$folder/out")" -gt 300 ]
    cut -d ' ' -f 1 "$folder/out" >"$folder/keys"
    while read -r key; do
        run explain "$key"
        expect "$key is explained" [ "$(head -n 1 "$folder/out")" = "$key" ]
    done < <(awk 'NR % 9 == 1' "$folder/keys")
    refuses "dcm explain: 'phytpe' is not a valid element or attribute; did you mean 'phytype'?" explain phytpe
}

prints_vocabularies() {
    run words
    expect 'all vocabularies are listed' says out 'phy-type '
    local name title count=0
    # Each vocabulary has the words of the reference, and no other words of descriptions.
    while read -r name title; do
        [ "$name" != led-state ] || continue
        run words "$name"
        expect "the vocabulary $name is printed" exits 0
        awk '/^Only in reports/ { exit } $1 ~ /^[0-9]+$/ { print $(header == "BIT" ? 3 : 2) } NR == 1 { header = $2 }' \
            "$folder/out" >"$folder/words"
        grep -qxF "### $title" "$source/docs/format.md" || continue
        # shellcheck disable=SC2016 # Markdown
        sed -n "/^### $title\$/,/^##/p" "$source/docs/format.md" | grep -E '^(`[^`]*`, )*`[^`]*`[.,]?$' | grep -oE '`[^`]+`' |
            tr -d '`' >"$folder/documented"
        expect "with the words of the reference: $title" cmp -s "$folder/words" "$folder/documented"
        count=$((count + 1))
    done < <(tool words)
    # LED states are a section of their own.
    expect 'those of the whole reference' [ "$((count + 1))" -eq "$(sed -n '/^## Words/,$p' "$source/docs/format.md" | grep -c '^### ')" ]
    run words phy-type
    expect 'a word has its value' grep -qE "^ +3  10ge  \\(reports print 'xge'\\)$" "$folder/out"
    expect 'words of reports are apart' [ "$(sed -n '/^Only in reports:/,$ s/^ *3  //p' "$folder/out")" = xge ]
    run words transceiver
    expect 'a word of a set has its bit' grep -qE '^ +3 +2  10gbasex$' "$folder/out"
    run words poe-inrush
    expect 'unless the set has none for it' grep -qE '^ +8 +-  at-altb' "$folder/out"
    run words led-state
    expect 'LED states have one list for each kind of LED' says out 'LEDs of type hamaster, stackmaster:'
    expect 'with values, too' grep -qE '^ +2  role-master$' "$folder/out"
    run words 10ge
    expect 'a word is looked up' [ "$(cat "$folder/out")" = 'phy-type  3  10ge' ]
    refuses "dcm words: 'phytype' is not a valid vocabulary or word; did you mean 'phy-type'?" words phytype
    refuses "dcm words: '10gex' is not a valid vocabulary or word; did you mean '10ge'?" words 10gex
}

# new_file ARGUMENT...: writes a skeleton to a new file.
new_file() {
    run new "$@"
    expect "'dcm new $*' succeeds" exits 0
    expect 'and prints nothing' silent err
    skeletons=$((skeletons + 1))
    cp "$folder/out" "$folder/new-$skeletons.xml"
}

skeletons_check_clean() {
    skeletons=0
    local word count number every=''
    new_file card --type 0x31 --ports 24x10ge,2x100ge
    cp "$folder/new-1.xml" "$folder/card.xml"
    for number in 0 1 010 0x31 0X31 65535; do
        new_file card --type $number
        new_file card --type $number --mode 3
        new_file slot --type $number
        new_file frame --type $number
    done
    # Every kind of port, and every number of them.
    while read -r word; do
        new_file card --type 7 --ports "1x$word"
        new_file slot --type 7 --ports "2x$word"
        every+=${every:+,}1x$word
    done < <(tool words phy-type | awk '/^$/ { exit } NR > 1 { print $2 }')
    new_file card --type 7 --ports "$every"
    for count in {1..64}; do
        new_file card --type 7 --ports "${count}xge"
        [ "$count" -gt 32 ] || new_file slot --type 7 --ports "${count}xge"
        [ "$count" -gt 32 ] || new_file frame --type 7 --slots "$count"
    done
    new_file card --type 7 --name 'A & B <"C"> ]]> -- Ä' --ports 1x10xgepon,63x4xgepon
    new_file card --type 7 --name "$(printf 'x%.0s' {1..63})"
    run check "$folder"/new-*.xml
    expect 'nothing is found in any of them' [ "$(cat "$folder/out")" = "$skeletons files, nothing found" ]
    [ "$skeletons" -ge 200 ] || { echo "only $skeletons skeletons" && exit 1; }

    run list "$folder/card.xml"
    expect 'the card has the ports' lists 'card 0x31 0 Card 0x31 1 26 panel - - 27 9:4 ok'
    run export card 0x31 -f "$folder/card.xml"
    expect 'of the requested kinds' [ "$(tr -d ' \n' <"$folder/out" | grep -oE '"phyType":\{"value":3,' | wc -l)" -eq 24 ]
    expect 'in their order' says out '"portId": 26,'
}

skeletons_have_comments_about_each_value() {
    run new card --type 0x31 --ports 2xge
    expect 'what an element means and what it may be' says out '<!-- workmode: Whether the port bridges or routes (bridge or route) -->'
    expect 'where its words are' says out '; dcm words phy-type) -->'
    expect 'each element once' [ "$(grep -c '<!-- phytype:' "$folder/out")" -eq 1 ]
    expect 'what is left out' says out '<!--   cpu-entity: The CPU of the card -->'
    expect 'and nothing that is there' [ "$(grep -c '<!--   panel-port:' "$folder/out")" -eq 0 ]
    # Each possible child of a card is written or named.
    while read -r element; do
        expect "a skeleton has or names $element" grep -qE "<${element}[ >]|<!--   ${element}:" "$folder/out"
    done < <(tool explain | sed -nE 's|^card/([a-z-]+) .*|\1|p')
    refuses "dcm new: expected 'card', 'slot' or 'frame'" new
    refuses "dcm new: 'crad' is not a valid command; did you mean 'card'?" new crad
    refuses "dcm new card: --type is missing" new card
    refuses "dcm new card: '10g' is not a valid PHY type; did you mean '10ge'?" new card --type 1 --ports 2x10g
    refuses "dcm new card: '65xge' are too many ports; expected at most 64" new card --type 1 --ports 65xge
    refuses "dcm new slot: '32xge,1xge' are too many ports; expected at most 32" new slot --type 1 --ports 32xge,1xge
    refuses "dcm new card: 'ge' is not a valid number of ports; expected as in 24x10ge" new card --type 1 --ports ge
    refuses "dcm new card: '0xge' is not a valid number of ports; expected as in 24x10ge" new card --type 1 --ports 0xge
    refuses "dcm new card: '' is not a valid number of ports; expected as in 24x10ge" new card --type 1 --ports 1xge,,1xge
    refuses "dcm new frame: '33' is not a valid value for --slots; expected a number from 1 to 32" new frame --type 1 --slots 33
    run new card --type 1 --name $'a\nb'
    expect 'a name without control characters is wanted' exits 64
    run new card --type 1 --name "$(printf 'x%.0s' {1..64})"
    expect 'and one that the record has room for' exits 64
}

# Descriptions with warnings only, with an error, and not well-formed.
write_checked() {
    printf '<device>\n\t<card typeid="010"/>\n</device>\n' >"$folder/warning.xml"
    printf '<device>\n  <card typeid="1"><muxctrl>maybe</muxctrl></card>\n</device>\n' >"$folder/error.xml"
    printf '<device>\n  <card>\n</device>\n' >"$folder/torn.xml"
}

check_prints_findings_like_a_compiler() {
    write_checked
    cd "$folder"
    run check warning.xml error.xml
    cat >expected <<'TEXT'
warning.xml:2:16: warning: card 010: '010' begins with 0, which makes it octal: it counts as 8; expected 10 or a number in hexadecimal [octal-number]
    	<card typeid="010"/>
    	              ^~~
error.xml:2:29: error: card 1/muxctrl: 'maybe' is not a valid value for "muxctrl"; expected 'yes', 'no'; the query fails: "invalid YesOrNo(maybe)." [query-fails]
      <card typeid="1"><muxctrl>maybe</muxctrl></card>
                                ^~~~~
2 files, 1 error, 1 warning
TEXT
    expect 'the findings are shown with their lines' cmp -s expected out
    expect 'nothing is said on standard error' silent err
    run check --color always warning.xml
    expect 'colours are shown when asked for' grep -q $'\x1b\\[1;35mwarning' out
}

check_exits_with_the_worst_that_it_finds() {
    write_checked
    run check "$example"
    expect 'a clean file gives 0' exits 0
    expect 'the summary says so' says out '1 file, nothing found'
    run check "$folder/warning.xml" "$example"
    expect 'warnings give 1' exits 1
    run check "$folder/warning.xml" "$folder/error.xml"
    expect 'errors give 2' exits 2
    run check "$folder/error.xml" "$folder/torn.xml"
    expect 'a file that is not well-formed gives 66' exits 66
    expect 'and its place' says out "$folder/torn.xml:3:10: error: "
    run check "$folder/none.xml"
    expect 'a file that is not there gives 66' exits 66
    expect 'and says why' says out "$folder/none.xml: error: cannot be read: No such file or directory [unreadable]"
    for command in check 'check --format xml' 'check --jobs 0' 'check -W octal-number' 'check -W no-such x' \
        'check -W error=such x' 'check --explain such' 'check -W no-query-fails x' \
        'check -W no-not-xml x' 'check -W no-wrong-root x' 'check -W no-unreadable x'; do
        # shellcheck disable=SC2086 # words of a command
        run $command
        expect "'dcm $command' is wrong usage" exits 64
        expect "'dcm $command' prints nothing" silent out
    done
}

options_disable_checks_and_make_them_errors() {
    write_checked
    run check -W no-octal-number "$folder/warning.xml"
    expect 'a check may be left out' exits 0
    run check -W error=octal-number "$folder/warning.xml"
    expect 'its findings may be errors' exits 2
    expect 'and are shown as errors' says out ': error: '
    run check -W error "$folder/warning.xml"
    expect 'those of all may be errors' exits 2
    run check -W no-octal-numbers "$folder/warning.xml"
    expect 'an unknown check is wrong usage' exits 64
    expect 'the nearest one is named' says err "did you mean 'octal-number'?"
}

check_prints_json_and_sarif() {
    write_checked
    run check --format json "$folder/warning.xml" "$folder/error.xml" "$folder/torn.xml" "$folder/none.xml"
    expect 'the exit is that of the text' exits 66
    expect 'the JSON follows its schema' follows check
    for status in checked not-xml unreadable; do
        expect "a file has the status $status" says out "\"status\": \"$status\""
    done
    run check --format json "$source"/tests/tool/corpus/*.xml
    expect 'the JSON of a whole corpus follows its schema' follows check
    run check --format sarif "$source"/tests/tool/corpus/*.xml "$folder/none.xml"
    expect 'SARIF has its form' python3 "$source/tests/tool/validate.py" "$source/tests/tool/sarif.schema.json" "$folder/out"
}

# A file name in which every format has something to escape.
write_awkward() {
    awkward=$'a:b,c%d&<"\n.xml'
    cp "$folder/error.xml" "$folder/$awkward"
}

check_prints_a_line_for_each_finding() {
    write_checked
    write_awkward
    cd "$folder"
    run check --format gcc warning.xml error.xml none.xml
    cat >expected <<'TEXT'
warning.xml:2:16: warning: card 010: '010' begins with 0, which makes it octal: it counts as 8; expected 10 or a number in hexadecimal [octal-number]
error.xml:2:29: error: card 1/muxctrl: 'maybe' is not a valid value for "muxctrl"; expected 'yes', 'no'; the query fails: "invalid YesOrNo(maybe)." [query-fails]
none.xml:1:1: error: cannot be read: No such file or directory [unreadable]
TEXT
    expect 'the lines are those of GCC, and nothing else' cmp -s out expected
    expect 'the exit status is that of the text' exits 66
    run check --format gcc "$awkward"
    expect 'a name is on one line' says out 'a:b,c%d&<"\n.xml:2:29: error: '
    run check --format github warning.xml
    expect 'GitHub gets an annotation' says out '::warning file=warning.xml,line=2,col=16,title=octal-number::card 010: '
    run check --format github "$awkward"
    expect 'properties are escaped as GitHub reads them' \
        says out '::error file=a%3Ab%2Cc%25d&<"%0A.xml,line=2,col=29,title=query-fails::card 1/muxctrl: '
    printf '<device><card typeid="1%%"/></device>' >percent.xml
    run check --format github percent.xml
    expect 'only what could end the line is escaped in texts' says out "::card 1%25: '%25' after the number "
    for format in gcc github checkstyle; do
        run check --format $format "$example"
        expect "$format has no finding where there is none" exits 0
        expect "and no other line" [ "$(grep -cE ': (error|warning|note): |^::|<error' out)" = 0 ]
    done
}

check_prints_checkstyle() {
    command -v xmllint >/dev/null || skip 'there is no xmllint'
    write_checked
    write_awkward
    cd "$folder"
    run check --format checkstyle warning.xml error.xml none.xml "$awkward" "$example"
    expect 'the exit status is that of the text' exits 66
    expect 'it is well-formed' xmllint --noout out
    query() { xmllint --xpath "string($1)" out; }
    expect 'each file is listed' [ "$(query 'count(/checkstyle/file)')" = 5 ]
    expect 'also one without findings' [ "$(query 'count(//file[5]/error)')" = 0 ]
    expect 'a finding has its line' [ "$(query '//file[2]/error/@line')" = 2 ]
    expect 'and its column' [ "$(query '//file[2]/error/@column')" = 29 ]
    expect 'and its severity' [ "$(query '//file[1]/error/@severity')" = warning ]
    expect 'and its check' [ "$(query '//file[1]/error/@source')" = dcm.octal-number ]
    expect 'the name is that of the file, where it can be' [ "$(query '//file[4]/@name')" = 'a:b,c%d&<"\n.xml' ]
    expect 'the text is as it is elsewhere' [ "$(query '//file[2]/error/@message')" = \
        "card 1/muxctrl: 'maybe' is not a valid value for \"muxctrl\"; expected 'yes', 'no'; the query fails: \"invalid YesOrNo(maybe).\"" ]
    cp warning.xml $'\xef\xbf\xbe.xml'
    run check --format checkstyle $'\xef\xbf\xbe.xml'
    expect 'no name makes it another document' xmllint --noout out
    run check --format checkstyle "$source"/tests/tool/corpus/*.xml
    expect 'that of a whole corpus is well-formed' xmllint --noout out
}

check_searches_folders_for_descriptions() {
    write_checked
    cd "$folder"
    mkdir -p tree/a/b tree/.hidden tree/empty
    cp error.xml tree/a/z.xml
    cp warning.xml tree/a/b/w.xml
    cp error.xml tree/.hidden/x.xml
    cp torn.xml tree/torn.xml
    cp "$source/examples/vm-3.xml" tree/vm.xml
    { printf '\xff\xfe' && printf '<device/>' | iconv -t UTF-16LE; } >tree/wide.xml
    printf '<?xml version="1.0"?>\n<!DOCTYPE d [<!ENTITY e "x">]>\n<!-- <device> -->\n<device a="&e;"/>' >tree/late.xml
    echo '<chassis><device/></chassis>' >tree/foreign.xml
    echo 'device' >tree/text.xml
    cp error.xml tree/error.txt
    ln -s ../a tree/a/loop
    ln -s ../error.xml tree/link.xml
    mkfifo tree/fifo.xml
    run check --format json tree
    expect 'what is taken is checked' exits 66
    python3 -c 'import json, sys; print(*[f["file"] for f in json.load(sys.stdin)["files"]])' <out >taken
    expect 'descriptions are taken in the order of their names, and nothing else' \
        [ "$(cat taken)" = 'tree/a/b/w.xml tree/a/z.xml tree/late.xml tree/torn.xml tree/vm.xml tree/wide.xml' ]
    cd tree
    run check --format gcc .
    expect 'names in this folder are short' says out 'a/b/w.xml:2:16: '
    run check --format gcc a/
    expect 'a slash at the end changes nothing' says out 'a/z.xml:2:29: '
    run check empty
    expect 'a folder without a description is an error' exits 66
    expect 'which says so' says out 'empty: error: cannot be read: no description is in this folder [unreadable]'
    run check a/loop
    expect 'a link to a folder may be named' says out '2 files'
    run check --jobs 4 .
    cp "$folder/out" "$folder/several"
    run check .
    expect 'several jobs find the same' cmp -s "$folder/out" "$folder/several"
    # A folder that is deeper than any that holds descriptions.
    mkdir -p "$(printf 'deep/%.0s' {1..70})"
    run check deep
    expect 'a search has an end' says out 'more than 64 folders deep [unreadable]'
}

check_is_configured_by_a_file() {
    write_checked
    cd "$folder"
    mkdir -p project/sub/other project/generated
    cp warning.xml project/sub/octal.xml
    cp error.xml project/generated/error.xml
    printf '<device>\n<our-note/>\n<card typeid="1" our-id="2"/>\n<slot typeid="1"/><nonsense/></device>\n' >project/sub/known.xml
    printf '# This project\n\noff octal-number # they are meant\nerror unknown-element\r\nknown our-note\nknown our-id\nexclude generated\n' \
        >project/.dcm-check
    run check project/sub/octal.xml
    expect 'a check is off' exits 0
    run check --no-config project/sub/octal.xml
    expect 'unless there is no configuration' exits 1
    run check -W error=octal-number project/sub/octal.xml
    expect 'the command line is stronger' exits 2
    run check project/sub/known.xml
    expect 'names of other programs are known' says out 'project/sub/known.xml:4:20: error: nonsense: '
    expect 'and others have another severity' says out '1 file, 1 error, 0 warnings'
    run check project/generated/error.xml project/sub/octal.xml
    expect 'what is excluded is not checked' says out '1 file, nothing found'
    run check project
    expect 'neither in a folder' says out '2 files, 1 error, 0 warnings'
    (cd project/sub && run check octal.xml ../generated/error.xml && expect 'the file is found from any folder' exits 0)
    run check --format json project/generated
    expect 'what excludes all leaves nothing' exits 0
    expect 'in any format' follows check
    printf 'info octal-number\nexclude *.old.xml\n' >project/sub/.dcm-check
    cp error.xml project/sub/other/device.old.xml
    run check project/sub
    expect 'the nearest file counts, and its severity' says out '; --info shows 1 info'
    expect 'a pattern without a slash is about names' says out '2 files'
    run check --stdin-filename project/sub/none.xml - <warning.xml
    expect 'standard input is configured by its name' exits 0
}

check_says_what_is_wrong_with_its_configuration() {
    write_checked
    mkdir "$folder/project"
    cd "$folder/project"
    cp ../warning.xml device.xml
    local setting fault
    while IFS='|' read -r setting fault; do
        printf '# first\n%b\n' "$setting" >.dcm-check
        refuses "dcm check: $PWD/.dcm-check:2: $fault" check device.xml
    done <<'TEXT'
of octal-number|'of' is not a setting; did you mean 'off'?
disable x|'disable' is not a setting; expected 'off', 'info', 'warning', 'error', 'exclude', 'known'
off octl-number|'octl-number' is not a valid name of a check; did you mean 'octal-number'?
off|'off' has no value
off a b|'a b' is more than one name
off query-fails|query-fails cannot be left out: the query of such a description fails
warning query-fails|query-fails cannot be of severity warning: the query of such a description fails
exclude ../other|'../other' is outside of the folder of this file
off \x1b[31m|'\x1b[31m' is not a valid name of a check; 'dcm check --list-checks' lists them all
TEXT
    printf 'off octal-number\nerror octal-number\n' >.dcm-check
    refuses "dcm check: $PWD/.dcm-check:2: octal-number is given a second time" check device.xml
    head -c 70000 /dev/zero | tr '\0' '\n' >.dcm-check
    refuses "dcm check: $PWD/.dcm-check: larger than 65536 bytes" check device.xml
    rm .dcm-check
    mkdir .dcm-check
    refuses "dcm check: $PWD/.dcm-check: not a regular file but a directory" check device.xml
}

check_reports_what_an_earlier_run_did_not_find() {
    write_checked
    cd "$folder"
    run check --format json ./warning.xml error.xml
    cp out baseline.json
    sed -i '1s/.*/<device>\n\n/' error.xml
    run check --baseline baseline.json warning.xml error.xml
    expect 'what was found before is left out, on any line' says out '2 files, nothing found'
    expect 'and does not count' exits 0
    sed -i 's|</card>|&<card typeid="011"/>|' error.xml
    run check --format gcc --baseline baseline.json warning.xml error.xml
    expect 'what is new is found' says out 'error.xml:4:65: warning: card 011: '
    expect 'and nothing else' [ "$(wc -l <out)" = 1 ]
    sed -i 's|<card typeid="010"/>|&&|' warning.xml
    run check --baseline baseline.json warning.xml
    expect 'a second one of the same kind is new' says out '[octal-number]'
    expect 'and the first one is not' says out '1 file, 0 errors, 2 warnings'
    { echo '<device>' && head -n 150 < <(yes '<x/>') && echo '</device>'; } >many.xml
    run check --format json many.xml
    cp out baseline.json
    sed -i '2s/.*/<x a="1"\/>/; 5,9d' many.xml
    run check --baseline baseline.json many.xml
    expect 'those that were only counted are left out' says out '1 file, nothing found'
    sed -i 's|</device>|<x/><x/><x/><x/><x/><x/><x/>&|' many.xml
    run check --baseline baseline.json many.xml
    expect 'and those beyond their number are new' says out '1 file, 0 errors, 2 warnings'
    run check --format json torn.xml
    cp out baseline.json
    run check --baseline baseline.json torn.xml
    expect 'what is not well-formed is always reported' exits 66
    for content in '' '{}' '[1]' '{"format": "dcm-check", "version": 1, "files": [{"file": 1, "findings": []}]}'; do
        echo "$content" >baseline.json
        run check --baseline baseline.json warning.xml
        expect 'something else is no baseline' exits 66
        expect 'which standard error says' [ "$(cat err)" = "dcm: baseline.json: not the output of 'dcm check --format json'" ]
        expect 'nothing is printed' silent out
    done
    run check --baseline none.json warning.xml
    expect 'a baseline may be missing' says err 'dcm: none.json: No such file or directory'
    refuses 'dcm check: --baseline leaves out findings, which --fix and --diff would fix' check --fix --baseline x warning.xml
}

check_does_only_the_checks_that_are_named() {
    write_checked
    cd "$folder"
    printf '<device><x/><card typeid="010"/><card typeid="1" y="1"/></device>' >three.xml
    run check --format gcc --only octal-number --only unknown-attribute three.xml error.xml
    expect 'those are done' says out '[octal-number]'
    expect 'each of them' says out '[unknown-attribute]'
    expect 'and no other' [ "$(wc -l <out)" = 2 ]
    run check --only octal-number torn.xml
    expect 'what cannot be checked is still found' exits 66
    refuses "dcm check: 'octal' is not a valid name of a check; did you mean 'octal-number'?" check --only octal three.xml
    write_fixable
    cp card.xml before.xml
    run check --fix --only octal-number card.xml
    expect 'nothing else is fixed' cmp -s card.xml before.xml
}

check_calls_standard_input_what_it_is_told() {
    write_checked
    cd "$folder"
    run check --format gcc --stdin-filename src/device.xml - <warning.xml
    expect 'findings are in that file' says out 'src/device.xml:2:16: warning: '
    write_fixable
    run check --diff --stdin-filename src/device.xml - <card.xml
    expect 'so is a diff' says out '+++ src/device.xml'
    refuses 'dcm check: --stdin-filename names standard input, which is the FILE -' check --stdin-filename x warning.xml
}

check_lists_and_explains_its_checks() {
    run check --list-checks
    expect 'the list succeeds' exits 0
    expect 'it has a line for a check' grep -qE '^slot-gap +warning +The slots of a frame' "$folder/out"
    cut -d ' ' -f 1 "$folder/out" >"$folder/names"
    while read -r name; do
        run check --explain "$name"
        expect "$name is explained" exits 0
        expect "$name is named first" grep -qE "^$name \((error|warning|info)\): " "$folder/out"
    done <"$folder/names"
}

check_prints_the_same_with_several_jobs() {
    run check "$source"/tests/tool/corpus/*.xml
    cp "$folder/out" "$folder/one"
    run check --jobs 4 "$source"/tests/tool/corpus/*.xml
    expect 'several jobs find the same in the same order' cmp -s "$folder/out" "$folder/one"
}

check_shows_its_progress_on_a_terminal() {
    script --quiet --command true /dev/null </dev/null >"$folder/out" 2>&1 || skip 'this system has no pseudo-terminal'
    mkfifo "$folder/slow"
    # A file that arrives while the progress line is shown.
    { until grep -qF checking "$folder/terminal" 2>/dev/null; do sleep 0.1; done; cat "$example"; } >"$folder/slow" &
    status=0
    script --quiet --flush --command "${DCM_EMULATOR:+$DCM_EMULATOR }$dcm check - <$folder/slow >$folder/out" \
        "$folder/terminal" </dev/null >"$folder/err" || status=$?
    wait
    expect 'a terminal shows the file that is being checked' says err "checking - (1 of 1)"
    expect 'the line goes in the end' ends_with_a_cleared_line
    expect 'standard output holds the findings alone' says out '1 file, nothing found'

    run check "$example"
    expect 'only a terminal shows it' silent err
}
# The last output to the terminal clears the line.
ends_with_a_cleared_line() { [ "$(tail -c 4 "$folder/err")" = $'\r\e[K' ]; }

check_reads_standard_input() {
    write_checked
    run check - <"$folder/warning.xml"
    expect 'standard input is checked' says out '<stdin>:2:16: warning: '
}

# A description with comments, a mistake that has a certain fix, and one that has none; and the fixed description.
write_fixable() {
    printf '<?xml version="1.0"?>\r\n<!-- a -->\n<device>\n  <card  typeid="010" Name='"'x'"' abbrname="x">\n\n<occupyslotnum>1</occupyslotnum>\n  </card >\n</device>' \
        >"$folder/card.xml"
    sed 's/ Name=/ name=/' "$folder/card.xml" >"$folder/fixed.xml"
}

check_fixes_what_is_certain_and_nothing_else() {
    write_fixable
    chmod 640 "$folder/card.xml"
    ln -s card.xml "$folder/link.xml"
    run check --fix "$folder/link.xml"
    expect 'what is left sets the exit status' exits 1
    expect 'the rest of the file is as it was' is_file card.xml fixed.xml
    expect 'its mode is kept' [ "$(stat -c %a "$folder/card.xml")" = 640 ]
    expect 'the symbolic link is still one' [ -L "$folder/link.xml" ]
    expect 'what is left is shown' says out '[octal-number]'
    expect 'and what is fixed is counted' says out '1 file, 1 fixed, 0 errors, 1 warning'
    run check --fix "$folder/card.xml"
    expect 'fixing again changes nothing' is_file card.xml fixed.xml
    run check --fix -W no-unknown-attribute "$folder/card.xml"
    write_fixable
    run check --fix -W no-unknown-attribute "$folder/card.xml"
    expect 'what is left out is not fixed' says out '1 file, 0 errors, 1 warning'
}

a_finding_on_another_line_has_the_same_fingerprint() {
    write_fixable
    run check --format sarif "$folder/card.xml"
    grep Fingerprints "$folder/out" >"$folder/fingerprints"
    sed -i 's/<device>/<device><!-- a -->\n\n/' "$folder/card.xml"
    run check --format sarif "$folder/card.xml"
    grep Fingerprints "$folder/out" >"$folder/moved"
    expect 'findings keep their fingerprints' is_file fingerprints moved
    expect 'each has its own' [ "$(sort -u "$folder/moved" | wc -l)" -eq 2 ]
}

check_shows_what_it_would_fix() {
    write_fixable
    cp "$folder/card.xml" "$folder/before.xml"
    run check --diff "$folder/card.xml"
    expect 'the findings set the exit status' exits 1
    expect 'the diff is printed' says out "+  <card  typeid=\"010\" name='x' abbrname=\"x\">"
    expect 'and nothing else' [ "$(head -n 1 "$folder/out")" = "--- $folder/card.xml" ]
    expect 'the file is as before' is_file card.xml before.xml
    run check --diff - <"$folder/card.xml"
    expect 'standard input, too' says out '--- <stdin>'
    run check --fix - <"$folder/card.xml"
    expect 'which cannot be changed' exits 64
    run check --fix=some "$folder/card.xml"
    expect 'other fixes are not known' exits 64
    run check "$folder/card.xml"
    expect 'a fix is shown below the caret' grep -q '^                          name$' "$folder/out"
}

check_reports_fixes_that_it_does_not_apply() {
    cat >"$folder/two.xml" <<'XML'
<device>
  <card typeid="1" name="x" abbrname="x">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1"><portid>1</portid><phytyp>none of all</phytyp></port>
    </panel-port>
  </card>
</device>
XML
    cp "$folder/two.xml" "$folder/before.xml"
    run check --fix "$folder/two.xml"
    expect 'a fix that shows another fault is dropped' is_file two.xml before.xml
    expect 'standard error says so' [ "$(cat "$folder/err")" = \
        "$folder/two.xml:4:39: not fixed: rename to \"phytype\": a query that succeeds would fail" ]
    write_fixable
    sed -i 's/<?xml version="1.0"/& encoding="ISO-8859-1"/' "$folder/card.xml"
    cp "$folder/card.xml" "$folder/before.xml"
    run check --fix "$folder/card.xml"
    expect 'another encoding is not edited' is_file card.xml before.xml
    expect 'standard error says so' says err 'nothing is fixed: the encoding is ISO-8859-1; only UTF-8 and ASCII can be edited'
}

# A description as an author leaves it, and formatted.
write_unformatted() {
    printf '<device>\n<!-- a -->\n <card  typeid = "1"   />\n</device>' >"$folder/card.xml"
    printf '<device>\n  <!-- a -->\n  <card typeid="1"/>\n</device>\n' >"$folder/formatted.xml"
}
is_file() { cmp -s "$folder/$1" "$folder/$2"; }

format_changes_files_silently() {
    write_unformatted
    cp "$folder/card.xml" "$folder/other.xml"
    run format "$folder/card.xml" "$folder/other.xml"
    expect 'it succeeds' exits 0
    expect 'the file has the layout' is_file card.xml formatted.xml
    expect 'and so has the other' is_file other.xml formatted.xml
    expect 'standard output is silent' silent out
    expect 'standard error is silent' silent err
    touch -d '2000-01-01' "$folder/card.xml"
    run format "$folder/card.xml" "$source"/examples/*.xml
    expect 'what has the layout' exits 0
    expect 'is not written' [ "$(date -r "$folder/card.xml" +%Y)" = 2000 ]
}

format_shows_what_it_would_change() {
    write_unformatted
    cp "$folder/card.xml" "$folder/before.xml"
    run format --check "$folder/formatted.xml" "$folder/card.xml"
    expect 'a file of another layout is found' exits 1
    expect 'its name is printed, and nothing else' [ "$(cat "$folder/out")" = "$folder/card.xml" ]
    run format --check "$folder/formatted.xml"
    expect 'a file of the layout is not' exits 0
    expect 'and its name is not printed' silent out
    run format --diff "$folder/card.xml"
    expect 'a diff is no failure' exits 0
    expect 'the diff is printed' says out '+  <card typeid="1"/>'
    run format --check --diff "$folder/card.xml"
    expect 'a diff with --check is one' exits 1
    expect 'the file is as before' is_file card.xml before.xml
    patch -s -d / -p0 <"$folder/out" || skip 'patch is not installed'
    expect 'what patch makes of it is the layout' is_file card.xml formatted.xml
}

# lsp_message CONTENT: in ASCII, with its header.
lsp_message() { printf 'Content-Length: %d\r\n\r\n%s' "${#1}" "$1"; }

# lsp_open FILE: what an editor sends that opens a description.
lsp_open() {
    lsp_message '{"jsonrpc":"2.0","id":1,"method":"initialize","params":{"capabilities":{}}}'
    lsp_message "$(python3 -c 'import json, sys
print(json.dumps({"jsonrpc": "2.0", "method": "textDocument/didOpen", "params": {"textDocument": {
    "uri": "file://" + sys.argv[1], "languageId": "xml", "version": 1, "text": open(sys.argv[1]).read()}}}))' "$1")"
}

# lsp_messages: the messages on standard output, one on a line; nothing else is there.
lsp_messages() {
    python3 -c 'import json, re, sys
rest = sys.stdin.buffer.read()
while rest:
    header = re.match(rb"Content-Length: (\d+)\r\n\r\n", rest)
    end = header.end() + int(header.group(1))
    print(json.dumps(json.loads(rest[header.end():end])))
    rest = rest[end:]' <"$folder/out" >"$folder/messages"
}

lsp_answers_and_ends() {
    {
        lsp_open "$example"
        lsp_message '{"jsonrpc":"2.0","id":2,"method":"shutdown"}'
        lsp_message '{"jsonrpc":"2.0","method":"exit"}'
    } >"$folder/in"
    run lsp --stdio <"$folder/in"
    expect 'it ends with 0 where it is shut down' exits 0
    expect 'it prints messages' lsp_messages
    expect 'the first answers the initialization' says messages '"name": "dcm lsp", "version": "1.'
    expect 'the last answers the shutdown' [ "$(tail -n 1 "$folder/messages")" = '{"id": 2, "jsonrpc": "2.0", "result": null}' ]
    expect 'nothing is said on standard error' silent err
}

# The library prints what it reports.
lsp_prints_nothing_but_messages() {
    write_faulty
    lsp_open "$folder/faulty.xml" >"$folder/in"
    run lsp <"$folder/in"
    expect 'it prints messages' lsp_messages
    expect 'it publishes what makes queries fail' says messages '"code": "query-fails"'
    expect 'nothing is said on standard error' silent err
    run --log lsp <"$folder/in"
    expect 'the log is on standard error' says err 'log(0, 3, 0)'
    expect 'it prints messages with the log, too' lsp_messages
}

lsp_ends_with_its_input() {
    run lsp
    expect 'it ends with 1 where it is not shut down' exits 1
    expect 'it prints nothing without being asked' silent out
    lsp_open "$example" >"$folder/in"
    status=0
    tool lsp <"$folder/in" >/dev/full 2>"$folder/err" || status=$?
    expect 'it ends with 74 where it cannot write' exits 74
    expect 'and says so' says err 'dcm: standard output: No space left on device'
    printf 'Content-Length: 1000000\r\n\r\n{}' >"$folder/in"
    run lsp <"$folder/in"
    expect 'half a message is not answered' silent out
    expect 'and it ends' exits 1
}

format_is_a_filter_of_standard_input() {
    write_unformatted
    run format - <"$folder/card.xml"
    expect 'it succeeds' exits 0
    expect 'standard output has the layout' is_file out formatted.xml
    run format - <"$folder/formatted.xml"
    expect 'also where nothing changes' is_file out formatted.xml
    run format --check - <"$folder/card.xml"
    expect 'a check of standard input' exits 1
    expect 'names it' says out '<stdin>'
}

format_prints_an_image() {
    cp "$example" "$folder/before.xml"
    run format --minify "$folder/before.xml"
    expect 'it succeeds' exits 0
    expect 'the file is as before' cmp -s "$example" "$folder/before.xml"
    expect 'the image says that it is made' says out '<!-- Generated by dcm format'
    expect 'it is shorter' [ "$(wc -c <"$folder/out")" -lt 61000 ]
    cp "$folder/out" "$folder/image.xml"
    for kind in frame slot card; do
        tool export $kind --file "$example" | grep -v '"line"\|"file"\|"column"' >"$folder/records"
        tool export $kind --file "$folder/image.xml" | grep -v '"line"\|"file"\|"column"' >"$folder/image-records"
        expect "each $kind is the same" is_file records image-records
    done
    run format --minify "$example" "$example"
    expect 'an image is made of one file' exits 64
    run format --minify --check "$example"
    expect 'and printed' exits 64
    run format
    expect 'a file has to be named' exits 64
}

format_refuses_what_it_cannot_change() {
    printf '<device>\n<card></device>' >"$folder/torn.xml"
    printf '<p>a <b/></p>' >"$folder/other.xml"
    printf '<?xml version="1.0" encoding="ISO-8859-1"?><device>\xe9</device>' >"$folder/latin.xml"
    mkdir "$folder/before"
    cp "$folder"/*.xml "$folder/before"
    run format "$folder/torn.xml"
    expect 'a file that is not well-formed is refused' exits 66
    expect 'with the place' says err \
        "$folder/torn.xml:2:16: Opening and ending tag mismatch: card line 2 and device"
    run format "$folder/other.xml"
    expect 'another document is refused' exits 66
    expect 'with the reason' says err "dcm: $folder/other.xml: not a device description"
    run format "$folder/latin.xml"
    expect 'another encoding is refused' exits 66
    expect 'with the reason' says err \
        "dcm: $folder/latin.xml: the encoding is ISO-8859-1; only UTF-8 and ASCII can be edited"
    run format --diff "$folder/none.xml"
    expect 'a file that is not there' exits 66
    for file in torn other latin; do
        expect "$file.xml is as before" is_file $file.xml before/$file.xml
    done
    write_unformatted
    run format "$folder/torn.xml" "$folder/card.xml"
    expect 'the worst counts' exits 66
    expect 'and the others are changed' is_file card.xml formatted.xml
}

format_leaves_a_file_that_it_cannot_write() {
    write_unformatted
    cp "$example" "$folder/large.xml"
    sed -i '2,$ s/^/ /' "$folder/large.xml"
    unshare -rm true 2>/dev/null || skip 'no file system can be mounted here'
    status=0
    # A file system with space for the file, but not for a copy.
    # shellcheck disable=SC2016
    unshare -rm bash -euc '
        mkdir "$1/disk"
        mount -t tmpfs -o size=128k dcm "$1/disk" || exit 77
        cp "$1/large.xml" "$1/disk"
        status=0
        ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$2" format "$1/disk/large.xml" || status=$?
        cmp "$1/large.xml" "$1/disk/large.xml"
        [ "$(ls "$1/disk")" = large.xml ]
        exit "$status"' bash "$folder" "$dcm" >"$folder/out" 2>"$folder/err" || status=$?
    [ "$status" -ne 77 ] || skip 'no file system can be mounted here'
    expect 'a full disk is a failure' exits 74
    expect 'standard error says so' says err "dcm: $folder/disk/large.xml: cannot be written: No space left on device"
    expect 'the file is as before, and nothing else is there' silent out
}

draw_prints_text_or_writes_the_format_of_the_name() {
    run draw card 0x302 --file "$example"
    expect 'a drawing in text is printed' exits 0
    expect 'it is what it was' cmp -s "$folder/out" "$source/tests/golden/draw-card-0x0302.txt"
    run draw frame 1 --file "$example" --fit 3=0x0302 --fit 8=0x0302 --fit 11=0x402:1 --led fan=stop
    expect 'a card is refused' exits 1
    expect 'which is said' says err 'dcm: ETH-54P refused: slot 8 accepts MCU-A'
    expect 'the drawing is still printed' cmp -s "$folder/out" "$source/tests/golden/draw-frame-1.txt"
    for format in svg txt png pdf; do
        run draw card 0x302 --file "$example" -o "$folder/picture.$format"
        if exits 1; then
            expect 'only what takes librsvg is not made' says err librsvg
            expect 'and no file is left' [ ! -e "$folder/picture.$format" ]
            continue
        fi
        expect "$format is written" exits 0
        expect 'nothing is printed' silent out
    done
    expect 'text is the same in a file' cmp -s "$folder/picture.txt" "$source/tests/golden/draw-card-0x0302.txt"
    expect 'SVG is SVG' grep -q '^<svg ' "$folder/picture.svg"
    [ ! -e "$folder/picture.png" ] || expect 'PNG is PNG' [ "$(head -c 4 "$folder/picture.png" | tail -c 3)" = PNG ]
    [ ! -e "$folder/picture.pdf" ] || expect 'PDF is PDF' [ "$(head -c 5 "$folder/picture.pdf")" = %PDF- ]
    cp "$folder/picture.svg" "$folder/first.svg"
    (cd "$source/examples" && tool draw card 0x302 -f device.xml -o "$folder/picture.svg")
    expect 'the folder makes no difference' cmp -s "$folder/picture.svg" "$folder/first.svg"
}

# Declares the parts of SVG 2 that the DTD of SVG 1.1 does not have.
draw_makes_valid_svg() {
    local type kind
    command -v xmllint >/dev/null || skip 'xmllint is not installed'
    ls /usr/share/xml/w3c-sgml-lib/schema/dtd/REC-SVG11-*/svg11.dtd >/dev/null 2>&1 || skip 'the DTD of SVG is not installed'
    while read -r kind type mode _; do
        [ "$kind" != slot ] || continue
        [ "$mode" != - ] || mode=
        # shellcheck disable=SC2086 # a mode or none
        run draw "$kind" "$type" $mode --check --file "$example" -o "$folder/picture.svg"
        expect "$kind $type is drawn" exits 0
        sed '1a<!DOCTYPE svg PUBLIC "-//W3C//DTD SVG 1.1//EN" "svg11.dtd" [\
<!ATTLIST svg role CDATA #IMPLIED aria-labelledby CDATA #IMPLIED>]>' "$folder/picture.svg" >"$folder/valid.svg"
        status=0
        xmllint --noout --nonet --valid "$folder/valid.svg" >"$folder/out" 2>"$folder/err" || status=$?
        expect "the picture of $kind $type is valid" exits 0
    done < <(tool list --file "$example" | tail -n +2)
}

draw_reports_errors() {
    run draw frame 9 --file "$example"
    expect 'a type that is not there fails' exits 1
    expect 'and is named' says err 'no frame has type 9; the frame types are 1 and 2'
    run draw card 0x402 7 --file "$example"
    expect 'as does a mode' says err 'card type 0x402 has no mode 7; its modes are 0 and 1'
    write_faulty
    run draw card 1 --led fan=dancing --file "$example"
    expect 'a state that no LED has fails' exits 1
    while IFS= read -r line; do
        # shellcheck disable=SC2086 # words of a command
        run draw --file "$example" $line
        expect "'$line' is wrong usage" exits 64
        expect 'which is said' [ -s "$folder/err" ]
        expect 'and nothing is printed' silent out
    done <<'LINES'

card
card 0x302 -o picture.gif
card 0x302 --led fan
card 0x302 --fit 1=1
frame 1 --fit 3
frame 1 --fit 3=card
frame 1 --fit 33=0x302
frame 1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1 --fit 1=1
LINES
}

draw_replaces_a_file_or_leaves_it() {
    local picture="$folder/picture.svg"
    mkdir "$folder/target"
    echo old >"$folder/target/picture.svg"
    chmod 640 "$folder/target/picture.svg"
    ln -s target/picture.svg "$picture"
    run draw card 0x302 --file "$example" -o "$picture"
    expect 'a file is replaced' exits 0
    expect 'a link stays a link' [ -L "$picture" ]
    expect 'the file that it leads to is new' grep -q '^<svg ' "$folder/target/picture.svg"
    expect 'it keeps its mode' [ "$(stat -c %a "$folder/target/picture.svg")" = 640 ]
    expect 'nothing else is left' [ "$(ls "$folder/target")" = picture.svg ]
    cp "$folder/target/picture.svg" "$folder/before"
    status=0
    # Files are limited to 1 KiB.
    (
        trap '' XFSZ
        ulimit -f 1
        tool draw card 0x401 --file "$example" -o "$picture"
    ) >"$folder/out" 2>"$folder/err" || status=$?
    expect 'a file that cannot be written fails' exits 1
    expect 'which is said' says err "dcm: $picture: File too large"
    expect 'the old content is still there' cmp -s "$picture" "$folder/before"
    expect 'and nothing else' [ "$(ls "$folder/target")" = picture.svg ]
    run draw card 0x401 --file "$example" -o "$folder/none/picture.svg"
    expect 'a folder that is not there fails' exits 1
    expect 'which is said, too' says err "dcm: $folder/none/picture.svg: No such file or directory"
}

page_is_one_file_of_moderate_size() {
    run page "$example" -o "$folder/device.html"
    expect 'a page is written' exits 0
    expect 'nothing is printed' silent out
    expect 'nor said' silent err
    expect 'it has less than 400 KB' [ "$(stat -c %s "$folder/device.html")" -lt 400000 ]
    run page - <"$example"
    expect 'standard input is read' exits 0
    expect 'the page is printed' says out '<title>&lt;stdin&gt;: hardware description</title>'
    run page "$example"
    expect 'it is the same in a file' cmp -s "$folder/out" "$folder/device.html"
}

page_reports_errors() {
    run page
    expect 'a page needs a file' exits 64
    run page "$folder/none.xml"
    expect 'that can be read' exits 66
    run page "$source/examples/vm-3.xml"
    expect 'and describes a device' exits 1
    expect 'which is said' says err 'a list of ports has no page'
    write_faulty
    run page "$folder/faulty.xml"
    expect 'a query that fails makes the exit status 1' exits 1
    expect 'there is still a page' says out 'The query of this type fails.'
}

# The committed pictures were made on another machine.
draw_makes_the_pictures_of_the_documentation() {
    "$source/scripts/pictures.sh" "$dcm" "$source" "$folder"
    for picture in "$source"/docs/pictures/*.svg; do
        status=0
        cmp "$picture" "$folder/${picture##*/}" >"$folder/out" 2>"$folder/err" || status=$?
        expect "${picture##*/} is as scripts/pictures.sh draws it" exits 0
    done
}

# Two descriptions: a threshold of a card differs, and the PHY type of a port.
write_compared() {
    cat >"$folder/old.xml" <<'XML'
<device>
  <card typeid="0x21" name="line">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1"><portid>1</portid><phytype>100ge</phytype></port>
    </panel-port>
  </card>
  <slot typeid="1"/>
</device>
XML
    sed 's/100ge/10ge/; s/"line"/"other"/' "$folder/old.xml" >"$folder/new.xml"
    sed 's/"line"/"other"/' "$folder/old.xml" >"$folder/renamed.xml"
    sed 's/0x21/33/; s/typeid="1"/typeid="0x1"/' "$folder/old.xml" >"$folder/rewritten.xml"
}

diff_names_the_query_the_field_and_both_places() {
    write_compared
    (cd "$folder" && tool diff old.xml new.xml) >"$folder/out" 2>"$folder/err" || true
    status=0
    cat >"$folder/expected" <<'TEXT'
card 0x21/0
  dcm export card 0x21 0 --file old.xml
  dcm export card 0x21 0 --file new.xml
  breaking: card 0x21/0 panelIf[0].phyType: 100ge → 10ge (what the port is; port 1)
      old.xml:4:47 → new.xml:4:47
  behaviour: card 0x21/0 name: 'line' → 'other' (a name)
      old.xml:2:29 → new.xml:2:29

1 breaking, 1 behaviour
TEXT
    expect 'the differences are shown, the worst first' cmp -s "$folder/expected" "$folder/out"
    run diff "$folder/old.xml" "$folder/rewritten.xml"
    expect 'what is cosmetic is one line' says out 'cosmetic: every query answers the same; 2 types are written differently'
    run diff "$folder/old.xml" "$folder/old.xml"
    expect 'nothing is printed about equal files' silent out
    expect 'and nothing on standard error' silent err
    sed 's|<phytype>ge</phytype>|<phytype>fe</phytype>|' "$example" >"$folder/slower.xml"
    run diff "$example" "$folder/slower.xml"
    expect 'what is the same for several ports is one line' says out ' panelIf[0-23].phyType: ge → fe (what the port is; ports 1-24)'
    run diff --modes 0x402 "$example"
    expect 'modes are compared' says out 'card 0x402/0 → 0x402/1 panelIf[1].phyType: 10ge → 100ge'
}

diff_exits_with_the_worst_class() {
    write_compared
    while read -r new options expected; do
        # shellcheck disable=SC2086 # words of a command
        run diff ${options//,/ } "$folder/old.xml" "$folder/$new.xml"
        expect "diff ${options//,/ } with $new" exits "$expected"
        expect 'standard error is silent' silent err
    done <<'TABLE'
old --format,text 0
old --fail-on,cosmetic 0
rewritten --format,text 0
rewritten --fail-on,cosmetic 1
renamed --format,text 1
renamed --fail-on,behaviour 1
renamed --fail-on,breaking 0
new --format,text 2
new --format,json 2
new --format,html 2
new --fail-on,breaking 2
new --for=name 1
new --for=name,--for=phyType 2
new --for=portId 0
TABLE
    run diff "$folder/old.xml" "$folder/none.xml"
    expect 'a side that cannot be read' exits 66
    run diff "$folder/old.xml" - <<<'<device>'
    expect 'a side that is not well-formed' exits 66
    expect 'is said with its place' says err '<stdin>:2:1: '
    run diff "$folder/old.xml" - <<<'<other/>'
    expect 'a side that is no description' exits 66
    expect 'prints nothing' silent out
    for command in 'diff' 'diff a' 'diff a b c' 'diff - -' 'diff --fail-on none a b' 'diff --for phytype a b' \
        'diff --for= a b' 'diff --modes 1 a b' 'diff --git-driver a b c' 'diff --format sarif a b' 'git-setup a b'; do
        # shellcheck disable=SC2086 # words of a command
        run $command
        expect "'dcm $command' is wrong usage" exits 64
    done
}

# The values of the differences are those of the exports of both sides.
replays() {
    tool export --file "$folder/old.xml" >"$folder/old.json"
    tool export --file "$folder/new.xml" >"$folder/new.json"
    python3 - "$folder" <<'PYTHON'
import json, re, sys
folder = sys.argv[1]
def load(name):
    return json.load(open(f"{folder}/{name}"))
def value(export, difference, path):
    found = next(entry["record"] for entry in export[difference["kind"] + "s"]
                 if difference["type"] in entry["typeIds"] and difference["mode"] == entry.get("mode"))
    for step in re.findall(r"\w+", path):
        found = found[int(step) if step.isdigit() else step]
    return found
differences = load("out")["differences"]
for difference in differences:
    path = difference["path"]
    assert value(load("old.json"), difference, difference.get("oldPath", path)) == difference["old"], difference
    assert value(load("new.json"), difference, path) == difference["new"], difference
assert len(differences) == 2
PYTHON
}

diff_prints_json_that_exports_confirm() {
    write_compared
    run diff --format json "$folder/old.xml" "$folder/new.xml"
    expect 'the output follows its schema' follows diff
    expect 'exports hold what it says' replays
    for new in old rewritten renamed; do
        run diff --format json "$folder/old.xml" "$folder/$new.xml"
        expect "the output for $new follows its schema" follows diff
    done
    run diff --format json "$folder/old.xml" - <<<'<device><card typeid="7"/><slot typeid="1,2"/></device>'
    expect 'the output for other types follows its schema' follows diff
    run diff --format json "$source/examples/vm-3.xml" "$folder/old.xml"
    expect 'the output for a port list follows its schema' follows diff
}

# An element of a page ends with its end tag, or with that of an element around it if HTML allows that. Ids are unique, and
# links lead to them.
is_a_page() {
    python3 - "$1" <<'PYTHON'
import html.parser, sys
optional = {"html", "p", "thead", "tbody", "tr", "th", "td"}
open_tags, ids, links = [], [], []
class Parser(html.parser.HTMLParser):
    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag != "meta":
            open_tags.append(tag)
        ids.extend([attributes["id"]] if "id" in attributes else [])
        links.extend([attributes["href"]] if "href" in attributes else [])
    def handle_startendtag(self, tag, attributes):
        self.handle_starttag(tag, attributes)
        open_tags.pop()
    def handle_endtag(self, tag):
        while open_tags[-1] != tag:
            assert open_tags.pop() in optional, (tag, open_tags)
        open_tags.pop()
Parser().feed(open(sys.argv[1]).read())
assert not set(open_tags) - optional, open_tags
assert ids and len(ids) == len(set(ids)), [id for id in ids if ids.count(id) > 1]
assert {link[1:] for link in links} <= set(ids), set(links) - {"#" + id for id in ids}
PYTHON
}

diff_prints_html_that_loads_nothing() {
    write_compared
    sed -i 's/"line"/"\&lt;script src=x>"/' "$folder/old.xml"
    sed 's/"&lt;script src=x>"/"b\&quot;"/; s/100ge/10ge/' "$folder/old.xml" >"$folder/new.xml"
    run diff --format html "$folder/old.xml" "$folder/new.xml"
    expect 'a name is text' says out '&lt;script src=x&gt;'
    expect 'and no element' [ "$(grep -cF '<script' "$folder/out")" = 0 ]
    expect 'nothing else is fetched' [ "$(grep -cE '(src|href)="[^#]|url\([^#]|@import' "$folder/out")" = 0 ]
    expect 'there are two pictures' [ "$(grep -cF '<figure ' "$folder/out")" = 2 ]
    expect 'it is a page' is_a_page "$folder/out"
    run diff --format html --modes 0x402 "$example"
    expect 'modes are compared in a page' is_a_page "$folder/out"
    sed 's|<portid>3</portid>|<portid>7</portid>|; s|<lpu>1-6,|<lpu>1-5,|; s|0x0501</supportcardtype>|0x0501,9</supportcardtype>|' \
        "$example" >"$folder/changed.xml"
    run diff --format html "$example" "$folder/changed.xml"
    expect 'many differences are a page' is_a_page "$folder/out"
    run diff --format html "$folder/old.xml" "$folder/old.xml"
    expect 'a page about equal files has a class' says out '>none</b>'
}

# A work tree with the old description in its first revision, and the tool installed as "dcm".
write_repository() {
    command -v git >/dev/null || skip 'git is not there'
    write_compared
    mkdir "$folder/bin" "$folder/tree"
    printf '#!/bin/sh\nexec %s "%s" "$@"\n' "${DCM_EMULATOR:-}" "$(realpath "$dcm")" >"$folder/bin/dcm"
    chmod +x "$folder/bin/dcm"
    export PATH="$folder/bin:$PATH" HOME="$folder" GIT_CONFIG_NOSYSTEM=1 GIT_PAGER=cat
    export GIT_AUTHOR_NAME=a GIT_AUTHOR_EMAIL=a@example.org GIT_COMMITTER_NAME=a GIT_COMMITTER_EMAIL=a@example.org
    cd "$folder/tree"
    git init -q -b main .
    cp "$folder/old.xml" device.xml
    git add device.xml
    git commit -qm first
}

diff_reads_revisions() {
    write_repository
    cp "$folder/new.xml" device.xml
    run diff HEAD:device.xml device.xml
    expect 'a revision is compared with a file' exits 2
    expect 'places name the revision' says out 'HEAD:device.xml:4:47 → device.xml:4:47'
    expect 'it says how to see the record' says out 'git show HEAD:device.xml | dcm export card 0x21 0 --file -'
    run diff HEAD:device.xml HEAD:device.xml
    expect 'a revision is compared with itself' exits 0
    run diff HEAD:none.xml device.xml
    expect 'a file that the revision lacks is not read' exits 66
    expect 'git says why' says err "dcm: HEAD:none.xml: fatal: path 'none.xml' does not exist in 'HEAD'"
    run diff none:device.xml device.xml
    expect 'nor is a revision that is not there' exits 66
    run diff 'HEAD:device.xml;touch touched' device.xml
    expect 'no shell reads the name' exits 66
    expect 'nothing of it is run' [ ! -e touched ]
    for name in --output=touched:x -p:x; do
        run diff -- "$name" device.xml
        expect "$name is no revision" says err "dcm: $name: No such file or directory"
    done
    cp device.xml HEAD:device.xml
    run diff HEAD:device.xml device.xml
    expect 'a file with such a name is the file' exits 0
    cd "$folder"
    run diff HEAD:device.xml new.xml
    expect 'there are no revisions outside a work tree' exits 66
}

git_setup_makes_git_diff_and_push_use_it() {
    write_repository
    git init -q --bare "$folder/bare"
    git remote add origin "$folder/bare"
    git push -q origin main 2>/dev/null
    git branch -q -u origin/main
    git config push.default upstream
    run git-setup
    expect 'it prints two lines' [ "$(wc -l <"$folder/out")" = 2 ]
    cp "$folder/out" "$folder/lines"
    sh -e "$folder/lines"

    cp "$folder/renamed.xml" device.xml
    status=0
    git diff >"$folder/out" 2>"$folder/err" || status=$?
    expect 'git diff succeeds' exits 0
    expect 'git diff shows what changes' says out "behaviour: card 0x21/0 name: 'line' → 'other' (a name)"
    expect 'with its places' says out 'a/device.xml:2:29 → b/device.xml:2:29'
    git commit -qam renamed
    git push -q >"$folder/out" 2>"$folder/err" || status=$?
    expect 'what breaks nothing is pushed' exits 0

    cp "$folder/new.xml" device.xml
    git commit -qam broken
    git push -q >"$folder/out" 2>"$folder/err" || status=$?
    expect 'what breaks is not pushed' [ "$status" -ne 0 ]
    expect 'it says why' says out 'panelIf[0].phyType: 100ge → 10ge'
    git rm -q device.xml
    git diff --cached >"$folder/out" 2>"$folder/err"
    expect 'a file that goes is compared with nothing' says out 'breaking: card 0x21/0: it is gone'
}

"$3"
