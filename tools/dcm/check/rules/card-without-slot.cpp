#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace dcmtool {

namespace {

// The card types that some slot accepts.
class Accepted {
public:
    explicit Accepted(const std::vector<DescribedType> &types)
    {
        for (const DescribedType &type : types)
            if (type.kind == RecordKind::frame)
                addFrame(type.element);
    }
    // False where a list may have been meant that is not there, which is reported as such.
    bool areKnown() const { return areKnown_ && !cardTypes_.empty(); }
    const std::set<uint32_t> &cardTypes() const { return cardTypes_; }

private:
    void addFrame(Node frame)
    {
        for (const Node list : dcm::children(frame))
            if (roleOf(list) == Role::slotList)
                for (const Node slot : dcm::children(list))
                    addSlot(slot);
    }

    void addSlot(Node slot)
    {
        const dcm::Element *format = formatOf(slot);
        if (format == nullptr) {
            areKnown_ = false;
            return;
        }
        for (const Node child : dcm::children(slot)) {
            const Role role = roleOf(child);
            if (role == Role::slotCardTypes)
                addList(dcm::Text::content(child, {"dcm"}).c_str(), formatOf(child)->content);
            else if (role == Role::none && formatOf(child) == nullptr)
                areKnown_ = false;
        }
    }

    void addList(const char *list, const dcm::Content &content)
    {
        const std::vector<uint32_t> numbers = numbersNamed(list, content);
        cardTypes_.insert(numbers.begin(), numbers.end());
        // A list that ends early, or has a range, is reported as such.
        const std::string_view text = list;
        const auto separators =
            std::count_if(text.begin(), text.end(), [](unsigned char c) { return std::isalnum(c) == 0; });
        areKnown_ = areKnown_ && text.find('-') == std::string_view::npos &&
                    static_cast<size_t>(separators) + 1 == numbers.size();
    }

    std::set<uint32_t> cardTypes_;
    bool areKnown_ = true;
};

void cardWithoutSlot(const DescriptionFile & /*file*/, const std::vector<DescribedType> &types, Findings &findings)
{
    const Accepted accepted(types);
    if (!accepted.areKnown())
        return;
    std::set<uint32_t> described;
    for (const DescribedType &type : types)
        if (type.kind == RecordKind::card)
            described.insert(type.typeIds.begin(), type.typeIds.end());
    // A number that no card has may be meant to be this one: it is reported as such.
    for (const uint32_t cardType : accepted.cardTypes())
        if (described.count(cardType) == 0)
            return;
    for (const DescribedType &type : types) {
        // Of several modes, the first.
        if (type.kind != RecordKind::card || accepted.cardTypes().count(type.typeIds.front()) != 0 ||
            described.erase(type.typeIds.front()) == 0)
            continue;
        findings.atValue(type.element, formatOf(type.element)->attributes[0].name,
                         "no slot of the frames in this file accepts the card type: it is refused wherever it is "
                         "plugged");
    }
}

} // namespace

extern constexpr Rule kCardWithoutSlot = {"card-without-slot", Severity::warning, onFile(cardWithoutSlot)};

} // namespace dcmtool
