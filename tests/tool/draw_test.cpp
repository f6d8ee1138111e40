// Pictures: each part of a record is in them once, nothing covers anything else, and hostile files are harmless.
#include "tests/tool/correct_description.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/described_cards.h"
#include "tools/dcm/draw/findings.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/page/page.h"
#include "tools/dcm/records/record_json.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <locale>
#include <set>

using namespace dcmtool;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

using Ids = std::multiset<std::string>;

// ---- A description and its pictures ---------------------------------------------------------------------------------

// The frame or card of a file.
struct Described {
    explicit Described(const std::string &text)
        : file(DescriptionFile::parse("device.xml", text)), cards(
                                                                *file, [](uint32_t, uint32_t) { return true; }, true)
    {
        for (const DescribedType &type : file->types())
            if (type.kind == RecordKind::frame && frameElement == nullptr) {
                Queries queries(*file, true);
                const OwnOutput silence;
                if (queries.run(type, frame))
                    frameElement = type.element;
                frameType = type.typeIds.front();
            }
    }

    Fit fit(uint32_t slot, uint32_t type, uint32_t mode = 0) const
    {
        Fit one;
        one.slot = slot;
        one.cardType = type;
        one.mode = mode;
        one.card = cards.find(type, mode);
        one.name = one.card != nullptr ? cardName(one.card->card, type) : hexadecimal(type, 4);
        return one;
    }

    std::vector<Fit> fitted(std::vector<Fit> fits) const
    {
        const Places places(*file, frameElement);
        fitCards({frame, frameType, places, cards.names()}, fits);
        return fits;
    }

    Picture drawnFrame(const std::vector<Fit> &fits = {}, const Metrics &metrics = kPixels,
                       LedStateSelection ledStates = {}) const
    {
        const Places places(*file, frameElement);
        return drawFrame({frame, frameType, places, cards.names(), fits}, ledStates, metrics);
    }

    Picture drawnCard(uint32_t type = 1, const Metrics &metrics = kPixels, LedStateSelection ledStates = {}) const
    {
        return drawCard(*cards.find(type, 0), ledStates, metrics);
    }

    std::unique_ptr<DescriptionFile> file;
    DescribedCards cards;
    DcmFrameInfo frame = {};
    uint32_t frameType = 0;
    dcm::Node frameElement = nullptr;
};

Described device(const std::string &content)
{
    return Described("<device>" + content + "</device>");
}

std::string card(const std::string &content)
{
    return R"(<card typeid="1" abbrname="A">)" + content + "</card>";
}

std::string ports(const std::string &list, uint32_t count, const std::string &content = "<phytype>ge</phytype>")
{
    const std::string number = std::to_string(count);
    return "<panel-port num=\"" + number + "\" startportid=\"1\" maxportid=\"" + number + "\"><port-group id=\"" +
           list + "\">" + content + "<portid-offset>0</portid-offset></port-group></panel-port>";
}

constexpr const char *kLed = R"(<led-entity num="1"><led id="1" type="fan">
    <state type="stop" pri="1"><color>red</color><freq>fast-blink</freq></state>
    <state type="default"><color>green</color><freq>off</freq></state></led></led-entity>)";

template <class Visit> void walk(const Figure &figure, const Visit &visit)
{
    visit(figure);
    for (const Figure &child : figure.children)
        walk(child, visit);
}

const Figure *figureOf(const Picture &picture, const std::string &id)
{
    const Figure *found = nullptr;
    walk(picture.root, [&](const Figure &figure) {
        if (figure.id == id)
            found = &figure;
    });
    return found;
}

// ---- The content of an SVG file -------------------------------------------------------------------------------------

void addIds(const xmlNode *node, Ids &ids)
{
    for (; node != nullptr; node = node->next) {
        if (node->type != XML_ELEMENT_NODE || xmlStrEqual(node->name, BAD_CAST "defs") != 0)
            continue;
        xmlChar *id = xmlGetNoNsProp(node, BAD_CAST "id");
        if (id != nullptr)
            ids.insert(reinterpret_cast<const char *>(id));
        xmlFree(id);
        addIds(node->children, ids);
    }
}

