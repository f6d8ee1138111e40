// The language server: messages in, messages out.
#ifndef DCM_TOOLS_LSP_SERVER_H
#define DCM_TOOLS_LSP_SERVER_H

#include "tools/dcm/lsp/features.h"
#include "tools/dcm/lsp/protocol.h"

#include <functional>
#include <map>
#include <set>
#include <string>

namespace dcmlsp {

class Server {
public:
    using Send = std::function<void(const Json &message)>;

    // The addresses of the pages of rules begin with `pages`; empty where there are none.
    Server(Send send, std::string version, std::string pages)
        : send_(std::move(send)), version_(std::move(version)), pages_(std::move(pages))
    {
    }

    void receive(const MessageReader::Received &received);
    // Sends what is found in the documents that have changed: to be called when no message waits, so that a document is
    // not checked for each letter of a word.
    void publish();

    bool isRunning() const { return state_ != State::ended; }
    // Whether it has been shut down as the protocol wants it.
    bool hasShutDown() const { return hasShutDown_; }

private:
    enum class State : uint8_t { new_, running, shutDown, ended };

    void take(const Json &message);
    void answer(const Json &id, const std::string &method, const Json &params);
    void notice(const std::string &method, const Json &params);
    Json resultOf(const std::string &method, const Json &params);
    void sendError(const Json &id, ErrorCode code, const std::string &text);

    Json initialize(const Json &params);
    void open(const Json &params);
    void change(const Json &params);
    void close(const Json &params);
    void keepWithinLimit(const std::string &uri);
    const OpenDocument &documentOf(const Json &params) const;
    Json codeActions(const Json &params) const;
    Json completion(const Json &params) const;

    Send send_;
    std::string version_;
    std::string pages_;
    State state_ = State::new_;
    bool hasShutDown_ = false;
    Client client_;
    const Help &help_ = theHelp();
    std::map<std::string, OpenDocument> documents_;
    std::set<std::string> changed_; // whose findings are to be published
};

} // namespace dcmlsp

#endif
