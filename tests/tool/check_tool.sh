#!/usr/bin/env bash
# What an engineer meets at the command line. Usage: check_tool.sh DCM SOURCE_FOLDER CASE
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

# skip WHY: ctest takes this status for a test that does not run.
skip() {
    echo "skipped: $*"
    exit 77
}

# starts_within KILOBYTES: with a sanitizer the tool takes more address space than any limit leaves.
starts_within() {
    (
        ulimit -v "$1"
        tool --version
    ) >/dev/null 2>&1 || skip "the tool does not start within $1 kB"
}

says() { grep -qF -- "$2" "$folder/$1"; }
silent() { [ ! -s "$folder/$1" ]; }
exits() { [ "$status" -eq "$1" ]; }
# The report below its "file:" line is the golden one.
prints_golden() { tail -n +3 "$folder/out" | cmp -s - "$source/tests/golden/$1"; }

# Standard output follows a schema of docs/schema, or the one that is built beside the tool.
follows() {
    local schema=$source/docs/schema/$1.schema.json
    [ "$1" != export ] || schema=$(dirname "$dcm")/export.schema.json
    python3 "$source/tests/tool/validate.py" "$schema" "$folder/out"
}
# lists LINE: a line of the list, whatever the blanks in it.
lists() { tr -s ' ' <"$folder/out" | grep -qxF -- "$1"; }

# A description of which one card fails, one passes over a fault, and a slot has no type.
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

# What the tool does not open, and why.
write_unopened() {
    mkdir -p "$folder/unopened/device"
    mkfifo "$folder/fifo"
    python3 -c 'import socket, sys; socket.socket(socket.AF_UNIX).bind(sys.argv[1])' "$folder/socket"
    truncate -s $((64 * 1024 * 1024 + 1)) "$folder/large"
    cat >"$folder/reasons" <<TEXT
$folder/none.xml: No such file or directory
$folder/unopened: not a regular file but a directory
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
            "diff $example"; do
            # shellcheck disable=SC2086 # words of a command
            run $command "$file"
            expect "$command does not open $file" exits 66
            expect 'standard error says why, and nothing else' [ "$(cat "$folder/err")" = "dcm: $reason" ]
            expect 'standard output is silent' silent out
        done
        run check "$file"
        expect "check does not open $file" exits 66
        expect 'the finding says why' says out "$file: error: cannot be read: ${reason#*: } [unreadable]"
    done <"$folder/reasons"
    mkfifo "$folder/unopened/device/vm-3.xml"
    run vm 3 --root "$folder/unopened"
    expect 'vm does not open a FIFO' exits 66
    expect 'standard error says why' says err "dcm: $folder/unopened/device/vm-3.xml: not a regular file but a FIFO"
    expect 'standard output is silent' silent out
}

# What a terminal would obey, or a reader mistake for the tool's own words: in a value, and in a file's name, where also
# bytes may stand that no document can hold. U+009B is CSI, U+202E an override, U+2028 a line separator.
hostile_value='&#10;forged&#13;&#10;forged&#x9b;31m&#x202e;&#x2028;'
hostile_bytes=$'\nforged\e[31m\r\nforged\xc2\x9b31m\xe2\x80\xae\xff'

# run_hostile ARGUMENT...: runs a command that says something, and keeps what it prints and says for are_harmless.
run_hostile() {
    run "$@"
    expect "'$(printf %q "$*")' says something" [ -s "$folder/out" -o -s "$folder/err" ]
    cat "$folder/out" "$folder/err" >>"$folder/all"
    echo >>"$folder/all"
}

# All that was kept is valid UTF-8 without control characters but those that end lines, and without a line that a file has
# made up.
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

