# shellcheck shell=bash
# help: reference         generate docs/format.md, docs/checks/coverage.md and the schema from the library's tables

verb_reference() {
    need "${build_packages[@]}"
    configure release
    compile release dcm_format_writer
    local documents=(docs/format.md docs/checks/coverage.md schema/dcm-description.rnc)
    build/release/tools/format/dcm-format . "${documents[@]}" || fail 'the generator failed'
    echo "${documents[*]}"
}
