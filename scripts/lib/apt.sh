# shellcheck shell=bash
# Downloads Debian packages without touching the machine: apt works on lists of its own below build/apt, for another
# architecture or for sources too. It needs no root, adds no architecture and waits for no lock.

# The files in which the machine names its Debian archives; those of others may have no such architecture or sources.
debian_sources() {
    local files=()
    # shellcheck disable=SC2016  # the fields are apt's
    mapfile -t files < <(
        apt-get indextargets --format '$(SOURCESENTRY)' 'Origin: Debian' | sed 's/:[0-9]*$//' | sort -u)
    [ "${#files[@]}" -gt 0 ] || mapfile -t files < <(
        find /etc/apt/sources.list /etc/apt/sources.list.d \( -name '*.list' -o -name '*.sources' \) 2>/dev/null)
    [ "${#files[@]}" -gt 0 ] || fail 'apt knows no Debian archive'
    printf '%s\n' "${files[@]}"
}

# private_apt NAME ARGUMENT...: apt-get on the lists in build/apt/NAME.
private_apt() {
    local folder=$root/build/apt/$1
    shift
    apt-get -q -o "Dir::State=$folder" -o "Dir::State::status=$folder/status" -o "Dir::Cache=$folder/cache" \
        -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$folder/sources" \
        -o "APT::Architecture=$(<"$folder/architecture")" -o APT::Sandbox::User= -o Acquire::Languages=none "$@"
}

# private_apt_update NAME ARCHITECTURE deb|deb-src: fetches the lists for build/apt/NAME.
private_apt_update() {
    local name=$1 architecture=$2 type=$3 folder=build/apt/$1 file
    command -v apt-get >/dev/null || fail 'this takes a system with apt'
    rm -rf "$folder"
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" "$folder/sources"
    : >"$folder/status"
    printf '%s\n' "$architecture" >"$folder/architecture"
    while read -r file; do
        sed -E -e "s/^(Types:).*/\1 $type/" -e "s/^deb(-src)?([[:space:]])/$type\2/" \
            -e '/^Architectures:/d' -e 's/arch=[^] ]*//' "$file" >"$folder/sources/${file##*/}"
    done < <(debian_sources)
    # A mirror may be half updated: apt drops the list that fails its check. What is missed fails when it is asked for.
    quietly private_apt "$name" update || say "Going on without the lists that apt could not fetch"
}
