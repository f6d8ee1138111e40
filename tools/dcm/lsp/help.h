// The help for elements, attributes and values: the texts of the reference.
#ifndef DCM_TOOLS_LSP_HELP_H
#define DCM_TOOLS_LSP_HELP_H

#include "tools/dcm/lsp/protocol.h"
#include "tools/format/document.h"
#include "tools/format/prose.h"
#include "tools/format/reference.h"
#include "tools/format/tree.h"

#include <string>
#include <string_view>

namespace dcmlsp {

enum class TextKind : uint8_t { plain, markdown };

class Help {
public:
    const dcmformat::Tree &tree() const { return tree_; }

    // The entry of an element, or of one of its attributes.
    dcmformat::Document entryOf(const dcmformat::Place &place, const dcm::Attribute *attribute = nullptr) const;
    dcmformat::Summary summaryOf(const dcmformat::Place &place, const dcm::Attribute *attribute = nullptr) const;
    std::string meaningOf(const dcm::Vocabulary &words) const;

private:
    std::string keyOf(const dcmformat::Place &place, const dcm::Attribute *attribute) const;

    dcmformat::Tree tree_ = dcmformat::makeTree();
    dcmformat::Prose prose_ = dcmformat::Prose(dcmformat::builtInProse());
};

// Made when first asked for.
const Help &theHelp();

// As a part of a message: an editor has none of the links of the reference.
Json textOf(dcmformat::Document document, TextKind kind);

// A text of a file in a block: nothing in it has an effect.
std::string codeOf(std::string_view text);

// What the library reads from a value; empty where that is just what is written.
std::string readingOf(const dcm::Content &content, const std::string &text);

} // namespace dcmlsp

#endif
