#include "tools/dcm/description/led_names.h"
#include "tools/dcm/lsp/cursor.h"
#include "tools/dcm/lsp/features.h"
#include "tools/format/values.h"

#include <algorithm>

namespace dcmlsp {

using dcmformat::Place;
using dcmtool::cut;

namespace {

enum class ItemKind : int { attribute = 10, word = 20, element = 22 };

class Completion {
public:
    Completion(const OpenDocument &document, const Cursor &cursor, bool isByItself, const Help &help,
               const Client &client)
        : document_(document), text_(document.text()), cursor_(cursor), isByItself_(isByItself), help_(help),
          client_(client)
    {
    }

    Json items()
    {
        switch (cursor_.where) {
        case Cursor::Where::content:
            addContent();
            break;
        case Cursor::Where::tagName:
            addElements(cursor_.around.size() - 2, cursor_.isTagEnded ? Written::name : Written::tag);
            break;
        case Cursor::Where::attributeName:
            addAttributes();
            break;
        case Cursor::Where::attributeValue:
            addValues();
            break;
        case Cursor::Where::endTagName:
            addEndTag();
            break;
        case Cursor::Where::elsewhere:
            break;
        }
        return std::move(items_);
    }

private:
    // What of an element takes the place of the word at the cursor.
    enum class Written : uint8_t { name, tag, whole };

    void add(ItemKind kind, const std::string &label, const std::string &inserted, bool isSnippet,
             const dcmformat::Summary &summary, dcmformat::Document entry)
    {
        Json item = {{"label", label},
                     {"kind", static_cast<int>(kind)},
                     {"textEdit", {{"range", range()}, {"newText", inserted}}},
                     {"filterText", label}};
        if (!summary.value.empty())
            item["detail"] = summary.value;
        if (!entry.empty())
            item["documentation"] = textOf(std::move(entry), client_.documentation);
        if (isSnippet)
            item["insertTextFormat"] = 2;
        items_.push_back(std::move(item));
    }

    const Json &range()
    {
        if (range_.is_null())
            range_ = rangeOf(document_, cursor_.word);
        return range_;
    }

    // ---- Elements ----

    void addContent()
    {
        const Place *place = cursor_.place();
        const bool isValue = place != nullptr && place->element->content.kind != dcm::Kind::none;
        if (isValue)
            addWords(place->element->content);
        else if (!isByItself_)
            addElements(cursor_.around.size() - 1, Written::whole);
    }

    void addRoots(Written written)
    {
        for (const Place *root : {help_.tree().device.get(), help_.tree().vm.get()})
            addElement(*root, written);
    }

    // The children of an element around; not again those of which there is one at most.
    void addElements(size_t parent, Written written)
    {
        if (parent >= cursor_.around.size())
            return addRoots(written);
        const OpenElement &open = cursor_.around[parent];
        if (open.place == nullptr)
            return;
        for (const auto &child : open.place->children) {
            const bool isThere =
                std::find(open.children.begin(), open.children.end(), child.get()) != open.children.end();
            if (child->element->most != 1 || !isThere)
                addElement(*child, written);
        }
    }

    void addElement(const Place &place, Written written)
    {
        const bool isSnippet = client_.hasSnippets && written != Written::name;
        std::string text = written == Written::whole ? "<" : "";
        text += place.name;
        if (isSnippet)
            text += restOf(place);
        add(ItemKind::element, place.name, text, isSnippet, help_.summaryOf(place), help_.entryOf(place));
    }

    // The rest of an element behind its name, as a snippet: the attributes that it needs, and where to go on.
    static std::string restOf(const Place &place)
    {
        std::string rest;
        size_t stop = 0;
        for (size_t i = 0; i < place.element->attributeCount; i++) {
            const dcm::Attribute &attribute = place.element->attributes[i];
            if (attribute.need == dcm::Need::required)
                rest.append(" ").append(attribute.name).append("=\"$").append(std::to_string(++stop)).append("\"");
        }
        if (place.element->childCount == 0 && place.element->content.kind == dcm::Kind::none)
            return rest + "/>$0";
        return rest + ">$0</" + place.name + ">";
    }

    void addEndTag()
    {
        if (cursor_.around.empty())
            return;
        const OpenElement &open = cursor_.around.back();
        std::string name(open.name);
        dcmformat::Document entry = open.place != nullptr ? help_.entryOf(*open.place) : dcmformat::Document();
        add(ItemKind::element, name, name + (cursor_.isTagEnded ? "" : ">"), false, {}, std::move(entry));
    }

