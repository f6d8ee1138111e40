// The language server, asked by a small client. In the texts, "|" is the place of the cursor.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/layout.h"
#include "tools/dcm/lsp/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

using namespace dcmlsp;
using dcmtool::DescriptionFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr char kUri[] = "file:///tmp/a%20b.xml";

std::string readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string example()
{
    return readFile(DCM_SOURCE_DIR "/examples/device.xml");
}

// A text, and the place of the cursor in it.
struct Marked {
    explicit Marked(std::string marked) : text(std::move(marked)), at(text.find('|'))
    {
        if (at != std::string::npos)
            text.erase(at, 1);
    }
    std::string text;
    size_t at;
};

// What an editor can do that can do everything.
const Json &allCapabilities()
{
    static const Json all = Json::parse(R"({
        "general": {"positionEncodings": ["utf-8", "utf-16"]},
        "workspace": {"workspaceEdit": {"documentChanges": true}},
        "textDocument": {
            "hover": {"contentFormat": ["markdown", "plaintext"]},
            "completion": {"completionItem": {"snippetSupport": true, "documentationFormat": ["markdown"]}},
            "publishDiagnostics": {"relatedInformation": true, "codeDescriptionSupport": true},
            "documentSymbol": {"hierarchicalDocumentSymbolSupport": true}}})");
    return all;
}

class Editor {
public:
    explicit Editor(const Json &capabilities = Json::object())
        : server_([this](const Json &message) { sent_.push_back(message); }, "1.2.3", "file:///doc/checks/")
    {
        if (!capabilities.is_null())
            initialized_ = request("initialize", {{"capabilities", capabilities}});
    }

    const Json &initialized() const { return initialized_; }
    Server &server() { return server_; }

    // What the server sends for a message as it is written.
    std::vector<Json> sentFor(const std::string &content)
    {
        sent_.clear();
        server_.receive({content, nullptr});
        return sent_;
    }

    Json answerTo(const std::string &method, const Json &params)
    {
        const Json message = {{"jsonrpc", "2.0"}, {"id", ++id_}, {"method", method}, {"params", params}};
        const std::vector<Json> sent = sentFor(message.dump());
        EXPECT_EQ(sent.size(), 1U) << method;
        EXPECT_EQ(sent.at(0)["id"], id_);
        return sent.at(0);
    }

    Json request(const std::string &method, const Json &params) { return answerTo(method, params)["result"]; }

    void notify(const std::string &method, const Json &params)
    {
        EXPECT_THAT(sentFor(Json({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}).dump()), IsEmpty());
    }

    // Opens the text, or replaces it. Without "|" there is no cursor.
    void open(const std::string &marked)
    {
        const Marked text(marked);
        text_ = text.text;
        at_ = text.at;
        notify("textDocument/didOpen",
               {{"textDocument", {{"uri", kUri}, {"languageId", "xml"}, {"version", 1}, {"text", text_}}}});
    }

    // What is published.
    Json diagnostics()
    {
        sent_.clear();
        server_.publish();
        EXPECT_EQ(sent_.size(), 1U);
        EXPECT_EQ(sent_.at(0)["method"], "textDocument/publishDiagnostics");
        EXPECT_EQ(sent_.at(0)["params"]["uri"], kUri);
        return sent_.at(0)["params"]["diagnostics"];
    }

    Json position(size_t offset) const
    {
        const Position place = Lines(text_, Units::utf16).positionOf(offset);
        return {{"line", place.line}, {"character", place.character}};
    }

    // The request at the cursor.
    Json atCursor(const std::string &method, const Json &context = Json::object())
    {
        return request("textDocument/" + method,
                       {{"textDocument", {{"uri", kUri}}}, {"position", position(at_)}, {"context", context}});
    }

    Json inDocument(const std::string &method, const Json &more = Json::object())
    {
        Json params = {{"textDocument", {{"uri", kUri}}}};
        params.update(more);
        return request("textDocument/" + method, params);
    }

    // The text after edits, which do not overlap.
    std::string edited(Json edits) const
    {
        const Lines lines(text_, Units::utf16);
        const auto offsetOf = [&](const Json &place) { return lines.offsetOf({place["line"], place["character"]}); };
        std::sort(edits.begin(), edits.end(), [&](const Json &one, const Json &other) {
            return offsetOf(one["range"]["start"]) > offsetOf(other["range"]["start"]);
        });
        std::string text = text_;
        for (const Json &edit : edits) {
            const size_t begin = offsetOf(edit["range"]["start"]);
            text.replace(begin, offsetOf(edit["range"]["end"]) - begin, edit["newText"]);
        }
        return text;
    }

    // The bytes in a range.
    std::string in(const Json &range) const
    {
        const Lines lines(text_, Units::utf16);
        const size_t begin = lines.offsetOf({range["start"]["line"], range["start"]["character"]});
        return text_.substr(begin, lines.offsetOf({range["end"]["line"], range["end"]["character"]}) - begin);
    }

private:
    Server server_;
    std::vector<Json> sent_;
    Json initialized_;
    int id_ = 0;
    std::string text_;
    size_t at_ = 0;
};

std::string inCard(const std::string &content)
{
    return "<device>\n  <card typeid=\"0x21\" name=\"c\" abbrname=\"c\"><occupyslotnum>1</occupyslotnum>" + content +
           "</card>\n</device>\n";
}

std::string inPort(const std::string &content)
{
    return inCard("<panel-port num=\"1\" startportid=\"1\" maxportid=\"1\"><port id=\"1\">" + content +
                  "</port></panel-port>");
}

// ---- Framing --------------------------------------------------------------------------------------------------------

std::vector<std::string> readIn(const std::string &stream, size_t step, size_t most = kMostMessage)
{
    MessageReader reader(most);
    std::vector<std::string> received;
    for (size_t at = 0; at < stream.size(); at += step) {
        reader.add(std::string_view(stream).substr(at, step));
        while (const auto message = reader.next())
            received.push_back(message->fault != nullptr ? message->fault : message->content);
    }
    return received;
}

struct Stream {
    const char *name;
    std::string stream;
    std::vector<std::string> received;
};

void PrintTo(const Stream &stream, std::ostream *out)
{
    *out << stream.name;
}

class MessageStream : public testing::TestWithParam<Stream> {};

