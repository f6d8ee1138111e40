#include "tools/dcm/draw/places.h"

#include "common/xml.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/printable.h"

namespace dcmtool {

namespace {

// The ids of an element; repeated ids, and those beyond the record, are harmless here.
std::vector<uint32_t> idsOf(Node element)
{
    const dcm::Element *format = formatOf(element);
    return format != nullptr ? dcmtool::idsOf(element, *format) : std::vector<uint32_t>();
}

std::string step(const std::string &path, const char *name, size_t index)
{
    return path + name + "." + std::to_string(index);
}

} // namespace

Places::Places(const DescriptionFile &file, Node element, const std::string &name) : file_(file), element_(element)
{
    name_ = printable(name.substr(name.find_last_of('/') + 1));
    for (const Node child : dcm::children(element)) {
        const std::string kind = dcm::nameOf(child);
        if (kind == "panel-port") {
            takeIds("panelIf", child, "port", 0);
            takeIds("panelIf", child, "port-group", 0);
        } else if (kind == "mgt-port") {
            takeIds("methIf", child, "port", 0);
        } else if (kind == "gcc-port") {
            takeIds("gccIf", child, "port", 0);
        } else if (kind == "ethppp-port") {
            takeIds("ethpppIf", child, "port", 0);
        } else if (kind == "voltage-entity") {
            takeIds("voltage", child, "voltage", 0);
        } else if (kind == "portled-entity") {
            takeList("portLed", child, "port-led");
        } else if (kind == "slotinfo") {
            takeIds("slot", child, "slotid", 1);
        } else if (kind == "fanmodule-entity" || kind == "power-entity") {
            const bool isFan = kind == "fanmodule-entity";
            for (const Node unit : dcm::children(child))
                for (const uint32_t id : idsOf(unit)) {
                    const std::string path = step("", isFan ? "fanModuleInfo" : "powerInfo", id - 1);
                    take(path, unit);
                    takeUnit(path + ".", unit);
                }
        }
    }
    const bool isCard = dcm::isNamed(element, "card");
    for (const Node child : dcm::children(element))
        if (dcm::isNamed(child, "led-entity"))
            takeList(isCard ? "led" : "ledInfo", child, "led");
        else if (dcm::isNamed(child, "temperature-entity"))
            takeList("temperature", child, "temperature");
        else if (dcm::isNamed(child, "led-map"))
            takeMap("ledMap", child);
}

void Places::take(const std::string &path, Node node)
{
    nodes_[path] = node;
    paths_[node].push_back(path);
}

// The n-th element fills the n-th entry; an LED's list of ids fills several.
void Places::takeList(const std::string &path, Node parent, const char *name)
{
    size_t count = 0;
    for (const Node child : dcm::children(parent)) {
        if (!dcm::isNamed(child, name))
            continue;
        const size_t many = dcm::isNamed(child, "led") ? idsOf(child).size() : 1;
        for (size_t i = 0; i < many && count < DCM_LED_MAX; i++)
            take(step("", path.c_str(), count++), child);
    }
}

void Places::takeIds(const std::string &path, Node parent, const char *name, uint32_t first)
{
    for (const Node child : dcm::children(parent))
        if (dcm::isNamed(child, name))
            for (const uint32_t id : idsOf(child))
                take(step("", path.c_str(), id - 1 + first), child);
}

void Places::takeUnit(const std::string &path, Node unit)
{
    takeIds(path + "fan", unit, "fan", 0);
    for (const Node child : dcm::children(unit))
        if (dcm::isNamed(child, "led-entity"))
            takeList(path + "ledInfo", child, "led");
        else if (dcm::isNamed(child, "temperature-entity"))
            takeList(path + "temperature", child, "temperature");
        else if (dcm::isNamed(child, "led-map"))
            takeMap(path + "ledMap", child);
}

// For two kinds of entries, in document order.
void Places::takeMap(const std::string &path, Node map)
{
    size_t count = 0;
    for (const Node child : dcm::children(map))
        if (dcm::isNamed(child, "led-name") || dcm::isNamed(child, "source"))
            take(step("", path.c_str(), count++), child);
}

Node Places::nodeOf(const std::string &path) const
{
    const auto found = nodes_.find(path);
    return found != nodes_.end() ? found->second : nullptr;
}

std::string Places::of(const std::string &path) const
{
    const Node own = nodeOf(path);
    const Node node = own != nullptr ? own : element_;
    return name_ + ":" + std::to_string(file_.place(file_.nameSpan(node).begin).line);
}

std::vector<std::string> Places::pathsAt(Node node) const
{
    for (; node != nullptr && node->type == XML_ELEMENT_NODE; node = node->parent) {
        const auto found = paths_.find(node);
        if (found != paths_.end())
            return found->second;
        if (node == element_)
            return {""};
    }
    return {};
}

} // namespace dcmtool
