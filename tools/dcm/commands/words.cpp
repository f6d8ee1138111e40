// The vocabularies: their words, and the values of the words in records.
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/own_output.h"
#include "tools/format/values.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace dcmtool;

namespace {

constexpr char kLedStates[] = "led-state"; // one vocabulary for each type of LED

// All vocabularies that are a single list of words, including those of LED names and reports.
std::vector<dcmformat::NamedVocabulary> allVocabularies()
{
    std::vector<dcmformat::NamedVocabulary> all = dcmformat::vocabularies();
    all.push_back({"led-attachment", "attachments in LED names", &dcm::kEttAttachWords});
    all.push_back({"ond-type", "kinds of ports in reports and exports", &dcm::kOndTypeWords});
    return all;
}

struct Entry {
    std::string word;
    uint32_t value;
    std::string note;
    bool isOfReports = false; // descriptions cannot contain it
};

std::vector<Entry> entriesOf(const dcm::Vocabulary &words)
{
    std::vector<Entry> entries;
    for (size_t i = 0; i < words.count; i++) {
        const auto number = static_cast<uint32_t>(i);
        if (words.rows != nullptr) {
            entries.push_back({std::string(words.rows[i], strnlen(words.rows[i], DCM_KEYWORD_SIZE)), number, ""});
            continue;
        }
        const dcm::Word &row = words.words[i];
        const char *printed = dcm::printWord(words, row.value);
        const bool isSame = std::strcmp(printed, row.word) == 0;
        entries.push_back({row.word, row.value, isSame ? "" : "reports print " + inQuotes(printed),
                           row.direction == dcm::Direction::prints});
    }
    return entries;
}

// A set of these words in the format; nullptr if there is none.
const dcm::Content *setOf(const dcmformat::Tree &tree, const dcm::Vocabulary &words)
{
    const dcm::Content *found = nullptr;
    dcmformat::forEach(*tree.device, [&](const dcmformat::Place &place) {
        const dcm::Content &content = place.element->content;
        if (content.vocabulary == &words && content.limit != 0)
            found = &content;
    });
    return found;
}

std::string tableOf(const std::vector<Entry> &entries, const dcm::Content *set = nullptr)
{
    std::string text = set != nullptr ? "VALUE  BIT  WORD\n" : "VALUE  WORD\n";
    for (const Entry &entry : entries) {
        char numbers[32];
        const bool hasBit = set != nullptr && entry.value >= set->least && entry.value - set->least < set->limit;
        const std::string bit = hasBit ? std::to_string(entry.value - set->least) : "-";
        std::snprintf(numbers, sizeof numbers, set != nullptr ? "%5u  %3s  " : "%5u  ", entry.value, bit.c_str());
        text += numbers + entry.word + (entry.note.empty() ? "" : "  (" + entry.note + ")") + "\n";
    }
    return text;
}

std::string tablesOf(const dcm::Vocabulary &words)
{
    std::vector<Entry> entries = entriesOf(words);
    const auto ofReports =
        std::stable_partition(entries.begin(), entries.end(), [](const Entry &entry) { return !entry.isOfReports; });
    const std::vector<Entry> reported(ofReports, entries.end());
    entries.erase(ofReports, entries.end());
    std::string text = entries.empty() ? "" : tableOf(entries, setOf(dcmformat::makeTree(), words));
    if (!reported.empty())
        text += (text.empty() ? "" : "\n") + ("Only in reports:\n" + tableOf(reported));
    return text;
}

std::string ledStateTables()
{
    std::string text;
    for (const dcmformat::LedStates &states : dcmformat::ledStates()) {
        std::string types;
        for (const std::string &type : states.types)
            types += (types.empty() ? "" : ", ") + type;
        std::vector<Entry> entries;
        for (const std::string &word : states.words)
            entries.push_back({word, static_cast<uint32_t>(entries.size()), ""});
        text += (text.empty() ? "LEDs of type " : "\nLEDs of type ") + types + ":\n" + tableOf(entries);
    }
    return text;
}

std::string listOfVocabularies()
{
    std::string text;
    const auto add = [&](const std::string &name, const std::string &title) {
        char line[120];
        std::snprintf(line, sizeof line, "%-22s%s\n", name.c_str(), title.c_str());
        text += line;
    };
    for (const dcmformat::NamedVocabulary &vocabulary : allVocabularies())
        add(vocabulary.name, vocabulary.title);
    add(kLedStates, "LED states, by the type of the LED");
    return text;
}

// The vocabularies that contain a word.
std::string placesOf(const std::string &word)
{
    std::string text;
    const auto add = [&](const std::string &name, uint32_t value) {
        text += name + "  " + std::to_string(value) + "  " + word + "\n";
    };
    for (const dcmformat::NamedVocabulary &vocabulary : allVocabularies())
        for (const Entry &entry : entriesOf(*vocabulary.words))
            if (entry.word == word)
                add(vocabulary.name, entry.value);
    for (const dcmformat::LedStates &states : dcmformat::ledStates())
        for (size_t i = 0; i < states.words.size(); i++)
            if (states.words[i] == word)
                add(std::string(kLedStates) + " of " + listed(states.types), static_cast<uint32_t>(i));
    return text;
}

std::string textOf(const std::string &name)
{
    if (name.empty())
        return listOfVocabularies();
    if (name == kLedStates)
        return ledStateTables();
    std::vector<std::string> names = {kLedStates};
    for (const dcmformat::NamedVocabulary &vocabulary : allVocabularies()) {
        if (vocabulary.name == name)
            return tablesOf(*vocabulary.words);
        names.push_back(vocabulary.name);
        for (const Entry &entry : entriesOf(*vocabulary.words))
            names.push_back(entry.word);
    }
    std::string places = placesOf(name);
    if (places.empty())
        refuseWord(name, "vocabulary or word", names, "dcm words");
    return places;
}

Candidates names(const PartialLine & /*line*/)
{
    Candidates candidates;
    for (const dcmformat::NamedVocabulary &vocabulary : allVocabularies())
        candidates.push_back({vocabulary.name, vocabulary.title});
    candidates.push_back({kLedStates, "LED states, by the type of the LED"});
    return candidates;
}

} // namespace

Command wordsCommand()
{
    const auto name = std::make_shared<std::string>();
    Argument argument = {"VOCABULARY", "The vocabulary, or a word to look up [all vocabularies are listed]",
                         name.get()};
    argument.candidates = names;
    return {
        "words",
        "Print the words that descriptions may use, and their values",
        {argument},
        [name] { return OwnOutput().print(textOf(*name)) ? kSuccess : kCannotWrite; },
        "VALUE is what a field of a record holds for the word. BIT is its bit in a set: bit n, from 0, is the mask\n"
        "0x80 >> n % 8 of byte n / 8."};
}