TEST_P(MessageStream, IsCutIntoMessagesHoweverItComes)
{
    for (const size_t step : {size_t{1}, size_t{2}, size_t{7}, size_t{1000000}})
        EXPECT_EQ(readIn(GetParam().stream, step, 20), GetParam().received) << step;
}

const Stream kStreams[] = {
    {"OfTwo", "Content-Length: 2\r\n\r\n{}Content-Length: 3\r\n\r\n[1]", {"{}", "[1]"}},
    {"WithAType", "content-length:2\r\nContent-Type: application/vscode-jsonrpc; charset=utf-8\r\n\r\n{}", {"{}"}},
    {"WithUnixLineEnds", "Content-Length: 2\n\n{}", {"{}"}},
    {"ThatIsEmpty", "Content-Length: 0\r\n\r\n", {""}},
    {"WithoutALength",
     "Content-Type: x\r\n\r\n{}Content-Length: 2\r\n\r\n{}",
     {"the header has no valid Content-Length", "{}"}},
    {"WithAWrongLength",
     "Content-Length: -2\r\n\r\n{}Content-Length: 2\r\n\r\n{}",
     {"the header has no valid Content-Length", "{}"}},
    {"WithALengthBeyondNumbers",
     "Content-Length: 99999999999999999999\r\n\r\nContent-Length: 2\r\n\r\n{}",
     {"the header has no valid Content-Length", "{}"}},
    {"ThatIsTooLong",
     "Content-Length: 21\r\n\r\n" + std::string(21, 'x') + "Content-Length: 2\r\n\r\n{}",
     {"the message is too long", "{}"}},
    {"BehindALongLine", std::string(5000, 'x') + "Content-Length: 2\r\n\r\n{}", {"{}"}},
    {"ThatEndsEarly", "Content-Length: 3\r\n\r\n{}", {}},
};

INSTANTIATE_TEST_SUITE_P(Lsp, MessageStream, testing::ValuesIn(kStreams),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Lsp, WritesTheLengthInBytes)
{
    EXPECT_EQ(framed({{"a", "\xC3\xA9"}}), "Content-Length: 10\r\n\r\n{\"a\":\"\xC3\xA9\"}");
}

// ---- Faulty messages ------------------------------------------------------------------------------------------------

struct Faulty {
    const char *name;
    const char *content;
    int code;
};

void PrintTo(const Faulty &faulty, std::ostream *out)
{
    *out << faulty.name;
}

class FaultyMessage : public testing::TestWithParam<Faulty> {};

TEST_P(FaultyMessage, IsAnsweredWithTheErrorOfTheProtocol)
{
    Editor editor;
    editor.open("<device/>");
    const std::vector<Json> sent = editor.sentFor(GetParam().content);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0]["jsonrpc"], "2.0");
    EXPECT_EQ(sent[0]["error"]["code"], GetParam().code);
    EXPECT_FALSE(sent[0]["error"]["message"].get<std::string>().empty());
    EXPECT_TRUE(editor.request("shutdown", nullptr).is_null()) << "goes on";
}

const Faulty kFaulty[] = {
    {"ThatIsNotJson", "{", -32700},
    {"ThatIsNotUtf8", "{\"method\":\"\xFF\"}", -32700},
    {"OfNothing", "", -32700},
    {"OfHalfACharacter", R"({"method":"\ud800"})", -32700},
    {"ThatIsABatch", "[]", -32600},
    {"WithoutMethod", R"({"id":1})", -32600},
    {"WithAMethodThatIsANumber", R"({"id":1,"method":2})", -32600},
    {"WithAnIdThatIsAList", R"({"id":[],"method":"shutdown"})", -32600},
    {"OfAnUnknownMethod", R"({"id":1,"method":"textDocument/rename","params":{}})", -32601},
    {"ThatInitializesAgain", R"({"id":1,"method":"initialize","params":{}})", -32600},
    {"WithoutParameters", R"({"id":1,"method":"textDocument/hover"})", -32602},
    {"WithParametersInAList", R"({"id":1,"method":"textDocument/hover","params":[1]})", -32602},
    {"OfAnotherDocument",
     R"({"id":1,"method":"textDocument/hover","params":{"textDocument":{"uri":"file:///x"},"position":{"line":0,"character":0}}})",
     -32602},
    {"WithANegativeLine",
     R"({"id":1,"method":"textDocument/hover","params":{"textDocument":{"uri":"file:///tmp/a%20b.xml"},"position":{"line":-1,"character":0}}})",
     -32602},
    {"WithALineInWords",
     R"({"id":1,"method":"textDocument/completion","params":{"textDocument":{"uri":"file:///tmp/a%20b.xml"},"position":{"line":"1","character":0}}})",
     -32602},
    {"WithoutARange",
     R"({"id":1,"method":"textDocument/codeAction","params":{"textDocument":{"uri":"file:///tmp/a%20b.xml"}}})",
     -32602},
};

INSTANTIATE_TEST_SUITE_P(Lsp, FaultyMessage, testing::ValuesIn(kFaulty),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Lsp, AnswersAFaultyHeader)
{
    std::vector<Json> sent;
    Server server([&](const Json &message) { sent.push_back(message); }, "", "");
    server.receive({"", "too long"});
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0]["error"], Json({{"code", -32700}, {"message", "too long"}}));
    EXPECT_TRUE(sent[0]["id"].is_null());
}

TEST(Lsp, SurvivesDeeplyNestedMessages)
{
    Editor editor;
    const std::string deep = std::string(200000, '[') + std::string(200000, ']');
    EXPECT_EQ(editor.sentFor(R"({"id":1,"method":"shutdown","params":)" + deep + "}").size(), 1U);
}

TEST(Lsp, IgnoresAnswersAndNotificationsThatItDoesNotKnow)
{
    Editor editor;
    for (const char *content :
         {R"({"id":1,"result":null})", R"({"method":"$/cancelRequest","params":{"id":1}})",
          R"({"method":"initialized","params":{}})", R"({"method":"textDocument/didSave","params":{}})"})
        EXPECT_THAT(editor.sentFor(content), IsEmpty()) << content;
}

TEST(Lsp, LogsNotificationsThatItCannotFollow)
{
    Editor editor;
    for (
        const char *content :
        {R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":7,"text":""}}})",
         R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"file:///x"}}})",
         R"({"method":"textDocument/didChange","params":{"textDocument":{"uri":"file:///x"},"contentChanges":[{"text":""}]}})"}) {
        const std::vector<Json> sent = editor.sentFor(content);
        ASSERT_EQ(sent.size(), 1U) << content;
        EXPECT_EQ(sent[0]["method"], "window/logMessage");
    }
}

