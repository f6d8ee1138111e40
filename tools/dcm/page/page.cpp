#include "tools/dcm/page/page.h"

#include "card/card.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/draw/assets.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/described_cards.h"
#include "tools/dcm/draw/findings.h"
#include "tools/dcm/draw/mini_card.h"
#include "tools/dcm/page/html.h"
#include "tools/dcm/page/tables.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/records/json_text.h"

#include <algorithm>
#include <memory>
#include <set>

namespace dcmtool {

namespace {

// In tenths of a pixel: the width of a slot of a chassis, and the addition for each further slot of a card.
constexpr Box kWholeSlot = {0, 0, 9380, 340};
constexpr Box kHalfSlot = {0, 0, 4680, 340};
constexpr int kNextSlot = 440;

constexpr const char *kFails = "fails"; // of a type whose query fails, in the list of contents

struct Found {
    std::string place; // "device.xml:812:3"
    std::string text;
    const char *check;
    bool isError;
};

std::string badgeOf(size_t count, bool isError)
{
    return count == 0 ? ""
                      : std::string("<b class=\"badge ") + (isError ? "bad" : "warn") + "\" title=\"" +
                            counted(count, isError ? "error" : "warning") + "\">" + std::to_string(count) + "</b>";
}

std::string listOf(const std::vector<Found> &found)
{
    std::string html;
    for (const Found &one : found)
        html += std::string("<li class=") + (one.isError ? "bad" : "warn") + "><b>" +
                (one.isError ? "error" : "warning") + "</b> " + escapedXml(one.place) + " <code>" + one.check +
                "</code><br>" + escapedXml(one.text) + "\n";
    return html.empty() ? "" : "<ul class=found>\n" + html + "</ul>\n";
}

class PageWriter {
public:
    PageWriter(const DescriptionFile &file, const std::vector<Finding> &findings, size_t most)
        : file_(file), findings_(findings), most_(most), names_(
                                                             file, [](uint32_t, uint32_t) { return false; }, true),
          queries_(file, true), types_(file.types())
    {
        const std::string &name = file.name();
        name_ = printable(name.substr(name.find_last_of('/') + 1));
        sortFindings();
    }

    HtmlPage write()
    {
        for (const DescribedType &type : types_)
            add(type);
        addFindingsOfFile();
        HtmlPage page;
        page.failed = failed_;
        page.omitted = omitted_;
        page.html = head() + header() + navigation() + "<main id=main tabindex=-1>\n" + definitions() + sections_ +
                    "</main></div>\n" + scripts();
        return page;
    }

private:
    // ---- Findings ---------------------------------------------------------------------------------------------------

    // A finding belongs to the frame, slot or card that contains it; all others belong to the file.
    void sortFindings()
    {
        std::set<dcm::Node> entities;
        for (const DescribedType &type : types_)
            entities.insert(type.element);
        for (const Finding &finding : findings_) {
            dcm::Node node = finding.element;
            while (node != nullptr && node->type == XML_ELEMENT_NODE && entities.count(node) == 0)
                node = node->parent;
            const bool isInside = node != nullptr && node->type == XML_ELEMENT_NODE;
            const Place place = file_.place(finding.span.begin);
            const bool isError = finding.severity == Severity::error;
            std::string text = printable(finding.text);
            if (finding.more != 0)
                text += " (and " + std::to_string(finding.more) + " more)";
            foundIn_[isInside ? node : nullptr].push_back(
                {name_ + ":" + std::to_string(place.line) + ":" + std::to_string(place.column), text,
                 finding.rule->name, isError});
            (isError ? errors_ : warnings_)++;
        }
    }

    static size_t countOf(const std::vector<Found> &found, bool areErrors)
    {
        return static_cast<size_t>(
            std::count_if(found.begin(), found.end(), [&](const Found &one) { return one.isError == areErrors; }));
    }

    void addFindingsOfFile()
    {
        const std::vector<Found> &found = foundIn_[nullptr];
        if (found.empty())
            return;
        files_ += link("file", "Findings", "", found);
        sections_ += "<section class=ent id=e-file data-key=file><h2>" + escapedXml(name_) + "</h2>\n" + listOf(found) +
                     "</section>\n";
    }

    // ---- Frames, slots and cards ------------------------------------------------------------------------------------