// Every id of a well-formed document except those of decoration: title, description, the whole, and brackets.
Ids idsIn(const std::string &svg)
{
    xmlDoc *document = xmlReadMemory(svg.data(), static_cast<int>(svg.size()), "picture.svg", nullptr,
                                     XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    Ids ids;
    EXPECT_NE(document, nullptr) << "not well-formed:\n" << svg;
    if (document == nullptr)
        return ids;
    addIds(xmlDocGetRootElement(document), ids);
    xmlFreeDoc(document);
    for (auto id = ids.begin(); id != ids.end();)
        id = id->find('.') == std::string::npos || id->find(".crossSlotBit.") != std::string::npos ? ids.erase(id)
                                                                                                   : std::next(id);
    return ids;
}

// ---- The content of an export ---------------------------------------------------------------------------------------

void addEntries(Ids &ids, const std::string &prefix, const Json &record, const std::string &name)
{
    for (size_t i = 0; i < record[name].size(); i++)
        ids.insert(prefix + name + "." + std::to_string(i));
}

void addCard(Ids &ids, const std::string &prefix, const Json &record)
{
    for (const char *name : {"methIf", "panelIf", "gccIf", "ethpppIf", "led", "portLed", "temperature", "voltage"})
        addEntries(ids, prefix, record, name);
    for (size_t run = 0; run < record["portLed"].size(); run++)
        for (int number = record["portLed"][run]["startId"]; number <= record["portLed"][run]["endId"]; number++)
            ids.insert(prefix + "portLed." + std::to_string(run) + "." + std::to_string(number));
}

Ids idsOfExport(const DcmCardInfo &info, uint32_t typeId)
{
    Ids ids;
    addCard(ids, "card-" + hexadecimal(typeId) + "-" + std::to_string(info.mode) + ".", toJson(recordOf(info)));
    return ids;
}

Ids idsOfExport(const DcmSlotInfo &info, uint32_t typeId)
{
    const Json record = toJson(recordOf(info));
    const std::string prefix = "slot-" + hexadecimal(typeId) + ".";
    Ids ids;
    // There is an entry for each port that can be described.
    const auto add = [&](const std::string &id, const Json &port) {
        if (port["sysId"] != 0 || port["portId"] != DCM_PORT_UNSPEC)
            ids.insert(prefix + id);
    };
    add("broadcastSyncIf", record["broadcastSyncIf"]);
    for (const char *name : {"syncIf", "sfuIf"})
        for (size_t i = 0; i < record[name].size(); i++)
            add(name + ("." + std::to_string(i)), record[name][i]);
    addEntries(ids, prefix, record, "powerInfo");
    return ids;
}

Ids idsOfExport(const DcmFrameInfo &info, uint32_t typeId, const std::vector<Fit> &fits)
{
    const Json record = toJson(recordOf(info));
    const std::string prefix = "frame-" + hexadecimal(typeId) + ".";
    Ids ids;
    addEntries(ids, prefix, record, "ledInfo");
    for (const char *units : {"fanModuleInfo", "powerInfo"}) {
        addEntries(ids, prefix, record, units);
        for (size_t i = 0; i < record[units].size(); i++)
            for (const char *parts : {"fan", "ledInfo", "temperature"})
                if (record[units][i].contains(parts))
                    addEntries(ids, prefix + units + "." + std::to_string(i) + ".", record[units][i], parts);
    }
    std::set<uint32_t> slots;
    for (uint32_t slot = 1; slot <= std::min<uint32_t>(info.maxSlotId, DCM_SLOT_MAX); slot++)
        slots.insert(slot);
    for (const Json &list : record["slotmap"])
        slots.insert(list.begin(), list.end());
    for (const uint32_t slot : slots)
        ids.insert(prefix + "slot." + std::to_string(slot));
    std::map<uint32_t, size_t> refused;
    for (const Fit &fit : fits) {
        const std::string slot = prefix + "slot." + std::to_string(fit.slot);
        if (slots.count(fit.slot) == 0)
            continue;
        if (!fit.refusal.empty()) {
            ids.insert(slot + ".refused." + std::to_string(refused[fit.slot]++));
            continue;
        }
        const std::string card = slot + ".card." + std::to_string(fit.cardId);
        ids.insert(card);
        for (const char *name : {"methIf", "panelIf", "led"})
            addEntries(ids, card + ".", toJson(recordOf(fit.card->card)), name);
    }
    return ids;
}

// ---- Boxes ----------------------------------------------------------------------------------------------------------

bool contains(Box outer, Box inner)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

std::string shown(const Figure &figure)
{
    std::string text = figure.id;
    for (const TextRun &run : figure.runs)
        text += "'" + run.text + "'";
    return text + " at " + std::to_string(figure.box.x) + "," + std::to_string(figure.box.y) + " " +
           std::to_string(figure.box.w) + "x" + std::to_string(figure.box.h);
}

struct Boxes {
    std::vector<const Figure *> solid; // connectors, LEDs and texts: none covers another
    std::vector<const Figure *> bays;
    std::vector<std::string> outside; // parts outside of their group
};

void collect(const Figure &figure, const Figure *group, Boxes &boxes)
{
    const bool isText = figure.part == Part::text && !figure.runs.empty();
    if (isText || figure.part == Part::port || figure.part == Part::led)
        boxes.solid.push_back(&figure);
    if (figure.part == Part::panel && (figure.style == "bay" || figure.style == "lineb"))
        boxes.bays.push_back(&figure);
    if (group != nullptr &&
        (isText || figure.part == Part::port || figure.part == Part::led || figure.style == "bay" ||
         figure.style == "lineb") &&
        !contains(group->box, figure.box))
        boxes.outside.push_back(shown(figure) + " is not in " + shown(*group));
    const Figure *inner = figure.part == Part::group && figure.box.w > 0 ? &figure : group;
    for (const Figure &child : figure.children)
        collect(child, inner, boxes);
}

// "" if no two overlap.
std::string overlapIn(std::vector<const Figure *> figures)
{
    std::sort(figures.begin(), figures.end(),
              [](const Figure *one, const Figure *other) { return one->box.x < other->box.x; });
    for (size_t i = 0; i < figures.size(); i++)
        for (size_t j = i + 1; j < figures.size() && figures[j]->box.x < figures[i]->box.right(); j++)
            if (figures[i]->box.y < figures[j]->box.bottom() && figures[j]->box.y < figures[i]->box.bottom())
                return shown(*figures[i]) + " and " + shown(*figures[j]);
    return "";
}

void expectOrder(const Picture &picture)
{
    Boxes boxes;
    const Figure whole = [&] {
        Figure figure;
        figure.box = {0, 0, picture.width, picture.height};
        return figure;
    }();
    collect(picture.root, &whole, boxes);
    EXPECT_EQ(overlapIn(boxes.solid), "");
    EXPECT_EQ(overlapIn(boxes.bays), "");
    EXPECT_THAT(boxes.outside, IsEmpty());
}

// ---- Generated descriptions -----------------------------------------------------------------------------------------

// Each card in its first described mode.
std::vector<std::pair<uint32_t, uint32_t>> typesOf(const Described &described)
{
    std::vector<std::pair<uint32_t, uint32_t>> types;
    for (const DescribedType &type : described.file->types())
        if (type.kind == RecordKind::card && described.cards.find(type.typeIds.front(), type.mode) != nullptr)
            types.emplace_back(type.typeIds.front(), type.mode);
    return types;
}

// DCM_SEEDS sets their number.
uint32_t seedCount(uint32_t otherwise = 1000)
{
    const char *wanted = std::getenv("DCM_SEEDS");
    return wanted != nullptr ? static_cast<uint32_t>(std::strtoul(wanted, nullptr, 10)) : otherwise;
}

TEST(Draw, ShowsEachPartOfTheExportOnceInManyDescriptions)
{
    size_t cards = 0;
    size_t frames = 0;
    size_t fitted = 0;
    for (uint32_t seed = 1; seed <= seedCount() && !HasFailure(); seed++) {
        SCOPED_TRACE("made from " + std::to_string(seed));
        const Described described(dcmtest::correctDescription(seed));
        const auto types = typesOf(described);
        for (const auto &[type, mode] : types) {
            const CardView &view = *described.cards.find(type, mode);
            LedStateSelection ledStates;
            EXPECT_EQ(idsIn(asSvg(drawCard(view, ledStates, kPixels))), idsOfExport(view.card, type));
            cards++;
        }
        if (described.frameElement == nullptr)
            continue;
        std::vector<Fit> fits;
        for (uint32_t slot = 1; slot <= DCM_SLOT_MAX && !types.empty(); slot++)
            for (uint32_t i = 0; i < slot % 4 && fits.size() < 40; i++) {
                const auto &[type, mode] = types[(seed + slot + i) % types.size()];
                fits.push_back(described.fit(slot, type, mode));
            }
        fits = described.fitted(std::move(fits));
        fitted += static_cast<size_t>(
            std::count_if(fits.begin(), fits.end(), [](const Fit &fit) { return fit.refusal.empty(); }));
        EXPECT_EQ(idsIn(asSvg(described.drawnFrame(fits))), idsOfExport(described.frame, described.frameType, fits));
        frames++;
    }
    EXPECT_GT(cards, seedCount());
    EXPECT_GT(frames, seedCount() / 2);
    EXPECT_GT(fitted, seedCount() / 10);
}

TEST(Draw, LetsNothingCoverAnythingElseInManyDescriptions)
{
    for (uint32_t seed = 1; seed <= seedCount() && !HasFailure(); seed++) {
        SCOPED_TRACE("made from " + std::to_string(seed));
        const Described described(dcmtest::correctDescription(seed));
        std::vector<Fit> fits;
        for (const auto &[type, mode] : typesOf(described)) {
            LedStateSelection ledStates;
            expectOrder(drawCard(*described.cards.find(type, mode), ledStates, kPixels));
            expectOrder(drawCard(*described.cards.find(type, mode), ledStates, kCells));
            for (uint32_t slot = 1; slot <= 6; slot++)
                fits.push_back(described.fit(slot, type, mode));
        }
        if (described.frameElement == nullptr)
            continue;
        expectOrder(described.drawnFrame(described.fitted(std::move(fits))));
        expectOrder(described.drawnFrame({}, kCells));
    }
}

// Numbers as some languages write them.
struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(Draw, MakesTheSameFileEachTimeAndInEachLanguage)
{
    const std::string text = "<device>" + card(ports("1-9", 9) + kLed) + "</device>";
    const std::string svg = asSvg(Described(text).drawnCard());
    const std::locale before = std::locale::global(std::locale(std::locale(), new Grouped));
    EXPECT_EQ(asSvg(Described(text).drawnCard()), svg);
    std::locale::global(before);
    EXPECT_EQ(asSvg(Described(text).drawnCard()), asSvg(Described(text).drawnCard()));
    EXPECT_EQ(asText(Described(text).drawnCard(1, kCells)), asText(Described(text).drawnCard(1, kCells)));
}

// ---- Ports ----------------------------------------------------------------------------------------------------------

// The numbers of the ports in each row, from left to right.
std::map<int, std::vector<std::string>> rowsOf(const Picture &picture)
{
    std::vector<const Figure *> found;
    walk(picture.root, [&](const Figure &figure) {
        if (figure.part == Part::port && !figure.id.empty())
            found.push_back(&figure);
    });
    std::sort(found.begin(), found.end(),
              [](const Figure *one, const Figure *other) { return one->box.x < other->box.x; });
    std::map<int, std::vector<std::string>> rows;
    for (const Figure *port : found)
        rows[port->box.y].push_back(port->glyph);
    return rows;
}

std::vector<std::vector<std::string>> numbersOf(const Picture &picture)
{
    std::vector<std::vector<std::string>> numbers;
    for (const auto &[y, row] : rowsOf(picture))
        numbers.push_back(row);
    return numbers;
}

TEST(Draw, PutsOddPortsAboveEvenOnes)
{
    EXPECT_THAT(numbersOf(device(card(ports("1-5", 5))).drawnCard()),
                ElementsAre(ElementsAre("1", "3", "5"), ElementsAre("2", "4")));
}

TEST(Draw, ArrangesPortsAsACommentInTheCardSays)
{
    const auto numbers = [](const char *comment) {
        const Picture picture = device(card(std::string("<!-- ") + comment + " -->" + ports("1-4", 4))).drawnCard();
        expectOrder(picture);
        return numbersOf(picture);
    };
    EXPECT_THAT(numbers("dcm-draw: rows=1"), ElementsAre(ElementsAre("1", "2", "3", "4")));
    EXPECT_THAT(numbers("dcm-draw: order=across"), ElementsAre(ElementsAre("1", "2"), ElementsAre("3", "4")));
    EXPECT_THAT(numbers("a remark"), ElementsAre(ElementsAre("1", "3"), ElementsAre("2", "4")));
}

TEST(Draw, NamesAWordOfTheCommentThatMeansNothing)
{
    const Described described = device(card("<!-- dcm-draw: rows=1 rows=9 -->" + ports("1-2", 2)));
    std::string fault;
    const Arrangement arrangement = arrangementOf(described.file->types().front().element, fault);
    EXPECT_EQ(arrangement.rows, 1);
    EXPECT_EQ(fault, "rows=9");
}

TEST(Draw, ShowsTheKindOfAPortByColourAndShape)
{
    struct Case {
        const char *content;
        const char *style;
        Shape shape;
    };
    const Case cases[] = {
        {"<phytype>ge</phytype><connector>copper</connector>", "port p-eth1", Shape::rj},
        {"<phytype>10ge</phytype><connector>fiber</connector>", "port p-eth3", Shape::sfp},
        {"<phytype>100ge</phytype><connector>fiber</connector>", "port p-eth6", Shape::qsfp},
        {"<phytype>400ge</phytype>", "port p-eth7", Shape::dd},
        {"<phytype>ge</phytype>", "port p-eth1", Shape::any},
        {"<phytype>otuc2</phytype><connector>fiber</connector>", "port p-otn2", Shape::line},
        {"<phytype>gpon</phytype><connector>fiber</connector>", "port p-pon0", Shape::sc},
        {"<phytype>e1</phytype><connector>copper</connector>", "port p-tdm0", Shape::coax},
        {"<phytype>serial</phytype>", "port p-ser0", Shape::serial},
        {"<phytype>stm1</phytype><porttype>osc</porttype>", "port p-sdh0", Shape::wdm},
        {"<phytype>ge</phytype><connector>copper</connector><hidden>yes</hidden>", "port p-eth1 hid", Shape::rj},
        {"", "port p-unk0", Shape::any},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.content);
        std::string xml = ports("1", 1, one.content);
        if (std::string(one.content).find("hidden") != std::string::npos)
            xml.replace(xml.find(" num="), 1, " hidenum=\"1\" ");
        const Picture picture = device(card(xml)).drawnCard();
        const Figure *port = figureOf(picture, "card-0x1-0.panelIf.0");
        ASSERT_NE(port, nullptr);
        EXPECT_EQ(port->style, one.style);
        EXPECT_EQ(port->shape, one.shape);
    }
}

