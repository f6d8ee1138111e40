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

// Counts entries, which go by their ids, and by their types where each type counts for itself.
class Entries {
public:
    void add(Node node, const dcm::Element &format)
    {
        const dcm::Attribute *id = idAttribute(format);
        if (id == nullptr || !dcm::Text::attribute(node, id->name, {"dcm"})) {
            withoutId_++;
            return;
        }
        const dcm::Attribute *type = findAttribute(format, dcm::Kind::keyword);
        const dcm::Text typeText = dcm::Text::attribute(node, type != nullptr ? type->name : "", {"dcm"});
        Ids &ids = typed_[typeText ? typeText.c_str() : ""];
        for (const uint32_t number : idsOf(node, format)) {
            if (number < ids.small.size())
                ids.small[number] = true;
            else
                ids.large.insert(number);
        }
    }
    size_t count() const
    {
        size_t count = withoutId_;
        for (const auto &[type, ids] : typed_)
            count += ids.small.count() + ids.large.size();
        return count;
    }

private:
    struct Ids {
        std::bitset<DCM_PANEL_IF_MAX + 1> small;
        std::set<uint32_t> large;
    };
    std::map<std::string, Ids> typed_;
    size_t withoutId_ = 0;
};

void countDiffers(const Context &context, Findings &findings)
{
    const dcm::Attribute *num = countOf(context);
    if (num == nullptr)
        return;
    const dcm::Text text = dcm::Text::attribute(context.node, num->name, {"dcm"});
    if (!text)
        return;
    Entries entries;
    for (const KnownChild &child : context.children)
        entries.add(child.node, *context.rowOf(child).element);
    const size_t count = entries.count();
    const uint32_t announced = text.number();
    if (count == announced)
        return;
    findings.atValue(context.node, num->name,
                     std::to_string(announced) + (announced == 1 ? " entry is" : " entries are") + " announced, but " +
                         std::to_string(count) + (count == 1 ? " is" : " are") + " described: " +
                         (count < announced ? "the others stay empty and count all the same"
                                            : "what is not announced is passed over or not looked at"));
}

} // namespace

extern constexpr Rule kCountDiffers = {"count-differs", Severity::warning, onElements(countDiffers)};

} // namespace dcmtool
