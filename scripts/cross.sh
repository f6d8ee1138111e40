# shellcheck shell=bash
# help: cross ARCH        build for s390x (64 bits, big-endian) or armhf (32 bits) and run all tests in an emulator

source scripts/lib/apt.sh
source scripts/lib/tests.sh

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
    say "Testing ($architecture)"
    DCM_EMULATOR=$emulator QEMU_LD_PREFIX=$root/build/sysroot-$architecture test_whole "build/cross-$architecture"
}
