// Texts in incomplete documents.
#include "common/xml.h"
#include "tests/support/dcm_test.h"

#include <cstring>

using namespace dcmtest;

namespace {

constexpr dcm::Reporter reporter = {"reader"};

// Removes a text from a document, like a parser without memory for it, and restores it.
template <class Char> class WithoutText {
public:
    explicit WithoutText(Char *&place) : place_(place), text_(place) { place = nullptr; }
    ~WithoutText() { place_ = text_; }
    WithoutText(const WithoutText &) = delete;
    WithoutText &operator=(const WithoutText &) = delete;

private:
    Char *&place_;
    Char *text_;
};

} // namespace

TEST(TreeWithHoles, IsOutOfMemoryWhereAnElementHasNoName)
{
    const Element sensor("<temperature id='1'><lowthreshold>5</lowthreshold></temperature>");
    const WithoutText hole(sensor.node()->children->name);
    DcmTemperatureInfo info = {};
    uint8_t count = 0;
    int result = 0;
    const Effects effects = effectsOf([&] { result = dcmDecodeTemperatureEntity(sensor.node(), &info, &count); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(effects.messages, Messages{"[dcmDecodeTemperatureEntity:#]: out of memory."});
}

TEST(TreeWithHoles, HasNoElementOfANameWhereTheNameIsMissing)
{
    const Element element("<device/>");
    EXPECT_TRUE(dcm::isNamed(element.node(), "device"));
    const WithoutText hole(element.node()->name);
    EXPECT_FALSE(dcm::isNamed(element.node(), "device"));
    EXPECT_FALSE(dcm::isNamed(element.node(), ""));
}

TEST(TreeWithHoles, FindsTheAttributesBehindOneWithoutName)
{
    const Element element("<card type='a' mode='b'/>");
    const WithoutText hole(element.node()->properties->name);
    EXPECT_FALSE(dcm::Text::attribute(element.node(), "type", reporter));
    EXPECT_STREQ(dcm::Text::attribute(element.node(), "mode", reporter).c_str(), "b");
}

TEST(TreeWithHoles, HasAnEmptyTextWhereTheTextIsMissing)
{
    const Element element("<type>board</type>");
    const WithoutText hole(element.node()->children->content);
    EXPECT_STREQ(dcm::Text::content(element.node(), reporter).c_str(), "");
}

TEST(Text, IsFreedOnceWhenItMoves)
{
    const Element element("<type>bo<!-- -->ard</type>");
    dcm::Text text = dcm::Text::content(element.node(), reporter);
    const dcm::Text moved = std::move(text);
    EXPECT_STREQ(moved.c_str(), "board");
}

TEST(Text, OfAnAttributeMayBeADefaultOfTheDocumentType)
{
    const Answer<DcmFrameInfo> answer = queryFrame(7, "<!DOCTYPE device [<!ATTLIST frame typeid CDATA '7'>]>"
                                                      "<device><frame><maxslotnum>3</maxslotnum></frame></device>");
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.messages, Messages{});
    EXPECT_EQ(answer.info->maxSlotId, 3);
}
