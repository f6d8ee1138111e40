# shellcheck shell=bash
# help: world [--unstable] build and test with GCC 14 and Clang 19 in a bare Debian 13, and the tool with libc++ (as root)

source scripts/lib/system.sh
source scripts/lib/tests.sh

# world_configure NAME COMPILER [CMAKE-ARGUMENT...]: into build/world/NAME. Nothing here reads debug information.
world_configure() {
    local name=$1 compilers
    case $2 in
    gcc) compilers=(-DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++) ;;
    clang) compilers=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++) ;;
    esac
    shift 2
    quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS -u LDFLAGS cmake -S . -B "build/world/$name" -G Ninja \
        "${compilers[@]}" -DCMAKE_CXX_FLAGS_RELWITHDEBINFO='-O2 -DNDEBUG' -DDCM_COUNT_WORK=OFF "$@" ||
        fail "cannot configure build/world/$name"
}

# world_compile NAME TARGET...
world_compile() {
    local name=$1
    shift
    quietly cmake --build "build/world/$name" --parallel "$jobs" --target "$@" || {
        echo "$name: does not build"
        return 1
    }
}

# world_tests COMPILER [STANDARD]: everything as it ships, and all tests.
world_tests() {
    local standard=${2-17}
    say "All with $("$1" --version | head -1), C++$standard, libxml2 $(pkg-config --modversion libxml-2.0)"
    world_configure "$1" "$1" -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_STANDARD=$standard" -DDCM_UNITE=ON
    world_compile "$1" all && test_whole "build/world/$1" '^(Completion|Document|Page)\.'
}

# world_relink COMPILER CELL PROGRAM [OPTION...]: links a test program of the whole build with the library of a cell. The
# tests themselves are compiled without optimisation, so that their objects would be the same in each cell.
world_relink() {
    local folder=build/world/$1 cell=$root/build/world/$2 program=$3 command
    shift 3
    command=$(ninja -C "$folder" -t commands "$program" | tail -n 1)
    [[ $command == *' libdcm.a '* && $command == *" -o tests/$program "* ]] || fail "$program is not linked as expected"
    command=${command// libdcm.a / $cell/libdcm.a }
    (cd "$folder" && quietly bash -c "${command/ -o tests\/$program / $* -o $cell\/$program }") || fail "$program does not link"
}

# world_cell COMPILER NAME STANDARD FLAGS UNITE [TARGET...]: the library, and what else is named, compiles without a warning; the
# library keeps its needs, and gives the tests what they expect.
world_cell() {
    local compiler=$1 cell=$1-$2 standard=$3 flags=$4 unite=$5 status=0 start=$SECONDS
    shift 5
    world_configure "$cell" "$compiler" -DCMAKE_BUILD_TYPE=None "-DCMAKE_CXX_STANDARD=$standard" \
        "-DCMAKE_C_FLAGS=$flags" "-DCMAKE_CXX_FLAGS=$flags" "-DDCM_UNITE=$unite"
    world_compile "$cell" dcm_static dcm_shared "$@" || return 1
    tests/abi/check_symbols.sh "build/world/$cell/libdcm.so" || status=1
    world_relink "$compiler" "$cell" dcm_tests "$flags"
    whole_program "build/world/$cell/dcm_tests" "build/world/$cell/log" || status=1
    echo "$cell, C++$standard: $([ "$status" -eq 0 ] && echo passed || echo FAILED) after $((SECONDS - start)) s"
    return "$status"
}

# world_cells COMPILER: each standard and each option once, not each with each; the whole builds have their own standards.
world_cells() {
    local compiler=$1 status=0
    say "Standards and options ($compiler)"
    world_cell "$compiler" O3 17 -O3 ON || status=1
    if [ "$compiler" = clang ]; then
        # GNU's linker has no plugin for Clang.
        world_cell clang flto 20 '-O2 -flto -fuse-ld=lld -Wno-unused-command-line-argument' ON || status=1
        world_cell clang Os 23 '-Os -D_GLIBCXX_ASSERTIONS' ON dcm_tool || status=1
    else
        # This finds types of one name in several files, unless these are compiled as one.
        world_cell gcc flto 20 '-O2 -flto' OFF dcm_tool || status=1
        world_cell gcc Os 23 -Os ON || status=1
        # This includes -D_GLIBCXX_ASSERTIONS.
        world_cell gcc fhardened 20 '-O2 -fhardened' ON dcm_tool || status=1
    fi
    return "$status"
}

# Library and tool with Clang and libc++, for which there is no GoogleTest package.
world_libcxx() {
    local name=clang-libc++ tool output status=0
    say 'The tool with libc++'
    world_configure "$name" clang -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS=-stdlib=libc++ -DDCM_BUILD_TESTS=OFF \
        -DDCM_UNITE=ON
    world_compile "$name" all || return 1
    build
    for tool in release "world/$name"; do
        output=build/world/${tool##*/}.output
        {
            "build/$tool/dcm" list --file examples/device.xml
            "build/$tool/dcm" export --file examples/device.xml
            "build/$tool/dcm" frame 1 --file examples/device.xml
            "build/$tool/dcm" check --format json tests/tool/corpus/*.xml || [ $? -eq 2 ]
        } >"$output" || status=1
    done
    [[ $(ldd "build/world/$name/dcm") == *libc++* ]] || fail 'the tool does not use libc++'
    cmp build/world/release.output "$output" || return 1
    echo "$(wc -c <"$output") bytes of output: as with GCC and its library"
    return "$status"
}

# world_here [PART...]: on this system.
world_here() {
    local part status=0
    for part in "$@"; do
        case $part in
        gcc | clang) world_tests "$part" || status=1 ;;
        gcc-c++23 | clang-c++20) world_tests "${part%-*}" "${part#*++}" || status=1 ;;
        gcc-options | clang-options) world_cells "${part%-options}" || status=1 ;;
        libc++) world_libcxx || status=1 ;;
        *) fail "no such part: $part" ;;
        esac
    done
    return "$status"
}

# world_in SUITE PART...: in a bare system, which is kept with its builds.
world_in() {
    local suite=$1 folder=$root/build/world-$1
    shift
    system_make "$suite" "$folder/system"
    system_run "$folder/system" "$root" "$folder/build" "./dev world --here $*"
}

verb_world() {
    local status=0
    case ${1-} in
    --here)
        shift
        need g++ clang lld binutils "${build_packages[@]}" "${test_packages[@]}"
        world_here "$@"
        ;;
    --unstable) world_in unstable gcc ;;
    '')
        need clang libc++-dev libc++abi-dev "${build_packages[@]}" "${test_packages[@]}"
        world_here libc++ || status=1
        world_in trixie gcc-c++23 gcc-options clang-c++20 clang-options || status=1
        return "$status"
        ;;
    *) fail 'usage: ./dev world [--unstable]' ;;
    esac
}
