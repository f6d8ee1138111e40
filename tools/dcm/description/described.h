// What the commands on whole descriptions have in common.
#ifndef DCM_TOOLS_DESCRIBED_H
#define DCM_TOOLS_DESCRIBED_H

#include "tools/dcm/description/description_file.h"

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

// What the user of a command asks for, with the numbers as they were written.
struct Wanted {
    RecordKind kind = RecordKind::frame;
    uint32_t type = 0;
    uint32_t mode = 0; // of a card
    std::string writtenType;
    std::string writtenMode;
};
// Why the description has none: the modes that the card type has, or the nearest of the types. Empty when it has one.
std::string whyNotFound(const DescriptionFile &file, const Wanted &wanted);

// How much a command may print of a file, in bytes: each entry holds a whole record, however little describes it.
size_t mostOutputOf(const DescriptionFile &file);
// Says on standard error that some of what is described is not printed.
void sayOmitted(const DescriptionFile &file, size_t count, const char *what, const char *advice);

// Decodes what is described one after the other, in the order of the file, each as its query does: what the library
// reports is said on standard error, up to a number of messages for the whole file.
class Queries {
public:
    // `isSilent`: nothing is said, as it has been before.
    explicit Queries(const DescriptionFile &file, bool isSilent = false) : file_(file), isSilent_(isSilent) {}
    ~Queries();
    Queries(const Queries &) = delete;
    Queries &operator=(const Queries &) = delete;

    // Whether it succeeds.
    template <class Record> bool run(const DescribedType &type, Record &info);
    // A card that a query passes on its way: its names stay where the card that it finds has none.
    void pass(const DescribedType &type);

private:
    const DescriptionFile &file_;
    bool isSilent_;
    DcmCardInfo names_ = {};
    size_t messageCount_ = 0;
};

} // namespace dcmtool

#endif
