#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/query_failures.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

constexpr size_t kMostFailures = 256; // of one type
constexpr size_t kMostIdsTried = 16;
constexpr size_t kMostNeighboursTried = 32;
constexpr size_t kMostNamesCompared = 100;
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
    void moveBefore(Node sibling, Node node)
    {
        undoes_.push_back([back = Position(node)] { back.restore(); });
        xmlAddPrevSibling(sibling, node);
    }
    void moveBehind(Node sibling, Node node)
    {
        undoes_.push_back([back = Position(node)] { back.restore(); });
        xmlAddNextSibling(sibling, node);
    }
    // Adds a child before the others.
    void addFirst(Node parent, const char *name, const char *content)
    {
        xmlNode *added = xmlNewDocNode(parent->doc, nullptr, xmlText(name), xmlText(content));
        if (added == nullptr)
            return;
        undoes_.push_back([added] {
            xmlUnlinkNode(added);
            xmlFreeNode(added);
        });
        if (parent->children != nullptr)
            xmlAddPrevSibling(parent->children, added);
        else
            xmlAddChild(parent, added);
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
            // xmlAddChild() leaves a child of the same parent where it is.
            xmlUnlinkNode(node_);
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

// ---- Finding the element with which decoding fails -----------------------------------------------------------------
//
// Decoding goes through a description in its order and ends at the first failure. So what comes behind a place can be
// hidden without a change of what happens before it, and whether decoding then succeeds says on which side the failure
// is. At each level the children are halved until the first one is found with which decoding fails:
//
//     card                      fails, and succeeds without its children: the cause is among them
//     |-- mgt-port              succeeds when all behind it is hidden
//     |-- panel-port            fails when all behind it is hidden: go down
//     |   |-- port 1            succeeds
//     |   |-- port 2            fails: go down
//     |   |   |-- driver        succeeds
//     |   |   `-- phytype       fails, and has no children: the culprit
//     |   `-- port 3            hidden
//     `-- led-entity            hidden
//
// An element that fails without its children is the culprit itself: one of its attributes is the cause. What is wrong
// with it is then read from its format; only where an id is given twice or is beyond an announced
// number, or where attributes are wrong only together, the library's message says so.

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

struct Culprit {
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

// Goes down from an element with which decoding fails to the innermost for which that is true.
Culprit findCulprit(Node root, const Decoding &run)
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
    Node first = nullptr;        // which is described twice
    Node container = nullptr;    // around the element, that has the fault instead
    std::string better;          // the value that the attribute should probably have
    std::string misspelled;      // what is written for the attribute
    Node written = nullptr;      // the element that is written for an attribute, or for a child of `container`
    const char *child = nullptr; // of the container, that is left out or has the wrong content
    ValuePart item;              // of a list, that is wrong
};

bool isBitList(const char *text, const dcm::Content &content)
{
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    return dcmStr2BitList(text, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) == 0;
}

// The text of an attribute; absent when there is no such attribute, or no name for it.
dcm::Text textOf(Node element, const dcm::Attribute *attribute)
{
    return dcm::Text::attribute(element, attribute != nullptr ? attribute->name : "", {"dcm"});
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
        fault.text = inQuotes(text) + " is not a valid value for " + quotedName(name) + "; expected " +
                     listed(nearestFirst(text, wordsOf(*content.vocabulary)));
        fault.meant = nearest(text, wordsOf(*content.vocabulary));
        return true;
    case dcm::Kind::count: {
        const uint32_t number = dcm::readNumber(text);
        const uint32_t kept = content.bits < 32 ? number & ((1U << content.bits) - 1) : number;
        if (kept <= content.limit && kept >= content.least)
            return false;
        fault.text = inQuotes(text) + " entries do not fit: expected " + std::to_string(content.least) + " to " +
                     std::to_string(content.limit);
        return true;
    }
    case dcm::Kind::bitList:
        if (isBitList(text, content))
            return false;
        fault.item = faultyItem(text, content);
        fault.text = inQuotes(text) + " is not a list of numbers from 1 to " + std::to_string(content.limit) +
                     "; expected one like '1-3,5'";
        return true;
    case dcm::Kind::id: {
        const uint32_t number = dcm::readNumber(text);
        const bool isAnnounced = content.limit == 0 && announced(element, count);
        const size_t most = isAnnounced ? count : content.limit;
        if (number >= content.least && number <= most)
            return false;
        fault.text = inQuotes(text) + " is out of range: expected " + std::to_string(content.least) + " to " +
                     std::to_string(most) + (isAnnounced ? ", as announced" : "");
        fault.mayBeOrder = true;
        return true;
    }
    default:
        return false;
    }
}

