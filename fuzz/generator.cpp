#include "fuzz/generator.h"

#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/words.h"
#include "vm/vm.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace dcmfuzz {

namespace {

constexpr size_t kLongestBody = size_t{128} << 10;
constexpr int kDeepest = 12;

struct Root {
    const char *name;
    const dcm::Element *element;
};
const Root kRoots[] = {
    {dcm::kFrameName, &dcm::kFrameElement},
    {dcm::kSlotName, &dcm::kSlotElement},
    {dcm::kCardName, &dcm::kCardElement},
};

template <size_t Size> const char *pick(Input &input, const char *const (&texts)[Size])
{
    return texts[input.below(Size)];
}

std::string escaped(const std::string &text)
{
    std::string xml;
    for (const char character : text) {
        if (std::strchr("&<>\"", character) != nullptr && character != '\0')
            xml.append("&#").append(std::to_string(static_cast<int>(character))).append(";");
        else
            xml += character;
    }
    return xml;
}

// Whether a text may be in an entity or a default without escapes.
bool isPlain(const std::string &text)
{
    return text.find_first_of("<>&%\"'") == std::string::npos;
}

} // namespace

Description Generator::make()
{
    description_.query = static_cast<Query>(input_.below(4));
    description_.typeId = input_.oneIn(4) ? input_.word() * 0x10001U : 1;
    description_.mode = input_.oneIn(4) ? input_.byte() : 0;
    const bool isVm = description_.query == Query::vm;
    if (isVm) {
        Scope scope;
        element(dcm::kVmName, dcm::kVmElement, scope, 0);
    } else {
        body_ += "<device>";
        // Elements before the wanted one: others of its kind, and of other kinds.
        while (input_.oneIn(3)) {
            const Root &other = kRoots[input_.below(std::size(kRoots))];
            root(other.name, *other.element);
        }
        const Root &asked = kRoots[static_cast<size_t>(description_.query)];
        root(asked.name, *asked.element);
        body_ += "</device>";
    }

    std::string &text = description_.text;
    if (input_.oneIn(4))
        text += input_.oneIn(4) ? "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n" : "<?xml version=\"1.0\"?>\n";
    if (!declarations_.empty())
        text += std::string("<!DOCTYPE ") + (isVm ? dcm::kVmName : "device") + " [\n" + declarations_ + "]>\n";
    text += body_;
    // A file may be damaged.
    if (input_.oneIn(64))
        text.resize(input_.word() % (text.size() + 1));
    if (input_.oneIn(64) && !text.empty())
        text[input_.word() % text.size()] = static_cast<char>(input_.byte());
    return description_;
}

void Generator::root(const char *name, const dcm::Element &rootElement)
{
    Scope scope;
    element(name, rootElement, scope, 0);
}

void Generator::element(const std::string &name, const dcm::Element &element, Scope &parent, int depth)
{
    Scope scope = parent;
    scope.announced = 0;
    scope.nextId = 1;
    body_ += '<' + name;
    attributes(name, element, parent, scope);
    if (element.content.kind == dcm::Kind::none && element.childCount == 0) {
        body_ += "/>";
        return;
    }
    body_ += '>';
    if (element.content.kind != dcm::Kind::none)
        write(input_.oneIn(16) ? faultyValue(element.content, parent)
                               : value(element.content, parent, scope, Place::content),
              Place::content);
    if (depth < kDeepest)
        children(element, scope, depth);
    body_ += "</" + name + '>';
}

void Generator::attributes(const std::string &name, const dcm::Element &element, Scope &parent, Scope &scope)
{
    for (size_t i = 0; i < element.attributeCount; i++) {
        const dcm::Attribute &attribute = element.attributes[i];
        if (input_.oneIn(attribute.need == dcm::Need::required ? 32 : 3))
            continue;
        std::string text;
        // These identify the element.
        if (std::string(attribute.name) == "typeid")
            text = input_.oneIn(8) ? number() : std::to_string(description_.typeId);
        else if (std::string(attribute.name) == "mode")
            text = input_.oneIn(8) ? number() : std::to_string(description_.mode);
        else if (input_.oneIn(16))
            text = faultyValue(attribute.content, parent);
        else
            text = value(attribute.content, parent, scope, Place::attribute);

        // Some attributes are defaults of the document type.
        if (input_.oneIn(64) && isPlain(text)) {
            declarations_.append("<!ATTLIST ").append(name).append(" ").append(attribute.name);
            declarations_.append(" CDATA \"").append(text).append("\">\n");
            continue;
        }
        body_ += std::string(" ") + attribute.name + "=\"";
        write(text, Place::attribute);
        body_ += '"';
    }
}