// The texts of a picture, in the order of its figures.
std::vector<std::string> textsIn(const Picture &picture)
{
    std::vector<std::string> texts;
    walk(picture.root, [&](const Figure &figure) {
        for (const TextRun &run : figure.runs)
            texts.push_back(run.text);
    });
    return texts;
}

TEST(Draw, DrawsEachPortAndLedAsItsRecordSaysInManyDescriptions)
{
    for (uint32_t seed = 1; seed <= seedCount(200) && !HasFailure(); seed++) {
        SCOPED_TRACE("made from " + std::to_string(seed));
        const Described described(dcmtest::correctDescription(seed));
        for (const auto &[type, mode] : typesOf(described)) {
            const CardView &view = *described.cards.find(type, mode);
            LedStateSelection ledStates;
            const Picture picture = drawCard(view, ledStates, kPixels);
            const std::string prefix = "card-" + hexadecimal(type) + "-" + std::to_string(mode) + ".";
            for (size_t i = 0; i < view.card.pannelIfNum; i++) {
                const DcmPanelIfInfo &port = view.card.panelIf[i];
                const Figure *figure = figureOf(picture, prefix + "panelIf." + std::to_string(i));
                ASSERT_NE(figure, nullptr);
                EXPECT_EQ(figure->glyph, portNumber(port.portId));
                EXPECT_EQ(figure->style, "port " + portStyle(port.phyType) + (port.hidden == 1 ? " hid" : ""));
            }
            for (size_t i = 0; i < view.card.ledNum; i++) {
                const DcmLedInfo &led = view.card.led[i];
                const Figure *figure = figureOf(picture, prefix + "led." + std::to_string(i));
                ASSERT_NE(figure, nullptr);
                EXPECT_EQ(figure->style, ledStyle(defaultDisplay(ledDisplays(led.ledType, led.states)),
                                                  ledKey(led.ledType, led.states)));
            }
        }
    }
}

