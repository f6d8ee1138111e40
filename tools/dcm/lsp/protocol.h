// Messages of the language server protocol: JSON-RPC 2.0, each behind a header with its length.
#ifndef DCM_TOOLS_LSP_PROTOCOL_H
#define DCM_TOOLS_LSP_PROTOCOL_H

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dcmlsp {

// Not the ordered one: a message may be an object of a million members.
using Json = nlohmann::json;

// A description of the longest size, each character of which may take six as JSON.
constexpr size_t kMostMessage = size_t{6} * (size_t{64} << 20) + 4096;

enum class ErrorCode : int {
    parseError = -32700,
    invalidRequest = -32600,
    methodNotFound = -32601,
    invalidParams = -32602,
    serverNotInitialized = -32002,
    requestFailed = -32803
};

// What a request is answered with instead of a result.
struct RequestError : std::runtime_error {
    RequestError(ErrorCode errorCode, const std::string &text) : std::runtime_error(text), code(errorCode) {}
    ErrorCode code;
};

// Cuts what is read into messages. Whatever is read, it takes no more memory than a message may have.
class MessageReader {
public:
    struct Received {
        std::string content;
        const char *fault; // why there is no content; nullptr when there is
    };

    explicit MessageReader(size_t mostMessage = kMostMessage) : mostMessage_(mostMessage) {}

    void add(std::string_view bytes);
    // The next message that is complete.
    std::optional<Received> next();

private:
    std::optional<Received> takeHeaderLine(std::string_view line);

    size_t mostMessage_;
    std::string buffer_;
    size_t done_ = 0; // of the buffer
    std::optional<size_t> length_;
    size_t skipped_ = 0; // bytes of a message that is too long, still to come
    bool isInBody_ = false;
};

// The parsed content; discarded when it is not JSON. What is nested too deeply for a message is left out.
Json parsed(const std::string &content);

// A message as it is written.
std::string framed(const Json &message);

} // namespace dcmlsp

#endif
