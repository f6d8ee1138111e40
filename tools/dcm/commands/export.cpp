#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record_json.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

using namespace dcmtool;

namespace {

constexpr int kVersion = 1; // of what is exported: tools/dcm/records/export.schema.in.json

struct Options {
    std::string file;
    std::optional<RecordKind> kind; // none: the whole file
    std::optional<Number> type;     // none: all of the kind
    std::optional<Number> mode;     // none: 0
};

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

bool isWanted(const Options &options, RecordKind kind, const DescribedType &type)
{
    if (type.kind != kind)
        return false;
    if (!options.type)
        return true;
    const auto &ids = type.typeIds;
    return std::find(ids.begin(), ids.end(), options.type->value) != ids.end() &&
           options.mode.value_or(Number()).value == type.mode;
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

Json entryOf(const DescriptionFile &file, Queries &queries, const Options &options, const DescribedType &type)
{
    Json entry = Json::object();
    if (type.kind != RecordKind::vm)
        addTypeIds(entry, type.typeIds);
    if (type.kind == RecordKind::card)
        entry["mode"] = type.mode;
    const Place place = placeOf(file, type);
    entry["line"] = place.line;
    entry["column"] = place.column;
    // Of several ids a record holds the one that was asked for.
    if (options.type)
        entry["record"] = jsonOf(queries, {type.kind, type.element, {options.type->value}, type.mode});
    else
        entry["record"] = jsonOf(queries, type);
    return entry;
}

Wanted wantedBy(const Options &options)
{
    const Number mode = options.mode.value_or(Number());
    return {*options.kind, options.type->value, mode.value, options.type->written, mode.written};
}

// Prints the entries of one kind; those for which there is no room are counted.
void exportKind(const DescriptionFile &file, const std::vector<DescribedType> &types, const Options &options,
                RecordKind kind, JsonStream &json, Exit &exit, size_t &omitted)
{
    Queries queries(file);
    bool isFound = false;
    json.beginArray(arrayName(kind));
    for (const DescribedType &type : types) {
        // A query takes the first that it finds.
        if (isFound && options.type)
            break;
        if (!isWanted(options, kind, type)) {
            queries.pass(type);
            continue;
        }
        isFound = true;
        if (omitted == 0) {
            Json entry = entryOf(file, queries, options, type);
            if (entry["record"].is_null())
                exit = kQueryFailed;
            omitted += json.addEntry(std::move(entry)) ? 0 : 1;
        } else {
            omitted++;
        }
    }
    json.endArray();
}

Exit exportFrom(const DescriptionFile &file, const Options &options, const OwnOutput &output)
{
    const std::vector<DescribedType> types = file.types();
    const std::string notFound = options.type ? whyNotFound(file, wantedBy(options)) : "";
    if (!notFound.empty()) {
        std::fprintf(stderr, "dcm: %s: %s\n", printable(file.name()).c_str(), notFound.c_str());
        return kQueryFailed;
    }
    JsonStream json(output, mostOutputOf(file));
    json.add("format", "dcm-export");
    json.add("version", kVersion);
    json.add("file", file.name());
    Exit exit = kSuccess;
    size_t omitted = 0;
    for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card, RecordKind::vm})
        if (options.kind ? *options.kind == kind : file.isVm() == (kind == RecordKind::vm))
            exportKind(file, types, options, kind, json, exit, omitted);
    if (omitted != 0) {
        json.add("omitted", omitted);
        sayOmitted(file, omitted, "records", "ask for one with its type");
        exit = kQueryFailed;
    }
    return json.end() ? exit : kCannotWrite;
}

Exit runExport(const Options &options)
{
    const OwnOutput output;
    const auto file = openDescription(options.file);
    return file != nullptr ? exportFrom(*file, options, output) : kUnreadable;
}

Command kindCommand(RecordKind kind, const std::shared_ptr<Options> &options)
{
    const std::string name = kindName(kind);
    // Afterwards, the command above runs.
    const auto run = [options, kind] {
        options->kind = kind;
        return kSuccess;
    };
    Command command = {name, "Every " + name + ", or the one of a type", {}, run};
    command.arguments.push_back({"TYPE", "Type id of the " + name + " [all]", &options->type});
    if (kind == RecordKind::card)
        command.arguments.push_back({"MODE", "Mode of the card [0]", &options->mode});
    return command;
}

} // namespace

Command exportCommand()
{
    const auto options = std::make_shared<Options>();
    return {"export",
            "Print what a description describes as JSON",
            {fileOption(options->file, ", - for standard input")},
            [options] { return runExport(*options); },
            "",
            {kindCommand(RecordKind::frame, options), kindCommand(RecordKind::slot, options),
             kindCommand(RecordKind::card, options)}};
}