TEST(Lsp, WaitsForTheInitialization)
{
    Editor editor(nullptr);
    EXPECT_EQ(editor.answerTo("shutdown", nullptr)["error"]["code"], -32002);
    EXPECT_THAT(editor.sentFor(R"({"method":"textDocument/didOpen","params":{}})"), IsEmpty());
    EXPECT_FALSE(editor.answerTo("initialize", {{"capabilities", Json::object()}}).contains("error"));
}

TEST(Lsp, EndsWhenItIsTold)
{
    Editor editor;
    EXPECT_TRUE(editor.request("shutdown", nullptr).is_null());
    EXPECT_EQ(editor.answerTo("shutdown", nullptr)["error"]["code"], -32600);
    EXPECT_TRUE(editor.server().isRunning());
    editor.notify("exit", nullptr);
    EXPECT_FALSE(editor.server().isRunning());
    EXPECT_TRUE(editor.server().hasShutDown());

    Editor hasty;
    hasty.notify("exit", nullptr);
    EXPECT_FALSE(hasty.server().isRunning());
    EXPECT_FALSE(hasty.server().hasShutDown());
}

TEST(Lsp, SaysWhatItCanDo)
{
    const Json initialized = Editor().initialized();
    EXPECT_EQ(initialized["serverInfo"], Json({{"name", "dcm lsp"}, {"version", "1.2.3"}}));
    EXPECT_EQ(initialized["capabilities"]["positionEncoding"], "utf-16");
    EXPECT_EQ(initialized["capabilities"]["textDocumentSync"]["change"], 2);
    EXPECT_EQ(Editor(allCapabilities()).initialized()["capabilities"]["positionEncoding"], "utf-8");
}

// ---- Positions and changes ------------------------------------------------------------------------------------------

struct Place {
    size_t offset;
    size_t line;
    size_t utf8;
    size_t utf16;
};

TEST(Lsp, CountsLinesAndUnitsAsTheProtocolDoes)
{
    // An "e" with an accent is 2 bytes and 1 unit, the pictograph 4 bytes and 2 units.
    const std::string text = "a\xC3\xA9z\r\n\xF0\x9F\x94\x8Cz\rq\n\nend";
    for (const auto &[offset, line, utf8, utf16] :
         {Place{0, 0, 0, 0}, Place{1, 0, 1, 1}, Place{3, 0, 3, 2}, Place{4, 0, 4, 3}, Place{6, 1, 0, 0},
          Place{10, 1, 4, 2}, Place{11, 1, 5, 3}, Place{12, 2, 0, 0}, Place{13, 2, 1, 1}, Place{14, 3, 0, 0},
          Place{15, 4, 0, 0}, Place{18, 4, 3, 3}})
        for (const Units units : {Units::utf8, Units::utf16}) {
            const Lines lines(text, units);
            const size_t character = units == Units::utf8 ? utf8 : utf16;
            EXPECT_EQ(lines.offsetOf({line, character}), offset);
            EXPECT_EQ(lines.positionOf(offset).line, line) << offset;
            EXPECT_EQ(lines.positionOf(offset).character, character) << offset;
        }
    const Lines lines(text, Units::utf16);
    EXPECT_EQ(lines.offsetOf({0, 100}), 4U) << "after the end of a line";
    EXPECT_EQ(lines.offsetOf({100, 0}), text.size()) << "after the last line";
    EXPECT_EQ(lines.offsetOf({1, 1}), 6U) << "in a character";
    EXPECT_EQ(Lines(text, Units::utf8).offsetOf({0, 2}), 1U) << "in a character";
}

TEST(Lsp, CountsInLongLines)
{
    std::string text;
    for (size_t i = 0; i < 3000; i++)
        text += "a\xF0\x9F\x94\x8C";
    const Lines lines(text, Units::utf16);
    EXPECT_EQ(lines.positionOf(5 * 2500).character, 3U * 2500);
    EXPECT_EQ(lines.offsetOf({0, 3 * 2500}), 5U * 2500);
    EXPECT_EQ(lines.positionOf(text.size()).character, 9000U);
}

// In the same way as an editor would, but letter by letter.
TEST(Lsp, TakesAnySequenceOfChanges)
{
    const std::string letters[] = {"a", "\xC3\xA9", "\xF0\x9F\x94\x8C", "\n", "\r\n", "<card>", ""};
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    const auto below = [&](size_t bound) { return random() % bound; };
    for (const Units units : {Units::utf8, Units::utf16}) {
        OpenDocument document(kUri, "", 1, units);
        std::vector<std::string> expected; // its characters
        for (int i = 0; i < 2000; i++) {
            const auto offset = [&](size_t count) {
                size_t bytes = 0;
                for (size_t j = 0; j < count; j++)
                    bytes += expected[j].size();
                return bytes;
            };
            const size_t begin = below(expected.size() + 1);
            const size_t end = std::min(expected.size(), begin + below(4));
            const std::string &letter = letters[below(std::size(letters))];
            document.replace(document.lines().positionOf(offset(begin)), document.lines().positionOf(offset(end)),
                             letter);
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(begin),
                           expected.begin() + static_cast<std::ptrdiff_t>(end));
            if (!letter.empty())
                expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(begin), letter);
            std::string text;
            for (const std::string &character : expected)
                text += character;
            ASSERT_EQ(document.text(), text) << i;
        }
    }
}

