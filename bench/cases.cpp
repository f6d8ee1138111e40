#include "bench/cases.h"

#include "bench/descriptions.h"
#include "vm/vm.h"

#include <dcm.h>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace dcmbench {

namespace {

constexpr uint32_t kMode = 1; // of all cards that are made

Case frameCase(const std::string &name, const std::string &file, uint32_t typeId, double limit)
{
    return {name, file, limit, [file, typeId] {
                static DcmFrameInfo frame;
                return dcmFrameInfoGet(file.c_str(), typeId, &frame);
            }};
}

Case slotCase(const std::string &name, const std::string &file, uint32_t typeId, double limit)
{
    return {name, file, limit, [file, typeId] {
                static DcmSlotInfo slot;
                return dcmSlotInfoGet(file.c_str(), typeId, &slot);
            }};
}

Case cardCase(const std::string &name, const std::string &file, uint32_t typeId, uint32_t mode, double limit)
{
    return {name, file, limit, [file, typeId, mode] {
                static DcmCardInfo card;
                return dcmCardInfoGet(file.c_str(), typeId, mode, &card);
            }};
}

// A port list lies at DEVICE-FOLDER/vm-ID.xml below a base folder.
Case vmCase(const std::string &name, const std::string &baseFolder, const std::string &file, uint8_t id, double limit)
{
    return {name, file, limit, [baseFolder, id] {
                static DcmVmPortInfo ports;
                return dcm::readVmPorts(baseFolder.c_str(), id, ports);
            }};
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "dcm-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("cannot make a temporary folder");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string &name, const std::string &text) const
{
    const std::filesystem::path path = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary);
    if (!stream.write(text.data(), static_cast<std::streamsize>(text.size())).flush())
        throw std::runtime_error("cannot write " + path.string());
    return path.string();
}

Case cardCase(const std::string &name, const std::string &file, uint32_t typeId, size_t count)
{
    return cardCase(name, file, typeId, kMode, count >= 20 ? kTwentiethLimit : kWholeLimit);
}

std::vector<Case> standardCases(const TemporaryFolder &folder)
{
    const std::string example = DCM_SOURCE_DIR "/examples/device.xml";
    const std::string exampleVm = folder.write("example/device/vm-3.xml", [] {
        std::ifstream stream(DCM_SOURCE_DIR "/examples/vm-3.xml", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }());
    std::vector<Case> cases = {
        frameCase("example: frame 1", example, 1, kWholeLimit),
        slotCase("example: slot 2", example, 2, kWholeLimit),
        cardCase("example: card 0x0101", example, 0x0101, 0, kWholeLimit),
        cardCase("example: card 0x0701, the last", example, 0x0701, 0, kWholeLimit),
        vmCase("example: VM 3", folder.path() + "/example", exampleVm, 3, 0),
        cardCase("one large card", folder.write("card.xml", largeCard(Layout::indented)), kTypeId, 1),
        cardCase("one large card, no blanks", folder.write("compact.xml", largeCard(Layout::compact)), kTypeId, 1),
        frameCase("one large frame", folder.write("frame.xml", largeFrame()), kTypeId, kWholeLimit),
        slotCase("one large slot", folder.write("slot.xml", largeSlot()), kTypeId, kWholeLimit),
        vmCase("one large VM", folder.path() + "/large", folder.write("large/device/vm-7.xml", largeVm()), 7,
               kWholeLimit),
    };
    for (const uint32_t count : {20U, 200U, 2000U}) {
        const std::string many = std::to_string(count) + " cards";
        const std::string file = folder.write(many + ".xml", ordinaryCards(count));
        cases.push_back(cardCase(many + ", the first", file, kTypeId, count));
        cases.push_back(cardCase(many + ", the middle one", file, kTypeId + count / 2, count));
        cases.push_back(cardCase(many + ", the last", file, kTypeId + count - 1, count));
    }
    return cases;
}

void parseAndFree(const std::string &file)
{
    xmlFreeDoc(xmlParseFile(file.c_str()));
}

size_t fileSize(const std::string &file)
{
    return static_cast<size_t>(std::filesystem::file_size(file));
}

void check(const std::vector<Case> &cases)
{
    for (const Case &one : cases)
        if (one.query() != 0)
            throw std::runtime_error("the query \"" + one.name + "\" failed");
}

void tidyHeap()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace dcmbench
