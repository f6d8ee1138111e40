#include "tools/dcm/description/description_file.h"

#include "common/xml.h"

#include <gtest/gtest.h>

using namespace dcmtool;

namespace {

std::unique_ptr<DescriptionFile> parse(const std::string &text)
{
    return DescriptionFile::parse("test.xml", text);
}

// The first element of this name.
Node find(Node node, const char *name)
{
    if (dcm::isNamed(node, name))
        return node;
    for (const Node child : dcm::children(node))
        if (const Node found = find(child, name))
            return found;
    return nullptr;
}

std::string cut(const DescriptionFile &file, Span span)
{
    return file.text().substr(span.begin, span.end - span.begin);
}

std::string placeOf(const DescriptionFile &file, Span span)
{
    const Place place = file.place(span.begin);
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

TEST(DescriptionFile, KnowsThePlaceOfNamesValuesAndTexts)
{
    const auto file =
        parse("<device>\n  <card  typeid = '0x21'\n\tmode=\"a>b\" >\n    <speed> 12 </speed>\n</card></device>");
    ASSERT_EQ(file->state(), DescriptionFile::State::parsed);
    const Node card = find(file->root(), "card");
    EXPECT_EQ(cut(*file, file->tagSpan(card)), "<card  typeid = '0x21'\n\tmode=\"a>b\" >");
    EXPECT_EQ(cut(*file, file->nameSpan(card)), "card");
    EXPECT_EQ(placeOf(*file, file->nameSpan(card)), "2:4");
    EXPECT_EQ(cut(*file, file->valueSpan(card, "typeid")), "0x21");
    EXPECT_EQ(placeOf(*file, file->valueSpan(card, "typeid")), "2:20");
    EXPECT_EQ(cut(*file, file->attributeSpan(card, "mode")), "mode");
    EXPECT_EQ(placeOf(*file, file->attributeSpan(card, "mode")), "3:2");
    EXPECT_EQ(cut(*file, file->valueSpan(card, "mode")), "a>b");
    const Node speed = find(card, "speed");
    EXPECT_EQ(cut(*file, file->contentSpan(speed)), "12");
    EXPECT_EQ(placeOf(*file, file->contentSpan(speed)), "4:13");
}

TEST(DescriptionFile, PointsToTheNameWhereNothingIsWritten)
{
    const auto file = parse("<device><card typeid=''><speed/><cap> </cap></card></device>");
    const Node card = find(file->root(), "card");
    EXPECT_EQ(cut(*file, file->valueSpan(card, "typeid")), "typeid");
    EXPECT_EQ(cut(*file, file->attributeSpan(card, "mode")), "card");
    EXPECT_EQ(cut(*file, file->contentSpan(find(card, "speed"))), "speed");
    EXPECT_EQ(cut(*file, file->contentSpan(find(card, "cap"))), "cap");
}

TEST(DescriptionFile, CountsColumnsInCharacters)
{
    const auto file = parse("\xEF\xBB\xBF<device>\r\n<!-- \xE6\x97\xA5\xC3\xA9 --><frame/></device>");
    EXPECT_EQ(placeOf(*file, file->nameSpan(file->root())), "1:2");
    EXPECT_EQ(placeOf(*file, file->nameSpan(find(file->root(), "frame"))), "2:13");
    EXPECT_EQ(file->line(1), "<device>");
    EXPECT_EQ(file->line(3), "");
}

TEST(DescriptionFile, KnowsPlacesBeyondLine65535)
{
    const auto file = parse("<device>" + std::string(70000, '\n') + "  <frame\n typeid='1'/></device>");
    const Node frame = find(file->root(), "frame");
    EXPECT_EQ(placeOf(*file, file->nameSpan(frame)), "70001:4");
    EXPECT_EQ(placeOf(*file, file->valueSpan(frame, "typeid")), "70002:10");
}

TEST(DescriptionFile, KnowsPlacesInALongLine)
{
    const auto file = parse("<device><!--" + std::string(200000, ' ') + "--><frame typeid='1'/></device>");
    EXPECT_EQ(placeOf(*file, file->nameSpan(find(file->root(), "frame"))), "1:200017");
}

TEST(DescriptionFile, KnowsPlacesInOtherEncodings)
{
    const auto latin =
        parse("<?xml version='1.0' encoding='ISO-8859-1'?>\n<device><card name='\xE9\xE9'><a>1</a></card></device>");
    ASSERT_EQ(latin->state(), DescriptionFile::State::parsed);
    EXPECT_EQ(placeOf(*latin, latin->nameSpan(find(latin->root(), "a"))), "2:26");
    EXPECT_EQ(cut(*latin, latin->valueSpan(find(latin->root(), "card"), "name")), "\xC3\xA9\xC3\xA9");

    // Each of these bytes takes three in UTF-8.
    const auto windows = parse("<?xml version='1.0' encoding='windows-1252'?>\n<device><!--" +
                               std::string(20000, '\x80') + "--><a/></device>");
    ASSERT_EQ(windows->state(), DescriptionFile::State::parsed);
    EXPECT_EQ(placeOf(*windows, windows->nameSpan(find(windows->root(), "a"))), "2:20017");

    std::string wide = "\xFF\xFE";
    for (const char byte : std::string("<?xml version='1.0' encoding='UTF-16'?><device>\n<slot/></device>")) {
        wide += byte;
        wide += '\0';
    }
    const auto utf16 = parse(wide);
    ASSERT_EQ(utf16->state(), DescriptionFile::State::parsed);
    EXPECT_EQ(placeOf(*utf16, utf16->nameSpan(find(utf16->root(), "slot"))), "2:2");
}

TEST(DescriptionFile, GivesWhatAnEntityBringsThePlaceOfItsReference)
{
    const auto file =
        parse("<!DOCTYPE device [<!ENTITY e '<speed>1</speed>'>]>\n<device><card>&e;</card><slot/></device>");
    ASSERT_EQ(file->state(), DescriptionFile::State::parsed);
    EXPECT_EQ(placeOf(*file, file->nameSpan(find(file->root(), "card"))), "2:10");
    EXPECT_EQ(placeOf(*file, file->nameSpan(find(file->root(), "slot"))), "2:26");
}

TEST(DescriptionFile, SaysWhereAFileIsNoXml)
{
    const auto file = parse("<device>\n  <card>\n</device>\n");
    EXPECT_EQ(file->state(), DescriptionFile::State::notXml);
    EXPECT_EQ(file->fault(), "Opening and ending tag mismatch: card line 2 and device");
    EXPECT_EQ(placeOf(*file, file->faultSpan()), "3:10");
    EXPECT_EQ(parse("")->fault(), "Document is empty");
    EXPECT_EQ(parse("no xml")->state(), DescriptionFile::State::notXml);
}

TEST(DescriptionFile, SaysWhyAFileCannotBeRead)
{
    const auto file = DescriptionFile::open("/nowhere/at/all.xml");
    EXPECT_EQ(file->state(), DescriptionFile::State::unreadable);
    EXPECT_EQ(file->fault(), "No such file or directory");
}

TEST(DescriptionFile, RefusesEntitiesThatExpandWithoutEnd)
{
    std::string text = "<!DOCTYPE device [<!ENTITY a 'aaaaaaaaaa'>";
    for (char name = 'b'; name < 'k'; name++) {
        text += std::string("<!ENTITY ") + name + " '";
        for (int i = 0; i < 10; i++)
            text += std::string("&") + static_cast<char>(name - 1) + ";";
        text += "'>";
    }
    EXPECT_NE(parse(text + "]><device>&j;</device>")->state(), DescriptionFile::State::parsed);
}

TEST(DescriptionFile, ListsTypesInDocumentOrder)
{
    const auto file =
        parse("<device><slot typeid='1,0x12'/><frame typeid='3'/><other/><card typeid='2' mode='1'/><slot/></device>");
    const std::vector<DescribedType> types = file->types();
    ASSERT_EQ(types.size(), 4U);
    EXPECT_EQ(types[0].kind, RecordKind::slot);
    EXPECT_EQ(types[0].typeIds, (std::vector<uint32_t>{1, 18}));
    EXPECT_EQ(types[1].kind, RecordKind::frame);
    EXPECT_EQ(types[1].typeIds, std::vector<uint32_t>{3});
    EXPECT_EQ(types[2].kind, RecordKind::card);
    EXPECT_EQ(types[2].mode, 1U);
    EXPECT_TRUE(types[3].typeIds.empty());
    EXPECT_EQ(parse("<panel-port num='1'/>")->types().at(0).kind, RecordKind::vm);
    EXPECT_TRUE(parse("<other/>")->types().empty());
}

TEST(DescriptionFile, DecodesWithTheMessagesOfTheQuery)
{
    const auto file =
        parse("<device><card typeid='1' name='c'/><card typeid='2' mode='1'><cpu-entity/></card></device>");
    const std::vector<DescribedType> types = file->types();
    DcmCardInfo card;
    EXPECT_TRUE(file->decode(types[0], card).isDecoded);
    EXPECT_EQ(card.type, 1);
    EXPECT_EQ(std::string(card.name), "c");
    const Outcome failed = file->decode(types[1], card);
    EXPECT_FALSE(failed.isDecoded);
    ASSERT_EQ(failed.messages.size(), 1U);
    EXPECT_EQ(failed.messages[0].function, "dcmCardInfoGet");
    EXPECT_EQ(failed.messages[0].text, "xmlfile(test.xml) card decode cpu-entity failed, required num prop.");
    EXPECT_EQ(card.mode, 1);
}

TEST(DescriptionFile, LeavesOutTheContentThatNobodyWants)
{
    const std::string text = "<device><card typeid='1' name='a'><led-map num='2'><led-name>x<!-- --></led-name>&amp;"
                             "<![CDATA[y]]></led-map></card><other><b/></other>"
                             "<card typeid='2'><cpu-entity num='1'><cpu id='1'/></cpu-entity></card></device>";
    const auto file =
        DescriptionFile::parse("test.xml", text, [](const DescribedType &type) { return type.typeIds[0] == 2; });
    const std::vector<DescribedType> types = file->types();
    ASSERT_EQ(types.size(), 2U);
    EXPECT_EQ(types[0].element->children, nullptr);
    DcmCardInfo card;
    EXPECT_TRUE(file->decode(types[0], card).isDecoded);
    EXPECT_EQ(std::string(card.name), "a");
    EXPECT_TRUE(file->decode(types[1], card).isDecoded);
    EXPECT_EQ(card.cpu[0].id, 1);
    EXPECT_NE(find(file->root(), "b"), nullptr);
    const auto whole = parse(text);
    EXPECT_EQ(placeOf(*file, file->nameSpan(types[1].element)),
              placeOf(*whole, whole->nameSpan(whole->types().at(1).element)));

    const auto torn = DescriptionFile::parse("test.xml", "<device><card typeid='1'><a></b></card></device>",
                                             [](const DescribedType &) { return false; });
    EXPECT_EQ(torn->state(), DescriptionFile::State::notXml);
}

} // namespace
