#include "tools/dcm/commands/selection.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record_json.h"

#include <memory>

using namespace dcmtool;

namespace {

constexpr int kVersion = 1; // of the output: tools/dcm/records/export.schema.in.json

const char *arrayName(RecordKind kind)
{
    switch (kind) {
    case RecordKind::frame:
        return "frames";
    case RecordKind::slot:
        return "slots";
    case RecordKind::card:
        return "cards";
    case RecordKind::vm:
        break;
    }
    return "vms";
}

// An entry whose query fails has no record.
template <class Info> Json jsonOf(Queries &queries, const DescribedType &type)
{
    Info info;
    return queries.run(type, info) ? toJson(recordOf(info)) : Json();
}

Json jsonOf(Queries &queries, const DescribedType &type)
{
    switch (type.kind) {
    case RecordKind::frame:
        return jsonOf<DcmFrameInfo>(queries, type);
    case RecordKind::slot:
        return jsonOf<DcmSlotInfo>(queries, type);
    case RecordKind::card:
        return jsonOf<DcmCardInfo>(queries, type);
    case RecordKind::vm:
        break;
    }
    return jsonOf<DcmVmPortInfo>(queries, type);
}

Json entryOf(const DescriptionFile &file, Queries &queries, const Selection &selection, const DescribedType &type)
{
    Json entry = Json::object();
    if (type.kind != RecordKind::vm)
        addTypeIds(entry, type.typeIds);
    if (type.kind == RecordKind::card)
        entry["mode"] = type.mode;
    const Place place = placeOf(file, type);
    entry["line"] = place.line;
    entry["column"] = place.column;
    entry["record"] = selection.type ? jsonOf(queries, selection.asked(type)) : jsonOf(queries, type);
    return entry;
}

// Prints the entries of one kind, and counts those beyond the output limit.
void exportKind(const DescriptionFile &file, const std::vector<DescribedType> &types, const Selection &selection,
                RecordKind kind, JsonStream &json, Exit &exit, size_t &omitted)
{
    Queries queries(file);
    bool isFound = false;
    json.beginArray(arrayName(kind));
    for (const DescribedType &type : types) {
        // A query finds the first match.
        if (isFound && selection.type)
            break;
        if (type.kind != kind || !selection.includes(type)) {
            queries.pass(type);
            continue;
        }
        isFound = true;
        if (omitted == 0) {
            Json entry = entryOf(file, queries, selection, type);
            if (entry["record"].is_null())
                exit = kQueryFailed;
            omitted += json.addEntry(std::move(entry)) ? 0 : 1;
        } else {
            omitted++;
        }
    }
    json.endArray();
}

Exit exportFrom(const DescriptionFile &file, const Selection &selection, const OwnOutput &output)
{
    const std::vector<DescribedType> types = file.types();
    if (!isDescribed(file, selection))
        return kQueryFailed;
    JsonStream json(output, mostOutputOf(file));
    json.add("format", "dcm-export");
    json.add("version", kVersion);
    json.add("file", file.name());
    Exit exit = kSuccess;
    size_t omitted = 0;
    for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card, RecordKind::vm})
        if (selection.kind ? *selection.kind == kind : file.isVm() == (kind == RecordKind::vm))
            exportKind(file, types, selection, kind, json, exit, omitted);
    if (omitted != 0) {
        json.add("omitted", omitted);
        reportOmitted(file, omitted, "records", "name a type to export one");
        exit = kQueryFailed;
    }
    return json.end() ? exit : kCannotWrite;
}

Exit runExport(const Selection &selection)
{
    const OwnOutput output;
    const auto file = openDescription(selection.file);
    return file != nullptr ? exportFrom(*file, selection, output) : kUnreadable;
}

} // namespace

Command exportCommand()
{
    const auto selection = std::make_shared<Selection>();
    return {"export",
            "Print decoded records as JSON",
            {fileOption(selection->file, ", - for standard input")},
            [selection] { return runExport(*selection); },
            "",
            kindCommands(selection)};
}
