#include "tools/dcm/commands/selection.h"

#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>

namespace dcmtool {

bool Selection::includes(const DescribedType &described) const
{
    if (kind && described.kind != *kind)
        return false;
    if (!type)
        return true;
    const auto &ids = described.typeIds;
    return std::find(ids.begin(), ids.end(), type->value) != ids.end() &&
           mode.value_or(Number()).value == described.mode;
}

DescribedType Selection::asked(const DescribedType &described) const
{
    return {described.kind, described.element, {type.value_or(Number()).value}, described.mode};
}

bool isDescribed(const DescriptionFile &file, const Selection &selection)
{
    if (!selection.type)
        return true;
    const Number mode = selection.mode.value_or(Number());
    const std::string notFound =
        whyNotFound(file, {*selection.kind, selection.type->value, mode.value, selection.type->written, mode.written});
    if (!notFound.empty())
        std::fprintf(stderr, "dcm: %s: %s\n", printable(file.name()).c_str(), notFound.c_str());
    return notFound.empty();
}

std::vector<Command> kindCommands(const std::shared_ptr<Selection> &selection)
{
    std::vector<Command> commands;
    for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card}) {
        const std::string name = kindName(kind);
        // The command one level up runs afterwards.
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
