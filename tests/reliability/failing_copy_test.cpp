// Descriptions in which every text must be copied, with failing allocations.
#include "tests/reliability/allocator.h"
#include "tests/reliability/failing.h"
#include "tests/reliability/queries.h"

#include <cctype>

using namespace dcmtest;

namespace {

// An element of the example, by its type id.
struct Described {
    const char *name; // of a test
    const char *element;
    const char *typeId;
    const Query &query;
};

std::ostream &operator<<(std::ostream &out, const Described &described)
{
    return out << described.name;
}

const Described kDescribed[] = {
    {"Frame", "frame", "1", kFrameQuery},
    {"SlotOfALineCard", "slot", "1", kSlotQuery},
    {"SlotOfASwitchFabric", "slot", "0x24", kSlotQuery},
    {"CardWithChips", "card", "0x0101", kCardQuery},
    {"CardWithComponents", "card", "0x0302", kCardQuery},
    {"CardWithGccPorts", "card", "0x0401", kCardQuery},
    {"CardWithFunctions", "card", "0x0501", kCardQuery},
};

// The content of that element of the example.
std::string bodyOf(const Described &described)
{
    const std::string text = readFile(example("device.xml"));
    const std::string start = std::string("<") + described.element + " typeid=\"" + described.typeId;
    const std::string end = std::string("</") + described.element + ">";
    const size_t tag = text.find(start);
    if (tag == std::string::npos)
        throw std::runtime_error("the example has no " + start);
    const size_t body = text.find('>', tag) + 1;
    return text.substr(body, text.find(end, body) - body);
}

std::string entityFor(char character)
{
    return std::string("&c") + std::to_string(static_cast<int>(character)) + ";";
}

// The same description with a comment in each text and an entity in each attribute: no text is in one node.
std::string inPieces(const std::string &xml)
{
    std::string pieces;
    bool isInTag = false;
    bool isTextWhole = true;
    char quote = '\0';
    for (size_t at = 0; at < xml.size(); at++) {
        const char character = xml[at];
        if (!isInTag && xml.compare(at, 4, "<!--") == 0) {
            at = xml.find("-->", at) + 2;
            continue;
        }
        pieces += character;
        if (!isInTag && character == '<') {
            isInTag = true;
        } else if (!isInTag && isTextWhole && std::isgraph(static_cast<unsigned char>(character)) != 0) {
            pieces += "<!-- -->";
            isTextWhole = false;
        } else if (isInTag && quote == '\0' && character == '>') {
            isInTag = false;
            isTextWhole = true;
        } else if (isInTag && quote == '\0' && character == '"') {
            quote = character;
            if (std::isalnum(static_cast<unsigned char>(xml[at + 1])) != 0)
                pieces += entityFor(xml[++at]);
        } else if (isInTag && character == quote) {
            quote = '\0';
        }
    }
    return pieces;
}

std::string entities()
{
    std::string text;
    for (char character = '0'; character <= 'z'; character++)
        if (std::isalnum(static_cast<unsigned char>(character)) != 0)
            text += "<!ENTITY c" + std::to_string(static_cast<int>(character)) + " '" + character + "'>";
    return text;
}

// A device with only this element, under the type id of the query.
std::string deviceWith(const Described &described, const std::string &body)
{
    const char *typeId = described.query.function == kCardQuery.function ? "0x0301" : "1";
    return std::string("<!DOCTYPE device [") + entities() + "]><device><" + described.element + " typeid='" + typeId +
           "'>" + body + "</" + described.element + "></device>";
}

class FailingCopyOf : public testing::TestWithParam<Described> {};

std::string nameOf(const testing::TestParamInfo<Described> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, FailingCopyOf, testing::ValuesIn(kDescribed), nameOf);

} // namespace

TEST_P(FailingCopyOf, IsNeededForTheSameRecord)
{
    const Zorconf zorconf;
    const std::string body = bodyOf(GetParam());
    zorconf.write("device.xml", deviceWith(GetParam(), body));
    const Outcome whole = ask(GetParam().query);
    zorconf.write("device.xml", deviceWith(GetParam(), inPieces(body)));
    const Outcome pieces = ask(GetParam().query);
    EXPECT_EQ(whole.result, 0) << testing::PrintToString(whole.messages);
    EXPECT_EQ(pieces.messages, whole.messages);
    EXPECT_TRUE(pieces == whole);
}

TEST_P(FailingCopyOf, FailsTheQueryOrDoesNotMatter)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", deviceWith(GetParam(), inPieces(bodyOf(GetParam()))));
    expectNoHarm(GetParam().query, Failing::once, strideOr1(7));
}
