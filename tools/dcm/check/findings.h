// The findings of rules.
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
    warning, // works wrongly or not at all, but no query fails
    error    // makes a query fail
};

// A part of a value, in bytes as they are read.
struct ValuePart {
    size_t begin = 0;
    size_t size = 0;
};

// Where it is written; the whole value where it is not written as it is read.
Span partOf(Span whole, bool isAttribute, const char *read, ValuePart part, const DescriptionFile &file);

// Another place that a finding refers to.
struct Note {
    Span span;
    std::string text;
};

struct Finding {
    const Rule *rule = nullptr;
    Severity severity = Severity::warning;
    Node element = nullptr; // at which a comment may allow it; nullptr for a finding about the file as a whole
    Span span;              // the wrong name or value
    std::string path;       // of the element: "card 0x21/panel-port/port-group 1-4"
    std::string text;
    std::string meant; // the nearest valid word; empty if none is near
    std::vector<Note> notes;
    std::vector<Fix> fixes; // alternatives; the best one first
    size_t more = 0;        // the number of further findings of the rule that are not kept
    size_t order = 0;       // in which they were found
    std::string reason;     // why a comment allows it; empty when none does
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

// Collects what rules find, and adds the path of the element and the rule that is running. The first findings of each
// rule are kept, and the others only counted: their positions are not even computed, so that a file full of faults
// costs no more than another one.
class Findings {
public:
    static constexpr size_t kMostOfRule = 100;

    // `knownNames`: of elements and attributes that other programs put into descriptions.
    explicit Findings(const DescriptionFile &file, const std::set<std::string> *knownNames = nullptr)
        : file_(file), knownNames_(knownNames)
    {
    }

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

    // True if a finding of the running rule at an element would only be counted, which is then done: for rules whose
    // texts are expensive.
    bool counts(Node element);
    // Whether a name that is not one of the format is one of another program.
    bool isForeign(const std::string &name) const { return knownNames_ != nullptr && knownNames_->count(name) != 0; }

    // The place of a value.
    Span spanOf(const Value &value) const;

    // For the engine.
    void run(const Rule &rule) { running_ = &rule; }
    const DescriptionFile &file() const { return file_; }
    // Keeps the findings of a rule at an element separately, so that they can be removed.
    void setApart(const Rule &rule, Node element);
    // Takes it out, since a comment allows it; false when nothing was found there.
    bool takeOut(const Rule &rule, Node element, const std::string &reason);
    // Notes that the running rule has not looked for all that there is.
    void endSearch() { ended_.insert(running_); }
    // All kept findings, in the order of the file.
    std::vector<Finding> take();
    // What has been taken out, of each rule the first findings, in the order of the file.
    std::vector<Finding> takeAllowed();

private:
    // The findings of a rule, in the whole file or at one element.
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
    bool isReportedAt(Node element) const;
    template <class SpanOf> Finding &add(Node element, const SpanOf &spanOf, const std::string &text);

    const DescriptionFile &file_;
    const std::set<std::string> *knownNames_;
    const Rule *running_ = nullptr;
    std::unordered_map<const Rule *, Found> found_;
    std::unordered_map<Key, Found, Hash> apart_;
    std::unordered_map<const Rule *, Found> allowed_;
    std::set<std::pair<Node, size_t>> reported_; // places of what makes a query fail
    std::set<const Rule *> ended_;
    std::unordered_map<Node, Consequences> consequences_;
    size_t order_ = 0;
    Finding counted_; // takes the text of a finding that is not kept
};

// The path of an element: "card 0x21/panel-port/port-group 1-4".
std::string pathOf(Node element);

} // namespace dcmtool

#endif
