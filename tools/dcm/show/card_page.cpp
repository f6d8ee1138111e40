#include "led/led.h"
#include "tools/dcm/show/pages.h"
#include "tools/dcm/show/parts.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace dcmtool {

namespace {

// ---- The card -------------------------------------------------------------------------------------------------------

Cell titleOf(const DcmCardInfo &card)
{
    const Record record = recordOf(card);
    const std::string name = record["name"].words();
    const std::string abbreviation = record["abbrName"].words();
    if (abbreviation.empty())
        return {Text(name.empty() ? cardTypeName(card.type) : name, kBold), Text("(no abbreviation)", kDim)};
    return {Text(abbreviation, kBold), name.empty() ? Text("(no name)", kDim) : Text(name)};
}

Section factsOf(const DcmCardInfo &card, const PageContext &context)
{
    const Record record = recordOf(card);
    Table table = {{{"fact"}, {"words", false, 1}}};
    table.hasHeader = false;
    const auto add = [&table](const char *name, const Cell &items) {
        if (!items.empty())
            table.rows.push_back({{Text(name, kDim)}, items});
    };
    Cell controls;
    if (card.isTmuxCtrl != 0)
        controls.emplace_back("terminal multiplexer");
    if (card.isMuxCtrl != 0)
        controls.emplace_back("multiplexer");
    add("carries", itemsOf(record["portTypeCaps"]));
    add("functions", itemsOf(record["supportFuncs"]));
    add("controls", controls);
    if (card.crosslinkSlot != 0)
        add("cross-link", {"to slot " + std::to_string(card.crosslinkSlot)});
    std::string fits;
    for (const std::string &fit : context.fits)
        fits += (fits.empty() ? "" : "; ") + fit;
    add("fits", fits.empty() ? Cell() : Cell{fits});
    return {"", {}, {table}};
}

// ---- Panel ports ----------------------------------------------------------------------------------------------------

// Ports of a panel in the order of their numbers.
class Panel {
public:
    explicit Panel(const DcmCardInfo &card) : ports_(entriesOf(card.panelIf, card.pannelIfNum)), order_(ports_.size())
    {
        std::iota(order_.begin(), order_.end(), size_t{0});
        std::stable_sort(order_.begin(), order_.end(),
                         [this](size_t one, size_t other) { return ports_[one]->portId < ports_[other]->portId; });
        const auto follows = [this](size_t one, size_t other) { return areFolded(order_[one], order_[other]); };
        for (const auto &group : groupAdjacent(order_.size(), follows)) {
            groups_.emplace_back();
            for (const size_t i : group)
                groups_.back().push_back(order_[i]);
        }
    }

    const std::vector<std::vector<size_t>> &groups() const { return groups_; } // of ids minus one
    Record port(size_t i) const { return recordOf(*ports_[i]); }
    const DcmPanelIfInfo &info(size_t i) const { return *ports_[i]; }

    // "1-24"; kAbsent for ports without numbers.
    std::string numbersOf(const std::vector<size_t> &group) const
    {
        const std::vector<uint32_t> numbers = dcmtool::numbersOf(group, [this](size_t i) { return ports_[i]->portId; });
        const bool haveNumbers = std::find(numbers.begin(), numbers.end(), DCM_PORT_UNSPEC) == numbers.end();
        return haveNumbers ? rangesOf(numbers) : kAbsent;
    }

    static std::string idsOf(const std::vector<size_t> &group)
    {
        return rangesOf(group, [](size_t i) { return i + 1; });
    }

private:
    bool areFolded(size_t one, size_t other) const
    {
        const DcmPanelIfInfo &first = *ports_[one];
        const DcmPanelIfInfo &second = *ports_[other];
        const bool areAdjacent =
            first.portId == DCM_PORT_UNSPEC ? second.portId == DCM_PORT_UNSPEC : first.portId + 1 == second.portId;
        return areAdjacent && other == one + 1 && areEqual(recordOf(first), recordOf(second), {"portId", "wavelength"});
    }

