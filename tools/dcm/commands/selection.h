// What commands on records are asked for: all of a description, all of a kind, or one.
#ifndef DCM_TOOLS_SELECTION_H
#define DCM_TOOLS_SELECTION_H

#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"

#include <memory>

namespace dcmtool {

struct Selection {
    std::string file;
    std::optional<RecordKind> kind; // none: the whole file
    std::optional<Number> type;     // none: all of the kind
    std::optional<Number> mode;     // none: 0

    bool includes(const DescribedType &described) const;
    // One that is included, by the one of its ids that was asked for, which the record then holds.
    DescribedType asked(const DescribedType &described) const;
};

// Whether the file has what one type was asked for; if not, that is said on standard error.
bool isDescribed(const DescriptionFile &file, const Selection &selection);

// The commands "frame [TYPE]", "slot [TYPE]" and "card [TYPE [MODE]]" below one that then runs.
std::vector<Command> kindCommands(const std::shared_ptr<Selection> &selection);

} // namespace dcmtool

#endif
