# shellcheck shell=bash
# help: fresh             follow the README on a bare Debian 12 in a folder: build, test, install and link (as root)

source scripts/lib/apt.sh
source scripts/lib/tree.sh

fresh_folder=build/fresh

# A bare system from the archive that this machine uses, made once.
fresh_base() {
    local base=$fresh_folder/base archive
    [ ! -f "$base.complete" ] || return 0
    # shellcheck disable=SC2016  # the fields are apt's
    archive=$(apt-get indextargets --format '$(REPO_URI) $(CODENAME)' 'Origin: Debian' 'Created-By: Packages' |
        awk '$2 == "bookworm" { print $1; exit }')
    [ -n "$archive" ] || fail 'apt knows no archive of Debian 12'
    say 'Making a bare Debian 12'
    rm -rf "$base"
    mkdir -p "$base"
    # In a namespace of its own, which takes the mounts along that it makes.
    quietly unshare --mount --propagation private -- debootstrap --variant=minbase bookworm "$base" "$archive" ||
        fail 'debootstrap failed'
    rm -f "$base/etc/apt/sources.list"
    while read -r file; do
        cp "$file" "$base/etc/apt/sources.list.d/"
    done < <(debian_sources)
    apt-config dump Acquire::http::Proxy >"$base/etc/apt/apt.conf.d/proxy"
    touch "$base.complete"
}

# A copy of it that nothing has touched yet, with the tree in it.
fresh_machine() {
    local machine=$1
    rm -rf "$machine"
    cp --archive --reflink=auto "$fresh_folder/base" "$machine"
    cp /etc/resolv.conf /etc/hosts "$machine/etc/"
    copy_tree "$machine/root/dcm"
}

# on_fresh WHAT COMMANDS: in namespaces of its own. Its mounts and processes end with it, however it ends.
on_fresh() {
    local what=$1 machine=$root/$fresh_folder/machine start=$SECONDS log=$fresh_folder/log status=0
    # shellcheck disable=SC2016  # the variable is the inner shell's
    unshare --mount --pid --fork --kill-child --propagation private -- bash -euc '
        mount -t proc proc "$1/proc"
        mount --rbind /dev "$1/dev"
        exec chroot "$1" /usr/bin/env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            ${http_proxy:+"http_proxy=$http_proxy"} bash -euxc "cd /root/dcm; $2"' \
        on_fresh "$machine" "$2" >"$log" 2>&1 </dev/null || status=$?
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
    [ "$(id -u)" -eq 0 ] || fail 'fresh needs root: it makes a system in a folder and works in there'
    command -v apt-get >/dev/null || fail 'this takes a system with apt'
    need debootstrap
    local machine=$fresh_folder/machine programs
    fresh_base
    fresh_machine "$machine"
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
    rm -rf "$machine"
}
