// Pairs of descriptions that differ in one fact, and pairs with the same meaning and another text. The expected result
// is derived from the decoded records, without the matching of entries under test. DCM_DIFF_PAIRS=N compares N pairs.
#include "tests/tool/correct_description.h"

#include "common/format.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/records/record_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <tuple>

using namespace dcmtool;

namespace {

uint32_t pairCount(uint32_t usual)
{
    const char *wanted = std::getenv("DCM_DIFF_PAIRS");
    return wanted != nullptr ? static_cast<uint32_t>(std::strtoul(wanted, nullptr, 10)) : usual;
}

std::unique_ptr<Side> sideOf(const std::string &text)
{
    return std::make_unique<Side>("device.xml", Origin::file, DescriptionFile::parse("device.xml", text));
}

Comparison compared(Side &before, Side &after)
{
    const OwnOutput output; // the library's own output is discarded
    return {before, after, FieldFilter()};
}

// ---- Changing one fact ----------------------------------------------------------------------------------------------

class Mutator {
public:
    explicit Mutator(uint32_t seed) : random_(seed) {}

    // Values that occur in other descriptions, by the name of their element or attribute.
    void learn(const std::string &text)
    {
        for (const Part &part : partsOf(text))
            if (!part.isElement)
                values_[part.name].push_back(text.substr(part.begin, part.end - part.begin));
    }

    std::string mutate(std::string text)
    {
        const std::vector<Part> parts = partsOf(text);
        const Part &part = parts[1 + random_() % (parts.size() - 1)];
        const std::string written = text.substr(part.begin, part.end - part.begin);
        if (!part.isElement) {
            const std::vector<std::string> &values = values_[part.name];
            return text.replace(part.begin, written.size(),
                                random_() % 4 == 0 ? std::to_string(random_() % 300)
                                                   : values[random_() % values.size()]);
        }
        switch (random_() % 3) {
        case 0:
            return text.erase(part.begin, written.size());
        case 1:
            return text.insert(part.begin, written);
        default:
            text.erase(part.begin, written.size());
            const std::vector<Part> left = partsOf(text);
            const Part &other = left[random_() % left.size()];
            return other.isElement && other.begin != 0 ? text.insert(other.begin, written) : text;
        }
    }

private:
    struct Part {
        std::string name; // of the attribute or element
        size_t begin;
        size_t end;
        bool isElement; // the whole element, not its text
    };

    // Generated descriptions have neither comments nor CDATA, and no '>' in values.
    static std::vector<Part> partsOf(const std::string &text)
    {
        std::vector<Part> parts;
        std::vector<size_t> open;
        for (size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
            const size_t end = text.find('>', at) + 1;
            if (text[at + 1] == '/') {
                parts[open.back()].end = end;
                open.pop_back();
                continue;
            }
            const size_t nameEnd = text.find_first_of(" \n>/", at + 1);
            const std::string name = text.substr(at + 1, nameEnd - at - 1);
            open.push_back(parts.size());
            parts.push_back({name, at, end, true});
            for (size_t quote = text.find_first_of("'\"", nameEnd); quote < end;) {
                const size_t close = text.find(text[quote], quote + 1);
                const size_t attribute = text.find_last_of(" \n", quote) + 1;
                parts.push_back({name + "/" + text.substr(attribute, quote - 1 - attribute), quote + 1, close, false});
                quote = text.find_first_of("'\"", close + 1);
            }
            const size_t content = text.find('<', end);
            if (text[content + 1] == '/' && content > end)
                parts.push_back({name, end, content, false});
        }
        return parts;
    }

    std::mt19937 random_;
    std::map<std::string, std::vector<std::string>> values_;
};

// ---- The same meaning in another text -------------------------------------------------------------------------------

class Rewriter {
public:
    explicit Rewriter(uint32_t seed) : random_(seed) {}

    std::string rewrite(const DescriptionFile &file)
    {
        text_ = oneIn(2) ? "<?xml version=\"1.0\"?>\n" : "";
        element(file.root());
        return text_ + gap();
    }

private:
    uint32_t below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }
    bool oneIn(uint32_t n) { return below(n) == 0; }

