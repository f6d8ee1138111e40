// The reference of the format, for people.
#ifndef DCM_TOOLS_FORMAT_REFERENCE_H
#define DCM_TOOLS_FORMAT_REFERENCE_H

#include "tools/format/prose.h"

#include <string>

namespace dcmformat {

// An element with its example as its content, where that is a value.
std::string exampleOf(const Place &place, const Entry &entry);

std::string markdownReference(const Tree &tree, const Prose &prose, const std::string &introduction);
std::string manPage(const Tree &tree, const Prose &prose, const std::string &introduction);

} // namespace dcmformat

#endif
