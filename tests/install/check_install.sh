#!/usr/bin/env bash
# Installs a copy and uses it as its users do. Usage: check_install.sh BUILD_FOLDER SOURCE_FOLDER CASE
# CC, CXX, CMAKE_GENERATOR and CMAKE_TOOLCHAIN_FILE are those of the build.
set -euo pipefail

build=$1
source=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# The copy is moved to this folder after its installation.
copy=$folder/moved/dcm

fail() {
    printf 'expected: %s\n' "$*"
    exit 1
}

# Shows the output of a command only when it fails.
quietly() {
    "$@" >"$folder/log" 2>&1 || {
        cat "$folder/log"
        fail "$* succeeds"
    }
}

configure() {
    quietly cmake ${CMAKE_TOOLCHAIN_FILE:+"-DCMAKE_TOOLCHAIN_FILE=$CMAKE_TOOLCHAIN_FILE"} "$@"
}

install_and_move() {
    quietly cmake --install "$build" --prefix "$folder/installed" "$@"
    mkdir -p "${copy%/*}"
    mv "$folder/installed" "$copy"
}

# The folder of the copy that holds a file or folder of that name.
folder_of() {
    local found
    found=$(find "$copy" -name "$1")
    [ -n "$found" ] || fail "$1 is installed"
    dirname "$found"
}

# Sets flags to the answer of pkg-config for the copy, and libraries to the folder of its libraries.
pkg_config_of_the_copy() {
    PKG_CONFIG_PATH=$(folder_of dcm.pc)
    export PKG_CONFIG_PATH
    libraries=$(folder_of dcm.pc)/..
    read -ra flags <<<"$(pkg-config "$@" dcm)"
}

# The libraries that a program loads when it starts.
needs() {
    readelf --wide --dynamic "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p'
}

# client c|cxx [CMAKE-ARGUMENT...]: configures, builds and runs the clients in that language with the copy.
client() {
    # A toolchain file may restrict CMake's search to its sysroot: name the folder itself.
    configure -S "$source/tests/install/$1" -B "$folder/$1" "-Ddcm_DIR=$(folder_of dcm-config.cmake)" \
        "-DDCM_EXAMPLE=$source/examples/device.xml" "${@:2}"
    quietly cmake --build "$folder/$1"
    (cd "$folder/$1" && quietly ctest --output-on-failure)
}

find_package_serves_programs_in_c() {
    install_and_move
    # CMake links C++ objects with the C++ compiler, if there is one, and its runtime. Here the C++ compiler cannot link.
    client c -DDCM_FURTHER_LANGUAGES=CXX -DCMAKE_CXX_LINK_EXECUTABLE=not-this-way
    ! needs "$folder/c/client_dcm_static" | grep -E 'dcm|stdc\+\+' ||
        fail 'a program with the static library loads neither libdcm.so nor a C++ runtime'
    needs "$folder/c/client_dcm" | grep -qx 'libdcm\.so\.[0-9]*' || fail 'dcm::dcm is the shared library'
}

find_package_serves_programs_in_cxx() {
    install_and_move
    client cxx
    needs "$folder/cxx/client_dcm_shared" | grep -qx 'libdcm\.so\.[0-9]*' || fail 'the program needs libdcm.so'
}

find_package_names_a_missing_library() {
    install_and_move
    find "$copy" -name 'dcm-static-targets*' -delete
    ! cmake ${CMAKE_TOOLCHAIN_FILE:+"-DCMAKE_TOOLCHAIN_FILE=$CMAKE_TOOLCHAIN_FILE"} -S "$source/tests/install/c" \
        -B "$folder/c" "-Ddcm_DIR=$(folder_of dcm-config.cmake)" >"$folder/log" 2>&1 ||
        fail 'a program that requires the static library cannot be configured without it'
    grep -q 'There is no static library of dcm' "$folder/log" || fail 'the static library is named as missing'
}

pkg_config_serves_programs_in_c_and_cxx() {
    local flags libraries
    install_and_move
    pkg_config_of_the_copy --cflags --libs
    quietly "$CC" -std=c11 "$source/tests/client/frame_client.c" "${flags[@]}" "-Wl,-rpath,$libraries" -o "$folder/in-c"
    quietly "$folder/in-c"
    quietly "$CXX" -std=c++17 "$source/examples/client/card_ports.cpp" "${flags[@]}" "-Wl,-rpath,$libraries" \
        -o "$folder/in-cxx"
    quietly "$folder/in-cxx" "$source/examples/device.xml" 0x0301
    [[ " ${flags[*]} " != *' -lxml2 '* ]] || fail 'a program that links the shared library does not link libxml2'
}

