#include "tools/dcm/diff/output.h"

#include "tools/dcm/description/described.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/diff/places.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <map>

namespace dcmtool {

namespace {

constexpr size_t kShownIds = 16;

std::string idsText(RecordKind kind, const std::vector<QueryId> &ids)
{
    std::string text;
    for (size_t i = 0; i < ids.size() && i < kShownIds; i++) {
        char id[48];
        if (kind == RecordKind::card)
            std::snprintf(id, sizeof id, "0x%" PRIx32 "/%" PRIu32, ids[i].type, ids[i].mode);
        else
            std::snprintf(id, sizeof id, "0x%" PRIx32, ids[i].type);
        text += (text.empty() ? "" : ",") + std::string(id);
    }
    if (ids.size() > kShownIds)
        text += ",... (" + std::to_string(ids.size()) + ")";
    return text;
}

std::string nameOf(RecordKind kind, const std::vector<QueryId> &ids)
{
    return kind == RecordKind::vm ? kindName(kind) : kindName(kind) + (" " + idsText(kind, ids));
}

// An entry, named by the field that identifies it.
std::string identityText(const Record &record)
{
    std::string text;
    for (const Field &field : record) {
        const FieldValue value = record.entryOf(field, 0);
        if (field.fieldClass == FieldClass::identity && value.isGiven())
            text += (text.empty() ? "" : ", ") + std::string(field.name) + " " + value.words();
    }
    return text;
}

std::string valueText(const FieldValue &value)
{
    if (value.field().kind == FieldKind::record)
        return identityText(value.record());
    if (value.field().kind == FieldKind::text)
        return inQuotes(value.text());
    const std::string words = shortened(value.words());
    const std::string unit = value.field().unit;
    return words.empty() ? "(none)" : unit.empty() ? words : words + " " + unit;
}

// The elements of a list that another one does not have.
std::string onlyIn(const FieldValue &list, const FieldValue &other)
{
    if (list.field().kind == FieldKind::bitList) {
        const std::vector<uint32_t> all = list.numbers();
        const std::vector<uint32_t> others = other.numbers();
        std::vector<uint32_t> left;
        std::set_difference(all.begin(), all.end(), others.begin(), others.end(), std::back_inserter(left));
        return rangesOf(left);
    }
    const std::string words = list.words();
    const std::string others = "," + other.words() + ",";
    std::string left;
    for (size_t begin = 0; begin < words.size();) {
        const size_t end = std::min(words.find(',', begin), words.size());
        const std::string word = words.substr(begin, end - begin);
        if (others.find("," + word + ",") == std::string::npos)
            left += (left.empty() ? "" : ",") + word;
        begin = end + 1;
    }
    return left;
}

// The reason for the class, and what a list has lost and gained.
std::string reasonOf(const Difference &difference)
{
    const Change *change = difference.change;
    if (change == nullptr || change->kind != ChangeKind::changed)
        return difference.message;
    const FieldKind kind = change->oldValue->field().kind;
    if (kind != FieldKind::bitList && kind != FieldKind::wordSet && kind != FieldKind::numberList)
        return difference.message;
    const std::string gone = onlyIn(*change->oldValue, *change->newValue);
    const std::string added = onlyIn(*change->newValue, *change->oldValue);
    return difference.message + (gone.empty() ? "" : "; without " + gone) + (added.empty() ? "" : "; with " + added);
}

std::optional<Place> placeIn(const Side &side, size_t index, const Answer *answer, const Path &path)
{
    if (answer == nullptr)
        return std::nullopt;
    const Node type = side.types()[index].element;
    return side.file()->place(spanOf(*side.file(), type, answer->record(), path).begin);
}

std::string counted(size_t count, const char *what)
{
    return count == 0 ? "" : std::to_string(count) + " " + what + ", ";
}

std::string elements(size_t count)
{
    return count == 1 ? "1 type is" : std::to_string(count) + " types are";
}

// The slot or port whose field has changed: people count them from 1, or as the description does.
struct Numbered {
    const char *noun = nullptr;
    uint32_t number = 0;
};

Numbered numberedBy(const Difference &difference)
{
    const Change *change = difference.change;
    if (change == nullptr || change->kind != ChangeKind::changed)
        return {};
    const Step &step = change->newPath.front();
    if (step.entry == kNoEntry)
        return {};
    if (step.field->kind != FieldKind::record)
        return step.field->entries == DCM_SLOT_MAX ? Numbered{"slot", static_cast<uint32_t>(step.entry + 1)}
                                                   : Numbered{};
    const Record entry = difference.after->record().entryOf(*step.field, step.entry).record();
    for (const Field &field : entry)
        if (std::strcmp(field.name, "portId") == 0 && entry[field].isGiven())
            return {"port", static_cast<uint32_t>(entry[field].number())};
    return {};
}

// "; ports 1-24"
std::string detailOf(const char *noun, std::vector<uint32_t> &numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return std::string("; ") + noun + (numbers.size() > 1 ? "s " : " ") + rangesOf(numbers);
}

} // namespace

size_t mostOutputOf(const Comparison &comparison)
{
    size_t most = 0;
    for (const Side *side : {&comparison.before(), &comparison.after()})
        if (side->file() != nullptr)
            most = std::max(most, mostOutputOf(*side->file()));
    return most;
}

void reportLeftOut(size_t differences)
{
    if (differences != 0)
        std::fprintf(stderr, "dcm: the output is too long: the last %zu differences are left out; --for shows less\n",
                     differences);
}

std::string nameOf(const QueryGroup &group)
{
    if (group.oldIds.empty() || group.newIds.empty() || !group.isRenumbered())
        return nameOf(group.kind, group.oldIds.empty() ? group.newIds : group.oldIds);
    return nameOf(group.kind, group.oldIds) + " → " + idsText(group.kind, group.newIds);
}

std::string pathOf(const Difference &difference)
{
    const Change *change = difference.change;
    if (change == nullptr)
        return "";
    return textOf(change->kind == ChangeKind::removed ? change->oldPath : change->newPath);
}

std::string oldText(const Difference &difference)
{
    const Change *change = difference.change;
    return change != nullptr && change->oldValue ? valueText(*change->oldValue) : "";
}

std::string newText(const Difference &difference)
{
    const Change *change = difference.change;
    return change != nullptr && change->newValue ? valueText(*change->newValue) : "";
}

std::string textOf(const Difference &difference)
{
    const auto with = [](const std::string &value) { return value.empty() ? "" : ": " + value; };
    const std::string reason = " (" + reasonOf(difference) + ")";
    if (difference.change == nullptr)
        return difference.message;
    switch (difference.change->kind) {
    case ChangeKind::changed:
        return oldText(difference) + " → " + newText(difference) + reason;
    case ChangeKind::added:
        return "added" + with(newText(difference)) + reason;
    case ChangeKind::removed:
        return "removed" + with(oldText(difference)) + reason;
    case ChangeKind::renumbered:
        return "was " + oldText(difference) + ", is now " + newText(difference) + reason;
    case ChangeKind::reordered:
        return "the entries have another order";
    case ChangeKind::unnamed:
        break;
    }
    return "bytes that no field describes differ";
}

std::string summaryOf(const Comparison &comparison)
{
    const size_t rewritten = comparison.rewritten();
    if (comparison.worst() == ChangeClass::none)
        return "";
    if (comparison.worst() == ChangeClass::cosmetic)
        return std::string("cosmetic: ") +
               (comparison.areAllCompared() ? "every query answers the same"
                                            : "the fields that are compared are the same") +
               (rewritten == 0 ? "" : "; " + elements(rewritten) + " written differently") + "\n";
    std::string counts = counted(comparison.count(ChangeClass::breaking), "breaking") +
                         counted(comparison.count(ChangeClass::behaviour), "behaviour") +
                         counted(comparison.count(ChangeClass::addition), "addition");
    counts.resize(counts.size() - 2);
    return counts +
           (rewritten == 0 ? ""
                           : "; " + elements(rewritten) + " written differently, with the same answers (cosmetic)") +
           "\n";
}

std::optional<Place> oldPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference)
{
    const Change *change = difference.change;
    return placeIn(comparison.before(), group.oldIndex, difference.before,
                   change != nullptr ? change->oldPath : Path());
}

