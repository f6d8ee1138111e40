// Access to a parsed document for decoders: elements, their names, and their texts.
#ifndef DCM_COMMON_XML_H
#define DCM_COMMON_XML_H

#include "common/number.h"
#include "common/report.h"
#include "common/word_key.h"

#include <libxml/tree.h>

#include <cstddef>
#include <cstring>

namespace dcm {

using Node = ::xmlNodePtr;

inline const char *nameOf(Node element)
{
    return reinterpret_cast<const char *>(element->name);
}

inline bool isNamed(Node element, const char *name)
{
    return element->name != nullptr && areEqual(nameOf(element), name);
}

// The element children of a node, in document order: for (Node child : children(node)) ...
// Texts, comments and processing instructions are not elements, whatever their names.
class Children {
public:
    explicit Children(Node parent) : first_(elementFrom(parent->children)) {}

    class Iterator {
    public:
        explicit Iterator(Node node) : node_(node) {}
        Node operator*() const { return node_; }
        Iterator &operator++()
        {
            node_ = elementFrom(node_->next);
            return *this;
        }
        bool operator!=(const Iterator &other) const { return node_ != other.node_; }

    private:
        Node node_;
    };
    Iterator begin() const { return Iterator(first_); }
    static Iterator end() { return Iterator(nullptr); }

private:
    static Node elementFrom(Node node)
    {
        while (node != nullptr && node->type != XML_ELEMENT_NODE)
            node = node->next;
        return node;
    }

    Node first_;
};

inline Children children(Node parent)
{
    return Children(parent);
}

// The value of an attribute or the content of an element: all text below it. If it is in one node of the document, as
// it nearly always is, it is borrowed from there; otherwise libxml2 makes a copy, which is freed with the object.
class Text {
public:
    // The attribute `name`; absent if the element does not have it.
    static Text attribute(Node element, const char *name, const Reporter &reporter);
    // Whether all attributes of an element can be borrowed.
    static bool borrowsAttributes(Node element);
    // The content of an element; never absent.
    static Text content(Node element, const Reporter &reporter)
    {
        const unsigned char *text = soleText(element->children);
        return text != nullptr ? Text(text) : copyContent(element, reporter);
    }

    Text(Text &&other) noexcept;
    ~Text()
    {
        if (copy_ != nullptr)
            xmlFree(copy_);
    }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;
    Text &operator=(Text &&) = delete;

    // False if there is nothing to read: the text is absent, or memory ran out, which has been reported.
    explicit operator bool() const { return text_ != nullptr; }
    bool isOutOfMemory() const { return outOfMemory_; }
    // Reports `message` if the text is absent; returns the result for a text that cannot be read.
    template <class By, class MessageType> Result reportMissing(const By &reporter, const MessageType &message) const
    {
        static_cast<void>(reporter.report(message));
        return outOfMemory_ ? Result::outOfMemory : Result::failed;
    }

    const unsigned char *word() const { return text_; } // nullptr if there is nothing to read
    const char *c_str() const { return reinterpret_cast<const char *>(text_); }
    size_t length() const { return std::strlen(c_str()); }
    uint32_t number() const { return readNumber(c_str()); }

private:
    explicit Text(const unsigned char *borrowed) : text_(borrowed) {}
    // The text of a node whose children are `first` and its siblings, if there is a single text node; otherwise
    // nullptr.
    static const unsigned char *soleText(const xmlNode *first)
    {
        static constexpr unsigned char kEmpty[] = "";
        if (first == nullptr)
            return kEmpty;
        if (first->next != nullptr || (first->type != XML_TEXT_NODE && first->type != XML_CDATA_SECTION_NODE))
            return nullptr;
        return first->content != nullptr ? first->content : kEmpty;
    }
    static Text copyContent(Node element, const Reporter &reporter);
    // `isCut`: memory ran out while the copy was made.
    static Text owned(unsigned char *copy, bool isCut, const Reporter &reporter);

    const unsigned char *text_;
    unsigned char *copy_ = nullptr;
    bool outOfMemory_ = false;
};

// The root of every device description.
inline constexpr char kDeviceName[] = "device";

// The root of a parsed document; fails if its entities expand too far.
Result rootOf(::_xmlDoc *document, Node &root, const QueryReporter &reporter);

} // namespace dcm

#endif
