#include "tools/format/tree.h"

#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "vm/vm.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace dcmformat {

namespace {

const dcm::NamedElement kDeviceChildren[] = {
    {dcm::kFrameName, &dcm::kFrameElement},
    {dcm::kSlotName, &dcm::kSlotElement},
    {dcm::kCardName, &dcm::kCardElement},
};
const dcm::Element kDeviceElement = {{}, nullptr, 0, kDeviceChildren, std::size(kDeviceChildren)};
constexpr char kDeviceName[] = "device";

std::unique_ptr<Place> makePlace(const char *name, const dcm::Element &element, const Place *parent)
{
    auto place = std::make_unique<Place>();
    place->name = name;
    place->element = &element;
    place->parent = parent;
    // Paths do not begin with "device".
    place->path = parent != nullptr && parent->element != &kDeviceElement ? parent->path + "/" + name : name;
    for (size_t i = 0; i < element.childCount; i++)
        place->children.push_back(makePlace(element.children[i].name, *element.children[i].element, place.get()));
    return place;
}

size_t depthOf(const Place &place)
{
    return static_cast<size_t>(std::count(place.path.begin(), place.path.end(), '/'));
}

// Visits places in the order of the tables, each depth before the next, so that the shortest path is visited first.
void describe(Place &root)
{
    std::vector<Place *> places;
    const std::function<void(Place &)> collect = [&](Place &place) {
        places.push_back(&place);
        for (const auto &child : place.children)
            collect(*child);
    };
    collect(root);
    std::stable_sort(places.begin(), places.end(),
                     [](const Place *one, const Place *other) { return depthOf(*one) < depthOf(*other); });
    std::vector<const Place *> met;
    for (Place *place : places) {
        const auto same = std::find_if(met.begin(), met.end(), [&](const Place *other) {
            return other->element == place->element && other->name == place->name;
        });
        place->described = place->isSection() && same != met.end() ? *same : place;
        if (place->isDescribedHere() && place->isSection())
            met.push_back(place);
    }
}

// A place and the sections below it, without those that are described elsewhere.
void addSections(const Place &place, std::vector<const Place *> &sections)
{
    if (!place.isSection() || !place.isDescribedHere())
        return;
    sections.push_back(&place);
    for (const auto &child : place.children)
        addSections(*child, sections);
}

} // namespace

bool Place::isList() const
{
    return element->attributeCount == 0 && children.size() == 1 && children.front()->isLeaf();
}

std::vector<const Place *> Tree::sections() const
{
    std::vector<const Place *> sections;
    addSections(*device, sections);
    addSections(*vm, sections);
    return sections;
}

std::vector<const Place *> Tree::placesOf(const Place &section) const
{
    std::vector<const Place *> places;
    for (const Place *root : {static_cast<const Place *>(device.get()), static_cast<const Place *>(vm.get())})
        forEach(*root, [&](const Place &place) {
            // A place below one that is described elsewhere is already among the places of that one.
            const bool isReached = place.parent == nullptr || place.parent->isDescribedHere();
            if (place.described == &section && isReached)
                places.push_back(&place);
        });
    return places;
}

Tree makeTree()
{
    Tree tree = {makePlace(kDeviceName, kDeviceElement, nullptr), makePlace(dcm::kVmName, dcm::kVmElement, nullptr)};
    describe(*tree.device);
    describe(*tree.vm);
    return tree;
}

} // namespace dcmformat
