# shellcheck shell=bash
# Bare Debian systems in folders. Creating and using them requires root.

# system_make SUITE FOLDER: creates a system from the archive of this machine, unless it exists.
system_make() {
    local suite=$1 folder=$2 archive
    [ ! -f "$folder.complete" ] || return 0
    [ "$(id -u)" -eq 0 ] || fail 'this needs root, to create a system in a folder'
    command -v apt-get >/dev/null || fail 'this needs a system with apt'
    need debootstrap
    # shellcheck disable=SC2016  # fields of apt
    archive=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Origin: Debian' 'Label: Debian' \
        'Created-By: Packages' | sed -nE '/^[^ ]+-/!{s/^[^ ]+ //p;q}')
    [ -n "$archive" ] || fail 'apt has no Debian archive'
    say "Creating a bare Debian ($suite)"
    rm -rf "$folder"
    mkdir -p "$folder"
    # In a separate namespace, which removes its mounts when it ends.
    quietly unshare --mount --propagation private -- debootstrap --variant=minbase "$suite" "$folder" "$archive" ||
        fail 'debootstrap failed'
    apt-config dump Acquire::http::Proxy >"$folder/etc/apt/apt.conf.d/proxy"
    cp /etc/resolv.conf /etc/hosts "$folder/etc/"
    touch "$folder.complete"
}

# system_run FOLDER TREE BUILD COMMANDS: runs commands in separate namespaces, in the tree, which is mounted as /root/dcm with
# BUILD as its build folder. Mounts and processes end with it in any case.
system_run() {
    mkdir -p "$1/root/dcm" "$2/build" "$3"
    # shellcheck disable=SC2016  # expanded by the inner shell
    unshare --mount --pid --fork --kill-child --propagation private -- bash -euc '
        mount -t proc proc "$1/proc"
        mount --rbind /dev "$1/dev"
        mount --bind "$2" "$1/root/dcm"
        mount --bind "$3" "$1/root/dcm/build"
        exec chroot "$1" /usr/bin/env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            ${http_proxy:+"http_proxy=$http_proxy"} bash -euc "cd /root/dcm; $4"' \
        system_run "$1" "$2" "$3" "$4" </dev/null
}
