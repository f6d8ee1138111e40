// A RELAX NG schema of descriptions: stricter than the library, which ignores unknown elements and attributes.
#ifndef DCM_TOOLS_FORMAT_SCHEMA_H
#define DCM_TOOLS_FORMAT_SCHEMA_H

#include "tools/format/prose.h"

#include <string>
#include <utility>
#include <vector>

namespace dcmformat {

struct Pattern {
    enum class Kind {
        element,
        attribute,
        group,
        interleave,
        choice,
        optional,
        zeroOrMore,
        reference,
        empty,
        word,
        data
    };
    Kind kind;
    std::string name; // of an element, attribute, definition or data type; or the word
    std::vector<Pattern> parts = {};
    std::string documentation = {};                               // shown by editors
    std::vector<std::pair<std::string, std::string>> facets = {}; // of a data type
};

struct Definition {
    std::string name;
    Pattern pattern;
};

// The first definition is the content of a file.
using Schema = std::vector<Definition>;

Schema makeSchema(const Tree &tree, const Prose &prose);

// The compact and the XML syntax.
std::string toCompact(const Schema &schema);
std::string toXml(const Schema &schema);

} // namespace dcmformat

#endif