    std::vector<const DcmPanelIfInfo *> ports_;
    std::vector<size_t> order_;
    std::vector<std::vector<size_t>> groups_;
};

// "21-22": channels in the order of the ports; one if all have the same.
std::string channelsOf(const Panel &panel, const std::vector<size_t> &group)
{
    std::vector<uint32_t> channels = numbersOf(group, [&panel](size_t i) { return panel.info(i).wavelength; });
    if (std::all_of(channels.begin(), channels.end(), [&](uint32_t channel) { return channel == channels[0]; }))
        channels.resize(1);
    return channels == std::vector<uint32_t>{0} ? std::string() : "channel " + rangesOf(channels);
}

Cell extrasOf(const Panel &panel, const std::vector<size_t> &group)
{
    const DcmPanelIfInfo &info = panel.info(group[0]);
    const Record port = panel.port(group[0]);
    Cell extras;
    const auto addIf = [&extras](bool isThere, const char *word) {
        if (isThere)
            extras.emplace_back(word);
    };
    addIf(info.hidden != 0, "hidden");
    addIf(info.bpPort != 0, "backplane");
    addIf(info.supportPoe != 0, "PoE");
    for (const Text &item : laserOf(info.supportLaser != 0, info.supportMediaChg != 0))
        extras.push_back(item);
    addIf(info.supportPhyChg != 0, "rate changes");
    addIf(info.supportSplit != 0, "splits");
    if (port["gccBitOrder"].isGiven())
        extras.emplace_back("gcc " + port["gccBitOrder"].words());
    extras.emplace_back(channelsOf(panel, group));
    for (const Text &place : placesOf(port))
        extras.push_back(place);
    if (info.portIdOffset != 0)
        extras.emplace_back("id offset " + port["portIdOffset"].words());
    extras.emplace_back(port["modelName"].words());
    return extras;
}

Table portTable(const Panel &panel)
{
    Table table = {
        {{"port"}, {"id"}, {"", true}, {"kind"}, {"use"}, {"medium"}, {"mode"}, {"driver"}, {"group", true}, {"with"}}};
    for (const auto &group : panel.groups()) {
        const Record port = panel.port(group[0]);
        const DcmPanelIfInfo &info = panel.info(group[0]);
        const std::string numbers = panel.numbersOf(group);
        const std::string ids = Panel::idsOf(group);
        table.rows.push_back({{numbers},
                              {Text(ids == numbers ? "" : ids, kDim)},
                              {Text(std::to_string(group.size()) + "×", kDim)},
                              {kindOf(port)},
                              {given(port, "portType")},
                              {given(port, "connectorType")},
                              {given(port, "workmode")},
                              // Nearly all ports have the first driver.
                              {info.drvType == 1   ? ""
                               : info.drvType == 0 ? "none"
                                                   : port["drvType"].words()},
                              {given(port, "groupId")},
                              extrasOf(panel, group)});
    }
    return table;
}

// Lists of words that ports share: each list once, with its ports.
Table capabilityTable(const Panel &panel)
{
    constexpr struct {
        const char *name;
        const char *field;
    } kLists[] = {{"PoE", "poeStandardCaps"},
                  {"inrush", "poeInrushCaps"},
                  {"transceivers", "transceiverCaps"},
                  {"protocols", "layerProtoCaps"},
                  {"optical modes", "opticalChnCaps"}};
    Table table = {{{"list"}, {"ports"}, {"words", false, 1}}};
    table.hasHeader = false;
    for (const auto &list : kLists) {
        std::vector<std::vector<size_t>> groups; // of ports with the same list
        for (const auto &ports : panel.groups()) {
            const Record port = panel.port(ports[0]);
            const Field &field = port.field(list.field);
            if (!port[field].isGiven())
                continue;
            const auto isSame = [&](const auto &group) { return panel.port(group[0]).isSame(field, port); };
            const auto found = std::find_if(groups.begin(), groups.end(), isSame);
            if (found != groups.end())
                found->insert(found->end(), ports.begin(), ports.end());
            else
                groups.push_back(ports);
        }
        bool isFirst = true;
        for (const auto &group : groups) {
            const std::string numbers = panel.numbersOf(group);
            table.rows.push_back({{Text(isFirst ? list.name : "", kDim)},
                                  {numbers == kAbsent ? "id " + Panel::idsOf(group) : numbers},
                                  itemsOf(panel.port(group[0])[list.field])});
            isFirst = false;
        }
    }
    return table;
}

Section panelSection(const DcmCardInfo &card)
{
    const bool isThere = card.pannelIfNum != 0 || card.hideIfNum != 0 || card.pannelLineIfNum != 0 ||
                         card.panneClientIfNum != 0 || card.panneIfStartPortId != 0 || card.panelIfMaxPortId != 0;
    if (!isThere)
        return {"Panel ports"};
    Cell note = {countOf(card.pannelIfNum, "port")};
    if (card.pannelLineIfNum != 0 || card.panneClientIfNum != 0)
        note.emplace_back(std::to_string(card.pannelLineIfNum) + " line, " + std::to_string(card.panneClientIfNum) +
                          " client");
    if (card.hideIfNum != 0)
        note.emplace_back(std::to_string(card.hideIfNum) + " hidden");
    note.emplace_back("numbers " + std::to_string(card.panneIfStartPortId) + "–" +
                      std::to_string(card.panelIfMaxPortId));
    const Panel panel(card);
    return {"Panel ports", note, {portTable(panel), capabilityTable(panel)}};
}

// ---- Other ports ----------------------------------------------------------------------------------------------------

std::string numberOf(uint16_t portId, uint16_t absent = DCM_PORT_UNSPEC)
{
    return portId == absent ? kAbsent : std::to_string(portId);
}

Section managementSection(const DcmCardInfo &card)
{
    Table table = {{{"name"}, {"port", true}, {"kind"}, {"mode"}, {"driver"}, {"transceivers", false, 1}, {"with"}}};
    for (const DcmMethIfInfo *info : entriesOf(card.methIf, card.methIfNum)) {
        const Record port = recordOf(*info);
        const std::string name = port["ifName"].words();
        Cell extras = laserOf(info->supportLaser != 0, info->supportMediaChg != 0);
        for (const Text &place : placesOf(port))
            extras.push_back(place);
        table.rows.push_back({{name.empty() ? kAbsent : name},
                              {numberOf(info->portId)},
                              {kindOf(port)},
                              {given(port, "workmode")},
                              {info->drvType == 0 ? "none" : port["drvType"].words()},
                              itemsOf(port["transceiverCaps"]),
                              extras});
    }
    return {"Management ports", {}, {table}};
}

Section innerSection(const DcmCardInfo &card)
{
    Cell overhead;
    for (const DcmGccIfInfo *info : entriesOf(card.gccIf, card.gccIfNum)) {
        const Record port = recordOf(*info);
        Text item(numberOf(info->portId));
        item.add(" ").append(kindOf(port));
        for (const Text &place : placesOf(port))
            item.add(" ").append(place);
        overhead.push_back(item);
    }
    Cell ppp;
    for (const DcmEthpppIfInfo *info : entriesOf(card.ethpppIf, card.ethpppIfNum))
        ppp.emplace_back(numberOf(info->portId, 0));
    Table table = {{{"channel"}, {"ports"}}};
    table.hasHeader = false;
    if (!overhead.empty())
        table.rows.push_back({{Text("overhead (gcc)", kDim)}, overhead});
    if (!ppp.empty())
        table.rows.push_back({{Text("Ethernet over PPP", kDim)}, ppp});
    return {"Inner channels", {}, {table}};
}

// ---- Parts ----------------------------------------------------------------------------------------------------------

Text nameOf(const Record &part)
{
    const std::string name = part["modelName"].words();
    return name.empty() ? Text("(no model)", kDim) : Text(name);
}

Text usageOf(const Record &part)
{
    if (!part["lowThreshold"].isGiven() && !part["highThreshold"].isGiven())
        return {};
    const std::string unit = std::string(" ") + part.field("lowThreshold").unit;
    return {"usage " + part["lowThreshold"].words() + unit + " low, " + part["highThreshold"].words() + unit + " high"};
}

Table modelTable(const DcmCardInfo &card)
{
    Table table = {{{"model"}, {"part"}}};
    table.hasHeader = false;
    const auto cpus = entriesOf(card.cpu, card.cpuNum);
    for (size_t i = 0; i < cpus.size(); i++) {
        const Record cpu = recordOf(*cpus[i]);
        Cell facts = {"cpu", unexpectedIdOf(cpus[i]->id, i)};
        if (cpus[i]->coreNum != 0)
            facts.emplace_back(countOf(cpus[i]->coreNum, "core"));
        if (cpus[i]->freq != 0)
            facts.emplace_back(cpu["freq"].words() + " " + cpu.field("freq").unit);
        facts.push_back(usageOf(cpu));
        table.rows.push_back({{nameOf(cpu)}, facts});
    }
    const auto memories = entriesOf(card.memory, card.memoryNum);
    for (size_t i = 0; i < memories.size(); i++) {
        const Record memory = recordOf(*memories[i]);
        const std::string type = given(memory, "type");
        table.rows.push_back(
            {{nameOf(memory)}, {type.empty() ? "memory" : type, unexpectedIdOf(memories[i]->id, i), usageOf(memory)}});
    }
    const auto addChip = [&table](const char *name, const DcmChipInfo &info, uint8_t count) {
        const Record chip = recordOf(info);
        if (count != 0 || chip["modelName"].isGiven())
            table.rows.push_back(
                {{nameOf(chip)}, {name, count == 1 ? Text() : Text(std::to_string(count) + " announced", kDim)}});
    };
    addChip("switch chip", card.switchChip, card.switchChipNum);
    addChip("clock chip", card.clockChip, card.clockChipNum);
    return table;
}

Table componentTable(const DcmCardInfo &card)
{
    Table table = {{{"count", true}, {"part"}, {"class"}, {"subtype"}}};
    for (const DcmComponentInfo *info : entriesOf(card.component, card.componentNum)) {
        const Record component = recordOf(*info);
        table.rows.push_back({{Text(component["num"].words() + "×", kDim)},
                              {component["description"].words()},
                              {component["entityClass"].words()},
                              {component["subType"].words()}});
    }
    return table;
}

Section voltageSection(const DcmCardInfo &card)
{
    Table table = {{{"rail"}, {"low", true}, {"high", true}, {"monitor"}}};
    const auto sensors = entriesOf(card.voltage, card.voltageNum);
    for (size_t i = 0; i < sensors.size(); i++) {
        const Record sensor = recordOf(*sensors[i]);
        const std::string name = sensor["description"].words();
        const std::string unexpectedId = unexpectedIdOf(sensors[i]->id, i);
        Text rail(name.empty() ? "rail " + std::to_string(i + 1) : name);
        rail.add(unexpectedId.empty() ? "" : " " + unexpectedId, kDim);
        table.rows.push_back(
            {{rail}, {given(sensor, "lowThreshold")}, {given(sensor, "highThreshold")}, {sensor["modelName"].words()}});
    }
    return {"Voltage", sensors.empty() ? Cell() : Cell{"as written; millivolts by custom"}, {table}};
}

} // namespace

