#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

std::string effectOfMissing(const Context &context, const dcm::Attribute &attribute)
{
    if (context.role == Role::slot)
        return "the slot is never found";
    switch (attribute.content.kind) {
    case dcm::Kind::number:
    case dcm::Kind::keyword:
        return "it counts as 0";
    case dcm::Kind::ledName:
        return "it counts as an empty name";
    default:
        return "the element is ignored";
    }
}

void missingAttribute(const Context &context, Findings &findings)
{
    for (size_t i = 0; i < context.format->attributeCount; i++) {
        const dcm::Attribute &attribute = context.format->attributes[i];
        // A frame or card may do without its type; what it describes is then type 0.
        const bool isIdentity = context.parent == nullptr && i == 0;
        if ((attribute.need != dcm::Need::required && !isIdentity) || context.text(attribute.name))
            continue;
        if (!lacksAttribute(context.node, *context.format, attribute.name))
            continue;
        findings.atName(context.node,
                        quotedName(attribute.name) + " is missing: " + effectOfMissing(context, attribute));
    }
}

} // namespace

extern constexpr Rule kMissingAttribute = {"missing-attribute", Severity::warning,
                                           onElements(missingAttribute).unlessQueryFails()};

} // namespace dcmtool
