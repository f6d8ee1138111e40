// The reference of the format.
#ifndef DCM_TOOLS_FORMAT_REFERENCE_H
#define DCM_TOOLS_FORMAT_REFERENCE_H

#include "tools/format/document.h"
#include "tools/format/prose.h"

#include <string>
#include <vector>

namespace dcmformat {

// An element with its example; an example that is a value becomes the element's content.
std::string exampleOf(const Place &place, const Entry &entry);

// Every element and attribute that has an entry in the reference: "frame", "frame@typeid", "frame/slotmap/mpu".
std::vector<std::string> referenceKeys(const Tree &tree);
// The key of a path: an element that is described under another of its paths is found under each of them, and "device"
// and the "@" of an attribute are optional. Empty if the path does not exist.
std::string keyOfPath(const Tree &tree, const std::string &path);
// The keys of all paths with this end: "phytype", "port/phytype", "card@typeid".
std::vector<std::string> keysOfEnd(const Tree &tree, const std::string &end);
// An entry on one line: the first sentence of the meaning, and the possible values.
struct Summary {
    std::string meaning;
    std::string value;
};
Summary summaryOf(const Tree &tree, const Prose &prose, const std::string &key);
// The entry of a key.
Document referenceEntry(const Tree &tree, const Prose &prose, const std::string &key);

std::string markdownReference(const Tree &tree, const Prose &prose, const std::string &introduction);
std::string manPage(const Tree &tree, const Prose &prose, const std::string &introduction);

} // namespace dcmformat

#endif
