#include "tools/dcm/description/texts.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace dcmtool {

std::string shortened(std::string_view text, size_t most)
{
    if (text.size() <= most)
        return std::string(text);
    const auto isInCharacter = [&](size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    while (most > 0 && isInCharacter(most))
        most--;
    return std::string(text.substr(0, most)) + "...";
}

std::string quoted(std::string_view text)
{
    return "'" + shortened(text) + "'";
}

std::string quotedName(std::string_view name)
{
    return "\"" + shortened(name) + "\"";
}

namespace {

// The number of letters to change, remove, insert or swap with their neighbour.
size_t distance(const std::string &one, const std::string &other)
{
    std::vector<std::vector<size_t>> cost(one.size() + 1, std::vector<size_t>(other.size() + 1));
    for (size_t i = 0; i <= one.size(); i++)
        cost[i][0] = i;
    for (size_t j = 0; j <= other.size(); j++)
        cost[0][j] = j;
    for (size_t i = 1; i <= one.size(); i++)
        for (size_t j = 1; j <= other.size(); j++) {
            const size_t change = cost[i - 1][j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
            cost[i][j] = std::min({change, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[one.size()][other.size()];
}

// Without the most frequent mistakes: blanks, capitals, and the separator of parts.
std::string plain(const std::string &text)
{
    std::string letters;
    for (const char character : text)
        if (std::strchr(" \t\r\n-_.", character) == nullptr)
            letters += static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
    return letters;
}

constexpr size_t kLongestWord = 64;

} // namespace

std::string nearest(const std::string &written, const std::vector<std::string> &words)
{
    if (written.empty() || written.size() > kLongestWord)
        return "";
    const std::string letters = plain(written);
    size_t least = letters.size() / 3 + 1;
    std::string found;
    for (const std::string &word : words) {
        const size_t away = word == written ? SIZE_MAX : distance(letters, plain(word));
        if (away < least || (away == least && found.empty() && away < letters.size())) {
            least = away;
            found = word;
        }
    }
    return found;
}

bool isOnlyOneNear(const std::string &written, const std::string &word, const std::vector<std::string> &words)
{
    if (written.empty() || written.size() > kLongestWord)
        return false;
    const std::string letters = plain(written);
    const size_t away = distance(letters, plain(word));
    constexpr size_t kLettersOfSlip = 4; // one mistake is accepted for this number of letters
    if (away > std::max<size_t>(1, letters.size() / kLettersOfSlip))
        return false;
    return std::all_of(words.begin(), words.end(), [&](const std::string &other) {
        return other == word || distance(letters, plain(other)) > away;
    });
}

std::string listed(const std::vector<std::string> &words)
{
    constexpr size_t kShown = 14;
    std::string list;
    for (size_t i = 0; i < words.size() && i < kShown; i++)
        list += (i == 0 ? "'" : ", '") + words[i] + "'";
    if (words.size() > kShown)
        list += " and " + std::to_string(words.size() - kShown) + " more";
    return list;
}

std::string listedNames(const std::vector<std::string> &names)
{
    std::string list;
    for (size_t i = 0; i < names.size(); i++)
        list += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + quotedName(names[i]);
    return list;
}

std::string listedNumbers(const std::vector<uint32_t> &numbers)
{
    constexpr size_t kShown = 24;
    std::string list;
    for (size_t i = 0; i < numbers.size() && i < kShown; i++)
        list += (i == 0 ? "" : i + 1 == numbers.size() ? " and " : ", ") + std::to_string(numbers[i]);
    if (numbers.size() > kShown)
        list += " and " + std::to_string(numbers.size() - kShown) + " more";
    return list;
}

std::string numbered(const std::string &what, const std::vector<uint32_t> &numbers)
{
    if (numbers.size() == 1)
        return what + " " + listedNumbers(numbers) + " is";
    const bool endsInY = what.back() == 'y';
    return (endsInY ? what.substr(0, what.size() - 1) + "ies " : what + "s ") + listedNumbers(numbers) + " are";
}

} // namespace dcmtool
