# shellcheck shell=bash
# help: fresh             run what README.md and docs/install.md show and install the packages on a bare Debian 12 (as root)

source scripts/lib/system.sh
source scripts/lib/tree.sh

fresh_folder=build/fresh

# Copies the bare system and the tree.
fresh_machine() {
    rm -rf "$fresh_folder/machine"
    cp --archive --reflink=auto "$fresh_folder/base" "$fresh_folder/machine"
    copy_tree "$fresh_folder/tree"
}

# on_fresh WHAT COMMANDS
on_fresh() {
    local what=$1 folder=$root/$fresh_folder start=$SECONDS log=$fresh_folder/log status=0
    system_run "$folder/machine" "$folder/tree" "$folder/tree/build" "set -x; $2" >"$log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        cat "$log" >&2
        fail "$what: status $status"
    fi
    echo "$what: passed after $((SECONDS - start)) s"
}

# shown_commands FILE HEADING: the commands of a section, without sudo, since they run as root.
shown_commands() {
    local commands
    commands=$(awk -v heading="## $2" '$0 == heading { inside = 1; next } /^## / { inside = 0 } inside' "$1" |
        sed -nE 's/^(sudo )?((cmake|cc|c\+\+|ldconfig) .*|ldconfig( .*)?)$/\2/p')
    [ -n "$commands" ] || fail "$1 shows no commands under '$2'"
    printf '%s\n' "$commands"
}

# fresh_runs [FOLDER]: runs the program after each command that builds it; FOLDER has the shared library, if it is not
# installed.
fresh_runs() {
    sed "s,\$,\n${1:+LD_LIBRARY_PATH=$1 }./program examples/device.xml 0x0301,"
}

verb_fresh() {
    local programs
    system_make bookworm "$fresh_folder/base"
    fresh_machine
    programs='cp examples/client/card_ports.c program.c; cp examples/client/card_ports.cpp program.cpp'

    say 'Running the commands of the documents'
    on_fresh './dev demo' './dev demo'
    on_fresh './dev test' './dev test'
    on_fresh 'linking from the tree' "$programs
        $(shown_commands docs/install.md 'Linking from the source tree' | fresh_runs build/release)"
    on_fresh 'installing as in the README' "$(shown_commands README.md Installing)"
    on_fresh 'installing as in docs/install.md' "$(shown_commands docs/install.md 'Building and installing')"
    on_fresh 'linking an installed library' "$(shown_commands README.md 'The library' | fresh_runs)
        $(shown_commands docs/install.md 'Linking an installed library' | fresh_runs)
        dcm frame 1 --file /usr/local/share/doc/dcm/examples/device.xml
        cmake -S tests/install/cxx -B /tmp/client -G Ninja -DDCM_EXAMPLE=/root/dcm/examples/device.xml
        cmake --build /tmp/client
        ctest --test-dir /tmp/client --output-on-failure"

    say 'Installing the packages'
    on_fresh './dev package --quick' './dev package --quick'
    mv "$fresh_folder/tree/build/package" "$fresh_folder/packages"
    fresh_machine
    mv "$fresh_folder/packages" "$fresh_folder/tree/packages"
    on_fresh 'using the packages' 'apt-get -q update
        apt-get -qy install --no-install-recommends ./packages/*.deb gcc g++ make cmake pkg-config gzip
        tests/install/check_copy.sh /
        dcm check /usr/share/doc/dcm/examples/device.xml'
    rm -rf "$fresh_folder/machine" "$fresh_folder/tree"
}
