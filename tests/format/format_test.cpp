// The reference and the schema of the format: they are complete, match the library, and are generated from the tables.
#include "tests/support/dcm_test.h"

#include "tools/format/reference.h"
#include "tools/format/schema.h"
#include "tools/format/values.h"

#include <libxml/parser.h>
#include <libxml/relaxng.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <sstream>

using namespace dcmformat;
using dcmtest::Messages;

namespace {

const std::string kSource = DCM_SOURCE_DIR;

const Tree &theTree()
{
    static const Tree tree = makeTree();
    return tree;
}

const Prose &theProse()
{
    static const Prose prose(readFile(kSource + "/docs/format/elements.txt"));
    return prose;
}

struct FreeDocument {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

Document parse(const std::string &xml)
{
    return Document(xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, XML_PARSE_NOBLANKS));
}

std::string textOf(const Document &document)
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpMemory(document.get(), &text, &size);
    const std::string xml(reinterpret_cast<const char *>(text), static_cast<size_t>(size));
    xmlFree(text);
    return xml;
}

// ---- The schema -----------------------------------------------------------------------------------------------------

class Validator {
public:
    Validator()
    {
        const std::string schema = toXml(makeSchema(theTree(), theProse()));
        xmlRelaxNGParserCtxtPtr parser = xmlRelaxNGNewMemParserCtxt(schema.data(), static_cast<int>(schema.size()));
        schema_ = xmlRelaxNGParse(parser);
        xmlRelaxNGFreeParserCtxt(parser);
    }
    ~Validator() { xmlRelaxNGFree(schema_); }
    Validator(const Validator &) = delete;
    Validator &operator=(const Validator &) = delete;

    // The errors of the schema for a document; "" if there are none.
    std::string faultsOf(const Document &document) const
    {
        std::string faults;
        xmlRelaxNGValidCtxtPtr context = xmlRelaxNGNewValidCtxt(schema_);
        xmlRelaxNGSetValidStructuredErrors(
            context, [](void *all, auto *error) { *static_cast<std::string *>(all) += error->message; }, &faults);
        const int result = xmlRelaxNGValidateDoc(context, document.get());
        xmlRelaxNGFreeValidCtxt(context);
        EXPECT_EQ(result == 0, faults.empty());
        return faults;
    }

private:
    xmlRelaxNGPtr schema_;
};

const Validator &theValidator()
{
    static const Validator validator;
    return validator;
}

std::vector<std::filesystem::path> filesIn(const std::string &folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(kSource + "/" + folder))
        if (entry.path().extension() == ".xml")
            files.push_back(entry.path());
    EXPECT_FALSE(files.empty()) << folder;
    return files;
}

TEST(Schema, AcceptsTheExamples)
{
    for (const auto &file : filesIn("examples"))
        EXPECT_EQ(theValidator().faultsOf(parse(readFile(file))), "") << file;
}

TEST(Schema, RefusesEachFaultAndAcceptsItsCorrection)
{
    for (const auto &file : filesIn("tests/format/faulty")) {
        EXPECT_NE(theValidator().faultsOf(parse(readFile(file))), "") << file;
        const auto correction = file.parent_path().parent_path() / "correct" / file.filename();
        EXPECT_EQ(theValidator().faultsOf(parse(readFile(correction))), "") << correction;
    }
}

// ---- The examples of the reference ----------------------------------------------------------------------------------

// Inserts the example of a section into those of the enclosing sections, in place of the same element or at the end.
xmlNodePtr insert(xmlNodePtr parent, const std::string &name, const std::string &xml)
{
    const Document document = parse(xml);
    xmlNodePtr root = document != nullptr ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root == nullptr || name != reinterpret_cast<const char *>(root->name)) {
        ADD_FAILURE() << "no " << name << ": " << xml;
        return nullptr;
    }
    xmlNodePtr copy = xmlDocCopyNode(root, parent->doc, 1);
    for (xmlNodePtr child = parent->children; child != nullptr; child = child->next)
        if (child->name != nullptr && name == reinterpret_cast<const char *>(child->name)) {
            xmlReplaceNode(child, copy);
            xmlFreeNode(child);
            return copy;
        }
    return xmlAddChild(parent, copy);
}

