// The reference of the format, for people.
#ifndef DCM_TOOLS_FORMAT_REFERENCE_H
#define DCM_TOOLS_FORMAT_REFERENCE_H

#include "tools/format/document.h"
#include "tools/format/prose.h"

#include <string>
#include <vector>

namespace dcmformat {

// An element with its example as its content, where that is a value.
std::string exampleOf(const Place &place, const Entry &entry);

// Every element and attribute that has an entry in the reference: "frame", "frame@typeid", "frame/slotmap/mpu".
std::vector<std::string> referenceKeys(const Tree &tree);
// The same for what a path leads to: an element that is described at another of its places is found at each of them,
// and "device" and the "@" of an attribute may be left out. Empty when there is none.
std::string keyOfPath(const Tree &tree, const std::string &path);
// The keys of all that an end of a path leads to: "phytype", "port/phytype", "card@typeid".
std::vector<std::string> keysOfEnd(const Tree &tree, const std::string &end);
// The entry of a key, alone.
Document referenceEntry(const Tree &tree, const Prose &prose, const std::string &key);

std::string markdownReference(const Tree &tree, const Prose &prose, const std::string &introduction);
std::string manPage(const Tree &tree, const Prose &prose, const std::string &introduction);

} // namespace dcmformat

#endif
