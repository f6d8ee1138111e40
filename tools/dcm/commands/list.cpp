#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/records/json_text.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <optional>

using namespace dcmtool;

namespace {

constexpr int kVersion = 1; // of what is listed: docs/schema/list.schema.json

// What came of all queries.
struct Outcomes {
    bool areAllDecoded = true;
    size_t omitted = 0; // rows for which there was no room
};

// What is there of a kind; nothing where the kind means nothing, or the query fails.
using Count = std::optional<uint32_t>;

struct Row {
    const DescribedType *type;
    Place place;
    std::optional<std::string> name = std::nullopt;
    Count slots = std::nullopt;
    Count ports = std::nullopt;
    Count fans = std::nullopt;
    Count supplies = std::nullopt;
    Count leds = std::nullopt;
    bool isDecoded = false;
};

// ---- What there is --------------------------------------------------------------------------------------------------

void count(const DcmFrameInfo &frame, Row &row)
{
    row.slots = frame.maxSlotId;
    row.fans = 0;
    row.supplies = frame.powerNum;
    row.leds = frame.ledNum;
    for (const DcmFanModuleInfo &module : frame.fanModuleInfo) {
        *row.fans += module.fanNum;
        *row.leds += module.ledNum;
    }
    for (const DcmPowerInfo &power : frame.powerInfo)
        *row.leds += power.ledNum;
}

void count(const DcmSlotInfo &slot, Row &row)
{
    const auto isThere = [](const DcmInnerIfInfo &port) { return port.portId < DCM_PORT_UNSPEC; };
    const auto there = std::count_if(std::begin(slot.syncIf), std::end(slot.syncIf), isThere) +
                       std::count_if(std::begin(slot.sfuIf), std::end(slot.sfuIf), isThere);
    row.ports = static_cast<uint32_t>(there) + (isThere(slot.broadcastSyncIf) ? 1 : 0);
    row.fans = 0;
    for (const DcmFanCtrlInfo &fanCtrl : slot.fanCtrlInfo)
        *row.fans += fanCtrl.fanNum;
    row.supplies = slot.powerNum;
}

void count(const DcmCardInfo &card, Row &row)
{
    row.name = std::string(card.name, std::min<size_t>(card.nameLen, sizeof card.name));
    row.slots = card.occupySlotNum;
    row.ports = uint32_t{card.methIfNum} + card.pannelIfNum + card.gccIfNum + card.ethpppIfNum;
    row.leds = card.ledNum;
    for (const DcmPortLedInfo &run : card.portLed)
        if (run.endId != 0 && run.endId >= run.startId)
            *row.leds += uint32_t{run.endId} - run.startId + 1;
}

void count(const DcmVmPortInfo &vm, Row &row)
{
    row.ports = vm.ifindexNum;
}

template <class Record> void countBy(Queries &queries, Row &row)
{
    Record info;
    row.isDecoded = queries.run(*row.type, info);
    if (row.isDecoded)
        count(info, row);
}

Row rowOf(const DescriptionFile &file, Queries &queries, const DescribedType &type)
{
    Row row = {&type, placeOf(file, type)};
    switch (type.kind) {
    case RecordKind::frame:
        countBy<DcmFrameInfo>(queries, row);
        break;
    case RecordKind::slot:
        countBy<DcmSlotInfo>(queries, row);
        break;
    case RecordKind::card:
        countBy<DcmCardInfo>(queries, row);
        break;
    case RecordKind::vm:
        countBy<DcmVmPortInfo>(queries, row);
        break;
    }
    return row;
}

// ---- For people -----------------------------------------------------------------------------------------------------

struct Column {
    const char *title;
    bool isNumber; // to the right
    std::string (*cell)(const Row &row);
};

std::string shown(const Count &count)
{
    return count ? std::to_string(*count) : "-";
}

// The table is as wide as the longest list of types: of many only the first ones are shown.
std::string typeCell(const Row &row)
{
    constexpr size_t kShown = 16;
    const std::vector<uint32_t> &ids = row.type->typeIds;
    std::string cell;
    for (size_t i = 0; i < ids.size() && i < kShown; i++) {
        char text[16];
        std::snprintf(text, sizeof text, "%s0x%" PRIx32, cell.empty() ? "" : ",", ids[i]);
        cell += text;
    }
    if (ids.size() > kShown)
        cell += ",... (" + std::to_string(ids.size()) + ")";
    return cell.empty() ? "-" : cell;
}

std::string nameCell(const Row &row)
{
    const std::string name = row.name.value_or("");
    return name.empty() ? "-" : printable(name);
}

constexpr Column kColumns[] = {
    {"KIND", false, [](const Row &row) { return std::string(kindName(row.type->kind)); }},
    {"TYPE", false, typeCell},
    {"MODE", true, [](const Row &row) { return row.type->kind == RecordKind::card ? shown(row.type->mode) : "-"; }},
    {"NAME", false, nameCell},
    {"SLOTS", true, [](const Row &row) { return shown(row.slots); }},
    {"PORTS", true, [](const Row &row) { return shown(row.ports); }},
    {"FANS", true, [](const Row &row) { return shown(row.fans); }},
    {"SUPPLIES", true, [](const Row &row) { return shown(row.supplies); }},
    {"LEDS", true, [](const Row &row) { return shown(row.leds); }},
    {"PLACE", false,
     [](const Row &row) { return std::to_string(row.place.line) + ":" + std::to_string(row.place.column); }},
    {"QUERY", false, [](const Row &row) { return std::string(row.isDecoded ? "ok" : "fails"); }},
};

// The characters of a text in UTF-8.
size_t widthOf(const std::string &text)
{
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

// The first line of the table, or that of a row.
std::string lineOf(const Row *row, const std::vector<size_t> &widths)
{
    std::string line;
    for (size_t i = 0; i < std::size(kColumns); i++) {
        const std::string cell = row != nullptr ? kColumns[i].cell(*row) : kColumns[i].title;
        const std::string blanks(widths[i] - widthOf(cell), ' ');
        line += i == 0 ? "" : "  ";
        line += kColumns[i].isNumber ? blanks + cell : cell + (i + 1 == std::size(kColumns) ? "" : blanks);
    }
    return line + "\n";
}

// Everything is decoded twice, first to see how wide the columns are: rows may take more memory than the file.
bool printTable(const DescriptionFile &file, const std::vector<DescribedType> &types, const OwnOutput &output,
                Outcomes &outcomes)
{
    constexpr size_t kBlock = size_t{1} << 16;
    std::vector<size_t> widths;
    for (const Column &column : kColumns)
        widths.push_back(widthOf(column.title));
    {
        Queries queries(file);
        for (const DescribedType &type : types) {
            const Row row = rowOf(file, queries, type);
            outcomes.areAllDecoded = outcomes.areAllDecoded && row.isDecoded;
            for (size_t i = 0; i < widths.size(); i++)
                widths[i] = std::max(widths[i], widthOf(kColumns[i].cell(row)));
        }
    }
    Queries queries(file, true);
    std::string text = lineOf(nullptr, widths);
    size_t size = text.size();
    for (const DescribedType &type : types) {
        const Row row = rowOf(file, queries, type);
        const std::string line = lineOf(&row, widths);
        if (outcomes.omitted != 0 || size + line.size() > mostOutputOf(file)) {
            outcomes.omitted++;
            continue;
        }
        size += line.size();
        text += line;
        if (text.size() < kBlock)
            continue;
        if (!output.print(text))
            return false;
        text.clear();
    }
    return output.print(text);
}

// ---- For programs ---------------------------------------------------------------------------------------------------

template <class Value> Json orNull(const std::optional<Value> &value)
{
    return value ? Json(*value) : Json();
}

Json entryOf(const Row &row)
{
    Json entry = {{"kind", kindName(row.type->kind)}};
    addTypeIds(entry, row.type->typeIds);
    entry["mode"] = row.type->kind == RecordKind::card ? Json(row.type->mode) : Json();
    entry["name"] = orNull(row.name);
    entry["slots"] = orNull(row.slots);
    entry["ports"] = orNull(row.ports);
    entry["fans"] = orNull(row.fans);
    entry["supplies"] = orNull(row.supplies);
    entry["leds"] = orNull(row.leds);
    entry["line"] = row.place.line;
    entry["column"] = row.place.column;
    entry["isDecoded"] = row.isDecoded;
    return entry;
}

bool printJson(const DescriptionFile &file, const std::vector<DescribedType> &types, const OwnOutput &output,
               Outcomes &outcomes)
{
    JsonStream json(output, mostOutputOf(file));
    json.add("format", "dcm-list");
    json.add("version", kVersion);
    json.add("file", file.name());
    json.beginArray("types");
    {
        Queries queries(file);
        for (const DescribedType &type : types) {
            const Row row = rowOf(file, queries, type);
            outcomes.areAllDecoded = outcomes.areAllDecoded && row.isDecoded;
            if (outcomes.omitted != 0 || !json.addEntry(entryOf(row)))
                outcomes.omitted++;
        }
    }
    json.endArray();
    if (outcomes.omitted != 0)
        json.add("omitted", outcomes.omitted);
    return json.end();
}

Exit runList(const std::string &fileName, bool asJson)
{
    const OwnOutput output;
    const auto file = openDescription(fileName);
    if (file == nullptr)
        return kUnreadable;
    const std::vector<DescribedType> types = file->types();
    Outcomes outcomes;
    const bool isPrinted =
        asJson ? printJson(*file, types, output, outcomes) : printTable(*file, types, output, outcomes);
    if (outcomes.omitted != 0)
        sayOmitted(*file, outcomes.omitted, "rows", "the file has more types than a device");
    return isPrinted && outcomes.areAllDecoded && outcomes.omitted == 0 ? kSuccess : kQueryFailed;
}

} // namespace

Command listCommand()
{
    struct Options {
        std::string file;
        bool asJson = false;
    };
    const auto options = std::make_shared<Options>();
    return {"list",
            "List every frame, slot and card of a description",
            {fileArgument(options->file),
             fileOption(options->file, ", - for standard input"),
             {"--json", "As JSON, for programs", &options->asJson}},
            [options] { return runList(options->file, options->asJson); }};
}
