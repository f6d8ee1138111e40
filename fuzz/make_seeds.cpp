// Writes the seeds for fuzzing, one file each, into a folder for each target: the frames, slots and cards of the
// examples, the descriptions in the tests, and for each element and attribute of the library's tables a small
// description in which it is correct, one in which it is missing, and one in which it is faulty.
//
//     make_seeds SOURCE-FOLDER SEED-FOLDER
#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/words.h"
#include "vm/vm.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

fs::path seedFolder;
std::set<std::string> written;

void writeSeed(const std::string &target, const std::string &content)
{
    if (!written.insert(target + '\n' + content).second)
        return;
    fs::create_directories(seedFolder / target);
    std::ofstream file(seedFolder / target / (std::to_string(written.size()) + ".txt"), std::ios::binary);
    file << content;
    if (!file.flush())
        throw std::runtime_error("cannot write below " + seedFolder.string());
}

std::string readFile(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return content.str();
}

std::string device(const std::string &content)
{
    return "<device>" + content + "</device>";
}

std::string withType1(const std::string &name, const std::string &content)
{
    std::string xml = "<" + name;
    xml.append(" typeid='1'>").append(content).append("</").append(name).append(">");
    return device(xml);
}

// ---- The examples ---------------------------------------------------------------------------------------------------

void cutExample(const fs::path &path)
{
    xmlDocPtr document = xmlParseFile(path.c_str());
    if (document == nullptr)
        throw std::runtime_error("cannot read " + path.string());
    for (xmlNodePtr node = xmlDocGetRootElement(document)->children; node != nullptr; node = node->next) {
        const std::string name = reinterpret_cast<const char *>(node->name);
        if (name != dcm::kFrameName && name != dcm::kSlotName && name != dcm::kCardName)
            continue;
        xmlBufferPtr buffer = xmlBufferCreate();
        xmlNodeDump(buffer, document, node, 0, 0);
        writeSeed(name, device(reinterpret_cast<const char *>(xmlBufferContent(buffer))));
        xmlBufferFree(buffer);
    }
    xmlFreeDoc(document);
}

// ---- The tests ------------------------------------------------------------------------------------------------------

// The texts of a C++ source: adjacent literals make one text, with a "1" for anything else between them.
std::vector<std::string> textsOf(const std::string &source)
{
    std::vector<std::string> texts;
    std::string text;
    std::string between; // the source since the last literal
    const auto flush = [&] {
        if (!text.empty())
            texts.push_back(text);
        text.clear();
    };
    const auto append = [&](const std::string &literal) {
        const size_t first = between.find_first_not_of(" \n");
        const bool isJoined = first == std::string::npos;
        const bool isAdded = !isJoined && between[first] == '+' && between.find_first_of(";{}") == std::string::npos;
        if (!isJoined && !isAdded)
            flush();
        if (isAdded && between.find_first_not_of(" \n+") != std::string::npos)
            text += '1';
        text += literal;
        between.clear();
    };
    for (size_t at = 0; at < source.size();) {
        if (source.compare(at, 2, "//") == 0) {
            at = source.find('\n', at);
        } else if (source.compare(at, 3, "R\"(") == 0) {
            const size_t end = source.find(")\"", at);
            append(source.substr(at + 3, end - at - 3));
            at = end == std::string::npos ? end : end + 2;
        } else if (source[at] == '\'' && at > 0 && std::isalnum(static_cast<unsigned char>(source[at - 1])) == 0) {
            at += source[at + 1] == '\\' ? 4 : 3;
        } else if (source[at] == '"') {
            std::string literal;
            for (at++; at < source.size() && source[at] != '"'; at++) {
                if (source[at] == '\\')
                    literal += source[++at] == 'n' ? '\n' : source[at];
                else
                    literal += source[at];
            }
            append(literal);
            at++;
        } else {
            between += source[at++];
        }
    }
    flush();
    return texts;
}

void takeTests(const fs::path &folder, const std::vector<std::string> &targets)
{
    std::vector<fs::path> paths(fs::directory_iterator(folder), {});
    for (const fs::path &path : paths) {
        if (path.extension() != ".cpp")
            continue;
        for (const std::string &text : textsOf(readFile(path))) {
            const size_t begin = text.find_first_not_of(" \n");
            if (begin == std::string::npos || text[begin] != '<' || text.find('>') == std::string::npos)
                continue;
            const bool isWhole = text.compare(begin, 2, "<?") == 0 || text.compare(begin, 2, "<!") == 0 ||
                                 text.compare(begin, 7, "<device") == 0 || text.compare(begin, 11, "<panel-port") == 0;
            for (const std::string &target : targets)
                writeSeed(target, isWhole || target == "vm" ? text : withType1(target, text));
        }
    }
}

