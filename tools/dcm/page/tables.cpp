#include "tools/dcm/page/tables.h"

#include "common/bits.h"
#include "common/vocabularies.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/parts.h"
#include "tools/dcm/page/html.h"
#include "tools/dcm/records/inner_port.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

namespace {

std::string number(uint32_t value)
{
    return std::to_string(value);
}

// The text of a field; empty where the description has none.
std::string unless(uint32_t value, uint32_t absent)
{
    return value == absent ? "" : number(value);
}

std::string signedNumber(uint16_t value)
{
    return std::to_string(static_cast<int16_t>(value));
}

std::string between(uint32_t least, uint32_t most)
{
    return least == 0 && most == 0 ? "" : number(least) + "–" + number(most);
}

std::string signedBetween(uint16_t least, uint16_t most)
{
    return least == 0 && most == 0 ? "" : signedNumber(least) + " … " + signedNumber(most);
}

template <size_t Size> std::string listOf(const uint8_t (&bits)[Size])
{
    std::vector<uint32_t> numbers;
    for (uint32_t bit = 0; bit < Size * 8; bit++)
        if (dcm::_dcmBitTest(bits, bit) != 0)
            numbers.push_back(bit + 1);
    return ranges(numbers);
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

std::string statesOf(uint32_t type, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
{
    const std::string key = ledKey(type, states);
    std::string html;
    for (const LedDisplay &display : ledDisplays(type, states))
        html += stateOf(display, key);
    return html.empty() ? "<small>no states described</small>" : html;
}

// LEDs with the same states share a row.
void addLeds(HtmlTable &table, const DcmLedInfo *leds, size_t count, const std::string &owner)
{
    for (size_t i = 0; i < count;) {
        size_t end = i + 1;
        while (end < count && leds[end].ledType == leds[i].ledType && areEqual(leds[end].states, leds[i].states))
            end++;
        std::string name = ledName(leds[i], leds, count);
        if (end - i > 1) {
            std::vector<uint32_t> ids;
            for (size_t at = i; at < end; at++)
                ids.push_back(leds[at].id);
            name = ledType(leds[i].ledType) + " " + ranges(ids);
        }
        table.rows.push_back({{{name}, {owner}, {"", "", statesOf(leds[i].ledType, leds[i].states)}}});
        i = end;
    }
}

// The "src-7/1" of the element, as it is written.
std::string sourceOf(const Places &places, const std::string &path)
{
    const dcm::Node node = places.nodeOf(path);
    if (node == nullptr)
        return "";
    const dcm::Text text = dcm::Text::attribute(node, "src", dcm::Reporter{"dcm"});
    return text ? shownText(text.c_str(), text.length()) : "";
}

std::string shownState(uint32_t type, uint32_t state)
{
    const dcm::Vocabulary *words = dcm::ledStateWords(type);
    return words != nullptr ? writtenWord(*words, state) : state == 0 ? "default" : "#" + number(state);
}

void addMap(HtmlTable &table, const DcmLedMapInfo &map, const std::string &owner, const std::string &prefix,
            const Places &places)
{
    for (size_t i = 0; i < std::min<size_t>(map.num, DCM_LED_MAP_MAX); i++) {
        const DcmLedHead &led = map.mapEntries[i];
        std::vector<std::string> pairs;
        for (size_t pair = 0; pair < std::min<size_t>(led.statMapNum, DCM_LED_STATE_MAX); pair++) {
            const std::string state = shownState(led.srcType, led.srcState[pair]);
            const std::string to = shownState(led.ledType, led.ledState[pair]);
            pairs.push_back(state == to ? state : joined({state, to}, "→"));
        }
        const std::string source = sourceOf(places, prefix + "ledMap." + std::to_string(i));
        const std::string type = led.srcType == led.ledType ? "" : ledType(led.srcType);
        const std::string from = joined({source, type.empty() ? "" : "a " + type}, ", ");
        const std::string shows = from.empty() && pairs.empty() ? "itself" : from;
        TableRow row = {{{ledType(led.ledType) + " " + number(led.id)}, {owner}, {shows}, {joined(pairs, ", ")}}};
        const auto isAlike = [&](const TableRow &other) {
            return std::equal(row.cells.begin() + 1, row.cells.end(), other.cells.begin() + 1,
                              [](const Cell &one, const Cell &same) { return one.text == same.text; });
        };
        if (!table.rows.empty() && isAlike(table.rows.back()))
            table.rows.back().cells[0].text += ", " + row.cells[0].text;
        else
            table.rows.push_back(std::move(row));
    }
}

std::vector<std::string> ledHeads()
{
    return {"LED", "of", "states, by priority"};
}
std::vector<std::string> mapHeads()
{
    return {"LED", "of", "shows the state of", "translated"};
}

// ---- Sensors, fans --------------------------------------------------------------------------------------------------

std::vector<std::string> temperatureHeads()
{
    return {"sensor",    "of",   "at",          "alarm °C", "act above",
            "act below", "work", "on overflow", "actions",  "fan controllers"};
}

TableRow temperatureRow(const DcmTemperatureInfo &sensor, const std::string &owner, const std::string &id)
{
    return {{{sensorName(sensor)},
             {owner},
             {writtenWord(dcm::kTemperTypeWords, sensor.type)},
             {signedNumber(sensor.lowThreshold) + " … " + signedNumber(sensor.highThreshold)},
             {signedNumber(sensor.actionHighThreshold),
              signedBetween(sensor.actionHighThresholdMin, sensor.actionHighThresholdMax)},
             {signedNumber(sensor.actionLowThreshold),
              signedBetween(sensor.actionLowThresholdMin, sensor.actionLowThresholdMax)},
             {number(sensor.workThreshold), sensor.workReserved == 0 ? "" : "reserved " + number(sensor.workReserved)},
             {sensor.overflowAction == 0 ? "" : "action " + number(sensor.overflowAction),
              sensor.overflowMaxNum == 0 ? "" : "after " + number(sensor.overflowMaxNum)},
             {listOf(sensor.actionCapability)},
             {sensor.fanCtrlBitsInvalid != 0 ? "unreadable" : listOf(sensor.fanCtrlBits)}},
            id};
}

std::vector<std::string> fanCtrlHeads()
{
    return {"controller", "#fans", "#mode", "#level", "#speed", "low alarm", "high alarm", "forced", "cools"};
}

void addFanCtrl(HtmlTable &table, const DcmFanCtrlInfo &info, size_t index, const std::string &cooled)
{
    table.rows.push_back(
        {{{number(static_cast<uint32_t>(index) + 1)},
          {number(info.fanNum)},
          {number(info.workMode)},
          {number(info.speedLevel), between(info.speedLevelMin, info.speedLevelMax)},
          {number(info.speed)},
          {number(info.speedLowThreshold), between(info.speedLowThresholdMin, info.speedLowThresholdMax)},
          {number(info.speedHighThreshold), between(info.speedHighThresholdMin, info.speedHighThresholdMax)},
          {unless(info.speedLevelForce, 0)},
          {cooled}}});
}

// ---- Cards ----------------------------------------------------------------------------------------------------------

class CardTables {
public:
    explicit CardTables(const CardView &view)
        : view_(view), card_(view.card), groups_(portGroups(view.card)),
          prefix_("card-" + hexadecimal(view.typeId) + "-" + number(view.card.mode) + ".")
    {
    }

    std::string make() const
    {
        return factsOf(
                   {{"carries", writtenWords(dcm::kPortTypeCapWords, card_.portTypeCaps, sizeof card_.portTypeCaps)},
                    {"functions",
                     writtenWords(dcm::kCardSupportFuncWords, card_.supportFuncs, sizeof card_.supportFuncs)},
                    {"controls", joined({card_.isTmuxCtrl == 1 ? "tmux" : "", card_.isMuxCtrl == 1 ? "mux" : ""}, " ")},
                    {"cross-link slot", unless(card_.crosslinkSlot, 0)}}) +
               "<div class=blocks>" + panelPorts() + managementPorts() + innerChannels() + parts() + voltages() +
               leds() + ledMap() + "</div>\n" + temperatures();
    }

private:
    std::string idOf(const char *array, size_t index) const { return prefix_ + array + "." + std::to_string(index); }

    static std::string numbersOf(const DcmPanelIfInfo &first, const DcmPanelIfInfo &last)
    {
        return first.portId == DCM_PORT_UNSPEC ? "?" : range(first.portId, last.portId);
    }

    std::string panelPorts() const
    {
        HtmlTable table = {
            {"port", "#n", "kind", "use", "medium", "mode", "driver", "#group", "place", "model", "with"}};
        for (const PortGroup &group : groups_) {
            const DcmPanelIfInfo &port = card_.panelIf[group.ports.front()];
            const DcmPanelIfInfo &last = card_.panelIf[group.ports.back()];
            std::string driver = port.drvType == 0 ? "" : writtenWord(dcm::kDriverTypeWords, port.drvType);
            if (driver == "cdl")
                driver.clear();
            std::string use = writtenWord(dcm::kPortTypeWords, port.portType);
            if (use == "unassigned")
                use.clear();
            const auto flag = [](uint32_t value, const char *name) { return value == 1 ? name : ""; };
            const std::string with =
                joined({flag(port.supportPoe, "PoE"), flag(port.supportLaser, "laser"),
                        flag(port.supportPhyChg, "rate changes"), flag(port.supportSplit, "splits"),
                        port.supportLaser == 1 && port.supportMediaChg != 1 ? "medium fixed" : "",
                        flag(port.bpPort, "backplane"), flag(port.hidden, "hidden"),
                        port.gccBitOrder != 0 ? "GCC " + writtenWord(dcm::kBitOrderWords, port.gccBitOrder) : "",
                        channelsOf(card_, group)});
            table.rows.push_back(
                {{{numbersOf(port, last)},
                  {group.ports.size() > 1 ? std::to_string(group.ports.size()) + "×" : ""},
                  {portKind(port.phyType)},
                  {use},
                  {port.connectorType == 0 ? "" : writtenWord(dcm::kConnectorWords, port.connectorType)},
                  {port.workmode == 0 ? "" : writtenWord(dcm::kWorkmodeWords, port.workmode)},
                  {driver},
                  {unless(port.groupId, 0)},
                  {placeOf(port.slotId, port.cardId)},
                  {shownText(port.modelName, sizeof port.modelName)},
                  {with}}});
        }
        return blockOf("Panel ports", panelNote(), htmlOf(table) + capabilities(), true);
    }

    std::string panelNote() const
    {
        const auto part = [](uint32_t count, const char *what) { return count == 0 ? "" : number(count) + what; };
        const std::string numbers = card_.panelIfMaxPortId == 0 && card_.panneIfStartPortId == 0
                                        ? ""
                                        : "numbers " + range(card_.panneIfStartPortId, card_.panelIfMaxPortId);
        return joined({counted(card_.pannelIfNum, "port"),
                       joined({part(card_.pannelLineIfNum, " line"), part(card_.panneClientIfNum, " client")}, ", "),
                       part(card_.hideIfNum, " hidden"), numbers});
    }

    static std::string placeOf(uint32_t slot, uint32_t card)
    {
        return joined(
            {slot == DCM_ID_UNSPEC ? "" : "slot " + number(slot), card == DCM_ID_UNSPEC ? "" : "card " + number(card)},
            ", ");
    }

    // Each list once, with its ports.
    std::string capabilities() const
    {
        struct Kind {
            const char *name;
            std::string (*wordsOf)(const DcmPanelIfInfo &port);
        };
        const Kind kinds[] = {
            {"PoE",
             [](const DcmPanelIfInfo &port) {
                 return writtenWords(dcm::kPoeStandardCapWords, port.poeStandardCaps, sizeof port.poeStandardCaps);
             }},
            {"inrush",
             [](const DcmPanelIfInfo &port) {
                 return writtenWords(dcm::kPoeInrushCapWords, port.poeInrushCaps, sizeof port.poeInrushCaps);
             }},
            {"transceivers",
             [](const DcmPanelIfInfo &port) {
                 return writtenWords(dcm::kTransceiverCapWords, port.transceiverCaps, sizeof port.transceiverCaps, 1);
             }},
            {"protocols",
             [](const DcmPanelIfInfo &port) {
                 return writtenWords(dcm::kLayerProtoCapWords, port.layerProtoCaps, sizeof port.layerProtoCaps);
             }},
            {"optical modes",
             [](const DcmPanelIfInfo &port) {
                 return writtenWords(dcm::kOpticalChnCapWords, port.opticalChnCaps, sizeof port.opticalChnCaps);
             }},
        };
        HtmlTable table = {{"capability", "ports", "words"}};
        for (const Kind &kind : kinds) {
            std::vector<std::pair<std::string, std::vector<uint32_t>>> lists;
            for (const PortGroup &group : groups_)
                for (const size_t index : group.ports) {
                    const std::string words = kind.wordsOf(card_.panelIf[index]);
                    if (words.empty())
                        continue;
                    auto list =
                        std::find_if(lists.begin(), lists.end(), [&](const auto &one) { return one.first == words; });
                    if (list == lists.end())
                        list = lists.insert(lists.end(), {words, {}});
                    list->second.push_back(card_.panelIf[index].portId);
                }
            const char *name = kind.name;
            for (const auto &[words, ports] : lists) {
                table.rows.push_back({{{name}, {ranges(ports)}, {"", "", chipsOf(wordsIn(words))}}});
                name = "";
            }
        }
        return htmlOf(table);
    }

    static std::vector<std::string> wordsIn(const std::string &text)
    {
        std::vector<std::string> words;
        for (size_t at = 0; at < text.size();) {
            const size_t end = std::min(text.find(' ', at), text.size());
            words.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        return words;
    }

    std::string managementPorts() const
    {
        HtmlTable table = {{"port", "name", "kind", "connector", "mode", "driver", "place", "with", "transceivers"}};
        for (size_t i = 0; i < std::min<size_t>(card_.methIfNum, DCM_METH_IF_MAX); i++) {
            const DcmMethIfInfo &port = card_.methIf[i];
            table.rows.push_back(
                {{{portNumber(port.portId)},
                  {shownText(port.ifName, sizeof port.ifName)},
                  {portKind(port.phyType)},
                  {portShape(port) == Shape::sfp ? "SFP" : "RJ45", "derived"},
                  {writtenWord(dcm::kWorkmodeWords, port.workmode)},
                  {port.drvType == 0 ? "" : writtenWord(dcm::kDriverTypeWords, port.drvType)},
                  {placeOf(port.slotId, port.cardId)},
                  {joined({port.supportLaser == 1 ? "laser" : "",
                           port.supportLaser == 1 && port.supportMediaChg != 1 ? "medium fixed" : ""})},
                  {"", "",
                   chipsOf(wordsIn(writtenWords(dcm::kTransceiverCapWords, port.transceiverCaps,
                                                sizeof port.transceiverCaps, 1)))}}});
        }
        return blockOf("Management ports", "", htmlOf(table));
    }

    std::string innerChannels() const
    {
        HtmlTable table = {{"channel", "port", "kind", "place"}};
        for (size_t i = 0; i < std::min<size_t>(card_.gccIfNum, DCM_GCC_IF_MAX); i++) {
            const DcmGccIfInfo &port = card_.gccIf[i];
            table.rows.push_back({{{"gcc " + std::to_string(i + 1)},
                                   {portNumber(port.portId)},
                                   {portKind(port.phyType)},
                                   {placeOf(port.slotId, port.cardId)}},
                                  idOf("gccIf", i)});
        }
        for (size_t i = 0; i < std::min<size_t>(card_.ethpppIfNum, DCM_ETHPPP_IF_MAX); i++)
            table.rows.push_back(
                {{{"ethppp " + std::to_string(i + 1)}, {portNumber(card_.ethpppIf[i].portId)}, {""}, {""}},
                 idOf("ethpppIf", i)});
        return blockOf("Inner channels", "", htmlOf(table));
    }

    std::string parts() const
    {
        HtmlTable table = {{"part", "what", "#n", "#subtype", "cores", "frequency", "usage alarm %"}};
        const auto add = [&](const std::string &part, const std::string &what, const std::string &cores = "",
                             const std::string &frequency = "", const std::string &alarm = "") {
            table.rows.push_back({{{part}, {what}, {""}, {""}, {cores}, {frequency}, {alarm}}});
        };
        for (const auto &[name, chip] : {std::pair<const char *, const DcmChipInfo *>{"switch chip", &card_.switchChip},
                                         {"clock chip", &card_.clockChip}})
            if (const std::string model = shownText(chip->modelName, sizeof chip->modelName); !model.empty())
                add(name, model);
        for (size_t i = 0; i < std::min<size_t>(card_.cpuNum, DCM_CPU_MAX); i++) {
            const DcmCpuInfo &cpu = card_.cpu[i];
            add("cpu " + std::to_string(i + 1), shownText(cpu.modelName, sizeof cpu.modelName), unless(cpu.coreNum, 0),
                unless(cpu.freq, 0), number(cpu.lowThreshold) + " … " + number(cpu.highThreshold));
        }
        for (size_t i = 0; i < std::min<size_t>(card_.memoryNum, DCM_MEMORY_MAX); i++) {
            const DcmMemoryInfo &memory = card_.memory[i];
            add((memory.type == 0 ? "memory" : writtenWord(dcm::kMemoryTypeWords, memory.type)) + " " +
                    std::to_string(i + 1),
                shownText(memory.modelName, sizeof memory.modelName), "", "",
                number(memory.lowThreshold) + " … " + number(memory.highThreshold));
        }
        for (size_t i = 0; i < std::min<size_t>(card_.componentNum, DCM_COMPONENT_MAX); i++) {
            const DcmComponentInfo &component = card_.component[i];
            table.rows.push_back({{{className(component.entityClass)},
                                   {shownText(component.description, sizeof component.description)},
                                   {number(component.num)},
                                   {number(component.subType)},
                                   {""},
                                   {""},
                                   {""}}});
        }
        return blockOf("Parts", "", htmlOf(table));
    }

    // A class is the platform's number, not the row of the table.
    static std::string className(uint32_t value)
    {
        for (const auto &row : gDcmEttClass) {
            uint32_t number = 0;
            if (dcmEttClassStr2Val(reinterpret_cast<const unsigned char *>(row), &number) == 0 && number == value)
                return shownText(row, sizeof row);
        }
        return "class " + number(value);
    }

    std::string temperatures() const
    {
        HtmlTable table = {temperatureHeads()};
        for (size_t i = 0; i < std::min<size_t>(card_.temperatureNum, DCM_CARD_TEMPERATURE_MAX); i++)
            table.rows.push_back(temperatureRow(card_.temperature[i], "", idOf("temperature", i)));
        return blockOf("Temperature", "thresholds with their limits", htmlOf(table));
    }

    std::string voltages() const
    {
        HtmlTable table = {{"rail", "#low alarm", "#high alarm", "monitor"}};
        for (size_t i = 0; i < std::min<size_t>(card_.voltageNum, DCM_VOLTAGE_MAX); i++) {
            const DcmVoltageInfo &sensor = card_.voltage[i];
            const std::string name = shownText(sensor.description, sizeof sensor.description);
            table.rows.push_back({{{name.empty() ? std::to_string(i + 1) : name},
                                   {number(sensor.lowThreshold)},
                                   {number(sensor.highThreshold)},
                                   {shownText(sensor.modelName, sizeof sensor.modelName)}},
                                  idOf("voltage", i)});
        }
        return blockOf("Voltage", "as written; millivolts by custom", htmlOf(table));
    }

    std::string leds() const
    {
        HtmlTable table = {ledHeads()};
        addLeds(table, card_.led, std::min<size_t>(card_.ledNum, DCM_LED_MAX), "");
        for (size_t i = 0; i < DCM_PORT_LED_MAX && card_.portLed[i].endId != 0; i++) {
            const DcmPortLedInfo &run = card_.portLed[i];
            const std::string prefix = shownText(run.namePrefix, sizeof run.namePrefix);
            const std::string type = ledType(run.ledType);
            table.rows.push_back({{{prefix + range(run.startId, run.endId), prefix == type ? "" : type},
                                   {""},
                                   {"", "", statesOf(run.ledType, run.states)}},
                                  idOf("portLed", i)});
        }
        return blockOf("LEDs", "a state lights all LEDs of the same kind", htmlOf(table));
    }

    std::string ledMap() const
    {
        HtmlTable table = {mapHeads()};
        addMap(table, card_.ledMap, "", "", view_.places);
        return blockOf("LED map", "", htmlOf(table));
    }

    const CardView &view_;
    const DcmCardInfo &card_;
    std::vector<PortGroup> groups_;
    std::string prefix_;
};

// ---- Frames ---------------------------------------------------------------------------------------------------------

class FrameTables {
public:
    explicit FrameTables(const FrameView &view) : view_(view), frame_(view.frame) {}

    std::string make() const
    {
        std::vector<std::string> words;
        for (const uint32_t word : frame_.cardTypeCaps)
            if (word != 0)
                words.push_back(hexadecimal(word, 8));
        return factsOf({{"card type words", joined(words, " ")}}) + "<div class=blocks>" + slots() + fanModules() +
               supplies() + leds() + ledMap() + "</div>\n" + fanControllers() + temperatures();
    }

private:
    static std::string nameOf(const char *unit, size_t index) { return unit + std::to_string(index + 1); }
    size_t moduleCount() const { return std::min<size_t>(frame_.fanModuleNum, DCM_FAN_MODULE_MAX); }
    size_t supplyCount() const { return std::min<size_t>(frame_.powerNum, DCM_POWER_MAX); }

    std::string kindsOf(uint32_t slot) const
    {
        const DcmSlotmapInfo &map = frame_.slotmap;
        const std::pair<const uint8_t *, const char *> kinds[] = {{map.mpu, "control"}, {map.lpu, "line"},
                                                                  {map.sfu, "fabric"},  {map.fan, "fan"},
                                                                  {map.lcd, "display"}, {map.power, "power"}};
        std::vector<std::string> names;
        for (const auto &[bits, name] : kinds)
            if (dcm::_dcmBitTest(bits, slot - 1) != 0)
                names.emplace_back(name);
        return joined(names, ", ");
    }

    TableRow ruleOf(uint32_t slot) const
    {
        const uint32_t index = slot - 1;
        const std::vector<std::string> names = acceptedCards(view_, slot);
        const bool spans = dcm::_dcmBitTest(frame_.supportCrossSlot, index) != 0;
        return {{{""},
                 {kindsOf(slot)},
                 {number(frame_.maxCardNum[index])},
                 {frame_.maxCardNum[index] == 0 ? "" : number(frame_.startCardId[index])},
                 {spans ? listOf(frame_.crossSlotBit[index]) : ""},
                 {names.empty() ? "no card" : joined(names)}}};
    }

    // Adjacent slots with the same rule share a row, also if each spans others.
    std::string slots() const
    {
        constexpr size_t kSpan = 4;
        HtmlTable table = {{"slot", "kind", "#cards", "#first id", "a card may span", "accepts"}};
        const auto isEqual = [](const TableRow &one, const TableRow &other) {
            for (size_t i = 1; i < one.cells.size(); i++)
                if (i == kSpan ? one.cells[i].text.empty() != other.cells[i].text.empty()
                               : one.cells[i].text != other.cells[i].text)
                    return false;
            return true;
        };
        std::vector<uint32_t> slots;
        std::string span;
        for (uint32_t slot = 1; slot <= DCM_SLOT_MAX; slot++) {
            if (slot > frame_.maxSlotId && kindsOf(slot).empty())
                continue;
            TableRow row = ruleOf(slot);
            const std::string own = row.cells[kSpan].text;
            if (slots.empty() || !isEqual(table.rows.back(), row)) {
                table.rows.push_back(std::move(row));
                slots.clear();
            } else if (own != span) {
                table.rows.back().cells[kSpan].text += " · " + own;
            }
            span = own;
            slots.push_back(slot);
            table.rows.back().cells[0].text = ranges(slots);
        }
        return blockOf("Slots", "", htmlOf(table), true);
    }

    std::string fanModules() const
    {
        HtmlTable table = {{"module", "#slot", "#fans", "driven by controller"}};
        for (size_t i = 0; i < moduleCount(); i++) {
            const DcmFanModuleInfo &module = frame_.fanModuleInfo[i];
            std::vector<std::string> fans;
            for (size_t fan = 0; fan < std::min<size_t>(module.fanNum, DCM_FAN_MAX); fan++)
                fans.push_back(std::to_string(fan + 1) + "→" + number(module.fan[fan].fanCtrlId));
            table.rows.push_back(
                {{{std::to_string(i + 1)}, {unless(module.slot, 0)}, {number(module.fanNum)}, {joined(fans, ", ")}}});
        }
        return blockOf("Fan modules", "", htmlOf(table));
    }

    std::string fanControllers() const
    {
        HtmlTable table = {fanCtrlHeads()};
        for (size_t i = 0; i < std::min<size_t>(frame_.fanCtrlNum, DCM_FAN_CTRL_MAX); i++) {
            const DcmFanCtrlMapInfo &map = frame_.fanCtrlMap[i];
            const auto part = [](const char *what, const std::string &list) { return list.empty() ? "" : what + list; };
            addFanCtrl(table, frame_.fanCtrlInfo[i], i,
                       joined({part("slots ", listOf(map.cardBits)), part("modules ", listOf(map.fanModuleBits)),
                               part("supplies ", listOf(map.powerBits))}));
        }
        return blockOf("Fan controllers", "levels and speeds in the fan control's units", htmlOf(table));
    }

    std::string supplies() const
    {
        HtmlTable table = {{"supply", "model"}};
        for (size_t i = 0; i < supplyCount(); i++)
            table.rows.push_back({{{std::to_string(i + 1)},
                                   {shownText(frame_.powerInfo[i].modelName, sizeof frame_.powerInfo[i].modelName)}}});
        return blockOf("Power supplies", "", htmlOf(table));
    }

    // The picture shows their ids.
    std::string temperatures() const
    {
        HtmlTable table = {temperatureHeads()};
        const auto add = [&](const DcmTemperatureInfo *sensors, size_t count, const std::string &owner) {
            for (size_t i = 0; i < std::min<size_t>(count, DCM_UNIT_TEMPERATURE_MAX); i++)
                table.rows.push_back(temperatureRow(sensors[i], owner, ""));
        };
        for (size_t i = 0; i < moduleCount(); i++)
            add(frame_.fanModuleInfo[i].temperature, frame_.fanModuleInfo[i].temperatureNum, nameOf("fan module ", i));
        for (size_t i = 0; i < supplyCount(); i++)
            add(frame_.powerInfo[i].temperature, frame_.powerInfo[i].temperatureNum, nameOf("supply ", i));
        return blockOf("Temperature", "thresholds with their limits", htmlOf(table));
    }

    std::string leds() const
    {
        HtmlTable table = {ledHeads()};
        addLeds(table, frame_.ledInfo, std::min<size_t>(frame_.ledNum, DCM_LED_MAX), "frame");
        for (size_t i = 0; i < moduleCount(); i++)
            addLeds(table, frame_.fanModuleInfo[i].ledInfo,
                    std::min<size_t>(frame_.fanModuleInfo[i].ledNum, DCM_LED_MAX), nameOf("fan module ", i));
        for (size_t i = 0; i < supplyCount(); i++)
            addLeds(table, frame_.powerInfo[i].ledInfo, std::min<size_t>(frame_.powerInfo[i].ledNum, DCM_LED_MAX),
                    nameOf("supply ", i));
        foldOwners(table);
        return blockOf("LEDs", "a state lights all LEDs of the same kind", htmlOf(table));
    }

    // Units with equal LEDs share rows.
    static void foldOwners(HtmlTable &table)
    {
        std::vector<TableRow> rows;
        for (TableRow &row : table.rows) {
            const auto same = std::find_if(rows.begin(), rows.end(), [&](const TableRow &other) {
                return other.cells[0].text == row.cells[0].text && other.cells[2].html == row.cells[2].html;
            });
            if (same != rows.end())
                same->cells[1].text += ", " + row.cells[1].text;
            else
                rows.push_back(std::move(row));
        }
        table.rows = std::move(rows);
    }

    std::string ledMap() const
    {
        HtmlTable table = {mapHeads()};
        addMap(table, frame_.ledMap, "frame", "", view_.places);
        for (size_t i = 0; i < moduleCount(); i++)
            addMap(table, frame_.fanModuleInfo[i].ledMap, nameOf("fan module ", i),
                   "fanModuleInfo." + std::to_string(i) + ".", view_.places);
        for (size_t i = 0; i < supplyCount(); i++)
            addMap(table, frame_.powerInfo[i].ledMap, nameOf("supply ", i), "powerInfo." + std::to_string(i) + ".",
                   view_.places);
        return blockOf("LED map", "", htmlOf(table));
    }

    const FrameView &view_;
    const DcmFrameInfo &frame_;
};

// ---- Slots ----------------------------------------------------------------------------------------------------------

class SlotTables {
public:
    SlotTables(const DcmSlotInfo &slot, const std::string &id) : slot_(slot), prefix_(id + ".") {}

    std::string make() const
    {
        return factsOf({{"cards", number(slot_.maxCardNum)}, {"PoE", slot_.supportPoe == 1 ? "supplied" : ""}}) +
               innerPorts() + fabricPorts() + supplies() + fanControllers();
    }

private:
    // Adjacent ports that differ only in number and name share a row.
    static bool differOnlyInNumber(const DcmInnerIfInfo &one, const DcmInnerIfInfo &other)
    {
        return one.portId + 1 == other.portId && one.sysId == other.sysId && one.slotId == other.slotId &&
               one.cardId == other.cardId && one.phyType == other.phyType && one.workmode == other.workmode &&
               one.drvType == other.drvType && one.portType == other.portType;
    }

    // `all`: the name of the only port, which has no index.
    void addPorts(HtmlTable &table, const char *array, const DcmInnerIfInfo *ports, size_t count,
                  const char *all = nullptr) const
    {
        for (size_t i = 0; i < count;) {
            size_t end = i + 1;
            if (isDescribed(ports[i])) {
                while (end < count && isDescribed(ports[end]) && differOnlyInNumber(ports[end - 1], ports[end]))
                    end++;
                const std::string numbers =
                    all != nullptr ? all : range(static_cast<uint32_t>(i) + 1, static_cast<uint32_t>(end));
                table.rows.push_back(rowOf(numbers, ports[i], ports[end - 1]));
                std::vector<std::string> ids;
                for (size_t port = i; port < end; port++)
                    ids.push_back(prefix_ + array + (all != nullptr ? "" : "." + std::to_string(port)));
                table.rows.back().cells.push_back({"", "", connectorsOf(ports + i, ids)});
            }
            i = end;
        }
    }

    // A box for each port, in the colour of its kind.
    static std::string connectorsOf(const DcmInnerIfInfo *ports, const std::vector<std::string> &ids)
    {
        constexpr size_t kColumns = 16;
        const size_t columns = std::min(ids.size(), kColumns);
        const size_t rows = (ids.size() + kColumns - 1) / kColumns;
        std::string html = "<svg class=ports aria-hidden=true width=" + std::to_string(columns * 14) +
                           " height=" + std::to_string(rows * 14) + ">";
        for (size_t i = 0; i < ids.size(); i++)
            html +=
                "<rect id=\"" + ids[i] + "\" class=\"port " + portStyle(ports[i].phyType) +
                "\" x=" + std::to_string(i % kColumns * 14 + 1) + " y=" + std::to_string(i / kColumns * 14 + 1) +
                " width=12 height=12 rx=2><title>" + escapedXml("port " + portNumber(ports[i].portId) + ": ") +
                escapedXml(joined({portKind(ports[i].phyType), shownText(ports[i].ifName, sizeof ports[i].ifName)})) +
                "</title></rect>";
        return html + "</svg>";
    }

    // "vsync.101–106" of ports whose names end with their numbers.
    static std::string namesOf(const DcmInnerIfInfo &first, const DcmInnerIfInfo &last)
    {
        const std::string name = shownText(first.ifName, sizeof first.ifName);
        const std::string lastName = shownText(last.ifName, sizeof last.ifName);
        const std::string end = number(first.portId);
        const std::string prefix = name.substr(0, name.size() - std::min(name.size(), end.size()));
        if (name == prefix + end && lastName == prefix + number(last.portId))
            return prefix + range(first.portId, last.portId);
        return name == lastName ? name : name + " … " + lastName;
    }

    static TableRow rowOf(const std::string &numbers, const DcmInnerIfInfo &first, const DcmInnerIfInfo &last)
    {
        const auto word = [](const dcm::Vocabulary &words, uint32_t value) {
            return value == 0 ? "" : writtenWord(words, value);
        };
        return {{{numbers},
                 {first.portId == DCM_PORT_UNSPEC ? "?" : range(first.portId, last.portId)},
                 {namesOf(first, last)},
                 {portKind(first.phyType)},
                 {word(dcm::kInnerIfTypeWords, first.portType)},
                 {word(dcm::kWorkmodeWords, first.workmode)},
                 {word(dcm::kDriverTypeWords, first.drvType)},
                 {joined({first.sysId == DCM_ID_UNSPEC ? "" : "system " + number(first.sysId),
                          first.slotId == DCM_ID_UNSPEC ? "" : "slot " + number(first.slotId),
                          first.cardId == DCM_ID_UNSPEC ? "" : "card " + number(first.cardId)},
                         ", ")}}};
    }

    static std::vector<std::string> portHeads(const char *first)
    {
        return {first, "port", "name", "kind", "type", "mode", "driver", "place", "ports"};
    }

    std::string innerPorts() const
    {
        HtmlTable table = {portHeads("to slot")};
        addPorts(table, "broadcastSyncIf", &slot_.broadcastSyncIf, 1, "all");
        addPorts(table, "syncIf", slot_.syncIf, DCM_INNER_IF_MAX);
        return blockOf("Inner ports", "", htmlOf(table));
    }

    std::string fabricPorts() const
    {
        HtmlTable table = {portHeads("fabric port")};
        addPorts(table, "sfuIf", slot_.sfuIf, DCM_INNER_IF_MAX);
        return blockOf("Fabric ports", "", htmlOf(table));
    }

    std::string fanControllers() const
    {
        HtmlTable table = {fanCtrlHeads()};
        for (size_t i = 0; i < std::min<size_t>(slot_.fanCtrlNum, DCM_FAN_CTRL_MAX); i++)
            addFanCtrl(table, slot_.fanCtrlInfo[i], i, "");
        return blockOf("Fan controllers", "levels and speeds in the fan control's units", htmlOf(table));
    }

    std::string supplies() const
    {
        HtmlTable table = {{"supply"}};
        for (size_t i = 0; i < std::min<size_t>(slot_.powerNum, DCM_POWER_MAX); i++)
            table.rows.push_back({{{std::to_string(i + 1)}}, prefix_ + "powerInfo." + std::to_string(i)});
        return blockOf("Power supplies", "", htmlOf(table));
    }

    const DcmSlotInfo &slot_;
    std::string prefix_;
};

} // namespace

std::string tablesOf(const CardView &view)
{
    return CardTables(view).make();
}

std::string tablesOf(const FrameView &view)
{
    return FrameTables(view).make();
}

std::string tablesOf(const DcmSlotInfo &slot, const std::string &id)
{
    return SlotTables(slot, id).make();
}

} // namespace dcmtool