std::optional<Place> newPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference)
{
    const Change *change = difference.change;
    return placeIn(comparison.after(), group.newIndex, difference.after, change != nullptr ? change->newPath : Path());
}

std::vector<FoldedDifference> foldedDifferences(const Comparison &comparison, const QueryGroup &group,
                                                const FoldVisitor &visit)
{
    std::vector<FoldedDifference> all;
    struct Members {
        std::vector<uint32_t> entries = {};
        const char *noun = nullptr;
        std::vector<uint32_t> numbers = {};
    };
    std::vector<Members> members; // of each
    std::map<std::string, size_t> found;
    comparison.visitDifferences(group, [&](const Difference &difference) {
        const std::string path = pathOf(difference);
        const size_t open = std::min(path.find('['), path.size());
        const size_t close = std::min(path.find(']'), path.size());
        const std::string text = textOf(difference);
        const auto [place, isNew] = found.emplace(path.substr(0, open) + path.substr(close) + '\0' + text, all.size());
        if (isNew) {
            all.push_back({difference.changeClass, path, oldText(difference), newText(difference), reasonOf(difference),
                           text, oldPlace(comparison, group, difference), newPlace(comparison, group, difference)});
            members.emplace_back();
        }
        Members &its = members[place->second];
        all[place->second].count++;
        if (open < close)
            its.entries.push_back(static_cast<uint32_t>(std::stoul(path.substr(open + 1))));
        if (const Numbered numbered = numberedBy(difference); numbered.noun != nullptr) {
            its.noun = numbered.noun;
            its.numbers.push_back(numbered.number);
        }
        if (visit)
            visit(difference, place->second);
    });
    for (size_t i = 0; i < all.size(); i++) {
        Members &its = members[i];
        if (std::string &path = all[i].path; !its.entries.empty())
            path = path.substr(0, path.find('[') + 1) + rangesOf(its.entries) + path.substr(path.find(']'));
        if (its.noun == nullptr)
            continue;
        const std::string detail = detailOf(its.noun, its.numbers);
        all[i].message += detail;
        all[i].text.insert(all[i].text.size() - 1, detail); // in the parentheses
    }
    return all;
}

} // namespace dcmtool
