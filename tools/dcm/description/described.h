// Functions shared by the commands that read whole descriptions.
#ifndef DCM_TOOLS_DESCRIBED_H
#define DCM_TOOLS_DESCRIBED_H

#include "tools/dcm/description/description_file.h"

#include <dcm.h>

#include <memory>
#include <string>

namespace dcmtool {

// Reads a description; without a name, the one of the element. Errors are printed on standard error, and nullptr is
// returned.
std::unique_ptr<DescriptionFile> openDescription(const std::string &name, DescriptionFile::IsWanted isWanted = {});

// "frame", "slot", "card" or "vm".
const char *kindName(RecordKind kind);
// Its place in the file.
Place placeOf(const DescriptionFile &file, const DescribedType &type);

// The type that a command is given, with the numbers as the user wrote them.
struct Wanted {
    RecordKind kind = RecordKind::frame;
    uint32_t type = 0;
    uint32_t mode = 0; // of a card
    std::string writtenType;
    std::string writtenMode;
};
// Why the description lacks the type: the modes that the card type has, or the nearest types. Empty if it has it.
std::string whyNotFound(const DescriptionFile &file, const Wanted &wanted);

// The output limit of a command for a file, in bytes: each entry prints a whole record, even if little describes it.
size_t mostOutputOf(const DescriptionFile &file);
// Reports on standard error that the output is incomplete.
void reportOmitted(const DescriptionFile &file, size_t count, const char *what, const char *advice);

// Decodes the types of a file one after the other, in document order, each as its query does. The library's reports
// are printed on standard error, up to a maximum number of messages for the whole file.
class Queries {
public:
    // `isSilent`: the reports are not printed, because they have been printed before.
    explicit Queries(const DescriptionFile &file, bool isSilent = false) : file_(file), isSilent_(isSilent) {}
    ~Queries();
    Queries(const Queries &) = delete;
    Queries &operator=(const Queries &) = delete;

    // Whether its query succeeds.
    template <class Record> bool run(const DescribedType &type, Record &info);
    // A card that a query visits before it finds the right one: its names remain where that one has none.
    void pass(const DescribedType &type);

private:
    const DescriptionFile &file_;
    bool isSilent_;
    DcmCardInfo names_ = {};
    size_t messageCount_ = 0;
};

} // namespace dcmtool

#endif