// Whether a message names `word` with its value, as in "id(3)".
bool namesInMessage(const std::string &message, const std::string &word, size_t &at)
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

// The entries of an element: how many ids they have, where these are 1, 2, 3, ... without a gap, for each type of its
// own where entries have one; of entries without ids, how many there are. 0 where nothing can be said.
uint32_t entriesIn(Node container)
{
    std::map<std::string, std::set<uint32_t>> typed;
    uint32_t withoutId = 0;
    for (const Node child : childrenOf(container)) {
        const dcm::Element *format = formatOf(child);
        const dcm::Attribute *id = format != nullptr ? idAttribute(*format) : nullptr;
        if (id == nullptr) {
            withoutId += format != nullptr ? 1 : 0;
            continue;
        }
        const dcm::Text text = textOf(child, id);
        const dcm::Text type = textOf(child, findAttribute(*format, dcm::Kind::keyword));
        for (const uint32_t number : text ? idsOf(text.c_str(), id->content) : std::vector<uint32_t>())
            typed[type ? type.c_str() : ""].insert(number);
    }
    uint32_t count = 0;
    for (const auto &[type, ids] : typed) {
        if (*ids.begin() != 1 || *ids.rbegin() != ids.size())
            return 0;
        count += static_cast<uint32_t>(ids.size());
    }
    return typed.empty() ? withoutId : count;
}

// The child that is probably a misspelling of one that is missing; nullptr when there is none.
Node misspelledChild(Node element, const dcm::Element &format, const char *name)
{
    size_t comparisons = 0;
    for (const Node child : childrenOf(element)) {
        const char *written = dcm::nameOf(child);
        if (findRow(format, written) == format.childCount && comparisons++ < kMostNamesCompared &&
            nearest(written, childNames(format)) == name)
            return child;
    }
    return nullptr;
}

// An element beyond what its container announces, where the entries are in order, so that it is the number that is
// wrong.
bool isNumberWrong(Node element, Fault &fault)
{
    uint32_t count = 0;
    const Node container = element->parent;
    const uint32_t described = announced(element, count) ? entriesIn(container) : 0;
    const dcm::Element *around = formatOf(container);
    if (described <= count || around == nullptr)
        return false;
    const dcm::Attribute *num = findAttribute(*around, dcm::Kind::count);
    if (num == nullptr || described > num->content.limit)
        return false;
    fault = {};
    fault.container = container;
    fault.attribute = num;
    fault.better = std::to_string(described);
    fault.first = element;
    fault.text = quotedName(num->name) + " is " + std::to_string(count) + ", but " + fault.better + " are described";
    return true;
}

