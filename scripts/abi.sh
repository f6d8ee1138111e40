# shellcheck shell=bash
# help: abi [--record]    compare the library's binary interface with the recorded one, or update the record

# abi_describe FILE: functions, tables and their types, without the places of the declarations.
abi_describe() {
    abidw --headers-dir include --drop-private-types --exported-interfaces-only \
        --suppressions tests/abi/libxml2.abignore --no-show-locs --short-locs --no-comp-dir-path \
        --no-corpus-path --no-elf-needed --out-file "$1" build/release/libdcm.so ||
        fail 'cannot describe build/release/libdcm.so'
}

# abi_count FILE: the numbers of functions, tables and records in a dump.
abi_count() {
    printf '%d functions, %d tables, %d records' "$(grep -c '<function-decl ' "$1")" \
        "$(grep -c '<elf-symbol .*object-type' "$1")" "$(grep -c '<class-decl .*is-struct' "$1")"
}

verb_abi() {
    local recorded=tests/abi/libdcm.abi described=build/release/libdcm.abi
    [[ $# -eq 0 || $* = --record ]] || fail 'usage: ./dev abi [--record]'
    [ "$(uname -m)" = x86_64 ] || fail 'the interface is recorded for x86_64'
    need abigail-tools "${build_packages[@]}" "${test_packages[@]}"
    configure release
    compile release dcm_shared
    if [ $# -gt 0 ]; then
        abi_describe "$recorded"
        echo "interface: $(abi_count "$recorded"), recorded in $recorded"
        return
    fi
    abi_describe "$described"
    say 'Comparing the interface'
    abidiff --harmless "$recorded" "$described" ||
        fail "the interface differs from $recorded; see docs/api/versions.md; ./dev abi --record updates the record"
    echo "interface: $(abi_count "$described"), as recorded"
}
