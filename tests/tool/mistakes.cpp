#include "tests/tool/mistakes.h"

#include "common/vocabularies.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace dcmtest {

using dcm::Kind;
using dcm::Role;
using dcmtool::cut;
using dcmtool::DescriptionFile;
using dcmtool::Node;
using dcmtool::Span;

namespace {

std::string slipped(std::string word, std::mt19937 &random)
{
    const size_t at = random() % word.size();
    const char letter = static_cast<char>('a' + random() % 26);
    switch (random() % 7) {
    case 0:
        return word.erase(at, 1);
    case 1:
        return word.insert(at, 1, word[at]);
    case 2:
        if (at + 1 < word.size())
            std::swap(word[at], word[at + 1]);
        return word;
    case 3:
        word[at] = letter;
        return word;
    case 4:
        return word.insert(at, 1, letter);
    case 5:
        std::replace(word.begin(), word.end(), '-', '_');
        return word;
    default:
        word[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[0])));
        return word;
    }
}

bool isNumber(const std::string &text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool isWordLike(const std::string &text)
{
    return !text.empty() && std::islower(static_cast<unsigned char>(text[0])) != 0 &&
           text.find('@') == std::string::npos && text.find_first_of(" /#.") == std::string::npos;
}

bool isListLike(const std::string &text)
{
    return text.find_first_of(",-") != std::string::npos &&
           text.find_first_not_of("0123456789,-") == std::string::npos &&
           std::isdigit(static_cast<unsigned char>(text[0])) != 0;
}

// Another text in the place of a span.
Mistake replaced(const char *kind, Span span, const std::string &text)
{
    return {kind, {{span, text}}, {span.begin, span.begin + text.size()}};
}

void addSlipsInValue(const std::string &text, Span span, std::mt19937 &random, std::vector<Mistake> &mistakes)
{
    static constexpr const char *kUnits[] = {"V", " mV", " rpm", "%", " nm"};
    const std::string value(cut(text, span));
    if (isNumber(value)) {
        mistakes.push_back(replaced("unit", span, value + kUnits[random() % std::size(kUnits)]));
    } else if (isListLike(value)) {
        const size_t mark = value.find_first_of(",-");
        mistakes.push_back(replaced("blank in a list", span, std::string(value).insert(mark + 1, 1, ' ')));
        mistakes.push_back(replaced("zero in a list", span, "0" + value));
    } else if (isWordLike(value)) {
        mistakes.push_back(replaced("word", span, slipped(value, random)));
        mistakes.push_back(replaced("blanks around a word", span, "\n  " + value + " "));
    }
}

// Walks a correct description beside its format, and makes mistakes that the format suggests.
class Maker {
public:
    Maker(const DescriptionFile &file, std::vector<Mistake> &mistakes) : file_(file), mistakes_(mistakes) {}

    // Where any text is as good as another.
    const std::vector<Span> &texts() const { return texts_; }

    void visit(Node element, const dcm::NamedElement &row)
    {
        for (size_t i = 0; i < row.element->attributeCount; i++)
            attribute(element, row, row.element->attributes[i]);
        if (const dcm::Text text = dcm::Text::content(element, {"test"});
            text && row.element->content.kind != Kind::none)
            value(file_.contentSpan(element), text.c_str(), row.element->content);
        for (const Node child : dcm::children(element)) {
            const size_t i = dcmtool::findRow(*row.element, dcm::nameOf(child));
            if (i == row.element->childCount)
                continue;
            sibling(child, row.element->children[i]);
            visit(child, row.element->children[i]);
        }
    }

private:
    void add(Mistake mistake) { mistakes_.push_back(std::move(mistake)); }

    Span elementSpan(Node element) const
    {
        const Span tag = file_.tagSpan(element);
        const std::string &text = file_.text();
        if (text[tag.end - 2] == '/')
            return tag;
        size_t left = text.size();
        const size_t end = dcmtool::endTagOf(text, tag.begin, left);
        return {tag.begin, text.find('>', end) + 1};
    }

    void attribute(Node element, const dcm::NamedElement &row, const dcm::Attribute &attribute)
    {
        const dcm::Text text = dcm::Text::attribute(element, attribute.name, {"test"});
        if (!text)
            return;
        const Span span = file_.valueSpan(element, attribute.name);
        value(span, text.c_str(), attribute.content);
        const bool isIdentity = row.role() == Role::card && attribute.content.kind == Kind::text;
        if (attribute.need == dcm::Need::required || isIdentity)
            add({std::string("attribute left out"),
                 {{{file_.attributeSpan(element, attribute.name).begin, span.end + 1}, ""}},
                 file_.nameSpan(element)});
    }

    void value(Span span, const std::string &text, const dcm::Content &content)
    {
        switch (content.kind) {
        case Kind::number:
            add(replaced("no number", span, "none"));
            add(replaced("number too large", span, "99999999999"));
            if (isNumber(text) && text.size() > 1)
                add(replaced("octal number", span, "0" + text));
            break;
        case Kind::id:
            add(replaced("id too large", span, "999"));
            break;
        case Kind::bitList:
            add(replaced("list too long", span, text + ",999"));
            add(replaced("no list", span, "all"));
            break;
        case Kind::count:
            if (const auto count = std::stoul(text); count != 0) {
                add(replaced("count too small", span, std::to_string(count - 1)));
                if (count < content.limit)
                    add(replaced("count too large", span, std::to_string(count + 1)));
                add(replaced("count beyond the limit", span, std::to_string(content.limit + 1)));
            }
            break;
        case Kind::text:
            texts_.push_back(span);
            add(replaced("text too long", span, std::string(content.limit + 1, 'x')));
            break;
        case Kind::keyword:
            add(replaced("unknown word", span, "qqqqqqqqqq"));
            break;
        case Kind::ledName:
            add(replaced("LED name", span, text.substr(0, text.find('@'))));
            break;
        case Kind::source:
            add(replaced("source", span, text.substr(0, text.find('/'))));
            break;
        default:
            break;
        }
    }

    void sibling(Node child, const dcm::NamedElement &row)
    {
        const Span whole = elementSpan(child);
        const std::string text(cut(file_.text(), whole));
        const size_t nameBegin = whole.end + 1;
        const Span behind = {whole.end, whole.end};
        if (row.element->most == 1)
            add({"repeated element", {{behind, text}}, {nameBegin, nameBegin + std::strlen(row.name)}});
        const bool isNeeded = row.role() == Role::driver || row.role() == Role::phyType || row.role() == Role::portId ||
                              row.role() == Role::occupiedSlots || row.role() == Role::mostCards;
        if (isNeeded)
            add({"element left out", {{whole, ""}}, file_.nameSpan(child->parent)});
        add({"unknown element", {{behind, "<qqqqqqqq/>"}}, {nameBegin, nameBegin + 8}});
        add({"stray text", {{behind, "stray"}}, {behind.begin, behind.begin + 5}});
        add({"unknown attribute",
             {{{file_.nameSpan(child).end, file_.nameSpan(child).end}, " qqqqqqqq='1'"}},
             {file_.nameSpan(child).end + 1, file_.nameSpan(child).end + 9}});
        repeatedId(child, row);
    }

    // The id of a sibling before.
    void repeatedId(Node child, const dcm::NamedElement &row)
    {
        const dcm::Attribute *id = dcmtool::idAttribute(*row.element);
        Node before = child->prev;
        while (before != nullptr && (before->type != XML_ELEMENT_NODE || !dcm::isNamed(before, row.name)))
            before = before->prev;
        if (id == nullptr || before == nullptr || row.role() == Role::ledState || row.role() == Role::coolingEntry)
            return;
        const Span mine = file_.valueSpan(child, id->name);
        const dcm::Text other = dcm::Text::attribute(before, id->name, {"test"});
        if (other && mine.begin != file_.nameSpan(child).begin)
            add(replaced("repeated id", mine, other.c_str()));
    }

    const DescriptionFile &file_;
    std::vector<Mistake> &mistakes_;
    std::vector<Span> texts_;
};

} // namespace