// The number of fans of a module, where it is wrong: the fans are 1, 2, 3, ..., or it is not a number.
bool isFanCountWrong(Node fan, Fault &fault)
{
    const Node module = fan->parent;
    const dcm::Element *format = formatOf(module);
    const char *name = nullptr;
    for (size_t i = 0; format != nullptr && i < format->childCount; i++)
        if (format->children[i].role() == dcm::Role::fanCount)
            name = format->children[i].name;
    if (name == nullptr)
        return false;
    Node written = nullptr;
    for (const Node child : childrenOf(module))
        if (dcm::isNamed(child, name))
            written = child;
    // What comes too late is another fault.
    for (Node next = fan->next; next != nullptr; next = next->next)
        if (next == written)
            return false;
    std::string text;
    if (written != nullptr)
        text = dcm::Text::content(written, {"dcm"}).c_str();
    const Reading reading = readingOf(text);
    const uint32_t described = entriesIn(module);
    if (written != nullptr && reading.isNumber && described <= reading.bits)
        return false;
    fault = {};
    fault.container = module;
    fault.child = name;
    fault.written = written;
    fault.better = std::to_string(described != 0 ? described : uint32_t{DCM_FAN_MAX});
    if (written == nullptr && dcm::Text::attribute(module, name, {"dcm"})) {
        fault.misspelled = name;
        fault.text = quotedName(name) + " is an element, not an attribute, and is missing";
    } else if (written == nullptr) {
        fault.written = misspelledChild(module, *format, name);
        fault.text = (fault.written != nullptr ? quotedName(dcm::nameOf(fault.written)) + " is not known, and " : "") +
                     quotedName(name) + " is missing";
        fault.meant = fault.written != nullptr ? name : "";
    } else if (!reading.isNumber) {
        fault.text = (text.empty() ? "nothing" : inQuotes(text)) + " is not a number and counts as 0; expected " +
                     inQuotes(fault.better);
    } else {
        fault.first = fan;
        fault.text =
            quotedName(name) + " is " + std::to_string(reading.bits) + ", but " + fault.better + " fans are described";
    }
    fault.isContent = written != nullptr;
    return true;
}

// The number in brackets behind a word of a message: of "fan id(3)", 3.
std::string numberBehind(const std::string &message, const std::string &word)
{
    size_t at = 0;
    if (!namesInMessage(message, word, at))
        return "";
    const size_t begin = message.find_first_not_of("(=", at + word.size());
    return begin != std::string::npos ? message.substr(begin, message.find(')', begin) - begin) : "";
}

// An id that is too large for what something else says.
std::string aboveText(const Culprit &culprit)
{
    const std::string id = numberBehind(culprit.message, "id");
    const std::string most = numberBehind(culprit.message, "out of range");
    if (id.empty() || most.empty())
        return "";
    const std::string name = shortened(dcm::nameOf(culprit.element));
    const dcm::Element *around = formatOf(culprit.element->parent);
    for (size_t i = 0; around != nullptr && i < around->childCount; i++)
        if (around->children[i].role() == dcm::Role::fanCount)
            return std::string(name)
                .append(" ")
                .append(id)
                .append(" is above ")
                .append(quotedName(around->children[i].name) + " " + most);
    uint32_t count = 0;
    if (announced(culprit.element, count))
        return name + " " + id + " is above the " + most + " announced";
    return name + " " + id + " is above " + most + ", the number of units announced";
}

// How many ports of a panel are on the side that has a name in the format.
uint32_t portsOfType(Node panel, const char *type)
{
    uint32_t count = 0;
    for (const Node port : childrenOf(panel)) {
        const dcm::Element *format = formatOf(port);
        for (const Node child : childrenOf(port))
            if (format != nullptr && roleOf(child) == dcm::Role::portType)
                if (const dcm::Text text = dcm::Text::content(child, {"dcm"});
                    text && type == std::string(text.c_str()))
                    count += static_cast<uint32_t>(std::max<size_t>(idsOf(port, *format).size(), 1));
    }
    return count;
}

// Of two numbers that do not add up to a third, the one that is wrong.
Fault faultOfSum(const Culprit &culprit, const std::vector<const dcm::Attribute *> &named)
{
    std::array<std::string, 3> numbers;
    for (size_t i = 0; i < numbers.size(); i++)
        numbers[i] = numberBehind(culprit.message, named[i]->name);
    Fault fault;
    const uint32_t sum = dcm::readNumber(numbers[0].c_str()) + dcm::readNumber(numbers[1].c_str());
    fault.text = quotedName(named[0]->name) + " " + numbers[0] + " and " + quotedName(named[1]->name) + " " +
                 numbers[1] + " do not add up to " + quotedName(named[2]->name) + " " + numbers[2];
    if (entriesIn(culprit.element) == sum) {
        fault.attribute = named[2];
        fault.better = std::to_string(sum);
    } else {
        const bool isFirstRight = portsOfType(culprit.element, "line") == dcm::readNumber(numbers[0].c_str());
        fault.attribute = named[isFirstRight ? 1 : 0];
    }
    return fault;
}