TEST(Lsp, AppliesTheChangesOfANotificationOneAfterTheOther)
{
    Editor editor;
    editor.open(inPort("<phytype>10ge</phytype>"));
    EXPECT_THAT(editor.diagnostics(), Not(IsEmpty()));
    const Json start = {{"line", 0}, {"character", 0}};
    const Json changes = {
        {{"text", "<device></device>"}},
        {{"range", {{"start", {{"line", 0}, {"character", 8}}}, {"end", {{"line", 0}, {"character", 8}}}}},
         {"text", "<card typeid='1' name='\xC3\xA9\xF0\x9F\x94\x8C' abbrname='x'/>"}},
        {{"range", {{"start", start}, {"end", start}}}, {"text", "<!-- -->\n"}},
        {{"range", {{"start", {{"line", 1}, {"character", 36}}}, {"end", {{"line", 1}, {"character", 44}}}}},
         {"text", "abrname"}}};
    editor.notify("textDocument/didChange",
                  {{"textDocument", {{"uri", kUri}, {"version", 2}}}, {"contentChanges", changes}});
    const Json diagnostics = editor.diagnostics();
    ASSERT_EQ(diagnostics.size(), 2U) << diagnostics.dump(1);
    EXPECT_EQ(diagnostics[1]["code"], "unknown-attribute");
    EXPECT_EQ(diagnostics[1]["range"]["start"], Json({{"line", 1}, {"character", 36}}));
    EXPECT_EQ(diagnostics[1]["range"]["end"], Json({{"line", 1}, {"character", 43}}));
}

// ---- Diagnostics ----------------------------------------------------------------------------------------------------

TEST(Lsp, FindsWhatTheCheckFindsInEveryFileOfTheCorpus)
{
    size_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(DCM_SOURCE_DIR "/tests/tool/corpus")) {
        const std::string text = readFile(entry.path());
        const auto file = DescriptionFile::parse("/tmp/a b.xml", text);
        // An editor has them as UTF-8.
        if (!file->foreignEncoding().empty() || Json(text).dump(-1, ' ', false, Json::error_handler_t::ignore) !=
                                                    Json(text).dump(-1, ' ', false, Json::error_handler_t::replace))
            continue;
        Editor editor(allCapabilities());
        editor.open(text);
        const Json diagnostics = editor.diagnostics();
        const auto findings = checkFile(*file);
        ASSERT_EQ(diagnostics.size(), findings.size()) << entry.path();
        for (size_t i = 0; i < findings.size(); i++) {
            const Position begin = Lines(text, Units::utf8).positionOf(findings[i].span.begin);
            EXPECT_EQ(diagnostics[i]["code"], findings[i].rule->name) << entry.path();
            EXPECT_EQ(diagnostics[i]["range"]["start"], Json({{"line", begin.line}, {"character", begin.character}}))
                << entry.path();
            EXPECT_THAT(diagnostics[i]["message"].get<std::string>(), HasSubstr(findings[i].text));
            EXPECT_EQ(diagnostics[i].contains("relatedInformation"), !findings[i].notes.empty());
            count++;
        }
    }
    EXPECT_GT(count, 50U);
}

TEST(Lsp, PublishesSeverityPageAndRelatedPlaces)
{
    Editor editor(allCapabilities());
    editor.open(inPort("<portid>1</portid><driver>cdl</driver><phytype>10gex</phytype>"));
    const Json failing = editor.diagnostics().at(0);
    EXPECT_EQ(failing["severity"], 1);
    EXPECT_EQ(failing["source"], "dcm");
    EXPECT_EQ(failing["code"], "query-fails");
    EXPECT_EQ(failing["codeDescription"]["href"], "file:///doc/checks/query-fails.md");
    EXPECT_EQ(editor.in(failing["range"]), "10gex");
    EXPECT_THAT(failing["message"].get<std::string>(), HasSubstr("did you mean '10ge'?"));

    editor.open("<device>\n<card typeid='1'/>\n<card typeid='1'/>\n</device>\n");
    bool isFound = false;
    for (const Json &diagnostic : editor.diagnostics())
        if (diagnostic["code"] == "shadowed-type") {
            isFound = true;
            EXPECT_EQ(diagnostic["severity"], 2);
            const Json location = diagnostic["relatedInformation"][0]["location"];
            EXPECT_EQ(location["uri"], kUri);
            EXPECT_EQ(location["range"]["start"]["line"], 1);
        }
    EXPECT_TRUE(isFound);
}

TEST(Lsp, SendsNothingThatTheEditorDoesNotKnow)
{
    Editor editor;
    editor.open("<device>\n<card typeid='1'/>\n<card typeid='1'/>\n</device>\n");
    for (const Json &diagnostic : editor.diagnostics()) {
        EXPECT_FALSE(diagnostic.contains("relatedInformation"));
        EXPECT_FALSE(diagnostic.contains("codeDescription"));
    }
}

TEST(Lsp, TakesTheFindingsOfAClosedDocumentBack)
{
    Editor editor;
    editor.open("<device>");
    EXPECT_EQ(editor.diagnostics().size(), 1U);
    editor.notify("textDocument/didClose", {{"textDocument", {{"uri", kUri}}}});
    EXPECT_THAT(editor.diagnostics(), IsEmpty());
}

// The declaration says how the file is encoded, not what the editor sends.
TEST(Lsp, ReadsUtf8WhateverTheDeclarationSays)
{
    for (const char *encoding : {"ISO-8859-1", "UTF-8", "UTF-16", "windows-1252"}) {
        Editor editor;
        editor.open(
            std::string("<?xml version='1.0' encoding='") + encoding +
            "'?>\n<device><card typeid='1' name='\xC3\xA9\xC3\xA9' abbrname='x' colour='1'><occupyslotnum>1</occupyslotnum></card></device>");
        const Json diagnostics = editor.diagnostics();
        ASSERT_EQ(diagnostics.size(), 1U) << encoding;
        EXPECT_EQ(diagnostics[0]["code"], "unknown-attribute") << encoding;
        EXPECT_EQ(editor.in(diagnostics[0]["range"]), "colour") << encoding;
    }
}

// A text of 63 bytes ends in the middle of a character.
TEST(Lsp, SendsWhatARecordKeepsOfATextAsUtf8)
{
    Editor editor;
    std::string name;
    for (int i = 0; i < 40; i++)
        name += "\xC3\xA9";
    editor.open("<device><card typeid='1' name='" + name +
                "' abbrname='x'><occupyslotnum>1</occupyslotnum></card></device>");
    const Json diagnostics = editor.diagnostics();
    ASSERT_EQ(diagnostics.size(), 1U);
    EXPECT_EQ(diagnostics[0]["code"], "text-cut");
    const std::string sent = framed(diagnostics);
    EXPECT_THAT(sent, HasSubstr("\xC3\xA9\xEF\xBF\xBD'"));
    EXPECT_TRUE(Json::accept(sent.substr(sent.find("\r\n\r\n") + 4)));
}

// ---- Quick fixes ----------------------------------------------------------------------------------------------------

