# shellcheck shell=bash
# help: cross ARCH        build for s390x (64 bits, big-endian) or armhf (32 bits) and run all tests in an emulator

source scripts/lib/apt.sh

# What the target brings besides the cross compiler: unpacked into a folder, never installed.
cross_sysroot() {
    local architecture=$1 sysroot=build/sysroot-$1 debs package packages
    [ ! -f "$sysroot/complete" ] || return 0
    say "Downloading libraries for $architecture"
    private_apt_update "$architecture" "$architecture" deb
    # libxml2 with all that it needs at run time, what its headers include, and the tool's header-only libraries.
    packages=$(private_apt "$architecture" --simulate --no-install-recommends install libxml2 |
        sed -n 's/^Inst \([^ ]*\) .*/\1/p') || fail "apt finds no libxml2 for $architecture"
    debs=$root/build/apt/$architecture/debs
    mkdir -p "$debs"
    # shellcheck disable=SC2086  # a list of names
    (cd "$debs" && quietly private_apt "$architecture" download $packages libxml2-dev libicu-dev libcli11-dev nlohmann-json3-dev) ||
        fail "cannot download the libraries for $architecture"
    rm -rf "$sysroot"
    mkdir -p "$sysroot"
    for package in "$debs"/*.deb; do
        dpkg-deb --extract "$package" "$sysroot" || fail "cannot unpack $package"
    done
    touch "$sysroot/complete"
}

# cross_configure ARCHITECTURE SOURCE FOLDER [CMAKE-ARGUMENT...]
cross_configure() {
    local architecture=$1 source=$2 folder=$3
    shift 3
    # CMake is told its compiler by the toolchain file alone.
    quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS cmake -S "$source" -B "$folder" -G Ninja \
        -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-$architecture.cmake" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" ||
        fail "cannot configure $folder"
}

cross_googletest() {
    local architecture=$1 folder=build/googletest-$1 sysroot=build/sysroot-$1
    [ ! -f "$sysroot/complete-with-googletest" ] || return 0
    say "Building GoogleTest ($architecture)"
    cross_configure "$architecture" /usr/src/googletest "$folder" -DCMAKE_INSTALL_PREFIX="$root/$sysroot/usr"
    quietly cmake --build "$folder" --parallel "$jobs" --target install || fail 'GoogleTest does not build'
    touch "$sysroot/complete-with-googletest"
}

# Of GoogleTest's programs ctest knows each test by itself, and to start the emulator for each would take minutes: they
# run whole. What else ctest knows, it runs.
cross_tests() {
    local folder=build/cross-$1 listing commands command others log status=0
    say "Testing ($1)"
    listing=$(ctest --test-dir "$folder" --show-only --verbose) || fail "ctest finds no tests in $folder"
    commands=$(sed -nE 's/^([0-9]+): Test command: /\1 /p' <<<"$listing")
    if ! grep -q -- '"--gtest_filter=' <<<"$commands" ||
        [ "$(wc -l <<<"$commands")" -ne "$(grep -cE '^ +Test +#[0-9]+: ' <<<"$listing")" ]; then
        printf '%s\n' "$listing" >&2
        fail 'ctest does not know the command of each test'
    fi

    # xargs takes the quotes off; the command begins with the emulator.
    log=$folder/test.log
    while read -r command; do
        if xargs env <<<"$command --gtest_brief=1" >"$log" 2>&1; then
            grep -E '^\[(=====|  SKIPPED )' "$log"
        else
            cat "$log" >&2
            status=1
        fi
    done < <(sed -nE 's/^[0-9]+ (.*) "--gtest_filter=.*/\1/p' <<<"$commands" | sort -u)
    others=$(sed -E '/"--gtest_filter=/d; s/ .*//' <<<"$commands" | paste -sd,)
    if [ -n "$others" ]; then
        quietly ctest --test-dir "$folder" --output-on-failure --timeout 600 --parallel "$jobs" -I "0,0,0,$others" ||
            status=1
        [ "$status" -ne 0 ] || echo "$(tr , '\n' <<<"$others" | wc -l) other tests passed."
    fi
    return "$status"
}

verb_cross() {
    local architecture=${1-} compiler emulator
    case $architecture in
    s390x) compiler=g++-s390x-linux-gnu emulator=qemu-s390x ;;
    armhf) compiler=g++-arm-linux-gnueabihf emulator=qemu-arm ;;
    *) fail 'cross needs an architecture: s390x or armhf' ;;
    esac
    need "$compiler" qemu-user googletest cmake ninja-build pkg-config
    cross_sysroot "$architecture"
    cross_googletest "$architecture"
    cross_configure "$architecture" . "build/cross-$architecture"
    say "Building ($architecture)"
    quietly cmake --build "build/cross-$architecture" --parallel "$jobs" || fail 'the build failed'
    # ctest gets the emulator from the toolchain file. Scripts among the tests put this before what they start.
    DCM_EMULATOR=$emulator QEMU_LD_PREFIX=$root/build/sysroot-$architecture cross_tests "$architecture"
}
