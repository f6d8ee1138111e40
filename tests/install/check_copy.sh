#!/usr/bin/env bash
# Checks an installed copy: the files that its documents name exist, and the example programs can be built and run.
# Usage: check_copy.sh ROOT, the folder that has the copy's /usr; "/" for the machine itself.
set -euo pipefail

root=$(realpath "$1")
root=${root%/}
documents=$root/usr/share/doc/dcm
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
    printf 'check_copy: %s\n' "$*" >&2
    exit 1
}

# --- Named files exist -----------------------------------------------------------------------------------------------

# text_of PAGE: without the escapes of manual pages.
text_of() {
    case $1 in
    *.gz) gzip --decompress --stdout "$1" | sed 's/\\-/-/g; s/\\&//g' ;;
    */man/*) sed 's/\\-/-/g; s/\\&//g' "$1" ;;
    *) cat "$1" ;;
    esac
}

# names_in PAGE: one name for each line: "link PATH", "absolute PATH" or "relative PATH".
names_in() {
    local text suffix='(md|xml|json|rnc|rng|c|cpp)'
    text=$(text_of "$1")
    # The target of a Markdown link, without a heading in the page.
    grep -oE '\]\([^) #:]+(#[^) ]*)?\)' <<<"$text" | sed -E 's/^\]\(//; s/(#.*)?\)$//; s/^/link /' || true
    grep -oE '/usr/(local/)?share/[A-Za-z0-9_./*-]*[A-Za-z0-9_/*-]' <<<"$text" | sed 's/^/absolute /' || true
    # CONTRIBUTING.md describes files to be added to the source tree.
    [[ $1 != */CONTRIBUTING.md ]] || return 0
    # A page, example or schema of the source tree.
    grep -oE "(^|[^A-Za-z0-9_./-])(docs|examples|schema)/[A-Za-z0-9_./*-]*\\.$suffix\\b" <<<"$text" |
        sed -E 's/^[^des]*/relative /' || true
    # A page of the top folder.
    grep -oE '(^|[^A-Za-z0-9_./-])[A-Z]+\.md\b' <<<"$text" | sed -E 's/^[^A-Z]*/relative /' || true
}

# exists PAGE KIND PATH
exists() {
    case $2 in
    link) compgen -G "$(dirname "$1")/$3" ;;
    absolute) compgen -G "$root$3" ;;
    relative) compgen -G "$documents/$3" ;;
    esac >/dev/null
}

named_files_exist() {
    local page kind path pages=0 names=0 missing=0
    while IFS= read -r page; do
        pages=$((pages + 1))
        while read -r kind path; do
            names=$((names + 1))
            exists "$page" "$kind" "$path" && continue
            echo "${page#"$root"} names $path, which is not installed"
            missing=$((missing + 1))
        done < <(names_in "$page" | sort -u)
    done < <(find "$documents" "$root/usr/share/man" "$root/usr/include/dcm.h" -type f \
        \( -path '*/doc/dcm/*' -o -name 'dcm*' \) | sort)
    [ "$missing" -eq 0 ] || fail "$missing of $names names in $pages pages lead nowhere"
    if [ "$pages" -lt 15 ] || [ "$names" -lt 40 ]; then
        fail "only $names names in $pages pages"
    fi
    echo "named files exist: $names names in $pages pages"
}

# The documents that the packages promise.
documents_are_there() {
    local name
    for name in README.md CHANGELOG.md docs/tutorial.md docs/format.md docs/install.md 'docs/checks*' \
        examples/device.xml examples/client/{card_ports.c,card_ports.cpp,Makefile,CMakeLists.txt}; do
        compgen -G "$documents/$name" >/dev/null || fail "$name is not in ${documents#"$root"}"
    done
    for name in dcm-description.rng dcm-description.rnc check.schema.json export.schema.json list.schema.json; do
        [ -f "$root/usr/share/dcm/schema/$name" ] || fail "/usr/share/dcm/schema does not have $name"
    done
}

# --- The examples ----------------------------------------------------------------------------------------------------

quietly() {
    "$@" >"$folder/log" 2>&1 || {
        cat "$folder/log" >&2
        fail "failed: $*"
    }
}

# prints_the_expected PROGRAM
prints_the_expected() {
    "$1" "$documents/examples/device.xml" 0x0301 >"$folder/printed" || fail "$1 failed"
    diff "$here/card_ports.txt" "$folder/printed" || fail "$1 prints something else"
}

examples_work() {
    local libraries
    libraries=$(dirname "$(find "$root"/usr/lib* -name 'libdcm.so' | head -1)")
    export PKG_CONFIG_PATH=$libraries/pkgconfig LD_LIBRARY_PATH=$libraries LIBRARY_PATH=$libraries
    # A user copies the examples: the folder of the documents is not writable.
    cp -r "$documents/examples" "$folder/examples"
    quietly make -C "$folder/examples/client" check
    prints_the_expected "$folder/examples/client/card_ports_c"
    prints_the_expected "$folder/examples/client/card_ports_cxx"
    quietly cmake -S "$folder/examples/client" -B "$folder/build" "-Ddcm_DIR=$libraries/cmake/dcm"
    quietly cmake --build "$folder/build"
    quietly ctest --test-dir "$folder/build" --output-on-failure --no-tests=error
    prints_the_expected "$folder/build/card_ports_c"
    prints_the_expected "$folder/build/card_ports_cxx"
    echo 'example programs: built with make and CMake, in C and C++'
}

documents_are_there
named_files_exist
examples_work
