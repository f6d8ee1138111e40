# shellcheck shell=bash
# help: reference         write docs/format.md and schema/dcm-description.rnc anew, from the library's tables

verb_reference() {
    need "${build_packages[@]}"
    configure release
    compile release dcm_format_writer
    build/release/tools/format/dcm-format . docs/format.md schema/dcm-description.rnc || fail 'nothing was written'
    echo 'docs/format.md schema/dcm-description.rnc'
}
