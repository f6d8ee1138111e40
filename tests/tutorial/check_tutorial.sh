#!/usr/bin/env bash
# Does what the tutorial says, and sees what it shows. Usage: check_tutorial.sh DCM TUTORIAL
#
# A block "```xml FILE" is a file. A block "```console" holds commands behind "$ ", each with what it prints: in a line
# "..." stands for anything, and alone for any lines.
set -euo pipefail

tool=$(realpath "$1")
tutorial=$(realpath "$2")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

line=0
ran=0
status=0
output=()

dcm() {
    ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$tool" "$@"
}

fail() {
    printf '%s:%s: %s\n' "$tutorial" "$line" "$1"
    [ "${#output[@]}" -eq 0 ] || printf '    %s\n' "${output[@]}"
    exit 1
}

# looks_like LINE PATTERN
looks_like() {
    local pattern=${2//\\/\\\\}
    pattern=${pattern//\*/\\*}
    pattern=${pattern//\?/\\?}
    pattern=${pattern//\[/\\[}
    # shellcheck disable=SC2053 # a pattern
    [[ $1 == ${pattern//.../*} ]]
}

# run COMMAND: leaves its output in `output`, where expect_line takes it from.
run() {
    local text
    if [ "$1" = "echo \$?" ]; then
        text=$status
    else
        status=0
        eval "$1" >"$folder/.output" 2>&1 </dev/null || status=$?
        text=$(tr -d '\r' <"$folder/.output")
    fi
    mapfile -t output <<<"$text"
    ran=$((ran + 1))
    isSkipping=false
}

# expect_line PATTERN: the next line of the output, or, behind "...", one of the next ones.
expect_line() {
    if [ "$1" = ... ]; then
        isSkipping=true
        return
    fi
    while [ "${#output[@]}" -gt 0 ]; do
        if looks_like "${output[0]}" "$1"; then
            output=("${output[@]:1}")
            isSkipping=false
            return
        fi
        "$isSkipping" || break
        output=("${output[@]:1}")
    done
    fail "not printed: $1"
}

expect_end() {
    "$isSkipping" || [ "${#output[@]}" -eq 0 ] || fail 'more is printed:'
    output=()
}

block=
isSkipping=true
while IFS= read -r text; do
    line=$((line + 1))
    case $block,$text in
    console,'```') expect_end && block= ;;
    *,'```') block= ;;
    ,'```console') block=console isSkipping=true ;;
    ,'```xml '*) block=${text#* } && : >"$block" ;;
    console,'$ '*) expect_end && run "${text#* }" ;;
    console,*) expect_line "$text" ;;
    ,*) ;;
    *) printf '%s\n' "$text" >>"$block" ;;
    esac
done <"$tutorial"

[ "$ran" -ge 5 ] || fail "only $ran commands"
