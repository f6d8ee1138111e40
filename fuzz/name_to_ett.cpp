// dcmNameToEttInfo: the input is the name of an entity. The result is compared with a second implementation.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include <dcm.h>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kLongestText = 4096;

template <size_t Size> bool isRow(const char (&table)[Size][DCM_KEYWORD_SIZE], const char *text, uint32_t &row)
{
    for (row = 0; row < Size; row++)
        if (std::string(table[row]) == text)
            return true;
    row = 0;
    return false;
}

// The identity of a name, and the number of its unknown words.
size_t split(const char *name, DcmEttInfo &info)
{
    static constexpr uint32_t kClassNumbers[DCM_ETT_CLASS_ROWS] = {26, 19, 6, 9, 12, 13, 14, 8, 24, 27, 28, 10, 29};
    char ettClass[16] = "";
    char path[64] = "";
    char unused[16] = "";
    char attach[16] = "";
    std::sscanf(name, "%15[^-]-%63[^-]-%15[^@]@%15s", ettClass, path, unused, attach);
    char parts[DCM_ETT_PATH_MAX][8] = {};
    const int count = std::sscanf(path, "%7[^/]/%7[^/]/%7s", parts[0], parts[1], parts[2]);

    info = {};
    uint32_t row = 0;
    size_t faults = 0;
    if (isRow(gDcmEttClass, ettClass, row))
        info.ettClass = kClassNumbers[row];
    else
        faults++;
    if (!isRow(gDcmEttAttachStrs, attach, info.attach))
        faults++;
    info.sysIndex = 255;
    info.pathDepth = static_cast<uint32_t>(count + 1);
    for (size_t i = 0; i < DCM_ETT_PATH_MAX; i++)
        info.path[i] = std::string(parts[i]) == "#" ? 255 : dcmfuzz::numberAt(parts[i]);
    return faults;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedText texts(kLongestText);
    static dcmfuzz::GuardedRecord<DcmEttInfo> records;
    if (size > kLongestText)
        return 0;
    const std::string text = dcmfuzz::Input(data, size).text();
    const char *name = texts.place(text);
    DcmEttInfo expected;
    const size_t faults = split(text.c_str(), expected);

    DcmEttInfo *info = records.atEnd(0xA5);
    DCM_FUZZ_CHECK(dcmNameToEttInfo(name, info) == 0);
    DCM_FUZZ_CHECK(std::memcmp(info, &expected, sizeof expected) == 0);
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == faults);
    info = records.atStart(0x5A);
    DCM_FUZZ_CHECK(dcmNameToEttInfo(name, info) == 0);
    DCM_FUZZ_CHECK(std::memcmp(info, &expected, sizeof expected) == 0);
    dcmfuzz::takeReportCount();
    return 0;
}
