// Skeletons of descriptions: complete, correct, and with comments about the choices.
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/format/reference.h"
#include "tools/format/values.h"
#include "tools/words.h"

#include <dcm.h>

#include <memory>
#include <set>
#include <sstream>

using namespace dcmtool;

namespace {

struct Options {
    std::optional<RecordKind> kind;
    std::optional<Number> type;
    std::optional<Number> mode; // of a card
    std::string name;           // of a card
    std::string ports;          // of a card or slot
    uint32_t slots = 4;         // of a frame
};

// Ports of one kind, numbered after the previous ones.
struct Ports {
    uint32_t first;
    uint32_t last;
    std::string phyType;
    std::string ids() const
    {
        return first == last ? std::to_string(first) : std::to_string(first) + "-" + std::to_string(last);
    }
};

// "24x10ge,2x100ge": ports 1 to 24 and 25 to 26.
std::vector<Ports> portsOf(const std::string &list, size_t most)
{
    const std::vector<std::string> phyTypes = wordsOf(dcm::kPhyTypeWords);
    std::vector<Ports> all;
    uint32_t count = 0;
    std::istringstream items(list);
    for (std::string item; std::getline(items, item, ',');) {
        const size_t cross = item.find('x');
        uint32_t number = 0;
        if (cross == std::string::npos || !readNumber(item.substr(0, cross), number) || number == 0)
            throw UsageError(inQuotes(item) + " is not a valid number of ports; expected as in 24x10ge");
        const std::string phyType = item.substr(cross + 1);
        if (!isWord(phyType.c_str(), dcm::kPhyTypeWords))
            refuseWord(phyType, "PHY type", phyTypes, "dcm words phy-type");
        if (number > most - count)
            throw UsageError(inQuotes(list) + " are too many ports; expected at most " + std::to_string(most));
        all.push_back({count + 1, count + number, phyType});
        count += number;
    }
    return all;
}

std::string escaped(const std::string &text)
{
    std::string xml;
    for (const char character : text)
        xml += character == '&'   ? "&amp;"
               : character == '<' ? "&lt;"
               : character == '"' ? "&quot;"
                                  : std::string(1, character);
    return xml;
}

// ---- Writing --------------------------------------------------------------------------------------------------------

// Writes elements by path, and the reference's text about each path at its first use.
class Writer {
public:
    explicit Writer(std::string kind) : path_(std::move(kind)) {}

    using Attributes = std::vector<std::pair<std::string, std::string>>;

    void open(const std::string &name, const Attributes &attributes = {})
    {
        enter(name);
        for (const auto &[attribute, value] : attributes)
            explain(path_ + "@" + attribute, attribute);
        std::string tag = "<" + name;
        for (const auto &[attribute, value] : attributes)
            tag.append(" ").append(attribute).append("=\"").append(escaped(value)).append("\"");
        line(tag + ">");
        depth_++;
    }
    void close()
    {
        depth_--;
        line("</" + path_.substr(path_.rfind('/') + 1) + ">");
        leave();
    }
    void leaf(const std::string &name, const std::string &value)
    {
        enter(name);
        explain(path_, name);
        line("<" + name + ">" + value + "</" + name + ">");
        leave();
    }
    // A list of one value.
    void list(const std::string &name, const std::string &item, const std::string &value)
    {
        leaf(name, "<" + item + ">" + value + "</" + item + ">");
    }
    void state(const std::string &type, const std::string &color, const std::string &freq)
    {
        line("<state type=\"" + type + "\"><color>" + color + "</color><freq>" + freq + "</freq></state>");
    }
    void blank() { text_ += "\n"; }
    void comment(const std::string &text) { line("<!-- " + text + " -->"); }
    // The optional children of the current element.
    void leftOut()
    {
        const std::string before = path_ + "/";
        bool isFirst = true;
        for (const std::string &key : dcmformat::referenceKeys(tree_)) {
            const bool isChild = key.compare(0, before.size(), before) == 0 &&
                                 key.find_first_of("/@", before.size()) == std::string::npos;
            if (!isChild || written_.count(key) != 0)
                continue;
            if (isFirst)
                comment("Left out here:");
            isFirst = false;
            comment("  " + key.substr(before.size()) + ": " + meaningOf(key));
        }
    }

