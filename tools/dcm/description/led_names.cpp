#include "tools/dcm/description/led_names.h"

#include "common/number.h"
#include "common/vocabularies.h"

#include <cstring>

namespace dcmtool {

namespace {

// Removes and returns the part of a text before `mark`; the whole text if there is no mark.
std::string takeUntil(std::string &text, char mark, bool &isThere)
{
    const size_t end = text.find(mark);
    isThere = end != std::string::npos;
    std::string part = text.substr(0, end);
    text = isThere ? text.substr(end + 1) : "";
    return part;
}

} // namespace

LedName splitName(const char *written)
{
    std::string text(written, strnlen(written, kLongestName));
    LedName name;
    bool hasLed = false;
    bool hasType = false;
    bool hasId = false;
    bool hasCard = false;
    const std::string led = takeUntil(text, '-', hasLed);
    name.type = takeUntil(text, '-', hasType);
    name.id = takeUntil(text, '@', hasId);
    const std::string where = takeUntil(text, '/', hasCard);
    const size_t slot = where.find_first_of("#0123456789 ");
    name.attach = where.substr(0, slot);
    name.slot = slot == std::string::npos ? "" : where.substr(slot);
    name.card = text;
    name.isComplete = led == "led" && hasLed && hasType && hasId;
    return name;
}

bool isSmallNumber(const std::string &text)
{
    const char *end = nullptr;
    return !text.empty() && text.size() <= 3 && dcm::readNumber(text.c_str(), &end) <= UINT8_MAX &&
           end == text.c_str() + text.size();
}

uint32_t smallNumber(const std::string &text)
{
    return dcm::readNumber(text.c_str());
}

bool isPlace(const std::string &text)
{
    return text.empty() || text == "#" || isSmallNumber(text);
}

bool isLedName(const LedName &name)
{
    return name.isComplete && isWord(name.type.c_str(), dcm::kLedTypeWords) && isSmallNumber(name.id) &&
           isWord(name.attach.c_str(), dcm::kEttAttachWords) && isPlace(name.slot) && isPlace(name.card);
}

bool isDefaultState(const char *state)
{
    for (uint32_t type = 0; type < dcm::kLedTypeWords.count; type++)
        if (const dcm::Vocabulary *states = dcm::ledStateWords(type))
            return rowOf(*states, state) == 0;
    return false;
}

} // namespace dcmtool
