# shellcheck shell=bash
# help: package [--quick] build the Debian packages twice, compare them and check them; --quick: once, without their tests

source scripts/lib/tree.sh

# package_build FOLDER [NAME=VALUE...]: builds the packages from a copy of the tree and leaves them next to it.
package_build() {
    local folder=$1
    shift
    say "Building in $folder"
    copy_tree "$folder"
    (cd "$folder" && quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS -u LDFLAGS "$@" \
        dpkg-buildpackage --no-sign --build=binary) || fail 'the packages do not build'
}

# package_hides_folder NAME FOLDER: the packages in FOLDER do not contain the name of the folder they were built in.
package_hides_folder() {
    local deb contents=$2/unpacked
    rm -rf "$contents"
    mkdir "$contents"
    for deb in "$2"/*.deb; do
        dpkg-deb --raw-extract "$deb" "$contents/${deb##*/}"
    done
    ! grep -rl -F "$1" "$contents" || fail "these files name $1"
    rm -rf "$contents"
}

# package_contents FOLDER: what a machine has after the packages in FOLDER are installed is complete.
package_contents() {
    local deb contents=$root/$1/installed
    say 'Checking the contents of the packages'
    rm -rf "$contents"
    for deb in "$1"/*.deb; do
        dpkg-deb --extract "$deb" "$contents"
    done
    tests/install/check_copy.sh "$contents" || fail 'the packages are not complete'
    rm -rf "$contents"
}

verb_package() {
    [ $# -eq 0 ] || [ "$*" = --quick ] || fail 'usage: ./dev package [--quick]'
    local first=build/package second=build/package-again/in-a-folder-of-another-length deb
    if [ $# -gt 0 ]; then
        need build-essential "${build_packages[@]}" debhelper dpkg-dev
        rm -rf "$first"
        # The build dependencies of the packages' tests need not be installed.
        package_build "$root/$first/source" DEB_BUILD_OPTIONS=nocheck DEB_BUILD_PROFILES=nocheck
        rm -rf "$first/source"
        package_contents "$first"
        (cd "$first" && sha256sum -- *.deb)
        return
    fi
    need build-essential "${build_packages[@]}" "${test_packages[@]}" debhelper dpkg-dev lintian
    rm -rf "$first" build/package-again
    # A compiler cache might return what was compiled in another folder.
    package_build "$root/$first/source" CCACHE_DISABLE=1
    package_build "$root/$second/source" CCACHE_DISABLE=1 LC_ALL=C TZ=Asia/Tokyo DEB_BUILD_OPTIONS=nocheck
    rm -rf "$first/source" "$second/source"

    say 'Comparing both builds'
    for deb in "$first"/*.deb; do
        cmp "$deb" "$second/${deb##*/}" || fail 'two builds differ'
    done
    package_hides_folder "$root/$first/source" "$first"
    package_hides_folder "$root/$second/source" "$second"
    rm -rf build/package-again
    package_contents "$first"

    say 'Running lintian'
    lintian --fail-on error,warning --info --tag-display-limit 0 "$first"/*.changes || fail 'lintian found faults'
    (cd "$first" && sha256sum -- *.deb)
}
