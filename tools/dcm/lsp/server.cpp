#include "tools/dcm/lsp/server.h"

#include "tools/dcm/description/input_file.h"

#include <algorithm>

namespace dcmlsp {

namespace {

constexpr size_t kMostBytes = dcmtool::kMostMebibytes << 20;

bool isId(const Json &id)
{
    return id.is_number_integer() || id.is_string();
}

// The member of a message; null where there is none.
const Json &memberOf(const Json &object, const char *name)
{
    static const Json none;
    const auto member = object.is_object() ? object.find(name) : object.end();
    return member != object.end() ? *member : none;
}

// A member of a member.
const Json &at(const Json &object, std::initializer_list<const char *> names)
{
    const Json *found = &object;
    for (const char *name : names)
        found = &memberOf(*found, name);
    return *found;
}

bool isTrue(const Json &json)
{
    return json.is_boolean() && json.get<bool>();
}

std::string textIn(const Json &object, const char *name)
{
    const Json &member = memberOf(object, name);
    if (!member.is_string())
        throw RequestError(ErrorCode::invalidParams, std::string("\"") + name + "\" is not a string");
    return member.get<std::string>();
}

size_t numberIn(const Json &object, const char *name)
{
    const Json &member = memberOf(object, name);
    if (!member.is_number_unsigned())
        throw RequestError(ErrorCode::invalidParams, std::string("\"") + name + "\" is not a number from 0");
    return member.get<size_t>();
}

Position positionIn(const Json &position)
{
    return {numberIn(position, "line"), numberIn(position, "character")};
}

std::optional<int64_t> versionIn(const Json &document)
{
    const Json &version = memberOf(document, "version");
    return version.is_number_integer() ? std::optional(version.get<int64_t>()) : std::nullopt;
}

std::string uriIn(const Json &params)
{
    return textIn(memberOf(params, "textDocument"), "uri");
}

bool contains(const Json &list, const std::string &wanted)
{
    return list.is_array() && std::find(list.begin(), list.end(), Json(wanted)) != list.end();
}

Client clientOf(const Json &capabilities)
{
    const Json &document = memberOf(capabilities, "textDocument");
    const auto kindOf = [](const Json &formats) {
        return contains(formats, "markdown") ? TextKind::markdown : TextKind::plain;
    };
    Client client;
    client.units = contains(at(capabilities, {"general", "positionEncodings"}), "utf-8") ? Units::utf8 : Units::utf16;
    client.hover = kindOf(at(document, {"hover", "contentFormat"}));
    client.documentation = kindOf(at(document, {"completion", "completionItem", "documentationFormat"}));
    client.hasSnippets = isTrue(at(document, {"completion", "completionItem", "snippetSupport"}));
    client.hasRelatedInformation = isTrue(at(document, {"publishDiagnostics", "relatedInformation"}));
    client.hasCodeDescription = isTrue(at(document, {"publishDiagnostics", "codeDescriptionSupport"}));
    client.hasDocumentChanges = isTrue(at(capabilities, {"workspace", "workspaceEdit", "documentChanges"}));
    client.hasNestedSymbols = isTrue(at(document, {"documentSymbol", "hierarchicalDocumentSymbolSupport"}));
    return client;
}

} // namespace

// ---- Messages -------------------------------------------------------------------------------------------------------

void Server::receive(const MessageReader::Received &received)
{
    if (received.fault != nullptr)
        return sendError(nullptr, ErrorCode::parseError, received.fault);
    const Json message = parsed(received.content);
    if (message.is_discarded())
        return sendError(nullptr, ErrorCode::parseError, "the message is not JSON in UTF-8");
    take(message);
}

void Server::take(const Json &message)
{
    const Json &id = memberOf(message, "id");
    const Json &method = memberOf(message, "method");
    if (!method.is_string()) {
        // The answer to a request, of which the server makes none, is ignored.
        const bool isAnswer = isId(id) && (message.contains("result") || message.contains("error"));
        if (!isAnswer)
            sendError(isId(id) ? id : Json(), ErrorCode::invalidRequest, "the message has no method");
        return;
    }
    if (isId(id))
        return answer(id, method.get<std::string>(), memberOf(message, "params"));
    if (message.contains("id"))
        return sendError(nullptr, ErrorCode::invalidRequest, "the id is neither a number nor a string");
    notice(method.get<std::string>(), memberOf(message, "params"));
}

void Server::sendError(const Json &id, ErrorCode code, const std::string &text)
{
    send_({{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", static_cast<int>(code)}, {"message", text}}}});
}

void Server::answer(const Json &id, const std::string &method, const Json &params)
{
    try {
        const Json result = resultOf(method, params);
        send_({{"jsonrpc", "2.0"}, {"id", id}, {"result", result}});
    } catch (const RequestError &error) {
        sendError(id, error.code, error.what());
    }
}

Json Server::resultOf(const std::string &method, const Json &params)
{
    if (state_ == State::new_ && method != "initialize")
        throw RequestError(ErrorCode::serverNotInitialized, "the first request is \"initialize\"");
    if (state_ == State::shutDown || (state_ != State::new_ && method == "initialize"))
        throw RequestError(ErrorCode::invalidRequest, "\"" + method + "\" is not expected now");
    const auto offsetIn = [&](const OpenDocument &document) {
        return document.lines().offsetOf(positionIn(memberOf(params, "position")));
    };
    if (method == "initialize")
        return initialize(params);
    if (method == "shutdown") {
        state_ = State::shutDown;
        return nullptr;
    }
    if (method == "textDocument/completion")
        return completion(params);
    if (method == "textDocument/codeAction")
        return codeActions(params);
    if (method == "textDocument/hover") {
        const OpenDocument &document = documentOf(params);
        return hoverAt(document, offsetIn(document), help_, client_);
    }
    if (method == "textDocument/definition") {
        const OpenDocument &document = documentOf(params);
        return definitionsAt(document, offsetIn(document));
    }
    if (method == "textDocument/references") {
        const OpenDocument &document = documentOf(params);
        return referencesAt(document, offsetIn(document), isTrue(at(params, {"context", "includeDeclaration"})));
    }
    if (method == "textDocument/documentSymbol")
        return symbolsIn(documentOf(params), help_, client_);
    if (method == "textDocument/formatting")
        return formattingEdits(documentOf(params));
    throw RequestError(ErrorCode::methodNotFound, "there is no method \"" + method + "\"");
}

void Server::notice(const std::string &method, const Json &params)
{
    if (method == "exit") {
        hasShutDown_ = state_ == State::shutDown;
        state_ = State::ended;
        return;
    }
    if (state_ != State::running)
        return;
    try {
        if (method == "textDocument/didOpen")
            open(params);
        else if (method == "textDocument/didChange")
            change(params);
        else if (method == "textDocument/didClose")
            close(params);
        // Others need nothing to be done, and a notification has no answer.
    } catch (const RequestError &error) {
        send_({{"jsonrpc", "2.0"},
               {"method", "window/logMessage"},
               {"params", {{"type", 1}, {"message", method + ": " + error.what()}}}});
    }
}

Json Server::initialize(const Json &params)
{
    client_ = clientOf(memberOf(params, "capabilities"));
    state_ = State::running;
    const Json capabilities = {{"positionEncoding", client_.units == Units::utf8 ? "utf-8" : "utf-16"},
                               {"textDocumentSync", {{"openClose", true}, {"change", 2}}},
                               {"hoverProvider", true},
                               {"completionProvider", {{"triggerCharacters", {"<", "/", " ", "\"", "'", "=", ">"}}}},
                               {"definitionProvider", true},
                               {"referencesProvider", true},
                               {"documentSymbolProvider", true},
                               {"codeActionProvider", {{"codeActionKinds", {"quickfix"}}}},
                               {"documentFormattingProvider", true}};
    return {{"capabilities", capabilities}, {"serverInfo", {{"name", "dcm lsp"}, {"version", version_}}}};
}

// ---- Documents ------------------------------------------------------------------------------------------------------

const OpenDocument &Server::documentOf(const Json &params) const
{
    const auto document = documents_.find(uriIn(params));
    if (document == documents_.end())
        throw RequestError(ErrorCode::invalidParams, "the document is not open");
    return document->second;
}

// A description that is too long for every other command is not kept.
void Server::keepWithinLimit(const std::string &uri)
{
    changed_.insert(uri);
    if (documents_.at(uri).text().size() <= kMostBytes)
        return;
    documents_.erase(uri);
    throw RequestError(ErrorCode::requestFailed,
                       uri + " is larger than " + std::to_string(dcmtool::kMostMebibytes) + " MiB");
}

void Server::open(const Json &params)
{
    const Json &document = memberOf(params, "textDocument");
    const std::string uri = uriIn(params);
    documents_.insert_or_assign(uri, OpenDocument(uri, textIn(document, "text"), versionIn(document), client_.units));
    keepWithinLimit(uri);
}

void Server::change(const Json &params)
{
    const std::string uri = uriIn(params);
    const auto found = documents_.find(uri);
    if (found == documents_.end())
        throw RequestError(ErrorCode::invalidParams, "the document is not open");
    OpenDocument &document = found->second;
    changed_.insert(uri);
    for (const Json &part : memberOf(params, "contentChanges")) {
        const std::string text = textIn(part, "text");
        const Json &range = memberOf(part, "range");
        if (range.is_null())
            document.replace(text);
        else
            document.replace(positionIn(memberOf(range, "start")), positionIn(memberOf(range, "end")), text);
        keepWithinLimit(uri);
    }
    document.setVersion(versionIn(memberOf(params, "textDocument")));
}

void Server::close(const Json &params)
{
    const std::string uri = uriIn(params);
    documents_.erase(uri);
    changed_.insert(uri);
}

void Server::publish()
{
    for (const std::string &uri : changed_) {
        const auto document = documents_.find(uri);
        Json params = {{"uri", uri}, {"diagnostics", Json::array()}};
        if (document != documents_.end()) {
            params["diagnostics"] = diagnosticsOf(document->second, client_, pages_);
            if (document->second.version())
                params["version"] = *document->second.version();
        }
        send_({{"jsonrpc", "2.0"}, {"method", "textDocument/publishDiagnostics"}, {"params", params}});
    }
    changed_.clear();
}

// ---- Requests with parameters of their own --------------------------------------------------------------------------

Json Server::codeActions(const Json &params) const
{
    const OpenDocument &document = documentOf(params);
    const Json &range = memberOf(params, "range");
    const dcmtool::Span span = {document.lines().offsetOf(positionIn(memberOf(range, "start"))),
                                document.lines().offsetOf(positionIn(memberOf(range, "end")))};
    const Json &only = at(params, {"context", "only"});
    if (only.is_array() && !contains(only, "quickfix") && !contains(only, ""))
        return Json::array();
    return quickFixesIn(document, span, client_, pages_);
}

Json Server::completion(const Json &params) const
{
    const OpenDocument &document = documentOf(params);
    const size_t offset = document.lines().offsetOf(positionIn(memberOf(params, "position")));
    const bool isByItself = at(params, {"context", "triggerCharacter"}).is_string();
    return completionsAt(document, offset, isByItself, help_, client_);
}

} // namespace dcmlsp