struct Composed {
    Document document;
    xmlNodePtr element; // the section
};

Composed compose(const Place &section)
{
    const std::string &example = theProse().of(section.path).example;
    if (section.parent == nullptr) {
        Document document = parse(example);
        xmlNodePtr root = xmlDocGetRootElement(document.get());
        return {std::move(document), root};
    }
    if (section.parent->parent == nullptr && section.parent->path == "device") {
        Document document = parse("<device/>");
        xmlNodePtr element = insert(xmlDocGetRootElement(document.get()), section.name, example);
        return {std::move(document), element};
    }
    Composed around = compose(*section.parent);
    xmlNodePtr element = insert(around.element, section.name, example);
    return {std::move(around.document), element};
}

uint32_t numberIn(xmlNodePtr element, const char *attribute)
{
    xmlChar *text = xmlGetProp(element, reinterpret_cast<const xmlChar *>(attribute));
    const auto number =
        text != nullptr ? static_cast<uint32_t>(std::strtoul(reinterpret_cast<char *>(text), nullptr, 0)) : 0;
    xmlFree(text);
    return number;
}

template <class Record> std::string bytesOf(const Record &record)
{
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

// The records of everything in a composed document.
struct Decoded {
    int result = 0; // that of the first query that fails
    Messages messages;
    std::string records;

    void add(int queryResult, const Messages &queryMessages, const std::string &record)
    {
        result = result != 0 ? result : queryResult;
        messages.insert(messages.end(), queryMessages.begin(), queryMessages.end());
        records += record;
    }
    template <class Record> void add(const dcmtest::Answer<Record> &answer)
    {
        add(answer.result, answer.messages, bytesOf(*answer.info));
    }
};

Decoded decode(const Composed &composed)
{
    const std::string xml = textOf(composed.document);
    Decoded decoded;
    xmlNodePtr root = xmlDocGetRootElement(composed.document.get());
    if (std::string(reinterpret_cast<const char *>(root->name)) == "panel-port") {
        const dcmtest::Zorconf zorconf;
        zorconf.write("vm-3.xml", xml);
        DcmVmPortInfo info = {};
        int result = -1;
        const dcmtest::Effects effects = dcmtest::effectsOf([&] { result = dcmVmPortInfoGet(3, &info); });
        decoded.add(result, effects.messages, bytesOf(info));
        return decoded;
    }
    for (xmlNodePtr child = root->children; child != nullptr; child = child->next) {
        const std::string name = reinterpret_cast<const char *>(child->name);
        const uint32_t typeId = numberIn(child, "typeid");
        if (name == "frame")
            decoded.add(dcmtest::queryFrame(typeId, xml));
        else if (name == "slot")
            decoded.add(dcmtest::querySlot(typeId, xml));
        else
            decoded.add(dcmtest::queryCard(typeId, numberIn(child, "mode"), xml));
    }
    return decoded;
}

// The records of elements that are decoded without a report.
std::string recordsOf(const Composed &composed)
{
    const Decoded decoded = decode(composed);
    EXPECT_EQ(decoded.messages, Messages()) << textOf(composed.document);
    EXPECT_EQ(decoded.result, 0) << textOf(composed.document);
    return decoded.records;
}

void expectCorrect(const Composed &composed)
{
    const std::string xml = textOf(composed.document);
    EXPECT_EQ(theValidator().faultsOf(parse(xml)), "") << xml;
    recordsOf(composed);
}

void setAttribute(const Composed &composed, const dcm::Attribute &attribute, const std::string &value)
{
    xmlSetProp(composed.element, reinterpret_cast<const xmlChar *>(attribute.name),
               reinterpret_cast<const xmlChar *>(value.c_str()));
}

void removeAttribute(const Composed &composed, const dcm::Attribute &attribute)
{
    xmlUnsetProp(composed.element, reinterpret_cast<const xmlChar *>(attribute.name));
}

TEST(FormatReference, HasAnExampleThatTheLibraryDecodesForEachElement)
{
    for (const Place *section : theTree().sections()) {
        SCOPED_TRACE(section->path);
        expectCorrect(compose(*section));
        for (const auto &child : section->children)
            if (!child->isSection()) {
                SCOPED_TRACE(child->path);
                Composed composed = compose(*section);
                insert(composed.element, child->name, exampleOf(*child, theProse().of(child->path)));
                expectCorrect(composed);
            }
    }
}

TEST(FormatReference, HasAnExampleThatTheLibraryDecodesForEachAttribute)
{
    for (const Place *section : theTree().sections())
        for (size_t i = 0; i < section->element->attributeCount; i++) {
            const dcm::Attribute &attribute = section->element->attributes[i];
            SCOPED_TRACE(attributeKey(*section, attribute));
            const std::string &example = theProse().of(attributeKey(*section, attribute)).example;
            Composed composed = compose(*section);
            setAttribute(composed, attribute, example);
            expectCorrect(composed);
        }
}

// ---- Defaults -------------------------------------------------------------------------------------------------------

// The value that equals the default; false if there is none.
bool valueLeftOut(const Place &place, const dcm::Content &content, std::string leftOut, std::string &value)
{
    leftOut = leftOut.substr(0, leftOut.find(':'));
    const bool isListed = content.kind == dcm::Kind::bitList || place.isList();
    value = (leftOut == "none" && isListed) || leftOut == "empty" ? "" : leftOut;
    if (value.empty() || value.find_first_not_of("0123456789") == std::string::npos)
        return true;
    if (content.kind != dcm::Kind::keyword)
        return false;
    const std::vector<std::string> words = wordsOf(*content.vocabulary);
    return std::find(words.begin(), words.end(), value) != words.end();
}

void removeNamed(xmlNodePtr parent, const std::string &name)
{
    for (xmlNodePtr child = parent->children; child != nullptr; child = child->next)
        if (child->name != nullptr && name == reinterpret_cast<const char *>(child->name)) {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
            return;
        }
}

TEST(FormatReference, DocumentsTheDefaultOfEachElement)
{
    size_t compared = 0;
    for (const Place *section : theTree().sections())
        for (const auto &child : section->children) {
            std::string value;
            if (child->isSection() || child->element->most != 1 ||
                !valueLeftOut(*child, child->element->content, theProse().of(child->path).leftOut, value))
                continue;
            SCOPED_TRACE(child->path);
            Composed given = compose(*section);
            Composed leftOut = compose(*section);
            insert(given.element, child->name, "<" + child->name + ">" + value + "</" + child->name + ">");
            removeNamed(leftOut.element, child->name);
            EXPECT_TRUE(recordsOf(given) == recordsOf(leftOut)) << value;
            compared++;
        }
    EXPECT_GT(compared, 150U);
}

TEST(FormatReference, DocumentsTheDefaultOfEachAttribute)
{
    size_t compared = 0;
    for (const Place *section : theTree().sections())
        for (size_t i = 0; i < section->element->attributeCount; i++) {
            const dcm::Attribute &attribute = section->element->attributes[i];
            std::string value;
            if (attribute.need == dcm::Need::required ||
                !valueLeftOut(*section, attribute.content, theProse().of(attributeKey(*section, attribute)).leftOut,
                              value))
                continue;
            SCOPED_TRACE(attributeKey(*section, attribute));
            Composed given = compose(*section);
            Composed leftOut = compose(*section);
            setAttribute(given, attribute, value);
            removeAttribute(leftOut, attribute);
            EXPECT_TRUE(recordsOf(given) == recordsOf(leftOut)) << value;
            compared++;
        }
    EXPECT_GE(compared, 6U);
}

// ---- Faults ---------------------------------------------------------------------------------------------------------

struct Fault {
    std::string value;
    bool makesTheQueryFail; // by the rule for its kind
};

Fault faultOf(const Place &place, const dcm::Content &content)
{
    switch (content.kind) {
    case dcm::Kind::count:
        return {std::to_string(content.limit + 1), true};
    case dcm::Kind::id:
        return {content.least > 0 ? "0" : std::to_string(rangeOf(place, content).last + 1), true};
    case dcm::Kind::keyword:
    case dcm::Kind::ledState:
        return {"no-word", true};
    case dcm::Kind::bitList:
        return {"0", true};
    case dcm::Kind::text:
        return {std::string(content.limit + 1, 'x'), false};
    default:
        return {"x", false};
    }
}

TEST(FormatReference, DocumentsTheFaultsOfElementsThatDifferFromTheirKind)
{
    size_t tried = 0;
    for (const Place *section : theTree().sections())
        for (const auto &child : section->children) {
            if (child->isSection() || !theProse().of(child->path).wrong.empty())
                continue;
            SCOPED_TRACE(child->path);
            const Place &holder = child->isList() ? *child->children.front() : *child;
            const Fault fault = faultOf(holder, holder.element->content);
            Entry entry;
            entry.example = fault.value;
            Composed composed = compose(*section);
            insert(composed.element, child->name, exampleOf(*child, entry));
            EXPECT_EQ(decode(composed).result != 0, fault.makesTheQueryFail) << fault.value;
            tried++;
        }
    EXPECT_GT(tried, 150U);
}

TEST(FormatReference, DocumentsTheFaultsOfAttributesThatDifferFromTheirKind)
{
    size_t tried = 0;
    for (const Place *section : theTree().sections())
        for (size_t i = 0; i < section->element->attributeCount; i++) {
            const dcm::Attribute &attribute = section->element->attributes[i];
            if (!theProse().of(attributeKey(*section, attribute)).wrong.empty())
                continue;
            SCOPED_TRACE(attributeKey(*section, attribute));
            const Fault fault = faultOf(*section, attribute.content);
            Composed composed = compose(*section);
            setAttribute(composed, attribute, fault.value);
            EXPECT_EQ(decode(composed).result != 0, fault.makesTheQueryFail) << fault.value;
            removeAttribute(composed, attribute);
            EXPECT_EQ(decode(composed).result != 0, attribute.need == dcm::Need::required) << "left out";
            tried++;
        }
    EXPECT_GT(tried, 40U);
}

// ---- Generated files ------------------------------------------------------------------------------------------------

constexpr char kAnew[] = "the tables or docs/format/ have changed: run ./dev reference";

TEST(FormatReference, DocumentsEverythingAndNothingElse)
{
    EXPECT_EQ(theProse().faults(theTree()), std::vector<std::string>());
}

TEST(FormatReference, NoticesWhatIsMissingSuperfluousOrIncomplete)
{
    const std::string text = readFile(kSource + "/docs/format/elements.txt");
    const auto faultsWith = [&](const std::string &from, const std::string &to) {
        std::string changed = text;
        const size_t place = changed.find(from);
        EXPECT_NE(place, std::string::npos);
        return Prose(changed.replace(place, from.size(), to)).faults(theTree());
    };
    const std::string entry = "[frame/maxslotnum]\n";
    EXPECT_EQ(faultsWith(entry, "[frame/maxslots]\n"),
              (std::vector<std::string>{"[frame/maxslotnum]: there is none",
                                        "[frame/maxslots]: there is nothing of this name"}));
    EXPECT_EQ(faultsWith("left out: 0\nexample: 22\n", "example: 22\n"),
              std::vector<std::string>{"[frame/maxslotnum]: does not say what holds where it is left out"});
    EXPECT_EQ(faultsWith("left out: 0\nexample: 22\n", "left out: 0\n"),
              std::vector<std::string>{"[frame/maxslotnum]: no example"});
    EXPECT_EQ(faultsWith("[words yes-no]\nYes or no.\n", "[words yes-no]\n"),
              std::vector<std::string>{"[words yes-no]: no meaning"});
    EXPECT_THROW(Prose("[frame]\n[frame]\n"), std::runtime_error);
}

TEST(FormatReference, IsWrittenAsTheTablesHaveIt)
{
    const std::string introduction = readFile(kSource + "/docs/format/introduction.txt");
    EXPECT_TRUE(markdownReference(theTree(), theProse(), introduction) == readFile(kSource + "/docs/format.md"))
        << kAnew;
}

TEST(Schema, IsWrittenAsTheTablesHaveIt)
{
    const dcmformat::Schema schema = makeSchema(theTree(), theProse());
    EXPECT_TRUE(toCompact(schema) == readFile(kSource + "/schema/dcm-description.rnc")) << kAnew;
}

// ---- One entry ------------------------------------------------------------------------------------------------------

TEST(FormatEntry, IsThereForEachPlaceAndAttributeUnderEachOfItsPaths)
{
    const std::vector<std::string> keys = referenceKeys(theTree());
    const auto isKey = [&](const std::string &key) { return std::find(keys.begin(), keys.end(), key) != keys.end(); };
    size_t count = 0;
    for (const Place *root : {theTree().device.get(), theTree().vm.get()})
        forEach(*root, [&](const Place &place) {
            EXPECT_TRUE(isKey(keyOfPath(theTree(), place.path))) << place.path;
            for (size_t i = 0; i < place.element->attributeCount; i++)
                EXPECT_TRUE(isKey(keyOfPath(theTree(), attributeKey(place, place.element->attributes[i]))))
                    << attributeKey(place, place.element->attributes[i]);
            count++;
        });
    EXPECT_GT(count, keys.size() / 2);
}

TEST(FormatEntry, LeadsToItselfAndSaysWhatItMeans)
{
    for (const std::string &key : referenceKeys(theTree())) {
        EXPECT_EQ(keyOfPath(theTree(), key), key);
        const std::string text = toText(referenceEntry(theTree(), theProse(), key));
        EXPECT_EQ(text.compare(0, key.size() + 2, key + "\n\n"), 0) << text;
        std::istringstream meaning(theProse().of(key).meaning);
        std::string word;
        meaning >> word;
        EXPECT_THAT(text, ::testing::HasSubstr("\n" + plainText(word))) << key;
        EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("`"))) << key;
        EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("](#"))) << key;
    }
}

