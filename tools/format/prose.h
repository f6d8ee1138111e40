// What is written by hand about the format: docs/format/elements.txt, an entry for each element, attribute and
// vocabulary, and docs/format/introduction.txt.
#ifndef DCM_TOOLS_FORMAT_PROSE_H
#define DCM_TOOLS_FORMAT_PROSE_H

#include "tools/format/tree.h"

#include <map>
#include <string>
#include <vector>

namespace dcmformat {

struct Entry {
    std::string meaning;
    std::string leftOut; // what holds where it is left out; "": it is required, or one of many
    std::string wrong;   // what happens when it is wrong, where that is not what the introduction says of its kind
    std::string example; // an element, or the value of a leaf or attribute, or the values of a list with blanks between
};

class Prose {
public:
    // Reads the entries of a file. One begins with its key in brackets, where "{a,b}" stands for either:
    //     [frame/maxslotnum]            an element by its path
    //     [frame@typeid]                an attribute
    //     [words phy-type]              a vocabulary
    // Its meaning follows, and then, where they apply, lines that begin with "left out:", "wrong:" and "example:".
    // Throws std::runtime_error on a fault.
    explicit Prose(const std::string &text);

    // The entry of a key. Throws when there is none.
    const Entry &of(const std::string &key) const;

    // What is wrong with the entries: each place, attribute and vocabulary needs one with all that applies to it, and
    // there are no others.
    std::vector<std::string> faults(const Tree &tree) const;

private:
    void add(const std::string &key, const Entry &entry);

    std::map<std::string, Entry> entries_;
};

std::string attributeKey(const Place &place, const dcm::Attribute &attribute);

std::string readFile(const std::string &path);

// What docs/format/elements.txt held when this was built.
const std::string &builtInProse();

} // namespace dcmformat

#endif
