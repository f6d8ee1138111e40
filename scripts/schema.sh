# shellcheck shell=bash
# help: schema            check the schema of descriptions: with jing, xmllint and trang, on correct and faulty files

# schema_accepts FILE: as jing and xmllint see it, in either syntax.
schema_accepts() {
    jing schema/dcm-description.rng "$1" >/dev/null && jing -c schema/dcm-description.rnc "$1" >/dev/null &&
        xmllint --noout --nonet --relaxng schema/dcm-description.rng "$1" 2>/dev/null
}

# schema_refuses FILE
schema_refuses() {
    ! jing schema/dcm-description.rng "$1" >/dev/null && ! jing -c schema/dcm-description.rnc "$1" >/dev/null &&
        ! xmllint --noout --nonet --relaxng schema/dcm-description.rng "$1" 2>/dev/null
}

verb_schema() {
    need jing trang libxml2-utils
    local file folder status=0
    say 'Comparing both syntaxes'
    mkdir -p build/schema
    trang schema/dcm-description.rnc build/schema/compact.rng
    trang schema/dcm-description.rng build/schema/xml.rng
    diff -u build/schema/compact.rng build/schema/xml.rng || status=1

    say 'Validating correct and faulty files'
    for file in examples/*.xml tests/format/correct/*.xml; do
        schema_accepts "$file" || { echo "refused: $file" && status=1; }
    done
    for file in tests/format/faulty/*.xml; do
        schema_refuses "$file" || { echo "accepted: $file" && status=1; }
    done
    [ "$status" -eq 0 ] || return 1
    for folder in examples tests/format/correct tests/format/faulty; do
        echo "$folder: $(find "$folder" -name '*.xml' | wc -l) files"
    done
}
