#include "tools/dcm/lsp/help.h"

#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/stored_numbers.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/relations/relations.h"
#include "tools/format/values.h"

#include <algorithm>
#include <cstring>

namespace dcmlsp {

using dcmformat::Block;
using dcmformat::Document;
using dcmformat::Place;

// ---- Entries --------------------------------------------------------------------------------------------------------

std::string Help::keyOf(const Place &place, const dcm::Attribute *attribute) const
{
    const std::string path = attribute != nullptr ? dcmformat::attributeKey(place, *attribute) : place.path;
    return dcmformat::keyOfPath(tree_, path);
}

Document Help::entryOf(const Place &place, const dcm::Attribute *attribute) const
{
    Document entry = dcmformat::referenceEntry(tree_, prose_, keyOf(place, attribute));
    // The children of an element are what completion offers.
    entry.erase(
        std::remove_if(entry.begin(), entry.end(),
                       [](const Block &block) { return block.kind == Block::Kind::table && block.text == "Element"; }),
        entry.end());
    return entry;
}

dcmformat::Summary Help::summaryOf(const Place &place, const dcm::Attribute *attribute) const
{
    const std::string key = keyOf(place, attribute);
    const bool hasValue = attribute != nullptr || !place.isSection() || place.element->content.kind != dcm::Kind::none;
    dcmformat::Summary summary = dcmformat::summaryOf(tree_, prose_, key);
    if (!hasValue)
        summary.value.clear();
    return summary;
}

std::string Help::meaningOf(const dcm::Vocabulary &words) const
{
    return dcmformat::plainText(prose_.of("words " + dcmformat::nameOf(&words).name).meaning);
}

const Help &theHelp()
{
    static const Help help;
    return help;
}

namespace {

// "[phy types](#phy-types)" becomes "phy types".
std::string withoutLinks(const std::string &text)
{
    std::string all;
    for (size_t done = 0;;) {
        const size_t open = text.find('[', done);
        const size_t middle = open == std::string::npos ? open : text.find("](#", open);
        const size_t end = middle == std::string::npos ? middle : text.find(')', middle);
        if (end == std::string::npos)
            return all.append(text, done);
        all.append(text, done, open - done).append(text, open + 1, middle - open - 1);
        done = end + 1;
    }
}

} // namespace

Json textOf(Document document, TextKind kind)
{
    if (kind == TextKind::plain)
        return {{"kind", "plaintext"}, {"value", dcmformat::toText(document)}};
    for (Block &block : document) {
        block.text = withoutLinks(block.text);
        for (dcmformat::Row &row : block.rows)
            for (std::string *part : {&row.value, &row.leftOut, &row.meaning, &row.wrong})
                *part = withoutLinks(*part);
    }
    return {{"kind", "markdown"}, {"value", dcmformat::toMarkdown(document)}};
}

std::string codeOf(std::string_view text)
{
    std::string code = dcmtool::shortened(text);
    const auto hasEffect = [](char character) {
        return character == '`' || static_cast<unsigned char>(character) < ' ' || character == '\x7f';
    };
    std::replace_if(code.begin(), code.end(), hasEffect, ' ');
    return "`" + code + "`";
}

// ---- Readings -------------------------------------------------------------------------------------------------------

namespace {

std::string readingOfNumber(const dcm::Content &content, const std::string &text)
{
    const dcmtool::Reading reading = dcmtool::readingOf(text);
    if (!reading.isNumber)
        return "";
    const std::string stored = std::to_string(dcmtool::storedNumber(dcm::readNumber(text.c_str()), content));
    if (stored == text)
        return "";
    return stored + (reading.tail.empty() ? "" : "; what follows the number is ignored");
}

std::string readingOfList(const std::vector<uint32_t> &numbers)
{
    return numbers.empty() ? "" : dcmtool::listedNumbers(numbers);
}

// The library reads one at the beginning, and one behind each comma.
std::vector<uint32_t> typeIdsIn(const std::string &text)
{
    std::vector<uint32_t> numbers;
    for (const char *item = text.c_str(); item != nullptr; item = std::strchr(item, ',')) {
        if (*item == ',')
            item++;
        numbers.push_back(dcm::readNumber(item));
    }
    return numbers;
}

std::string readingOfWord(const dcm::Content &content, const std::string &text)
{
    uint32_t value = 0;
    if (!dcm::readWord(*content.vocabulary, reinterpret_cast<const unsigned char *>(text.c_str()), value))
        return "";
    const bool isOfSet = content.limit != 0 && value >= content.least && value - content.least < content.limit;
    return "value " + std::to_string(value) +
           (isOfSet ? ", bit " + std::to_string(value - content.least) + " of the set" : "");
}

std::string readingOfText(const dcm::Content &content, const std::string &text)
{
    if (text.size() <= content.kept)
        return "";
    return "its first " + std::to_string(content.kept) + " bytes of " + std::to_string(text.size());
}

} // namespace

std::string readingOf(const dcm::Content &content, const std::string &text)
{
    switch (content.kind) {
    case dcm::Kind::number:
    case dcm::Kind::count:
    case dcm::Kind::id:
        return readingOfNumber(content, text);
    case dcm::Kind::keyword:
        return readingOfWord(content, text);
    case dcm::Kind::bitList:
    case dcm::Kind::numberList:
        return readingOfList(dcmtool::numbersNamed(text.c_str(), content));
    case dcm::Kind::typeIds:
        return readingOfList(typeIdsIn(text));
    case dcm::Kind::text:
        return readingOfText(content, text);
    default:
        return "";
    }
}

} // namespace dcmlsp
