# shellcheck shell=bash
# help: reference         generate docs/format.md and schema/dcm-description.rnc from the library's tables

verb_reference() {
    need "${build_packages[@]}"
    configure release
    compile release dcm_format_writer
    build/release/tools/format/dcm-format . docs/format.md schema/dcm-description.rnc || fail 'the generator failed'
    echo 'docs/format.md schema/dcm-description.rnc'
}
