#include "bench/cases.h"

#include "bench/descriptions.h"
#include "vm/vm.h"

#include <dcm.h>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace dcmbench {

namespace {

constexpr uint32_t kMode = 1; // of all generated cards

Case frameCase(const std::string &name, const std::string &file, uint32_t typeId, const Limits &limits)
{
    return {name, file, limits, [file, typeId] {
                static DcmFrameInfo frame;
                return dcmFrameInfoGet(file.c_str(), typeId, &frame);
            }};
}

Case slotCase(const std::string &name, const std::string &file, uint32_t typeId, const Limits &limits)
{
    return {name, file, limits, [file, typeId] {
                static DcmSlotInfo slot;
                return dcmSlotInfoGet(file.c_str(), typeId, &slot);
            }};
}

Case cardCase(const std::string &name, const std::string &file, uint32_t typeId, uint32_t mode, const Limits &limits)
{
    return {name, file, limits, [file, typeId, mode] {
                static DcmCardInfo card;
                return dcmCardInfoGet(file.c_str(), typeId, mode, &card);
            }};
}

// The path of a port list is BASE-FOLDER/device/vm-ID.xml.
Case vmCase(const std::string &name, const std::string &baseFolder, const std::string &file, uint8_t id,
            const Limits &limits)
{
    return {name, file, limits, [baseFolder, id] {
                static DcmVmPortInfo ports;
                return dcm::readVmPorts(baseFolder.c_str(), id, ports);
            }};
}

// Discards standard output during its lifetime.
class DiscardedOutput {
public:
    DiscardedOutput() : saved_(dup(STDOUT_FILENO))
    {
        std::fflush(stdout);
        static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
    }
    ~DiscardedOutput()
    {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
    DiscardedOutput(const DiscardedOutput &) = delete;
    DiscardedOutput &operator=(const DiscardedOutput &) = delete;

private:
    int saved_;
};

// A type without a card.
Case cardCaseInVain(const std::string &name, const std::string &file, const Limits &limits)
{
    return {name, file, limits, [file] {
                static DcmCardInfo card;
                const DiscardedOutput discarded;
                return dcmCardInfoGet(file.c_str(), 0xFFFF, 0, &card) == -1 ? 0 : -1;
            }};
}

// The queries of a process that starts.
Case bootCase(const std::string &name, const std::string &file)
{
    constexpr uint32_t frames[] = {1, 2};
    constexpr uint32_t slots[] = {1, 2, 3, 4, 5, 6, 0x12, 0x21, 0x22, 0x24, 0x25};
    constexpr uint32_t cards[] = {0x0101, 0x0102, 0x0201, 0x0301, 0x0302, 0x0303,
                                  0x0401, 0x0402, 0x0403, 0x0501, 0x0701};
    std::vector<std::function<int()>> queries;
    for (const uint32_t type : frames)
        queries.push_back(frameCase("", file, type, kBoot).query);
    for (const uint32_t type : slots)
        queries.push_back(slotCase("", file, type, kBoot).query);
    for (const uint32_t type : cards)
        queries.push_back(cardCase("", file, type, 0, kBoot).query);
    queries.push_back(cardCase("", file, 0x0402, 1, kBoot).query);
    const auto all = [queries] {
        int result = 0;
        for (const auto &query : queries)
            result |= query();
        return result;
    };
    return {name, file, kBoot, all, static_cast<unsigned>(queries.size())};
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
    const size_t size = fileSize(file);
    const Limits &limits = count < 15          ? kWhole
                           : size >= 4'900'000 ? kFifteenthOf5Megabytes
                           : size >= 490'000   ? kFifteenthOfHalfAMegabyte
                                               : kFifteenth;
    return cardCase(name, file, typeId, kMode, limits);
}

std::vector<Case> standardCases(const TemporaryFolder &folder)
{
    const std::string example = DCM_SOURCE_DIR "/examples/device.xml";
    const std::string exampleVm = folder.write("example/device/vm-3.xml", [] {
        std::ifstream stream(DCM_SOURCE_DIR "/examples/vm-3.xml", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }());
    std::vector<Case> cases = {
        frameCase("example: frame 1, a quarter", example, 1, kQuarter),
        frameCase("example: frame 2", example, 2, kFifteenth),
        slotCase("example: slot 2", example, 2, kFifteenth),
        cardCase("example: card 0x0101", example, 0x0101, 0, kFifteenth),
        cardCase("example: card 0x0701, the last", example, 0x0701, 0, kFifteenth),
        cardCaseInVain("example: a card that it lacks", example, kFifteenth),
        bootCase("example: 25 queries, a boot", example),
        vmCase("example: VM 3", folder.path() + "/example", exampleVm, 3, {0, 0, 1.00}),
        cardCase("one large card", folder.write("card.xml", largeCard(Layout::indented)), kTypeId, 1),
        cardCase("one large card, no blanks", folder.write("compact.xml", largeCard(Layout::compact)), kTypeId, 1),
        frameCase("one large frame", folder.write("frame.xml", largeFrame()), kTypeId, kWhole),
        slotCase("one large slot", folder.write("slot.xml", largeSlot()), kTypeId, kWhole),
        vmCase("one large VM", folder.path() + "/large", folder.write("large/device/vm-7.xml", largeVm()), 7, kWhole),
    };
    for (const uint32_t count : {20U, 200U, 2000U}) {
        const std::string many = std::to_string(count) + " cards";
        const std::string file = folder.write(many + ".xml", ordinaryCards(count));
        cases.push_back(cardCase(many + ", the first", file, kTypeId, count));
        cases.push_back(cardCase(many + ", the middle one", file, kTypeId + count / 2, count));
        cases.push_back(cardCase(many + ", the last", file, kTypeId + count - 1, count));
        cases.push_back(cardCaseInVain(many + ", none", file, cases.back().limits));
    }
    return cases;
}

void parseAndFree(const Case &one)
{
    for (unsigned i = 0; i < one.parses; i++)
        xmlFreeDoc(xmlParseFile(one.file.c_str()));
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