    // The text allowed between elements.
    std::string gap()
    {
        static const char *const kGaps[] = {"", " ", "\n", "\r\n\t", "<!-- <card/> -->", "\n<!--x-->\n", "<?y z?>"};
        return kGaps[below(std::size(kGaps))];
    }

    std::string number(const std::string &written)
    {
        char text[32];
        static const char *const kForms[] = {"%u", "0x%x", "0X%X", "0%o", "+%u", " %u"};
        const bool isUnsigned = written.find('-') == std::string::npos;
        std::snprintf(text, sizeof text, kForms[below(std::size(kForms))],
                      static_cast<unsigned>(std::strtoul(written.c_str(), nullptr, 0)));
        return isUnsigned ? text : written;
    }

    std::string numbers(const std::vector<uint32_t> &numbers)
    {
        std::string list;
        for (size_t i = 0; i < numbers.size();) {
            size_t end = i + 1;
            while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1 && !oneIn(3))
                end++;
            list += (list.empty() ? "" : ",") + std::to_string(numbers[i]);
            if (end - i > 1)
                list += "-" + std::to_string(numbers[end - 1]);
            i = end;
        }
        return list;
    }

    std::string value(const std::string &written, const dcm::Content *content)
    {
        if (content == nullptr)
            return written;
        switch (content->kind) {
        case dcm::Kind::number:
        case dcm::Kind::count:
        case dcm::Kind::id:
            return number(written);
        case dcm::Kind::bitList:
            return numbers(numbersOf(written.c_str(), *content));
        default:
            return written;
        }
    }

    void element(dcm::Node node, const std::string &ids = "")
    {
        const dcm::Element *format = formatOf(node);
        text_ += std::string("<") + dcm::nameOf(node);
        std::vector<std::string> attributes;
        for (const xmlAttr *attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
            const std::string name = reinterpret_cast<const char *>(attribute->name);
            const dcm::Attribute *known = format != nullptr ? findAttribute(*format, name.c_str()) : nullptr;
            std::string written = dcm::Text::attribute(node, name.c_str(), {"test"}).c_str();
            if (!ids.empty() && known == idAttribute(*format))
                written = ids;
            const char quote = oneIn(2) ? '\'' : '"';
            attributes.push_back(name + (oneIn(4) ? " = " : "=") + quote +
                                 value(written, known != nullptr ? &known->content : nullptr) + quote);
        }
        std::shuffle(attributes.begin(), attributes.end(), random_);
        for (const std::string &attribute : attributes)
            text_ += (oneIn(3) ? "\n\t" : " ") + attribute;
        text_ += ">";
        if (format == nullptr || format->childCount > 0)
            children(node);
        else
            content(node, format->content);
        text_ += std::string("</") + dcm::nameOf(node) + ">";
    }

    void content(dcm::Node node, const dcm::Content &content)
    {
        const std::string written = value(dcm::Text::content(node, {"test"}).c_str(), &content);
        const bool isCut = !written.empty() && oneIn(8);
        text_ += isCut ? written.substr(0, 1) + "<!--" + written + "-->" + written.substr(1) : written;
    }

    // Units that are identified by their ids.
    static bool isAnyOrder(const std::string &container)
    {
        static const std::set<std::string> kContainers = {"mgt-port",       "gcc-port",      "ethppp-port",
                                                          "cpu-entity",     "memory-entity", "voltage-entity",
                                                          "fanctrl-entity", "power-entity"};
        return kContainers.count(container) != 0;
    }

    void children(dcm::Node node)
    {
        std::vector<dcm::Node> all;
        for (const dcm::Node child : dcm::children(node))
            all.push_back(child);
        const std::string name = dcm::nameOf(node);
        if (name == "device" && oneIn(2))
            std::stable_partition(all.begin(), all.end(), [](dcm::Node child) { return dcm::isNamed(child, "card"); });
        if (isAnyOrder(name))
            std::shuffle(all.begin(), all.end(), random_);
        for (const dcm::Node child : all) {
            text_ += gap();
            group(child);
        }
        text_ += gap();
    }

    // A group may become several groups.
    void group(dcm::Node node)
    {
        const std::string name = dcm::nameOf(node);
        const dcm::Element *format = formatOf(node);
        const bool isGroup = name.size() > 6 && name.compare(name.size() - 6, 6, "-group") == 0;
        const std::vector<uint32_t> ids = isGroup && format != nullptr ? idsOf(node, *format) : std::vector<uint32_t>();
        if (ids.size() < 2 || oneIn(2))
            return element(node);
        const auto cut = 1 + static_cast<std::ptrdiff_t>(below(static_cast<uint32_t>(ids.size() - 1)));
        element(node, numbers({ids.begin(), ids.begin() + cut}));
        element(node, numbers({ids.begin() + cut, ids.end()}));
    }

    std::mt19937 random_;
    std::string text_;
};

