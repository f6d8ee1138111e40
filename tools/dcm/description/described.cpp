#include "tools/dcm/description/described.h"

#include "card/card_query.h"
#include "common/paths.h"
#include "tools/dcm/check/check.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace dcmtool {

namespace {

constexpr size_t kMostShownMessages = 100; // of a file
constexpr size_t kLongestMessage = 300;
constexpr size_t kMostOutputOfByte =
    9; // with the messages and the rest of the last entry, less than ten times the file
constexpr size_t kMostOutputOfAny = size_t{4} * 1000 * 1000;

// Says on standard error what is wrong at a place of a file.
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
        say(*file, file->faultSpan().begin, "no description of a device");
    else
        return file;
    return nullptr;
}

const char *kindName(RecordKind kind)
{
    switch (kind) {
    case RecordKind::frame:
        return "frame";
    case RecordKind::slot:
        return "slot";
    case RecordKind::card:
        return "card";
    case RecordKind::vm:
        break;
    }
    return "vm";
}

Place placeOf(const DescriptionFile &file, const DescribedType &type)
{
    return file.place(file.nameSpan(type.element).begin);
}

size_t mostOutputOf(const DescriptionFile &file)
{
    return std::max(kMostOutputOfAny, kMostOutputOfByte * file.text().size());
}

void sayOmitted(const DescriptionFile &file, size_t count, const char *what, const char *advice)
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