// ---- The tables -----------------------------------------------------------------------------------------------------

std::string rightValue(const dcm::Content &content)
{
    switch (content.kind) {
    case dcm::Kind::none:
        return "";
    case dcm::Kind::keyword:
        return dcmtool::wordsOf(*content.vocabulary).front();
    case dcm::Kind::ledState:
        return "default";
    case dcm::Kind::numberList:
        return "1,2";
    case dcm::Kind::text:
        return std::string(content.limit, 'x');
    case dcm::Kind::ledName:
        return "led-system-1@slot1/#";
    case dcm::Kind::source:
        return "src-1/2";
    default:
        return "1";
    }
}

std::string faultyValue(const dcm::Content &content)
{
    switch (content.kind) {
    case dcm::Kind::count:
        return std::to_string(content.limit + 1);
    case dcm::Kind::id:
        // Without a limit, it may be up to the count, which is 1.
        return std::to_string(std::max<size_t>(content.limit, 1) + 1);
    case dcm::Kind::bitList:
        return "1," + std::to_string(content.limit + 1);
    case dcm::Kind::numberList:
        return "1,,2";
    case dcm::Kind::typeIds:
        return "2";
    case dcm::Kind::text:
        return std::string(content.limit + 1, 'x');
    default:
        return "?";
    }
}

enum class Fault { none, missing, faulty };

std::string opening(const std::string &name, const dcm::Element &element, bool withOptional, size_t at = SIZE_MAX,
                    Fault fault = Fault::none)
{
    std::string xml = "<" + name;
    for (size_t i = 0; i < element.attributeCount; i++) {
        const dcm::Attribute &attribute = element.attributes[i];
        const bool isHere = i == at;
        if ((isHere && fault == Fault::missing) || (!isHere && !withOptional && attribute.need == dcm::Need::optional))
            continue;
        xml += std::string(" ") + attribute.name + "=\"" +
               (isHere && fault == Fault::faulty ? faultyValue(attribute.content) : rightValue(attribute.content)) +
               "\"";
    }
    return xml + ">";
}

// `before` and `behind` are the text around the element in its file.
void takeElement(const std::string &target, const std::string &name, const dcm::Element &element,
                 const std::string &before, const std::string &behind)
{
    const std::string closing = "</" + name + ">";
    const auto write = [&](const std::string &xml) { writeSeed(target, before + xml + behind); };
    const std::string content = rightValue(element.content);
    const std::string right = opening(name, element, false) + content + closing;
    write(right);
    // More often than any array has entries and 8 bits can count.
    std::string repeated;
    for (int i = 0; i < 260; i++)
        repeated += right;
    write(right + right);
    write(repeated);
    write(opening(name, element, true) + content + closing);
    if (element.content.kind != dcm::Kind::none)
        write(opening(name, element, false) + faultyValue(element.content) + closing);
    for (size_t i = 0; i < element.attributeCount; i++)
        for (const Fault fault : {Fault::none, Fault::missing, Fault::faulty})
            write(opening(name, element, false, i, fault) + content + closing);
    for (size_t i = 0; i < element.childCount; i++)
        takeElement(target, element.children[i].name, *element.children[i].element,
                    before + opening(name, element, false), closing + behind);
}

void takeMessages()
{
    const auto message = [](const std::string &content) {
        return "Content-Length: " + std::to_string(content.size()) + "\r\n\r\n" + content;
    };
    const std::string document = R"("textDocument":{"uri":"a","version":1)";
    const std::string place = R"({"line":0,"character":20})";
    std::string stream = message(R"({"method":"textDocument/didOpen","params":{)" + document +
                                 R"(,"text":"<device><card typeid='1' mod='2'><portt>1</portt></card></device>"}}})");
    writeSeed("lsp", stream);
    for (const char *method :
         {"hover", "completion", "definition", "references", "documentSymbol", "codeAction", "formatting"})
        writeSeed("lsp", stream + message(R"({"id":1,"method":"textDocument/)" + std::string(method) +
                                          R"(","params":{)" + document + R"(},"position":)" + place +
                                          R"(,"range":{"start":)" + place + R"(,"end":)" + place + "}}}"));
    writeSeed("lsp", stream + message(R"({"method":"textDocument/didChange","params":{)" + document +
                                      R"(},"contentChanges":[{"range":{"start":)" + place + R"(,"end":)" + place +
                                      R"(},"text":"<"}]}})"));
    writeSeed("lsp", message(R"({"id":"x","method":"shutdown"})") + message(R"({"method":"exit"})"));
    writeSeed("lsp", std::string("\x01", 1) + std::string(200, '\x07'));
}

