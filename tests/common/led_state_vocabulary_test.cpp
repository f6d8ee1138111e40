// The states of LEDs, whose keywords depend on the type of the LED.
#include "tests/support/dcm_test.h"

#include <algorithm>

using namespace dcmtest;

namespace {

using Words = std::vector<std::string>;

struct LedType {
    const char *name;
    uint32_t value;
    Words states;          // by value, from 0; empty: the type has no states
    const char *afterLast; // printed for the value after the last one
};

const LedType ledTypes[] = {
    {"hamaster", 0, {"default", "election", "role-master", "present"}, "default"},
    {"alarm", 1, {"default", "critical", "major", "minor", "warning"}, "default"},
    {"com", 2, {}, "unknown"},
    {"clock", 3, {}, "unknown"},
    {"system",
     4,
     {"default", "abnormal", "losconnect", "upgrade", "running", "critical", "major", "minor", "warning"},
     "default"},
    {"power", 5, {"default", "abnormal", "alarm", "present"}, "default"},
    {"stack", 6, {"default", "enable"}, "default"},
    {"stackmaster", 7, {"default", "election", "role-master", "present"}, "default"},
    {"poe", 8, {"default", "deliver"}, "default"},
    {"fan", 9, {"default", "stop", "alarm", "present"}, "default"},
    {"mcu", 10, {"default", "abnormal", "running"}, "default"},
    {"lcu", 11, {"default", "abnormal", "running"}, "default"},
    {"sfu", 12, {"default", "abnormal", "running"}, "default"},
    {"usb", 13, {"default", "copying"}, "unknown"},
    {"snmp", 14, {}, "unknown"},
    {"link", 15, {"default", "deliver"}, "default"},
    {"id", 16, {"default", "enable"}, "default"},
    {"breakout", 17, {"default", "enable"}, "default"},
    {"ponlink", 18, {"default", "deliver"}, "default"},
};

const Words everyState = {"default", "abnormal", "losconnect",  "upgrade", "running", "critical",
                          "major",   "minor",    "warning",     "alarm",   "present", "stop",
                          "enable",  "election", "role-master", "deliver", "copying"};

const uint32_t noLedTypes[] = {19, 20, 21, 255, 256, 257, 260, 65535, 65536, 65540, 0x7FFFFFFF, 0x80000000, UINT32_MAX};

constexpr uint32_t untouched = 0xDEADBEEF;

struct Reading {
    int result;
    uint32_t value;
    Messages messages;
};

Reading read(uint32_t ledType, const char *keyword)
{
    Reading reading{1, untouched, {}};
    reading.messages =
        effectsOf([&] { reading.result = dcmLedStateStr2Val(ledType, text(keyword), &reading.value); }).messages;
    return reading;
}

void expectUnknown(uint32_t ledType, const char *keyword, const std::string &shown)
{
    SCOPED_TRACE("'" + shown.substr(0, 60) + "'");
    const Reading reading = read(ledType, keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.value, untouched);
    EXPECT_EQ(reading.messages, (Messages{"[dcmLedStateStr2Val:#]: invalid dcm str(" + shown + ")."}));
}

void expectSilentFailure(uint32_t ledType, const char *keyword)
{
    SCOPED_TRACE(keyword != nullptr ? keyword : "no text");
    const Reading reading = read(ledType, keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.value, untouched);
    EXPECT_EQ(reading.messages, Messages{});
}

} // namespace

TEST(LedStateKeyword, IsReadInTheVocabularyOfTheLedsType)
{
    for (const LedType &type : ledTypes) {
        SCOPED_TRACE(type.name);
        for (size_t value = 0; value < type.states.size(); value++) {
            const std::string &state = type.states[value];
            SCOPED_TRACE(state);
            const Reading reading = read(type.value, state.c_str());
            EXPECT_EQ(reading.result, 0);
            EXPECT_EQ(reading.value, value);
            EXPECT_EQ(reading.messages, Messages{});
        }
    }
}

TEST(LedStateKeyword, OfAnotherTypeIsRefusedAndReported)
{
    for (const LedType &type : ledTypes) {
        SCOPED_TRACE(type.name);
        for (const std::string &state : everyState) {
            const bool isOwn = std::find(type.states.begin(), type.states.end(), state) != type.states.end();
            if (!type.states.empty() && !isOwn)
                expectUnknown(type.value, state.c_str(), state);
        }
    }
}

