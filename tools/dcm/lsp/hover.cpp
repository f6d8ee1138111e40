#include "tools/dcm/description/texts.h"
#include "tools/dcm/lsp/cursor.h"
#include "tools/dcm/lsp/features.h"

#include <algorithm>

namespace dcmlsp {

using dcmformat::Block;
using dcmformat::Document;
using dcmtool::cut;
using dcmtool::Span;

namespace {

// What a hover is about.
struct Subject {
    const dcmformat::Place *place = nullptr;
    const dcm::Attribute *attribute = nullptr; // nullptr: the element, or its content
    const dcm::Content *value = nullptr;       // of what is at the place; nullptr where that is a name
};

const dcm::Attribute *attributeOf(const dcmformat::Place &place, std::string_view name)
{
    for (size_t i = 0; i < place.element->attributeCount; i++)
        if (name == place.element->attributes[i].name)
            return &place.element->attributes[i];
    return nullptr;
}

Subject subjectAt(const Cursor &cursor, std::string_view text)
{
    const dcmformat::Place *place = cursor.place();
    if (place == nullptr || cursor.word.begin == cursor.word.end)
        return {};
    switch (cursor.where) {
    case Cursor::Where::tagName:
        return {place};
    case Cursor::Where::endTagName:
        return cut(text, cursor.word) == cursor.around.back().name ? Subject{place} : Subject();
    case Cursor::Where::content:
        return place->element->content.kind != dcm::Kind::none ? Subject{place, nullptr, &place->element->content}
                                                               : Subject();
    case Cursor::Where::attributeName:
        if (const dcm::Attribute *attribute = attributeOf(*place, cut(text, cursor.word)))
            return {place, attribute};
        return {};
    case Cursor::Where::attributeValue:
        if (const dcm::Attribute *attribute = attributeOf(*place, cursor.attribute))
            return {place, attribute, &attribute->content};
        return {};
    case Cursor::Where::elsewhere:
        break;
    }
    return {};
}

// "`card 0x21` in line 12" for each thing that the value names.
std::string namedAt(const OpenDocument &document, size_t offset)
{
    const std::optional<LastTree> last = document.lastTree();
    const std::optional<size_t> then = last ? last->then(offset) : std::nullopt;
    if (!then)
        return "";
    std::string named;
    for (const dcmtool::Node target : targetsAt(last->file(), *then)) {
        named += (named.empty() ? "" : ", ") + codeOf(dcmtool::pathOf(target));
        if (const auto span = last->now(last->file().nameSpan(target)))
            named += " in line " + std::to_string(document.lines().positionOf(span->begin).line + 1);
    }
    return named;
}

void addReading(Document &entry, const OpenDocument &document, size_t offset, const dcm::Content &content, Span word)
{
    const std::string_view written = cut(document.text(), word);
    // What a reference to an entity or a character adds is not written here.
    const bool isPlain = written.find_first_of("&<") == std::string_view::npos;
    const std::string reading = isPlain ? readingOf(content, std::string(written)) : "";
    const auto behindHeading = entry.begin() + (entry.empty() ? 0 : 1);
    std::string text;
    if (!reading.empty())
        text = codeOf(written) + " is read as: " + reading + ".";
    if (const std::string named = namedAt(document, offset); !named.empty())
        text += (text.empty() ? "" : " ") + std::string("It names ") + named + ".";
    if (!text.empty())
        entry.insert(behindHeading, {Block::Kind::paragraph, text});
}

} // namespace

Json hoverAt(const OpenDocument &document, size_t offset, const Help &help, const Client &client)
{
    const Cursor cursor = cursorAt(help.tree(), document.text(), offset);
    const Subject subject = subjectAt(cursor, document.text());
    if (subject.place == nullptr)
        return nullptr;
    Document entry = help.entryOf(*subject.place, subject.attribute);
    if (subject.value != nullptr)
        addReading(entry, document, offset, *subject.value, cursor.word);
    return {{"contents", textOf(std::move(entry), client.hover)}, {"range", rangeOf(document, cursor.word)}};
}

} // namespace dcmlsp
