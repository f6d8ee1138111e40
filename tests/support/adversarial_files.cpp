#include "tests/support/adversarial_files.h"

#include <algorithm>

namespace adversarial {

namespace {

std::string number(size_t value)
{
    return std::to_string(value);
}

// `item(i)` for i = 0, 1, ... between `head` and `tail`, with `size` bytes in total.
template <class Item>
std::string filled(size_t size, const std::string &head, const Item &item, const std::string &tail)
{
    std::string text = head;
    for (size_t i = 0; text.size() + tail.size() < size; i++)
        text += item(i);
    return text + tail;
}

// The same piece repeatedly.
std::string filledWith(size_t size, const std::string &head, const std::string &piece, const std::string &tail)
{
    return filled(
        size, head, [&](size_t) { return piece; }, tail);
}

std::string device(const std::string &inside)
{
    return "<device>\n" + inside + "</device>\n";
}

// A device with entries from `item`.
template <class Item> std::string deviceOf(size_t size, const Item &item)
{
    return filled(size, "<device>\n", item, "</device>\n");
}

// A card with content from `item`.
template <class Item>
std::string cardOf(size_t size, const std::string &head, const Item &item, const std::string &tail = "")
{
    return filled(size, "<device>\n<card typeid=\"1\">\n" + head, item, tail + "</card>\n</device>\n");
}

std::string cardWith(size_t size, const std::string &head, const std::string &piece, const std::string &tail = "")
{
    return cardOf(
        size, head, [&](size_t) { return piece; }, tail);
}

// "1,2,3,...", of about `size` bytes.
std::string list(size_t size)
{
    return filled(
        size, "1", [](size_t i) { return "," + number(i + 2); }, "");
}

std::string times(size_t size, const std::string &piece)
{
    return filledWith(size, "", piece, "");
}

// ---- Elements -------------------------------------------------------------------------------------------------------

std::string unknownElementsOnOneLine(size_t size)
{
    return filledWith(size, "<device><card typeid=\"1\">", "<x/>", "</card></device>");
}

std::string unknownElements(size_t size)
{
    return cardOf(size, "", [](size_t i) { return "<x" + number(i) + "/>\n"; });
}

std::string misspelledElements(size_t size)
{
    return cardWith(size, "", "<panel-prot/>\n<occupyslotsnum/>\n");
}

std::string misplacedElements(size_t size)
{
    return cardWith(size, "", "<fan/><slotid/><state/>\n");
}

std::string shortestElements(size_t size)
{
    return filledWith(size, "<device>", "<a/>", "</device>");
}

std::string shortestElementsAndTexts(size_t size)
{
    return filledWith(size, "<device>", "<a/>b", "</device>");
}

std::string deepElements(size_t size)
{
    const std::string item = times(200 * 3, "<a>") + times(200 * 4, "</a>");
    return filledWith(size, "<device>", item, "</device>");
}

std::string deeperElements(size_t size)
{
    return "<device>" + times(size * 3 / 7, "<a>") + times(size * 4 / 7, "</a>") + "</device>";
}

std::string oneLongName(size_t size)
{
    return "<device><" + times(size, "x") + "/></device>";
}

std::string longNames(size_t size)
{
    const std::string name = times(40000, "x");
    return cardOf(size, "", [&](size_t i) { return "<" + name + number(i) + "/>\n"; });
}

// ---- Attributes -----------------------------------------------------------------------------------------------------

std::string attributesOnOneElement(size_t size)
{
    return filled(
        size, "<device><card typeid=\"1\"", [](size_t i) { return " a" + number(i) + "=\"\""; }, "/></device>");
}

std::string attributesOnManyElements(size_t size)
{
    return cardOf(size, "", [](size_t i) {
        return filled(
            900, "<cpu-entity num=\"" + number(i % 3) + "\"", [](size_t j) { return " a" + number(j) + "=\"\""; },
            "/>\n");
    });
}

std::string equalAttributes(size_t size)
{
    return filledWith(size, "<device><card typeid=\"1\"", " a=\"\"", "/></device>");
}

std::string namespaces(size_t size)
{
    return filled(
        size, "<device><card typeid=\"1\"", [](size_t i) { return " xmlns:a" + number(i) + "=\"b\""; }, "/></device>");
}

std::string oneHugeAttribute(size_t size)
{
    return device("<card typeid=\"" + times(size, "x ") + "\"/>\n");
}

std::string cardOfALongTypeWithUnknownElements(size_t size)
{
    return filledWith(size, "<device>\n<card typeid=\"" + times(size / 2, "x") + "\">\n", "<x/>\n",
                      "</card>\n</device>\n");
}

std::string portsOfALongId(size_t size)
{
    return cardOf(
        size, "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\">\n",
        [](size_t i) { return "<port id=\"" + times(1000 + i % 7, "1,") + "\"><x/><y/></port>\n"; }, "</panel-port>\n");
}

// ---- Lists ----------------------------------------------------------------------------------------------------------

std::string slotOfManyTypes(size_t size)
{
    return device("<slot typeid=\"" + list(size) + "\"/>\n");
}

std::string twoSlotsOfManyTypes(size_t size)
{
    return device("<slot typeid=\"" + list(size / 2) + "\"/>\n<slot typeid=\"" + list(size / 2) + "\"/>\n");
}

std::string slotOfManyFaultyTypes(size_t size)
{
    return device("<slot typeid=\"" + times(size, "x,010,1x,") + "\"/>\n");
}

std::string slotOfCommas(size_t size)
{
    return device("<slot typeid=\"" + times(size, ",") + "\"/>\n");
}

std::string badSlotOfManyTypes(size_t size)
{
    return filledWith(size, "<device>\n<slot typeid=\"" + list(size / 2) + "\">\n<port-entity num=\"300\">\n",
                      "<innerport/>\n", "</port-entity>\n</slot>\n</device>\n");
}

std::string slotOfManyTypesAndManySlots(size_t size)
{
    return filled(
        size, "<device>\n<slot typeid=\"" + list(size / 2) + "\"/>\n",
        [](size_t i) { return "<slot typeid=\"" + number(i) + "\"/>\n"; }, "</device>\n");
}

std::string longListEverywhere(size_t size)
{
    const std::string numbers = list(size / 12);
    return device(
        "<frame typeid=\"1\"><maxslotnum>9</maxslotnum><slotmap><lpu>" + numbers + "</lpu><mpu>" + numbers +
        "</mpu></slotmap><slotinfo><slotid id=\"1\"><supportcardtype>" + numbers + "</supportcardtype><crossslotbit>" +
        numbers + "</crossslotbit></slotid></slotinfo>" + "<fanctrl-entity num=\"1\"><fanctrl id=\"" + numbers +
        "\"/></fanctrl-entity>" + "<fanmodule-entity num=\"1\"><fanmodule id=\"" + numbers + "\"/></fanmodule-entity>" +
        "<fanctrl-map><fan-ctrl id=\"1\"><power>" + numbers + "</power></fan-ctrl></fanctrl-map></frame>\n" +
        "<card typeid=\"1\"><led-entity num=\"1\"><led id=\"" + numbers +
        "\" type=\"fan\"/></led-entity><temperature-entity num=\"1\"><temperature id=\"1\"><fanctrlbits>" + numbers +
        "</fanctrlbits></temperature></temperature-entity><panel-port num=\"1\" startportid=\"1\" maxportid=\"1\"><port id=\"" +
        numbers + "\"/></panel-port></card>\n");
}

std::string fansOfALongModule(size_t size)
{
    return filledWith(size,
                      "<device>\n<frame typeid=\"1\"><fanctrl-entity num=\"1\"><fanctrl id=\"1\"/></fanctrl-entity>"
                      "<fanmodule-entity num=\"1\"><fanmodule id=\"" +
                          times(size / 2, "1,") + "1\"><fannum>4</fannum>\n",
                      "<fan id=\"1-4\"/>\n", "</fanmodule></fanmodule-entity></frame>\n</device>\n");
}

// ---- Frames, slots and cards ----------------------------------------------------------------------------------------

std::string distinctCards(size_t size)
{
    return deviceOf(size, [](size_t i) { return "<card typeid=\"" + number(i) + "\"/>\n"; });
}

std::string equalCards(size_t size)
{
    return deviceOf(size, [](size_t) { return "<card typeid=\"1\"/>\n"; });
}

std::string cardsOfManyPorts(size_t size)
{
    return deviceOf(size, [](size_t i) {
        return "<card typeid=\"" + number(i) +
               "\"><panel-port num=\"256\" startportid=\"1\" maxportid=\"256\"><port id=\"1-256\"><portid>1</portid>"
               "</port></panel-port></card>\n";
    });
}

std::string distinctFrames(size_t size)
{
    return deviceOf(size, [](size_t i) { return "<frame typeid=\"" + number(i) + "\"/>\n"; });
}

std::string distinctSlots(size_t size)
{
    return deviceOf(size, [](size_t i) { return "<slot typeid=\"" + number(i) + "\"/>\n"; });
}

std::string slotsWithoutTypes(size_t size)
{
    return deviceOf(size, [](size_t) { return "<slot/>\n"; });
}

std::string namedCards(size_t size)
{
    return deviceOf(size, [](size_t i) {
        return "<card typeid=\"" + number(i) + "\" name=\"" + times(40, "a\xC3\xA4\x26lt;") + "\"/>\n";
    });
}

std::string failingCards(size_t size)
{
    return deviceOf(size, [](size_t i) {
        return "<card typeid=\"" + number(i) + "\"><cpu-entity num=\"1\"><cpu id=\"2\"/></cpu-entity></card>\n";
    });
}

std::string shortFailingCards(size_t size)
{
    return deviceOf(size, [](size_t) { return "<card><led-map/></card>\n"; });
}

std::string failingSlots(size_t size)
{
    return deviceOf(size, [](size_t i) { return "<slot typeid=\"" + number(i) + "\"><port-entity/></slot>\n"; });
}

std::string failingFrames(size_t size)
{
    return deviceOf(size, [](size_t i) { return "<frame typeid=\"" + number(i) + "\"><power-entity/></frame>\n"; });
}

std::string failingPorts(size_t size)
{
    return cardWith(size, "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\">\n",
                    "<port id=\"1\"><phytype>10gex</phytype></port>\n", "</panel-port>\n");
}

std::string failuresInEmptyBlocks(size_t size)
{
    return cardWith(size, "", "<panel-port/>\n");
}

std::string elementsOutOfOrderBeforeFailingOnes(size_t size)
{
    const std::string failing = times(size * 2 / 5, "<port id=\"x\"/>\n");
    return cardWith(size - failing.size(), "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\">\n" + failing,
                    "<port-group/>\n", "</panel-port>\n");
}

std::string blocksOutOfOrderBeforeFailingOnes(size_t size)
{
    const std::string failing = times(size / 2, "<cpu-entity num=\"1\"><cpu id=\"2\"/></cpu-entity>\n");
    return filledWith(size - failing.size(), "<device>\n<card typeid=\"1\">\n" + failing, "<led-map num=\"0\"/><x/>\n",
                      "</card>\n</device>\n");
}

// ---- Relations ------------------------------------------------------------------------------------------------------

std::string ledMapsAndCards(size_t size)
{
    const std::string cards = filled(
        size / 2, "",
        [](size_t i) {
            return "<card typeid=\"" + number(i) +
                   "\"><led-entity num=\"1\"><led id=\"1\" type=\"alarm\"/></led-entity></card>\n";
        },
        "");
    return cardOf(
        size, "<led-map num=\"255\">\n", [](size_t) { return "<led-name>led-alarm-2@card3/1</led-name>\n"; },
        "</led-map></card>\n" + cards + "<card>");
}

std::string slotsOfFramesAndCards(size_t size)
{
    const std::string cards = filled(
        size / 2, "", [](size_t i) { return "<card typeid=\"" + number(i + 1000000) + "\"/>\n"; }, "");
    return filled(
        size, "<device>\n" + cards + "<frame typeid=\"1\"><slotinfo>\n",
        [](size_t i) {
            return "<slotid id=\"" + number(i + 1) + "\"><supportcardtype>1,2,3,4,5,6,7,8</supportcardtype></slotid>\n";
        },
        "</slotinfo></frame>\n</device>\n");
}

std::string ledStates(size_t size)
{
    return cardWith(size, "<led-entity num=\"1\"><led id=\"1\" type=\"fan\">\n", "<state type=\"x\"/>\n",
                    "</led></led-entity>\n");
}

std::string shortestLedStates(size_t size)
{
    return cardWith(size, "<led-entity num=\"1\"><led id=\"1\" type=\"fan\">\n", "<state/>\n", "</led></led-entity>\n");
}

std::string ledStatesOfALongType(size_t size)
{
    return cardWith(size, "<led-entity num=\"1\"><led id=\"1\" type=\"fan" + times(size / 2, "x") + "\">\n",
                    "<state type=\"stop\"/>\n", "</led></led-entity>\n");
}

std::string leds(size_t size)
{
    return cardWith(size, "<led-entity num=\"255\">\n", "<led id=\"1-64\" type=\"alarm\"/>\n", "</led-entity>\n");
}

std::string ledNames(size_t size)
{
    return cardOf(
        size, "<led-map num=\"255\">\n", [](size_t i) { return "<led-name>led-fan-" + number(i) + "@x</led-name>\n"; },
        "</led-map>\n");
}

std::string ledStatesOfALongName(size_t size)
{
    return cardWith(size, "<led-map num=\"1\"><led-name name=\"" + times(size / 2, "led-") + "\">\n",
                    "<state type=\"stop\">x</state>\n", "</led-name></led-map>\n");
}

std::string sensors(size_t size)
{
    return filled(
        size, "<device>\n<frame typeid=\"1\"/>\n<card typeid=\"1\"><temperature-entity num=\"32\">\n",
        [](size_t i) {
            return "<temperature id=\"" + number(i) + "\"><fanctrlbits>1-16</fanctrlbits></temperature>\n";
        },
        "</temperature-entity></card>\n</device>\n");
}

std::string thresholdsOfOneSensor(size_t size)
{
    return cardWith(size, "<temperature-entity num=\"1\"><temperature id=\"1\">\n",
                    "<lowthreshold>9</lowthreshold><highthreshold>1</highthreshold>\n",
                    "</temperature></temperature-entity>\n");
}

std::string portsOfAllIds(size_t size)
{
    return cardWith(size, "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\">\n",
                    "<port id=\"1-256\"><portid>1</portid></port>\n", "</panel-port>\n");
}

std::string portGroupsOfAllIds(size_t size)
{
    return cardWith(size, "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\">\n",
                    "<port-group id=\"1-256\"/>\n", "</panel-port>\n");
}

std::string portsOfManyBlocks(size_t size)
{
    return cardWith(
        size, "",
        "<panel-port num=\"256\" startportid=\"1\" maxportid=\"256\"><port-group id=\"1-256\"/></panel-port>\n");
}

std::string repeatedElements(size_t size)
{
    return filledWith(
        size, "<device>\n<card typeid=\"1\">\n" + times(size / 2, "<x/>\n") + "<occupyslotnum>1</occupyslotnum>\n",
        "<occupyslotnum>1</occupyslotnum>\n", "</card>\n</device>\n");
}

std::string repeatedElementsBehindManyOthers(size_t size)
{
    return filledWith(size,
                      "<device>\n<card typeid=\"1\"><mgt-port num=\"1\"><port id=\"1\">\n" +
                          times(size / 2, "<portid>1</portid>\n"),
                      "<ifname>a</ifname>\n", "</port></mgt-port></card>\n</device>\n");
}

std::string vmPorts(size_t size)
{
    return filledWith(size, "<panel-port num=\"1\">\n", "<port ifindex=\"1\"/>\n", "</panel-port>\n");
}

// ---- Texts, comments and the rest -----------------------------------------------------------------------------------

std::string oneHugeText(size_t size)
{
    return device("<card typeid=\"1\"><occupyslotnum>" + times(size, "1") + "</occupyslotnum></card>\n");
}

std::string hugeStrayText(size_t size)
{
    return device("<card typeid=\"1\">" + times(size, "\xE2\x82\xAC") + "</card>\n");
}

std::string mixedTexts(size_t size)
{
    return cardWith(size, "<occupyslotnum>", "<!---->1", "</occupyslotnum>\n");
}

std::string comments(size_t size)
{
    return filledWith(size, "<device>\n<card typeid=\"1\">\n", "<!---->", "</card>\n</device>\n");
}

std::string instructions(size_t size)
{
    return filledWith(size, "<device>\n<card typeid=\"1\">\n", "<?a?>", "</card>\n</device>\n");
}

std::string allowances(size_t size)
{
    return cardWith(size, "", "<!-- dcm-check: allow unknown-element: why -->\n<x/>\n");
}

std::string unusedAllowances(size_t size)
{
    return cardWith(size, "", "<!-- dcm-check: allow octal-number: why -->\n");
}

std::string faultyAllowances(size_t size)
{
    return cardWith(size, "", "<!--dcm-check-->\n");
}

std::string allowancesOfManyChecks(size_t size)
{
    return cardWith(size, "", "<!-- dcm-check: allow unknown-element, octal-number, list-fault, led-name: why -->\n");
}

std::string allowancesAndFindings(size_t size)
{
    const std::string allowed = times(size / 2, "<!-- dcm-check: allow unknown-attribute: why -->\n");
    return cardWith(size, allowed, "<x/><cpu-entity num=\"1\" x=\"\"/>\n");
}

std::string oneLineOfFindings(size_t size)
{
    return filledWith(size, "<device><card typeid=\"1\">",
                      "<mgt-port num=\"1\"><port id=\"1\"><portid>010</portid></port></mgt-port>", "</card></device>");
}

std::string oneByteLines(size_t size)
{
    return filledWith(size, "<device>", "\n", "</device>");
}

std::string notWellFormed(size_t size)
{
    return filledWith(size, "<device>", "<a>&", "");
}

std::string unclosed(size_t size)
{
    return filledWith(size, "<device>", "<card typeid=\"1\"/>\n", "");
}

std::string blanksBeforeNumbers(size_t size)
{
    return cardWith(size, "<cpu-entity num=\"" + times(size / 2, " ") + "1\">\n", "<cpu id=\"2\"/>\n",
                    "</cpu-entity>\n");
}

// ---- Document types -------------------------------------------------------------------------------------------------

std::string entities(size_t size)
{
    return filled(
        size, "<!DOCTYPE device [\n", [](size_t i) { return "<!ENTITY e" + number(i) + " \"\">\n"; },
        "]>\n<device/>\n");
}

std::string referencesToEntities(size_t size)
{
    return filledWith(size, "<!DOCTYPE device [<!ENTITY e \"<x/>\">]>\n<device><card typeid=\"1\">", "&e;",
                      "</card></device>\n");
}

std::string entitiesOfTexts(size_t size)
{
    return filledWith(size,
                      "<!DOCTYPE device [<!ENTITY e \"" + times(size / 4, "1") + "\">]>\n<device><card typeid=\"1\">\n",
                      "<occupyslotnum>&e;</occupyslotnum>\n", "</card></device>\n");
}

std::string entitiesInAttributes(size_t size)
{
    return filledWith(size, "<!DOCTYPE device [<!ENTITY e \"" + times(10000, "1") + "\">]>\n<device>",
                      "<card typeid=\"&e;\"/>\n", "</device>\n");
}

std::string entityOfAttributes(size_t size)
{
    return filled(
        size, "<!DOCTYPE device [<!ENTITY e '<x", [](size_t i) { return " a" + number(i) + "=\"\""; },
        "/>'>]>\n<device>&e;</device>\n");
}

std::string entityOfHiddenAttributes(size_t size)
{
    return filled(
        size, "<!DOCTYPE device [<!ENTITY e '&#60;x", [](size_t i) { return " a" + number(i) + "&#61;&#34;&#34;"; },
        "/>'>]>\n<device>&e;</device>\n");
}

std::string attributesByDefault(size_t size)
{
    return filledWith(size,
                      "<!DOCTYPE device [<!ATTLIST x" +
                          filled(
                              size / 2, "", [](size_t i) { return " a" + number(i) + " CDATA \"\""; }, "") +
                          ">]>\n<device>",
                      "<x/>", "</device>\n");
}

std::string longAttributeByDefault(size_t size)
{
    return filledWith(size,
                      "<!DOCTYPE device [<!ATTLIST card name CDATA \"" + times(size / 2, "n") + "\">]>\n<device>\n",
                      "<card typeid=\"1\"/>\n", "</device>\n");
}

std::string parameterEntities(size_t size)
{
    std::string text = "<!DOCTYPE device [\n<!ENTITY % p0 \"\">\n";
    for (size_t i = 1; text.size() + 100 < size; i++)
        text += "<!ENTITY % p" + number(i) + " \"&#37;p" + number(i - 1) + ";&#37;p" + number(i - 1) + ";\">\n%p" +
                number(i) + ";\n";
    return text + "]>\n<device/>\n";
}

std::string declarations(size_t size)
{
    return filled(
        size, "<!DOCTYPE device [\n", [](size_t i) { return "<!ELEMENT e" + number(i) + " (a,b,c,d)>\n"; },
        "]>\n<device/>\n");
}

#define SHAPE(function)                                                                                                \
    {                                                                                                                  \
#function, function                                                                                            \
    }

} // namespace

const std::vector<Shape> &shapes()
{
    static const std::vector<Shape> all = {
        SHAPE(unknownElementsOnOneLine),
        SHAPE(unknownElements),
        SHAPE(misspelledElements),
        SHAPE(misplacedElements),
        SHAPE(shortestElements),
        SHAPE(shortestElementsAndTexts),
        SHAPE(deepElements),
        SHAPE(deeperElements),
        SHAPE(oneLongName),
        SHAPE(longNames),
        SHAPE(attributesOnOneElement),
        SHAPE(attributesOnManyElements),
        SHAPE(equalAttributes),
        SHAPE(namespaces),
        SHAPE(oneHugeAttribute),
        SHAPE(cardOfALongTypeWithUnknownElements),
        SHAPE(portsOfALongId),
        SHAPE(slotOfManyTypes),
        SHAPE(twoSlotsOfManyTypes),
        SHAPE(slotOfManyFaultyTypes),
        SHAPE(slotOfCommas),
        SHAPE(badSlotOfManyTypes),
        SHAPE(slotOfManyTypesAndManySlots),
        SHAPE(longListEverywhere),
        SHAPE(fansOfALongModule),
        SHAPE(distinctCards),
        SHAPE(equalCards),
        SHAPE(cardsOfManyPorts),
        SHAPE(distinctFrames),
        SHAPE(distinctSlots),
        SHAPE(slotsWithoutTypes),
        SHAPE(namedCards),
        SHAPE(failingCards),
        SHAPE(shortFailingCards),
        SHAPE(failingSlots),
        SHAPE(failingFrames),
        SHAPE(failingPorts),
        SHAPE(failuresInEmptyBlocks),
        SHAPE(elementsOutOfOrderBeforeFailingOnes),
        SHAPE(blocksOutOfOrderBeforeFailingOnes),
        SHAPE(ledMapsAndCards),
        SHAPE(slotsOfFramesAndCards),
        SHAPE(ledStates),
        SHAPE(shortestLedStates),
        SHAPE(ledStatesOfALongType),
        SHAPE(leds),
        SHAPE(ledNames),
        SHAPE(ledStatesOfALongName),
        SHAPE(sensors),
        SHAPE(thresholdsOfOneSensor),
        SHAPE(portsOfAllIds),
        SHAPE(portGroupsOfAllIds),
        SHAPE(portsOfManyBlocks),
        SHAPE(repeatedElements),
        SHAPE(repeatedElementsBehindManyOthers),
        SHAPE(vmPorts),
        SHAPE(oneHugeText),
        SHAPE(hugeStrayText),
        SHAPE(mixedTexts),
        SHAPE(comments),
        SHAPE(instructions),
        SHAPE(allowances),
        SHAPE(unusedAllowances),
        SHAPE(faultyAllowances),
        SHAPE(allowancesOfManyChecks),
        SHAPE(allowancesAndFindings),
        SHAPE(oneLineOfFindings),
        SHAPE(oneByteLines),
        SHAPE(notWellFormed),
        SHAPE(unclosed),
        SHAPE(blanksBeforeNumbers),
        SHAPE(entities),
        SHAPE(referencesToEntities),
        SHAPE(entitiesOfTexts),
        SHAPE(entitiesInAttributes),
        SHAPE(entityOfAttributes),
        SHAPE(entityOfHiddenAttributes),
        SHAPE(attributesByDefault),
        SHAPE(longAttributeByDefault),
        SHAPE(parameterEntities),
        SHAPE(declarations),
    };
    return all;
}

} // namespace adversarial
