#include "card/card.h"
#include "tools/dcm/commands/selection.h"
#include "tools/dcm/draw/places.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/records/record.h"
#include "tools/dcm/show/pages.h"
#include "tools/dcm/show/terminal.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <set>

using namespace dcmtool;

namespace {

// "frame 0x1"; the shortest name that is unique.
std::string typeName(uint32_t type)
{
    char name[sizeof "0x12345678"];
    std::snprintf(name, sizeof name, "0x%x", static_cast<unsigned>(type));
    return name;
}

// Facts about the other types of a file, for its pages.
class OtherTypes {
public:
    OtherTypes(const DescriptionFile &file, const std::vector<DescribedType> &types) : file_(file), types_(types) {}

    // The slots that accept a card: "frame 0x1 slots 1-6,11-16".
    std::vector<std::string> fitsOf(uint32_t cardType)
    {
        if (!areFramesRead_)
            readFrames();
        const auto found = fits_.find(cardType);
        if (found != fits_.end())
            return found->second;
        return hasFrames_ ? std::vector<std::string>{"no slot of a described frame"} : std::vector<std::string>();
    }

    // The name of a card in the list of a slot.
    std::string cardName(uint32_t cardType)
    {
        if (cards_.empty())
            readCards();
        const auto found = cards_.find(cardType);
        if (found == cards_.end())
            return cardTypeName(cardType) + " (not described)";
        const Card &card = found->second;
        std::string name = card.name;
        // A name that several types have is ambiguous.
        if (name.empty() || typesByName_[name] != 1)
            name += (name.empty() ? "" : " ") + cardTypeName(cardType);
        return card.modes > 1 ? name + " (" + std::to_string(card.modes) + " modes)" : name;
    }

private:
    struct Card {
        std::string name;
        size_t modes = 0;
    };

    void readFrames()
    {
        areFramesRead_ = true;
        // A frame may list many more types than exist.
        std::set<uint32_t> described;
        for (const DescribedType &type : types_)
            if (type.kind == RecordKind::card)
                described.insert(type.typeIds[0]);
        Queries queries(file_, true);
        for (const DescribedType &type : types_) {
            DcmFrameInfo frame;
            if (type.kind != RecordKind::frame || !queries.run(type, frame))
                continue;
            hasFrames_ = true;
            std::map<uint32_t, std::vector<uint32_t>> slots; // by card type
            for (uint32_t slot = 0; slot < DCM_SLOT_MAX; slot++)
                for (const uint32_t cardType : frame.supportCardType[slot]) {
                    if (cardType == 0)
                        break;
                    if (described.count(cardType) == 0)
                        continue;
                    if (slots[cardType].empty() || slots[cardType].back() != slot + 1)
                        slots[cardType].push_back(slot + 1);
                }
            for (const auto &[cardType, numbers] : slots)
                if (fits_[cardType].size() < kMostFits)
                    fits_[cardType].emplace_back("frame " + typeName(frame.type) +
                                                 (numbers.size() == 1 ? " slot " : " slots ") + rangesOf(numbers));
        }
    }

    void readCards()
    {
        for (const DescribedType &type : types_) {
            if (type.kind != RecordKind::card || type.typeIds.empty())
                continue;
            DcmCardInfo names = {};
            static_cast<void>(dcm::takeCardNames(type.element, names, dcm::Reporter{"dcmCardInfoGet"}));
            const std::string name = recordOf(names)["abbrName"].words();
            Card &card = cards_[type.typeIds[0]];
            card.name = card.modes++ == 0 ? name : commonWords(card.name, name);
        }
        for (const auto &card : cards_)
            typesByName_[card.second.name]++;
    }

    // The common prefix of two names: the names of a card's modes usually differ in the last word.
    static std::string commonWords(const std::string &one, const std::string &other)
    {
        const auto differ = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
        const std::string common(one.begin(), differ.first);
        const bool isWhole = (differ.first == one.end() || *differ.first == ' ') &&
                             (differ.second == other.end() || *differ.second == ' ');
        const size_t end = isWhole ? common.size() : common.rfind(' ');
        return end == std::string::npos || end == 0 ? one : common.substr(0, end);
    }

    static constexpr size_t kMostFits = 32; // a file may describe any number of frames