// ---- Expected differences -------------------------------------------------------------------------------------------

using QueryKey = std::tuple<RecordKind, uint32_t, uint32_t>;

// The facts of a record, independent of each other: entries by their identity, not their position.
struct Facts {
    std::set<std::string> structure;
    std::map<std::string, int64_t> capacities;
    std::set<std::string> settings;
    std::map<std::string, std::string> rows; // entries without an identity: all of an array
};

void addFacts(const Record &record, const void *cleared, const uint8_t *base, const std::string &path, Facts &facts);

void addFacts(const FieldValue &value, const std::string &path, Facts &facts)
{
    const Field &field = value.field();
    const std::string said = path + "=" + value.words();
    const bool isList =
        field.kind == FieldKind::wordSet || field.kind == FieldKind::bitList || field.kind == FieldKind::numberList;
    if (field.fieldClass == FieldClass::setting)
        facts.settings.insert(said);
    else if (field.isCapacity)
        facts.capacities[path] = value.number();
    else if (isList)
        for (const uint32_t number : value.numbers())
            facts.structure.insert(path + " has " + std::to_string(number));
    else
        facts.structure.insert(said);
}

void addEntries(const Record &record, const Field &field, const void *cleared, const uint8_t *base,
                const std::string &path, Facts &facts)
{
    std::set<std::string> keys;
    Facts entries;
    std::string row;
    bool isAmbiguous = false;
    for (const FieldValue value : record.valuesOf(field)) {
        const Record entry = value.record();
        const auto *bytes = static_cast<const uint8_t *>(entry.bytes());
        if (std::memcmp(bytes, static_cast<const uint8_t *>(cleared) + (bytes - base), field.stride) == 0)
            continue;
        std::string key = field.extent == Extent::all ? "#" + std::to_string(value.entry()) : "";
        for (const Field &inner : entry)
            if (field.extent != Extent::all && inner.fieldClass == FieldClass::identity)
                key += "," + entry[inner.name].words();
        isAmbiguous = !keys.insert(key).second || isAmbiguous;
        entries.structure.insert(path + "[" + key + "] is there");
        addFacts(entry, cleared, base, path + "[" + key + "].", entries);
        walk(entry,
             [&row](const std::string &name, const FieldValue &inner) { row += name + "=" + inner.words() + ";"; });
    }
    if (isAmbiguous) {
        facts.rows[path] = row;
        return;
    }
    facts.structure.merge(entries.structure);
    facts.capacities.merge(entries.capacities);
    facts.settings.merge(entries.settings);
    facts.rows.merge(entries.rows);
}

void addFacts(const Record &record, const void *cleared, const uint8_t *base, const std::string &path, Facts &facts)
{
    for (const Field &field : record) {
        const std::string name = path + field.name;
        if (field.kind == FieldKind::record && (field.entries != 0 || std::string(field.name) == "broadcastSyncIf")) {
            addEntries(record, field, cleared, base, name, facts);
        } else if (field.kind == FieldKind::record) {
            addFacts(record.entryOf(field, 0).record(), cleared, base, name + ".", facts);
        } else {
            for (const FieldValue value : record.valuesOf(field)) {
                if (field.extent == Extent::counted)
                    facts.rows[name] += value.words() + ";";
                else
                    addFacts(value, name + "#" + std::to_string(value.entry()), facts);
            }
        }
    }
}

struct Answered {
    bool isDecoded = false;
    std::string messages;
    std::vector<uint8_t> bytes;
};