// What is written for an attribute that is missing: a misspelled attribute, an element, or of an id the only attribute
// that the format does not have.
void findWritten(Node element, const dcm::Element &format, const dcm::Attribute &missing, Fault &fault)
{
    std::vector<std::string> unknown;
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next)
        if (const char *written = reinterpret_cast<const char *>(attribute->name);
            findAttribute(format, written) == nullptr && attribute->ns == nullptr)
            unknown.emplace_back(written);
    if (unknown.size() > kMostNamesCompared)
        return;
    const std::vector<std::string> known = attributeNames(format);
    for (const std::string &written : unknown)
        if (nearest(written, known) == missing.name) {
            fault.misspelled = written;
            fault.text = quotedName(written) + " is not known, and ";
        }
    if (fault.misspelled.empty() && unknown.size() == 1 && &missing == idAttribute(format)) {
        fault.misspelled = unknown.front();
        fault.text = quotedName(unknown.front()) + " has no meaning here, and ";
    }
    if (!fault.misspelled.empty()) {
        fault.meant = missing.name;
        fault.better = dcm::Text::attribute(element, fault.misspelled.c_str(), {"dcm"}).c_str();
    } else if (const Node child = childCalled(element, missing.name);
               child != nullptr && findRow(format, missing.name) == format.childCount) {
        fault.written = child;
        fault.better = dcm::Text::content(child, {"dcm"}).c_str();
        fault.text = quotedName(missing.name) + " is an attribute, not an element, and is missing";
    }
}

Fault faultOfAttributes(const Culprit &culprit, const dcm::Element &format)
{
    Fault fault;
    for (size_t i = 0; i < format.attributeCount; i++) {
        const dcm::Attribute &attribute = format.attributes[i];
        const dcm::Text text = textOf(culprit.element, &attribute);
        if (!text && attribute.need == dcm::Need::required) {
            fault.attribute = &attribute;
            findWritten(culprit.element, format, attribute, fault);
            if (fault.written == nullptr)
                fault.text += quotedName(attribute.name) + " is missing";
            return fault;
        }
        if (text && isWrong(culprit.element, attribute.name, text.c_str(), attribute.content, fault)) {
            fault.attribute = &attribute;
            if (fault.mayBeOrder)
                isNumberWrong(culprit.element, fault);
            return fault;
        }
    }
    const dcm::Attribute *id = idAttribute(format);
    if (id != nullptr && culprit.message.find("duplicate") != std::string::npos) {
        fault.attribute = id;
        fault.first = describedBefore(culprit.element, *id);
        fault.text = quotedName(id->name) + " describes what is described already";
        const Node container = culprit.element->parent;
        const dcm::Element *around = formatOf(container);
        if (fault.first != nullptr && fault.first->parent != container && around != nullptr && around->most == 1) {
            fault.attribute = nullptr;
            fault.container = container;
            fault.first = fault.first->parent;
            fault.text = quotedName(dcm::nameOf(container)) + " is in " + quotedName(dcm::nameOf(container->parent)) +
                         " a second time, and describes what is described already";
        }
        return fault;
    }
    // Only together with others is one wrong: the message says which.
    std::map<size_t, const dcm::Attribute *> places;
    for (size_t i = 0; i < format.attributeCount; i++) {
        size_t at = 0;
        if (namesInMessage(culprit.message, format.attributes[i].name, at))
            places.emplace(at, &format.attributes[i]);
    }
    std::vector<const dcm::Attribute *> named;
    named.reserve(places.size());
    for (const auto &[at, attribute] : places)
        named.push_back(attribute);
    if (named.empty())
        return fault;
    if (named.size() == 3 && culprit.message.find(" + ") != std::string::npos)
        return faultOfSum(culprit, named);
    if (isNumberWrong(culprit.element, fault) || isFanCountWrong(culprit.element, fault))
        return fault;
    fault.attribute = named.front();
    fault.mayBeOrder = true;
    fault.text = aboveText(culprit);
    if (fault.text.empty())
        fault.text = quotedName(fault.attribute->name) + " contradicts other parts of the description";
    return fault;
}

