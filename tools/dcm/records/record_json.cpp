#include "tools/dcm/records/record_json.h"

namespace dcmtool {

namespace {

Json wordOf(const FieldValue &value, uint32_t number)
{
    return {{"value", number}, {"text", value.reportWordFor(number)}};
}

} // namespace

Json toJson(const FieldValue &value)
{
    switch (value.field().kind) {
    case FieldKind::number:
        return value.number();
    case FieldKind::word:
        return wordOf(value, static_cast<uint32_t>(value.number()));
    case FieldKind::wordSet: {
        Json words = Json::array();
        for (const uint32_t number : value.numbers())
            words.push_back(wordOf(value, number));
        return words;
    }
    case FieldKind::bitList:
    case FieldKind::numberList:
        return value.numbers();
    case FieldKind::text:
        return value.text();
    case FieldKind::record:
        break;
    }
    return toJson(value.record());
}

Json toJson(const Record &record)
{
    Json json = Json::object();
    // Keys are unique in a record: a search for duplicates would take most of the time.
    Json::object_t::Container &members = json.get_ref<Json::object_t &>();
    members.reserve(record.table().fieldCount);
    for (const Field &field : record) {
        Json &member = members.emplace_back(field.name, Json()).second;
        if (field.entries != 0)
            member = Json::array();
        for (const FieldValue value : record.valuesOf(field)) {
            if (field.entries != 0)
                member.push_back(toJson(value));
            else
                member = toJson(value);
        }
    }
    return json;
}

} // namespace dcmtool
