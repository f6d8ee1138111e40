# shellcheck shell=bash
# help: docs              build the reference of the interface, build/docs/html/index.html

# The gaps of the reference: names without a description, and exported names that are not in it.
docs_gaps() {
    local xml=$1 file
    for file in "$xml"/dcm_8h.xml "$xml"/struct*.xml; do
        # An unnamed enumeration needs no description, but each of its values does.
        xmllint --xpath '//*[self::compounddef or self::memberdef or self::enumvalue]
            [not(briefdescription/* or detaileddescription/*) and not(starts-with(name, "@"))]
            /*[self::compoundname or self::name]/text()' "$file" 2>/dev/null | sed 's/^/not documented: /'
    done
    LC_ALL=C comm -13 <(xmllint --xpath '//memberdef/name/text()' "$xml/dcm_8h.xml" | LC_ALL=C sort -u) \
        <(sed -E 's/[[:space:]]*#.*//; /^$/d' tests/abi/exported-symbols.txt | LC_ALL=C sort -u) |
        sed 's/^/not in the reference: /'
}

verb_docs() {
    need doxygen libxml2-utils
    local gaps
    say 'Building the reference'
    rm -rf build/docs
    mkdir -p build/docs
    DCM_VERSION=$(project_version) DCM_DOCS=build/docs quietly doxygen docs/api/Doxyfile ||
        fail 'the reference has errors'
    gaps=$(docs_gaps build/docs/xml)
    if [ -n "$gaps" ]; then
        printf '%s\n' "$gaps" >&2
        fail 'the reference has gaps'
    fi
    echo "$root/build/docs/html/index.html"
}