Json fixesAtCursor(Editor &editor, const Marked &text, const Json &context = Json::object())
{
    editor.open(text.text);
    const Json place = editor.position(text.at);
    return editor.inDocument("codeAction", {{"range", {{"start", place}, {"end", place}}}, {"context", context}});
}

TEST(Lsp, OffersTheFixesOfTheFindingsAtTheCursor)
{
    Editor editor;
    const Marked text(inPort("<portid>1</portid><phy|tyqe>10ge</phytyqe><driver>cdlx</driver>"));
    const Json actions = fixesAtCursor(editor, text);
    ASSERT_EQ(actions.size(), 1U) << actions.dump(1);
    EXPECT_EQ(actions[0]["title"], "rename to \"phytype\"");
    EXPECT_EQ(actions[0]["kind"], "quickfix");
    EXPECT_EQ(actions[0]["isPreferred"], true);
    EXPECT_EQ(actions[0]["diagnostics"][0]["code"], "unknown-element");
    EXPECT_EQ(editor.edited(actions[0]["edit"]["changes"][kUri]),
              inPort("<portid>1</portid><phytype>10ge</phytype><driver>cdlx</driver>"));
}

TEST(Lsp, NamesTheVersionThatAFixIsFor)
{
    Editor editor(allCapabilities());
    const Json actions = fixesAtCursor(editor, Marked(inPort("<portid>1</portid><driver>cdl|x</driver>")));
    ASSERT_EQ(actions.size(), 1U) << actions.dump(1);
    const Json change = actions[0]["edit"]["documentChanges"][0];
    EXPECT_EQ(change["textDocument"], Json({{"uri", kUri}, {"version", 1}}));
    EXPECT_EQ(change["edits"][0]["newText"], "cdl");
}

TEST(Lsp, OffersNoFixesWhereOthersAreWanted)
{
    Editor editor;
    const Marked text(inPort("<portid>1</portid><driver>cdl|x</driver>"));
    EXPECT_THAT(fixesAtCursor(editor, text, {{"only", {"source.organizeImports"}}}), IsEmpty());
    EXPECT_EQ(fixesAtCursor(editor, text, {{"only", {"quickfix"}}}).size(), 1U);
    EXPECT_THAT(fixesAtCursor(editor, Marked(inPort("<port|id>1</portid><driver>cdlx</driver>"))), IsEmpty());
}

// ---- Hover ----------------------------------------------------------------------------------------------------------

struct Hovered {
    const char *name;
    std::string text;
    const char *said;  // nullptr: nothing
    const char *range; // what it is about
};

void PrintTo(const Hovered &hovered, std::ostream *out)
{
    *out << hovered.name;
}

class Hover : public testing::TestWithParam<Hovered> {};

TEST_P(Hover, SaysWhatIsThere)
{
    Editor editor;
    editor.open(GetParam().text);
    const Json hover = editor.atCursor("hover");
    ASSERT_EQ(hover.is_null(), GetParam().said == nullptr) << hover.dump(1);
    if (hover.is_null())
        return;
    EXPECT_EQ(hover["contents"]["kind"], "plaintext");
    EXPECT_THAT(hover["contents"]["value"].get<std::string>(), HasSubstr(GetParam().said));
    EXPECT_EQ(editor.in(hover["range"]), GetParam().range);
}

const Hovered kHovered[] = {
    {"OfAnElement", inPort("<sup|portsplit>yes</supportsplit>"), "Whether the port can be split.", "supportsplit"},
    {"OfItsFirstLetter", inPort("<|supportsplit>yes</supportsplit>"), "left out: no", "supportsplit"},
    {"OfAnEndTag", inPort("<supportsplit>yes</supportsp|lit>"), "Whether the port can be split.", "supportsplit"},
    {"OfAWord", inPort("<phytype>10|ge</phytype>"), "10ge is read as: value ", "10ge"},
    {"OfASection", "<de|vice/>", "The hardware of a network element", "device"},
    {"OfAnAttribute", "<device><frame type|id='1'/></device>", "The type that identifies the frame.", "typeid"},
    {"OfItsValue", "<device><frame typeid='0|x21'/></device>", "0x21 is read as: 33.", "0x21"},
    {"OfANumberWithAUnit", inPort("<wavelength>15|50nm</wavelength>"), "1550; what follows the number is ignored",
     "1550nm"},
    {"OfAPlainNumber", inPort("<wavelength>15|50</wavelength>"), "card/panel-port", "1550"},
    {"OfAList", "<device><frame><slotmap><mpu>1-3,|7</mpu></slotmap></frame></device>",
     "1-3,7 is read as: 1, 2, 3 and 7.", "1-3,7"},
    {"OfAPlaceInAList", "<device><frame><cardtypecaps><cap>0x1|0</cap></cardtypecaps></frame></device>",
     "0x10 is read as: 16.", "0x10"},
    {"OfTypeIds", "<device><slot typeid='1,|0x10'/></device>", "is read as: 1 and 16.", "1,0x10"},
    {"OfWhatIsNotClosed", "<device><card typeid='1'><panel-port><port id='1'><phy|type", "PHY type", "phytype"},
    {"OfAnUnknownElement", inPort("<co|lour/>"), nullptr, ""},
    {"OfWhatIsInOne", inPort("<colour><por|tid>1</portid></colour>"), nullptr, ""},
    {"OfAComment", inPort("<!-- phy|type -->"), nullptr, ""},
    {"OfBlanks", inPort(" | "), nullptr, ""},
    {"OfNothing", "|", nullptr, ""},
    {"OfAReferenceToASlot",
     "<device>\n<frame typeid='1'><slotinfo>\n<slotid id='1'><supportcardtype>1,|33</supportcardtype></slotid></slotinfo>"
     "</frame>\n<card typeid='33'/>\n<card typeid='1'/></device>",
     "It names card 33 in line 4.", "1,33"},
};

INSTANTIATE_TEST_SUITE_P(Lsp, Hover, testing::ValuesIn(kHovered),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Lsp, HoversInMarkdownWithoutLinksThatLeadNowhere)
{
    Editor editor(allCapabilities());
    editor.open(inPort("<phy|type>10ge</phytype>"));
    const Json contents = editor.atCursor("hover")["contents"];
    EXPECT_EQ(contents["kind"], "markdown");
    EXPECT_THAT(contents["value"].get<std::string>(), HasSubstr("- value: one of the PHY types"));
    EXPECT_THAT(contents["value"].get<std::string>(), Not(HasSubstr("](#")));
}

