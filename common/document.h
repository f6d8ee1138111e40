// A description file from its opening to the release of its tree.
#ifndef DCM_COMMON_DOCUMENT_H
#define DCM_COMMON_DOCUMENT_H

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
    Result parse(const Reporter &reporter);
    // Parses the reporter's file, which must be a device description.
    Result parseDevice(const Reporter &reporter);
    Node root() const { return root_; }

private:
    ::xmlDocPtr document_ = nullptr;
    Node root_ = nullptr;
};

} // namespace dcm

#endif
