// What the parts of a description say about each other: one row for each kind of reference, by which a value names
// other elements.
#ifndef DCM_TOOLS_RELATIONS_H
#define DCM_TOOLS_RELATIONS_H

#include "common/format.h"
#include "tools/dcm/description/description_file.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace dcmtool {

// What is named. A slot is its entry in the list of slots, which not every slot has.
enum class Target : uint8_t { slot, cardType, fanController, fanModule, powerSupply, led };

// Where it may be.
enum class Scope : uint8_t {
    sameType,          // in the frame, slot or card of the reference
    anyFrameOrSlot,    // ... of a frame; of a slot or card, which fits into any frame, in any of the file
    anyCard,           // in the whole file
    whereLedIsAttached // in what holds the map, or in any frame or card, as the LED's name says
};

struct Relation {
    dcm::Role holder;    // the element that has the reference ...
    dcm::Kind attribute; // ... in its attribute of this kind, or in its content: none
    Target target;
    Scope scope;
    const char *what;                   // what messages call a target
    dcm::Role unless = dcm::Role::none; // the value is an offset to the ids of its parent, unused beside this number
};

const std::vector<Relation> &allRelations();
// The relation of a value; nullptr when it refers to nothing. Without attribute, of the content.
const Relation *relationOf(dcm::Role holder, const dcm::Attribute *attribute);

// The numbers that a value names, as the library reads them; none of a name of an LED. With its element also where it
// is an offset.
std::vector<uint32_t> numbersNamed(const char *text, const dcm::Content &content);
std::vector<uint32_t> numbersNamed(Node element, const Relation &relation, const char *text,
                                   const dcm::Content &content);

// Finds what references name. The file is walked when the first one is looked for.
class TargetIndex {
public:
    explicit TargetIndex(const std::vector<DescribedType> &types) : types_(types) {}

    // The first elements with a number, in the order of the file; `type` is the frame, slot or card of the reference.
    const std::vector<Node> &find(const Relation &relation, const DescribedType &type, uint32_t number) const;
    bool has(const Relation &relation, const DescribedType &type, uint32_t number) const;
    // The LEDs of a name; `holder` is the element whose LED map names them.
    std::vector<Node> findLeds(const char *name, Node holder) const;
    // Of a number or name that nothing has: the faulty element that was probably meant to have it. Its name, or that of
    // an element around it, is misspelled, or its id cannot be read. nullptr when there is none.
    Node findFaulty(const Relation &relation, const DescribedType &type, uint32_t number) const;
    Node findFaultyLed(const char *name, Node holder) const;

private:
    // Target, the element in which it is looked for (nullptr: anywhere), and its number.
    using Key = std::tuple<Target, Node, uint32_t>;
    struct Entries {
        std::map<Key, std::vector<Node>> described;
        std::map<Key, Node> misspelled;
        std::map<std::pair<Target, Node>, Node> unreadable; // may have any number
        size_t comparisonsLeft = 1000;                      // of unknown names with those of the format
    };
    class Builder;

    const Entries &entries() const;
    const std::vector<Node> &elementsOf(const Key &key) const;
    Node faultyAt(const Key &key) const;

    const std::vector<DescribedType> &types_;
    mutable Entries entries_;
    mutable bool isBuilt_ = false;
};

// One thing that a value names.
struct Reference {
    const Relation *relation;
    Node element;                    // that has the value
    const dcm::Attribute *attribute; // nullptr: in its content
    Span span;                       // of the whole value
    std::string key;                 // a number, or the name of an LED
    std::vector<Node> targets;       // none: it is not described
};

// Every reference of a file, in its order.
std::vector<Reference> referencesIn(const DescriptionFile &file);

} // namespace dcmtool

#endif