    static std::string keyOf(const DescribedType &type)
    {
        const uint32_t id = type.typeIds.empty() ? 0 : type.typeIds.front();
        const std::string key = std::string(kindName(type.kind)) + "-" + hexadecimal(id);
        return type.kind == RecordKind::card ? key + "-" + std::to_string(type.mode) : key;
    }

    void add(const DescribedType &type)
    {
        const std::string key = keyOf(type);
        // A query finds the first element of a type, and no element without one.
        const bool isFound = !type.typeIds.empty() && keys_.insert(key).second;
        if (!isFound || omitted_ != 0 || sections_.size() + symbols_.size() > most_) {
            omitted_ += isFound ? 1 : 0;
            queries_.pass(type);
            return;
        }
        switch (type.kind) {
        case RecordKind::frame:
            addFrame(type, key);
            break;
        case RecordKind::slot:
            addSlot(type, key);
            break;
        case RecordKind::card:
            addCard(type, key);
            break;
        case RecordKind::vm:
            break;
        }
    }

    static std::string link(const std::string &key, const std::string &name, const std::string &more,
                            const std::vector<Found> &found)
    {
        return "<a href=\"#/" + key + "\"><span>" + escapedXml(name) + badgesOf(found) + "</span><small>" +
               escapedXml(more) + "</small></a>\n";
    }

    static std::string badgesOf(const std::vector<Found> &found)
    {
        return badgeOf(countOf(found, true), true) + badgeOf(countOf(found, false), false);
    }

    // `content` is empty if the query fails.
    void addSection(const DescribedType &type, const std::string &key, const std::string &name, const std::string &more,
                    const std::string &facts, const std::string &content, bool isDerived = true)
    {
        const std::vector<Found> &found = foundIn_[type.element];
        sections_ += "<section class=ent id=\"e-" + key + "\" data-key=\"" + key + "\">\n<h2>" + escapedXml(name) +
                     badgesOf(found);
        if (!more.empty())
            sections_ += " <small>" + escapedXml(more) + "</small>";
        sections_ += "</h2>\n<p class=place>" + escapedXml(joined({facts, placeOfType(type)}));
        if (isDerived && !content.empty())
            sections_ +=
                " <span class=derived title=\"The description gives no places: ports, LEDs and units are drawn "
                "in number order.\">layout derived</span>";
        sections_ += "</p>\n" + listOf(found);
        sections_ += content.empty() ? "<p class=fails>The query of this type fails.</p>\n" : content;
        sections_ += "</section>\n";
        failed_ += content.empty() ? 1 : 0;
    }

    std::string placeOfType(const DescribedType &type) const
    {
        return name_ + ":" + std::to_string(placeOf(file_, type).line);
    }

    void addFrame(const DescribedType &type, const std::string &key)
    {
        const uint32_t id = type.typeIds.front();
        const auto info = std::make_unique<DcmFrameInfo>();
        const std::string name = "Frame " + hexadecimal(id);
        frameCount_++;
        std::string content;
        const bool isDecoded = queries_.run(type, *info);
        frames_ += link(key, name, isDecoded ? counted(info->maxSlotId, "slot") : kFails, foundIn_[type.element]);
        if (isDecoded) {
            const Places places(file_, type.element);
            const FrameView view = {*info, id, places, names_.names(), {}, true};
            LedStateSelection ledStates;
            Picture picture = drawFrame(view, ledStates, kPixels);
            markParts(picture, markedIn(file_, findings_, places, key), kPixels);
            content = "<p class=\"hint script\">Choose a slot in the picture to see which cards it accepts, and to put "
                      "cards into it.</p><div class=stage><figure class=\"picture chassis\">\n" +
                      asSvgElement(picture) +
                      "</figure><aside class=panel hidden aria-label=\"slot\"></aside></div>\n" + tablesOf(view);
            addSlotRules(key, *info);
            addKeys(info->ledInfo, info->ledNum);
            for (size_t i = 0; i < std::min<size_t>(info->fanModuleNum, DCM_FAN_MODULE_MAX); i++)
                addKeys(info->fanModuleInfo[i].ledInfo, info->fanModuleInfo[i].ledNum);
            for (size_t i = 0; i < std::min<size_t>(info->powerNum, DCM_POWER_MAX); i++)
                addKeys(info->powerInfo[i].ledInfo, info->powerInfo[i].ledNum);
        }
        addSection(type, key, name, "", "", content);
    }

