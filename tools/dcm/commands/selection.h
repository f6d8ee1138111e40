// The selection of records by a command: all of a description, all of a kind, or one.
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
    // A selected type, with the requested one of its ids, which the record then contains.
    DescribedType asked(const DescribedType &described) const;
};

// Whether the file has the requested type; if not, this is reported on standard error.
bool isDescribed(const DescriptionFile &file, const Selection &selection);

// The subcommands "frame [TYPE]", "slot [TYPE]" and "card [TYPE [MODE]]" of a command that runs after them.
std::vector<Command> kindCommands(const std::shared_ptr<Selection> &selection);

} // namespace dcmtool

#endif
