#include "bench/descriptions.h"

#include <dcm.h>

#include <initializer_list>
#include <utility>

namespace dcmbench {

namespace {

using Words = std::initializer_list<const char *>;

constexpr Words kLayerProtoCaps = {
    "ge",       "oc48", "stm16", "10gelan", "10gewan", "oc912",  "stm64", "otu2",       "otu2e",
    "otu1e",    "odu2", "odu2e", "40ge",    "oc768",   "stm256", "otu3",  "odu3",       "100ge",
    "100gemlg", "otu4", "otuc2", "oduc2",   "otuc4",   "oduc4",  "400ge", "flexe100ge",
};
constexpr Words kOpticalChannelCaps = {
    "otu4-scfec-deqpsk", "foic1-ofec-deqpsk", "foic1-ofec-qpsk",  "100zr-ofec-qpsk",  "foic2-cfec-qpsk",
    "foic2-ofec-qpsk",   "200zr-ofec-qpsk",   "foic2-ofec-8qam",  "200zr-ofec-8qam",  "foic2-ofec-16qam",
    "200zr-ofec-16qam",  "foic3-ofec-8qame",  "300zr-ofec-8qame", "foic4-cfec-16qam", "400zr-cfec-16qam",
    "foic4-ofec-16qam",  "400zr-ofec-16qam",
};
constexpr Words kTransceiverCaps = {
    "1000basex", "1000baset",  "10gbasex", "10gbaset",  "40gbasex",  "40gbaset",  "100gbasex",
    "100gbaset", "1000basetx", "100baset", "25gbasex",  "25gbaset",  "100basex",  "2500basex",
    "2500baset", "5gbasex",    "5gbaset",  "200gbasex", "200gbaset", "400gbasex", "400gbaset",
};
constexpr Words kPoeStandardCaps = {"af", "at", "bt"};
constexpr Words kPoeInrushCaps = {"af", "af-high", "pre-at", "at", "pre-bt3", "bt3", "bt4", "pre-bt4"};
constexpr Words kPhyTypes = {"fe",    "ge",    "2.5ge", "10ge",  "25ge",  "40ge",
                             "100ge", "400ge", "otu2",  "otuc4", "stm64", "gpon"};

std::string hexadecimal(uint32_t number)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (; number != 0; number /= 16)
        text.insert(text.begin(), digits[number % 16]);
    return "0x" + text;
}

// Writes elements, each on its own line or all on one.
class Writer {
public:
    explicit Writer(Layout layout) : layout_(layout) { text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"; }

    // An element whose children `fill` writes.
    template <class Fill> void element(const char *name, const std::string &attributes, Fill fill)
    {
        open(name, attributes);
        text_ += '>';
        depth_++;
        fill();
        depth_--;
        startLine();
        close(name);
    }
    // An element with a text.
    void leaf(const char *name, const std::string &content, const std::string &attributes = "")
    {
        open(name, attributes);
        text_ += '>';
        text_ += content;
        close(name);
    }
    void leaf(const char *name, size_t number) { leaf(name, std::to_string(number)); }
    // An element whose children have the same name and one word each.
    void words(const char *name, const char *child, Words words)
    {
        element(name, "", [&] {
            for (const char *word : words)
                leaf(child, word);
        });
    }
    std::string take()
    {
        text_ += '\n';
        return std::move(text_);
    }

private:
    void startLine()
    {
        if (layout_ == Layout::indented)
            text_.append(1, '\n').append(depth_ * 2, ' ');
    }
    void open(const char *name, const std::string &attributes)
    {
        startLine();
        text_.append("<").append(name);
        if (!attributes.empty())
            text_.append(" ").append(attributes);
    }
    void close(const char *name) { text_.append("</").append(name).append(">"); }

    Layout layout_;
    size_t depth_ = 0;
    std::string text_;
};

std::string attribute(const char *name, const std::string &value)
{
    return std::string(name) + "=\"" + value + "\"";
}

std::string attribute(const char *name, size_t number)
{
    return attribute(name, std::to_string(number));
}

// Writes a container with `count` elements, whose ids start at 1.
template <class Fill> void counted(Writer &writer, const char *container, size_t count, const char *name, Fill fill)
{
    writer.element(container, attribute("num", count), [&] {
        for (size_t id = 1; id <= count; id++)
            writer.element(name, attribute("id", id), [&] { fill(id); });
    });
}

// ---- Common parts of cards, frames and slots ------------------------------------------------------------------------

void writeTemperatures(Writer &writer, size_t count)
{
    counted(writer, "temperature-entity", count, "temperature", [&](size_t id) {
        writer.leaf("type", "outlet");
        writer.leaf("description", "sensor " + std::to_string(id));
        writer.leaf("highthreshold", 85 + id);
        writer.leaf("lowthreshold", "-5");
        writer.leaf("actionhighthreshold", 75 + id);
        writer.leaf("actionhighthresholdmax", 90 + id);
        writer.leaf("actionhighthresholdmin", 60 + id);
        writer.leaf("actionlowthreshold", 40 + id);
        writer.leaf("actionlowthresholdmax", 50 + id);
        writer.leaf("actionlowthresholdmin", 30 + id);
        writer.leaf("workthreshold", 55 + id);
        writer.leaf("workreserved", 5);
        writer.leaf("overflowaction", 1);
        writer.leaf("overflowmaxnum", 3);
        writer.leaf("actioncapability", "1-3,5");
        writer.leaf("fanctrlbits", "1-2,4");
    });
}

void writeLedState(Writer &writer, const std::string &attributes, const char *color, const char *freq)
{
    writer.element("state", attributes, [&] {
        writer.leaf("color", color);
        writer.leaf("freq", freq);
    });
}

void writeSystemLedStates(Writer &writer)
{
    const Words states = {"abnormal", "losconnect", "upgrade", "running", "critical", "major", "minor", "warning"};
    for (size_t i = 0; i < states.size(); i++)
        writeLedState(writer, attribute("type", states.begin()[i]) + " " + attribute("pri", i + 1), "yellow",
                      "slow-blink");
    writeLedState(writer, attribute("type", "default"), "green", "off");
}

void writeLeds(Writer &writer, size_t count)
{
    writer.element("led-entity", attribute("num", count), [&] {
        for (size_t i = 0; i < count; i++)
            writer.element("led", attribute("id", i % 8 + 1) + " " + attribute("type", "system"),
                           [&] { writeSystemLedStates(writer); });
    });
}

// As many names as sources; `place` is the attachment of the LEDs.
void writeLedMap(Writer &writer, size_t count, const std::string &place)
{
    writer.element("led-map", attribute("num", count), [&] {
        for (size_t i = 0; i < count; i++) {
            const std::string name = "led-system-" + std::to_string(i % 8 + 1) + "@" + place;
            if (i % 2 == 0) {
                writer.leaf("led-name", name, attribute("src", "src-" + std::to_string(i + 1) + "/1"));
                continue;
            }
            writer.element("source", attribute("led-name", name) + " " + attribute("type", "alarm"), [&] {
                for (const char *state : Words{"critical", "major", "minor", "warning"})
                    writer.leaf("state", state, attribute("type", state));
            });
        }
    });
}

void writeFanCtrls(Writer &writer, bool withForce)
{
    counted(writer, "fanctrl-entity", DCM_FAN_CTRL_MAX, "fanctrl", [&](size_t id) {
        writer.leaf("fannum", 2);
        writer.leaf("workmode", 1);
        writer.leaf("speedlevel", 3 + id);
        writer.leaf("speedlevelmax", 10);
        writer.leaf("speedlevelmin", 2);
        if (withForce)
            writer.leaf("speedlevelforce", 10);
        writer.leaf("speed", 6000 + id);
        writer.leaf("speedhighthreadhold", 13000);
        writer.leaf("speedlowthreadhold", 1500);
        writer.leaf("speedhighthreadholdmax", 15000);
        writer.leaf("speedhighthreadholdmin", 9000);
        writer.leaf("speedlowthreadholdmax", 3000);
        writer.leaf("speedlowthreadholdmin", 800);
    });
}

// ---- Cards ----------------------------------------------------------------------------------------------------------

void writeFullPanelPort(Writer &writer, size_t id)
{
    writer.leaf("slotid", 255);
    writer.leaf("cardid", 1);
    writer.leaf("portid", id);
    writer.leaf("phytype", kPhyTypes.begin()[id % kPhyTypes.size()]);
    writer.leaf("workmode", "bridge");
    writer.leaf("driver", "cdl");
    writer.leaf("porttype", "client");
    writer.leaf("hidden", "no");
    writer.leaf("connector", "fiber");
    writer.leaf("groupid", hexadecimal(0x100 + static_cast<uint32_t>(id)));
    writer.words("layerproto-caps", "cap", kLayerProtoCaps);
    writer.words("opticalchannel-caps", "cap", kOpticalChannelCaps);
    writer.leaf("gccbitorder", "msb");
    writer.leaf("supportlaser", "yes");
    writer.leaf("supportmediachg", "no");
    writer.leaf("supportpoe", "yes");
    writer.leaf("supportphychg", "yes");
    writer.leaf("supportsplit", "no");
    writer.leaf("wavelength", 20 + id);
    writer.words("poestandard-caps", "cap", kPoeStandardCaps);
    writer.words("poeinrush-caps", "cap", kPoeInrushCaps);
    writer.words("transceiver-caps", "cap", kTransceiverCaps);
    writer.leaf("modelname", "QV-CAGE-" + std::to_string(id));
}

void writePanel(Writer &writer, size_t ports, size_t lines, void (*fill)(Writer &writer, size_t id))
{
    const std::string attributes = attribute("num", ports) + " " + attribute("startportid", 1) + " " +
                                   attribute("maxportid", ports) + " " + attribute("linenum", lines) + " " +
                                   attribute("clientnum", ports - lines) + " " + attribute("hidenum", 0);
    writer.element("panel-port", attributes, [&] {
        for (size_t id = 1; id <= ports; id++)
            writer.element("port", attribute("id", id), [&] { fill(writer, id); });
    });
}

void writeChip(Writer &writer, const char *entity, const char *model)
{
    writer.element(entity, attribute("num", 1), [&] { writer.leaf("modelname", model); });
}

void writeFullCard(Writer &writer)
{
    writer.leaf("occupyslotnum", 2);
    writer.leaf("tmuxctrl", "yes");
    writer.leaf("muxctrl", "no");
    writer.words("porttypecap", "portcap", {"eth", "pon", "stack-link", "cross-link", "none"});
    counted(writer, "mgt-port", DCM_METH_IF_MAX, "port", [&](size_t id) {
        writer.leaf("slotid", 255);
        writer.leaf("cardid", 255);
        writer.leaf("portid", id);
        writer.leaf("phytype", "ge");
        writer.leaf("workmode", "route");
        writer.leaf("driver", "ineth");
        writer.leaf("ifname", "meth0." + std::to_string(id));
        writer.leaf("supportlaser", "yes");
        writer.leaf("supportmediachg", "yes");
        writer.words("transceiver-caps", "cap", kTransceiverCaps);
    });
    writePanel(writer, DCM_PANEL_IF_MAX, 4, writeFullPanelPort);
    counted(writer, "gcc-port", DCM_GCC_IF_MAX, "port", [&](size_t id) {
        writer.leaf("slotid", 255);
        writer.leaf("cardid", 255);
        writer.leaf("portid", 100 + id);
        writer.leaf("phytype", "otuc2");
    });
    counted(writer, "ethppp-port", DCM_ETHPPP_IF_MAX, "port", [&](size_t id) { writer.leaf("portid", 200 + id); });
    counted(writer, "cpu-entity", DCM_CPU_MAX, "cpu", [&](size_t) {
        writer.leaf("corenum", 4);
        writer.leaf("freq", 1800);
        writer.leaf("highthreshold", 90);
        writer.leaf("lowthreshold", 70);
        writer.leaf("modelname", "QV-CPU-4");
    });
    counted(writer, "memory-entity", DCM_MEMORY_MAX, "memory", [&](size_t id) {
        writer.leaf("type", id == 1 ? "ram" : "flash");
        writer.leaf("highthreshold", 90);
        writer.leaf("lowthreshold", 70);
        writer.leaf("modelname", "QV-MEM-" + std::to_string(id));
    });
    writeTemperatures(writer, DCM_CARD_TEMPERATURE_MAX);
    counted(writer, "voltage-entity", DCM_VOLTAGE_MAX, "voltage", [&](size_t id) {
        writer.leaf("highthreshold", 1260 + id);
        writer.leaf("lowthreshold", 1140 + id);
        writer.leaf("description", "rail " + std::to_string(id));
        writer.leaf("modelname", "QV-DCDC-" + std::to_string(id));
    });
    writeLeds(writer, DCM_LED_MAX);
    writer.element("portled-entity", "", [&] {
        for (size_t i = 0; i < DCM_PORT_LED_MAX; i++)
            writer.element("port-led",
                           attribute("type", "link") + " " + attribute("start-id", i * 20 + 1) + " " +
                               attribute("end-id", i * 20 + 20) + " " + attribute("name-prefix", "link"),
                           [&] {
                               writeLedState(writer, attribute("type", "deliver") + " " + attribute("pri", 1), "green",
                                             "fast-blink");
                               writeLedState(writer, attribute("type", "default"), "green", "off");
                           });
    });
    writeLedMap(writer, DCM_LED_MAP_MAX, "card#/#");
    writer.words("supportfunc", "func", {"switch-console", "switch-console-pon1", "switch-console-pon2"});
    writeChip(writer, "switch-entity", "QV-SW-9600");
    writeChip(writer, "clock-entity", "QV-PLL-2");
    writer.element("component-entity", attribute("num", DCM_COMPONENT_MAX), [&] {
        for (size_t i = 0; i < DCM_COMPONENT_MAX; i++)
            writer.leaf("component", "component " + std::to_string(i + 1),
                        attribute("type", "transceiver") + " " + attribute("subtype", i + 1) + " " +
                            attribute("num", 2));
    });
    writer.leaf("crosslinkslot", 2);
}

void writeOrdinaryPanelPort(Writer &writer, size_t id)
{
    writer.leaf("portid", id);
    writer.leaf("phytype", id > 6 ? "100ge" : "10ge");
    writer.leaf("workmode", "bridge");
    writer.leaf("driver", "cdl");
    writer.leaf("porttype", id > 6 ? "line" : "client");
    writer.leaf("connector", "fiber");
    writer.leaf("supportlaser", "yes");
    writer.words("transceiver-caps", "cap", {"1000basex", "10gbasex"});
}

void writeOrdinaryCard(Writer &writer)
{
    writer.leaf("occupyslotnum", 1);
    writer.words("porttypecap", "portcap", {"eth"});
    writePanel(writer, 8, 2, writeOrdinaryPanelPort);
    writeTemperatures(writer, 1);
    writer.element("led-entity", attribute("num", 1), [&] {
        writer.element("led", attribute("id", 1) + " " + attribute("type", "lcu"), [&] {
            writeLedState(writer, attribute("type", "abnormal") + " " + attribute("pri", 1), "red", "on");
            writeLedState(writer, attribute("type", "running") + " " + attribute("pri", 2), "green", "slow-blink");
            writeLedState(writer, attribute("type", "default"), "green", "off");
        });
    });
    writer.element("led-map", attribute("num", 1), [&] { writer.leaf("led-name", "led-lcu-1@card#/#"); });
}

// ---- Frames ---------------------------------------------------------------------------------------------------------

void writeSlotRules(Writer &writer)
{
    std::string cardTypes;
    for (uint32_t type = 0; type < DCM_SLOT_CARD_TYPE_MAX; type++)
        cardTypes += (type == 0 ? "" : ",") + hexadecimal(kTypeId + type);
    writer.element("slotinfo", "", [&] {
        for (size_t id = 1; id <= DCM_SLOT_MAX; id++)
            writer.element("slotid", attribute("id", id), [&] {
                writer.leaf("supportcrossslot", 1);
                writer.leaf("crossslotbit", "1-16,18,20-32");
                writer.leaf("supportcardtype", cardTypes);
                writer.leaf("maxcardnum", 2);
                writer.leaf("startcardid", 1);
            });
    });
}

void writeUnit(Writer &writer, const std::string &place)
{
    writeLeds(writer, DCM_LED_MAX);
    writeLedMap(writer, DCM_LED_MAP_MAX, place);
    writeTemperatures(writer, DCM_UNIT_TEMPERATURE_MAX);
}

void writeFullFrame(Writer &writer)
{
    writer.leaf("maxslotnum", DCM_SLOT_MAX);
    writer.element("slotmap", "", [&] {
        for (const char *kind : Words{"mpu", "lpu", "sfu", "fan", "lcd", "power"})
            writer.leaf(kind, "1-4,6,8-12,31-32");
    });
    writer.element("cardtypecaps", "", [&] {
        for (uint32_t i = 1; i <= DCM_CARD_TYPE_CAP_MAX; i++)
            writer.leaf("cap", hexadecimal(i * 0x01010101));
    });
    writeSlotRules(writer);
    counted(writer, "fanmodule-entity", DCM_FAN_MODULE_MAX, "fanmodule", [&](size_t id) {
        writer.leaf("fannum", DCM_FAN_MAX);
        writer.leaf("slot", 20 + id);
        for (size_t fan = 1; fan <= DCM_FAN_MAX; fan++)
            writer.element("fan", attribute("id", fan), [&] { writer.leaf("fanctrl", fan); });
        writeUnit(writer, "fan#/#");
    });
    writeFanCtrls(writer, true);
    counted(writer, "power-entity", DCM_POWER_MAX, "power", [&](size_t) {
        writer.leaf("modelname", "QV-PSU-3000-54V");
        writeUnit(writer, "power#/#");
    });
    writeLeds(writer, DCM_LED_MAX);
    writeLedMap(writer, DCM_LED_MAP_MAX, "sys0/0");
    writer.element("fanctrl-map", "", [&] {
        for (size_t id = 1; id <= DCM_FAN_CTRL_MAX; id++)
            writer.element("fan-ctrl", attribute("id", id), [&] {
                writer.leaf("card", "1-16,20-32");
                writer.leaf("power", "1-2");
                writer.leaf("fan-moudule", "1-3");
            });
    });
}

// ---- Slots ----------------------------------------------------------------------------------------------------------

void writeFullSlot(Writer &writer)
{
    writer.leaf("maxcardnum", 2);
    writer.leaf("supportpoe", "yes");
    writer.element("inner-port", "", [&] {
        for (size_t commslot = 0; commslot <= DCM_INNER_IF_MAX; commslot++)
            writer.element("port", attribute("commslot", commslot), [&] {
                writer.leaf("driver", "ineth");
                writer.leaf("phytype", "10ge");
                writer.leaf("type", commslot == 0 ? "vsync-bcast" : "vsync-ucast");
                writer.leaf("workmode", "route");
                writer.leaf("sysid", 1);
                writer.leaf("slotid", 255);
                writer.leaf("cardid", 1);
                writer.leaf("portid", 100 + commslot);
                writer.leaf("ifname", "vsync." + std::to_string(100 + commslot));
            });
    });
    writer.element("sfu-port", "", [&] {
        for (size_t id = 1; id <= DCM_INNER_IF_MAX; id++)
            writer.element("port-group", attribute("id", id), [&] {
                writer.leaf("driver", "cdl");
                writer.leaf("phytype", "400ge");
                writer.leaf("type", "sfu");
                writer.leaf("sysid", 1);
                writer.leaf("slotid", 255);
                writer.leaf("cardid", 1);
                writer.leaf("portid-offset", 200);
            });
    });
    writeFanCtrls(writer, false);
    writer.element("power-entity", attribute("num", DCM_POWER_MAX), [&] {
        for (size_t id = 1; id <= DCM_POWER_MAX; id++)
            writer.leaf("power", "", attribute("id", id));
    });
}

template <class Fill> std::string device(Layout layout, Fill fill)
{
    Writer writer(layout);
    writer.element("device", "", [&] { fill(writer); });
    return writer.take();
}

void writeCard(Writer &writer, uint32_t typeId, void (*fill)(Writer &writer))
{
    writer.element("card",
                   attribute("typeid", hexadecimal(typeId)) + " " + attribute("mode", 1) + " " +
                       attribute("name", "Line card of type " + std::to_string(typeId)) + " " +
                       attribute("abbrname", "LC-" + std::to_string(typeId)),
                   [&] { fill(writer); });
}

} // namespace

std::string largeCard(Layout layout)
{
    return device(layout, [](Writer &writer) { writeCard(writer, kTypeId, writeFullCard); });
}

std::string largeFrame()
{
    return device(Layout::indented, [](Writer &writer) {
        writer.element("frame", attribute("typeid", kTypeId), [&] { writeFullFrame(writer); });
    });
}

std::string largeSlot()
{
    return device(Layout::indented, [](Writer &writer) {
        writer.element("slot", attribute("typeid", hexadecimal(kTypeId)), [&] { writeFullSlot(writer); });
    });
}

std::string largeVm()
{
    Writer writer(Layout::indented);
    const size_t ports = DCM_VM_IFINDEX_MAX - 1;
    writer.element("panel-port", attribute("num", ports), [&] {
        for (size_t i = 1; i <= ports; i++)
            writer.leaf("ifindex", hexadecimal(0x01000000 + static_cast<uint32_t>(i)));
    });
    return writer.take();
}

std::string ordinaryCards(size_t count)
{
    return device(Layout::indented, [&](Writer &writer) {
        for (uint32_t i = 0; i < count; i++)
            writeCard(writer, kTypeId + i, writeOrdinaryCard);
    });
}

} // namespace dcmbench
