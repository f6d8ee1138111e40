// The elements of a description as a tree of places: the decoders' tables with a path for each element.
#ifndef DCM_TOOLS_FORMAT_TREE_H
#define DCM_TOOLS_FORMAT_TREE_H

#include "common/format.h"

#include <memory>
#include <string>
#include <vector>

namespace dcmformat {

// An element at one of the places where it may occur.
struct Place {
    std::string path; // "frame/slotmap/mpu"
    std::string name;
    const dcm::Element *element = nullptr;
    const Place *parent = nullptr;
    std::vector<std::unique_ptr<Place>> children;
    // The place where its element is described, with its content: the shortest path of the same table.
    const Place *described = nullptr;

    // A leaf has a value and no children.
    bool isLeaf() const { return element->attributeCount == 0 && element->childCount == 0; }
    // A list contains only leaves of one kind, and is described like a value.
    bool isList() const;
    bool isSection() const { return !isLeaf() && !isList(); }
    bool isDescribedHere() const { return described == this; }
};

// The roots: "device", and that of a VM's port list.
struct Tree {
    std::unique_ptr<Place> device;
    std::unique_ptr<Place> vm;

    // The sections that are described, in the order of the tables.
    std::vector<const Place *> sections() const;
    // All places where the element described at `section` may occur.
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
