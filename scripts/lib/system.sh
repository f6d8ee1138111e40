# shellcheck shell=bash
# Bare Debian systems in folders, which take root to make and to work in.

# system_make SUITE FOLDER: from the archive that this machine uses, unless it is there.
system_make() {
    local suite=$1 folder=$2 archive
    [ ! -f "$folder.complete" ] || return 0
    [ "$(id -u)" -eq 0 ] || fail 'this needs root: it makes a system in a folder and works in there'
    command -v apt-get >/dev/null || fail 'this takes a system with apt'
    need debootstrap
    # shellcheck disable=SC2016  # the fields are apt's
    archive=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Origin: Debian' 'Label: Debian' \
        'Created-By: Packages' | sed -nE '/^[^ ]+-/!{s/^[^ ]+ //p;q}')
    [ -n "$archive" ] || fail 'apt knows no archive of Debian'
    say "Making a bare Debian ($suite)"
    rm -rf "$folder"
    mkdir -p "$folder"
    # In a namespace of its own, which takes the mounts along that it makes.
    quietly unshare --mount --propagation private -- debootstrap --variant=minbase "$suite" "$folder" "$archive" ||
        fail 'debootstrap failed'
    apt-config dump Acquire::http::Proxy >"$folder/etc/apt/apt.conf.d/proxy"
    cp /etc/resolv.conf /etc/hosts "$folder/etc/"
    touch "$folder.complete"
}

# system_run FOLDER TREE BUILD COMMANDS: in namespaces of its own, in the tree, which is seen as /root/dcm and keeps what
# it builds in BUILD. Mounts and processes end with it, however it ends.
system_run() {
    mkdir -p "$1/root/dcm" "$2/build" "$3"
    # shellcheck disable=SC2016  # the variables are the inner shell's
    unshare --mount --pid --fork --kill-child --propagation private -- bash -euc '
        mount -t proc proc "$1/proc"
        mount --rbind /dev "$1/dev"
        mount --bind "$2" "$1/root/dcm"
        mount --bind "$3" "$1/root/dcm/build"
        exec chroot "$1" /usr/bin/env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            ${http_proxy:+"http_proxy=$http_proxy"} bash -euc "cd /root/dcm; $4"' \
        system_run "$1" "$2" "$3" "$4" </dev/null
}
