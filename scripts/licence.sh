# shellcheck shell=bash
# help: licence ID HOLDER write the licence and the copyright's holder into all files, once they are decided

# licence_stamp FILE COMMENT ID HOLDER: two lines at the head of a file, below what must stand first in a script.
licence_stamp() {
    # A new file in the old one's place: bash reads ./dev from the old one as it goes.
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
    # Neither a quotation mark of TOML's nor a character that sed takes for more than itself.
    [[ $holder =~ ^[^\"\\/\&]+$ ]] || fail "no name of a holder: $holder"

    sed -i -e "s/^SPDX-FileCopyrightText = .*/SPDX-FileCopyrightText = \"$holder\"/" \
        -e "s/^SPDX-License-Identifier = .*/SPDX-License-Identifier = \"$id\"/" REUSE.toml
    sed -i -e "s/^Copyright: .*/Copyright: $holder/" -e "s/^License: .*/License: $id/" debian/copyright
    # The lists are complete before the first file changes: a search that still runs would find new ones.
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
        say "Put the text of the licence into LICENSES/$id.txt, and its own words into debian/copyright"
}