void Generator::children(const dcm::Element &element, Scope &scope, int depth)
{
    while (!input_.isAtEnd() && body_.size() < kLongestBody) {
        const uint8_t choice = input_.byte();
        if (choice % 8 == 7)
            return;
        if (choice == 0x80 || choice == 0x90 || element.childCount == 0) {
            if (element.childCount == 0 && choice < 0xF0)
                return;
            noise(element, scope, depth);
            continue;
        }
        const dcm::NamedElement &child = element.children[input_.below(static_cast<uint32_t>(element.childCount))];
        const size_t begin = body_.size();
        this->element(child.name, *child.element, scope, depth + 1);
        if (choice == 0xA0 || choice == 0xA8)
            repeat(begin);
    }
}

// Repeats the text from `begin` on: as often as an array has entries, or more often.
void Generator::repeat(size_t begin)
{
    static constexpr uint32_t kTimes[] = {1, 8, 12, 13, 16, 17, 32, 33, 64, 65, 255, 256, 257};
    const std::string text = body_.substr(begin);
    for (uint32_t times = kTimes[input_.below(std::size(kTimes))]; times > 0 && body_.size() < kLongestBody; times--)
        body_ += text;
}

// Content that decoders ignore, or that is in a wrong place.
void Generator::noise(const dcm::Element &element, Scope &scope, int depth)
{
    const Root &other = kRoots[input_.below(std::size(kRoots))];
    switch (input_.below(8)) {
    case 0:
        body_ += "\n  ";
        break;
    case 1:
        body_ += "<!-- 1 -->";
        break;
    case 2:
        body_ += "<?num 1?>";
        break;
    case 3:
        body_ += "<![CDATA[1]]>";
        break;
    case 4:
        write(number(), Place::content);
        break;
    case 5:
        body_ += "<unknown>";
        children(element, scope, depth + 1);
        body_ += "</unknown>";
        break;
    case 6:
        body_ += "<x:num xmlns:x=\"x\" num=\"1\">1</x:num>";
        break;
    default: {
        const dcm::Element &root = *other.element;
        const dcm::NamedElement &stranger = root.children[input_.below(static_cast<uint32_t>(root.childCount))];
        this->element(stranger.name, *stranger.element, scope, depth + 1);
    }
    }
}

// ---- Values ---------------------------------------------------------------------------------------------------------

std::string Generator::value(const dcm::Content &content, Scope &parent, Scope &scope, Place place)
{
    uint32_t row = 0;
    switch (content.kind) {
    case dcm::Kind::none:
        return "";
    case dcm::Kind::number:
        return number();
    case dcm::Kind::count:
        scope.announced = input_.below(static_cast<uint32_t>(content.limit) + 1);
        return std::to_string(scope.announced);
    case dcm::Kind::id:
        if (input_.oneIn(4))
            return std::to_string(1 + input_.below(std::max<uint32_t>(parent.announced, 1)));
        return std::to_string(parent.nextId++);
    case dcm::Kind::keyword: {
        std::string text = word(*content.vocabulary, row);
        if (content.vocabulary == &dcm::kLedTypeWords) {
            // The type of an LED, or of the source in an LED map.
            if (scope.ledType == parent.ledType)
                scope.ledType = row;
            scope.sourceType = row;
        }
        return text;
    }
    case dcm::Kind::ledState: {
        const dcm::Vocabulary *states =
            dcm::ledStateWords(place == Place::attribute ? scope.sourceType : scope.ledType);
        return states != nullptr ? word(*states, row) : "default";
    }
    case dcm::Kind::bitList:
        return bitList(static_cast<uint32_t>(content.limit), parent);
    case dcm::Kind::numberList:
        return numberList();
    case dcm::Kind::typeIds:
        return std::to_string(description_.typeId) + "," + number();
    case dcm::Kind::text:
        return anyText(content.limit);
    case dcm::Kind::ledName:
        return ledName(scope);
    case dcm::Kind::source:
        return source();
    }
    return "";
}

