#!/usr/bin/env bash
# What an engineer meets at the command line. Usage: check_tool.sh DCM SOURCE_FOLDER CASE
set -euo pipefail

dcm=$1
source=$2
example=$source/examples/device.xml
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# run ARGUMENT...: leaves status, $folder/out and $folder/err. DCM_EMULATOR runs what was built for another machine.
run() {
    status=0
    ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$dcm" "$@" >"$folder/out" 2>"$folder/err" </dev/null || status=$?
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

says() { grep -qF -- "$2" "$folder/$1"; }
silent() { [ ! -s "$folder/$1" ]; }
exits() { [ "$status" -eq "$1" ]; }
# The report below its "file:" line is the golden one.
prints_golden() { tail -n +3 "$folder/out" | cmp -s - "$source/tests/golden/$1"; }

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
    run frame 1 --file "$folder/none.xml"
    expect 'a missing file fails' exits 1
    expect 'a missing file is named' says out "xmlfile($folder/none.xml) parse failed(err#2, No such file or directory)"
    run vm 200 --root "$folder"
    expect 'a missing port list fails' exits 1
    expect 'a missing port list is named' says out 'vm-200.xml is not exist.'
}

fails_with_64_on_wrong_usage() {
    for command in '' 'unknown' 'frame' 'frame x' 'frame 1x' 'frame -1' 'frame 4294967296' 'frame 1 2' 'card 1 2 3' \
        'slot 1 --fil' 'vm 256' 'vm' 'frame 1 --unknown'; do
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
    for command in frame slot card vm; do
        expect "help names $command" says out "$command"
    done
    expect 'help names the exit statuses' says out 'Exit status: 0 success, 1 the query failed, 64 wrong usage.'
    for command in frame slot card vm; do
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

"$3"
