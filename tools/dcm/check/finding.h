// What a check finds.
#ifndef DCM_TOOLS_CHECK_FINDING_H
#define DCM_TOOLS_CHECK_FINDING_H

#include "tools/dcm/description/description_file.h"

#include <cstdint>
#include <string>
#include <vector>

namespace dcmtool {

struct Check;

enum class Severity : uint8_t {
    warning, // what a query silently accepts
    error    // what makes a query fail
};

// Another place that a finding speaks of.
struct Note {
    Span span;
    std::string text;
};

struct Finding {
    const Check *check = nullptr;
    Severity severity = Severity::warning;
    Node element = nullptr; // at which a comment may allow it; nullptr for what concerns the file as a whole
    Span span;              // the guilty name or value
    std::string path;       // of the element in the device's terms: "card 0x21/panel-port/port-group 1-4"
    std::string text;
    std::string meant; // the nearest known word; empty when none is near
    std::vector<Note> notes;
    size_t more = 0;  // how many others of the check are counted with it and not kept
    size_t order = 0; // in which they were found

    Finding &noting(Span where, std::string what)
    {
        notes.push_back({where, std::move(what)});
        return *this;
    }
    Finding &meaning(std::string word)
    {
        meant = std::move(word);
        return *this;
    }
};

} // namespace dcmtool

#endif
