// The file as a whole: whether it is a description, and whether each type in it can be found.
#include "tools/dcm/check/file_checks.h"

#include "common/paths.h"
#include "tools/dcm/check/checks.h"
#include "tools/dcm/check/format_lookup.h"
#include "vm/vm.h"

#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace dcmtool {

namespace {

void unreadable(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.state() == DescriptionFile::State::unreadable)
        findings.at(nullptr, {}, "cannot be read: " + file.fault());
}

void notXml(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.state() == DescriptionFile::State::notXml)
        findings.at(nullptr, file.faultSpan(), file.fault() + ": every query fails");
}

void wrongRoot(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.root() == nullptr || file.isDevice() || file.isVm())
        return;
    findings
        .at(nullptr, file.nameSpan(file.root()),
            "the root is \"" + shortened(dcm::nameOf(file.root())) + "\": every query fails; expected \"" +
                dcm::kDeviceName + "\", or \"" + dcm::kVmName + "\" for the ports of a virtual machine")
        .meaning(nearest(dcm::nameOf(file.root()), {dcm::kDeviceName, dcm::kVmName}));
}

// The number of a type as its description writes it is not always how it is asked for.
std::string shown(uint32_t typeId, uint32_t mode)
{
    return std::to_string(typeId) + (mode != 0 ? " in mode " + std::to_string(mode) : "");
}

void shadowedType(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings)
{
    using Identity = std::tuple<RecordKind, uint32_t, uint32_t>;
    std::map<Identity, Node> found;
    for (const DescribedType &type : types) {
        const dcm::NamedElement &row = rowOf(type.kind);
        std::set<uint32_t> told;
        for (const uint32_t typeId : type.typeIds) {
            const auto [first, isFirst] = found.emplace(Identity(type.kind, typeId, type.mode), type.element);
            if (isFirst || !told.insert(typeId).second)
                continue;
            // A slot may list a type twice.
            const std::string again = first->second == type.element ? " is listed twice" : " is described already";
            Finding &finding =
                findings.atValue(type.element, row.element->attributes[0].name,
                                 std::string(row.name) + " " + shown(typeId, type.mode) + again +
                                     (first->second == type.element ? "" : ": queries find the first one, never this"));
            if (first->second != type.element)
                finding.noting(file.nameSpan(first->second), "the first one");
        }
    }
}

constexpr Check kChecks[] = {
    {"unreadable", Severity::error, "A file cannot be read",
     "The file is not there, or may not be read. On the network element every query fails.", "", "",
     fileBy(unreadable)},
    {"not-xml", Severity::error, "A file is not well-formed XML",
     "The parser gives up at the first fault, and every query of the file fails: the network element knows no frame, "
     "slot or card at all.",
     R"(<device>
  <card typeid="1">
</device>
)",
     R"(<device>
  <card typeid="1">
  </card>
</device>
)",
     fileBy(notXml)},
    {"wrong-root", Severity::error, "A file is neither a device description nor a port list",
     "Every query looks at the root first: \"device\" for frames, slots and cards, \"panel-port\" for the ports of a "
     "virtual machine. With any other it fails.",
     R"(<devices>
  <card typeid="1"/>
</devices>
)",
     R"(<device>
  <card typeid="1"/>
</device>
)",
     fileBy(wrongRoot)},
    {"shadowed-type", Severity::warning, "A frame, slot or card can never be found",
     "A query takes the first element of the wanted type and mode. What a second one describes is never seen, however "
     "often it is edited.",
     R"(<device>
  <card typeid="0x21" name="first"/>
  <card typeid="33" name="second"/>
</device>
)",
     R"(<device>
  <card typeid="0x21" name="first"/>
  <card typeid="33" mode="1" name="second"/>
</device>
)",
     fileBy(shadowedType)},
};

} // namespace

const Check &kUnreadable = kChecks[0];
const Check &kNotXml = kChecks[1];

Checks fileChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
