// dcmStrMatch: every number in the input is an item of it, and a number from its first bytes may be one.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include <dcm.h>

#include <algorithm>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kLongestText = 4096;

std::vector<uint32_t> itemsOf(const std::string &list)
{
    std::vector<uint32_t> items;
    size_t begin = 0;
    for (;;) {
        const size_t comma = list.find(',', begin);
        items.push_back(dcmfuzz::numberAt(list.substr(begin, comma - begin).c_str()));
        if (comma == std::string::npos)
            return items;
        begin = comma + 1;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedText texts(kLongestText);
    if (size > kLongestText)
        return 0;
    dcmfuzz::Input input(data, size);
    const uint32_t value = input.byte();
    const std::string text = input.text();
    const char *list = texts.place(text);

    const std::vector<uint32_t> items = itemsOf(text);
    const size_t asked = std::min<size_t>(items.size(), 16);
    for (size_t i = 0; i < asked; i++)
        DCM_FUZZ_CHECK(dcmStrMatch(items[i], list) == 1);
    const bool isItem = std::find(items.begin(), items.end(), value) != items.end();
    DCM_FUZZ_CHECK(dcmStrMatch(value, list) == (isItem ? 1 : 0));
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == 0);
    return 0;
}
