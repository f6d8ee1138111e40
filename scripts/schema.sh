# shellcheck shell=bash
# help: schema            check the schema of descriptions: with jing, xmllint and trang, on correct and faulty files

# Rules of "dcm check" whose findings a schema can also have. (A missing attribute need not be a required one.)
schema_checks='unknown-(element|attribute|word)|misplaced-(element|attribute)|not-a-number|number-(cut|tail)|text-cut'
schema_checks+='|repeated-element|ignored-id|word-beyond-set|wrong-root|led-(state|name|source)'

# schema_corpus: small descriptions with a finding of such a rule.
schema_corpus() {
    [ ! -d tests/tool/corpus ] || grep -lE "^<!-- expect [0-9:]+ ($schema_checks):" tests/tool/corpus/*.xml
}

# The XML syntax, which each build writes.
schema_xml=build/release/schema/dcm-description.rng

# schema_refused VALIDATOR FILE...: the files that a validator rejects.
schema_refused() {
    local validator=$1
    shift
    case $validator in
    xmllint) xmllint --noout --nonet --relaxng "$schema_xml" "$@" 2>&1 |
        sed -n 's/ fails to validate$//p' ;;
    jing) jing "$schema_xml" "$@" ;;
    'jing -c') jing -c schema/dcm-description.rnc "$@" ;;
    esac | sed -E "s,^$root/,,; s/:[0-9]+:[0-9]+: (error|fatal).*//" | LC_ALL=C sort -u
}

verb_schema() {
    need jing trang libxml2-utils "${build_packages[@]}"
    local validator correct faulty status=0
    configure release
    compile release dcm_reference
    say 'Comparing both syntaxes'
    mkdir -p build/schema
    trang schema/dcm-description.rnc build/schema/compact.rng
    trang "$schema_xml" build/schema/xml.rng
    diff -u build/schema/compact.rng build/schema/xml.rng || status=1

    correct=(examples/*.xml tests/format/correct/*.xml)
    mapfile -t faulty < <({ printf '%s\n' tests/format/faulty/*.xml && schema_corpus; } | LC_ALL=C sort)
    for validator in xmllint jing 'jing -c'; do
        say "Validating with $validator"
        # "<": accepted although faulty; ">": rejected although correct.
        diff <(printf '%s\n' "${faulty[@]}") <(schema_refused "$validator" "${correct[@]}" "${faulty[@]}") || status=1
    done
    [ "$status" -eq 0 ] || return 1
    echo "${#correct[@]} correct and ${#faulty[@]} faulty files"
}
