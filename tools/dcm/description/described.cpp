#include "tools/dcm/description/described.h"

#include "card/card.h"
#include "common/paths.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <set>
#include <type_traits>

namespace dcmtool {

namespace {

constexpr size_t kMostShownMessages = 100; // of a file
constexpr size_t kLongestMessage = 300;
constexpr size_t kMostOutputOfByte =
    9; // with the messages and the rest of the last entry, less than ten times the size of the file
constexpr size_t kMostOutputOfAny = size_t{4} * 1000 * 1000;

// Prints an error at a place of a file on standard error.
void say(const DescriptionFile &file, size_t offset, const std::string &text)
{
    const Place place = file.place(offset);
    std::fprintf(stderr, "%s:%zu:%zu: %s\n", printable(file.name()).c_str(), place.line, place.column,
                 printable(text).c_str());
}

} // namespace

std::unique_ptr<DescriptionFile> openDescription(const std::string &name, DescriptionFile::IsWanted isWanted)
{
    auto file = DescriptionFile::open(name.empty() ? dcm::kDefaultFile : name, std::move(isWanted));
    if (file->state() == DescriptionFile::State::unreadable)
        std::fprintf(stderr, "dcm: %s: %s\n", printable(file->name()).c_str(), file->fault().c_str());
    else if (file->state() == DescriptionFile::State::notXml)
        say(*file, file->faultSpan().begin, file->fault());
    else if (!file->isDevice() && !file->isVm())
        say(*file, file->faultSpan().begin, "not a device description");
    else
        return file;
    return nullptr;
}

const char *kindName(RecordKind kind)
{
    return kind == RecordKind::vm ? "vm" : rowOf(kind).name;
}

Place placeOf(const DescriptionFile &file, const DescribedType &type)
{
    return file.place(file.nameSpan(type.element).begin);
}

namespace {

bool hasType(const DescribedType &type, uint32_t id)
{
    return std::find(type.typeIds.begin(), type.typeIds.end(), id) != type.typeIds.end();
}

// "1, 2 and 3"
std::string enumerated(const std::set<uint32_t> &numbers, bool areHexadecimal)
{
    std::string text;
    size_t left = numbers.size();
    for (const uint32_t number : numbers) {
        char digits[16];
        std::snprintf(digits, sizeof digits, areHexadecimal ? "0x%" PRIx32 : "%" PRIu32, number);
        text += text.empty() ? digits : (left == 1 ? " and " : ", ") + std::string(digits);
        left--;
    }
    return text;
}

// Of many numbers, the nearest ones.
std::set<uint32_t> nearestOf(const std::set<uint32_t> &numbers, uint32_t wanted)
{
    constexpr size_t kFew = 16;
    constexpr size_t kNearest = 3;
    if (numbers.size() <= kFew)
        return numbers;
    std::vector<uint32_t> sorted(numbers.begin(), numbers.end());
    const auto distance = [&](uint32_t number) { return number < wanted ? wanted - number : number - wanted; };
    std::partial_sort(sorted.begin(), sorted.begin() + kNearest, sorted.end(),
                      [&](uint32_t one, uint32_t other) { return distance(one) < distance(other); });
    return {sorted.begin(), sorted.begin() + kNearest};
}

} // namespace

std::string whyNotFound(const DescriptionFile &file, const Wanted &wanted)
{
    std::set<uint32_t> modes;
    std::set<uint32_t> types;
    const char *otherKind = nullptr;
    for (const DescribedType &type : file.types()) {
        const bool isOfType = hasType(type, wanted.type);
        if (type.kind == wanted.kind)
            types.insert(type.typeIds.begin(), type.typeIds.end());
        else if (isOfType)
            otherKind = kindName(type.kind);
        if (type.kind == wanted.kind && isOfType)
            modes.insert(type.mode);
    }
    if (modes.count(wanted.mode) != 0)
        return "";
    const std::string kind = kindName(wanted.kind);
    if (!modes.empty())
        return kind + " type " + wanted.writtenType + " has no mode " +
               (wanted.writtenMode.empty() ? std::to_string(wanted.mode) : wanted.writtenMode) + "; its " +
               (modes.size() == 1 ? "mode is " : "modes are ") + enumerated(nearestOf(modes, wanted.mode), false);
    std::string text = "no " + kind + " has type " + wanted.writtenType;
    if (otherKind != nullptr)
        text += ", but a " + std::string(otherKind) + " has";
    if (types.empty())
        return text + "; the file describes no " + kind;
    const std::set<uint32_t> named = nearestOf(types, wanted.type);
    const bool isHexadecimal = wanted.writtenType.compare(0, 2, "0x") == 0;
    const std::string ofKind = kind + (types.size() == 1 ? " type is " : " types are ");
    return text + "; the " + (named.size() < types.size() ? "nearest " : "") + ofKind +
           enumerated(named, isHexadecimal);
}

size_t mostOutputOf(const DescriptionFile &file)
{
    return std::max(kMostOutputOfAny, kMostOutputOfByte * file.text().size());
}

void reportOmitted(const DescriptionFile &file, size_t count, const char *what, const char *advice)
{
    std::fprintf(stderr, "dcm: %s: the output has reached %zu kB: the last %zu %s are left out; %s\n",
                 printable(file.name()).c_str(), mostOutputOf(file) / 1000, count, what, advice);
}

Queries::~Queries()
{
    if (!isSilent_ && messageCount_ > kMostShownMessages)
        std::fprintf(stderr, "dcm: %s: and %zu more messages; dcm check shows their causes\n",
                     printable(file_.name()).c_str(), messageCount_ - kMostShownMessages);
}

void Queries::pass(const DescribedType &type)
{
    if (type.kind == RecordKind::card)
        static_cast<void>(dcm::takeCardNames(type.element, names_, dcm::Reporter{"dcmCardInfoGet"}));
}

template <class Record> bool Queries::run(const DescribedType &type, Record &info)
{
    const Outcome outcome = file_.decode(type, info);
    if constexpr (std::is_same_v<Record, DcmCardInfo>) {
        pass(type);
        std::memcpy(info.name, names_.name, sizeof info.name);
        std::memcpy(info.abbrName, names_.abbrName, sizeof info.abbrName);
        info.nameLen = names_.nameLen;
        info.abbrNameLen = names_.abbrNameLen;
    }
    if (isSilent_)
        return outcome.isDecoded;
    for (size_t i = 0; i < outcome.messages.size() && messageCount_ + i < kMostShownMessages; i++)
        say(file_, file_.nameSpan(type.element).begin, shortened(outcome.messages[i].text, kLongestMessage));
    messageCount_ += outcome.messageCount;
    return outcome.isDecoded;
}

template bool Queries::run(const DescribedType &type, DcmFrameInfo &info);
template bool Queries::run(const DescribedType &type, DcmSlotInfo &info);
template bool Queries::run(const DescribedType &type, DcmCardInfo &info);
template bool Queries::run(const DescribedType &type, DcmVmPortInfo &info);

} // namespace dcmtool
