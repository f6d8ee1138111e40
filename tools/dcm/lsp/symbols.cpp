// The outline of a document, also of one that is not well-formed.
#include "tools/dcm/description/texts.h"
#include "tools/dcm/lsp/cursor.h"
#include "tools/dcm/lsp/features.h"

#include <algorithm>

namespace dcmlsp {

using dcmtool::cut;
using dcmtool::Markup;
using dcmtool::MarkupKind;
using dcmtool::Span;

namespace {

constexpr size_t kMostSymbols = size_t{20} * 1000;
constexpr int kClass = 5;
constexpr int kObject = 19;

class Outline {
public:
    Outline(const OpenDocument &document, const Help &help, const Client &client)
        : document_(document), text_(document.text()), client_(client), open_(help.tree())
    {
    }

    Json symbols()
    {
        const std::vector<Markup> pieces = dcmtool::markupOf(text_);
        for (size_t i = 0; i < pieces.size() && count_ < kMostSymbols; i++)
            take(pieces[i]);
        end(open_.elements().size(), text_.size());
        return std::move(top_);
    }

private:
    // An element around, which is shown when it has an entry of its own in the reference.
    struct Shown {
        Json symbol; // null where it is not
        Span name;
    };

    void take(const Markup &piece)
    {
        if (piece.kind == MarkupKind::startTag || piece.kind == MarkupKind::emptyTag) {
            begin(piece.span.begin);
            if (piece.kind == MarkupKind::emptyTag)
                end(open_.leave(open_.elements().back().name), piece.span.end);
        } else if (piece.kind == MarkupKind::endTag) {
            end(open_.leave(cut(text_, tagName(text_, piece.span.begin))), piece.span.end);
        }
    }

    void begin(size_t at)
    {
        const Span name = tagName(text_, at);
        open_.enter(cut(text_, name), at);
        Shown shown = {nullptr, name};
        const dcmformat::Place *place = open_.elements().back().place;
        if (place != nullptr && place->isSection() && count_ < kMostSymbols) {
            shown.symbol = {{"name", titleOf(*place, at)}, {"kind", open_.elements().size() == 2 ? kClass : kObject}};
            if (const std::string detail = dcmtool::shortened(writtenValue(text_, at, "name")); !detail.empty())
                shown.symbol["detail"] = detail;
            count_++;
        }
        shown_.push_back(std::move(shown));
    }

    // "card 0x21": with the first of its attributes, which is an id mostly.
    std::string titleOf(const dcmformat::Place &place, size_t at) const
    {
        std::string title = place.name;
        if (place.element->attributeCount > 0)
            if (const std::string_view id = writtenValue(text_, at, place.element->attributes[0].name); !id.empty())
                title += " " + dcmtool::shortened(id);
        return title;
    }

    // Ends so many elements; a '<' of the tag is in front of its name.
    void end(size_t count, size_t at)
    {
        for (; count > 0; count--) {
            Shown shown = std::move(shown_.back());
            shown_.pop_back();
            if (!shown.symbol.is_null())
                close(std::move(shown.symbol), shown.name, at);
        }
    }

    void close(Json symbol, Span name, size_t at)
    {
        const Span whole = {name.begin - 1, std::max(at, name.end)};
        if (!client_.hasNestedSymbols) {
            symbol["location"] = {{"uri", document_.uri()}, {"range", rangeOf(document_, whole)}};
            symbol.erase("detail");
            top_.push_back(std::move(symbol));
            return;
        }
        symbol["range"] = rangeOf(document_, whole);
        symbol["selectionRange"] = rangeOf(document_, name);
        const auto parent =
            std::find_if(shown_.rbegin(), shown_.rend(), [](const Shown &shown) { return !shown.symbol.is_null(); });
        (parent != shown_.rend() ? parent->symbol["children"] : top_).push_back(std::move(symbol));
    }

    const OpenDocument &document_;
    std::string_view text_;
    const Client &client_;
    OpenElements open_;
    std::vector<Shown> shown_; // for each element around
    Json top_ = Json::array();
    size_t count_ = 0;
};

} // namespace

Json symbolsIn(const OpenDocument &document, const Help &help, const Client &client)
{
    return Outline(document, help, client).symbols();
}

} // namespace dcmlsp