Fault faultOf(const Culprit &culprit, const dcm::Element *format)
{
    Fault fault;
    if (format == nullptr)
        return fault;
    fault = faultOfAttributes(culprit, *format);
    if (fault.attribute != nullptr || fault.container != nullptr)
        return fault;
    uint32_t count = 0;
    if (culprit.message.find("out of range") != std::string::npos && announced(culprit.element, count)) {
        if (isNumberWrong(culprit.element, fault))
            return fault;
        fault.text = "is more than the " + std::to_string(count) + " announced";
        fault.mayBeOrder = true;
        return fault;
    }
    const dcm::Text text = dcm::Text::content(culprit.element, {"dcm"});
    fault.isContent = format->content.kind != dcm::Kind::none;
    if (!fault.isContent || !text ||
        !isWrong(culprit.element, dcm::nameOf(culprit.element), text.c_str(), format->content, fault)) {
        fault.text = fault.isContent ? "the value cannot be decoded" : "the element cannot be decoded";
        fault.mayBeOrder = !fault.isContent;
    }
    return fault;
}

// ---- Repairs --------------------------------------------------------------------------------------------------------

// Whether decoding gets past the head of an element, with nothing in it and behind it.
bool isRepaired(Node root, Node element, const Decoding &run)
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

// Removes a fault, and as little else as possible; false when only the whole element could be removed.
bool repair(Repairs &repairs, const Culprit &culprit, const Fault &fault, const Decoding &run)
{
    const Node element = fault.container != nullptr ? fault.container : culprit.element;
    if (fault.child != nullptr) {
        const size_t before = repairs.count();
        if (fault.written != nullptr)
            repairs.remove(fault.written);
        repairs.addFirst(element, fault.child, fault.better.c_str());
        if (isRepaired(repairs.root(), culprit.element, run))
            return true;
        repairs.undoTo(before);
    }
    if (fault.attribute != nullptr) {
        const size_t before = repairs.count();
        const auto isRepairedBy = [&](const char *value) {
            repairs.setAttribute(element, fault.attribute->name, value);
            if (isRepaired(repairs.root(), element, run))
                return true;
            repairs.undoTo(before);
            return false;
        };
        if (fault.better.empty() && fault.attribute->need == dcm::Need::optional && isRepairedBy(nullptr))
            return true;
        if (!fault.better.empty() && isRepairedBy(fault.better.c_str()))
            return true;
        for (const std::string &value : betterValues(element, *fault.attribute))
            if (isRepairedBy(value.c_str()))
                return true;
    }
    if (element == repairs.root())
        return false;
    repairs.remove(element);
    return true;
}