TEST(FormatEntry, IsFoundByThePathAsOneWritesIt)
{
    struct Case {
        const char *path;
        const char *key;
    };
    for (const auto &[path, key] : std::initializer_list<Case>{
             {"card", "card"},
             {"/device/card", "card"},
             {"device", "device"},
             {"card/typeid", "card@typeid"},
             {"device/card@typeid", "card@typeid"},
             {"card/led-entity/led", "frame/led-entity/led"},
             {"frame/cardtypecaps/cap", "frame/cardtypecaps"},
             {"panel-port/ifindex", "panel-port/ifindex"},
             {"card/panel-port", "card/panel-port"},
             {"card/nothing", ""},
             {"card@typeid/more", ""},
             {"/", ""},
             {"", ""},
         })
        EXPECT_EQ(keyOfPath(theTree(), path), key) << path;
}

TEST(FormatEntry, IsFoundByTheEndOfAPath)
{
    EXPECT_THAT(keysOfEnd(theTree(), "maxslotnum"), ::testing::ElementsAre("frame/maxslotnum"));
    EXPECT_THAT(keysOfEnd(theTree(), "panel-port/port/phytype"),
                ::testing::ElementsAre("card/panel-port/port/phytype"));
    EXPECT_THAT(keysOfEnd(theTree(), "abbrname"), ::testing::ElementsAre("card@abbrname"));
    EXPECT_THAT(keysOfEnd(theTree(), "cap"), ::testing::Contains("frame/cardtypecaps"));
    EXPECT_THAT(keysOfEnd(theTree(), "lotnum"), ::testing::IsEmpty());
}

TEST(FormatEntry, IsBuiltIntoTheTool)
{
    EXPECT_EQ(builtInProse(), readFile(kSource + "/docs/format/elements.txt"));
}

} // namespace
