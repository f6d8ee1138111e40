// The input is a device description, or controls the generator of descriptions. Each query runs twice, with the
// selected part of the tree and with the whole tree, and must have the same result: six comparisons for each input.
#include "fuzz/generator.h"
#include "fuzz/support.h"
#include "fuzz/type_ids.h"

#include <dcm.h>

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <cerrno>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

bool buildsWholeTree = false;

// The effects of a query, except for its record.
struct QueryEffects {
    int result;
    int error; // errno
    std::string reports;
};

template <class Record, class Query> QueryEffects run(bool isWhole, Record *record, const Query &query)
{
    std::memset(record, 0xA5, sizeof *record);
    buildsWholeTree = isWhole;
    errno = EXDEV;
    const int result = query(record);
    const int error = errno;
    return {result, error, dcmfuzz::takeReports()};
}

template <class Record, class Query> void compare(const Query &query)
{
    static Record part;
    static Record whole;
    const QueryEffects ofPart = run(false, &part, query);
    const QueryEffects ofWhole = run(true, &whole, query);
    DCM_FUZZ_CHECK(ofPart.result == ofWhole.result);
    DCM_FUZZ_CHECK(ofPart.error == ofWhole.error);
    DCM_FUZZ_CHECK(ofPart.reports == ofWhole.reports);
    DCM_FUZZ_CHECK(std::memcmp(&part, &whole, sizeof part) == 0);
}

void compareAll(const std::string &text)
{
    dcmfuzz::writeDescription(text.data(), text.size());
    const auto *data = reinterpret_cast<const uint8_t *>(text.data());
    const char *const file = dcmfuzz::descriptionPath();
    const dcmfuzz::TypeIds frame = dcmfuzz::findTypeIds(data, text.size(), "frame");
    const dcmfuzz::TypeIds slot = dcmfuzz::findTypeIds(data, text.size(), "slot");
    const dcmfuzz::TypeIds card = dcmfuzz::findTypeIds(data, text.size(), "card");
    for (const uint32_t other : {0U, 1U}) {
        compare<DcmFrameInfo>([&](DcmFrameInfo *info) { return dcmFrameInfoGet(file, frame.typeId + other, info); });
        compare<DcmSlotInfo>([&](DcmSlotInfo *info) { return dcmSlotInfoGet(file, slot.typeId + other, info); });
        compare<DcmCardInfo>(
            [&](DcmCardInfo *info) { return dcmCardInfoGet(file, card.typeId + other, card.mode, info); });
    }
}

} // namespace

// The target is linked with --wrap for the call of the library that parses.
extern "C" {
xmlDocPtr __real_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options);
xmlDocPtr __wrap_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options);

xmlDocPtr __wrap_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options)
{
    if (buildsWholeTree)
        xmlSAXVersion(parser->sax, 2);
    return __real_xmlCtxtReadIO(parser, read, close, context, url, encoding, options);
}
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A description begins with a printable character, a blank or a byte order mark.
    if (size > 0 && data[0] < 4) {
        dcmfuzz::Input input(data, size);
        compareAll(dcmfuzz::Generator(input).make().text);
    } else {
        compareAll(std::string(reinterpret_cast<const char *>(data), size));
    }
    return 0;
}
