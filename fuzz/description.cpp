// The input controls a generator, which makes a description from the library's tables. Every query reads it.
#include "fuzz/generator.h"
#include "fuzz/queries.h"

#include <cstdio>
#include <cstdlib>

using dcmfuzz::Query;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dcmfuzz::Input input(data, size);
    const dcmfuzz::Description description = dcmfuzz::Generator(input).make();
    // Prints the description for an input that the fuzzer has kept.
    if (std::getenv("DCM_FUZZ_SHOW") != nullptr)
        std::fprintf(stderr, "%s\n", description.text.c_str());
    dcmfuzz::writeDescription(description.text.data(), description.text.size());
    dcmfuzz::queryFrame(description.typeId, description.query == Query::frame);
    dcmfuzz::querySlot(description.typeId, description.query == Query::slot);
    dcmfuzz::queryCard(description.typeId, description.mode, description.query == Query::card);
    dcmfuzz::queryVm(static_cast<uint8_t>(size), description.query == Query::vm);
    return 0;
}
