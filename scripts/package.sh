# shellcheck shell=bash
# help: package           build the Debian packages twice, compare them bit for bit and check them

source scripts/lib/tree.sh

# package_build FOLDER [NAME=VALUE...]: builds the packages from a copy of the tree and leaves them beside it. Without a
# compiler cache, which might hand over what was built in another folder.
package_build() {
    local folder=$1
    shift
    say "Building in $folder"
    copy_tree "$folder"
    (cd "$folder" && quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS -u LDFLAGS CCACHE_DISABLE=1 "$@" \
        dpkg-buildpackage --no-sign --build=binary) || fail 'the packages do not build'
}

# No file of the packages holds the name of the folder in which they were built.
package_hides_folder() {
    local deb contents=$2/unpacked
    rm -rf "$contents"
    mkdir "$contents"
    for deb in "$2"/*.deb; do
        dpkg-deb --raw-extract "$deb" "$contents/${deb##*/}"
    done
    ! grep -rl -F "$1" "$contents" || fail "these files name $1"
}

verb_package() {
    need build-essential "${build_packages[@]}" "${test_packages[@]}" debhelper dpkg-dev lintian
    local first=$root/build/package second=$root/build/package-again/in-a-folder-of-another-length deb
    rm -rf build/package build/package-again
    package_build "$first/source"
    package_build "$second/source" LC_ALL=C TZ=Asia/Tokyo DEB_BUILD_OPTIONS=nocheck
    rm -rf "$first/source" "$second/source"

    say 'Comparing both builds'
    for deb in "$first"/*.deb; do
        cmp "$deb" "$second/${deb##*/}" || fail 'two builds differ'
    done
    package_hides_folder "$first/source" "$first"
    package_hides_folder "$second/source" "$second"
    rm -rf build/package-again "$first/unpacked"

    say 'Checking the packages'
    lintian --fail-on error,warning --info --tag-display-limit 0 "$first"/*.changes || fail 'lintian complains'
    (cd build/package && sha256sum -- *.deb)
}
