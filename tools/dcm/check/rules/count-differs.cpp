#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <bitset>
#include <map>
#include <set>

namespace dcmtool {

namespace {

const dcm::Attribute *countOf(const Context &context)
{
    if (context.role == Role::vmPorts)
        return &context.format->attributes[0];
    return findAttribute(*context.format, dcm::Kind::count);
}

// Whether a list of ids is read to its end; what cannot be read is reported as such.
bool isReadable(const char *text, const dcm::Content &content)
{
    if (content.kind == Kind::bitList) {
        uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
        return dcmStr2BitList(text, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) == 0;
    }
    const Reading reading = readingOf(text);
    return reading.isNumber && reading.tail.empty();
}

// Counts entries, which are identified by their ids, and by their types where each type counts for itself.
class Entries {
public:
    void add(Node node, const dcm::Element &format)
    {
        const dcm::Attribute *id = idAttribute(format);
        const dcm::Text idText = dcm::Text::attribute(node, id != nullptr ? id->name : "", {"dcm"});
        if (id == nullptr || !idText) {
            withoutId_++;
            isFaulty_ = isFaulty_ || id != nullptr;
            return;
        }
        isFaulty_ = isFaulty_ || !isReadable(idText.c_str(), id->content);
        const dcm::Attribute *type = findAttribute(format, dcm::Kind::keyword);
        const dcm::Text typeText = dcm::Text::attribute(node, type != nullptr ? type->name : "", {"dcm"});
        Ids &ids = typed_[typeText ? typeText.c_str() : ""];
        for (const uint32_t number : idsOf(idText.c_str(), id->content)) {
            const bool isNew = number < ids.small.size() ? !ids.small[number] : ids.large.insert(number).second;
            if (number < ids.small.size())
                ids.small[number] = true;
            if (!isNew && repeated_ == nullptr)
                repeated_ = node;
        }
    }
    size_t count() const
    {
        size_t count = withoutId_;
        for (const auto &[type, ids] : typed_)
            count += ids.small.count() + ids.large.size();
        return count;
    }
    // Whether an entry has no id, or one that cannot be read.
    bool isFaulty() const { return isFaulty_; }
    // The first entry that has the id of another.
    Node repeated() const { return repeated_; }

private:
    struct Ids {
        std::bitset<DCM_PANEL_IF_MAX + 1> small;
        std::set<uint32_t> large;
    };
    std::map<std::string, Ids> typed_;
    size_t withoutId_ = 0;
    bool isFaulty_ = false;
    Node repeated_ = nullptr;
};

// Whether an element that the format does not know is probably an entry whose name is misspelled.
bool hasMisspelled(const Context &context)
{
    size_t compared = 0;
    for (const Node child : dcm::children(context.node))
        if (findRow(*context.format, dcm::nameOf(child)) == context.format->childCount && compared++ < 100 &&
            !nearest(dcm::nameOf(child), childNames(*context.format)).empty())
            return true;
    return false;
}

void countDiffers(const Context &context, Findings &findings)
{
    const dcm::Attribute *num = countOf(context);
    if (num == nullptr)
        return;
    const dcm::Text text = dcm::Text::attribute(context.node, num->name, {"dcm"});
    if (!text)
        return;
    Entries entries;
    for (const KnownChild &child : context.children) {
        // One that is not an entry of a list, and there twice, is reported as such.
        if (context.rowOf(child).element->most == 1 && &child != &context.children.front() &&
            child.row == context.children.front().row)
            return;
        entries.add(child.node, *context.rowOf(child).element);
    }
    const size_t count = entries.count();
    const uint32_t announced = text.number();
    if (count == announced || (count < announced && (entries.isFaulty() || hasMisspelled(context))))
        return;
    if (count < announced && entries.repeated() != nullptr) {
        const dcm::Element &format = *formatOf(entries.repeated());
        findings
            .atValue(entries.repeated(), idAttribute(format)->name,
                     "the id of another entry: " + std::to_string(announced) + " are announced, but only " +
                         std::to_string(count) + " have an id of their own; the others stay empty")
            .noting(findings.file().valueSpan(context.node, num->name), "announced here");
        return;
    }
    findings.atValue(context.node, num->name,
                     std::to_string(announced) + (announced == 1 ? " entry is" : " entries are") + " announced, but " +
                         std::to_string(count) + (count == 1 ? " is" : " are") + " described: " +
                         (count < announced ? "the others stay empty and are counted"
                                            : "entries that are not announced are ignored"));
}

} // namespace

extern constexpr Rule kCountDiffers = {"count-differs", Severity::warning, onElements(countDiffers).unlessFaulty()};

} // namespace dcmtool
