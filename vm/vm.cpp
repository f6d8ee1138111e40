#include "vm/vm.h"

#include "common/console.h"
#include "common/decoder.h"
#include "common/document.h"
#include "common/paths.h"

#include <cstdio>
#include <unistd.h>

namespace dcm {

namespace {

// The state of reading a port list.
struct PortList {
    DcmVmPortInfo &info;
    uint8_t count = 0; // kept: 8 bits, so that the 257th element lands in entry 0 again
};

Result takeIfindex(Node element, PortList &list, const Reporter &reporter)
{
    return takeNumber(element, list.info.ifindex[list.count++], reporter);
}

constexpr Element kIfindex = repeated(kNumber<uint32_t>, DCM_VM_IFINDEX_MAX);

struct Ports : Table {
    static constexpr Role role = Role::vmPorts;
    static constexpr Attribute num = {"num", numberOf(8), Need::required};
    static constexpr Attribute attributes[] = {num};
    static constexpr Child<PortList> children[] = {
        {"ifindex", call<takeIfindex>, kIfindex},
    };
};

Result readPorts(DcmVmPortInfo &info, const QueryReporter &reporter)
{
    Document document;
    if (const Result parsed = document.parse(reporter); parsed != Result::ok)
        return parsed;
    if (!isNamed(document.root(), kVmName))
        return reporter.report(DCM_MESSAGE_FILE("xmlfile(%s) first tag is not panel-port."));
    return decodeVmPorts(document.root(), info, reporter);
}

} // namespace

const Element kVmElement = elementOf<Ports>;

void vmPath(const char *baseFolder, uint8_t vmId, char (&path)[kVmPathSize])
{
    std::snprintf(path, sizeof path, "%s/device/vm-%d.xml", baseFolder, vmId);
}

Result decodeVmPorts(Node root, DcmVmPortInfo &info, const QueryReporter &reporter)
{
    uint32_t num = 0;
    if (const Result read = readAttribute(root, Ports::num, num, reporter); read != Result::ok)
        return read;
    info.ifindexNum = static_cast<uint8_t>(num);
    PortList list = {info};
    return walk<Ports>(root, list, reporter);
}

int readVmPorts(const char *baseFolder, uint8_t vmId, DcmVmPortInfo &info)
{
    constexpr char function[] = "dcmVmPortInfoGet";
    char path[kVmPathSize];
    vmPath(baseFolder, vmId, path);
    if (access(path, F_OK) != 0)
        return status(DCM_REPORT(function, "dcmVmPortInfoGet vm-%d.xml is not exist.", int{vmId}));
    return status(readPorts(info, QueryReporter{{function}, path}));
}

} // namespace dcm

int dcmVmPortInfoGet(uint8_t vmId, DcmVmPortInfo *info)
{
    return dcm::readVmPorts(dcm::kBaseFolder, vmId, *info);
}

int dcmVmPortInfoShow(const char *fileName, const DcmVmPortInfo *info)
{
    std::printf("\r%s\n", dcm::kDoubleRule);
    std::printf("filename: %s \r\n", fileName != nullptr ? fileName : "(null)");
    std::printf("ifNmu: %d \r\n", info->ifindexNum); // kept: the label's spelling
    for (unsigned i = 0; i < info->ifindexNum; i++)
        std::printf("ifindex[%u]: %d \r\n", i, static_cast<int>(info->ifindex[i]));
    return std::puts(dcm::kRule);
}