    void addSlot(const DescribedType &type, const std::string &key)
    {
        std::vector<std::string> ids;
        for (const uint32_t id : type.typeIds)
            ids.push_back(hexadecimal(id));
        constexpr size_t kMostIds = 8;
        if (ids.size() > kMostIds) {
            ids.resize(kMostIds);
            ids.emplace_back("…");
        }
        const std::string name = "Slot type " + joined(ids, ", ");
        slotCount_++;
        DcmSlotInfo info = {};
        const bool isDecoded = queries_.run(type, info);
        slots_ += link(key, name, isDecoded ? "" : kFails, foundIn_[type.element]);
        addSection(type, key, name, "", "", isDecoded ? tablesOf(info, key) : "", false);
    }

    void addCard(const DescribedType &type, const std::string &key)
    {
        const uint32_t id = type.typeIds.front();
        const auto info = std::make_unique<DcmCardInfo>();
        const bool isDecoded = queries_.run(type, *info);
        const std::string name = cardName(*info, id);
        const std::string longName = shownText(info->name, std::min<size_t>(info->nameLen, sizeof info->name));
        const std::string mode = type.mode == 0 && names_.modesOf(id) < 2 ? "" : " m" + std::to_string(type.mode);
        cards_ += link(key, name, isDecoded ? hexadecimal(id, 4) + mode : kFails, foundIn_[type.element]);
        cardCount_++;
        std::string facts = "card " + hexadecimal(id, 4) + " · mode " + std::to_string(type.mode);
        std::string content;
        if (isDecoded) {
            facts += info->occupySlotNum == 0 ? "" : " · " + counted(info->occupySlotNum, "slot");
            content = contentOf(type, key, *info);
            data_["cards"][key] = {{"type", id},
                                   {"mode", type.mode},
                                   {"name", name},
                                   {"long", longName == name ? "" : longName},
                                   {"slots", std::max<uint32_t>(info->occupySlotNum, 1)}};
        } else {
            data_["fails"].push_back(id);
        }
        addSection(type, key, name, longName == name ? "" : longName, facts, content);
    }

    std::string contentOf(const DescribedType &type, const std::string &key, const DcmCardInfo &info)
    {
        const Places places(file_, type.element);
        std::string fault;
        const CardView view = {info, type.typeIds.front(), places, arrangementOf(type.element, fault), true};
        LedStateSelection ledStates;
        Picture picture = drawCard(view, ledStates, kPixels);
        markParts(picture, markedIn(file_, findings_, places, key), kPixels);
        for (Box box : {kWholeSlot, kHalfSlot}) {
            box.h += (std::max<int>(info.occupySlotNum, 1) - 1) * kNextSlot;
            const char *which = box.w == kWholeSlot.w ? "-whole" : "-half";
            symbols_ += asSvgPart(miniCard(view, "", box, ledStates, kPixels), "m-" + key + which);
        }
        addKeys(info.led, info.ledNum);
        for (const DcmPortLedInfo &run : info.portLed) {
            if (run.endId == 0)
                break;
            addKey(run.ledType, run.states);
        }
        return "<figure class=picture>\n" + asSvgElement(picture) + "</figure>\n" + tablesOf(view);
    }

    // ---- Data for the script
    // --------------------------------------------------------------------------------------------

    void addSlotRules(const std::string &key, const DcmFrameInfo &frame)
    {
        Json &slots = data_["frames"][key] = Json::object();
        for (uint32_t slot = 1; slot <= DCM_SLOT_MAX; slot++) {
            Json rule = {{"max", frame.maxCardNum[slot - 1]}, {"first", frame.startCardId[slot - 1]}};
            Json types = Json::array();
            for (const uint32_t type : frame.supportCardType[slot - 1]) {
                if (type == 0)
                    break;
                types.push_back(type);
            }
            Json span = Json::array();
            for (uint32_t other = 1; other <= DCM_SLOT_MAX; other++)
                if (isSet(frame.supportCrossSlot, slot) && isSet(frame.crossSlotBit[slot - 1], other))
                    span.push_back(other);
            rule["types"] = std::move(types);
            rule["span"] = std::move(span);
            slots[std::to_string(slot)] = std::move(rule);
        }
        for (const auto &slot : frame.supportCardType)
            for (const uint32_t type : slot) {
                if (type == 0)
                    break;
                const auto name = names_.names().find(type);
                data_["names"][std::to_string(type)] =
                    name != names_.names().end() ? name->second : hexadecimal(type, 4);
            }
    }