std::string Generator::faultyValue(const dcm::Content &content, const Scope &parent)
{
    static constexpr const char *kBitLists[] = {"0",    "01",         "1,,2",         "1-",
                                                "3-1",  "1--2",       "-1",           " 1",
                                                "1, 2", "4294967296", "1-4294967295", "99999999999999999999",
                                                "1x",   "1-8",        "1-16",         "1-64",
                                                "65"};
    static constexpr const char *kLedNames[] = {"led-",
                                                "led--1@sys",
                                                "led-fan-1@nowhere1/1",
                                                "led-fan-1",
                                                "led-fan-12345@sys1/1",
                                                "led-fan-1@sys12345/12345",
                                                "led-aaaaaaaaaaaaaaaaaaaaaaaaaaaa-1@sys"};
    static constexpr const char *kSources[] = {"src", "src--1/-1", "src-99999999999/99999999999", "SRC-1/1"};
    switch (content.kind) {
    case dcm::Kind::count:
        return std::to_string(content.limit + 1 + input_.byte());
    case dcm::Kind::id: {
        const size_t ids[] = {0, parent.announced + size_t{1}, content.limit + 1, 256, 257, SIZE_MAX};
        return std::to_string(ids[input_.below(std::size(ids))]);
    }
    case dcm::Kind::bitList: {
        const std::string beyond = std::to_string(content.limit + 1);
        const uint32_t choice = input_.below(4);
        return choice == 0 ? beyond : choice == 1 ? "1-" + beyond : pick(input_, kBitLists);
    }
    case dcm::Kind::ledName:
        return pick(input_, kLedNames);
    case dcm::Kind::source:
        return pick(input_, kSources);
    case dcm::Kind::keyword:
    case dcm::Kind::ledState: {
        // A word of another vocabulary, or a misspelled one.
        static const dcm::Vocabulary *const kOthers[] = {&dcm::kPhyTypeWords, &dcm::kEttClassWords, &dcm::kLedTypeWords,
                                                         &dcm::kPortTypeWords, &dcm::kPoeInrushCapWords};
        uint32_t row = 0;
        std::string text = word(*kOthers[input_.below(std::size(kOthers))], row);
        if (input_.oneIn(2))
            text = content.vocabulary != nullptr ? word(*content.vocabulary, row) : "default";
        const uint8_t character = input_.byte();
        if (character % 4 == 3)
            text += static_cast<char>('a' + character % 26);
        else if (character % 4 == 2)
            text[character % text.size()] = static_cast<char>('a' + character % 26);
        return text;
    }
    default:
        return input_.oneIn(2) ? anyText(content.limit) : number();
    }
}

std::string Generator::number()
{
    static constexpr const char *kNumbers[] = {
        "255",
        "256",
        "257",
        "65535",
        "65536",
        "65537",
        "0x10",
        "0xffffffff",
        "010",
        "-1",
        "+7",
        " 7",
        "7 ",
        "7x",
        "x",
        "",
        "0x",
        "08",
        "1e3",
        "4294967295",
        "4294967296",
        "4294967297",
        "18446744073709551615",
        "18446744073709551616",
        "99999999999999999999999999",
        "-99999999999999999999999999",
        "0x80000000",
    };
    const uint8_t choice = input_.byte();
    const size_t special = choice % 64;
    return special >= 64 - std::size(kNumbers) ? kNumbers[special - (64 - std::size(kNumbers))]
                                               : std::to_string(choice % 64);
}

