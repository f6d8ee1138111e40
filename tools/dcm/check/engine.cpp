#include "tools/dcm/check/engine.h"

#include "tools/dcm/check/allowances.h"
#include "tools/dcm/check/fixes.h"
#include "tools/dcm/check/query_failures.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <array>
#include <deque>
#include <memory>

namespace dcmtool {

namespace {

// The rules by what they check, so that each place of a file is passed only to rules for it.
struct Schedule {
    static constexpr size_t kKinds = static_cast<size_t>(dcm::Kind::source) + 1;
    std::vector<const Rule *> files;
    std::array<std::vector<const Rule *>, static_cast<size_t>(Role::count)> elements;
    std::vector<const Rule *> unknownItems;
    std::array<std::vector<const Rule *>, kKinds> values;

    Schedule()
    {
        for (const Rule *rule : allRules())
            add(*rule);
    }

private:
    void add(const Rule &rule)
    {
        if (rule.kind.file != nullptr)
            files.push_back(&rule);
        for (size_t role = 0; role < elements.size(); role++)
            if (rule.kind.element != nullptr &&
                (rule.kind.roles.isEmpty() || rule.kind.roles.has(static_cast<Role>(role))))
                elements[role].push_back(&rule);
        if (rule.kind.unknownItem != nullptr)
            unknownItems.push_back(&rule);
        for (size_t kind = 0; kind < kKinds; kind++)
            if (rule.kind.value != nullptr && (rule.kind.kinds >> kind & 1U) != 0)
                values[kind].push_back(&rule);
    }
};

const Schedule &schedule()
{
    static const Schedule all;
    return all;
}

// Visits a known element and its descendants.
class Walk {
public:
    Walk(const CheckedType &type, Findings &findings) : type_(type), findings_(findings) {}

    void visit(const Context *parent, Node node, const dcm::NamedElement &row)
    {
        const size_t depth = parent == nullptr ? 0 : depth_ + 1;
        const std::vector<KnownChild> &known = children(depth, node, *row.element);
        const Context context = {type_, parent, node, row.name, row.element, row.role(), known};
        apply(context);
        for (const KnownChild &child : known) {
            depth_ = depth;
            visit(&context, child.node, context.rowOf(child));
        }
    }

    // Visits an element without its children.
    void visitAlone(Node node, const dcm::NamedElement &row)
    {
        apply({type_, nullptr, node, row.name, row.element, row.role(), children(0, node, *row.element)});
    }

private:
    void apply(const Context &context)
    {
        attributes(context);
        unknownChildren(context);
        const dcm::Content &content = context.format->content;
        if (content.kind != dcm::Kind::none)
            if (const dcm::Text text = context.content())
                value({context, nullptr, content, text.c_str()});
        if (context.format->childCount + context.format->attributeCount == 0)
            return;
        for (const Rule *rule : schedule().elements[static_cast<size_t>(context.role)]) {
            findings_.run(*rule);
            rule->kind.element(context, findings_);
        }
    }

    void attributes(const Context &context)
    {
        for (const xmlAttr *written = context.node->properties; written != nullptr; written = written->next) {
            const char *name = reinterpret_cast<const char *>(written->name);
            const dcm::Attribute *attribute = context.attribute(name);
            if (attribute == nullptr)
                unknownItem({context, context.node, name, true});
            else if (const dcm::Text text = context.text(name))
                value({context, attribute, attribute->content, text.c_str()});
        }
    }

    // The known children; each depth has its own vector. Most descriptions have their elements in the order of the
    // tables.
    const std::vector<KnownChild> &children(size_t depth, Node node, const dcm::Element &format)
    {
        while (known_.size() <= depth)
            known_.emplace_back();
        std::vector<KnownChild> &known = known_[depth];
        known.clear();
        // One allocation for thousands of children: a growing vector takes three times as much memory.
        const dcm::Children all = dcm::children(node);
        size_t count = 0;
        for (auto child = all.begin(); child != dcm::Children::end(); ++child)
            count++;
        known.reserve(count);
        hasUnknown_ = false;
        size_t from = 0;
        for (const Node child : dcm::children(node)) {
            const size_t row = findRow(format, dcm::nameOf(child), from);
            if (row == format.childCount) {
                hasUnknown_ = true;
                continue;
            }
            known.push_back({child, row});
            from = format.children[row].element->most == 1 ? row + 1 : row;
        }
        return known;
    }

