# shellcheck shell=bash
# help: licence ID HOLDER write the licence and the copyright holder into all files, once they are decided

# licence_stamp FILE COMMENT ID HOLDER: writes two lines at the top of a file, in scripts after the lines that must be first.
licence_stamp() {
    # Replace the file instead of writing to it: bash is still reading ./dev.
    awk -v comment="$2" -v id="$3" -v holder="$4" '
        function stamp() {
            print comment " SPDX-FileCopyrightText: " holder
            print comment " SPDX-License-Identifier: " id
            done = 1
        }
        index($0, comment " SPDX-") == 1 { next }
        !done && !/^#!|^# shellcheck shell=|^# help: / { stamp() }
        { print }
        END { if (!done) stamp() }' "$1" >"$1.new"
    chmod --reference="$1" "$1.new"
    mv "$1.new" "$1"
}

verb_licence() {
    [ $# -eq 2 ] || fail 'licence needs an SPDX identifier and a holder, as in: ./dev licence MIT "2026 Some One"'
    local id=$1 holder=$2 file
    [[ $id =~ ^[A-Za-z0-9.+-]+$ ]] || fail "no SPDX identifier: $id"
    # No quotation mark of TOML and no special character of sed.
    [[ $holder =~ ^[^\"\\/\&]+$ ]] || fail "no name of a holder: $holder"

    sed -i -e "s/^SPDX-FileCopyrightText = .*/SPDX-FileCopyrightText = \"$holder\"/" \
        -e "s/^SPDX-License-Identifier = .*/SPDX-License-Identifier = \"$id\"/" REUSE.toml
    sed -i -e "s/^Copyright: .*/Copyright: $holder/" -e "s/^License: .*/License: $id/" debian/copyright
    # Complete the lists before the first file changes: a running search would find the new files.
    local in_cxx in_scripts
    mapfile -t in_cxx < <(sources '*.h' '*.c' '*.cpp')
    mapfile -t in_scripts < <(sources CMakeLists.txt '*.cmake'; scripts)
    for file in "${in_cxx[@]}"; do
        licence_stamp "$file" // "$id" "$holder"
    done
    for file in "${in_scripts[@]}"; do
        licence_stamp "$file" '#' "$id" "$holder"
    done
    [ -f "LICENSES/$id.txt" ] ||
        say "Add the text of the licence as LICENSES/$id.txt, and its terms to debian/copyright"
}