std::string Generator::bitList(uint32_t limit, Scope &parent)
{
    std::string list;
    const uint32_t most = std::max<uint32_t>(parent.announced != 0 ? std::min(parent.announced, limit) : limit, 1);
    // Mostly the numbers that have not been used, so that few entries are described twice.
    if (!input_.oneIn(4)) {
        const uint32_t first = parent.nextId;
        const uint32_t last = first + input_.below(4);
        parent.nextId = last + 1;
        return last == first ? std::to_string(first) : std::to_string(first) + "-" + std::to_string(last);
    }
    do {
        const uint32_t first = 1 + input_.below(most);
        const uint32_t last = first + input_.below(most - first + 1);
        list += (list.empty() ? "" : ",") + std::to_string(first);
        if (last != first)
            list += "-" + std::to_string(last);
    } while (input_.oneIn(2));
    return list;
}

std::string Generator::numberList()
{
    static constexpr const char *kSeparators[] = {",", " ", ";", ",,", ", "};
    std::string list;
    const uint32_t count = input_.below(72);
    const uint32_t step = input_.below(256);
    for (uint32_t i = 0; i < count; i++)
        list += (i == 0 ? "" : i == count - 1 ? pick(input_, kSeparators) : ",") + std::to_string(1 + i * step);
    return input_.oneIn(4) ? list + "," + number() : list;
}

std::string Generator::word(const dcm::Vocabulary &vocabulary, uint32_t &row)
{
    const std::vector<std::string> words = dcmtool::wordsOf(vocabulary);
    row = input_.below(static_cast<uint32_t>(words.size()));
    return words[row];
}

std::string Generator::anyText(size_t limit)
{
    static constexpr const char *kPieces[] = {"a", "%s%n", "é", "&<>\"'", "-", "/", "\t", "日"};
    const size_t lengths[] = {1, limit, limit + 1, limit > 0 ? limit - 1 : 0, 0, 255, 256, 300};
    const size_t length = lengths[input_.below(std::size(lengths))];
    const std::string piece = pick(input_, kPieces);
    std::string text;
    while (text.size() < length)
        text += piece;
    return text;
}

std::string Generator::ledName(Scope &scope)
{
    uint32_t attach = 0;
    std::string name = "led-" + word(dcm::kLedTypeWords, scope.ledType);
    scope.sourceType = scope.ledType;
    name += "-" + std::to_string(input_.byte()) + "@" + word(dcm::kEttAttachWords, attach);
    name += input_.oneIn(2) ? "#" : std::to_string(input_.byte());
    return name + "/" + (input_.oneIn(2) ? "#" : std::to_string(input_.byte()));
}

std::string Generator::source()
{
    return "src-" + std::to_string(input_.byte()) + "/" + std::to_string(input_.byte());
}

// ---- Forms of texts -------------------------------------------------------------------------------------------------

// A text has several forms, for which libxml2 creates different nodes.
void Generator::write(const std::string &text, Place place)
{
    const uint32_t way = input_.byte();
    if (way < 224) {
        body_ += escaped(text);
        return;
    }
    switch (way % 6) {
    case 0:
    case 1:
        if (isPlain(text)) {
            const std::string name = "e" + std::to_string(entities_++);
            declarations_ += "<!ENTITY " + name + " \"" + text + "\">\n";
            body_ += "&" + name + ";";
            return;
        }
        break;
    case 2:
        if (!text.empty() && static_cast<signed char>(text[0]) > 0) {
            body_ += "&#" + std::to_string(static_cast<int>(text[0])) + ";" + escaped(text.substr(1));
            return;
        }
        break;
    case 3:
        if (place == Place::content) {
            body_ += "<![CDATA[" + text + "]]>";
            return;
        }
        break;
    case 4:
        if (place == Place::content) {
            const size_t half = text.size() / 2;
            body_ += escaped(text.substr(0, half)) + "<!-- -->" + escaped(text.substr(half));
            return;
        }
        break;
    default:
        if (place == Place::content) {
            body_ += "<b>" + escaped(text) + "</b>";
            return;
        }
    }
    body_ += escaped(text);
}

} // namespace dcmfuzz