std::vector<Mistake> slipsIn(const std::string &text, std::mt19937 &random)
{
    std::vector<Mistake> mistakes;
    const std::vector<dcmtool::Markup> pieces = dcmtool::markupOf(text);
    for (size_t i = 0; i < pieces.size(); i++) {
        const dcmtool::MarkupKind kind = pieces[i].kind;
        if (kind != dcmtool::MarkupKind::startTag && kind != dcmtool::MarkupKind::emptyTag)
            continue;
        const Span name = {pieces[i].span.begin + 1, dcmtool::nameEnd(text, pieces[i].span.begin + 1)};
        const std::string slip = slipped(std::string(cut(text, name)), random);
        Mistake misspelled = replaced("name", name, slip);
        if (kind == dcmtool::MarkupKind::startTag) {
            const size_t end = pieces[pieces[i].partner].span.begin + 2;
            misspelled.edits.push_back({{end, end + name.end - name.begin}, slip});
        }
        mistakes.push_back(std::move(misspelled));
        dcmtool::WrittenAttribute attribute;
        for (size_t at = name.end; dcmtool::nextAttribute(text, at, attribute);) {
            mistakes.push_back(
                replaced("attribute", attribute.name, slipped(std::string(cut(text, attribute.name)), random)));
            addSlipsInValue(text, attribute.value, random, mistakes);
        }
        if (pieces[i].partner == i + 2 && pieces[i + 1].kind == dcmtool::MarkupKind::text)
            addSlipsInValue(text, pieces[i + 1].span, random, mistakes);
    }
    return mistakes;
}

std::vector<Mistake> mistakesIn(const std::string &text, std::mt19937 &random)
{
    std::vector<Mistake> mistakes = slipsIn(text, random);
    const auto file = DescriptionFile::parse("correct.xml", text);
    Maker maker(*file, mistakes);
    for (const dcmtool::DescribedType &type : file->types())
        maker.visit(type.element, dcmtool::rowOf(type.kind));
    const auto isInText = [&](const Mistake &mistake) {
        return mistake.kind != "text too long" &&
               std::any_of(maker.texts().begin(), maker.texts().end(), [&](Span span) {
                   return mistake.edits[0].span.begin == span.begin && mistake.edits[0].span.end == span.end;
               });
    };
    mistakes.erase(std::remove_if(mistakes.begin(), mistakes.end(), isInText), mistakes.end());
    return mistakes;
}

} // namespace dcmtest