// What a file says is not read as Markdown.
TEST(Lsp, HoversWithTheFileAsCode)
{
    Editor editor(allCapabilities());
    editor.open(inPort("<portid>0x1|`](command:x)</portid>"));
    EXPECT_THAT(editor.atCursor("hover")["contents"]["value"].get<std::string>(),
                HasSubstr("`0x1 ](command:x)` is read as: 1;"));
}

// ---- Completion -----------------------------------------------------------------------------------------------------

struct Completed {
    const char *name;
    std::string text;
    const char *label;
    const char *after; // around the cursor, when it has been chosen; nullptr: it is not offered
};

void PrintTo(const Completed &completed, std::ostream *out)
{
    *out << completed.name;
}

class Completion : public testing::TestWithParam<Completed> {};

TEST_P(Completion, OffersWhatTheFormatHas)
{
    Editor editor;
    editor.open(GetParam().text);
    const Json items = editor.atCursor("completion");
    const auto item =
        std::find_if(items.begin(), items.end(), [](const Json &each) { return each["label"] == GetParam().label; });
    ASSERT_EQ(item != items.end(), GetParam().after != nullptr) << items.dump(1);
    if (item == items.end())
        return;
    EXPECT_THAT(editor.edited(Json::array({(*item)["textEdit"]})), HasSubstr(GetParam().after));
    EXPECT_EQ(item->contains("documentation"), item->at("label") != "colour") << item->dump(1);
}

const Completed kCompleted[] = {
    {"ARootElement", "<|", "device", "<device"},
    {"ARootElementWithoutATag", "|", "device", "<device"},
    {"ARootOfAPortList", "<v|", "vm", nullptr},
    {"AnElement", inPort("<portid>1</portid><|"), "phytype", "<portid>1</portid><phytype"},
    {"AnElementThatHasBegun", inPort("<phy|"), "phytype", "<phytype"},
    {"AnElementWithItsTag", inPort("<phy|</phytype>"), "phytype", "<phytype"},
    {"TheNameOfAnElement", inPort("<ph|y>1</phy>"), "phytype", "<phytype>1"},
    {"AnElementWithoutItsTag", inPort("<portid>1</portid> | "), "phytype", "</portid> <phytype "},
    {"NoElementTwice", inPort("<phytype>10ge</phytype><|"), "phytype", nullptr},
    {"AnElementOfWhichThereAreMany", inCard("<panel-port><port id='1'/><po|</panel-port>"), "port", "<port</panel"},
    {"NoElementOfAnotherParent", inCard("<phy|"), "phytype", nullptr},
    {"NothingInAComment", inPort("<!-- <phy| -->"), "phytype", nullptr},
    {"AnElementBehindAComment", inPort("<!-- a --><phy|"), "phytype", "<!-- a --><phytype"},
    {"AnElementBehindAnUnfinishedTag", inPort("<portid>1</portid><driver\n<phy|"), "phytype", nullptr},
    {"AnElementBehindAnUnfinishedValue", inCard("<panel-port num=\"1><port id='1'><phy|"), "phytype", "><phytype"},
    {"AnElementBehindAWrongEndTag", inPort("<portid>1</portit></portid><phy|"), "phytype", "<phytype"},
    {"AnEndTag", "<device><card typeid='1'></|", "card", "</card>"},
    {"AnEndTagOfAnUnknownElement", "<device><colour></c|", "colour", "<device><colour></colour>"},
    {"AnEndTagThatIsThere", "<device><card></ca|xd></device>", "card", "</card></device>"},
    {"AnAttribute", "<device><card |", "typeid", "<card typeid=\"\""},
    {"AnAttributeThatHasBegun", "<device><card typeid='1' mo|/></device>", "mode", "typeid='1' mode=\"\"/>"},
    {"TheNameOfAnAttribute", "<device><card mo|d='1'/></device>", "mode", "<card mode='1'/>"},
    {"NoAttributeTwice", "<device><card | typeid='1'/></device>", "typeid", nullptr},
    {"NoAttributeBehindAQuote", "<device><card typeid='1'|/></device>", "mode", nullptr},
    {"AWord", inPort("<phytype>|</phytype>"), "10ge", "<phytype>10ge</phytype>"},
    {"AWordThatHasBegun", inPort("<phytype>10|x</phytype>"), "10ge", "<phytype>10ge</phytype>"},
    {"AWordWithoutAnEndTag", inPort("<phytype>10|"), "10ge", "<phytype>10ge</port>"},
    {"AWordOfAnAttribute", inCard("<led-entity num='1'><led type='|' id='1'/></led-entity>"), "alarm",
     "type='alarm' id"},
    {"AWordWithoutQuotes", inCard("<led-entity num='1'><led type=| id='1'/></led-entity>"), "alarm",
     "type=\"alarm\" id"},
    {"AWordInAnUnfinishedValue", inCard("<led-entity num='1'><led type=\"al|>\n</led-entity>"), "alarm",
     "type=\"alarm>\n"},
    {"AnElementInAnotherNamespace", "<x:device><x:card typeid='1'><pan|", "panel-port", "typeid='1'><panel-port"},
};

INSTANTIATE_TEST_SUITE_P(Lsp, Completion, testing::ValuesIn(kCompleted),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Lsp, CompletesWithSnippetsWhereTheEditorHasThem)
{
    Editor editor(allCapabilities());
    editor.open("<device><ca|");
    std::string text;
    for (const Json &item : editor.atCursor("completion"))
        if (item["label"] == "card") {
            EXPECT_EQ(item["insertTextFormat"], 2);
            text = item["textEdit"]["newText"];
        }
    EXPECT_EQ(text, "card>$0</card>");
}

TEST(Lsp, CompletesElementsByItselfOnlyInTags)
{
    Editor editor;
    editor.open(inPort(" |"));
    EXPECT_THAT(editor.atCursor("completion", {{"triggerKind", 2}, {"triggerCharacter", " "}}), IsEmpty());
    EXPECT_THAT(editor.atCursor("completion", {{"triggerKind", 1}}), Not(IsEmpty()));
    editor.open(inPort("<phytype>|"));
    EXPECT_THAT(editor.atCursor("completion", {{"triggerKind", 2}, {"triggerCharacter", ">"}}), Not(IsEmpty()));
}

