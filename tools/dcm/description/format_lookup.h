// Finds elements and attributes in the format's tables.
#ifndef DCM_TOOLS_FORMAT_LOOKUP_H
#define DCM_TOOLS_FORMAT_LOOKUP_H

#include "common/format.h"
#include "common/xml.h"
#include "tools/dcm/description/description_file.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dcmtool {

// The format of an element below "device" for each RecordKind, from which records are decoded.
const std::vector<dcm::NamedElement> &deviceChildren();
const dcm::NamedElement &rowOf(RecordKind kind);

// The row of a child, searched from row `from` on and then from the top; `childCount` if there is none.
size_t findRow(const dcm::Element &format, const char *name, size_t from = 0);
// An attribute, by its name, or the first one of a kind; nullptr if there is none.
const dcm::Attribute *findAttribute(const dcm::Element &format, const char *name);
const dcm::Attribute *findAttribute(const dcm::Element &format, dcm::Kind kind);

std::vector<std::string> childNames(const dcm::Element &format);
std::vector<std::string> attributeNames(const dcm::Element &format);

// The attribute that identifies an element among its siblings, an id or a list of ids; nullptr if there is none.
const dcm::Attribute *idAttribute(const dcm::Element &format);
// The valid ids in it.
std::vector<uint32_t> idsOf(Node element, const dcm::Element &format);
std::vector<uint32_t> idsOf(const char *text, const dcm::Content &content);
// The valid numbers of a bit list.
std::vector<uint32_t> numbersOf(const char *list, const dcm::Content &content);

// The format of an element of a description, and its role; nullptr and none for an unknown element.
const dcm::NamedElement *formatRowOf(Node element);
const dcm::Element *formatOf(Node element);
dcm::Role roleOf(Node element);
// The last child of a role, which is the one that counts; nullptr if there is none.
Node lastChild(Node element, dcm::Role role);

} // namespace dcmtool

#endif
