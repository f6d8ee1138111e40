#include "tools/dcm/description/described.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record_json.h"

#include <algorithm>

namespace dcmtool {

namespace {

constexpr int kVersion = 1; // of the output: docs/schema/diff.schema.json
constexpr size_t kMostTypes = 1000;

Json placeJson(const std::optional<Place> &place)
{
    return place ? Json({{"line", place->line}, {"column", place->column}}) : Json();
}

// A query as a whole.
Json queryJson(RecordKind kind, const std::vector<QueryId> &ids, const Answer *answer)
{
    if (answer == nullptr)
        return {};
    Json query = Json::object();
    if (kind != RecordKind::vm)
        query["type"] = ids.front().type;
    if (kind == RecordKind::card)
        query["mode"] = ids.front().mode;
    query["result"] = answer->isDecoded ? 0 : -1;
    return query;
}

Json valueJson(const std::optional<FieldValue> &value)
{
    return value ? toJson(*value) : Json();
}

void addIds(Json &entry, const QueryGroup &group)
{
    const std::vector<QueryId> &ids = group.oldIds.empty() ? group.newIds : group.oldIds;
    entry["type"] = group.kind == RecordKind::vm ? Json() : Json(ids.front().type);
    entry["mode"] = group.kind == RecordKind::card ? Json(ids.front().mode) : Json();
    if (ids.size() < 2)
        return;
    Json &more = entry["moreTypes"] = Json::array();
    for (size_t i = 1; i < ids.size() && i <= kMostTypes; i++)
        more.push_back(ids[i].type);
    if (ids.size() > kMostTypes + 1)
        entry["omittedTypes"] = ids.size() - kMostTypes - 1;
}

Json entryOf(const Comparison &comparison, const QueryGroup &group, const Difference &difference)
{
    Json entry = {{"class", nameOf(difference.changeClass)}, {"kind", kindName(group.kind)}};
    addIds(entry, group);
    entry["path"] = pathOf(difference);
    const Change *change = difference.change;
    if (change != nullptr && change->oldValue && change->newValue && textOf(change->oldPath) != pathOf(difference))
        entry["oldPath"] = textOf(change->oldPath);
    entry["old"] =
        change != nullptr ? valueJson(change->oldValue) : queryJson(group.kind, group.oldIds, difference.before);
    entry["new"] =
        change != nullptr ? valueJson(change->newValue) : queryJson(group.kind, group.newIds, difference.after);
    entry["oldPlace"] = placeJson(oldPlace(comparison, group, difference));
    entry["newPlace"] = placeJson(newPlace(comparison, group, difference));
    entry["message"] = textOf(difference);
    return entry;
}

} // namespace

bool printAsJson(const Comparison &comparison, const OwnOutput &output)
{
    JsonStream json(output, mostOutputOf(comparison));
    json.add("format", "dcm-diff");
    json.add("version", kVersion);
    json.add("old", comparison.before().name());
    json.add("new", comparison.after().name());
    json.add("class", nameOf(comparison.worst()));
    json.add("rewritten", comparison.rewritten());
    size_t leftOut = 0;
    json.beginArray("differences");
    for (const QueryGroup &group : comparison.groups()) {
        if (leftOut != 0) {
            leftOut += group.differences;
            continue;
        }
        comparison.visitDifferences(group, [&](const Difference &difference) {
            if (leftOut != 0 || !json.addEntry(entryOf(comparison, group, difference)))
                leftOut++;
        });
    }
    json.endArray();
    if (leftOut != 0)
        json.add("omitted", leftOut);
    reportLeftOut(leftOut);
    return json.end();
}

} // namespace dcmtool