    std::string text() const { return text_; }

private:
    void enter(const std::string &name)
    {
        // The first element is the requested one, below "device".
        path_ += depth_ == 1 ? "" : "/" + name;
        written_.insert(path_);
    }
    void leave() { path_.erase(std::min(path_.rfind('/'), path_.size())); }
    void explain(const std::string &path, const std::string &name)
    {
        const std::string key = dcmformat::keyOfPath(tree_, path);
        if (!explained_.insert(key).second)
            return;
        const dcmformat::Summary summary = dcmformat::summaryOf(tree_, prose_, key);
        comment(name + ": " + summary.meaning + (summary.value.empty() ? "" : " (" + summary.value + ")"));
    }
    std::string meaningOf(const std::string &key) const { return dcmformat::summaryOf(tree_, prose_, key).meaning; }
    void line(const std::string &text) { text_ += std::string(depth_ * 2, ' ') + text + "\n"; }

    dcmformat::Tree tree_ = dcmformat::makeTree();
    dcmformat::Prose prose_ = dcmformat::Prose(dcmformat::builtInProse());
    std::string path_;
    size_t depth_ = 1;
    std::set<std::string> written_;
    std::set<std::string> explained_;
    std::string text_;
};

// ---- Content --------------------------------------------------------------------------------------------------------

void writePanel(Writer &writer, const std::vector<Ports> &all)
{
    const std::string count = std::to_string(all.back().last);
    writer.open("panel-port", {{"num", count}, {"startportid", "1"}, {"maxportid", count}});
    for (const Ports &ports : all) {
        writer.open("port-group", {{"id", ports.ids()}});
        writer.leaf("phytype", ports.phyType);
        writer.leaf("workmode", "route");
        writer.leaf("driver", "cdl");
        writer.leaf("porttype", "client");
        writer.leaf("connector", "fiber");
        writer.leaf("supportlaser", "yes");
        writer.close();
    }
    writer.close();
}

void writePortLeds(Writer &writer, uint32_t ports)
{
    writer.open("portled-entity");
    writer.open("port-led",
                {{"type", "link"}, {"start-id", "1"}, {"end-id", std::to_string(ports)}, {"name-prefix", "link"}});
    writer.state("deliver", "green", "on");
    writer.state("default", "green", "off");
    writer.close();
    writer.close();
}

void writeLed(Writer &writer, const std::string &type, const std::string &map)
{
    writer.open("led-entity", {{"num", "1"}});
    writer.open("led", {{"id", "1"}, {"type", type}});
    writer.state("abnormal", "red", "on");
    writer.state("running", "green", "slow-blink");
    writer.state("default", "green", "off");
    writer.close();
    writer.close();
    writer.open("led-map", {{"num", "1"}});
    writer.leaf("led-name", map);
    writer.close();
}

void writeCard(Writer &writer, const Options &options, const std::string &type)
{
    const std::vector<Ports> ports = portsOf(options.ports, DCM_PANEL_IF_MAX);
    const std::string name = options.name.empty() ? "Card " + type : options.name;
    const std::string mode = options.mode ? std::to_string(options.mode->value) : "0";
    writer.open("card", {{"typeid", type}, {"mode", mode}, {"name", name}, {"abbrname", type}});
    writer.leaf("occupyslotnum", "1");
    writer.list("porttypecap", "portcap", "eth");
    if (!ports.empty())
        writePanel(writer, ports);
    writer.open("temperature-entity", {{"num", "1"}});
    writer.open("temperature", {{"id", "1"}});
    writer.leaf("type", "inlet");
    writer.leaf("description", "board inlet");
    writer.leaf("highthreshold", "65");
    writer.leaf("lowthreshold", "-5");
    writer.close();
    writer.close();
    writeLed(writer, "lcu", "led-lcu-1@card#/#");
    if (!ports.empty())
        writePortLeds(writer, ports.back().last);
    writer.leftOut();
    writer.close();
}

void writeSlot(Writer &writer, const Options &options, const std::string &type)
{
    const std::vector<Ports> ports = portsOf(options.ports.empty() ? "1xge" : options.ports, DCM_SLOT_MAX);
    writer.open("slot", {{"typeid", type}});
    writer.leaf("maxcardnum", "1");
    writer.leaf("supportpoe", "no");
    writer.open("inner-port");
    writer.open("port", {{"commslot", "0"}});
    writer.leaf("driver", "ineth");
    writer.leaf("phytype", ports.front().phyType);
    writer.leaf("type", "vsync-bcast");
    writer.leaf("workmode", "bridge");
    writer.leaf("portid", "100");
    writer.leaf("ifname", "bcast.100");
    writer.close();
    for (const Ports &group : ports) {
        writer.open("port-group", {{"commslot", group.ids()}});
        writer.leaf("driver", "ineth");
        writer.leaf("phytype", group.phyType);
        writer.leaf("type", "vsync-ucast");
        writer.leaf("portid-offset", "100");
        writer.leaf("ifname-prefix", "vsync");
        writer.close();
    }
    writer.close();
    writer.leftOut();
    writer.close();
}

void writeFrameSlots(Writer &writer, uint32_t slots, uint32_t cardSlots)
{
    writer.open("slotmap");
    writer.leaf("mpu", "1");
    if (cardSlots > 1)
        writer.leaf("lpu", Ports{2, cardSlots, ""}.ids());
    if (slots > cardSlots) {
        writer.leaf("fan", std::to_string(slots - 1));
        writer.leaf("power", std::to_string(slots));
    }
    writer.leftOut();
    writer.close();
    writer.open("slotinfo");
    for (uint32_t slot = 1; slot <= slots; slot++) {
        writer.open("slotid", {{"id", std::to_string(slot)}});
        writer.leaf("maxcardnum", slot <= cardSlots ? "1" : "0");
        writer.leaf("startcardid", "1");
        if (slot == 1)
            writer.leftOut();
        writer.close();
    }
    writer.close();
}

// A fan module with two fans, each with a controller of its own, and a power supply.
void writeUnits(Writer &writer, uint32_t slots)
{
    writer.open("fanmodule-entity", {{"num", "1"}});
    writer.open("fanmodule", {{"id", "1"}});
    writer.leaf("fannum", "2");
    writer.leaf("slot", std::to_string(slots - 1));
    writer.open("fan", {{"id", "1-2"}});
    writer.leaf("fanctrl-offset", "0");
    writer.close();
    writer.leftOut();
    writer.close();
    writer.close();
    writer.open("fanctrl-entity", {{"num", "2"}});
    writer.open("fanctrl-group", {{"id", "1-2"}});
    const std::pair<const char *, const char *> settings[] = {
        {"fannum", "1"},
        {"workmode", "1"},
        {"speedlevel", "2"},
        {"speedlevelmin", "1"},
        {"speedlevelmax", "5"},
        {"speedlevelforce", "5"},
        {"speed", "3600"},
        {"speedhighthreadhold", "9000"},
        {"speedhighthreadholdmin", "6000"},
        {"speedhighthreadholdmax", "10000"},
        {"speedlowthreadhold", "900"},
        {"speedlowthreadholdmin", "500"},
        {"speedlowthreadholdmax", "1800"},
    };
    for (const auto &[name, value] : settings)
        writer.leaf(name, value);
    writer.close();
    writer.close();
    writer.open("power-entity", {{"num", "1"}});
    writer.open("power", {{"id", "1"}});
    writer.leaf("modelname", "power supply");
    writer.leftOut();
    writer.close();
    writer.close();
}

void writeFrame(Writer &writer, const Options &options, const std::string &type)
{
    const uint32_t slots = options.slots;
    // In a frame with enough slots, the last two are for its fans and its power supply.
    const bool hasUnits = slots >= 4;
    const uint32_t cardSlots = hasUnits ? slots - 2 : slots;
    writer.open("frame", {{"typeid", type}});
    writer.leaf("maxslotnum", std::to_string(slots));
    writeFrameSlots(writer, slots, cardSlots);
    if (hasUnits)
        writeUnits(writer, slots);
    writeLed(writer, "system", "led-system-1@sys0/0");
    if (hasUnits) {
        writer.open("fanctrl-map");
        writer.open("fan-ctrl", {{"id", "1-2"}});
        writer.leaf("card", Ports{1, cardSlots, ""}.ids());
        writer.leaf("power", "1");
        writer.leaf("fan-moudule", "1");
        writer.close();
        writer.close();
    }
    writer.leftOut();
    writer.close();
}

// ---- The command ----------------------------------------------------------------------------------------------------

// As the user wrote it, but not in octal.
std::string writtenType(const Number &type)
{
    const bool isOctal = type.written.size() > 1 && type.written[0] == '0' && std::tolower(type.written[1]) != 'x';
    return isOctal ? std::to_string(type.value) : type.written;
}

void refuseName(const std::string &name)
{
    constexpr size_t kMost = DCM_CARD_NAME_SIZE - 1;
    if (printable(name) != name)
        throw UsageError(inQuotes(name) + " is not a valid name; expected text in UTF-8 without control characters");
    if (name.size() > kMost)
        throw UsageError(inQuotes(name) + " is too long a name; expected at most " + std::to_string(kMost) + " bytes");
}

std::string skeletonOf(const Options &options)
{
    if (!options.type)
        throw UsageError("--type is missing");
    refuseName(options.name);
    const std::string kind = kindName(*options.kind);
    const std::string type = writtenType(*options.type);
    Writer writer(kind);
    switch (*options.kind) {
    case RecordKind::frame:
        writeFrame(writer, options, type);
        break;
    case RecordKind::slot:
        writeSlot(writer, options, type);
        break;
    default:
        writeCard(writer, options, type);
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!-- Skeleton of a " +
           kind + ": decide each value. \"dcm explain NAME\" documents it, and \"dcm check FILE\"\n" +
           "     finds mistakes. -->\n<device>\n" + writer.text() + "</device>\n";
}

Exit run(const Options &options)
{
    if (!options.kind)
        throw UsageError("expected 'card', 'slot' or 'frame'");
    return OwnOutput().print(skeletonOf(options)) ? kSuccess : kCannotWrite;
}

Command kindCommand(RecordKind kind, const std::shared_ptr<Options> &options)
{
    const std::string name = kindName(kind);
    Command command = {name, "A " + name, {}, [options, kind] {
                           // The command one level up runs afterwards.
                           options->kind = kind;
                           return kSuccess;
                       }};
    command.arguments.push_back({"--type", "Type id of the " + name + ", required", &options->type, "NUMBER"});
    if (kind == RecordKind::card) {
        command.arguments.push_back({"--mode", "Mode of the card [0]", &options->mode, "NUMBER"});
        command.arguments.push_back({"--name", "Name of the card", &options->name, "TEXT"});
        command.arguments.push_back({"--ports", "Panel ports, as in 24x10ge,2x100ge [none]", &options->ports, "LIST"});
    }
    if (kind == RecordKind::slot)
        command.arguments.push_back(
            {"--ports", "Ports to slots 1, 2, ..., as in 6x10ge,2xge [1xge]", &options->ports, "LIST"});
    if (kind == RecordKind::frame)
        command.arguments.push_back({"--slots", "Number of slots [4]", &options->slots, "N", {}, {1, DCM_SLOT_MAX}});
    return command;
}

} // namespace

Command newCommand()
{
    const auto options = std::make_shared<Options>();
    return {"new",
            "Print a skeleton of a description, with comments about each value",
            {},
            [options] { return run(*options); },
            "In a list of ports each kind follows its number: 2x10xgepon is two ports of the kind 10xgepon.",
            {kindCommand(RecordKind::card, options), kindCommand(RecordKind::slot, options),
             kindCommand(RecordKind::frame, options)}};
}
