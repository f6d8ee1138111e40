#include "tools/dcm/records/inner_port.h"
#include "tools/dcm/show/pages.h"
#include "tools/dcm/show/parts.h"

#include <algorithm>
#include <cstdio>

namespace dcmtool {

namespace {

struct InnerPort {
    std::string peer; // "all", "7": the slot at the other end, or the id of a port to the fabric
    uint32_t number;  // of the peer; 0: all
    const DcmInnerIfInfo *info;
};

std::string nameOf(const DcmInnerIfInfo &port)
{
    return recordOf(port)["ifName"].words();
}

// "vsync." of "vsync.107", the name that a group generates for port 107; empty for another name.
std::string prefixOf(const DcmInnerIfInfo &port)
{
    const std::string name = nameOf(port);
    const std::string number = "." + std::to_string(port.portId);
    const bool isMade =
        name.size() > number.size() && name.compare(name.size() - number.size(), number.size(), number) == 0;
    return isMade ? name.substr(0, name.size() - number.size() + 1) : "";
}

bool areFolded(const InnerPort &one, const InnerPort &next)
{
    return next.number == one.number + 1 && one.number != 0 && one.info->portId + 1 == next.info->portId &&
           areEqual(recordOf(*one.info), recordOf(*next.info), {"portId", "ifName"}) &&
           (nameOf(*one.info).empty() ? nameOf(*next.info).empty()
                                      : !prefixOf(*one.info).empty() && prefixOf(*one.info) == prefixOf(*next.info));
}

Table portTable(const char *peer, const std::vector<InnerPort> &ports)
{
    Table table = {{{peer}, {"port"}, {"kind"}, {"for"}, {"driver"}, {"mode"}, {"at"}, {"name"}}};
    const auto groups =
        groupAdjacent(ports.size(), [&ports](size_t one, size_t other) { return areFolded(ports[one], ports[other]); });
    for (const auto &group : groups) {
        const InnerPort &first = ports[group[0]];
        const Record port = recordOf(*first.info);
        const std::string range = first.info->portId == DCM_PORT_UNSPEC
                                      ? kAbsent
                                      : rangesOf(group, [&ports](size_t i) { return ports[i].info->portId; });
        const std::string prefix = prefixOf(*first.info);
        table.rows.push_back(
            {{first.number == 0 ? first.peer : rangesOf(group, [&ports](size_t i) { return ports[i].number; })},
             {range},
             {kindOf(port)},
             {given(port, "portType")},
             {first.info->drvType == 0 ? "none" : port["drvType"].words()},
             {given(port, "workmode")},
             placesOf(port),
             {prefix.empty() ? nameOf(*first.info) : prefix + range}});
    }
    return table;
}

std::vector<InnerPort> portsOf(const DcmInnerIfInfo (&array)[DCM_INNER_IF_MAX])
{
    std::vector<InnerPort> ports;
    for (uint32_t i = 0; i < DCM_INNER_IF_MAX; i++)
        if (isDescribed(array[i]))
            ports.push_back({"", i + 1, &array[i]});
    return ports;
}

std::string typeName(uint32_t type)
{
    char name[sizeof "0x12345678"];
    std::snprintf(name, sizeof name, "0x%x", static_cast<unsigned>(type));
    return name;
}

// The requested type, then the others; of very many only the first ones.
std::string typeNames(uint32_t type, const std::vector<uint32_t> &types)
{
    constexpr size_t kShown = 16;
    std::string names = typeName(type);
    for (size_t i = 0; i < std::min(types.size(), kShown); i++)
        names += types[i] != type ? ", " + typeName(types[i]) : "";
    return types.size() > kShown ? names + ", ... (" + std::to_string(types.size()) + ")" : names;
}

} // namespace

Page pageOf(const DcmSlotInfo &slot, const PageContext &context)
{
    Page page;
    page.title = {Text("Slot type " + typeNames(slot.type, context.types), kBold),
                  Text(countOf(slot.maxCardNum, "card")), Text(slot.supportPoe != 0 ? "PoE" : "")};
    page.place = {context.place, "found by the type of a slot, which no frame of a description names"};

    std::vector<InnerPort> inner = portsOf(slot.syncIf);
    if (isDescribed(slot.broadcastSyncIf))
        inner.insert(inner.begin(), {"all", 0, &slot.broadcastSyncIf});
    const std::vector<InnerPort> fabric = portsOf(slot.sfuIf);
    Table supplies = {{{"supply"}}};
    supplies.hasHeader = false;
    const auto powers = entriesOf(slot.powerInfo, slot.powerNum);
    for (size_t i = 0; i < powers.size(); i++) {
        const uint8_t id = powers[i]->id;
        supplies.rows.push_back({{Text("supply " + std::to_string(i + 1))
                                      .add(id == i + 1 ? ""
                                           : id == 0   ? " not described"
                                                       : " id " + std::to_string(id),
                                           kDim)}});
    }
    page.sections = {
        {"Inner ports",
         inner.empty() ? Cell() : Cell{countOf(inner.size(), "port") + " to the other slots"},
         {portTable("to slot", inner)}},
        {"Ports to the switch fabric",
         fabric.empty() ? Cell() : Cell{countOf(fabric.size(), "port")},
         {portTable("id", fabric)}},
        fanControllerSection(entriesOf(slot.fanCtrlInfo, slot.fanCtrlNum)),
        {"Power supplies", {}, {supplies}},
    };
    return page;
}

Page pageOf(const DcmVmPortInfo &vm, const PageContext &context)
{
    const Record record = recordOf(vm);
    std::vector<uint32_t> indexes;
    for (const FieldValue value : record.valuesOf(record.field("ifindex")))
        indexes.push_back(static_cast<uint32_t>(value.number()));
    Page page;
    page.title = {Text("Panel ports of a virtual machine", kBold), Text(countOf(vm.ifindexNum, "port"))};
    page.place = {context.place};
    Table table = {{{"what"}, {"numbers"}}, {}, false};
    table.rows.push_back({{Text("interface indexes", kDim)}, {rangesOf(indexes)}});
    page.sections = {{"", {}, {table}}};
    return page;
}

} // namespace dcmtool