nothing_that_a_file_holds_reaches_a_terminal_as_it_is() {
    local name="$folder/$hostile_bytes" kind type
    local value=${hostile_value//&/\\&} # for sed
    mkdir -p "$name/device"
    # Each text of the example, then each word, too, so that queries fail.
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
        for command in 'frame 1' 'frame 0' 'slot 1' 'slot 0' 'card 1' 'card 0' list 'list --json' export 'export card' 'export card 77'; do
            # shellcheck disable=SC2086 # words of a command
            run_hostile --log $command --file "$name/$file.xml"
        done
        for format in text json sarif; do
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
    for command in list export; do
        run_hostile $command --file - <"$name/torn.xml"
    done
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
    # A tree that is larger than the memory.
    {
        echo "<device><frame typeid='1'>"
        head -n 600000 < <(yes '<a/><a/><a/><a/>')
        echo '</frame></device>'
    } >"$folder/many.xml"
    for command in 'frame 1 -f' 'list -f' 'export -f' check "diff $example"; do
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

check_does_alone_what_it_gets_no_threads_for() {
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
        'slot 1 --fil' 'vm 256' 'vm' 'frame 1 --unknown' 'list 1' 'list --jso' 'export vm' 'export frame 1 2' 'export card x' \
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
    for command in frame slot card vm list check export diff git-setup; do
        expect "help names $command" says out "$command"
    done
    expect 'help names the exit statuses' says out 'Exit status: 0 success, 1 the query failed, 64 wrong usage, 66 the file cannot be read, 71 out of memory.'
    for command in frame slot card vm list check export; do
        run "$command" --help
        expect "$command --help succeeds" exits 0
        expect "$command --help shows its usage" says out "dcm $command"
    done
    run --version
    expect 'the version is printed' exits 0
    expect 'the version is dcm and a number' grep -qE '^dcm [0-9]+\.[0-9]+\.[0-9]+$' "$folder/out"
}

logs_on_standard_error_when_asked() {
    run frame 99 --file "$example" --log
    expect 'what is logged stands on standard error' says err 'can not find frame with typeid=99.'
    run frame 99 --file "$example"
    expect 'nothing is logged unasked' silent err
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

exports_what_the_queries_give() {
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
    expect 'the record holds the id that was asked for' says out '"type": 18,'
    run export card 0x402 1 --file "$example"
    expect 'a card in a mode is exported' says out '"name": "Transponder, 100G"'
    expect 'and no other' [ "$(grep -c '"record"' "$folder/out")" -eq 1 ]
    run export card 0x402 --file "$example"
    expect 'a card without mode is in mode 0' says out '"name": "Multiplexing transponder, 10 x 10G to 100G"'
    run export --file "$source/examples/vm-3.xml"
    expect 'a port list is exported, too' exits 0
    expect 'it follows the schema' follows export
}

exports_the_rest_when_a_query_fails() {
    write_faulty
    run export --file "$folder/faulty.xml"
    expect 'a failing query fails the export' exits 1
    expect 'the rest follows the schema' follows export
    expect 'what fails has no record' says out '"record":null'
    expect 'standard error says where and why' says err "$folder/faulty.xml:4:4: xmlfile($folder/faulty.xml) card decode mgt-port failed, num(=5) invalid."
    run export card 8 1 --file "$folder/faulty.xml"
    expect 'a fault that is passed over fails nothing' exits 0
    expect 'a card without a name has that of the card before it, as its query does' says out '"name": "seven"'
    run export card 7 --file "$folder/faulty.xml"
    expect 'a failing card fails' exits 1
    expect 'it is there without record' says out '"record":null'
    run export card 9 --file "$folder/faulty.xml"
    expect 'a type that is not described fails' exits 1
    expect 'nothing is exported' silent out
    expect 'standard error says that it is not there' says err 'no card has type id 9 and mode 0.'
    run export slot 9 --file "$folder/faulty.xml"
    expect 'so it is with a slot' says err 'no slot has type id 9.'
}

# place_in FILE PATTERN: line and column of the tag that a line begins with.
place_in() {
    awk -v pattern="$2" '$0 ~ pattern { print FNR ":" match($0, /</) + 1; exit }' "$1"
}

lists_what_is_described() {
    run list --file "$example"
    expect 'the list succeeds' exits 0
    expect 'nothing is said on standard error' silent err
    expect 'its columns have titles' lists 'KIND TYPE MODE NAME SLOTS PORTS FANS SUPPLIES LEDS PLACE QUERY'
    expect 'a frame is listed' \
        lists "frame 0x1 - - 22 - 12 2 18 $(place_in "$example" '<frame typeid="1"') ok"
    expect 'a slot is listed with all its ids' \
        lists "slot 0x2,0x12 - - - 26 0 0 - $(place_in "$example" '<slot typeid="2,0x12"') ok"
    expect 'a card is listed with its mode' \
        lists "card 0x402 1 Transponder, 100G 1 3 - - 0 $(place_in "$example" '<card typeid="0x0402" mode="1"') ok"
    expect 'its columns are aligned' [ "$(sed 's/[^ ]*$//' "$folder/out" | awk '{ print length }' | uniq | wc -l)" -eq 1 ]
    run list --json --file "$example"
    expect 'the list for programs succeeds' exits 0
    expect 'it follows its schema' follows list
    run list --file "$source/examples/vm-3.xml"
    expect 'a port list is listed, too' \
        lists "vm - - - - 5 - - - $(place_in "$source/examples/vm-3.xml" '<panel-port') ok"
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
        expect "$command fails with 66 when the file is no XML" exits 66
        expect 'standard error says where' says err "$folder/torn.xml:3:"
        run "$command" --file "$folder/foreign.xml"
        expect "$command fails with 66 when the file describes no device" exits 66
        expect 'standard error says so' says err "$folder/foreign.xml:1:1: no description of a device"
        expect 'standard output is silent' silent out
    done
}

list_and_export_end_quietly_when_nobody_reads() {
    set +o pipefail
    for command in list export; do
        # Whoever ignores the signal gets an error from write.
        tool "$command" --file "$example" 2>"$folder/err" | true
        expect "$command is quiet when nobody reads" silent err
        (
            trap '' PIPE
            tool "$command" --file "$example" 2>"$folder/err" | true
        )
        expect "$command is quiet when writing fails because nobody reads" silent err
        status=0
        tool "$command" --file "$example" 2>"$folder/err" >/dev/full || status=$?
        expect "$command fails when it cannot write" exits 1
        expect 'and says so' says err 'dcm: standard output: No space left on device'
    done
}

# Descriptions with warnings only, with an error, that are no XML.
write_checked() {
    printf '<device>\n\t<card typeid="010"/>\n</device>\n' >"$folder/warning.xml"
    printf '<device>\n  <card typeid="1"><muxctrl>maybe</muxctrl></card>\n</device>\n' >"$folder/error.xml"
    printf '<device>\n  <card>\n</device>\n' >"$folder/torn.xml"
}

check_shows_what_it_finds_as_a_compiler_does() {
    write_checked
    cd "$folder"
    run check warning.xml error.xml
    cat >expected <<'TEXT'
warning.xml:2:16: warning: card 010: '010' begins with 0, which makes it octal: it counts as 8; expected 10 or a number in hexadecimal [octal-number]
    	<card typeid="010"/>
    	              ^~~
error.xml:2:29: error: card 1/muxctrl: 'maybe' is no word for "muxctrl"; expected 'no', 'yes'; the query fails: "invalid YesOrNo(maybe)." [query-fails]
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
    expect 'a file that is no XML gives 66' exits 66
    expect 'and its place' says out "$folder/torn.xml:3:10: error: "
    run check "$folder/none.xml"
    expect 'a file that is not there gives 66' exits 66
    expect 'and says why' says out "$folder/none.xml: error: cannot be read: No such file or directory [unreadable]"
    for command in check 'check --format xml' 'check --jobs 0' 'check -W octal-number' 'check -W no-such x' \
        'check -W error=such x' 'check --explain such'; do
        # shellcheck disable=SC2086 # words of a command
        run $command
        expect "'dcm $command' is wrong usage" exits 64
        expect "'dcm $command' prints nothing" silent out
    done
}

check_leaves_checks_out_and_makes_errors_of_them() {
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
    expect 'the nearest one is named' says err 'did you mean octal-number?'
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

check_lists_and_explains_its_checks() {
    run check --list-checks
    expect 'the list succeeds' exits 0
    expect 'it has a line for a check' grep -qE '^slot-gap +warning +The slots of a frame' "$folder/out"
    cut -d ' ' -f 1 "$folder/out" >"$folder/names"
    while read -r name; do
        run check --explain "$name"
        expect "$name is explained" exits 0
        expect "$name is named first" grep -qE "^$name \((error|warning)\): " "$folder/out"
    done <"$folder/names"
}

check_says_the_same_with_several_jobs() {
    run check "$source"/tests/tool/corpus/*.xml
    cp "$folder/out" "$folder/one"
    run check --jobs 4 "$source"/tests/tool/corpus/*.xml
    expect 'several jobs find the same in the same order' cmp -s "$folder/out" "$folder/one"
}

check_shows_on_a_terminal_what_it_waits_for() {
    script --quiet --command true /dev/null </dev/null >"$folder/out" 2>&1 || skip 'this system has no pseudo-terminal'
    mkfifo "$folder/slow"
    # A file that comes when the line stands there.
    { until grep -qF checking "$folder/terminal" 2>/dev/null; do sleep 0.1; done; cat "$example"; } >"$folder/slow" &
    status=0
    script --quiet --flush --command "${DCM_EMULATOR:+$DCM_EMULATOR }$dcm check - <$folder/slow >$folder/out" \
        "$folder/terminal" </dev/null >"$folder/err" || status=$?
    wait
    expect 'a terminal shows the file that is being checked' says err "checking - (1 of 1)"
    expect 'the line goes in the end' ends_with_a_cleared_line
    expect 'standard output holds the findings alone' says out '1 file, nothing found'

    run check "$example"
    expect 'nothing but a terminal shows it' silent err
}
# The last that a terminal was told is to clear the line.
ends_with_a_cleared_line() { [ "$(tail -c 4 "$folder/err")" = $'\r\e[K' ]; }

check_reads_standard_input_and_ends_quietly() {
    write_checked
    run check - <"$folder/warning.xml"
    expect 'standard input is checked' says out '<stdin>:2:16: warning: '
    set +o pipefail
    tool check "$source"/tests/tool/corpus/*.xml 2>"$folder/err" | true
    expect 'check is quiet when nobody reads' silent err
    status=0
    tool check "$folder/warning.xml" 2>"$folder/err" >/dev/full || status=$?
    expect 'check fails when it cannot write' exits 2
    expect 'and says so' says err 'dcm: standard output: No space left on device'
}

# Two descriptions: of a card, a threshold differs, and a port has another kind.
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
  breaking: card 0x21/0 panelIf[0].phyType: 100ge → 10ge (what the port is)
      old.xml:4:47 → new.xml:4:47
  behaviour: card 0x21/0 name: 'line' → 'other' (a name)
      old.xml:2:29 → new.xml:2:29

1 breaking, 1 behaviour
TEXT
    expect 'the differences are shown, the worst first' cmp -s "$folder/expected" "$folder/out"
    run diff "$folder/old.xml" "$folder/rewritten.xml"
    expect 'what is cosmetic is one line' says out 'cosmetic: every query answers the same; 2 types are written differently'
    run diff "$folder/old.xml" "$folder/old.xml"
    expect 'nothing is said of equal files' silent out
    expect 'and nothing on standard error' silent err
    sed 's|<phytype>ge</phytype>|<phytype>fe</phytype>|' "$example" >"$folder/slower.xml"
    run diff "$example" "$folder/slower.xml"
    expect 'what is the same for several ports is one line' says out ' panelIf[0-23].phyType: ge → fe (what the port is)'
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

# What the differences say in the exports of both sides.
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

diff_prints_html_that_loads_nothing() {
    write_compared
    sed -i 's/"line"/"\&lt;script src=x>"/' "$folder/old.xml"
    sed 's/"&lt;script src=x>"/"b\&quot;"/' "$folder/old.xml" >"$folder/new.xml"
    run diff --format html "$folder/old.xml" "$folder/new.xml"
    expect 'a name is text' says out '&lt;script src=x&gt;'
    expect 'and no element' [ "$(grep -cF '<script' "$folder/out")" = 0 ]
    expect 'nothing else is fetched' [ "$(grep -cE '(src|href)="|url\(|@import' "$folder/out")" = 0 ]
    expect 'it is well-formed' python3 - "$folder/out" <<'PYTHON'
import html.parser, sys
open_tags = []
class Parser(html.parser.HTMLParser):
    def handle_starttag(self, tag, attributes):
        if tag != "meta":
            open_tags.append(tag)
    def handle_endtag(self, tag):
        assert open_tags.pop() == tag, tag
parser = Parser()
parser.feed(open(sys.argv[1]).read())
assert not open_tags, open_tags
PYTHON
}

# A work tree with the old description in its first revision, and the tool as "dcm".
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
