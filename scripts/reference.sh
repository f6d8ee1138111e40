# shellcheck shell=bash
# help: reference         generate docs/format.md, dcm-description(5) and the schema from the library's tables

verb_reference() {
    need "${build_packages[@]}" "${test_packages[@]}"
    configure release -DDCM_BUILD_TESTS=ON
    compile release dcm_format_writer
    build/release/tools/format/dcm-format . . || fail 'the generator failed'
    echo 'docs/format.md man/dcm-description.5 schema/dcm-description.rnc schema/dcm-description.rng'
}
