#include "tools/dcm/lsp/cursor.h"

#include <algorithm>

namespace dcmlsp {

using dcmformat::Place;
using dcmtool::cut;
using dcmtool::Markup;
using dcmtool::MarkupKind;
using dcmtool::Span;

namespace {

constexpr size_t kDeepestElement = 32; // elements in which the one of an end tag is looked for; descriptions are 7 deep

std::string_view localName(std::string_view name)
{
    return name.substr(name.find(':') + 1);
}

const Place *childOf(const Place &place, std::string_view name)
{
    for (const auto &child : place.children)
        if (child->name == name)
            return child.get();
    return nullptr;
}

const Place *rootOf(const dcmformat::Tree &tree, std::string_view name)
{
    for (const Place *root : {tree.device.get(), tree.vm.get()})
        if (root->name == name)
            return root;
    return nullptr;
}

// The text up to the next tag: nothing in a tag is a '<', however unfinished it is.
std::string_view upToNextTag(std::string_view text, size_t begin)
{
    return text.substr(0, text.find('<', begin + 1));
}

} // namespace

// ---- Elements -------------------------------------------------------------------------------------------------------

void OpenElements::enter(std::string_view name, size_t begin, bool isCounted)
{
    const std::string_view local = localName(name);
    const Place *place = nullptr;
    if (elements_.empty()) {
        place = rootOf(tree_, local);
    } else if (OpenElement &parent = elements_.back(); parent.place != nullptr) {
        place = childOf(*parent.place, local);
        const auto &known = parent.children;
        if (isCounted && place != nullptr && std::find(known.begin(), known.end(), place) == known.end())
            parent.children.push_back(place);
    }
    elements_.push_back({name, place, begin, {}});
}

size_t OpenElements::leave(std::string_view name)
{
    const size_t most = std::min(kDeepestElement, elements_.size());
    for (size_t count = 1; count <= most; count++)
        if (elements_[elements_.size() - count].name == name) {
            elements_.erase(elements_.end() - static_cast<std::ptrdiff_t>(count), elements_.end());
            return count;
        }
    return 0;
}

Span tagName(std::string_view text, size_t begin)
{
    const size_t first = begin + (text.substr(begin, 2) == "</" ? 2 : 1);
    return {std::min(first, text.size()), dcmtool::nameEnd(upToNextTag(text, begin), first)};
}

std::vector<dcmtool::WrittenAttribute> attributesOf(std::string_view text, size_t begin)
{
    const std::string_view tag = upToNextTag(text, begin);
    std::vector<dcmtool::WrittenAttribute> attributes;
    size_t at = tagName(text, begin).end;
    dcmtool::WrittenAttribute attribute;
    while (dcmtool::nextAttribute(tag, at, attribute))
        attributes.push_back(attribute);
    return attributes;
}

std::string_view writtenValue(std::string_view text, size_t begin, std::string_view name)
{
    for (const dcmtool::WrittenAttribute &attribute : attributesOf(text, begin))
        if (cut(text, attribute.name) == name)
            return cut(text, attribute.value);
    return {};
}

// ---- The cursor -----------------------------------------------------------------------------------------------------

namespace {

class Finder {
public:
    Finder(std::string_view text, size_t at, Cursor &cursor)
        : text_(text), at_(at), before_(text.substr(0, at)), cursor_(cursor)
    {
    }

    void inEndTag(size_t begin)
    {
        cursor_.where = before_.back() == '>' ? Cursor::Where::content : Cursor::Where::endTagName;
        cursor_.word = tagName(text_, begin);
        setTag(begin);
        if (cursor_.where == Cursor::Where::content)
            inText(at_);
    }

    // Whether the place is in the tag, not behind it.
    bool inStartTag(size_t begin)
    {
        setTag(begin);
        size_t i = dcmtool::nameEnd(before_, begin + 1);
        if (i == at_) {
            found(Cursor::Where::tagName, tagName(text_, begin));
            return true;
        }
        while (i < at_ && before_[i] != '>')
            i = afterPart(i);
        if (i < at_)
            return false;
        if (cursor_.where == Cursor::Where::elsewhere && dcmtool::isBlank(before_.back()))
            found(Cursor::Where::attributeName, {at_, at_});
        return true;
    }

    // In the text, parts of which may be before the place, that begins at `begin`.
    void inText(size_t begin)
    {
        const size_t end = std::min(text_.size(), text_.find('<', at_));
        Span word = {std::min(dcmtool::skipBlanks(text_, begin), end), end};
        while (word.end > word.begin && dcmtool::isBlank(text_[word.end - 1]))
            word.end--;
        const bool isAtWord = word.begin <= at_ && at_ <= word.end;
        found(Cursor::Where::content, isAtWord ? word : Span{at_, at_});
    }

private:
    void found(Cursor::Where where, Span word)
    {
        cursor_.where = where;
        cursor_.word = word;
    }

