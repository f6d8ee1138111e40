#!/usr/bin/env bash
# Consistency of releases. Usage: check_release.sh SOURCE_FOLDER BUILD_FOLDER VERSION CASE
set -euo pipefail
export LC_ALL=C

source=$1
build=$2
version=$3

fail() {
    printf 'expected: %s\n' "$*"
    exit 1
}

# has_line FILE LINE
has_line() {
    grep -qxF -- "$2" "$1" || fail "${1#"$source"/} has the line '$2'"
}

every_file_has_the_same_version() {
    has_line "$build/dcm.pc" "Version: $version"
    has_line "$build/dcm-config-version.cmake" "set(PACKAGE_VERSION \"$version\")"
    grep '^## ' "$source/CHANGELOG.md" | head -1 | grep -q "^## $version " ||
        fail "the changelog begins with version $version"
    head -1 "$source/debian/changelog" | grep -q "^dcm ($version) " || fail "the packages have version $version"
}

the_packages_are_named_after_the_shared_library() {
    local soname=libdcm.so.${version%%.*} package=libdcm${version%%.*}
    has_line "$source/debian/control" "Package: $package"
    has_line "$source/debian/$package.symbols" "$soname $package #MINVER#"
}

the_packages_list_what_the_library_exports() {
    diff <(sed -nE 's/^ (.*)@Base .*/\1/p' "$source/debian/libdcm${version%%.*}.symbols" | sort) \
        <(sed -E 's/[[:space:]]*#.*//; /^$/d' "$source/tests/abi/exported-symbols.txt" | sort) ||
        fail 'the symbols file lists what the library exports'
}

# "./dev" installs the packages that a build needs, dpkg-buildpackage only checks for them; it always has a compiler.
the_packages_require_the_packages_of_a_build() {
    local package packages
    packages=$(sed -nE 's/^(build|test)_packages=\((.*)\)$/\2/p' "$source/dev" | tr ' ' '\n')
    [ -n "$packages" ] || fail './dev lists the packages that a build needs'
    while read -r package; do
        grep -qE "^ $package( .*)?,$" "$source/debian/control" || fail "the packages are built with $package"
    done <<<"$packages"
}

# In a copy of the tree: a licence is written into each source once, and "./dev help" does not change.
a_licence_is_stamped_with_one_command() {
    local folder file id=LicenseRef-Example stamp
    stamp="SPDX-FileCopyrightText: 2026 Some One"$'\n'"SPDX-License-Identifier: $id"
    folder=$(mktemp -d)
    # shellcheck disable=SC2064  # the folder is this one
    trap "rm -rf '$folder'" EXIT
    tar --create --directory "$source" --exclude=./.git --exclude=./build . | tar --extract --directory "$folder"
    cd "$folder"
    ./dev help >before
    ./dev licence LicenseRef-Other '2025 Some One Else'
    ./dev licence "$id" '2026 Some One'
    ./dev help | diff before - || fail 'the commands are the same'
    while read -r file; do
        [ "$(grep -E '^(//|#) SPDX-' "$file" | cut -d ' ' -f 2-)" = "$stamp" ] || fail "$file is stamped once"
        [ "$(sed -n '1{/^#!/p}' "$file")" = "$(sed -n '1{/^#!/p}' "$source/$file")" ] || fail "$file begins as before"
    done < <(find . -name '*.cpp' -o -name '*.h' -o -name '*.sh' -o -name CMakeLists.txt)
    has_line REUSE.toml "SPDX-License-Identifier = \"$id\""
    has_line debian/copyright "License: $id"
}

"$4"
