// Runs each query and each report function, so that callgrind records the calls through the decoders' tables. First
// prints their names, with the size of the record that each has on its stack.
#include "bench/cases.h"
#include "bench/descriptions.h"

#include <dcm.h>

#include <fcntl.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>

namespace {

struct Root {
    const char *function;
    size_t record;
};

constexpr Root kRoots[] = {
    {"dcmFrameInfoGet", 0},
    {"dcmSlotInfoGet", 0},
    {"dcmCardInfoGet", 0},
    {"dcmVmPortInfoGet", 0},
    {"dcmFrameInfoShow", sizeof(DcmFrameInfo)},
    {"dcmFrameInfoShowFilename", sizeof(DcmFrameInfo)},
    {"dcmFrameInfoPrint", 0},
    {"dcmSlotInfoShow", sizeof(DcmSlotInfo)},
    {"dcmSlotInfoShowFilename", sizeof(DcmSlotInfo)},
    {"dcmSlotInfoPrint", 0},
    {"dcmCardInfoShow", sizeof(DcmCardInfo)},
    {"dcmCardInfoShowFilename", sizeof(DcmCardInfo)},
    {"dcmCardInfoPrint", 0},
    {"dcmLedInfoPrint", 0},
    {"dcmLedMapPrint", 0},
    {"dcmLedCardInfoPrint", 0},
    {"dcmVmPortInfoShow", 0},
};

// Replaces the files in /etc.
std::string defaultFile;

} // namespace

// The linker wraps these calls of the library to the system.
extern "C" {

int __wrap_open(const char *path, int flags, ...);
int __wrap_access(const char *path, int mode);

// Only the library calls it, to read a file.
int __wrap_open(const char *path, int flags, ...)
{
    return openat(AT_FDCWD, std::string(path).rfind("/etc/", 0) == 0 ? defaultFile.c_str() : path, flags);
}

int __wrap_access(const char *, int)
{
    return 0;
}
}

namespace {

void runAll()
{
    const dcmbench::TemporaryFolder folder;
    const std::string example = DCM_SOURCE_DIR "/examples/device.xml";
    for (const uint32_t type : {1U, 2U})
        static_cast<void>(dcmFrameInfoShowFilename(example.c_str(), type));
    for (const uint32_t type : {1U, 2U, 3U, 4U, 5U, 6U, 0x21U, 0x22U, 0x24U})
        static_cast<void>(dcmSlotInfoShowFilename(example.c_str(), type));
    for (const uint32_t type :
         {0x0101U, 0x0102U, 0x0201U, 0x0301U, 0x0302U, 0x0303U, 0x0401U, 0x0402U, 0x0403U, 0x0501U, 0x0701U})
        static_cast<void>(dcmCardInfoShowFilename(example.c_str(), type, 0));

    using dcmbench::kTypeId;
    defaultFile = folder.write("frame.xml", dcmbench::largeFrame());
    static_cast<void>(dcmFrameInfoShow(kTypeId));
    defaultFile = folder.write("slot.xml", dcmbench::largeSlot());
    static_cast<void>(dcmSlotInfoShow(kTypeId));
    defaultFile = folder.write("card.xml", dcmbench::largeCard(dcmbench::Layout::indented));
    static_cast<void>(dcmCardInfoShow(kTypeId, 1));
    defaultFile = folder.write("vm.xml", dcmbench::largeVm());
    const auto ports = std::make_unique<DcmVmPortInfo>();
    static_cast<void>(dcmVmPortInfoGet(1, ports.get()));
    static_cast<void>(dcmVmPortInfoShow("", ports.get()));
}

} // namespace

int main()
{
    for (const Root &root : kRoots)
        std::printf("%s %zu\n", root.function, root.record);
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return EXIT_FAILURE;
    try {
        runAll();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
