#include "tools/dcm/check/fixes.h"

#include "common/vocabularies.h"
#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"
#include "tools/dcm/description/markup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>

namespace dcmtool {

namespace {

// The limit of the text that is read to find end tags, for each byte of a file.
constexpr size_t kMostScannedOfByte = 4;

bool areSame(Span one, Span other)
{
    return one.begin == other.begin && one.end == other.end;
}

bool isWithin(Span one, Span other)
{
    return one.begin >= other.begin && one.end <= other.end;
}

bool isDigit(char character)
{
    return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

struct Replacement {
    std::string text;
    Confidence confidence = Confidence::probable;
};

Confidence certainIf(bool isCertain)
{
    return isCertain ? Confidence::certain : Confidence::probable;
}

// ---- Words ----------------------------------------------------------------------------------------------------------

std::vector<std::string> wordsOf(const dcm::Content &content)
{
    if (content.kind == Kind::keyword)
        return dcmtool::wordsOf(*content.vocabulary);
    std::vector<std::string> words;
    for (uint32_t type = 0; content.kind == Kind::ledState && type < dcm::kLedTypeWords.count; type++)
        if (const dcm::Vocabulary *states = dcm::ledStateWords(type))
            for (std::string &word : dcmtool::wordsOf(*states))
                words.push_back(std::move(word));
    return words;
}

std::optional<Replacement> replacementOfWord(const std::string &written, const std::string &meant,
                                             const std::vector<std::string> &words)
{
    if (meant.empty())
        return std::nullopt;
    return Replacement{meant, certainIf(isOnlyOneNear(written, meant, words))};
}

// One part of an LED name is not a valid word.
std::optional<Replacement> replacementOfLedName(const std::string &written, const std::string &meant)
{
    const LedName name = splitName(written.c_str());
    if (meant.empty() || !name.isComplete)
        return std::nullopt;
    const bool isType = !isWord(name.type.c_str(), dcm::kLedTypeWords);
    const std::string &part = isType ? name.type : name.attach;
    const size_t at = isType ? written.find('-') + 1 : written.find('@') + 1;
    if (part.empty() || at == 0 || written.compare(at, part.size(), part) != 0)
        return std::nullopt;
    const dcm::Vocabulary &vocabulary = isType ? dcm::kLedTypeWords : dcm::kEttAttachWords;
    return Replacement{std::string(written).replace(at, part.size(), meant),
                       certainIf(isOnlyOneNear(part, meant, dcmtool::wordsOf(vocabulary)))};
}

// ---- Numbers and lists ----------------------------------------------------------------------------------------------

// A unit after a number; digits of another base are not units, nor is a letter that looks like a digit.
bool isUnit(std::string_view tail)
{
    const size_t begin = std::min(tail.find_first_not_of(kBlanks), tail.size());
    const std::string_view unit = tail.substr(begin);
    const bool isOfLetters = std::all_of(unit.begin(), unit.end(), [](char byte) {
        return std::isalpha(static_cast<unsigned char>(byte)) != 0 || byte == '%' || (byte & 0x80) != 0;
    });
    // "0x" is not a number with a unit.
    const bool isPrefix = begin == 0 && unit.find_first_of("xX") == 0;
    return isOfLetters && !isPrefix && unit.find_first_not_of("abcdefABCDEFxXoOlI") != std::string_view::npos;
}

std::optional<Replacement> replacementOfNumber(const std::string &written)
{
    const Reading reading = readingOf(written);
    if (!reading.isNumber || reading.tail.empty() || !isUnit(reading.tail))
        return std::nullopt;
    const size_t end = written.rfind(reading.tail);
    const size_t last = written.find_last_not_of(kBlanks, end - 1);
    if (end == std::string::npos || last == std::string::npos)
        return std::nullopt;
    return Replacement{written.substr(0, last + 1), Confidence::certain};
}

bool isBitList(const std::string &text, const dcm::Content &content)
{
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    return !text.empty() && isDigit(text.back()) &&
           dcmStr2BitList(text.c_str(), 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) == 0;
}

// Without blanks and leading zeros; empty if a blank separates two numbers.
std::string plainList(const std::string &written)
{
    std::string list;
    bool isAfterBlank = false;
    for (size_t i = 0; i < written.size(); i++) {
        const char character = written[i];
        const bool isInNumber = !list.empty() && isDigit(list.back());
        if (isBlank(character)) {
            isAfterBlank = true;
            continue;
        }
        if (isDigit(character) && isAfterBlank && isInNumber)
            return "";
        const bool isLeadingZero = character == '0' && !isInNumber && i + 1 < written.size() && isDigit(written[i + 1]);
        if (!isLeadingZero)
            list += character;
        isAfterBlank = false;
    }
    return list;
}

// With commas and hyphens in place of characters that look like them.
std::string likelyList(std::string list)
{
    for (const char *dash : {"\xE2\x80\x93", "\xE2\x80\x94", "..", "~"})
        for (size_t at = list.find(dash); at != std::string::npos; at = list.find(dash))
            list.replace(at, std::strlen(dash), "-");
    std::replace(list.begin(), list.end(), ';', ',');
    for (size_t at = list.find(",,"); at != std::string::npos; at = list.find(",,"))
        list.erase(at, 1);
    const size_t first = list.find_first_not_of(',');
    const size_t last = list.find_last_not_of(',');
    return first == std::string::npos ? "" : list.substr(first, last + 1 - first);
}

std::optional<Replacement> replacementOfList(const std::string &written, const dcm::Content &content)
{
    const std::string plain = plainList(written);
    if (plain != written && isBitList(plain, content))
        return Replacement{plain, Confidence::certain};
    std::string likely = likelyList(plain);
    if (likely != written && isBitList(likely, content))
        return Replacement{std::move(likely), Confidence::probable};
    return std::nullopt;
}

// ---- Places ---------------------------------------------------------------------------------------------------------

class FixMaker {
public:
    explicit FixMaker(const DescriptionFile &file)
        : file_(file), text_(file.text()), left_(kMostScannedOfByte * file.text().size() + 1000)
    {
    }

    void fix(Finding &finding)
    {
        const Node element = finding.element != nullptr ? finding.element : file_.root();
        const Span name = file_.nameSpan(element);
        // The text of an entity is in its declaration.
        if (name.begin == 0 || text_[name.begin - 1] != '<' || text_[name.begin] == '&')
            return;
        if (areSame(finding.span, name))
            rename(finding, element);
        else if (!fixAttribute(finding, element) && isWithin(finding.span, file_.contentSpan(element)))
            fixContent(finding, element);
    }

private:
    std::string cutText(Span span) const { return std::string(cut(text_, span)); }

    static std::vector<std::string> siblingNames(Node element)
    {
        std::vector<std::string> names;
        const Node parent = element->parent;
        if (parent == nullptr || parent->type != XML_ELEMENT_NODE)
            return {dcm::kDeviceName, rowOf(RecordKind::vm).name};
        if (dcm::isNamed(parent, dcm::kDeviceName) && parent->parent->type != XML_ELEMENT_NODE) {
            for (const dcm::NamedElement &child : deviceChildren())
                names.emplace_back(child.name);
        } else if (const dcm::Element *format = formatOf(parent)) {
            names = childNames(*format);
        }
        return names;
    }

    // An unknown element.
    void rename(Finding &finding, Node element)
    {
        const std::vector<std::string> names = siblingNames(element);
        const std::string written = cutText(finding.span);
        if (finding.meant.empty() || element->ns != nullptr ||
            std::find(names.begin(), names.end(), written) != names.end())
            return;
        const Span tag = file_.tagSpan(element);
        Fix fix = {
            "rename to \"" + finding.meant + "\"", {{finding.span, finding.meant}}, confidenceOf(finding, names)};
        if (text_[tag.end - 2] != '/') {
            const size_t end = endTagOf(text_, tag.begin, left_);
            if (end == std::string_view::npos)
                return;
            fix.edits.push_back({{end + 2, nameEnd(text_, end + 2)}, finding.meant});
        }
        finding.fixes.push_back(std::move(fix));
    }

    bool fixAttribute(Finding &finding, Node element)
    {
        const dcm::Element *format = formatOf(element);
        for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
            const char *name = reinterpret_cast<const char *>(attribute->name);
            const dcm::Attribute *known = format != nullptr ? findAttribute(*format, name) : nullptr;
            if (known == nullptr && areSame(finding.span, file_.attributeSpan(element, name))) {
                if (format != nullptr && attribute->ns == nullptr && !finding.meant.empty())
                    renameAttribute(finding, *format);
                return true;
            }
            const Span value = file_.valueSpan(element, name);
            // An item of a list is corrected with the list.
            if (known != nullptr && isWithin(finding.span, value)) {
                replaceValue(finding, value, known->content);
                return true;
            }
        }
        return false;
    }

    void renameAttribute(Finding &finding, const dcm::Element &format)
    {
        const std::vector<std::string> names = attributeNames(format);
        finding.fixes.push_back(
            {"rename to \"" + finding.meant + "\"", {{finding.span, finding.meant}}, confidenceOf(finding, names)});
    }

    // A name that is valid in another place may have been meant there.
    Confidence confidenceOf(const Finding &finding, const std::vector<std::string> &names) const
    {
        const bool isKnownElsewhere = std::strncmp(finding.rule->name, "misplaced-", 10) == 0;
        return certainIf(!isKnownElsewhere && isOnlyOneNear(cutText(finding.span), finding.meant, names));
    }

    // A content that is a single text.
    void fixContent(Finding &finding, Node element)
    {
        const dcm::Element *format = formatOf(element);
        const Span tag = file_.tagSpan(element);
        const Span all = {tag.end, std::min(text_.find('<', tag.end), text_.size())};
        if (format == nullptr || text_.substr(all.end, 2) != "</")
            return;
        // Blanks are part of a word, and are ignored around a number.
        replaceValue(finding, format->content.kind == Kind::number ? finding.span : all, format->content);
    }

    void replaceValue(Finding &finding, Span span, const dcm::Content &content)
    {
        const std::string written = cutText(span);
        // A text with references or CDATA is not edited.
        if (written.find_first_of("&<") != std::string::npos)
            return;
        std::optional<Replacement> replacement = replacementFor(finding, written, content);
        if (replacement && replacement->text != written)
            finding.fixes.push_back({"replace " + inQuotes(written) + " by " + inQuotes(replacement->text),
                                     {{span, replacement->text}},
                                     replacement->confidence});
    }

    static std::optional<Replacement> replacementFor(const Finding &finding, const std::string &written,
                                                     const dcm::Content &content)
    {
        switch (content.kind) {
        case Kind::keyword:
        case Kind::ledState:
            return replacementOfWord(written, finding.meant, wordsOf(content));
        case Kind::ledName:
            return replacementOfLedName(written, finding.meant);
        case Kind::number:
        case Kind::count:
        case Kind::id:
            return replacementOfNumber(written);
        case Kind::bitList:
            return replacementOfList(written, content);
        default:
            return std::nullopt;
        }
    }

    const DescriptionFile &file_;
    std::string_view text_;
    size_t left_; // the number of bytes that may still be read to find end tags
};

} // namespace

void addFixes(const DescriptionFile &file, std::vector<Finding> &findings)
{
    if (!faultOfEditing(file).empty())
        return;
    FixMaker maker(file);
    for (Finding &finding : findings)
        maker.fix(finding);
}

} // namespace dcmtool
