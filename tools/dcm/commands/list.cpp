#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/records/json_text.h"

#include <algorithm>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

using namespace dcmtool;

namespace {

constexpr int kVersion = 1; // of the output: docs/schema/list.schema.json

// The results of all queries.
struct Outcomes {
    bool areAllDecoded = true;
    size_t omitted = 0; // rows beyond the output limit
};

// The counts of a row; absent for other kinds, or if the query fails.
using Count = std::optional<uint32_t>;

// Ports of one kind.
struct PortCount {
    uint32_t count;
    const char *kind;
};

struct Row {
    const DescribedType *type;
    Place place;
    std::optional<std::string> name = std::nullopt;
    Count slots = std::nullopt;
    std::optional<std::vector<PortCount>> ports = std::nullopt;
    Count fans = std::nullopt;
    Count supplies = std::nullopt;
    Count leds = std::nullopt;
    bool isDecoded = false;
};

// ---- Counts ---------------------------------------------------------------------------------------------------------

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
    row.ports = {{static_cast<uint32_t>(there) + (isThere(slot.broadcastSyncIf) ? 1 : 0), "inner"}};
    row.fans = 0;
    for (const DcmFanCtrlInfo &fanCtrl : slot.fanCtrlInfo)
        *row.fans += fanCtrl.fanNum;
    row.supplies = slot.powerNum;
}

void count(const DcmCardInfo &card, Row &row)
{
    row.name = std::string(card.name, std::min<size_t>(card.nameLen, sizeof card.name));
    row.slots = card.occupySlotNum;
    row.ports = {
        {card.pannelIfNum, "panel"}, {card.methIfNum, "mgt"}, {card.gccIfNum, "gcc"}, {card.ethpppIfNum, "ppp"}};
    row.leds = card.ledNum;
    for (const DcmPortLedInfo &run : card.portLed)
        if (run.endId != 0 && run.endId >= run.startId)
            *row.leds += uint32_t{run.endId} - run.startId + 1;
}

