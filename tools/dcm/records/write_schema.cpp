// Writes the JSON Schema of "dcm export": the records from their tables, the meaning of each field from the comments of
// dcm.h, and the rest from export.schema.in.json. Fails if a table and the header have different fields.
//
// Usage: dcm-schema DCM.H EXPORT.SCHEMA.IN.JSON
#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>

using namespace dcmtool;

namespace {

std::string contentOf(const char *name)
{
    std::ifstream file(name);
    std::ostringstream content;
    content << file.rdbuf();
    if (!file || content.str().empty())
        throw std::runtime_error(std::string("cannot read ") + name);
    return content.str();
}

// ---- Comments of the header -----------------------------------------------------------------------------------------

// A comment of the header, without the parts that only concern the memory of a C program.
std::string meaningOf(const std::string &comment)
{
    std::string text = std::regex_replace(comment, std::regex(R"(\s+)"), " ");
    text = std::regex_replace(text, std::regex("#(?=[gD])"), "");
    text = std::regex_replace(text, std::regex("(^|; |, )[^;,]*(terminate|two's complement|what follows)[^;,]*"), "");
    text = std::regex_replace(text, std::regex(" (Begins with the fields|Bytes only)[^.]*\\."), "");
    return std::regex_replace(text, std::regex("^(; |, | )+| +$"), "");
}

struct HeaderRecord {
    std::string meaning;
    std::map<std::string, std::string> fields; // their meanings by name
};

std::map<std::string, HeaderRecord> readHeader(const std::string &header)
{
    std::map<std::string, HeaderRecord> records;
    const std::regex begin(R"(\*/\ntypedef struct (\w+) \{)");
    const std::regex field(R"(\n +\w+ (\w+)(?:\[\w+\])*(?: : \d)?; +/\*\*<([^*]*)\*/)");
    for (std::sregex_iterator i(header.begin(), header.end(), begin); i != std::sregex_iterator(); ++i) {
        const auto start = static_cast<size_t>(i->position());
        const size_t comment = header.rfind("/**", start) + 3;
        HeaderRecord &record = records[(*i)[1]];
        record.meaning = meaningOf(header.substr(comment, start - comment));
        const std::string body = header.substr(start, header.find("\n}", start) - start);
        for (std::sregex_iterator j(body.begin(), body.end(), field); j != std::sregex_iterator(); ++j)
            record.fields[(*j)[1]] = meaningOf((*j)[2]);
    }
    const std::regex see(R"(see (\w+)::(\w+))");
    for (auto &[name, record] : records)
        for (auto &[member, meaning] : record.fields)
            if (std::smatch other; std::regex_match(meaning, other, see))
                meaning = std::string(records[other[1]].fields[other[2]]);
    return records;
}

// ---- Schemas --------------------------------------------------------------------------------------------------------

Json integer(int64_t least, int64_t most)
{
    return {{"type", "integer"}, {"minimum", least}, {"maximum", most}};
}

Json numberSchema(const Field &field)
{
    if (field.bits != 0)
        return integer(0, (int64_t{1} << field.bits) - 1);
    const std::vector<uint8_t> ones(field.stride, 0xFF);
    const int64_t most = (int64_t{1} << (field.stride * 8 - 1)) - 1;
    return field.load(ones.data()) < 0 ? integer(-most - 1, most) : integer(0, 2 * most + 1);
}

Json reference(const std::string &name)
{
    return {{"$ref", "#/$defs/" + name}};
}

Json arrayOf(Json items)
{
    return {{"type", "array"}, {"items", std::move(items)}};
}

// For one entry, if the field is an array.
Json entrySchema(const Field &field)
{
    switch (field.kind) {
    case FieldKind::number:
        return numberSchema(field);
    case FieldKind::word:
        return reference("word");
    case FieldKind::wordSet:
        return arrayOf(reference("word"));
    case FieldKind::bitList: {
        Json list = arrayOf(integer(1, static_cast<int64_t>(field.stride * 8)));
        list["uniqueItems"] = true;
        return list;
    }
    case FieldKind::numberList: {
        Json list = arrayOf(integer(0, UINT32_MAX));
        list["maxItems"] = field.stride / sizeof(uint32_t);
        return list;
    }
    case FieldKind::text:
        return {{"type", "string"}};
    case FieldKind::record:
        break;
    }
    return reference(field.record->name);
}

Json fieldSchema(const Field &field, const std::string &meaning)
{
    Json schema = Json::object();
    if (!meaning.empty())
        schema["description"] = meaning;
    Json entry = entrySchema(field);
    if (field.entries != 0) {
        entry = arrayOf(std::move(entry));
        if (field.extent == Extent::all)
            entry["minItems"] = field.entries;
        entry["maxItems"] = field.entries;
    }
    schema.update(entry);
    return schema;
}

// The record's schema, after those of the records inside it.
void addRecord(const RecordTable &table, std::map<std::string, HeaderRecord> &header, Json &definitions)
{
    if (definitions.contains(table.name))
        return;
    for (const Field &field : table)
        if (field.kind == FieldKind::record)
            addRecord(*field.record, header, definitions);

    HeaderRecord record = header[table.name];
    Json properties = Json::object();
    Json required = Json::array();
    for (const Field &field : table) {
        if (record.fields.count(field.name) == 0)
            throw std::runtime_error(std::string(table.name) + "::" + field.name + " is not in the header");
        properties[field.name] = fieldSchema(field, record.fields[field.name]);
        required.push_back(field.name);
        record.fields.erase(field.name);
    }
    if (!record.fields.empty())
        throw std::runtime_error(std::string(table.name) + " has no row for " + record.fields.begin()->first);
    definitions[table.name] = {{"description", record.meaning},
                               {"type", "object"},
                               {"properties", std::move(properties)},
                               {"required", std::move(required)},
                               {"additionalProperties", false}};
}

void writeSchema(const char *headerName, const char *frameName)
{
    std::map<std::string, HeaderRecord> header = readHeader(contentOf(headerName));
    Json schema = Json::parse(contentOf(frameName));
    Json &definitions = schema["$defs"];
    for (const RecordTable *table :
         {&tableOf<DcmFrameInfo>(), &tableOf<DcmSlotInfo>(), &tableOf<DcmCardInfo>(), &tableOf<DcmVmPortInfo>()})
        addRecord(*table, header, definitions);
    header.erase("DcmEttInfo"); // passed to the platform, not part of a record
    for (const auto &record : header)
        if (!definitions.contains(record.first))
            throw std::runtime_error(record.first + " of the header is in no record that is exported");
    std::cout << jsonText(schema);
    if (!std::cout.flush())
        throw std::runtime_error("cannot write");
}

} // namespace

int main(int argc, char **argv)
try {
    if (argc != 3)
        throw std::runtime_error("usage: dcm-schema DCM.H EXPORT.SCHEMA.IN.JSON");
    writeSchema(argv[1], argv[2]);
    return 0;
} catch (const std::exception &error) {
    std::fprintf(stderr, "dcm-schema: %s\n", error.what());
    return 1;
}
