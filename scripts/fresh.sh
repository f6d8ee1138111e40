# shellcheck shell=bash
# help: fresh             follow the README on a bare Debian 12 in a folder: build, test, install and link (as root)

source scripts/lib/system.sh
source scripts/lib/tree.sh

fresh_folder=build/fresh

# A copy of the bare system that nothing has touched yet, and of the tree.
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

# The commands that a section of the README shows, as root, who needs no sudo.
readme_commands() {
    local commands
    commands=$(awk -v heading="## $1" '$0 == heading { inside = 1; next } /^## / { inside = 0 } inside' README.md |
        sed -nE 's/^    (sudo )?((cmake|cc|c\+\+|ldconfig) .*|ldconfig)$/\2/p')
    [ -n "$commands" ] || fail "the README shows no commands under '$1'"
    printf '%s\n' "$commands"
}

# Each command makes a program, which is run; a folder is where it finds a shared library that is not installed.
fresh_runs() {
    sed "s,\$,\n${1:+LD_LIBRARY_PATH=$1 }./program examples/device.xml,"
}

verb_fresh() {
    local programs
    system_make bookworm "$fresh_folder/base"
    fresh_machine
    programs='cp tests/client/frame_client.c program.c; cp tests/install/cxx/card_client.cpp program.cpp'

    say 'Following the README'
    on_fresh './dev demo' './dev demo'
    on_fresh './dev test' './dev test'
    on_fresh 'linking from the tree' "$programs
        $(readme_commands 'Asking from a program' | fresh_runs build/release)"
    on_fresh 'installing' "$(readme_commands Installing | grep -v '^cc ')"
    on_fresh 'linking what is installed' "$(readme_commands Installing | grep '^cc ' | fresh_runs)
        dcm frame 1 --file /usr/local/share/doc/dcm/examples/device.xml
        cmake -S tests/install/cxx -B /tmp/client -G Ninja -DDCM_EXAMPLE=/root/dcm/examples/device.xml
        cmake --build /tmp/client
        ctest --test-dir /tmp/client --output-on-failure"
    rm -rf "$fresh_folder/machine" "$fresh_folder/tree"
}