template <class Info> Answered answeredBy(Queries &queries, const DescribedType &type, uint32_t id)
{
    Answered answered;
    auto info = std::make_unique<Info>();
    DescribedType asked = type;
    if (!asked.typeIds.empty())
        asked.typeIds = {id};
    std::vector<std::string> reports;
    {
        const ReportCapture capture(reports);
        answered.isDecoded = queries.run(asked, *info);
    }
    for (const std::string &report : reports)
        answered.messages += report;
    if constexpr (std::is_same_v<Info, DcmCardInfo>) {
        std::fill(info->name + info->nameLen, std::end(info->name), '\0');
        std::fill(info->abbrName + info->abbrNameLen, std::end(info->abbrName), '\0');
    }
    const auto *bytes = reinterpret_cast<const uint8_t *>(info.get());
    answered.bytes.assign(bytes, bytes + sizeof(Info));
    return answered;
}

Answered answeredBy(Queries &queries, const DescribedType &type, uint32_t id)
{
    switch (type.kind) {
    case RecordKind::frame:
        return answeredBy<DcmFrameInfo>(queries, type, id);
    case RecordKind::slot:
        return answeredBy<DcmSlotInfo>(queries, type, id);
    case RecordKind::card:
        return answeredBy<DcmCardInfo>(queries, type, id);
    case RecordKind::vm:
        break;
    }
    return answeredBy<DcmVmPortInfo>(queries, type, id);
}

Record recordOf(RecordKind kind, const Answered &answered)
{
    const RecordTable *tables[] = {&tableOf<DcmFrameInfo>(), &tableOf<DcmSlotInfo>(), &tableOf<DcmCardInfo>(),
                                   &tableOf<DcmVmPortInfo>()};
    return {*tables[static_cast<size_t>(kind)], answered.bytes.data()};
}

std::map<QueryKey, Answered> answersOf(const std::string &text)
{
    const OwnOutput output; // the library's own output is discarded
    std::map<QueryKey, Answered> answers;
    const auto file = DescriptionFile::parse("device.xml", text);
    Queries queries(*file, true);
    for (const DescribedType &type : file->types()) {
        std::vector<uint32_t> ids = type.typeIds;
        if (type.kind == RecordKind::vm)
            ids = {0};
        for (const uint32_t id : ids) {
            Answered answered = answeredBy(queries, type, id);
            answers.emplace(QueryKey(type.kind, id, type.mode), std::move(answered));
        }
    }
    return answers;
}

bool areSame(const Answered &before, const Answered &after)
{
    return before.isDecoded == after.isDecoded && before.messages == after.messages && before.bytes == after.bytes;
}

std::optional<ChangeClass> expectedClass(RecordKind kind, const Answered *before, const Answered *after)
{
    if (before == nullptr)
        return after->isDecoded ? ChangeClass::addition : ChangeClass::behaviour;
    if (after == nullptr || before->isDecoded != after->isDecoded)
        return !before->isDecoded ? after == nullptr ? ChangeClass::behaviour : ChangeClass::addition
                                  : ChangeClass::breaking;
    if (!before->isDecoded)
        return ChangeClass::behaviour;
    const auto factsOf = [kind](const Answered &answered) {
        Facts facts;
        addFacts(recordOf(kind, answered), clearedRecord(kind), answered.bytes.data(), "", facts);
        return facts;
    };
    const Facts were = factsOf(*before);
    const Facts are = factsOf(*after);
    const auto holdsAll = [](const std::set<std::string> &more, const std::set<std::string> &fewer) {
        return std::includes(more.begin(), more.end(), fewer.begin(), fewer.end());
    };
    bool isLess = !holdsAll(are.structure, were.structure);
    for (const auto &[path, number] : were.capacities) {
        const auto found = are.capacities.find(path);
        isLess = isLess || found == are.capacities.end() || found->second < number;
    }
    // The identity of entries may be unique on one side only.
    const auto haveSamePath = [](const auto &left, const auto &right) { return left.first == right.first; };
    if (!std::equal(were.rows.begin(), were.rows.end(), are.rows.begin(), are.rows.end(), haveSamePath))
        return std::nullopt;
    if (isLess)
        return ChangeClass::breaking;
    if (were.rows != are.rows)
        return std::nullopt;
    return holdsAll(are.settings, were.settings) ? ChangeClass::addition : ChangeClass::behaviour;
}

// ---- Actual differences ---------------------------------------------------------------------------------------------

