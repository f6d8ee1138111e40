#include "tools/dcm/command.h"
#include "tools/dcm/described.h"
#include "tools/dcm/json_text.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <optional>

using namespace dcmtool;

namespace {

constexpr int kVersion = 1; // of what is listed: docs/schema/list.schema.json

// What is there of a kind; nothing where the kind means nothing, or the query fails.
using Count = std::optional<uint32_t>;

struct Row {
    DescribedType type;
    Place place;
    std::optional<std::string> name;
    Count slots;
    Count ports;
    Count fans;
    Count supplies;
    Count leds;
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
    row.isDecoded = queries.run(row.type, info);
    if (row.isDecoded)
        count(info, row);
}

std::vector<Row> rowsOf(const DescriptionFile &file)
{
    std::vector<Row> rows;
    Queries queries(file);
    for (const DescribedType &type : file.types()) {
        Row row;
        row.type = type;
        row.place = placeOf(file, type);
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
        rows.push_back(row);
    }
    return rows;
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

std::string typeCell(const Row &row)
{
    std::string cell;
    for (const uint32_t id : row.type.typeIds) {
        char text[16];
        std::snprintf(text, sizeof text, "%s0x%" PRIx32, cell.empty() ? "" : ",", id);
        cell += text;
    }
    return cell.empty() ? "-" : cell;
}

std::string nameCell(const Row &row)
{
    const std::string name = row.name.value_or("");
    return name.empty() ? "-" : printable(name);
}

constexpr Column kColumns[] = {
    {"KIND", false, [](const Row &row) { return std::string(kindName(row.type.kind)); }},
    {"TYPE", false, typeCell},
    {"MODE", true, [](const Row &row) { return row.type.kind == RecordKind::card ? shown(row.type.mode) : "-"; }},
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

std::string tableOf(const std::vector<Row> &rows)
{
    std::vector<std::string> lines(rows.size() + 1);
    for (const Column &column : kColumns) {
        std::vector<std::string> cells = {column.title};
        for (const Row &row : rows)
            cells.push_back(column.cell(row));
        size_t width = 0;
        for (const std::string &cell : cells)
            width = std::max(width, widthOf(cell));
        const bool isFirst = &column == std::begin(kColumns);
        const bool isLast = &column == std::end(kColumns) - 1;
        for (size_t i = 0; i < cells.size(); i++) {
            const std::string blanks(width - widthOf(cells[i]), ' ');
            lines[i] += isFirst ? "" : "  ";
            lines[i] += column.isNumber ? blanks + cells[i] : cells[i] + (isLast ? "" : blanks);
        }
    }
    std::string table;
    for (const std::string &line : lines)
        table += line + "\n";
    return table;
}

// ---- For programs ---------------------------------------------------------------------------------------------------

template <class Value> Json orNull(const std::optional<Value> &value)
{
    return value ? Json(*value) : Json();
}

std::string jsonOf(const DescriptionFile &file, const std::vector<Row> &rows)
{
    Json types = Json::array();
    for (const Row &row : rows)
        types.push_back({{"kind", kindName(row.type.kind)},
                         {"typeIds", row.type.typeIds},
                         {"mode", row.type.kind == RecordKind::card ? Json(row.type.mode) : Json()},
                         {"name", orNull(row.name)},
                         {"slots", orNull(row.slots)},
                         {"ports", orNull(row.ports)},
                         {"fans", orNull(row.fans)},
                         {"supplies", orNull(row.supplies)},
                         {"leds", orNull(row.leds)},
                         {"line", row.place.line},
                         {"column", row.place.column},
                         {"isDecoded", row.isDecoded}});
    return jsonText({{"format", "dcm-list"}, {"version", kVersion}, {"file", file.name()}, {"types", types}});
}

Exit runList(const std::string &fileName, bool asJson)
{
    const OwnOutput output;
    const auto file = openDescription(fileName);
    if (file == nullptr)
        return kUnreadable;
    const std::vector<Row> rows = rowsOf(*file);
    if (!output.print(asJson ? jsonOf(*file, rows) : tableOf(rows)))
        return kQueryFailed;
    const bool isAllDecoded = std::all_of(rows.begin(), rows.end(), [](const Row &row) { return row.isDecoded; });
    return isAllDecoded ? kSuccess : kQueryFailed;
}

} // namespace

void addListCommand(CLI::App &app, Exit &exit)
{
    struct Options {
        std::string file;
        bool asJson = false;
    };
    CLI::App *command = app.add_subcommand("list", "List every frame, slot and card of a description");
    const auto options = std::make_shared<Options>();
    addFileOption(*command, options->file, ", - for standard input");
    command->add_flag("--json", options->asJson, "As JSON, for programs");
    command->callback([options, &exit] { exit = runList(options->file, options->asJson); });
}