TEST(LedStateKeyword, OfALinkIsDeliverAndNotEnable)
{
    EXPECT_EQ(read(15, "deliver").value, 1U);
    expectUnknown(15, "enable", "enable");
}

TEST(LedStateKeyword, IsComparedExactly)
{
    for (const LedType &type : ledTypes) {
        if (type.states.empty())
            continue;
        SCOPED_TRACE(type.name);
        for (const char *keyword : {"Default", "DEFAULT", "default ", " default", "defaul", "defaults", "unknown", "0",
                                    "defaultabnormal", "present ", "role_master", "%s%n"}) {
            expectUnknown(type.value, keyword, keyword);
        }
        expectUnknown(type.value, "", "");
        expectUnknown(type.value, nullptr, "(null)");
        const std::string longText(5000, 'x');
        expectUnknown(type.value, longText.c_str(), longText);
    }
}

TEST(LedStateKeyword, IsRefusedWithoutAWordForATypeWithoutStates)
{
    for (const uint32_t ledType : {2U, 3U, 14U}) {
        SCOPED_TRACE(ledType);
        for (const std::string &state : everyState)
            expectSilentFailure(ledType, state.c_str());
        expectSilentFailure(ledType, "bogus");
        expectSilentFailure(ledType, "");
        expectSilentFailure(ledType, nullptr);
    }
}

TEST(LedStateKeyword, IsRefusedWithoutAWordForANumberThatIsNoLedType)
{
    for (const uint32_t ledType : noLedTypes) {
        SCOPED_TRACE(ledType);
        for (const std::string &state : everyState)
            expectSilentFailure(ledType, state.c_str());
        expectSilentFailure(ledType, "bogus");
        expectSilentFailure(ledType, nullptr);
    }
}

TEST(LedStateText, IsPrintedInTheVocabularyOfTheLedsType)
{
    std::vector<uint32_t> values = {511, 512, 513, 65535, 65536, 0x01000001, 0x7FFFFFFF, 0x80000000, UINT32_MAX};
    for (uint32_t value = 0; value <= 300; value++)
        values.push_back(value);
    const Effects effects = effectsOf([&] {
        for (const LedType &type : ledTypes) {
            SCOPED_TRACE(type.name);
            for (const uint32_t value : values) {
                std::string expected = "unknown";
                if (value < type.states.size())
                    expected = type.states[value];
                else if (value == type.states.size())
                    expected = type.afterLast;
                EXPECT_STREQ(dcmLedStateVal2Str(type.value, value), expected.c_str()) << value;
            }
        }
    });
    EXPECT_EQ(effects.messages, Messages{});
}

TEST(LedStateText, OfTheValueBehindTheLastIsTheNextTablesFirstWord)
{
    EXPECT_STREQ(dcmLedStateVal2Str(0, 4), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(0, 5), "unknown");
    EXPECT_STREQ(dcmLedStateVal2Str(1, 5), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(1, 6), "unknown");
    EXPECT_STREQ(dcmLedStateVal2Str(4, 9), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(4, 10), "unknown");
    EXPECT_STREQ(dcmLedStateVal2Str(5, 4), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(6, 2), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(8, 2), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(9, 4), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(10, 3), "default");
    EXPECT_STREQ(dcmLedStateVal2Str(13, 2), "unknown");
    EXPECT_STREQ(dcmLedStateVal2Str(13, 3), "unknown");
}

TEST(LedStateText, IsUnknownForATypeWithoutStatesAndForANumberThatIsNoLedType)
{
    for (const uint32_t value : {0U, 1U, 2U, 3U, 8U, 9U, 10U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(value);
        EXPECT_STREQ(dcmLedStateVal2Str(2, value), "unknown");
        EXPECT_STREQ(dcmLedStateVal2Str(3, value), "unknown");
        EXPECT_STREQ(dcmLedStateVal2Str(14, value), "unknown");
        for (const uint32_t ledType : noLedTypes)
            EXPECT_STREQ(dcmLedStateVal2Str(ledType, value), "unknown") << ledType;
    }
}