void takeTexts()
{
    for (const char *list : {"", "1", "1,3", "1-4,6,9-12", "5-5", "1,", "3-", "01", "1--3", "3-1", "64", "1-007"})
        writeSeed("str2bitlist", std::string("\x08\x01\x40") + '\0' + list);
    for (const char *list : {"", "1,2", "3,0,4", "0x10 0x20", "1,,2", "010;7", "4294967296,1", "-1"})
        writeSeed("str2array", std::string("\x08") + '\0' + list);
    for (const char *list : {"", "1,0x10", "1-3", "010,8", " 7,+7", "-1,4294967295", ","})
        writeSeed("strmatch", std::string("\x10") + list);
    for (const std::string &bits : {std::string(), std::string("\x80"), std::string("\xC0\x01"), std::string(8, '\xFF'),
                                    std::string(64, '\xAA'), std::string(160, '\xFF')})
        writeSeed("bitlist2str", std::string("\x10") + '\0' + bits);
    for (const char *name : {"port-1/2/#-x@card", "fan-#-a@sys", "led-1-a@nowhere", "-", "cpu-0x10/010-b@slot", "cpu"})
        writeSeed("name-to-ett", name);
    for (const char *name : {"led-system-1@slot3/1\nsrc-3/1", "led-fan-2@fan#/#\nsrc--1/99999999999",
                             "led-blink-1@sys0/0\n", "led-power-1@power#/#", "led-usb-0x1@card", "led-id-1@sys/2"})
        writeSeed("led-name", name);
}

} // namespace

int main(int argumentCount, char **arguments)
try {
    if (argumentCount != 3)
        throw std::runtime_error("usage: make_seeds SOURCE-FOLDER SEED-FOLDER");
    const fs::path source = arguments[1];
    seedFolder = arguments[2];
    fs::remove_all(seedFolder);

    cutExample(source / "examples/device.xml");
    writeSeed("vm", readFile(source / "examples/vm-3.xml"));
    for (const fs::directory_entry &file : fs::directory_iterator(source / "tests/tool/corpus"))
        writeSeed("check", readFile(file.path()));
    for (const std::string mark : {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"})
        for (const std::string behind : {"", "<x/>", "<?xml version='1.0' encoding='ISO-8859-1'?><x/>"})
            writeSeed("check", mark + behind);
    std::string wide = "\xFF\xFE";
    for (const char byte : withType1("card", "<!-- dcm-check: allow octal-number: x -->"))
        wide.append(1, byte).append(1, '\0');
    writeSeed("check", wide);
    for (const char *target : {"frame", "slot", "card", "vm"})
        takeTests(source / "tests" / target, {target});
    takeTests(source / "tests/led", {"frame", "card"});
    takeElement("frame", dcm::kFrameName, dcm::kFrameElement, "<device>", "</device>");
    takeElement("slot", dcm::kSlotName, dcm::kSlotElement, "<device>", "</device>");
    takeElement("card", dcm::kCardName, dcm::kCardElement, "<device>", "</device>");
    takeElement("vm", dcm::kVmName, dcm::kVmElement, "", "");
    takeTexts();
    takeMessages();
    // Each byte is a choice, so that any bytes are a valid seed.
    for (unsigned kind = 0; kind < 4; kind++)
        for (unsigned length : {16U, 64U, 256U, 1024U}) {
            std::string choices(1, static_cast<char>(kind));
            for (unsigned i = 0, state = kind + 1; i < length; i++) {
                state = state * 1103515245U + 12345U;
                choices += static_cast<char>(state >> 16);
            }
            writeSeed("description", choices);
        }
    return 0;
} catch (const std::exception &error) {
    std::fprintf(stderr, "make_seeds: %s\n", error.what());
    return 1;
}
