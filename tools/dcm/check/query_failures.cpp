#include "tools/dcm/check/query_failures.h"

#include "tools/dcm/check/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <unordered_map>

namespace dcmtool {

namespace {

constexpr size_t kMostFailures = 256; // of one type

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

// ---- A copy that may be changed -------------------------------------------------------------------------------------

// A frame, slot or card of its own, each of whose elements knows the one that it was copied from.
class Copy {
public:
    explicit Copy(Node original) : root_(xmlDocCopyNode(original, original->doc, 1))
    {
        // Some texts and names lead up to the root of the description.
        if (root_ != nullptr) {
            root_->parent = original->parent;
            match(root_, original);
        }
    }
    ~Copy()
    {
        if (root_ != nullptr)
            root_->parent = nullptr;
        xmlFreeNode(root_);
        for (xmlNode *node : removed_)
            xmlFreeNode(node);
    }
    Copy(const Copy &) = delete;
    Copy &operator=(const Copy &) = delete;

    Node root() const { return root_; }
    Node originalOf(Node copy) const { return originals_.at(copy); }
    void remove(Node node)
    {
        xmlUnlinkNode(node);
        removed_.push_back(node);
    }

private:
    void match(Node copy, Node original)
    {
        originals_.emplace(copy, original);
        const std::vector<Node> copies = childrenOf(copy);
        const std::vector<Node> children = childrenOf(original);
        for (size_t i = 0; i < copies.size() && i < children.size(); i++)
            match(copies[i], children[i]);
    }

