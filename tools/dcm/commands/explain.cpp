// One entry of the reference of descriptions.
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/own_output.h"
#include "tools/format/reference.h"

#include <algorithm>
#include <memory>

using namespace dcmtool;

namespace {

struct Reference {
    dcmformat::Tree tree = dcmformat::makeTree();
    dcmformat::Prose prose = dcmformat::Prose(dcmformat::builtInProse());
    std::vector<std::string> keys = dcmformat::referenceKeys(tree);
};

std::string meaningOf(const Reference &reference, const std::string &key)
{
    return dcmformat::summaryOf(reference.tree, reference.prose, key).meaning;
}

// "phytype" of "card/panel-port/port/phytype"; a key without "/" and "@" is its own name.
std::string nameOf(const std::string &key)
{
    return key.substr(key.find_last_of("/@") + 1);
}

std::string listOf(const Reference &reference, const std::vector<std::string> &keys)
{
    size_t width = 0;
    for (const std::string &key : keys)
        width = std::max(width, key.size());
    std::string text;
    for (const std::string &key : keys)
        text += key + std::string(width + 2 - key.size(), ' ') + meaningOf(reference, key) + "\n";
    return text;
}

std::string explanationOf(const Reference &reference, const std::string &path)
{
    if (path.empty())
        return listOf(reference, reference.keys);
    const std::string exact = dcmformat::keyOfPath(reference.tree, path);
    std::vector<std::string> found = dcmformat::keysOfEnd(reference.tree, path);
    found.erase(std::remove(found.begin(), found.end(), exact), found.end());
    if (exact.empty() && found.size() > 1)
        return listOf(reference, found);
    if (exact.empty() && found.empty()) {
        std::vector<std::string> known = reference.keys;
        for (const std::string &key : reference.keys)
            known.push_back(nameOf(key));
        refuseWord(path, "element or attribute", known, "dcm explain");
    }
    const std::string key = exact.empty() ? found.front() : exact;
    std::string text = toText(dcmformat::referenceEntry(reference.tree, reference.prose, key));
    if (!exact.empty() && !found.empty())
        text += "\nOf the same name:\n" + listOf(reference, found);
    return text;
}

Candidates keys(const PartialLine & /*line*/)
{
    const Reference reference;
    Candidates candidates;
    for (const std::string &key : reference.keys)
        candidates.push_back({key, meaningOf(reference, key)});
    return candidates;
}

} // namespace

Command explainCommand()
{
    const auto path = std::make_shared<std::string>();
    Argument argument = {"PATH", "The element or attribute, or the end of its path [all are listed]", path.get()};
    argument.candidates = keys;
    return {
        "explain",
        "Explain an element or attribute of descriptions",
        {argument},
        [path] { return OwnOutput().print(explanationOf(Reference(), *path)) ? kSuccess : kCannotWrite; },
        "PATH is as in card/panel-port/port/phytype, card@typeid or phytype. If several elements match, they are listed."};
}
