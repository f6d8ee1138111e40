#!/usr/bin/env bash
# Runs the commands in a document and compares their output. Usage: check_document.sh DCM SOURCE_FOLDER DOCUMENT
#
# In Markdown, a block "```xml FILE" is a file. A block "```console" has commands after "$ ", each followed by its output,
# in which "..." in a line matches any text, and alone any lines. A manual page has commands in ".Dl dcm ..." lines, and an
# excerpt of output in ".Bd -literal", after comments (.\" $ COMMAND) or "$ " lines with the commands.
#
# A command line of the tool outside such a block is a fault. Those in `code` are not run: their commands and options must
# exist, and so must the commands of ./dev.
set -euo pipefail

tool=$(realpath "$1")
source=$(realpath "$2")
document=$3
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
ln -s "$source/examples" examples
ln -s "$source/examples/device.xml" device.xml

line=0
status=0
command=
output=()

# DCM_EMULATOR runs what was built for another machine.
dcm() {
    ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$tool" "$@"
}

fail() {
    printf '%s:%s: %s\n' "$document" "$line" "$1"
    [ "${#output[@]}" -eq 0 ] || printf '    %s\n' "${output[@]}"
    exit 1
}

# --- Blocks that are run ---------------------------------------------------------------------------------------------

# looks_like LINE PATTERN
looks_like() {
    local pattern=${2//\\/\\\\}
    pattern=${pattern//\*/\\*}
    pattern=${pattern//\?/\\?}
    pattern=${pattern//\[/\\[}
    # shellcheck disable=SC2053 # a pattern
    [[ $1 == ${pattern//.../*} ]]
}

# run COMMAND: sets `output`, which expect_line consumes.
run() {
    local text
    if [ "$1" = "echo \$?" ]; then
        text=$status
        status=0
    else
        expect_status
        command=$1
        status=0
        eval "$1" >"$folder/.output" 2>&1 </dev/null || status=$?
        text=$(tr -d '\r' <"$folder/.output")
    fi
    output=()
    [ -z "$text" ] || mapfile -t output <<<"$text"
    isSkipping=false
}

# A wrong command line must not be hidden by "...": where a document shows one, it also shows "echo $?".
expect_status() {
    [ "$status" -lt 64 ] || fail "exit status $status: $command"
}

# expect_line PATTERN: the next line of the output, or, after "...", one of the following ones.
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

# Blocks in Markdown, from standard input.
check_blocks() {
    local text block='' isSkipping=true
    local commandLine='^ *(\$ )?(\./|build/release/)?dcm (-|[a-z-]+( |$))'
    while IFS= read -r text; do
        line=$((line + 1))
        case $block,$text in
        console,'```') expect_end && block= ;;
        *,'```') block= ;;
        ,'```console') block=console isSkipping=true ;;
        ,'```xml '*) block="file ${text#* }" && mkdir -p "$(dirname "${text#* }")" && : >"${text#* }" ;;
        ,'```'*) block=other ;;
        console,'$ '*) expect_end && run "${text#* }" ;;
        console,*) expect_line "$text" ;;
        'file '*) printf '%s\n' "$text" >>"${block#* }" ;;
        other,* | ,'    '* | ,'$ '*)
            [[ ! $text =~ $commandLine ]] || fail "not in a \`\`\`console block, so that no test runs it: $text"
            ;;
        *) ;;
        esac
    done
    expect_status
}

# --- Code in the text ------------------------------------------------------------------------------------------------

# help_of [COMMAND]
help_of() {
    dcm "$@" --help 2>/dev/null
}

check_code() {
    local code word name help commands
    commands=$(help_of | sed -nE 's/^  ([a-z][a-z-]*)  +[A-Z].*/\1/p')
    while read -r code; do
        name=${code%% *}
        if [[ $name =~ ^[a-z][a-z-]*$ ]]; then
            grep -qx -- "$name" <<<"$commands" || fail "no such command: dcm $code"
        else
            name=
        fi
        help=$(help_of && help_of ${name:+"$name"})
        for word in $code; do
            [[ $word =~ ^--?[A-Za-z] ]] || continue
            word=${word%%=*}
            grep -qE -- "(^|[ ,])${word//[^A-Za-z-]/}([ ,:]|$)" <<<"$help" || fail "no such option: dcm $code"
        done
    done < <(grep -oE "\`dcm [^\`]*\`" "$document" | tr -d '`' | sed 's/^dcm //' | sort -u)
}

check_dev() {
    local verb verbs
    verbs=$("$source/dev" help | sed -nE 's/^([a-z]+) .*/\1/p')
    while read -r verb; do
        grep -qx -- "$verb" <<<"$verbs" || fail "no such command: ./dev $verb"
    done < <(grep -oE '(^|[^/A-Za-z])\./dev [a-z]+' "$document" | sed 's/.*\.\/dev //' | sort -u)
}

case $document in
*.md) check_blocks <"$document" ;;
*) check_blocks < <(awk -f "$here/man_blocks.awk" "$document") ;;
esac
check_code
check_dev
