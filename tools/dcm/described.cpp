#include "tools/dcm/described.h"

#include "card/card_query.h"
#include "common/paths.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace dcmtool {

std::unique_ptr<DescriptionFile> openDescription(const std::string &name)
{
    auto file = DescriptionFile::open(name.empty() ? dcm::kDefaultFile : name);
    const char *fault = nullptr;
    if (file->state() != DescriptionFile::State::parsed)
        fault = file->fault().c_str();
    else if (!file->isDevice() && !file->isVm())
        fault = "no description of a device";
    if (fault == nullptr)
        return file;
    if (file->state() == DescriptionFile::State::unreadable) {
        std::fprintf(stderr, "dcm: %s: %s\n", file->name().c_str(), fault);
    } else {
        const Place place = file->place(file->faultSpan().begin);
        std::fprintf(stderr, "%s:%zu:%zu: %s\n", file->name().c_str(), place.line, place.column, fault);
    }
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
    const Place place = placeOf(file_, type);
    for (const Message &message : outcome.messages)
        std::fprintf(stderr, "%s:%zu:%zu: %s\n", file_.name().c_str(), place.line, place.column, message.text.c_str());
    return outcome.isDecoded;
}

template bool Queries::run(const DescribedType &type, DcmFrameInfo &info);
template bool Queries::run(const DescribedType &type, DcmSlotInfo &info);
template bool Queries::run(const DescribedType &type, DcmCardInfo &info);
template bool Queries::run(const DescribedType &type, DcmVmPortInfo &info);

} // namespace dcmtool
