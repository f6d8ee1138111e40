// A description that is open in an editor.
#ifndef DCM_TOOLS_LSP_OPEN_DOCUMENT_H
#define DCM_TOOLS_LSP_OPEN_DOCUMENT_H

#include "tools/dcm/check/findings.h"
#include "tools/dcm/description/description_file.h"
#include "tools/dcm/lsp/lines.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dcmlsp {

// The last well-formed state of a text, and how its places are related to those of the text as it is now: what is
// before and behind the bytes that differ is the same.
//
//     then  |  same  |  differed  |  same  |
//     now   |  same  |  differs      |  same  |
class LastTree {
public:
    LastTree(std::shared_ptr<const dcmtool::DescriptionFile> file, std::string_view now);

    const dcmtool::DescriptionFile &file() const { return *file_; }
    // Places of the one text in the other; none of what differs.
    std::optional<size_t> then(size_t offset) const;
    std::optional<dcmtool::Span> now(dcmtool::Span span) const;

private:
    std::shared_ptr<const dcmtool::DescriptionFile> file_;
    size_t before_ = 0; // the length of what is the same
    size_t behind_ = 0;
    size_t size_; // of the text as it is now
};

class OpenDocument {
public:
    OpenDocument(std::string uri, std::string text, std::optional<int64_t> version, Units units);

    const std::string &uri() const { return uri_; }
    std::optional<int64_t> version() const { return version_; }
    const std::string &text() const { return text_; }

    // Without a begin and an end, the whole text is replaced.
    void replace(std::string_view text);
    void replace(Position begin, Position end, std::string_view text);
    void setVersion(std::optional<int64_t> version) { version_ = version; }

    const Lines &lines() const;
    // The text as it is now, parsed and checked when first asked for.
    const dcmtool::DescriptionFile &file() const;
    const std::vector<dcmtool::Finding> &findings() const;
    // None until the text has been well-formed once.
    std::optional<LastTree> lastTree() const;

private:
    void forgetParsed();

    std::string uri_;
    std::string text_;
    std::optional<int64_t> version_;
    Units units_;
    mutable std::optional<Lines> lines_;
    mutable std::shared_ptr<const dcmtool::DescriptionFile> file_;
    mutable std::shared_ptr<const dcmtool::DescriptionFile> lastWellFormed_;
    mutable std::optional<std::vector<dcmtool::Finding>> findings_;
};

// "/folder/a b.xml" of "file:///folder/a%20b.xml"; any other URI as it is.
std::string fileNameOf(const std::string &uri);

} // namespace dcmlsp

#endif
