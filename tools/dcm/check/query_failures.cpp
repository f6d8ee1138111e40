#include "tools/dcm/check/query_failures.h"

#include "tools/dcm/check/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <utility>

namespace dcmtool {

namespace {

constexpr size_t kMostFailures = 256; // of one type
constexpr size_t kMostIdsTried = 16;
constexpr size_t kMostNeighboursTried = 32;
constexpr size_t kLongestMessage = 300;

std::vector<Node> childrenOf(Node parent)
{
    std::vector<Node> all;
    for (const Node child : dcm::children(parent))
        all.push_back(child);
    return all;
}

xmlChar *xmlText(const char *text)
{
    return reinterpret_cast<xmlChar *>(const_cast<char *>(text)); // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

// ---- Changes, for a while -------------------------------------------------------------------------------------------

// Changes a frame, slot or card until it goes out of scope.
class Repairs {
public:
    explicit Repairs(Node root) : root_(root) {}
    ~Repairs() { undoTo(0); }
    Repairs(const Repairs &) = delete;
    Repairs &operator=(const Repairs &) = delete;

    Node root() const { return root_; }

    void remove(Node node)
    {
        undoes_.push_back([back = Position(node)] { back.restore(); });
        xmlUnlinkNode(node);
    }
    void moveBehind(Node sibling, Node node)
    {
        undoes_.push_back([back = Position(node)] { back.restore(); });
        xmlAddNextSibling(sibling, node);
    }
    // Gives an attribute another value, or none.
    void setAttribute(Node element, const char *name, const char *value)
    {
        if (xmlAttr *attribute = xmlHasProp(element, xmlText(name)))
            if (attribute->type == XML_ATTRIBUTE_NODE)
                removeAttribute(attribute);
        if (value == nullptr)
            return;
        if (xmlAttr *added = xmlNewProp(element, xmlText(name), xmlText(value)))
            undoes_.push_back([added] { xmlRemoveProp(added); });
    }
    // Takes the last changes back, down to so many.
    size_t count() const { return undoes_.size(); }
    void undoTo(size_t count)
    {
        while (undoes_.size() > count) {
            undoes_.back()();
            undoes_.pop_back();
        }
    }

private:
    // Where a node stands.
    class Position {
    public:
        explicit Position(Node node) : node_(node), parent_(node->parent), next_(node->next) {}
        void restore() const
        {
            if (next_ != nullptr)
                xmlAddPrevSibling(next_, node_);
            else
                xmlAddChild(parent_, node_);
        }

    private:
        Node node_;
        Node parent_;
        Node next_;
    };

    void removeAttribute(xmlAttr *attribute)
    {
        xmlAttr **link = attribute->prev != nullptr ? &attribute->prev->next : &attribute->parent->properties;
        *link = attribute->next;
        if (attribute->next != nullptr)
            attribute->next->prev = attribute->prev;
        undoes_.push_back([attribute, link] {
            *link = attribute;
            if (attribute->next != nullptr)
                attribute->next->prev = attribute;
        });
    }

    Node root_;
    std::vector<std::function<void()>> undoes_;
};

// Hides the siblings behind a node, or all children of one, until it goes out of scope.
class Hiding {
public:
    Hiding() = default;
    ~Hiding()
    {
        while (!hidden_.empty()) {
            *hidden_.back().link = hidden_.back().node;
            hidden_.pop_back();
        }
    }
    Hiding(const Hiding &) = delete;
    Hiding &operator=(const Hiding &) = delete;

    void behind(Node node) { hide(&node->next); }
    void below(Node node) { hide(&node->children); }

private:
    struct Hidden {
        xmlNode **link;
        xmlNode *node;
    };
    void hide(xmlNode **link)
    {
        hidden_.push_back({link, *link});
        *link = nullptr;
    }
    std::vector<Hidden> hidden_;
};

// ---- Finding the guilty element -------------------------------------------------------------------------------------

// Decodes what is not hidden, as long as there is room for that.
class Decoding {
public:
    Decoding(std::function<Outcome(size_t)> run, size_t cost, DecodingWork &work)
        : run_(std::move(run)), cost_(cost), work_(work)
    {
    }

    // The messages of the outcome begin with `firstMessage`.
    Outcome operator()(size_t firstMessage = 0) const
    {
        work_.left -= std::min(work_.left, cost_);
        return run_(firstMessage);
    }
    bool isTooMuch() const { return work_.left < cost_; }

private:
    std::function<Outcome(size_t)> run_;
    size_t cost_;
    DecodingWork &work_;
};

struct Guilty {
    Node element = nullptr;
    std::string message; // the innermost of those that follow from it
};

// The first of `children` with which decoding fails; `decoded` is what came of those before it.
Node firstFailing(const std::vector<Node> &children, const Decoding &run, Outcome &decoded)
{
    size_t from = 0;
    size_t to = children.size() - 1;
    while (from < to) {
        const size_t middle = from + (to - from) / 2;
        Hiding hiding;
        hiding.behind(children[middle]);
        Outcome outcome = run();
        if (outcome.isDecoded) {
            decoded = std::move(outcome);
            from = middle + 1;
        } else {
            to = middle;
        }
    }
    return children[from];
}

// Goes down from an element with which decoding fails to the innermost of which that is true. Decoding keeps to the
// order of the document: what comes behind the first fault is hidden.
Guilty findGuilty(Node root, const Decoding &run)
{
    Hiding hiding;
    Node element = root;
    size_t told = 0; // messages of what comes before
    for (;;) {
        const std::vector<Node> children = childrenOf(element);
        if (children.empty())
            break;
        Outcome decoded;
        {
            Hiding all;
            all.below(element);
            decoded = run();
        }
        if (!decoded.isDecoded)
            break;
        element = firstFailing(children, run, decoded);
        told = decoded.messageCount;
        hiding.behind(element);
    }
    const Outcome failed = run(told);
    return {element, failed.messages.empty() ? "" : failed.messages.front().text};
}

// ---- What is wrong with it ------------------------------------------------------------------------------------------

struct Fault {
    const dcm::Attribute *attribute = nullptr; // nullptr: the element or its content
    bool isContent = false;
    bool mayBeOrder = false; // something behind it may be what it lacks
    std::string text;
    std::string meant;
    Node first = nullptr; // which is described twice
};

bool isBitList(const char *text, const dcm::Content &content)
{
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    return dcmStr2BitList(text, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) == 0;
}

// The numbers that an id names.
std::vector<uint32_t> idsOf(const char *text, const dcm::Content &content)
{
    if (content.kind != dcm::Kind::bitList)
        return {dcm::readNumber(text)};
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    static_cast<void>(dcmStr2BitList(text, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits));
    std::vector<uint32_t> ids;
    for (uint32_t i = 0; i < sizeof bits * 8; i++)
        if ((bits[i / 8] & 0x80U >> i % 8) != 0)
            ids.push_back(i + 1);
    return ids;
}

// The text of an attribute; absent when there is no such attribute, or no name for it.
dcm::Text textOf(Node element, const dcm::Attribute *attribute)
{
    return dcm::Text::attribute(element, attribute != nullptr ? attribute->name : "", {"dcm"});
}

// The attribute by which an element is one of several; nullptr when it has none.
const dcm::Attribute *idAttribute(const dcm::Element &format)
{
    const dcm::Attribute *one = findAttribute(format, dcm::Kind::id);
    return one != nullptr ? one : findAttribute(format, dcm::Kind::bitList);
}

// What the element around announces; false when it announces nothing.
bool announced(Node element, uint32_t &count)
{
    const dcm::Element *around = formatOf(element->parent);
    const dcm::Attribute *num = around != nullptr ? findAttribute(*around, dcm::Kind::count) : nullptr;
    const dcm::Text text = textOf(element->parent, num);
    if (text)
        count = text.number();
    return static_cast<bool>(text);
}

// Whether a value is wrong whatever stands around it; `fault` then says why.
bool isWrong(Node element, const std::string &name, const char *text, const dcm::Content &content, Fault &fault)
{
    uint32_t count = 0;
    switch (content.kind) {
    case dcm::Kind::keyword:
        if (isWord(text, *content.vocabulary))
            return false;
        fault.text =
            quoted(text) + " is no word for \"" + name + "\"; expected " + listed(wordsOf(*content.vocabulary));
        fault.meant = nearest(text, wordsOf(*content.vocabulary));
        return true;
    case dcm::Kind::count: {
        const uint32_t number = dcm::readNumber(text);
        const uint32_t kept = content.bits < 32 ? number & ((1U << content.bits) - 1) : number;
        if (kept <= content.limit && kept >= content.least)
            return false;
        fault.text = quoted(text) + " entries do not fit: expected " + std::to_string(content.least) + " to " +
                     std::to_string(content.limit);
        return true;
    }
    case dcm::Kind::bitList:
        if (isBitList(text, content))
            return false;
        fault.text = quoted(text) + " is no list of numbers from 1 to " + std::to_string(content.limit) +
                     "; expected one like '1-3,5'";
        return true;
    case dcm::Kind::id: {
        const uint32_t number = dcm::readNumber(text);
        const bool isAnnounced = content.limit == 0 && announced(element, count);
        const size_t most = isAnnounced ? count : content.limit;
        if (number >= content.least && number <= most)
            return false;
        fault.text = quoted(text) + " is out of range: expected " + std::to_string(content.least) + " to " +
                     std::to_string(most) + (isAnnounced ? ", as announced" : "");
        fault.mayBeOrder = true;
        return true;
    }
    default:
        return false;
    }
}

// Whether `word` stands by itself in a message.
bool speaksOf(const std::string &message, const std::string &word, size_t &at)
{
    const auto isPart = [](char character) { return std::isalnum(static_cast<unsigned char>(character)) != 0; };
    for (at = message.find(word); at != std::string::npos; at = message.find(word, at + 1)) {
        const size_t end = at + word.size();
        if ((at == 0 || !isPart(message[at - 1])) && end < message.size() && message[end] == '(')
            return true;
    }
    return false;
}

// The sibling, or cousin in another container of the same kind, that has described one of the ids before.
Node describedBefore(Node element, const dcm::Attribute &id)
{
    const dcm::Text text = textOf(element, &id);
    if (!text)
        return nullptr;
    const std::vector<uint32_t> ids = idsOf(text.c_str(), id.content);
    const Node container = element->parent;
    for (const Node around : childrenOf(container->parent)) {
        if (!dcm::isNamed(around, dcm::nameOf(container)))
            continue;
        for (const Node other : childrenOf(around)) {
            if (other == element)
                return nullptr;
            const dcm::Element *format = formatOf(other);
            const dcm::Attribute *otherId = format != nullptr ? idAttribute(*format) : nullptr;
            const dcm::Text otherText = textOf(other, otherId);
            if (!otherText)
                continue;
            for (const uint32_t number : idsOf(otherText.c_str(), otherId->content))
                if (std::find(ids.begin(), ids.end(), number) != ids.end())
                    return other;
        }
    }
    return nullptr;
}

Fault faultOfAttributes(const Guilty &guilty, const dcm::Element &format)
{
    Fault fault;
    for (size_t i = 0; i < format.attributeCount; i++) {
        const dcm::Attribute &attribute = format.attributes[i];
        const dcm::Text text = textOf(guilty.element, &attribute);
        if (!text && attribute.need == dcm::Need::required) {
            fault.attribute = &attribute;
            fault.text = "\"" + std::string(attribute.name) + "\" is missing";
            return fault;
        }
        if (text && isWrong(guilty.element, attribute.name, text.c_str(), attribute.content, fault)) {
            fault.attribute = &attribute;
            return fault;
        }
    }
    const dcm::Attribute *id = idAttribute(format);
    if (id != nullptr && guilty.message.find("duplicate") != std::string::npos) {
        fault.attribute = id;
        fault.first = describedBefore(guilty.element, *id);
        fault.text = "\"" + std::string(id->name) + "\" describes what is described already";
        return fault;
    }
    // Only together with others is one wrong: the message says which.
    size_t earliest = std::string::npos;
    for (size_t i = 0; i < format.attributeCount; i++) {
        size_t at = 0;
        if (speaksOf(guilty.message, format.attributes[i].name, at) && at < earliest) {
            earliest = at;
            fault.attribute = &format.attributes[i];
            fault.mayBeOrder = true;
            fault.text = "\"" + std::string(format.attributes[i].name) + "\" does not fit what stands around it";
        }
    }
    return fault;
}

Fault faultOf(const Guilty &guilty, const dcm::Element *format)
{
    Fault fault;
    if (format == nullptr)
        return fault;
    fault = faultOfAttributes(guilty, *format);
    if (fault.attribute != nullptr)
        return fault;
    uint32_t count = 0;
    if (guilty.message.find("out of range") != std::string::npos && announced(guilty.element, count)) {
        fault.text = "is more than the " + std::to_string(count) + " announced";
        fault.mayBeOrder = true;
        return fault;
    }
    const dcm::Text text = dcm::Text::content(guilty.element, {"dcm"});
    fault.isContent = format->content.kind != dcm::Kind::none;
    if (!fault.isContent || !text ||
        !isWrong(guilty.element, dcm::nameOf(guilty.element), text.c_str(), format->content, fault)) {
        fault.text = fault.isContent ? "the value cannot be decoded" : "the element cannot be decoded";
        fault.mayBeOrder = !fault.isContent;
    }
    return fault;
}

// ---- Mending --------------------------------------------------------------------------------------------------------

// Whether decoding gets past the head of an element, with nothing in it and behind it.
bool isMended(Node root, Node element, const Decoding &run)
{
    Hiding hiding;
    for (Node node = element; node != root; node = node->parent)
        hiding.behind(node);
    hiding.below(element);
    return run().isDecoded;
}

// The first ids that no sibling has.
std::vector<std::string> freeIds(Node element, const dcm::Attribute &id)
{
    std::vector<bool> isTaken(DCM_PANEL_IF_MAX + 1);
    for (const Node sibling : childrenOf(element->parent)) {
        const dcm::Element *format = formatOf(sibling);
        const dcm::Attribute *other = format != nullptr ? idAttribute(*format) : nullptr;
        const dcm::Text text = textOf(sibling, sibling != element ? other : nullptr);
        if (text && other != nullptr)
            for (const uint32_t number : idsOf(text.c_str(), other->content))
                if (number < isTaken.size())
                    isTaken[number] = true;
    }
    std::vector<std::string> ids;
    for (size_t number = id.content.least; number < isTaken.size() && ids.size() < kMostIdsTried; number++)
        if (!isTaken[number])
            ids.push_back(std::to_string(number));
    return ids;
}

// Values that an attribute might rather have.
std::vector<std::string> betterValues(Node element, const dcm::Attribute &attribute)
{
    switch (attribute.content.kind) {
    case dcm::Kind::count:
        return {std::to_string(attribute.content.limit)};
    case dcm::Kind::keyword:
        return {wordsOf(*attribute.content.vocabulary).front()};
    case dcm::Kind::id:
    case dcm::Kind::bitList:
        return freeIds(element, attribute);
    default:
        return {"1"};
    }
}

// Takes a fault out, and as little else as possible; false when nothing but the whole would be left out.
bool mend(Repairs &repairs, const Guilty &guilty, const Fault &fault, const Decoding &run)
{
    const Node element = guilty.element;
    if (fault.attribute != nullptr) {
        const size_t before = repairs.count();
        const auto isMendedBy = [&](const char *value) {
            repairs.setAttribute(element, fault.attribute->name, value);
            if (isMended(repairs.root(), element, run))
                return true;
            repairs.undoTo(before);
            return false;
        };
        if (fault.attribute->need == dcm::Need::optional && isMendedBy(nullptr))
            return true;
        for (const std::string &value : betterValues(element, *fault.attribute))
            if (isMendedBy(value.c_str()))
                return true;
    }
    if (element == repairs.root())
        return false;
    repairs.remove(element);
    return true;
}

// Moves an element behind the first of some later siblings with which decoding gets past the guilty one; that sibling,
// or nullptr. The near ones are tried one by one. Farther away, what comes to stand before an element in which decoding
// goes well also does before the next.
Node siblingThatHelps(Repairs &repairs, Node moved, const std::vector<Node> &siblings, Node guilty, const Decoding &run)
{
    const size_t before = repairs.count();
    const auto helps = [&](size_t i) {
        repairs.moveBehind(siblings[i], moved);
        if (isMended(repairs.root(), guilty, run))
            return true;
        repairs.undoTo(before);
        return false;
    };
    size_t from = 0; // those before do not help
    size_t probe = 0;
    while (!helps(probe)) {
        from = probe + 1;
        if (from == siblings.size() || run.isTooMuch())
            return nullptr;
        probe = std::min(from < kMostNeighboursTried ? from : 2 * from, siblings.size() - 1);
    }
    size_t to = probe;
    while (from < to) {
        const size_t middle = from + (to - from) / 2;
        repairs.undoTo(before);
        if (helps(middle))
            to = middle;
        else
            from = middle + 1;
    }
    repairs.undoTo(before);
    repairs.moveBehind(siblings[to], moved);
    return siblings[to];
}

// The same for an element and those around it.
Node siblingItNeeds(Repairs &repairs, const Guilty &guilty, const Decoding &run)
{
    for (Node moved = guilty.element; moved != repairs.root(); moved = moved->parent) {
        std::vector<Node> siblings;
        for (Node next = moved->next; next != nullptr; next = next->next)
            if (next->type == XML_ELEMENT_NODE && !dcm::isNamed(next, dcm::nameOf(moved)))
                siblings.push_back(next);
        if (siblings.empty())
            continue;
        if (const Node needed = siblingThatHelps(repairs, moved, siblings, guilty.element, run))
            return needed;
    }
    return nullptr;
}

std::string failing(const std::string &message)
{
    return "; the query fails: \"" + shortened(message, kLongestMessage) + "\"";
}

void tell(const Guilty &guilty, const Fault &fault, Findings &findings)
{
    const DescriptionFile &file = findings.file();
    const std::string text = fault.text + failing(guilty.message);
    Finding &finding = fault.attribute != nullptr ? findings.atValue(guilty.element, fault.attribute->name, text)
                       : fault.isContent          ? findings.atContent(guilty.element, text)
                                                  : findings.atName(guilty.element, text);
    finding.meaning(fault.meant);
    if (fault.first != nullptr)
        finding.noting(file.nameSpan(fault.first), "described here");
}

void tellOrder(const Guilty &guilty, Node sibling, Findings &findings)
{
    findings
        .atName(guilty.element,
                "stands before \"" + std::string(dcm::nameOf(sibling)) + "\", which it needs" + failing(guilty.message))
        .noting(findings.file().nameSpan(sibling), "expected before it");
}

// To find each fault, what stands before it is decoded again and again.
void tellEnd(const DescribedType &type, const Outcome &outcome, Findings &findings)
{
    findings.endSearch();
    findings.atName(
        type.element,
        "there is more that makes the query fail, but the search for it has ended because it takes too long" +
            failing(outcome.messages.empty() ? "" : outcome.messages.back().text));
}

// How much of the file a frame, slot or card takes, and what the record of one costs beside that.
template <class Record> size_t costOf(const DescriptionFile &file, Node element)
{
    Node next = element->next;
    while (next != nullptr && next->type != XML_ELEMENT_NODE)
        next = next->next;
    const size_t begin = file.nameSpan(element).begin;
    const size_t end = next != nullptr ? file.nameSpan(next).begin : file.text().size();
    return (end > begin ? end - begin : file.text().size()) + sizeof(Record) / 16;
}

} // namespace

template <class Record>
bool explainFailures(const DescriptionFile &file, const DescribedType &type, Record &record, Findings &findings,
                     DecodingWork &work)
{
    findings.run(kQueryFails);
    Repairs repairs(type.element);
    const Decoding run([&](size_t firstMessage) { return file.decode(type, record, firstMessage); },
                       costOf<Record>(file, type.element), work);
    for (size_t i = 0;; i++) {
        const Outcome outcome = run();
        if (outcome.isDecoded)
            return true;
        if (i == kMostFailures || run.isTooMuch()) {
            tellEnd(type, run(outcome.messageCount - std::min<size_t>(outcome.messageCount, 1)), findings);
            return false;
        }
        const Guilty guilty = findGuilty(repairs.root(), run);
        const Fault fault = faultOf(guilty, formatOf(guilty.element));
        if (fault.mayBeOrder) {
            if (const Node needed = siblingItNeeds(repairs, guilty, run)) {
                tellOrder(guilty, needed, findings);
                continue;
            }
        }
        tell(guilty, fault, findings);
        if (!mend(repairs, guilty, fault, run))
            return false;
    }
}

template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmFrameInfo &, Findings &,
                              DecodingWork &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmSlotInfo &, Findings &,
                              DecodingWork &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmCardInfo &, Findings &,
                              DecodingWork &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmVmPortInfo &, Findings &,
                              DecodingWork &);

// ---- The check ------------------------------------------------------------------------------------------------------

namespace {

constexpr Check kChecks[] = {
    {"query-fails",
     Severity::error,
     "What makes the query of a frame, slot or card fail",
     "A query that fails returns -1, and the process that asked goes without its record: a card manager does not bring "
     "the card up. Every frame, slot, card and port list of the file is decoded by the library itself; each thing that "
     "makes it fail is told at the element or attribute that is the cause, with the library's innermost message.",
     R"(<device>
  <card typeid="0x21" mode="0">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1">
        <phytype>10gex</phytype>
      </port>
    </panel-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="0x21" mode="0">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1">
        <phytype>10ge</phytype>
      </port>
    </panel-port>
  </card>
</device>
)",
     {}},
};

} // namespace

const Check &kQueryFails = kChecks[0];

Checks queryChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
