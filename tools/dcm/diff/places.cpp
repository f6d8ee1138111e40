#include "tools/dcm/diff/places.h"

#include "common/format.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace dcmtool {

namespace {

// The number of elements that are searched for one place: real descriptions have fewer.
constexpr size_t kMostVisited = 1000;

class Finder {
public:
    Finder(const DescriptionFile &file, Node type) : file_(file), at_(type) {}

    // Finds the element of a record or of one of its entries.
    void enter(const Record &around, const Step &step)
    {
        const Field &field = *step.field;
        if (field.source == nullptr)
            return;
        const bool isInside = dcm::isNamed(at_, field.source);
        const std::vector<Node> written = isInside ? std::vector<Node>{at_} : childrenNamed(at_, field.source);
        if (written.empty())
            return;
        at_ = written.back();
        const bool isSingle = field.entries == 0 && !hasField(*field.record, "portId");
        if (isSingle || (field.entries != 0 && step.entry == kNoEntry))
            return;
        const dcm::Element *format = formatOf(at_);
        const bool isEntry = format != nullptr && format->most != 1;
        const std::vector<Node> entries = isEntry ? written : childrenNamed(at_, nullptr);
        // The port to all slots has the id 0.
        const bool isAlone = step.entry == kNoEntry;
        const size_t entry = isAlone ? 0 : step.entry;
        enterEntry(entries, around.entryOf(field, entry).record(), isAlone ? 0 : static_cast<uint32_t>(entry + 1));
    }

    // The text of a field, given the element of its record.
    Span spanOf(const Step &step)
    {
        const char *source = step.field->source;
        if (source == nullptr)
            return file_.nameSpan(at_);
        if (step.entry != kNoEntry && step.field->extent == Extent::counted)
            return spanOfRow(source, step.entry);
        if (hasAttribute(at_, source))
            return file_.valueSpan(at_, source);
        // The text of a component is its description.
        if (dcm::isNamed(at_, source))
            return file_.contentSpan(at_);
        if (const Node found = find(at_, source, step.entry, kDepth); found != nullptr)
            return textOf(found, step);
        for (const Node child : childrenNamed(at_, nullptr))
            if (hasAttribute(child, source) && isAttributeOf(child, source))
                return file_.valueSpan(child, source);
        return file_.nameSpan(at_);
    }

    Span span() const { return file_.nameSpan(at_); }

private:
    // The number in one of several elements that belong together.
    Span spanOfRow(const char *source, size_t row)
    {
        const std::vector<Node> rows = childrenNamed(at_, nullptr);
        if (row >= rows.size())
            return file_.nameSpan(at_);
        if (hasAttribute(rows[row], source))
            return file_.valueSpan(rows[row], source);
        return dcm::isNamed(rows[row], source) ? file_.contentSpan(rows[row]) : file_.nameSpan(rows[row]);
    }

    static constexpr unsigned kDepth = 2; // a list may be in an element for each slot

    static bool hasField(const RecordTable &table, const char *name)
    {
        return std::any_of(table.begin(), table.end(),
                           [name](const Field &field) { return std::strcmp(field.name, name) == 0; });
    }

    static bool hasAttribute(Node element, const char *name)
    {
        return static_cast<bool>(dcm::Text::attribute(element, name, {"dcm"}));
    }

    // Ports and other entries have attributes of their own.
    static bool isAttributeOf(Node container, const char *name)
    {
        const dcm::Element *format = formatOf(container);
        return format != nullptr && format->most == 1 && findAttribute(*format, name) != nullptr;
    }

    std::vector<Node> childrenNamed(Node parent, const char *name)
    {
        std::vector<Node> found;
        for (const Node child : dcm::children(parent)) {
            if (left_ == 0)
                break;
            left_--;
            if (name == nullptr || dcm::isNamed(child, name))
                found.push_back(child);
        }
        return found;
    }

    static bool hasId(Node element, uint32_t id)
    {
        const dcm::Element *format = formatOf(element);
        if (format == nullptr)
            return false;
        const std::vector<uint32_t> ids = idsOf(element, *format);
        return std::find(ids.begin(), ids.end(), id) != ids.end();
    }

