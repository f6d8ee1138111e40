# shellcheck shell=bash
# Downloads Debian packages without changing the system: apt uses separate lists in build/apt, also for another architecture
# or for sources. It does not need root, adds no architecture and waits for no lock.

# The files with the Debian archives of the system; other archives may not have the architecture or sources.
debian_sources() {
    local files=()
    # shellcheck disable=SC2016  # fields of apt
    mapfile -t files < <(
        apt-get indextargets --format '$(SOURCESENTRY)' 'Origin: Debian' | sed 's/:[0-9]*$//' | sort -u)
    [ "${#files[@]}" -gt 0 ] || mapfile -t files < <(
        find /etc/apt/sources.list /etc/apt/sources.list.d \( -name '*.list' -o -name '*.sources' \) 2>/dev/null)
    [ "${#files[@]}" -gt 0 ] || fail 'apt has no Debian archive'
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
    command -v apt-get >/dev/null || fail 'this needs a system with apt'
    rm -rf "$folder"
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" "$folder/sources"
    : >"$folder/status"
    printf '%s\n' "$architecture" >"$folder/architecture"
    while read -r file; do
        sed -E -e "s/^(Types:).*/\1 $type/" -e "s/^deb(-src)?([[:space:]])/$type\2/" \
            -e '/^Architectures:/d' -e 's/arch=[^] ]*//' "$file" >"$folder/sources/${file##*/}"
    done < <(debian_sources)
    # A mirror may be in the middle of an update: apt drops a list that fails its check. A missing package fails later.
    quietly private_apt "$name" update || say "Going on without the lists that apt could not fetch"
}
