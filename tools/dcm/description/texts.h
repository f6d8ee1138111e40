// How messages quote a file: values 'like this', names of elements and attributes "like this".
#ifndef DCM_TOOLS_TEXTS_H
#define DCM_TOOLS_TEXTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

// A text of the file as messages show it: a long one is cut after a character, with "...".
constexpr size_t kMostShown = 80;
std::string shortened(std::string_view text, size_t most = kMostShown);
// Such a text as a value, and as the name of an element or attribute.
std::string inQuotes(std::string_view text);
std::string quotedName(std::string_view name);

// Without the blanks around it.
std::string trimmed(const std::string &text);

// The nearest of some words; empty if none is near.
std::string nearest(const std::string &written, const std::vector<std::string> &words);
// All of them, the nearest first.
std::vector<std::string> nearestFirst(const std::string &written, std::vector<std::string> words);

// Whether the word is nearer than all others, and so near that no other can be meant.
bool isOnlyOneNear(const std::string &written, const std::string &word, const std::vector<std::string> &words);

// "'yes', 'no'", "\"fan\", \"power\" or \"led\"" and "3, 4 and 5".
std::string listed(const std::vector<std::string> &words);
std::string listedNames(const std::vector<std::string> &names);
std::string listedNumbers(const std::vector<uint32_t> &numbers);
// "slot 3 is" and "slots 3 and 4 are".
std::string numbered(const std::string &what, const std::vector<uint32_t> &numbers);

} // namespace dcmtool

#endif