    Node root_;
    std::unordered_map<Node, Node> originals_;
    std::vector<xmlNode *> removed_;
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

using Run = std::function<Outcome()>;

struct Guilty {
    Node element = nullptr; // of the copy
    std::string message;    // the innermost of those that follow from it
};

// The first of `children` with which decoding fails; `decoded` is what came of those before it.
Node firstFailing(const std::vector<Node> &children, const Run &run, Outcome &decoded)
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
Guilty findGuilty(Node root, const Run &run)
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
        told = decoded.messages.size();
        hiding.behind(element);
    }
    const Outcome failed = run();
    return {element, told < failed.messages.size() ? failed.messages[told].text : ""};
}

// ---- What is wrong with it ------------------------------------------------------------------------------------------

struct Fault {
    const dcm::Attribute *attribute = nullptr; // nullptr: the element or its content
    bool isContent = false;
    bool mayBeOrder = false; // something behind it may be what it lacks
    std::string text;
    std::string meant;
    Node first = nullptr; // which is described twice, of the copy
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

std::string quoted(const std::string &text)
{
    return "'" + text + "'";
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

// ---- Mending
// ---------------------------------------------------------------------------------------------------------

// Whether decoding gets past the head of an element, with nothing in it and behind it.
bool isMended(Node root, Node element, const Run &run)
{
    Hiding hiding;
    for (Node node = element; node != root; node = node->parent)
        hiding.behind(node);
    hiding.below(element);
    return run().isDecoded;
}

// The ids that no sibling has.
std::vector<std::string> freeIds(Node element, const dcm::Attribute &id)
{
    std::vector<bool> isTaken(DCM_PANEL_IF_MAX + 1);
    for (const Node sibling : childrenOf(element->parent)) {
        const dcm::Element *format = formatOf(sibling);
        const dcm::Attribute *other = format != nullptr ? idAttribute(*format) : nullptr;
        const dcm::Text text = textOf(sibling, sibling != element ? other : nullptr);
        if (text)
            for (const uint32_t number : idsOf(text.c_str(), other->content))
                if (number < isTaken.size())
                    isTaken[number] = true;
    }
    std::vector<std::string> ids;
    for (size_t number = id.content.least; number < isTaken.size(); number++)
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

// Takes a fault out of the copy, and as little else as possible; false when nothing but the whole would be left out.
bool mend(Copy &copy, const Guilty &guilty, const Fault &fault, const Run &run)
{
    const Node element = guilty.element;
    if (fault.attribute != nullptr) {
        const dcm::Text before = textOf(element, fault.attribute);
        const std::string text = before ? before.c_str() : "";
        if (fault.attribute->need == dcm::Need::optional) {
            xmlUnsetProp(element, xmlText(fault.attribute->name));
            if (isMended(copy.root(), element, run))
                return true;
        }
        for (const std::string &value : betterValues(element, *fault.attribute)) {
            xmlSetProp(element, xmlText(fault.attribute->name), xmlText(value.c_str()));
            if (isMended(copy.root(), element, run))
                return true;
        }
        xmlSetProp(element, xmlText(fault.attribute->name), xmlText(text.c_str()));
    }
    if (element == copy.root())
        return false;
    copy.remove(element);
    return true;
}

// Moves an element behind each later sibling in turn until decoding gets past it; the sibling that it takes, or
// nullptr.
Node siblingItNeeds(Copy &copy, const Guilty &guilty, const Run &run)
{
    for (Node moved = guilty.element; moved != copy.root(); moved = moved->parent) {
        const std::vector<Node> siblings = childrenOf(moved->parent);
        const size_t position =
            static_cast<size_t>(std::find(siblings.begin(), siblings.end(), moved) - siblings.begin());
        for (size_t i = position + 1; i < siblings.size(); i++) {
            if (dcm::nameOf(siblings[i]) == nullptr || dcm::isNamed(siblings[i], dcm::nameOf(moved)))
                continue;
            xmlAddNextSibling(siblings[i], moved);
            if (isMended(copy.root(), guilty.element, run))
                return siblings[i];
        }
        // Back to where it was.
        if (position + 1 < siblings.size())
            xmlAddPrevSibling(siblings[position + 1], moved);
    }
    return nullptr;
}

void tell(const Copy &copy, const Guilty &guilty, const Fault &fault, Findings &findings)
{
    const Node element = copy.originalOf(guilty.element);
    const DescriptionFile &file = findings.file();
    Span span = file.nameSpan(element);
    if (fault.attribute != nullptr)
        span = file.valueSpan(element, fault.attribute->name);
    else if (fault.isContent)
        span = file.contentSpan(element);
    Finding &finding = findings.at(element, span, fault.text + "; the query fails: \"" + guilty.message + "\"");
    finding.meaning(fault.meant);
    if (fault.first != nullptr)
        finding.noting(file.nameSpan(copy.originalOf(fault.first)), "described here");
}

void tellOrder(const Copy &copy, const Guilty &guilty, Node needed, Findings &findings)
{
    const Node element = copy.originalOf(guilty.element);
    const Node sibling = copy.originalOf(needed);
    findings
        .at(element, findings.file().nameSpan(element),
            "stands before \"" + std::string(dcm::nameOf(sibling)) + "\", which it needs; the query fails: \"" +
                guilty.message + "\"")
        .noting(findings.file().nameSpan(sibling), "expected before it");
}

} // namespace

template <class Record>
bool explainFailures(const DescriptionFile &file, const DescribedType &type, Record &record, Findings &findings)
{
    findings.run(kQueryFails);
    Copy copy(type.element);
    if (copy.root() == nullptr)
        return false;
    DescribedType described = type;
    described.element = copy.root();
    const Run run = [&] { return file.decode(described, record); };
    for (size_t i = 0; i < kMostFailures; i++) {
        if (run().isDecoded)
            return true;
        const Guilty guilty = findGuilty(copy.root(), run);
        const Fault fault = faultOf(guilty, formatOf(guilty.element));
        if (fault.mayBeOrder) {
            if (const Node needed = siblingItNeeds(copy, guilty, run)) {
                tellOrder(copy, guilty, needed, findings);
                continue;
            }
        }
        tell(copy, guilty, fault, findings);
        if (!mend(copy, guilty, fault, run))
            return false;
    }
    return false;
}

template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmFrameInfo &, Findings &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmSlotInfo &, Findings &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmCardInfo &, Findings &);
template bool explainFailures(const DescriptionFile &, const DescribedType &, DcmVmPortInfo &, Findings &);

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
