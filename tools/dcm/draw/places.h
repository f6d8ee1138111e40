// The places in the description of a picture's parts: the element for each path of a record ("panelIf.3").
#ifndef DCM_TOOLS_DRAW_PLACES_H
#define DCM_TOOLS_DRAW_PLACES_H

#include "tools/dcm/description/description_file.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace dcmtool {

class Places {
public:
    // `element`: a frame or card.
    Places(const DescriptionFile &file, Node element) : Places(file, element, file.name()) {}
    Places(const DescriptionFile &file, Node element, const std::string &name);

    // "device.xml:812": the place of the element, or of the frame or card if the path has no element. Without the
    // folder of the file, so that a picture does not depend on it.
    std::string of(const std::string &path) const;
    // The element; nullptr if the path has no element of its own.
    Node nodeOf(const std::string &path) const;
    // The paths of the innermost element that contains `node`; the empty path is the frame or card. Nothing for an
    // element outside of it.
    std::vector<std::string> pathsAt(Node node) const;

private:
    void take(const std::string &path, Node node);
    void takeList(const std::string &path, Node parent, const char *name);
    void takeIds(const std::string &path, Node parent, const char *name, uint32_t first);
    void takeMap(const std::string &path, Node map);
    void takeUnit(const std::string &path, Node unit);

    const DescriptionFile &file_;
    Node element_;
    std::string name_;
    std::map<std::string, Node> nodes_;
    std::unordered_map<Node, std::vector<std::string>> paths_;
};

} // namespace dcmtool

#endif
