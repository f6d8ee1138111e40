#include "tools/dcm/lsp/protocol.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace dcmlsp {

namespace {

constexpr size_t kLongestLine = 1024; // of a header
constexpr int kDeepestMessage = 64;   // no message is nested more deeply

constexpr char kNoLength[] = "the header has no valid Content-Length";
constexpr char kTooLong[] = "the message is too long";

std::string lowered(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return lower;
}

// The length that a line of a header gives. Behind a message without a valid header, the line begins with the rest of
// that message.
std::optional<size_t> lengthIn(std::string_view line)
{
    static constexpr std::string_view kName = "content-length:";
    const std::string lower = lowered(line);
    const size_t name = lower.rfind(kName);
    if (name == std::string::npos)
        return std::nullopt;
    const size_t first = lower.find_first_not_of(" \t", name + kName.size());
    const size_t last = lower.find_last_not_of(" \t\r");
    if (first == std::string::npos || last < first)
        return std::nullopt;
    size_t length = 0;
    const char *end = lower.data() + last + 1;
    const auto [read, error] = std::from_chars(lower.data() + first, end, length);
    return error == std::errc() && read == end ? std::optional(length) : std::nullopt;
}

} // namespace

void MessageReader::add(std::string_view bytes)
{
    const size_t skipped = std::min(skipped_, bytes.size());
    skipped_ -= skipped;
    buffer_.append(bytes.substr(skipped));
}

std::optional<MessageReader::Received> MessageReader::next()
{
    while (!isInBody_) {
        const size_t end = buffer_.find('\n', done_);
        if (end == std::string::npos) {
            // The end of a long line is enough to find the header behind it.
            if (buffer_.size() - done_ > kLongestLine)
                done_ = buffer_.size() - kLongestLine;
            buffer_.erase(0, done_);
            done_ = 0;
            return std::nullopt;
        }
        const size_t begin = std::max(done_, end > kLongestLine ? end - kLongestLine : 0);
        done_ = end + 1;
        if (auto fault = takeHeaderLine(std::string_view(buffer_).substr(begin, end - begin)))
            return fault;
    }
    if (buffer_.size() - done_ < *length_)
        return std::nullopt;
    Received message = {buffer_.substr(done_, *length_), nullptr};
    buffer_.erase(0, done_ + *length_);
    done_ = 0;
    length_.reset();
    isInBody_ = false;
    return message;
}

std::optional<MessageReader::Received> MessageReader::takeHeaderLine(std::string_view line)
{
    if (!line.empty() && line != "\r") {
        if (const auto length = lengthIn(line))
            length_ = length;
        return std::nullopt;
    }
    if (!length_)
        return Received{"", kNoLength};
    if (*length_ <= mostMessage_) {
        isInBody_ = true;
        return std::nullopt;
    }
    const size_t here = std::min(*length_, buffer_.size() - done_);
    skipped_ = *length_ - here;
    done_ += here;
    length_.reset();
    return Received{"", kTooLong};
}

Json parsed(const std::string &content)
{
    const auto isShallow = [](int depth, Json::parse_event_t, const Json &) { return depth < kDeepestMessage; };
    return Json::parse(content, isShallow, false);
}

std::string framed(const Json &message)
{
    const std::string content = message.dump(-1, ' ', false, Json::error_handler_t::replace);
    return "Content-Length: " + std::to_string(content.size()) + "\r\n\r\n" + content;
}

} // namespace dcmlsp
