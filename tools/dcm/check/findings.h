// What rules find.
#ifndef DCM_TOOLS_CHECK_FINDINGS_H
#define DCM_TOOLS_CHECK_FINDINGS_H

#include "tools/dcm/check/fix.h"
#include "tools/dcm/description/description_file.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace dcmtool {

struct Rule;
struct Value;

enum class Severity : uint8_t {
    info,    // probably not what was meant; never changes the exit status
    warning, // works wrongly or not at all, and no query fails
    error    // what makes a query fail
};

// A part of a value, in bytes as they are read.
struct ValuePart {
    size_t begin = 0;
    size_t size = 0;
};

// Where it is written; the whole value where it is not written as it is read.
Span partOf(Span whole, bool isAttribute, const char *read, ValuePart part, const DescriptionFile &file);

// Another place that a finding speaks of.
struct Note {
    Span span;
    std::string text;
};

struct Finding {
    const Rule *rule = nullptr;
    Severity severity = Severity::warning;
    Node element = nullptr; // at which a comment may allow it; nullptr for what concerns the file as a whole
    Span span;              // the name or value that is wrong
    std::string path;       // of the element in the device's terms: "card 0x21/panel-port/port-group 1-4"
    std::string text;
    std::string meant; // the nearest known word; empty when none is near
    std::vector<Note> notes;
    std::vector<Fix> fixes; // each by itself; the best one first
    size_t more = 0;        // how many others of the rule are counted with it and not kept
    size_t order = 0;       // in which they were found
    Node scope = nullptr;   // all that the finding follows from is in this element, or is it

    Finding &noting(Span where, std::string what)
    {
        notes.push_back({where, std::move(what)});
        return *this;
    }
    Finding &concerning(Node all)
    {
        scope = all;
        return *this;
    }
    Finding &meaning(std::string word)
    {
        meant = std::move(word);
        return *this;
    }
};

// Takes what rules find. The path of the element is added, and the rule that is running. Of each rule the first
// findings are kept, and the others counted: their places are not even looked up, so that a file of nothing but faults
// costs no more than another.
class Findings {
public:
    static constexpr size_t kMostOfRule = 100;

    explicit Findings(const DescriptionFile &file) : file_(file) {}

    Finding &at(const Value &value, const std::string &text);                           // under the value
    Finding &atName(Node element, const std::string &text);                             // under the element's name
    Finding &atAttribute(Node element, const char *attribute, const std::string &text); // under an attribute's name
    Finding &atValue(Node element, const char *attribute, const std::string &text);     // under an attribute's value
    Finding &atContent(Node element, const std::string &text);                          // under the content
    Finding &atItem(const Value &value, ValuePart item, const std::string &text);       // under a part of the value
    Finding &at(Node element, Span span, const std::string &text);                      // anywhere

    // Counts what is a consequence of a fault of another element: it becomes a note of the finding there. `what` is
    // what the value, or the element, says: "fan controller 3 is named here".
    void follow(Node cause, const Value &value, const std::string &what);
    void follow(Node cause, Node element, const std::string &what);

    // True when what the running rule finds at an element is only counted, which is then done: for rules whose texts
    // cost much to make.
    bool counts(Node element);

    // The place of a value.
    Span spanOf(const Value &value) const;

    // For the engine.
    void run(const Rule &rule) { running_ = &rule; }
    const DescriptionFile &file() const { return file_; }
    // Keeps what a rule finds at an element apart, so that it can be taken out.
    void setApart(const Rule &rule, Node element);
    // Takes it out; false when nothing was found there.
    bool takeOut(const Rule &rule, Node element);
    // Notes that the running rule has not looked for all that there is.
    void endSearch() { ended_.insert(running_); }
    // All that is kept, in the order of the file.
    std::vector<Finding> take();

private:
    // What a rule found, in the whole file or at one element.
    struct Found {
        std::vector<Finding> kept;
        size_t count = 0;
    };
    using Key = std::pair<const Rule *, Node>;
    struct Hash {
        size_t operator()(const Key &key) const
        {
            return std::hash<const void *>()(key.first) * 31 + std::hash<const void *>()(key.second);
        }
    };

    // What follows from one element.
    struct Consequences {
        Span first;
        std::string what;
        size_t count = 0;
    };

    Found &foundAt(Node element);
    template <class SpanOf> void addConsequence(Node cause, const SpanOf &spanOf, const std::string &what);
    void noteConsequences(std::vector<Finding> &all) const;
    bool isToldAt(Node element) const;
    template <class SpanOf> Finding &add(Node element, const SpanOf &spanOf, const std::string &text);

    const DescriptionFile &file_;
    const Rule *running_ = nullptr;
    std::unordered_map<const Rule *, Found> found_;
    std::unordered_map<Key, Found, Hash> apart_;
    std::set<std::pair<Node, size_t>> told_; // places of what makes a query fail
    std::set<const Rule *> ended_;
    std::unordered_map<Node, Consequences> consequences_;
    size_t order_ = 0;
    Finding counted_; // takes what is said of one that is not kept
};

// Where an element stands in the device's terms: "card 0x21/panel-port/port-group 1-4".
std::string pathOf(Node element);

} // namespace dcmtool

#endif
