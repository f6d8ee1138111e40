#!/usr/bin/env bash
# No file in the scope has a phrase that the style of the project rules out. Usage: check_language.sh SOURCE_FOLDER [--self-test]
#
# language_phrases.txt has one extended regular expression on each line, language_scope.txt and language_exempt.txt have one
# file or folder.
set -euo pipefail

source=$(realpath "$1")
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$source"

entries() { sed -E '/^(#|$)/d' "$here/$1"; }

# in_scope: the files in the scope that are not exempt.
in_scope() {
    local entry
    while read -r entry; do
        [ -e "$entry" ] || { echo "language_scope.txt: $entry does not exist" >&2 && exit 1; }
        find "$entry" -type f
    done < <(entries language_scope.txt) | grep -vE "^($(entries language_exempt.txt | paste -sd'|'))(/|$)" | LC_ALL=C sort -u
}

# readable FILE: without the messages of the interface, whose texts are fixed, and what is compared with them.
readable() {
    sed -E 's/(DCM_MESSAGE[A-Z_]*|DCM_REPORT)\(.*//; s/"\[[^"]*//' "$1"
}

# phrases_in FILE...: one line for each phrase that is found.
phrases_in() {
    local file
    for file in "$@"; do
        readable "$file" | grep -niE -f <(entries language_phrases.txt) | sed "s,^,$file:,"
    done || true
}

if [ "${2-}" = --self-test ]; then
    # Each pattern finds its own example, so that none is misspelled.
    count=0
    while IFS=$'\t' read -r pattern example; do
        count=$((count + 1))
        grep -qiE -e "$pattern" <<<"$example" || { echo "'$pattern' does not match '$example'" && exit 1; }
    done < <(paste <(entries language_phrases.txt) <(sed -nE 's/^# as in: //p' "$here/language_phrases.txt"))
    [ "$count" -ge 20 ] || { echo "only $count phrases" && exit 1; }
    entries language_phrases.txt >"$folder/patterns"
    sed -nE 's/^# as in: //p' "$here/language_phrases.txt" >"$folder/examples.txt"
    [ "$(phrases_in "$folder/examples.txt" | wc -l)" -eq "$(wc -l <"$folder/patterns")" ] ||
        { echo 'each phrase needs one example' && exit 1; }
    exit
fi

mapfile -t files < <(in_scope)
[ "${#files[@]}" -ge 20 ] || { echo "only ${#files[@]} files" && exit 1; }
found=$(phrases_in "${files[@]}")
[ -z "$found" ] || { printf '%s\n' "$found" && exit 1; }
echo "language: ${#files[@]} files, no phrase found"