// ---- Relations ------------------------------------------------------------------------------------------------------

constexpr char kRelated[] = R"(<device>
<frame typeid="1"><maxslotnum>2</maxslotnum><slotmap><lpu>1-2</lpu></slotmap>
<slotinfo>
<slotid id="1"><supportcardtype>0x21,34</supportcardtype></slotid>
<slotid id="2"><supportcardtype>33</supportcardtype></slotid>
</slotinfo>
<fanctrl-entity num="2">
<fanctrl id="1"/>
<fanctrl id="2"/>
</fanctrl-entity>
</frame>
<card typeid="33" mode="0"/>
<card typeid="33" mode="1"/>
<card typeid="0x22"/>
</device>
)";

// kRelated with the cursor in front of the first `place` behind `behind`.
std::string relatedAt(const std::string &behind, const std::string &place)
{
    std::string text = kRelated;
    return text.insert(text.find(place, text.find(behind)), "|");
}

std::vector<int> linesOf(const Json &locations)
{
    std::vector<int> lines;
    for (const Json &location : locations)
        lines.push_back(location["range"]["start"]["line"].get<int>() + 1);
    return lines;
}

TEST(Lsp, GoesFromAnItemOfAListToTheCards)
{
    Editor editor;
    editor.open(relatedAt("<supportcardtype>0x21", "x21"));
    EXPECT_THAT(linesOf(editor.atCursor("definition")), ElementsAre(12, 13));
    editor.open(relatedAt("<supportcardtype>0x21", "34"));
    const Json locations = editor.atCursor("definition");
    EXPECT_THAT(linesOf(locations), ElementsAre(14));
    EXPECT_EQ(locations[0]["uri"], kUri);
    EXPECT_EQ(editor.in(locations[0]["range"]), "card");
}

TEST(Lsp, FindsTheSlotsThatNameACard)
{
    Editor editor;
    editor.open(relatedAt("<card", "33"));
    EXPECT_THAT(linesOf(editor.atCursor("references")), ElementsAre(4, 5));
    EXPECT_THAT(linesOf(editor.atCursor("references", {{"includeDeclaration", true}})), ElementsAre(12, 4, 5));
}

TEST(Lsp, FindsTheOtherSlotsThatNameTheSameCard)
{
    Editor editor;
    editor.open(relatedAt("<supportcardtype>33", "33"));
    EXPECT_THAT(linesOf(editor.atCursor("references")), ElementsAre(4, 5));
}

TEST(Lsp, GoesFromTheMapOfAnLedToTheLed)
{
    Editor editor;
    editor.open("<device><card typeid='1'>\n<led-entity num='1'>\n<led type='alarm' id='1'/>\n</led-entity>\n"
                "<led-map num='1'><led-name>led-al|arm-1@card</led-name></led-map></card></device>");
    EXPECT_THAT(linesOf(editor.atCursor("definition")), ElementsAre(3));
    editor.open("<device><card typeid='1'>\n<led-entity num='1'>\n<led type='al|arm' id='1'/>\n</led-entity>\n"
                "<led-map num='1'><led-name>led-alarm-1@card</led-name></led-map></card></device>");
    EXPECT_THAT(linesOf(editor.atCursor("references")), ElementsAre(5));
}

TEST(Lsp, HasNoDefinitionOfWhatNamesNothing)
{
    Editor editor;
    editor.open(relatedAt("<maxslotnum", "2"));
    EXPECT_TRUE(editor.atCursor("definition").is_null());
    EXPECT_TRUE(editor.atCursor("references").is_null());
}

// The tree is that from before the tag was begun.
TEST(Lsp, FollowsReferencesAroundWhatIsNotWellFormed)
{
    Editor editor;
    editor.open(kRelated);
    EXPECT_THAT(editor.diagnostics(), Not(IsEmpty()));
    const Json end = {{"line", 10}, {"character", 0}};
    editor.notify("textDocument/didChange",
                  {{"textDocument", {{"uri", kUri}, {"version", 2}}},
                   {"contentChanges", {{{"range", {{"start", end}, {"end", end}}}, {"text", "<fan\n\n"}}}}});
    EXPECT_EQ(editor.diagnostics().at(0)["code"], "not-xml");
    const auto request = [&](const char *method, size_t line, size_t character) {
        return linesOf(editor.inDocument(method, {{"position", {{"line", line}, {"character", character}}}}));
    };
    EXPECT_THAT(request("definition", 3, 32), ElementsAre(14, 15));
    EXPECT_THAT(request("references", 15, 1), ElementsAre(4));
    EXPECT_THAT(request("definition", 10, 1), IsEmpty());
}

// ---- Symbols --------------------------------------------------------------------------------------------------------

std::string outlineOf(const Json &symbols, const std::string &indent = "")
{
    std::string outline;
    for (const Json &symbol : symbols)
        outline.append(indent)
            .append(symbol["name"])
            .append(symbol.contains("detail") ? " - " + symbol["detail"].get<std::string>() : "")
            .append("\n")
            .append(outlineOf(symbol.value("children", Json::array()), indent + " "));
    return outline;
}

TEST(Lsp, OutlinesADescription)
{
    Editor editor(allCapabilities());
    const std::string text =
        "<device><card typeid='0x21' name='Line card'><panel-port num='1'><port id='1'><portid>1</portid>"
        "</port><port-group id='2-3'/></panel-port></card><card/></device>";
    editor.open(text);
    const Json symbols = editor.inDocument("documentSymbol");
    EXPECT_EQ(outlineOf(symbols),
              "device\n card 0x21 - Line card\n  panel-port 1\n   port 1\n   port-group 2-3\n card\n");
    const Json card = symbols[0]["children"][0];
    EXPECT_EQ(editor.in(card["range"]), text.substr(8, text.find("<card/>") - 8));
    EXPECT_EQ(editor.in(card["selectionRange"]), "card");
}

TEST(Lsp, OutlinesWhatIsNotWellFormed)
{
    Editor editor(allCapabilities());
    editor.open("<device><card typeid='1'><panel-port num='1'><port id='1'></card><card typeid='2'");
    EXPECT_EQ(outlineOf(editor.inDocument("documentSymbol")), "device\n card 1\n  panel-port 1\n   port 1\n card 2\n");
}

