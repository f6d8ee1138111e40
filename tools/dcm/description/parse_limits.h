// Limits of the cost of parsing a description. The tree of an XML file can take many times the file's size, and a
// document type can make it grow without bound: a file that exceeds these limits is refused.
#ifndef DCM_TOOLS_PARSE_LIMITS_H
#define DCM_TOOLS_PARSE_LIMITS_H

#include "common/format.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct _xmlEntity;
struct _xmlDoc;

namespace dcmtool {

class ParseLimits {
public:
    // The parser compares each attribute of an element with each other one.
    static constexpr size_t kMostAttributes = 256;
    static constexpr size_t kMostDeclarations = 1000; // in a document type, and references to its declarations there
    // The parser compares the words of a declared attribute each with each, and looks through all namespaces of the
    // elements around for the one of a name; beyond some ten thousand names, its table of names becomes a list.
    static constexpr size_t kMostAlternatives = size_t{10} * 1000;
    static constexpr size_t kMostNamespaces = 256;
    static constexpr size_t kMostNames = size_t{100} * 1000;
    static constexpr size_t kMostTreeOfByte = 18;                     // bytes of the tree for a byte of the file
    static constexpr size_t kMostTreeOfAny = size_t{8} * 1000 * 1000; // allowed for any tree
    static constexpr size_t kMostExpansion = size_t{1000} * 1000; // by entities, in addition to the size of the file

    explicit ParseLimits(size_t fileSize);

    // Why the file is refused; empty if it is not.
    const std::string &excess() const { return excess_; }

    // Searches a text before parsing for an element with too many attributes, and for too many alternatives
    // "(a|b|...)".
    void scan(std::string_view text);
    // What the parser keeps: names of any kind, and the namespaces of the elements around.
    void takeNames(size_t names, size_t namespaces);
    void takeDeclaration();
    void takeNode(size_t textLength = 0);
    void takeAttribute(std::string_view value, const ::_xmlDoc *document);
    void takeReference(std::string_view name, const ::_xmlDoc *document);

private:
    void scanAttributes(std::string_view text);
    void scanAlternatives(std::string_view text);
    void refuse(std::string excess);
    void takeTree(size_t size);
    size_t expandedSize(std::string_view name, const ::_xmlDoc *document, unsigned depth);
    size_t expandedSizeOfReferences(std::string_view text, const ::_xmlDoc *document, unsigned depth);

    size_t mostTree_;
    size_t mostExpansion_;
    size_t tree_ = 0;
    size_t expansion_ = 0;
    size_t declarations_ = 0;
    size_t alternatives_ = 0;
    std::unordered_map<const ::_xmlEntity *, size_t> sizes_;
    std::string excess_;
};

// The position of a walk in the format: blanks between the elements of a container are not significant.
class FormatPosition {
public:
    void enter(const char *name);
    void leave();
    bool isInContainer() const;
    // In an element whose text, with that of its descendants, is a value.
    bool isInValue() const { return valueDepth_ != 0; }

private:
    std::vector<const dcm::Element *> formats_; // nullptr for unknown elements
    size_t valueDepth_ = 0;                     // the depth of the outermost element whose text is a value; 0: none
    bool isDevice_ = false;
};

} // namespace dcmtool

#endif