    // ---- Attributes and values ----

    void addAttributes()
    {
        const Place *place = cursor_.place();
        if (place == nullptr)
            return;
        const std::vector<dcmtool::WrittenAttribute> written = attributesOf(text_, cursor_.tag.begin);
        const auto isThere = [&](std::string_view name) {
            return std::any_of(written.begin(), written.end(), [&](const dcmtool::WrittenAttribute &attribute) {
                return cut(text_, attribute.name) == name && attribute.name.begin != cursor_.word.begin;
            });
        };
        const size_t next = dcmtool::skipBlanks(text_, cursor_.word.end);
        const bool hasValue = cursor_.word.begin < cursor_.word.end && text_.substr(next, 1) == "=";
        for (size_t i = 0; i < place->element->attributeCount; i++) {
            const dcm::Attribute &attribute = place->element->attributes[i];
            if (isThere(attribute.name))
                continue;
            std::string text = attribute.name;
            if (!hasValue)
                text += client_.hasSnippets ? "=\"$1\"$0" : "=\"\"";
            add(ItemKind::attribute, attribute.name, text, client_.hasSnippets && !hasValue,
                help_.summaryOf(*place, &attribute), help_.entryOf(*place, &attribute));
        }
    }

    void addValues()
    {
        const Place *place = cursor_.place();
        for (size_t i = 0; place != nullptr && i < place->element->attributeCount; i++)
            if (cursor_.attribute == place->element->attributes[i].name)
                addWords(place->element->attributes[i].content);
    }

    void addWords(const dcm::Content &content)
    {
        if (content.kind == dcm::Kind::keyword)
            addWords(dcmformat::wordsOf(content), content, help_.meaningOf(*content.vocabulary));
        if (content.kind == dcm::Kind::ledState)
            addWords(ledStates(), content, "");
    }

    void addWords(const std::vector<std::string> &words, const dcm::Content &content, const std::string &meaning)
    {
        dcmformat::Document entry;
        if (!meaning.empty())
            entry.push_back({dcmformat::Block::Kind::paragraph, meaning});
        const std::string quote = cursor_.isQuoted ? "" : "\"";
        for (const std::string &word : words)
            add(ItemKind::word, word, std::string(quote).append(word).append(quote), false,
                {"", content.vocabulary != nullptr ? readingOf(content, word) : ""}, entry);
    }

    // The states of the LED that the element around is about; those of all types where it does not say which.
    std::vector<std::string> ledStates() const
    {
        const size_t depth = cursor_.around.size();
        const std::string type = depth >= 2 ? ledTypeOf(cursor_.around[depth - 2]) : "";
        std::vector<std::string> words;
        for (const dcmformat::LedStates &states : dcmformat::ledStates()) {
            if (std::find(states.types.begin(), states.types.end(), type) != states.types.end())
                return states.words;
            for (const std::string &word : states.words)
                if (std::find(words.begin(), words.end(), word) == words.end())
                    words.push_back(word);
        }
        return words;
    }

    // An LED has its type; a map names the LED that shows a state.
    std::string ledTypeOf(const OpenElement &open) const
    {
        if (open.place == nullptr)
            return "";
        std::string type;
        for (size_t i = 0; i < open.place->element->attributeCount; i++) {
            const dcm::Attribute &attribute = open.place->element->attributes[i];
            const std::string value(writtenValue(text_, open.begin, attribute.name));
            if (attribute.content.kind == dcm::Kind::ledName && cursor_.where == Cursor::Where::content)
                return dcmtool::splitName(value.c_str()).type;
            if (attribute.content.kind == dcm::Kind::keyword)
                type = value;
        }
        return type;
    }

    const OpenDocument &document_;
    std::string_view text_;
    const Cursor &cursor_;
    bool isByItself_;
    const Help &help_;
    const Client &client_;
    Json items_ = Json::array();
    Json range_;
};

} // namespace

Json completionsAt(const OpenDocument &document, size_t offset, bool isByItself, const Help &help, const Client &client)
{
    const Cursor cursor = cursorAt(help.tree(), document.text(), offset);
    return Completion(document, cursor, isByItself, help, client).items();
}

} // namespace dcmlsp