    const DescriptionFile &file_;
    const std::vector<DescribedType> &types_;
    bool areFramesRead_ = false;
    bool hasFrames_ = false;
    std::map<uint32_t, std::vector<std::string>> fits_;
    std::map<uint32_t, Card> cards_;
    std::map<std::string, size_t> typesByName_;
};

// Reads the source of an LED map's entry, as it is written. Few pages have one, so that the elements are searched late.
std::function<std::string(const std::string &path)> sourcesIn(const DescriptionFile &file, dcm::Node element)
{
    const auto places = std::make_shared<std::optional<Places>>();
    return [&file, element, places](const std::string &path) -> std::string {
        if (!*places)
            places->emplace(file, element);
        const dcm::Node node = (*places)->nodeOf(path);
        if (node == nullptr)
            return "";
        const dcm::Text source = dcm::Text::attribute(node, "src", {"dcm"});
        return source ? source.c_str() : "";
    };
}

// Without a record, `exit` is kQueryFailed, and the errors have been printed on standard error.
template <class Info>
Page pageOfType(const DescribedType &type, Queries &queries, const PageContext &context, Exit &exit)
{
    Info info;
    if (queries.run(type, info))
        return pageOf(info, context);
    exit = kQueryFailed;
    Page page;
    const std::string id = type.typeIds.empty() ? "" : " " + typeName(type.typeIds[0]);
    page.title = {Text(kindName(type.kind) + id, kBold), Text("the query fails")};
    page.place = {context.place};
    return page;
}

Page pageOfType(const DescriptionFile &file, const DescribedType &type, const DescribedType &asked, Queries &queries,
                OtherTypes &otherTypes, Exit &exit)
{
    PageContext context;
    context.place = file.name() + ":" + std::to_string(file.lineOf(file.nameSpan(type.element).begin));
    context.sourceOf = sourcesIn(file, type.element);
    switch (type.kind) {
    case RecordKind::frame:
        context.cardName = [&](uint32_t cardType) { return otherTypes.cardName(cardType); };
        return pageOfType<DcmFrameInfo>(asked, queries, context, exit);
    case RecordKind::slot:
        context.types = type.typeIds;
        return pageOfType<DcmSlotInfo>(asked, queries, context, exit);
    case RecordKind::card:
        if (!asked.typeIds.empty())
            context.fits = otherTypes.fitsOf(asked.typeIds[0]);
        return pageOfType<DcmCardInfo>(asked, queries, context, exit);
    case RecordKind::vm:
        break;
    }
    return pageOfType<DcmVmPortInfo>(asked, queries, context, exit);
}

Exit showFrom(const DescriptionFile &file, const Selection &selection, const TerminalOptions &options,
              const OwnOutput &output)
{
    const std::vector<DescribedType> types = file.types();
    if (!isDescribed(file, selection))
        return kQueryFailed;
    const PageFormat format = formatOf(output, options);
    PageOutput pages(output, !options.isPagerOff);
    OtherTypes otherTypes(file, types);
    Queries queries(file);
    Exit exit = kSuccess;
    size_t size = 0;
    size_t omitted = 0;
    for (const DescribedType &type : types) {
        if (!selection.includes(type)) {
            queries.pass(type);
            continue;
        }
        if (omitted == 0) {
            const DescribedType asked = selection.type ? selection.asked(type) : type;
            const Page page = pageOfType(file, type, asked, queries, otherTypes, exit);
            const std::string text = (size != 0 ? "\n\n" : "") + layOut(page, format);
            size += text.size();
            omitted += size > mostOutputOf(file) ? 1 : 0;
            if (omitted == 0 && !pages.print(text))
                break;
        } else {
            omitted++;
        }
        // A query finds the first match.
        if (selection.type)
            break;
    }
    if (omitted != 0)
        reportOmitted(file, omitted, "pages", "name a type to show one");
    if (!pages.end())
        return kCannotWrite;
    return omitted == 0 ? exit : kQueryFailed;
}

Exit runShow(const Selection &selection, const TerminalOptions &options)
{
    const OwnOutput output;
    // The page of a card lists the slots of frames that accept it, and that of a frame its cards, which have
    // attributes.
    const bool needsFrames = selection.kind == RecordKind::card;
    const auto file = openDescription(selection.file, [&](const DescribedType &type) {
        return selection.includes(type) || (needsFrames && type.kind == RecordKind::frame);
    });
    return file != nullptr ? showFrom(*file, selection, options, output) : kUnreadable;
}

} // namespace

Command showCommand()
{
    const auto selection = std::make_shared<Selection>();
    const auto options = std::make_shared<TerminalOptions>();
    const Words colours = {{"auto", static_cast<uint32_t>(Colour::automatic)},
                           {"always", static_cast<uint32_t>(Colour::always)},
                           {"never", static_cast<uint32_t>(Colour::never)}};
    return {"show",
            "Show everything that is described for frames, slots and cards",
            {fileOption(selection->file, ", - for standard input"),
             {"--width", "Columns of a line, from 40 [the terminal's, or 100]", &options->width, "N", {}, {40, 1000}},
             {"--color", "auto, always or never [auto]", &options->colour, "WHEN", colours},
             {"--ascii", "Print ASCII characters only", &options->isAscii},
             {"--no-pager", "Do not use a pager", &options->isPagerOff}},
            [selection, options] { return runShow(*selection, *options); },
            "",
            kindCommands(selection)};
}
