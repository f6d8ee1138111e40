#include "tests/reliability/queries.h"

#include <libxml/xmlerror.h>

#include <cstdlib>

namespace dcmtest {

namespace {

int getFrame(DcmFrameInfo *info)
{
    return dcmFrameInfoGet(nullptr, 1, info);
}

int getSlot(DcmSlotInfo *info)
{
    return dcmSlotInfoGet(nullptr, 1, info);
}

int getCard(DcmCardInfo *info)
{
    return dcmCardInfoGet(nullptr, 0x0301, 0, info);
}

int getVmPorts(DcmVmPortInfo *info)
{
    return dcmVmPortInfoGet(3, info);
}

void ignore(void *, const char *, ...) {}

template <class Record, int (*get)(Record *)> Outcome run()
{
    Guarded<Record> info;
    Outcome outcome;
    outcome.result = get(info.get());
    const auto *bytes = reinterpret_cast<const unsigned char *>(info.get());
    outcome.record.assign(bytes, bytes + sizeof(Record));
    return outcome;
}

} // namespace

const Query kFrameQuery = {"Frame", "device.xml", "dcmFrameInfoGet", run<DcmFrameInfo, getFrame>};
const Query kSlotQuery = {"Slot", "device.xml", "dcmSlotInfoGet", run<DcmSlotInfo, getSlot>};
const Query kCardQuery = {"Card", "device.xml", "dcmCardInfoGet", run<DcmCardInfo, getCard>};
const Query kVmQuery = {"Vm", "vm-3.xml", "dcmVmPortInfoGet", run<DcmVmPortInfo, getVmPorts>};

const std::vector<Query> &allQueries()
{
    static const std::vector<Query> queries = {kFrameQuery, kSlotQuery, kCardQuery, kVmQuery};
    return queries;
}

std::ostream &operator<<(std::ostream &out, const Query &query)
{
    return out << query.name;
}

Outcome ask(const Query &query)
{
    Outcome outcome;
    const Effects effects = effectsOf([&] { outcome = query.run(); }, std::string("/etc/zorconf/device/") + query.file);
    outcome.messages = effects.messages;
    return outcome;
}

ZorconfWithExamples::ZorconfWithExamples()
{
    for (const char *name : {"device.xml", "vm-3.xml"})
        write(name, readFile(example(name)));
}

SilentLibxml2::SilentLibxml2()
{
    xmlSetGenericErrorFunc(nullptr, ignore);
}

SilentLibxml2::~SilentLibxml2()
{
    xmlSetGenericErrorFunc(nullptr, nullptr);
}

#if defined(__has_feature)
#define DCM_HAS_FEATURE(feature) __has_feature(feature)
#else
#define DCM_HAS_FEATURE(feature) 0
#endif

size_t strideOr1(size_t stride)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || DCM_HAS_FEATURE(address_sanitizer) ||             \
    DCM_HAS_FEATURE(thread_sanitizer)
    return stride;
#else
    return getenv("DCM_EMULATOR") != nullptr ? 3 * stride : 1;
#endif
}

} // namespace dcmtest