pkg_config_links_the_static_library() {
    local flags libraries
    install_and_move
    find "$copy" -name 'libdcm.so*' -delete
    pkg_config_of_the_copy --static --libs
    [[ " ${flags[*]} " == *' -ldcm '*'-lxml2 '* ]] || fail 'a fully static program links both libraries in this order'
    # The static libraries that libxml2 depends on are rarely installed: link libxml2 itself as a shared library.
    read -ra flags <<<"$(pkg-config --cflags --libs dcm libxml-2.0)"
    quietly "$CC" -std=c11 "$source/tests/client/frame_client.c" "${flags[@]}" -o "$folder/in-c"
    quietly "$folder/in-c"
}

# An image is installed below its root folder, with the prefix of the build.
destdir_puts_all_below_the_root() {
    local prefix file
    prefix=$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' "$build/CMakeCache.txt")
    DESTDIR=$folder/image quietly cmake --install "$build"
    copy=$folder/image
    for file in dcm.h libdcm.a libdcm.so "libdcm.so.*" dcm.pc dcm-config.cmake device.xml dcm-description.5 \
        dcm-description.rnc dcm-description.rng _dcm dcm.fish; do
        [ -n "$(find "$folder/image$prefix" -name "$file")" ] || fail "DESTDIR has $file"
    done
    ! grep -rlI -F "$folder" "$folder/image" || fail 'no installed text names the image folder'
}

# Packages consist of the components: together they contain every installed file.
components_make_up_the_whole() {
    local component
    quietly cmake --install "$build" --prefix "$folder/whole"
    for component in runtime development tool; do
        quietly cmake --install "$build" --prefix "$folder/parts" --component "$component"
        [ "$component" != runtime ] || [ -z "$(find "$folder/parts" ! -type d ! -name 'libdcm.so.*')" ] ||
            fail 'the component runtime consists of the shared library'
    done
    diff -r "$folder/whole" "$folder/parts" || fail 'each installed file belongs to one component'
}

# Only debug information may contain the names of the source and build folders.
nothing_installed_names_the_build() {
    install_and_move --strip
    ! grep -rl -F -e "$source" -e "$build" "$copy" --exclude=libdcm.a || fail 'no installed file names the folder of the sources'
}

findings_name_the_installed_page_of_their_rule() {
    local page
    install_and_move
    echo '<device><card typeid="010"/></device>' >"$folder/octal.xml"
    "$copy/bin/dcm" check --format sarif "$folder/octal.xml" >"$folder/sarif" || true
    page=$(sed -nE 's|.*"helpUri": ?"file://([^"]*)".*|\1|p' "$folder/sarif")
    grep -qs '^# octal-number: ' "$page" || fail "the page is where SARIF says: '$page'"
}

# builds_alone CMAKE-ARGUMENT...: builds without the tool and without optimisation, where only libxml2 can be found.
builds_alone() {
    configure -S "$source" -B "$folder/build" -DCMAKE_BUILD_TYPE=Debug -DDCM_BUILD_TOOL=OFF -DDCM_BUILD_TESTS=OFF \
        -DCMAKE_DISABLE_FIND_PACKAGE_{CLI11,GTest,benchmark,nlohmann_json,Doxygen}=ON "$@"
    quietly cmake --build "$folder/build" --parallel 2
    build=$folder/build
    install_and_move
    [ -z "$(find "$copy" -path '*/bin/*' -o -path '*/man1/*' -o -name '*dcm.fish' -o -name _dcm -o -path '*/bash-completion/*')" ] ||
        fail 'no part of the tool is installed'
}

a_build_of_the_static_library_alone_serves_programs() {
    builds_alone -DDCM_BUILD_SHARED=OFF
    [ -z "$(find "$copy" -name 'libdcm.so*')" ] || fail 'no shared library is installed'
    client c
    ! needs "$folder/c/client_dcm" | grep libdcm || fail 'dcm::dcm is the static library'
    if [ -z "${CMAKE_TOOLCHAIN_FILE-}" ]; then
        local flags libraries
        pkg_config_of_the_copy --cflags --libs
        quietly "$CC" -std=c11 "$source/tests/client/frame_client.c" "${flags[@]}" -o "$folder/in-c"
        quietly "$folder/in-c"
    fi
}

a_build_of_the_shared_library_alone_serves_programs() {
    builds_alone -DDCM_BUILD_STATIC=OFF
    [ -z "$(find "$copy" -name 'libdcm.a')" ] || fail 'no static library is installed'
    client cxx
}

# As check_copy.sh describes; packages are checked in the same way.
documents_name_installed_files_and_examples_work() {
    DESTDIR=$folder/image quietly cmake --install "$build" --prefix /usr
    "$source/tests/install/check_copy.sh" "$folder/image"
}

"$3"
