#include "tools/dcm/commands/selection.h"

#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace dcmtool {

bool Selection::includes(const DescribedType &described) const
{
    if (kind && described.kind != *kind)
        return false;
    if (!type)
        return true;
    const auto &ids = described.typeIds;
    return std::find(ids.begin(), ids.end(), *type) != ids.end() && mode.value_or(0) == described.mode;
}

DescribedType Selection::asked(const DescribedType &described) const
{
    return {described.kind, described.element, {type.value_or(0)}, described.mode};
}

bool isDescribed(const DescriptionFile &file, const std::vector<DescribedType> &types, const Selection &selection)
{
    const auto isIncluded = [&](const DescribedType &type) { return selection.includes(type); };
    if (!selection.type || std::any_of(types.begin(), types.end(), isIncluded))
        return true;
    std::fprintf(stderr, "dcm: %s: no %s has type id %" PRIu32, printable(file.name()).c_str(),
                 kindName(*selection.kind), *selection.type);
    if (*selection.kind == RecordKind::card)
        std::fprintf(stderr, " and mode %" PRIu32, selection.mode.value_or(0));
    std::fputs(".\n", stderr);
    return false;
}

std::vector<Command> kindCommands(const std::shared_ptr<Selection> &selection)
{
    std::vector<Command> commands;
    for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card}) {
        const std::string name = kindName(kind);
        // Afterwards, the command above runs.
        const auto run = [selection, kind] {
            selection->kind = kind;
            return kSuccess;
        };
        Command command = {name, "Every " + name + ", or the one of a type", {}, run};
        command.arguments.push_back({"TYPE", "Type id of the " + name + " [all]", &selection->type});
        if (kind == RecordKind::card)
            command.arguments.push_back({"MODE", "Mode of the card [0]", &selection->mode});
        commands.push_back(command);
    }
    return commands;
}

} // namespace dcmtool