std::set<QueryKey> namedQueries(const Comparison &comparison)
{
    std::set<QueryKey> named;
    for (const QueryGroup &group : comparison.groups())
        for (const std::vector<QueryId> *ids : {&group.oldIds, &group.newIds})
            for (const QueryId &id : *ids)
                named.emplace(group.kind, id.type, id.mode);
    return named;
}

Json found(Json json, const std::string &path)
{
    for (size_t at = 0; at < path.size();) {
        const size_t end = std::min(path.find_first_of(".[", at), path.size());
        if (end > at)
            json = json.at(path.substr(at, end - at));
        at = end + 1;
        if (end < path.size() && path[end] == '[') {
            const size_t close = path.find(']', end);
            json = json.at(std::stoul(path.substr(end + 1, close - end - 1)));
            at = close + 1;
        }
    }
    return json;
}

std::string textOfJson(const Json &json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// An export has the value of a difference at the same path.
void expectReplay(const Json &exported, const Path &path, const std::optional<FieldValue> &value)
{
    if (!value)
        return;
    EXPECT_EQ(textOfJson(found(exported, textOf(path))), textOfJson(toJson(*value))) << textOf(path);
}

struct Counts {
    std::map<ChangeClass, size_t> classes;
    size_t ambiguous = 0;
};

void expectTruth(const std::string &before, const std::string &after, Counts &counts)
{
    const auto were = answersOf(before);
    const auto are = answersOf(after);
    const auto oldSide = sideOf(before);
    const auto newSide = sideOf(after);
    const Comparison comparison = compared(*oldSide, *newSide);
    counts.classes[comparison.worst()]++;

    std::set<QueryKey> changed;
    for (const auto &[key, answer] : were)
        if (const auto other = are.find(key); other == are.end() || !areSame(answer, other->second))
            changed.insert(key);
    for (const auto &[key, answer] : are)
        if (were.count(key) == 0)
            changed.insert(key);
    EXPECT_EQ(namedQueries(comparison), changed);
    EXPECT_EQ(comparison.worst() >= ChangeClass::addition, !changed.empty());

    for (const QueryGroup &group : comparison.groups()) {
        if (group.isRenumbered()) {
            EXPECT_EQ(group.worst, ChangeClass::breaking);
            continue;
        }
        const QueryId id = group.oldIds.empty() ? group.newIds.front() : group.oldIds.front();
        const QueryKey key(group.kind, id.type, id.mode);
        const auto was = were.find(key);
        const auto is = are.find(key);
        const std::optional<ChangeClass> expected = expectedClass(
            group.kind, was != were.end() ? &was->second : nullptr, is != are.end() ? &is->second : nullptr);
        counts.ambiguous += expected ? 0 : 1;
        // A change that leaves the record as it is may still change the reports, or their order.
        if (expected == ChangeClass::addition) {
            EXPECT_LE(group.worst, ChangeClass::behaviour);
        } else if (expected) {
            EXPECT_EQ(nameOf(group.worst), std::string(nameOf(*expected)));
        }
        if (was == were.end() || is == are.end())
            continue;
        const Json oldExport = toJson(recordOf(group.kind, was->second));
        const Json newExport = toJson(recordOf(group.kind, is->second));
        comparison.visitDifferences(group, [&](const Difference &difference) {
            if (difference.change == nullptr)
                return;
            expectReplay(oldExport, difference.change->oldPath, difference.change->oldValue);
            expectReplay(newExport, difference.change->newPath, difference.change->newValue);
        });
    }
}

// Differences without their classes, as seen from the first side or from the second.
std::multiset<std::string> differencesFrom(const Comparison &comparison, bool isMirrored)
{
    std::multiset<std::string> all;
    for (const QueryGroup &group : comparison.groups())
        comparison.visitDifferences(group, [&](const Difference &difference) {
            std::string old;
            std::string fresh;
            const auto add = [](std::string &text, const std::vector<QueryId> &ids, const Path *path,
                                const std::optional<FieldValue> *value) {
                for (const QueryId &id : ids)
                    text += std::to_string(id.type) + "/" + std::to_string(id.mode) + " ";
                text += path != nullptr ? textOf(*path) : "";
                text += value != nullptr && *value ? "=" + (*value)->words() : "";
            };
            const Change *change = difference.change;
            add(old, group.oldIds, change != nullptr ? &change->oldPath : nullptr,
                change != nullptr ? &change->oldValue : nullptr);
            add(fresh, group.newIds, change != nullptr ? &change->newPath : nullptr,
                change != nullptr ? &change->newValue : nullptr);
            const bool isBehaviour = difference.changeClass == ChangeClass::behaviour;
            all.insert((isMirrored ? fresh + " | " + old : old + " | " + fresh) + (isBehaviour ? " behaviour" : ""));
        });
    return all;
}

TEST(DiffOfGenerated, NamesWhatDiffersInTheRecordsAndCallsItWhatItIs)
{
    Counts counts;
    Mutator mutator(1);
    for (uint32_t seed = 1; seed <= 100; seed++)
        mutator.learn(dcmtest::correctDescription(seed));
    const uint32_t pairs = pairCount(600);
    for (uint32_t pair = 0; pair < pairs && !testing::Test::HasFailure(); pair++) {
        const std::string before = dcmtest::correctDescription(1 + pair % 100 + pair / 100 * 97);
        mutator.learn(pair % 100 == 0 ? before : "");
        const std::string after = mutator.mutate(before);
        SCOPED_TRACE(testing::Message() << "pair " << pair << "\n" << before << "\n--- after\n" << after);
        expectTruth(before, after, counts);
    }
    for (const ChangeClass changeClass : {ChangeClass::addition, ChangeClass::behaviour, ChangeClass::breaking})
        EXPECT_GT(counts.classes[changeClass], 0) << nameOf(changeClass);
    EXPECT_LT(counts.ambiguous, pairs / 5);
}

TEST(DiffOfGenerated, SaysTheSameFromBothSides)
{
    Mutator mutator(2);
    for (uint32_t seed = 1; seed <= 100; seed++)
        mutator.learn(dcmtest::correctDescription(seed));
    const uint32_t pairs = pairCount(300);
    for (uint32_t pair = 0; pair < pairs && !testing::Test::HasFailure(); pair++) {
        const std::string before = dcmtest::correctDescription(1 + pair);
        const std::string after = mutator.mutate(before);
        SCOPED_TRACE(testing::Message() << "pair " << pair << "\n" << before << "\n--- after\n" << after);
        const auto oldSide = sideOf(before);
        const auto newSide = sideOf(after);
        const Comparison there = compared(*oldSide, *newSide);
        const Comparison back = compared(*newSide, *oldSide);
        EXPECT_EQ(differencesFrom(there, false), differencesFrom(back, true));
        EXPECT_EQ(there.count(ChangeClass::behaviour), back.count(ChangeClass::behaviour));
    }
}

// Of many pairs, several have the same first side, which is then parsed and decoded once.
TEST(DiffOfGenerated, FindsNothingWhereTheSameIsSaidInOtherWords)
{
    constexpr uint32_t kMostDescriptions = 20000;
    const uint32_t pairs = pairCount(300);
    const uint32_t rewrites = 1 + (pairs - 1) / kMostDescriptions;
    std::unique_ptr<Side> oldSide;
    for (uint32_t pair = 0; pair < pairs && !testing::Test::HasFailure(); pair++) {
        if (pair % rewrites == 0)
            oldSide = sideOf(dcmtest::correctDescription(1 + pair / rewrites));
        const auto newSide = sideOf(Rewriter(pair).rewrite(*oldSide->file()));
        const Comparison comparison = compared(*oldSide, *newSide);
        EXPECT_EQ(nameOf(comparison.worst()), std::string("cosmetic")) << "pair " << pair << "\n"
                                                                       << oldSide->file()->text() << "\n--- after\n"
                                                                       << newSide->file()->text();
        EXPECT_THAT(differencesFrom(comparison, false), testing::IsEmpty());
    }
}

TEST(DiffOfGenerated, FindsNothingInADescriptionAndItself)
{
    for (uint32_t seed = 1; seed <= 50; seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        const auto oldSide = sideOf(text);
        const auto newSide = sideOf(text);
        const Comparison comparison = compared(*oldSide, *newSide);
        EXPECT_EQ(nameOf(comparison.worst()), std::string("none"));
        EXPECT_EQ(comparison.rewritten(), 0);
    }
}

} // namespace
