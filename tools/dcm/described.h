// What the commands on whole descriptions have in common.
#ifndef DCM_TOOLS_DESCRIBED_H
#define DCM_TOOLS_DESCRIBED_H

#include "tools/dcm/description_file.h"

#include <dcm.h>

#include <memory>
#include <string>

namespace dcmtool {

// Reads a description, the element's own where no name is given; what is wrong with it is said on standard error, and
// there is none.
std::unique_ptr<DescriptionFile> openDescription(const std::string &name);

// "frame", "slot", "card" or "vm".
const char *kindName(RecordKind kind);
// Where it stands in its file.
Place placeOf(const DescriptionFile &file, const DescribedType &type);

// Decodes what is described one after the other, in the order of the file, each as its query does: what the library
// reports is said on standard error.
class Queries {
public:
    explicit Queries(const DescriptionFile &file) : file_(file) {}

    // Whether it succeeds.
    template <class Record> bool run(const DescribedType &type, Record &info);
    // A card that a query passes on its way: its names stay where the card that it finds has none.
    void pass(const DescribedType &type);

private:
    const DescriptionFile &file_;
    DcmCardInfo names_ = {};
};

} // namespace dcmtool

#endif
