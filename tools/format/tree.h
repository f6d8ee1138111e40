// The elements of a description as places in it: what the decoders' tables hold, with a path for each.
#ifndef DCM_TOOLS_FORMAT_TREE_H
#define DCM_TOOLS_FORMAT_TREE_H

#include "common/format.h"

#include <memory>
#include <string>
#include <vector>

namespace dcmformat {

// An element where it may stand.
struct Place {
    std::string path; // "frame/slotmap/mpu"
    std::string name;
    const dcm::Element *element = nullptr;
    const Place *parent = nullptr;
    std::vector<std::unique_ptr<Place>> children;
    // Where its element is described, with everything below it: the shortest path under which the same table stands.
    const Place *described = nullptr;

    // A leaf holds a value and nothing else.
    bool isLeaf() const { return element->attributeCount == 0 && element->childCount == 0; }
    // A list holds leaves of one kind and nothing else, and goes for a value as well.
    bool isList() const;
    bool isSection() const { return !isLeaf() && !isList(); }
    bool isDescribedHere() const { return described == this; }
};

// What a description begins with: "device", and the root of a VM's port list.
struct Tree {
    std::unique_ptr<Place> device;
    std::unique_ptr<Place> vm;

    // The sections that are described, in the order of the tables.
    std::vector<const Place *> sections() const;
    // Everywhere that the element described at `section` may stand.
    std::vector<const Place *> placesOf(const Place &section) const;
};

Tree makeTree();

// Calls `visit` for a place and for all below it.
template <class Visit> void forEach(const Place &place, const Visit &visit)
{
    visit(place);
    for (const auto &child : place.children)
        forEach(*child, visit);
}

} // namespace dcmformat

#endif