void count(const DcmVmPortInfo &vm, Row &row)
{
    row.ports = {{vm.ifindexNum, "panel"}};
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

// ---- Table ----------------------------------------------------------------------------------------------------------

struct Column {
    const char *title;
    bool isNumber;    // aligned to the right
    unsigned leftOut; // on a narrow terminal, columns with lower numbers are left out first
    std::string (*cell)(const Row &row);
    const char *meaning;
    size_t least = 0; // the width to which it is shortened before that; 0: it is not shortened
};

std::string shown(const Count &count)
{
    return count ? std::to_string(*count) : "-";
}

// The longest list of types determines the width of the table: of many types only the first ones are shown.
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

// "16 panel, 2 mgt"
std::string portsCell(const Row &row)
{
    if (!row.ports)
        return "-";
    std::string cell;
    for (const PortCount &ports : *row.ports)
        if (ports.count != 0)
            cell += (cell.empty() ? "" : ", ") + std::to_string(ports.count) + " " + ports.kind;
    return cell.empty() ? "0" : cell;
}

constexpr unsigned kNever = UINT_MAX;

constexpr Column kColumns[] = {
    {"KIND", false, kNever, [](const Row &row) { return std::string(kindName(row.type->kind)); },
     "frame, slot or card; vm for the port list of a virtual machine"},
    {"TYPE", false, kNever, typeCell, "the type ids, of many the first ones", 8},
    {"MODE", true, kNever,
     [](const Row &row) { return row.type->kind == RecordKind::card ? shown(row.type->mode) : "-"; },
     "the mode of a card"},
    {"NAME", false, 7, nameCell, "the name of a card", 12},
    {"SLOTS", true, 4, [](const Row &row) { return shown(row.slots); },
     "of a frame, its highest slot number; of a card, the slots that it occupies"},
    {"PORTS", false, 6, portsCell,
     "of a card, its panel, management (mgt), GCC (gcc) and Ethernet PPP (ppp) ports; of a slot, its inner ports", 14},
    {"FANS", true, 2, [](const Row &row) { return shown(row.fans); }, "the fans of a frame or slot"},
    {"SUPPLIES", true, 1, [](const Row &row) { return shown(row.supplies); }, "the power supplies of a frame or slot"},
    {"LEDS", true, 3, [](const Row &row) { return shown(row.leds); },
     "the LEDs of a frame, with those of its units, or of a card, with those of its ports"},
    {"PLACE", false, 5,
     [](const Row &row) { return std::to_string(row.place.line) + ":" + std::to_string(row.place.column); },
     "line and column in the file"},
    {"QUERY", false, kNever, [](const Row &row) { return std::string(row.isDecoded ? "ok" : "fails"); },
     "whether the query for it succeeds; where it fails, nothing is counted"},
};

std::string describedColumns()
{
    std::string text = "Columns:\n";
    for (const Column &column : kColumns) {
        char line[160];
        std::snprintf(line, sizeof line, "  %-10s%s\n", column.title, column.meaning);
        text += line;
    }
    return text +
           "\nA dash is shown where a column does not apply. On a terminal the table is no wider than the terminal: texts\n"
           "are shortened, and then columns are left out. Exit status: 0 success, 1 a query failed, 64 wrong usage,\n"
           "66 the file cannot be read, 71 out of memory, 74 the output cannot be written.";
}

// The characters of a text in UTF-8.
size_t widthOf(const std::string &text)
{
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

constexpr size_t kLeftOut = SIZE_MAX; // the width of a column that is not shown
constexpr size_t kGap = 2;            // blanks between columns

size_t widthOfTable(const std::vector<size_t> &widths)
{
    size_t width = 0;
    for (const size_t column : widths)
        if (column != kLeftOut)
            width += column + (width == 0 ? 0 : kGap);
    return width;
}

// Fits a table to a terminal as well as possible.
void fit(std::vector<size_t> &widths, size_t terminal)
{
    const auto excess = [&] {
        const size_t width = widthOfTable(widths);
        return width > terminal ? width - terminal : 0;
    };
    const std::vector<size_t> wanted = widths;
    for (const char *title : {"NAME", "PORTS", "TYPE"})
        for (size_t i = 0; i < widths.size(); i++)
            if (std::strcmp(kColumns[i].title, title) == 0)
                widths[i] -= std::min(excess(), widths[i] - std::min(widths[i], kColumns[i].least));
    for (unsigned rank = 1; rank < std::size(kColumns); rank++)
        for (size_t i = 0; i < widths.size(); i++)
            if (kColumns[i].leftOut == rank && excess() != 0)
                widths[i] = kLeftOut;
    // Columns that are left out make space for texts.
    for (size_t i = 0; i < widths.size(); i++)
        if (kColumns[i].least != 0 && widths[i] != kLeftOut)
            widths[i] += std::min(wanted[i] - widths[i], terminal - std::min(terminal, widthOfTable(widths)));
}

// A cell in the width of its column.
std::string fitted(const std::string &cell, size_t width)
{
    constexpr char kCut[] = "...";
    if (widthOf(cell) <= width)
        return cell;
    std::string text = cell;
    while (widthOf(text) + std::strlen(kCut) > width)
        text.pop_back(); // an incomplete character has no width, and is removed with its first bytes
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0xC0)
        text.pop_back();
    return text + kCut;
}

// The header of the table, or a row.
std::string lineOf(const Row *row, const std::vector<size_t> &widths)
{
    std::string line;
    for (size_t i = 0; i < std::size(kColumns); i++) {
        if (widths[i] == kLeftOut)
            continue;
        const std::string cell = fitted(row != nullptr ? kColumns[i].cell(*row) : kColumns[i].title, widths[i]);
        const std::string blanks(widths[i] - widthOf(cell), ' ');
        line += line.empty() ? "" : std::string(kGap, ' ');
        line += kColumns[i].isNumber ? blanks + cell : cell + (i + 1 == std::size(kColumns) ? "" : blanks);
    }
    return line + "\n";
}

// Everything is decoded twice, first to find the widths of the columns: rows may take more memory than the file.
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
    if (const std::optional<size_t> terminal = output.terminalWidth())
        fit(widths, *terminal);
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

// ---- JSON -----------------------------------------------------------------------------------------------------------

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
    entry["ports"] = Json();
    if (row.ports) {
        uint32_t all = 0;
        for (const PortCount &ports : *row.ports)
            all += ports.count;
        entry["ports"] = all;
    }
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
        reportOmitted(*file, outcomes.omitted, "rows", "the file has more types than a device");
    if (!isPrinted)
        return kCannotWrite;
    return outcomes.areAllDecoded && outcomes.omitted == 0 ? kSuccess : kQueryFailed;
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
            [options] { return runList(options->file, options->asJson); },
            describedColumns()};
}
