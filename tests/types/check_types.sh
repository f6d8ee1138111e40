#!/usr/bin/env bash
# Checks that the compiler rejects rows that would report wrongly or write beyond their field, and accepts correct ones.
# usage: check_types.sh SOURCES COMPILER [OPTION...]
set -euo pipefail

root=$1
shift
compile=("$@" -std=c++17 -Wall -Werror -fsyntax-only "-I$root" "-I$root/include" -x c++ -)
failures=0

fail() {
    printf '%s\n' "$*" >&2
    failures=$((failures + 1))
}

# row CHILD ROW: a table of one row.
row() {
    cat <<CODE
#include "common/decoder.h"
namespace sample {
struct Record { uint8_t number; uint8_t bits[1]; };
struct Rows : dcm::Table {
    static constexpr dcm::$1<Record> children[] = {{"name", $2}};
};
dcm::Result decode(dcm::Node node, Record &record, const dcm::QueryReporter &query)
{
    return dcm::walk<Rows>(node, record, query);
}
}
CODE
}

# report ARGUMENTS: a decoder that reports at once.
report() {
    cat <<CODE
#include "common/report.h"
dcm::Result decode(uint32_t id) { return DCM_REPORT(__func__, $1); }
CODE
}

# words ROWS: a vocabulary.
words() {
    cat <<CODE
#include "common/vocabulary.h"
constexpr dcm::Word words[] = {$1};
DCM_CHECK_WORDS(words);
CODE
}

# compiles CODE
compiles() {
    "${compile[@]}" <<<"$1" >/dev/null 2>"$errors" || fail "is refused: $1
$(cat "$errors")"
}

# is_refused CODE PATTERN: the compiler rejects the code with this message.
is_refused() {
    if "${compile[@]}" <<<"$1" >/dev/null 2>"$errors"; then
        fail "compiles: $1"
    elif ! grep -qE -- "$2" "$errors"; then
        fail "is refused without '$2': $1
$(cat "$errors")"
    fi
}

errors=$(mktemp)
trap 'rm -f "$errors"' EXIT
number='dcm::number<&Record::number>'

compiles "$(row Child "$number")"
compiles "$(row Child "$number, DCM_MESSAGE(\"failed.\")")"
compiles "$(row QueryChild "$number, DCM_MESSAGE(\"failed.\")")"
compiles "$(row QueryChild "$number, DCM_MESSAGE_FILE(\"xmlfile(%s) failed.\")")"
compiles "$(row Child 'dcm::bitList<&Record::bits, 8>')"

# A file name for a reporter without a file, and numbers for rows without numbers.
is_refused "$(row Child "$number, DCM_MESSAGE_FILE(\"xmlfile(%s) failed.\")")" '(no matching|could not convert|cannot convert|invalid conversion|no viable)'
is_refused "$(row Child "$number, DCM_MESSAGE_NUM(\"num(%d) failed.\")")" '(no matching|could not convert|cannot convert|invalid conversion|no viable)'
is_refused "$(row QueryChild "$number, DCM_MESSAGE_FILE_NUM(\"xmlfile(%s) num(%d) failed.\")")" '(no matching|could not convert|cannot convert|invalid conversion|no viable)'
is_refused "$(row QueryChild "$number, DCM_MESSAGE_ID(\"id(%u) failed.\")")" '(no matching|could not convert|cannot convert|invalid conversion|no viable)'
# Texts whose arguments do not match their kind.
is_refused "$(row Child "$number, DCM_MESSAGE(\"num(%d) failed.\")")" '-Werror=format|-Werror,-Wformat'
is_refused "$(row QueryChild "$number, DCM_MESSAGE_FILE(\"xmlfile(%d) failed.\")")" '-Werror=format|-Werror,-Wformat'
compiles "$(report '"id(%u) failed.", id')"
is_refused "$(report '"id(%s) failed.", id')" '-Werror=format|-Werror,-Wformat'
# A list of more numbers than the field has bits.
is_refused "$(row Child 'dcm::bitList<&Record::bits, 9>')" 'static assertion|static_assert'

compiles "$(words '{"one", 1}, {"two", 2}')"
compiles "$(words '{"one", 1}, {"uno", 1, dcm::Direction::reads}')"
# The message contains the word.
is_refused "$(words '{"one", 1}, {"two", 2}, {"one", 3}')" "'o', *'n', *'e'"
is_refused "$(words '{"one", 1}, {"two", 1}')" "'t', *'w', *'o'"

[ "$failures" -eq 0 ] || exit 1
echo 'what is wrong does not compile'
