#include "tests/common/vocabulary_cases.h"

namespace dcmtest {

namespace {

struct Reading {
    int result;
    uint32_t value;
    Messages messages;
};

Reading read(const Vocabulary &vocabulary, const char *keyword)
{
    Reading reading{1, untouched, {}};
    reading.messages = effectsOf([&] { reading.result = vocabulary.toValue(text(keyword), &reading.value); }).messages;
    return reading;
}

// 0 to 300, and values with the low bytes of known ones.
std::vector<uint32_t> valuesToPrint()
{
    std::vector<uint32_t> values = {511,   512,   513,        514,        65535,      65536,      65537,     65538,
                                    65542, 65544, 0x01000001, 0x7FFFFFFF, 0x80000000, 0x80000001, UINT32_MAX};
    for (uint32_t value = 0; value <= 300; value++)
        values.push_back(value);
    return values;
}

std::string expectedText(const std::vector<Keyword> &printed, uint32_t value)
{
    for (const Keyword &keyword : printed)
        if (keyword.value == value)
            return keyword.text;
    return "unknown";
}

} // namespace

void expectUnknown(const Vocabulary &vocabulary, const char *keyword, const std::string &shown)
{
    SCOPED_TRACE("'" + shown.substr(0, 60) + "'");
    const Reading reading = read(vocabulary, keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.value, untouched);
    EXPECT_EQ(reading.messages, (Messages{vocabulary.report + shown + ")."}));
}

std::vector<Vocabulary> printedAmong(const std::vector<Vocabulary> &vocabularies)
{
    std::vector<Vocabulary> printed;
    for (const Vocabulary &vocabulary : vocabularies)
        if (vocabulary.toText != nullptr)
            printed.push_back(vocabulary);
    return printed;
}

void PrintTo(const Vocabulary &vocabulary, std::ostream *out)
{
    *out << vocabulary.name;
}

std::string nameOf(const testing::TestParamInfo<Vocabulary> &parameter)
{
    return parameter.param.name;
}

TEST_P(ReadVocabulary, HasEveryKeyword)
{
    for (const Keyword &keyword : GetParam().read) {
        SCOPED_TRACE(keyword.text);
        const Reading reading = read(GetParam(), keyword.text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(reading.value, keyword.value);
        EXPECT_EQ(reading.messages, Messages{});
    }
}

TEST_P(PrintedVocabulary, HasATextForEveryValueAndUnknownForTheOthers)
{
    std::vector<const char *> texts; // compared after the last call: the texts are constant
    const Effects effects = effectsOf([&] {
        for (const uint32_t value : valuesToPrint())
            texts.push_back(GetParam().toText(value));
    });
    EXPECT_EQ(effects.messages, Messages{});
    for (size_t i = 0; i < texts.size(); i++) {
        const uint32_t value = valuesToPrint()[i];
        EXPECT_STREQ(texts[i], expectedText(GetParam().printed, value).c_str()) << value;
    }
}

TEST_P(ReadVocabulary, RefusesATextThatIsNotExactlyAKeyword)
{
    for (const char *keyword : GetParam().unknown)
        expectUnknown(GetParam(), keyword, keyword);
    for (const Keyword &keyword : GetParam().read) {
        const std::string longer = keyword.text + std::string(16, 'x');
        expectUnknown(GetParam(), longer.c_str(), longer);
    }
}

TEST_P(ReadVocabulary, RefusesAnEmptyText)
{
    expectUnknown(GetParam(), "", "");
}

TEST_P(ReadVocabulary, RefusesANullText)
{
    expectUnknown(GetParam(), nullptr, "(null)");
}

TEST_P(ReadVocabulary, ReportsATextOfAnyLengthAndContentAsItIs)
{
    expectUnknown(GetParam(), "%s%n%u 100%", "%s%n%u 100%");
    expectUnknown(GetParam(), "a\tb\nc", "a\tb\nc");
    const std::string longText(5000, 'x');
    expectUnknown(GetParam(), longText.c_str(), longText);
}

} // namespace dcmtest