    // Whether an attribute's value is the word of a field, if both exist.
    static bool agrees(Node element, const Record &record, const char *fieldName)
    {
        if (!hasField(record.table(), fieldName))
            return true;
        const FieldValue value = record[fieldName];
        if (value.field().source == nullptr)
            return true;
        const dcm::Text text = dcm::Text::attribute(element, value.field().source, {"dcm"});
        return !text || value.words() == text.c_str();
    }

    // `number`: of the entry in its array, from 1.
    void enterEntry(const std::vector<Node> &entries, const Record &record, uint32_t number)
    {
        if (entries.empty())
            return;
        const bool isDisplay = hasField(record.table(), "pri");
        const bool hasIds = !isDisplay && std::any_of(entries.begin(), entries.end(), [](Node element) {
            const dcm::Element *format = formatOf(element);
            return format != nullptr && idAttribute(*format) != nullptr;
        });
        // Ids that are not positions: those of LEDs and sensors.
        const bool hasOwnId = hasField(record.table(), "ledType") || hasField(record.table(), "overflowAction");
        const auto id =
            hasOwnId && hasField(record.table(), "id") ? static_cast<uint32_t>(record["id"].number()) : number;
        for (const Node entry : entries) {
            const bool isIt =
                hasIds ? hasId(entry, id) && agrees(entry, record, "ledType") : isDisplay && isState(entry, record);
            if (isIt) {
                at_ = entry;
                return;
            }
        }
        if (!hasIds && !isDisplay && number != 0 && number <= entries.size())
            at_ = entries[number - 1];
    }

    static bool isState(Node element, const Record &record)
    {
        const dcm::Text state = dcm::Text::attribute(element, "type", {"dcm"});
        return record["state"].words() == (state ? state.c_str() : "default");
    }

    // A child element; for an entry, the child with its id.
    Node find(Node around, const char *name, size_t entry, unsigned depth)
    {
        const std::vector<Node> written = childrenNamed(around, name);
        if (!written.empty())
            return written.back();
        if (depth == 0)
            return nullptr;
        for (const Node child : childrenNamed(around, nullptr)) {
            const dcm::Element *format = formatOf(child);
            if (format == nullptr)
                continue;
            const bool hasIds = entry != kNoEntry && idAttribute(*format) != nullptr;
            if (hasIds && !hasId(child, static_cast<uint32_t>(entry + 1)))
                continue;
            // A field with a record of its own is filled by other elements.
            if (entry == kNoEntry || hasIds || isListOf(*format, name))
                if (const Node found = find(child, name, entry, depth - 1); found != nullptr)
                    return found;
        }
        return nullptr;
    }

    // Whether its descendants may contain such an element.
    static bool isListOf(const dcm::Element &format, const char *name)
    {
        for (size_t i = 0; i < format.childCount; i++)
            if (findRow(*format.children[i].element, name) != format.children[i].element->childCount)
                return true;
        return false;
    }

    Span textOf(Node element, const Step &step)
    {
        // The container has the number that counts its entries.
        if (hasAttribute(element, "num") && step.entry == kNoEntry && step.field->kind == FieldKind::number)
            return file_.valueSpan(element, "num");
        const std::vector<Node> inside = childrenNamed(element, nullptr);
        if (!inside.empty())
            return step.entry != kNoEntry && step.entry < inside.size() ? file_.contentSpan(inside[step.entry])
                                                                        : file_.nameSpan(element);
        return file_.contentSpan(element);
    }

    const DescriptionFile &file_;
    Node at_;
    size_t left_ = kMostVisited;
};

} // namespace

Span spanOf(const DescriptionFile &file, Node type, const Record &record, const Path &path)
{
    Finder finder(file, type);
    Record around = record;
    for (const Step &step : path) {
        if (step.field->kind != FieldKind::record)
            return finder.spanOf(step);
        finder.enter(around, step);
        around = around.entryOf(*step.field, step.entry == kNoEntry ? 0 : step.entry).record();
    }
    return finder.span();
}

} // namespace dcmtool