TEST(Draw, ListsWhatPortsCanDoOnAsManyLinesAsItTakes)
{
    std::string words;
    for (const char *word : {"otu4-scfec-deqpsk", "foic1-ofec-deqpsk", "foic1-ofec-qpsk", "foic2-ofec-qpsk",
                             "foic2-ofec-8qam", "foic2-ofec-16qam"})
        words += std::string("<cap>") + word + "</cap>";
    const Picture picture =
        device(
            card(ports("1-2", 2, "<phytype>otuc2</phytype><opticalchannel-caps>" + words + "</opticalchannel-caps>")))
            .drawnCard();
    EXPECT_THAT(textsIn(picture), testing::Contains(testing::EndsWith("foic2-ofec-16qam")));
    EXPECT_THAT(textsIn(picture), Not(testing::Contains(HasSubstr("…"))));
    expectOrder(picture);
}

TEST(Draw, NamesTheChannelsOfAllPortsOfAGroup)
{
    std::string xml;
    for (int port = 1; port <= 4; port++) {
        const std::string number = std::to_string(port);
        xml += "<port id=\"" + number + "\"><portid>" + number +
               "</portid><driver>cdl</driver><phytype>otu4</phytype>" + "<wavelength>2" + number +
               "</wavelength></port>";
    }
    EXPECT_THAT(textsIn(device(card("<panel-port num=\"4\" startportid=\"1\" maxportid=\"4\">" + xml + "</panel-port>"))
                            .drawnCard()),
                testing::Contains(HasSubstr("channel 21–24")));
}