    static bool isSet(const uint8_t *bits, uint32_t number)
    {
        const uint32_t bit = number - 1;
        return (bits[bit / 8] & (0x80U >> bit % 8)) != 0;
    }

    void addKeys(const DcmLedInfo *leds, size_t count)
    {
        for (size_t i = 0; i < std::min<size_t>(count, DCM_LED_MAX); i++)
            addKey(leds[i].ledType, leds[i].states);
    }

    void addKey(uint32_t type, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
    {
        Json &displays = data_["leds"][ledKey(type, states)] = Json::object();
        for (const LedDisplay &display : ledDisplays(type, states)) {
            displays[display.state] = {display.colour, display.freq};
            if (display.state != "default")
                states_.insert(display.state);
        }
    }

    // ---- The page ---------------------------------------------------------------------------------------------------

    std::string head() const
    {
        return headOf(name_ + ": hardware description", "", "; script-src 'unsafe-inline'") +
               "<style id=lit></style>\n";
    }

    std::string header() const
    {
        std::string html =
            "<a class=skip href=#main>To the content</a>\n<header>"
            "<button type=button id=menu aria-expanded=false aria-controls=list>☰<span class=sr> Contents"
            "</span></button><h1>" +
            escapedXml(name_) + "</h1><span class=counts>" +
            joined({counted(frameCount_, "frame"), counted(cardCount_, "card"), counted(slotCount_, "slot type")}) +
            "</span>";
        if (errors_ + warnings_ == 0)
            html += labelOf("good", "check: nothing found");
        if (errors_ != 0)
            html += labelOf("bad", counted(errors_, "error"));
        if (warnings_ != 0)
            html += labelOf("warn", counted(warnings_, "warning"));
        html += "<span class=gap></span><label class=script>LEDs show <select id=state><option>default";
        for (const std::string &state : states_)
            html += "<option>" + escapedXml(state);
        return html + "</select></label><button type=button class=script id=theme>Dark</button></header>\n";
    }

    std::string navigation() const
    {
        std::string html = "<div class=wrap><nav id=list aria-label=Contents>"
                           "<input class=script id=search type=search autocomplete=off aria-label=Search "
                           "placeholder=\"Search: 400ge, PoE, 0x0302 …  (/)\"><p id=count role=status></p>\n";
        for (const auto &[heading, links] : {std::pair<const char *, const std::string &>{"Frames", frames_},
                                             {"Cards", cards_},
                                             {"Slot types", slots_},
                                             {"File", files_}})
            if (!links.empty())
                html += std::string("<h2>") + heading + "</h2>\n" + links;
        return html + "</nav>\n";
    }

    std::string definitions() const
    {
        return "<svg class=defs aria-hidden=true>" + svgDefinitions() + "<defs>\n" + symbols_ + "</defs></svg>\n";
    }

    std::string scripts() const
    {
        std::string json = data_.dump();
        for (size_t at = 0; (at = json.find('<', at)) != std::string::npos;)
            json.replace(at, 1, "\\u003c");
        return "<script type=application/json id=data>" + json + "</script>\n<script>" + kPageScript +
               "</script>\n</html>\n";
    }

    const DescriptionFile &file_;
    const std::vector<Finding> &findings_;
    size_t most_;
    DescribedCards names_;
    Queries queries_;
    std::vector<DescribedType> types_;
    std::string name_;
    std::map<dcm::Node, std::vector<Found>> foundIn_;
    std::set<std::string> keys_;
    std::set<std::string> states_;
    std::string frames_, cards_, slots_, files_; // links
    std::string sections_;
    std::string symbols_;
    Json data_ = {{"frames", Json::object()},
                  {"cards", Json::object()},
                  {"names", Json::object()},
                  {"fails", Json::array()},
                  {"leds", Json::object()}};
    size_t errors_ = 0, warnings_ = 0, failed_ = 0, omitted_ = 0;
    size_t frameCount_ = 0, cardCount_ = 0, slotCount_ = 0;
};

} // namespace

HtmlPage pageOf(const DescriptionFile &file, const std::vector<Finding> &findings, size_t most)
{
    return PageWriter(file, findings, most).write();
}

} // namespace dcmtool
