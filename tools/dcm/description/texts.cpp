#include "tools/dcm/description/texts.h"

#include "tools/dcm/description/markup.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <tuple>
#include <utility>

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

std::string inQuotes(std::string_view text)
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
constexpr size_t kShortestStart = 3; // of a word, that cannot be many others

// How far a word is from what was written: of two at the same distance, the one whose marks are the same is nearer.
struct Distance {
    size_t letters;
    size_t all;

    bool operator<(const Distance &other) const { return std::tie(letters, all) < std::tie(other.letters, other.all); }
};

bool isStart(const std::string &start, const std::string &word)
{
    return start.size() >= kShortestStart && word.compare(0, start.size(), start) == 0;
}

// An abbreviation is one letter away, one in the plural two.
size_t lettersAway(const std::string &letters, const std::string &word)
{
    const size_t away = distance(letters, word);
    if (isStart(letters, word))
        return std::min<size_t>(away, 1);
    if (letters.size() > 1 && letters.back() == 's' && isStart(letters.substr(0, letters.size() - 1), word))
        return std::min<size_t>(away, 2);
    return away;
}

Distance distanceOf(const std::string &written, const std::string &letters, const std::string &word)
{
    return {lettersAway(letters, plain(word)), distance(written, word)};
}

bool isOneOf(const std::string &text, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(), [&](const char *word) { return text == word; });
}

// What people write for "yes" and "no"; empty when it is something else, or neither is among the words.
std::string yesOrNo(const std::string &letters, const std::vector<std::string> &words)
{
    std::string meant;
    if (isOneOf(letters, {"1", "true", "on", "y", "enable", "enabled"}))
        meant = "yes";
    else if (isOneOf(letters, {"0", "false", "off", "n", "disable", "disabled"}))
        meant = "no";
    return std::find(words.begin(), words.end(), meant) != words.end() ? meant : "";
}

} // namespace

std::string trimmed(const std::string &text)
{
    const size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::string nearest(const std::string &written, const std::vector<std::string> &words)
{
    if (written.empty() || written.size() > kLongestWord)
        return "";
    const std::string letters = plain(written);
    if (std::string meant = yesOrNo(letters, words); !meant.empty())
        return meant;
    const size_t most = letters.size() / 3 + 1;
    Distance least = {SIZE_MAX, SIZE_MAX};
    std::string found;
    for (const std::string &word : words) {
        if (word == written)
            continue;
        const Distance away = distanceOf(written, letters, word);
        if (away < least && (away.letters < most || (away.letters == most && away.letters < letters.size()))) {
            least = away;
            found = word;
        }
    }
    return found;
}

std::vector<std::string> nearestFirst(const std::string &written, std::vector<std::string> words)
{
    if (written.empty() || written.size() > kLongestWord)
        return words;
    const std::string letters = plain(written);
    std::vector<std::pair<Distance, std::string>> ranked;
    for (std::string &word : words) {
        Distance away = distanceOf(written, letters, word);
        if (letters.size() >= kShortestStart && plain(word).find(letters) != std::string::npos)
            away.letters = std::min<size_t>(away.letters, 2);
        ranked.emplace_back(away, std::move(word));
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto &one, const auto &other) { return one.first < other.first; });
    std::transform(ranked.begin(), ranked.end(), words.begin(), [](auto &rank) { return std::move(rank.second); });
    // What has been found to be meant is first.
    const auto meant = std::find(words.begin(), words.end(), nearest(written, words));
    if (meant != words.end())
        std::rotate(words.begin(), meant, meant + 1);
    return words;
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