TEST(Lsp, OutlinesInAListWhereTheEditorHasNoTree)
{
    Editor editor;
    editor.open("<device><card typeid='1'/></device>");
    const Json symbols = editor.inDocument("documentSymbol");
    EXPECT_EQ(outlineOf(symbols), "card 1\ndevice\n");
    EXPECT_EQ(editor.in(symbols[0]["location"]["range"]), "<card typeid='1'/>");
}

// ---- Formatting -----------------------------------------------------------------------------------------------------

std::string looselyIndented(std::string text)
{
    return text.insert(text.find("<frame"), "     ");
}

TEST(Lsp, FormatsAsTheCommandDoes)
{
    for (const std::string &text :
         {std::string("<device>\n<!-- a -->\n  <card typeid='1'/>\n\n\n</device>"),
          std::string("<device ><card /></device >"), std::string("<device>\r\n<card/>\r\n</device>\r\n"),
          std::string("<device>\n    <card/></device>\n<!-- -->\n"), looselyIndented(example())}) {
        Editor editor;
        editor.open(text);
        const auto laidOut = layOut(*DescriptionFile::parse("x", text), dcmtool::Layout::lines);
        EXPECT_EQ(editor.edited(editor.inDocument("formatting")), laidOut.text);
    }
    Editor editor;
    editor.open("<device>\n  <card/>\n</device>\n");
    EXPECT_THAT(editor.inDocument("formatting"), IsEmpty());
}

TEST(Lsp, LeavesTheOtherLinesAlone)
{
    Editor editor;
    editor.open("<device>\n  <card/>\n   <card/>\n  <card/>\n</device>\n");
    const Json edits = editor.inDocument("formatting");
    ASSERT_EQ(edits.size(), 1U);
    EXPECT_EQ(editor.in(edits[0]["range"]), "   <card/>\n");
    EXPECT_EQ(edits[0]["newText"], "  <card/>\n");
}

TEST(Lsp, SaysWhyItDoesNotFormat)
{
    for (const auto &[text, reason] :
         {std::pair("<device>", "end of"), std::pair("<a/>", "not a device description"),
          std::pair("<?xml version='1.0' encoding='ISO-8859-1'?><device/>", "only UTF-8 and ASCII can be edited")}) {
        Editor editor;
        editor.open(text);
        const Json error = editor.answerTo("textDocument/formatting", {{"textDocument", {{"uri", kUri}}}})["error"];
        EXPECT_EQ(error["code"], -32803);
        EXPECT_THAT(error["message"].get<std::string>(), HasSubstr(reason));
    }
}

// ---- While one types ------------------------------------------------------------------------------------------------

// How many places of the example are looked at; DCM_SEEDS asks for more, up to all.
size_t stepOf(size_t size)
{
    const char *wanted = std::getenv("DCM_SEEDS");
    const size_t count = wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : 200;
    return std::max<size_t>(1, size / std::max<size_t>(1, count));
}

TEST(Lsp, AnswersBehindEveryPrefixOfTheExample)
{
    const std::string text = example();
    Editor editor(allCapabilities());
    size_t completed = 0;
    size_t hovered = 0;
    size_t count = 0;
    size_t last = 0;
    editor.open("|");
    for (size_t length = 0; length <= text.size(); length += stepOf(text.size()), count++) {
        const Position begin = Lines(std::string_view(text).substr(0, last), Units::utf8).positionOf(last);
        const Json place = {{"line", begin.line}, {"character", begin.character}};
        editor.notify(
            "textDocument/didChange",
            {{"textDocument", {{"uri", kUri}, {"version", length}}},
             {"contentChanges",
              {{{"range", {{"start", place}, {"end", place}}}, {"text", text.substr(last, length - last)}}}}});
        last = length;
        const Position end = Lines(std::string_view(text).substr(0, last), Units::utf8).positionOf(last);
        const Json position = {{"position", {{"line", end.line}, {"character", end.character}}}};
        const Json items = editor.inDocument("completion", position);
        ASSERT_TRUE(items.is_array());
        completed += items.empty() ? 0 : 1;
        const Json hover = editor.inDocument("hover", position);
        hovered += hover.is_null() ? 0 : 1;
        static_cast<void>(editor.inDocument("documentSymbol"));
        static_cast<void>(editor.inDocument("definition", position));
        static_cast<void>(editor.diagnostics());
    }
    // Behind most letters there is something to say, but not in comments.
    EXPECT_GT(completed, count / 5);
    EXPECT_GT(hovered, count / 10);
}

TEST(Lsp, AnswersAfterAnyEdits)
{
    const std::string pieces[] = {"<",
                                  ">",
                                  "/",
                                  "\"",
                                  "'",
                                  " ",
                                  "=",
                                  "&",
                                  "-->",
                                  "<!--",
                                  "]]>",
                                  "<![CDATA[",
                                  "<?",
                                  "?>",
                                  "<!DOCTYPE",
                                  "<card",
                                  "</card>",
                                  "typeid",
                                  "\r",
                                  "\n",
                                  "\xC3\xA9",
                                  "0x21",
                                  "\xF0\x9F\x94\x8C",
                                  std::string(1, '\0')};
    const std::string text = kRelated;
    std::mt19937 random(3); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    const auto below = [&](size_t bound) { return random() % bound; };
    const char *wanted = std::getenv("DCM_SEEDS");
    const size_t rounds = wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : 300;
    Editor editor;
    for (size_t i = 0; i < rounds; i++) {
        if (i % 40 == 0)
            editor.open(text);
        const auto position = [&](size_t line) { return Json({{"line", line}, {"character", below(40)}}); };
        const size_t line = below(18);
        editor.notify("textDocument/didChange",
                      {{"textDocument", {{"uri", kUri}, {"version", i}}},
                       {"contentChanges",
                        {{{"range", {{"start", position(line)}, {"end", position(line + below(2))}}},
                          {"text", pieces[below(std::size(pieces))]}}}}});
        const Json place = position(below(18));
        for (const char *method : {"completion", "hover", "definition", "references", "documentSymbol", "codeAction"})
            EXPECT_FALSE(editor
                             .answerTo(std::string("textDocument/") + method,
                                       {{"textDocument", {{"uri", kUri}}},
                                        {"position", place},
                                        {"range", {{"start", place}, {"end", position(below(18))}}}})
                             .contains("error"));
        static_cast<void>(editor.diagnostics());
    }
}

} // namespace
