// Where a picture's parts are described: for each path of a record ("panelIf.3") its element.
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
    Places(const DescriptionFile &file, Node element);

    // "device.xml:812", that of the frame or card where the path has no element of its own. The folder of the file is
    // left out, so that a picture does not depend on it.
    std::string of(const std::string &path) const;
    // The element; nullptr where the path has none of its own.
    Node nodeOf(const std::string &path) const;
    // The paths that the element describes which is `node` or around it; the empty one stands for the frame or card,
    // and there is none for what is outside of it.
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