    void setTag(size_t begin)
    {
        const size_t end = dcmtool::tagEnd(upToNextTag(text_, begin), begin);
        cursor_.tag = {begin, end};
        cursor_.isTagEnded = text_[end - 1] == '>';
    }

    // Goes behind blanks, a "/" or an attribute that begins at `i`; at_ where that is not behind it.
    size_t afterPart(size_t i)
    {
        i = dcmtool::skipBlanks(before_, i);
        if (i == at_ || before_[i] == '>')
            return i;
        const size_t nameEnd = dcmtool::nameEnd(before_, i);
        if (nameEnd == at_) {
            found(Cursor::Where::attributeName, {i, dcmtool::nameEnd(upToNextTag(text_, cursor_.tag.begin), i)});
            return at_;
        }
        // Where a name is missing, and behind a "/".
        if (nameEnd == i)
            return i + 1;
        const size_t equals = dcmtool::skipBlanks(before_, nameEnd);
        if (equals == at_ || before_[equals] != '=')
            return equals;
        cursor_.attribute = cut(before_, {i, nameEnd});
        return afterValue(dcmtool::skipBlanks(before_, equals + 1));
    }

    size_t afterValue(size_t i)
    {
        const bool isQuoted = i < at_ && (before_[i] == '"' || before_[i] == '\'');
        if (!isQuoted) {
            const size_t end = dcmtool::nameEnd(before_, i);
            if (end == at_) {
                found(Cursor::Where::attributeValue, {i, dcmtool::nameEnd(upToNextTag(text_, cursor_.tag.begin), i)});
                cursor_.isQuoted = false;
            }
            return end;
        }
        const size_t close = before_.find(before_[i], i + 1);
        if (close != std::string_view::npos)
            return close + 1;
        const size_t end = text_.find_first_of(before_[i] == '"' ? "\"<\n" : "'<\n", at_);
        const bool isClosed = end != std::string_view::npos && text_[end] == before_[i];
        found(Cursor::Where::attributeValue, {i + 1, isClosed ? end : at_});
        return at_;
    }

    std::string_view text_;
    size_t at_;
    std::string_view before_;
    Cursor &cursor_;
};

bool isFinished(std::string_view piece, MarkupKind kind)
{
    const auto endsWith = [&](std::string_view end, size_t least) {
        return piece.size() >= least && piece.substr(piece.size() - end.size()) == end;
    };
    switch (kind) {
    case MarkupKind::comment:
        return endsWith("-->", 7);
    case MarkupKind::cdata:
        return false; // what follows is not a word of the format either
    case MarkupKind::instruction:
        return endsWith("?>", 4);
    default:
        return endsWith(">", 1);
    }
}

void take(const Markup &piece, std::string_view text, OpenElements &open)
{
    if (piece.kind == MarkupKind::startTag)
        open.enter(cut(text, tagName(text, piece.span.begin)), piece.span.begin);
    else if (piece.kind == MarkupKind::endTag)
        open.leave(cut(text, tagName(text, piece.span.begin)));
}

} // namespace

Cursor cursorAt(const dcmformat::Tree &tree, std::string_view text, size_t at)
{
    Cursor cursor;
    Finder finder(text, at, cursor);
    OpenElements open(tree);
    const std::vector<Markup> pieces = dcmtool::markupOf(text.substr(0, at));
    for (size_t i = 0; i + 1 < pieces.size(); i++)
        take(pieces[i], text, open);
    const Markup last = pieces.empty() ? Markup{MarkupKind::text, {0, 0}, 0} : pieces.back();
    const std::string_view piece = cut(text, last.span);
    if (last.kind == MarkupKind::text || last.kind == MarkupKind::byteOrderMark) {
        finder.inText(last.span.begin);
    } else if (last.kind == MarkupKind::endTag) {
        finder.inEndTag(last.span.begin);
        if (cursor.where == Cursor::Where::content)
            take(last, text, open);
    } else if (last.kind == MarkupKind::startTag || last.kind == MarkupKind::emptyTag) {
        // The element of the tag at the place is not among the children that its parent has already.
        const bool isInside = finder.inStartTag(last.span.begin);
        if (!isInside)
            finder.inText(at);
        if (isInside || last.kind == MarkupKind::startTag)
            open.enter(cut(text, tagName(text, last.span.begin)), last.span.begin, !isInside);
    } else if (isFinished(piece, last.kind)) {
        finder.inText(at);
    }
    cursor.around = open.elements();
    return cursor;
}

} // namespace dcmlsp