// Moves an element after a later sibling, so that decoding succeeds up to the culprit, and returns the first such
// sibling or nullptr. The nearest siblings are tried in turn; then a binary search finds it.
Node siblingThatHelps(Repairs &repairs, Node moved, const std::vector<Node> &siblings, Node culprit,
                      const Decoding &run)
{
    const size_t before = repairs.count();
    const auto helps = [&](size_t i) {
        repairs.moveBehind(siblings[i], moved);
        if (isRepaired(repairs.root(), culprit, run))
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

// Puts one of the near siblings before an element, so that others that need it have it, too; that sibling, or nullptr.
Node siblingBroughtForward(Repairs &repairs, Node moved, const std::vector<Node> &siblings, Node culprit,
                           const Decoding &run)
{
    const size_t before = repairs.count();
    for (size_t i = 0; i < siblings.size() && i < kMostNeighboursTried && !run.isTooMuch(); i++) {
        repairs.moveBefore(moved, siblings[i]);
        if (isRepaired(repairs.root(), culprit, run))
            return siblings[i];
        repairs.undoTo(before);
    }
    return nullptr;
}

// The same for an element and those around it.
Node siblingItNeeds(Repairs &repairs, const Culprit &culprit, const Decoding &run)
{
    for (Node moved = culprit.element; moved != repairs.root(); moved = moved->parent) {
        std::vector<Node> siblings;
        for (Node next = moved->next; next != nullptr; next = next->next)
            if (next->type == XML_ELEMENT_NODE && !dcm::isNamed(next, dcm::nameOf(moved)))
                siblings.push_back(next);
        if (siblings.empty())
            continue;
        if (const Node needed = siblingBroughtForward(repairs, moved, siblings, culprit.element, run))
            return needed;
        if (const Node needed = siblingThatHelps(repairs, moved, siblings, culprit.element, run))
            return needed;
    }
    return nullptr;
}

std::string failing(const std::string &message)
{
    return "; the query fails: \"" + shortened(message, kLongestMessage) + "\"";
}

// The part of a list that is wrong.
Span itemSpan(Node element, const Fault &fault, const DescriptionFile &file)
{
    if (fault.attribute != nullptr)
        return partOf(file.valueSpan(element, fault.attribute->name), true, textOf(element, fault.attribute).c_str(),
                      fault.item, file);
    return partOf(file.contentSpan(element), false, dcm::Text::content(element, {"dcm"}).c_str(), fault.item, file);
}

void tell(const Culprit &culprit, const Fault &fault, Findings &findings)
{
    const DescriptionFile &file = findings.file();
    const std::string text = fault.text + failing(culprit.message);
    const Node element = fault.container != nullptr ? fault.container : culprit.element;
    const Node place = fault.written != nullptr ? fault.written : element;
    Finding &finding = !fault.misspelled.empty() ? findings.atAttribute(element, fault.misspelled.c_str(), text)
                       : fault.item.size != 0    ? findings.at(element, itemSpan(element, fault, file), text)
                       : fault.isContent         ? findings.atContent(place, text)
                       : fault.written != nullptr || fault.attribute == nullptr
                           ? findings.atName(place, text)
                           : findings.atValue(element, fault.attribute->name, text);
    finding.meaning(fault.meant);
    if (fault.first != nullptr)
        finding.noting(file.nameSpan(fault.first), fault.better.empty() ? "described here" : "the first beyond it");
}

void tellOrder(const Culprit &culprit, Node sibling, Findings &findings)
{
    findings
        .atName(culprit.element,
                "is before " + quotedName(dcm::nameOf(sibling)) + ", which it needs" + failing(culprit.message))
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
    std::set<Node> wrongCounts; // elements
    for (size_t i = 0;; i++) {
        const Outcome outcome = run();
        if (outcome.isDecoded)
            return true;
        if (i == kMostFailures || run.isTooMuch()) {
            tellEnd(type, run(outcome.messageCount - std::min<size_t>(outcome.messageCount, 1)), findings);
            return false;
        }
        const Culprit culprit = findCulprit(repairs.root(), run);
        const Fault fault = faultOf(culprit, formatOf(culprit.element));
        if (fault.mayBeOrder) {
            if (const Node needed = siblingItNeeds(repairs, culprit, run)) {
                tellOrder(culprit, needed, findings);
                continue;
            }
        }
        // What is beyond a number that is wrong is no mistake of its own.
        const bool isCount = fault.attribute != nullptr && fault.attribute->content.kind == dcm::Kind::count;
        if (isCount)
            wrongCounts.insert(fault.container != nullptr ? fault.container : culprit.element);
        if (isCount || !fault.mayBeOrder || wrongCounts.count(culprit.element->parent) == 0)
            tell(culprit, fault, findings);
        if (!repair(repairs, culprit, fault, run))
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

extern constexpr Rule kQueryFails = {"query-fails", Severity::error, byTheEngine()};

} // namespace dcmtool
