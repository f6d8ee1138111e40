// Opens and parses a description, and owns its tree.
#ifndef DCM_COMMON_DOCUMENT_H
#define DCM_COMMON_DOCUMENT_H

#include "common/selection.h"
#include "common/xml.h"

#include <libxml/tree.h>

namespace dcm {

class Document {
public:
    Document() = default;
    ~Document();
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    // Parses the reporter's file.
    Result parse(const QueryReporter &reporter) { return parse(reporter, nullptr); }
    // Parses the reporter's file, which must be a device description. The tree may be limited to what is needed to find
    // and decode the wanted element: the child of the root that has this name and that `compare` accepts for the query.
    Result parseDevice(const QueryReporter &reporter, const char *name, Wanted::Compare compare, const void *query);
    Node root() const { return root_; }

private:
    Result parse(const QueryReporter &reporter, const Wanted *wanted);

    ::xmlDocPtr document_ = nullptr;
    Node root_ = nullptr;
};

} // namespace dcm

#endif
