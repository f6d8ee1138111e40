// The hand-written texts about the format: docs/format/elements.txt, with an entry for each element, attribute and
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
    std::string leftOut; // the effect of leaving it out; "": it is required, or one of many
    std::string wrong;   // the effect of a wrong value, if it differs from the introduction's description of its kind
    std::string example; // an element, the value of a leaf or attribute, or the values of a list, separated by blanks
};

class Prose {
public:
    // Reads the entries of a file. An entry begins with its key in brackets, where "{a,b}" abbreviates two keys:
    //     [frame/maxslotnum]            an element by its path
    //     [frame@typeid]                an attribute
    //     [words phy-type]              a vocabulary
    // Its meaning follows, and then, where they apply, lines that begin with "left out:", "wrong:" and "example:".
    // Throws std::runtime_error on a fault.
    explicit Prose(const std::string &text);

    // The entry of a key. Throws when there is none.
    const Entry &of(const std::string &key) const;

    // The faults of the entries: each place, attribute and vocabulary needs one entry with all fields that apply to it,
    // and there are no others.
    std::vector<std::string> faults(const Tree &tree) const;

private:
    void add(const std::string &key, const Entry &entry);

    std::map<std::string, Entry> entries_;
};

std::string attributeKey(const Place &place, const dcm::Attribute &attribute);

std::string readFile(const std::string &path);

// The content of docs/format/elements.txt at the time of the build.
const std::string &builtInProse();

} // namespace dcmformat

#endif