    // The unknown children.
    void unknownChildren(const Context &context)
    {
        if (!hasUnknown_)
            return;
        auto next = context.children.begin();
        for (const Node child : dcm::children(context.node)) {
            if (next != context.children.end() && next->node == child)
                ++next;
            else
                unknownItem({context, child, dcm::nameOf(child), false});
        }
    }

    void value(const Value &value)
    {
        for (const Rule *rule : schedule().values[static_cast<size_t>(value.content.kind)]) {
            findings_.run(*rule);
            rule->kind.value(value, findings_);
        }
    }

    void unknownItem(const UnknownItem &item)
    {
        for (const Rule *rule : schedule().unknownItems) {
            findings_.run(*rule);
            rule->kind.unknownItem(item, findings_);
        }
    }

    const CheckedType &type_;
    Findings &findings_;
    std::deque<std::vector<KnownChild>> known_;
    size_t depth_ = 0;        // of the enclosing element
    bool hasUnknown_ = false; // among the children visited last
};

void keep(CheckedType &type, const DcmFrameInfo &record)
{
    type.frame = &record;
}
void keep(CheckedType &type, const DcmSlotInfo &record)
{
    type.slot = &record;
}
void keep(CheckedType &type, const DcmCardInfo &record)
{
    type.card = &record;
}
void keep(CheckedType &type, const DcmVmPortInfo &record)
{
    type.vm = &record;
}

template <class Record> void checkType(CheckedType &type, Record &record, Findings &findings, DecodingWork &work)
{
    const Outcome outcome = type.file.decode(type.described, record);
    if (outcome.isDecoded || explainFailures(type.file, type.described, record, findings, work))
        keep(type, record);
    Walk(type, findings).visit(nullptr, type.described.element, rowOf(type.described.kind));
}

// The limit for decoding again to find why queries fail, in bytes; for a small file it permits all that an author can
// fix at once.
constexpr size_t kMostDecoded = size_t{64} << 20;
constexpr size_t kMostDecodedOfByte = 16;

// The root contains only frames, slots and cards.
void checkRoot(const DescriptionFile &file, const Declarations &declarations, Findings &findings)
{
    const std::vector<dcm::NamedElement> &children = deviceChildren();
    const dcm::Element device = {{}, nullptr, 0, children.data(), children.size()};
    const DescribedType described = {RecordKind::frame, file.root(), {}, 0};
    Walk({file, declarations, described}, findings).visitAlone(file.root(), {dcm::kDeviceName, &device});
}

void checkTypes(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings)
{
    const auto records = std::make_unique<AnyRecord>();
    const Declarations declarations(types);
    DecodingWork work = {kMostDecoded + kMostDecodedOfByte * file.text().size()};
    if (file.isDevice())
        checkRoot(file, declarations, findings);
    for (const DescribedType &described : types) {
        CheckedType type = {file, declarations, described};
        visitRecord(described.kind, *records, [&](auto &record) { checkType(type, record, findings, work); });
    }
}

} // namespace

std::vector<Finding> checkFile(const DescriptionFile &file, std::vector<Finding> *allowed,
                               const std::set<std::string> *knownNames)
{
    Findings findings(file, knownNames);
    setAllowedApart(findings);
    const std::vector<DescribedType> types = file.types();
    for (const Rule *rule : schedule().files) {
        findings.run(*rule);
        rule->kind.file(file, types, findings);
    }
    checkTypes(file, types, findings);
    applyAllowances(findings);
    if (allowed != nullptr)
        *allowed = findings.takeAllowed();
    std::vector<Finding> all = findings.take();
    addFixes(file, all);
    return all;
}

} // namespace dcmtool
