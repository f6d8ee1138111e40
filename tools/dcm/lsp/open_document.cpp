#include "tools/dcm/lsp/open_document.h"

#include "tools/dcm/check/engine.h"

#include <algorithm>
#include <charconv>

namespace dcmlsp {

using dcmtool::DescriptionFile;
using dcmtool::Span;

// ---- The last tree --------------------------------------------------------------------------------------------------

LastTree::LastTree(std::shared_ptr<const DescriptionFile> file, std::string_view now)
    : file_(std::move(file)), size_(now.size())
{
    const std::string_view then = file_->text();
    const size_t most = std::min(then.size(), now.size());
    while (before_ < most && then[before_] == now[before_])
        before_++;
    while (behind_ < most - before_ && then[then.size() - 1 - behind_] == now[now.size() - 1 - behind_])
        behind_++;
}

std::optional<size_t> LastTree::then(size_t offset) const
{
    if (offset <= before_)
        return offset;
    if (offset >= size_ - behind_)
        return offset + file_->text().size() - size_;
    return std::nullopt;
}

std::optional<Span> LastTree::now(Span span) const
{
    if (span.end <= before_)
        return span;
    const size_t size = file_->text().size();
    if (span.begin >= size - behind_)
        return Span{span.begin + size_ - size, span.end + size_ - size};
    return std::nullopt;
}

// ---- Documents ------------------------------------------------------------------------------------------------------

namespace {

// "encoding='...'" in an XML declaration; empty where it names none.
Span encodingIn(std::string_view text)
{
    const std::string_view declaration = text.substr(0, text.find("?>"));
    const size_t name = declaration.substr(0, 5) == "<?xml" ? declaration.find("encoding") : std::string_view::npos;
    const size_t open = name != std::string_view::npos ? declaration.find_first_of("\"'", name) : name;
    const size_t close = open != std::string_view::npos ? declaration.find(declaration[open], open + 1) : open;
    return close != std::string_view::npos ? Span{name, close + 1} : Span();
}

// An editor sends UTF-8, whatever the file is encoded in: the name of the encoding is replaced by blanks.
std::shared_ptr<const DescriptionFile> parse(const std::string &name, const std::string &text)
{
    std::shared_ptr<const DescriptionFile> file = DescriptionFile::parse(name, text);
    const Span encoding = encodingIn(text);
    const std::string_view written = dcmtool::cut(text, encoding);
    const bool isUtf16 =
        written.find("UTF-16") != std::string_view::npos || written.find("utf-16") != std::string_view::npos;
    if (file->foreignEncoding().empty() && !isUtf16)
        return file;
    std::string blanked = text;
    blanked.replace(encoding.begin, written.size(), written.size(), ' ');
    return DescriptionFile::parse(name, blanked);
}

} // namespace

OpenDocument::OpenDocument(std::string uri, std::string text, std::optional<int64_t> version, Units units)
    : uri_(std::move(uri)), text_(std::move(text)), version_(version), units_(units)
{
}

void OpenDocument::forgetParsed()
{
    lines_.reset();
    file_.reset();
    findings_.reset();
}

void OpenDocument::replace(std::string_view text)
{
    text_ = text;
    forgetParsed();
}

void OpenDocument::replace(Position begin, Position end, std::string_view text)
{
    const size_t first = lines().offsetOf(begin);
    const size_t last = std::max(first, lines().offsetOf(end));
    text_.replace(first, last - first, text);
    forgetParsed();
}

const Lines &OpenDocument::lines() const
{
    if (!lines_)
        lines_.emplace(text_, units_);
    return *lines_;
}

const DescriptionFile &OpenDocument::file() const
{
    if (file_ == nullptr) {
        file_ = parse(fileNameOf(uri_), text_);
        if (file_->state() == DescriptionFile::State::parsed)
            lastWellFormed_ = file_;
    }
    return *file_;
}

const std::vector<dcmtool::Finding> &OpenDocument::findings() const
{
    if (!findings_)
        findings_ = dcmtool::checkFile(file());
    return *findings_;
}

std::optional<LastTree> OpenDocument::lastTree() const
{
    static_cast<void>(file());
    return lastWellFormed_ != nullptr ? std::optional<LastTree>(std::in_place, lastWellFormed_, text_) : std::nullopt;
}

std::string fileNameOf(const std::string &uri)
{
    static constexpr std::string_view kScheme = "file://";
    if (uri.compare(0, kScheme.size(), kScheme) != 0)
        return uri;
    std::string name;
    for (size_t i = kScheme.size(); i < uri.size(); i++) {
        unsigned byte = 0;
        const char *digits = uri.data() + i + 1;
        if (uri[i] == '%' && i + 2 < uri.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            name += static_cast<char>(byte);
            i += 2;
        } else {
            name += uri[i];
        }
    }
    return name;
}

} // namespace dcmlsp
