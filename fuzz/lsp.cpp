// The input is a stream of messages as an editor writes them, or controls an editor that changes a generated
// description and asks about places in it. Every request is answered once, and whatever is sent is valid.
#include "tools/dcm/lsp/server.h"

#include "fuzz/generator.h"
#include "fuzz/support.h"

#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

using dcmlsp::Json;

constexpr char kUri[] = "file:///fuzz.xml";

class Editor {
public:
    explicit Editor(bool hasAll)
        : server_([this](const Json &message) { take(message); }, "1", hasAll ? "file:///pages/" : "")
    {
        Json capabilities = Json::object();
        if (hasAll)
            capabilities = Json::parse(R"({"general": {"positionEncodings": ["utf-8"]},
                "workspace": {"workspaceEdit": {"documentChanges": true}},
                "textDocument": {"hover": {"contentFormat": ["markdown"]},
                    "completion": {"completionItem": {"snippetSupport": true, "documentationFormat": ["markdown"]}},
                    "publishDiagnostics": {"relatedInformation": true, "codeDescriptionSupport": true},
                    "documentSymbol": {"hierarchicalDocumentSymbolSupport": true}}})");
        ask("initialize", {{"capabilities", capabilities}});
    }

    void ask(const std::string &method, const Json &params)
    {
        const size_t before = answers_;
        send({{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", params}});
        DCM_FUZZ_CHECK(answers_ == before + 1);
    }

    void send(const Json &message)
    {
        server_.receive({message.dump(-1, ' ', false, Json::error_handler_t::replace), nullptr});
    }

    void read(const std::string &stream)
    {
        dcmlsp::MessageReader reader(size_t{1} << 16);
        reader.add(stream);
        while (const auto message = reader.next()) {
            server_.receive(*message);
            server_.publish();
        }
    }

    void publish() { server_.publish(); }

private:
    void take(const Json &message)
    {
        DCM_FUZZ_CHECK(message.at("jsonrpc") == "2.0");
        DCM_FUZZ_CHECK(message.contains("method") != message.contains("id"));
        const std::string sent = dcmlsp::framed(message);
        DCM_FUZZ_CHECK(Json::accept(sent.substr(sent.find("\r\n\r\n") + 4)));
        answers_ += message.contains("id") ? 1 : 0;
    }

    dcmlsp::Server server_;
    size_t answers_ = 0;
};

// Pieces that make a text well-formed or not.
constexpr const char *kPieces[] = {
    "<",    ">",         "/",      "</", "/>", "\"", "'", "=",      " ",    "\n",      "\r",       "<!--",
    "-->",  "<![CDATA[", "]]>",    "<?", "?>", "&",  ";", "typeid", "card", "phytype", "\xC3\xA9", "\xF0\x9F\x94\x8C",
    "0x21", "<device>",  "<port ", ""};

Json positionFrom(dcmfuzz::Input &input, uint32_t lines)
{
    return {{"line", input.below(lines)}, {"character", input.below(80)}};
}

void edit(Editor &editor, dcmfuzz::Input &&input, dcmfuzz::Input &&description)
{
    const std::string text = dcmfuzz::Generator(description).make().text;
    editor.send({{"jsonrpc", "2.0"},
                 {"method", "textDocument/didOpen"},
                 {"params", {{"textDocument", {{"uri", kUri}, {"version", 1}, {"text", text}}}}}});
    while (!input.isAtEnd()) {
        static constexpr const char *kMethods[] = {"completion", "hover",          "definition", "references",
                                                   "codeAction", "documentSymbol", "formatting"};
        const Json begin = positionFrom(input, 64);
        Json end = begin;
        end["character"] = end["character"].get<uint32_t>() + input.below(4);
        const Json range = {{"start", begin}, {"end", end}};
        const uint32_t action = input.below(16);
        if (action < std::size(kMethods))
            editor.ask(std::string("textDocument/") + kMethods[action], {{"textDocument", {{"uri", kUri}}},
                                                                         {"position", begin},
                                                                         {"range", range},
                                                                         {"context", {{"includeDeclaration", true}}}});
        else if (action == std::size(kMethods))
            editor.publish();
        else
            editor.send(
                {{"jsonrpc", "2.0"},
                 {"method", "textDocument/didChange"},
                 {"params",
                  {{"textDocument", {{"uri", kUri}, {"version", 2}}},
                   {"contentChanges", {{{"range", range}, {"text", kPieces[input.below(std::size(kPieces))]}}}}}}});
    }
    editor.publish();
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A header begins with a letter.
    const bool isStream = size == 0 || data[0] >= 4;
    Editor editor(size % 2 == 0);
    if (isStream) {
        editor.read({reinterpret_cast<const char *>(data), size});
        return 0;
    }
    const size_t half = size / 2;
    edit(editor, dcmfuzz::Input(data, half), dcmfuzz::Input(data + half, size - half));
    return 0;
}