// ---- The page -------------------------------------------------------------------------------------------------------

std::string cardTypeName(uint32_t type)
{
    char name[sizeof "0x12345678"];
    std::snprintf(name, sizeof name, "0x%04x", static_cast<unsigned>(type));
    return name;
}

Page pageOf(const DcmCardInfo &card, const PageContext &context)
{
    const std::vector<Unit> units = {unitOf("", "", 0, card, card.led, ownAttachment(dcm::kAttachCard))};
    std::vector<const DcmPortLedInfo *> runs;
    const Record record = recordOf(card);
    for (const FieldValue run : record.valuesOf(record.field("portLed")))
        runs.push_back(&card.portLed[run.entry()]);

    Page page;
    page.title = titleOf(card);
    page.place = {"card " + cardTypeName(card.type), "mode " + std::to_string(card.mode),
                  countOf(card.occupySlotNum, "slot"), context.place};
    page.sections = {
        factsOf(card, context),
        panelSection(card),
        managementSection(card),
        innerSection(card),
        {"Parts", {}, {modelTable(card), componentTable(card)}},
        temperatureSection(units),
        voltageSection(card),
        ledSection(units, runs),
        ledMapSection(units, context.sourceOf),
    };
    if (card.ledNum != 0 || !runs.empty())
        page.legend = ledLegend();
    return page;
}

} // namespace dcmtool