TEST(Draw, ListsManagementPortsWithAConnectorThatIsDerived)
{
    EXPECT_THAT(textsIn(device(card(R"(<mgt-port num="1"><port id="1"><portid>1</portid><phytype>ge</phytype>
        <ifname>meth1</ifname><driver>ineth</driver><workmode>route</workmode></port></mgt-port>)"))
                            .drawnCard()),
                testing::IsSupersetOf({"meth1", "ge", "mgmt", "copper (derived) · route"}));
}

TEST(Draw, SaysInATitleWhatAPortIsAndWhereItIsDescribed)
{
    const Picture picture = device("\n" + card(ports("1", 1))).drawnCard();
    EXPECT_EQ(figureOf(picture, "card-0x1-0.panelIf.0")->title, "port 1: ge · device.xml:2");
}

TEST(Draw, KeepsLinePortsApartFromClientPorts)
{
    const Picture picture = device(card(R"(<panel-port num="2" startportid="1" maxportid="2" linenum="1" clientnum="1">
        <port id="1"><portid>1</portid><phytype>otu4</phytype><porttype>line</porttype></port>
        <port id="2"><portid>2</portid><phytype>ge</phytype><porttype>client</porttype></port></panel-port>)"))
                                .drawnCard();
    std::vector<std::string> captions;
    walk(picture.root, [&](const Figure &figure) {
        if (figure.part == Part::text && figure.runs.size() == 1 && figure.runs[0].face.font == Font::tiny &&
            figure.runs[0].face.isBold)
            captions.push_back(figure.runs[0].text);
    });
    EXPECT_THAT(captions, ElementsAre("line", "client"));
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

TEST(Draw, ShowsAnLedInItsDefaultStateOrInTheOneAskedFor)
{
    const Described described = device(card(kLed));
    const auto styleOf = [&](const LedStateSelection &ledStates) {
        const std::string style = figureOf(described.drawnCard(1, kPixels, ledStates), "card-0x1-0.led.0")->style;
        return style.substr(0, style.find(" L"));
    };
    EXPECT_EQ(styleOf({}), "led c-green f-off");
    for (const char *lit : {"fan=stop", "fan-1=stop"}) {
        LedStateSelection ledStates;
        EXPECT_TRUE(ledStates.select(lit));
        EXPECT_EQ(styleOf(ledStates), "led c-red f-fast-blink") << lit;
    }
    LedStateSelection other;
    EXPECT_TRUE(other.select("fan-2=stop"));
    EXPECT_EQ(styleOf(other), "led c-green f-off");
    EXPECT_FALSE(LedStateSelection().select("fan"));
}

TEST(Draw, ReportsAStateThatNoLedHas)
{
    LedStateSelection ledStates;
    ledStates.select("fan=stop");
    ledStates.select("fan=dancing");
    const Described described = device(card(kLed));
    drawCard(*described.cards.find(1, 0), ledStates, kPixels);
    EXPECT_THAT(ledStates.unused(), ElementsAre("fan=dancing"));
}

// ---- Cards in slots -------------------------------------------------------------------------------------------------

constexpr const char *kFrame = R"(<frame typeid="1"><maxslotnum>3</maxslotnum>
    <slotmap><lpu>1-2</lpu><mpu>3</mpu></slotmap><slotinfo>
    <slotid id="1"><supportcrossslot>1</supportcrossslot><crossslotbit>1-2</crossslotbit>
        <supportcardtype>1,2,9</supportcardtype><maxcardnum>2</maxcardnum><startcardid>1</startcardid></slotid>
    <slotid id="2"><supportcardtype>1,2</supportcardtype><maxcardnum>2</maxcardnum><startcardid>5</startcardid></slotid>
    <slotid id="3"><supportcardtype>3</supportcardtype><maxcardnum>1</maxcardnum></slotid></slotinfo></frame>
    <card typeid="1" abbrname="A"><occupyslotnum>1</occupyslotnum></card>
    <card typeid="2" abbrname="TALL"><occupyslotnum>2</occupyslotnum></card>
    <card typeid="3" abbrname="MCU"><occupyslotnum>1</occupyslotnum></card>)";

TEST(Draw, RefusesACardThatDoesNotFitAndSaysWhy)
{
    struct Case {
        std::vector<std::pair<uint32_t, uint32_t>> fits; // slot and type; all but the last one fit
        const char *refusal;
    };
    const Case cases[] = {
        {{{1, 1}, {1, 1}, {2, 1}, {3, 3}}, ""},
        {{{1, 2}}, ""},
        {{{3, 1}}, "slot 3 accepts MCU"},
        {{{1, 9}}, "no such card is described, or its query fails"},
        {{{1, 1}, {1, 1}, {1, 1}}, "slot 1 is full: it holds 2"},
        {{{1, 2}, {2, 1}}, "slot 2 is taken by TALL in slot 1"},
        {{{2, 1}, {1, 2}}, "it takes slots 1–2, and slot 2 is not empty"},
        {{{2, 2}}, "it takes slots 2–3, and slot 2 may not span them"},
    };
    const Described described = device(kFrame);
    for (const Case &one : cases) {
        std::vector<Fit> fits;
        for (const auto &[slot, type] : one.fits)
            fits.push_back(described.fit(slot, type));
        fits = described.fitted(std::move(fits));
        EXPECT_EQ(fits.back().refusal, one.refusal);
        for (size_t i = 0; i + 1 < fits.size(); i++)
            EXPECT_EQ(fits[i].refusal, "");
    }
}

TEST(Draw, DrawsARefusedCardWithItsReasonAndAFittedOneWithItsId)
{
    const Described described = device(kFrame);
    const Picture picture = described.drawnFrame(described.fitted({described.fit(2, 1), described.fit(3, 1)}));
    EXPECT_NE(figureOf(picture, "frame-0x1.slot.2.card.5"), nullptr);
    const Figure *refused = figureOf(picture, "frame-0x1.slot.3.refused.0");
    ASSERT_NE(refused, nullptr);
    EXPECT_EQ(refused->title, "A refused: slot 3 accepts MCU");
    EXPECT_THAT(asText(described.drawnFrame(described.fitted({described.fit(3, 1)}), kCells)),
                HasSubstr("✗ A refused: slot 3 accepts MCU"));
}

TEST(Draw, DrawsACardOfTwoSlotsOverBoth)
{
    const Described described = device(kFrame);
    const Picture picture = described.drawnFrame(described.fitted({described.fit(1, 2)}));
    const Figure *card = figureOf(picture, "frame-0x1.slot.1.card.1");
    const Figure *second = figureOf(picture, "frame-0x1.slot.2");
    ASSERT_NE(card, nullptr);
    EXPECT_GT(card->box.bottom(), second->box.y + second->box.h / 2);
}

TEST(Draw, SaysWhichCardsTheSlotOfADisplayAccepts)
{
    const Picture picture = device(R"(<frame typeid="1"><maxslotnum>1</maxslotnum><slotmap><lcd>1</lcd></slotmap>
        <slotinfo><slotid id="1"><supportcardtype>3</supportcardtype><maxcardnum>1</maxcardnum></slotid></slotinfo>
        </frame><card typeid="3" abbrname="DISP"/>)")
                                .drawnFrame();
    EXPECT_THAT(textsIn(picture), testing::Contains("display · accepts DISP"));
}

TEST(Draw, ExplainsTheMarksThatAPictureHasAndNoOthers)
{
    const auto span = testing::Contains(HasSubstr("a card may span these slots"));
    const auto sideBySide = testing::Contains(HasSubstr("cards side by side"));
    const std::vector<std::string> texts = textsIn(device(kFrame).drawnFrame());
    EXPECT_THAT(texts, span);
    EXPECT_THAT(texts, sideBySide);
    const std::vector<std::string> plain = textsIn(
        device(R"(<frame typeid="1"><maxslotnum>1</maxslotnum><slotmap><lpu>1</lpu></slotmap></frame>)").drawnFrame());
    EXPECT_THAT(plain, Not(span));
    EXPECT_THAT(plain, Not(sideBySide));
    EXPECT_THAT(plain, Not(testing::Contains("fast-blink"))); // it has no LEDs
}

TEST(Draw, SaysInTheLegendWhetherLedsShowTheirDefaultState)
{
    const Described described = device(card(kLed));
    const auto label = testing::Contains("LEDs, default display");
    EXPECT_THAT(textsIn(described.drawnCard()), label);
    LedStateSelection ledStates;
    ledStates.select("fan=stop");
    EXPECT_THAT(textsIn(described.drawnCard(1, kPixels, ledStates)), Not(label));
}

TEST(Draw, ShowsSlotsOfTwoKindsAndOfNone)
{
    const Picture picture = device(R"(<frame typeid="1"><maxslotnum>3</maxslotnum>
        <slotmap><mpu>1</mpu><fan>1</fan><power>5</power></slotmap></frame>)")
                                .drawnFrame();
    EXPECT_THAT(figureOf(picture, "frame-0x1.slot.1")->title, HasSubstr("slot 1 (control, also fan)"));
    EXPECT_THAT(figureOf(picture, "frame-0x1.slot.2")->title, HasSubstr("slot 2 (no kind)"));
    EXPECT_THAT(figureOf(picture, "frame-0x1.slot.5")->title, HasSubstr("beyond maxslotnum"));
    EXPECT_THAT(textsIn(picture), testing::IsSupersetOf({"also fan", "slots 2–3 of no kind"}));
}

// ---- Findings -------------------------------------------------------------------------------------------------------

TEST(Draw, MarksWhatTheLinterFinds)
{
    const Described described = device(card(ports("1-2", 2, "<phytype>ge</phytype><hiden>yes</hiden>")));
    Picture picture = described.drawnCard();
    const CardView &view = *described.cards.find(1, 0);
    std::vector<Finding> findings = checkFile(*described.file);
    const auto isOther = [](const Finding &finding) { return finding.rule->name != std::string("unknown-element"); };
    findings.erase(std::remove_if(findings.begin(), findings.end(), isOther), findings.end());
    markFindings(picture, markedIn(*described.file, findings, view.places, "card-0x1-0"), kPixels);
    for (const char *id : {"card-0x1-0.panelIf.0", "card-0x1-0.panelIf.1"})
        EXPECT_THAT(figureOf(picture, id)->title, HasSubstr("[unknown-element]"));
    size_t marks = 0;
    walk(picture.root, [&](const Figure &figure) { marks += figure.part == Part::mark ? 1 : 0; });
    EXPECT_EQ(marks, 3U); // one at each port, and one in the list
}

// ---- Hostile and extreme files --------------------------------------------------------------------------------------

TEST(Draw, KeepsTextOfTheFileFromBecomingMarkup)
{
    const Described described(
        "<device><card typeid=\"1\" name=\"&lt;script>&quot;&amp;&#x202e;&#x85;\" abbrname=\"]]>&lt;/svg>\"/></device>");
    const std::string svg = asSvg(described.drawnCard());
    EXPECT_THAT(idsIn(svg), IsEmpty());
    EXPECT_THAT(svg, Not(HasSubstr("<script")));
    EXPECT_THAT(svg, HasSubstr("&lt;script&gt;&quot;&amp;\\u202e\\u0085"));
    EXPECT_THAT(asText(described.drawnCard(1, kCells)), HasSubstr("<script>\"&\\u202e\\u0085"));
}

TEST(Draw, TakesWhateverFitsIntoARecord)
{
    const std::string runs = R"(<portled-entity><port-led type="link" start-id="0" end-id="255" name-prefix="a"/>
        <port-led type="poe" start-id="0" end-id="255" name-prefix="WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"/>
        <port-led type="stack" start-id="1" end-id="254" name-prefix=""/></portled-entity>)";
    const std::string leds = R"(<led-entity num="16"><led id="1-16" type="stackmaster"/></led-entity>)";
    const std::string wide =
        "<phytype>100ge</phytype><connector>fiber</connector>"; // the maximum number of the widest ports
    const std::string name(63, 'W');
    const Described described("<device><card typeid=\"1\" name=\"" + name + "\" abbrname=\"" + name.substr(32) + "\">" +
                              ports("1-64", 64, wide) + runs + leds +
                              "</card><card typeid=\"2\"/>"
                              "<frame typeid=\"1\"><maxslotnum>255</maxslotnum><slotmap><lpu>1-8</lpu><fan>9-16</fan>"
                              "<lcd>17-24</lcd><power>25-32</power></slotmap><slotinfo><slotid id=\"1\">"
                              "<supportcardtype>1,2</supportcardtype><maxcardnum>255</maxcardnum></slotid></slotinfo>" +
                              leds + "</frame></device>");
    for (const Metrics *metrics : {&kPixels, &kCells})
        for (const uint32_t type : {1U, 2U})
            expectOrder(described.drawnCard(type, *metrics));
    EXPECT_EQ(idsIn(asSvg(described.drawnCard())), idsOfExport(described.cards.find(1, 0)->card, 1));
    EXPECT_LE(described.drawnCard().width, 14500);
    const std::vector<Fit> fits = described.fitted(std::vector<Fit>(kMostFitsOfSlot, described.fit(1, 1)));
    expectOrder(described.drawnFrame(fits));
    EXPECT_EQ(idsIn(asSvg(described.drawnFrame(fits))), idsOfExport(described.frame, 1, fits));
    expectOrder(described.drawnFrame({}, kCells));
}

// ---- Features of this build -----------------------------------------------------------------------------------------

TEST(Draw, MakesPngAndPdfOrSaysThatThisBuildDoesNot)
{
    const std::string svg = asSvg(device(card(ports("1-4", 4))).drawnCard());
    std::string fault;
    const std::string png = asPng(svg, fault);
    const std::string pdf = asPdf(svg, fault);
    if (!canRasterize()) {
        EXPECT_THAT(fault, HasSubstr("librsvg"));
        return;
    }
    EXPECT_EQ(fault, "");
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
    EXPECT_EQ(pdf, asPdf(svg, fault));
    EXPECT_EQ(asPng("<svg", fault), "");
    EXPECT_NE(fault, "");
}

// ---- The page -------------------------------------------------------------------------------------------------------

// Every id of a part in a page: those of HTML's own elements and of miniatures have no dot or begin with "m-".
Ids idsInPage(const std::string &html)
{
    static constexpr char kId[] = " id=\"";
    Ids ids;
    for (size_t at = html.find(kId); at != std::string::npos; at = html.find(kId, at)) {
        at += sizeof kId - 1;
        const std::string id = html.substr(at, html.find('"', at) - at);
        if (id.find('.') != std::string::npos && id.find(".crossSlotBit.") == std::string::npos)
            ids.insert(id);
    }
    return ids;
}

HtmlPage pageOf(const Described &described)
{
    const OwnOutput silence;
    return dcmtool::pageOf(*described.file, checkFile(*described.file), 100'000'000);
}

TEST(Page, ShowsEachPartOfTheExportOnceInManyDescriptions)
{
    size_t slots = 0;
    for (uint32_t seed = 1; seed <= seedCount(100) && !HasFailure(); seed++) {
        SCOPED_TRACE("made from " + std::to_string(seed));
        const Described described(dcmtest::correctDescription(seed));
        if (!described.file->isDevice())
            continue;
        Ids expected;
        for (const auto &[type, mode] : typesOf(described))
            expected.merge(idsOfExport(described.cards.find(type, mode)->card, type));
        for (const DescribedType &type : described.file->types()) {
            DcmFrameInfo frame;
            DcmSlotInfo slot;
            Queries queries(*described.file, true);
            if (type.kind == RecordKind::frame && queries.run(type, frame))
                expected.merge(idsOfExport(frame, type.typeIds.front(), {}));
            if (type.kind != RecordKind::slot || !queries.run(type, slot))
                continue;
            const size_t size = expected.size();
            expected.merge(idsOfExport(slot, type.typeIds.front()));
            slots += expected.size() != size ? 1 : 0;
        }
        EXPECT_EQ(idsInPage(pageOf(described).html), expected);
    }
    EXPECT_GT(slots, seedCount(100) / 2);
}

TEST(Page, ReachesForNothingElse)
{
    const Described described(dcmtest::correctDescription(3));
    std::string html = pageOf(described).html;
    // Elements of SVG with names that occur in no id.
    const std::string name = "'http://www.w3.org/2000/svg'";
    html.erase(html.find(name), name.size());
    for (const char *reach : {"://", " src=", "@import", "url(\"", "url(h", "<link", "<base", "<iframe"})
        EXPECT_THAT(html, Not(HasSubstr(reach)));
}

TEST(Page, KeepsTextOfTheFileFromBecomingMarkup)
{
    const std::string name = "&lt;/script>&lt;!--&quot;' onload=x>";
    const Described described(
        "<device><card typeid=\"1\" name=\"" + name + "\" abbrname=\"&lt;/title>\"><panel-port " +
        "num=\"1\" startportid=\"1\" maxportid=\"1\"><port id=\"1\"><portid>1</portid><modelname>" + name +
        "</modelname></port></panel-port></card><" + "b typeid=\"&lt;i>\"/></device>");
    const std::string html = pageOf(described).html;
    EXPECT_THAT(html, HasSubstr("&lt;/script&gt;&lt;!--&quot;"));
    EXPECT_THAT(html, Not(HasSubstr("</script><!--")));
    EXPECT_THAT(html, Not(HasSubstr("<i>")));
    EXPECT_THAT(html, HasSubstr("\\u003c/script>"));
    EXPECT_EQ(html.find("</title>"), html.rfind("</title>", html.find("<style")));
}

TEST(Page, LeavesOutWhatThereIsNoRoomForAndCountsIt)
{
    std::string text = "<device>";
    for (int i = 1; i <= 100; i++)
        text += "<card typeid=\"" + std::to_string(i) + "\"/>";
    const auto file = DescriptionFile::parse("many.xml", text + "</device>");
    const OwnOutput silence;
    const HtmlPage page = dcmtool::pageOf(*file, {}, 20'000);
    EXPECT_GT(page.omitted, 50U);
    EXPECT_LT(page.html.size(), 100'000U);
    EXPECT_EQ(dcmtool::pageOf(*file, {}, 10'000'000).omitted, 0U);
}

TEST(Page, SaysThatAQueryFailsAndWhy)
{
    const Described described(
        "<device><card typeid=\"1\"><porttypecap><portcap>x</portcap></porttypecap></card></device>");
    const HtmlPage page = pageOf(described);
    EXPECT_EQ(page.failed, 1U);
    EXPECT_THAT(page.html, HasSubstr("The query of this type fails."));
    EXPECT_THAT(page.html, HasSubstr(" <code>query-fails</code><br>"));
}

} // namespace
