# shellcheck shell=bash
# help: musl              link the library statically with musl and compare its reports with those of the normal build

source scripts/lib/apt.sh

# Builds libxml2 with only its tree parser and threads, from the sources of the machine's version if they are available.
musl_libxml2() {
    local prefix=$root/build/musl/libxml2 version sources=build/musl/source source options
    [ ! -f "$prefix/lib/libxml2.a" ] || return 0
    say 'Downloading the sources of libxml2'
    private_apt_update source "$(dpkg --print-architecture)" deb-src
    rm -rf "$sources"
    mkdir -p "$sources"
    version=$(dpkg-query --show --showformat='${source:Version}' libxml2)
    (cd "$sources" && { private_apt source source "libxml2=$version" >/dev/null 2>&1 ||
        quietly private_apt source source libxml2; }) || fail 'cannot download the sources of libxml2'
    source=$(echo "$sources"/*/)
    say "Building $(basename "$source") with musl"
    mapfile -t options < <(sed -nE 's/^ *option\((LIBXML2_WITH_[A-Z0-9_]+) .*/-D\1=OFF/p' "$source/CMakeLists.txt")
    musl_configure "$source" build/musl/libxml2-build "${options[@]}" -DBUILD_SHARED_LIBS=OFF \
        -DLIBXML2_WITH_TREE=ON -DLIBXML2_WITH_SAX1=ON -DLIBXML2_WITH_THREADS=ON \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib
    quietly cmake --build build/musl/libxml2-build --parallel "$jobs" --target install ||
        fail 'libxml2 does not build with musl'
}

# musl_configure SOURCE FOLDER [CMAKE-ARGUMENT...]
musl_configure() {
    local source=$1 folder=$2
    shift 2
    quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS cmake -S "$source" -B "$folder" -G Ninja \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-musl.cmake" "$@" ||
        fail "cannot configure $folder"
}

verb_musl() {
    need g++ musl-tools cmake ninja-build pkg-config libxml2-dev dpkg-dev
    local build program size
    musl_libxml2
    musl_configure tests/musl build/musl/musl -DDCM_STATIC=ON \
        -DLIBXML2_LIBRARY="$root/build/musl/libxml2/lib/libxml2.a" \
        -DLIBXML2_INCLUDE_DIR="$root/build/musl/libxml2/include/libxml2"
    quietly cmake -S tests/musl -B build/musl/normal -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo ||
        fail 'cannot configure build/musl/normal'
    for build in normal musl; do
        say "Building ($build)"
        quietly cmake --build "build/musl/$build" --parallel "$jobs" || fail 'the build failed'
    done

    say 'Comparing the reports'
    program=build/musl/musl/dcm_reports
    ! readelf --wide --program-headers --dynamic "$program" | grep -E 'INTERP|NEEDED' ||
        fail "$program is not linked statically"
    for build in normal musl; do
        # libxml2 itself also prints an error about a file that is not well-formed.
        "build/musl/$build/dcm_reports" examples >"build/musl/$build.txt" 2>"build/musl/$build-errors.txt" ||
            fail "build/musl/$build/dcm_reports failed, see build/musl/$build-errors.txt"
    done
    diff --text build/musl/normal.txt build/musl/musl.txt || fail 'the reports differ'
    strip -o "$program-stripped" "$program"
    size=$(stat --format %s "$program-stripped")
    echo "$(grep -c '^####' build/musl/musl.txt) queries, $(wc -c <build/musl/musl.txt) bytes: the same"
    echo "statically linked program: $size bytes"
}
