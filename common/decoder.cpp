#include "common/decoder.h"

#include <libxml/tree.h>

namespace dcm {

const char *nameOf(Node element)
{
    return reinterpret_cast<const char *>(element->name);
}

Result readContent(Node element, uint32_t &value, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    value = text.number();
    return Result::ok;
}

Result convert(Node element, Converter converter, uint32_t &value, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    return resultOf(converter(text.word(), &value));
}

size_t copyBytes(char *field, const Text &text, size_t room)
{
    const size_t length = text.length() < room ? text.length() : room;
    std::memcpy(field, text.c_str(), length);
    return length;
}

Result takeBytes(Node element, char *field, size_t room, const Reporter &reporter, size_t *length)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    const size_t copied = copyBytes(field, text, room);
    if (length != nullptr)
        *length = copied;
    return Result::ok;
}

Result takePhyType(Node element, uint16_t &phyTypeField, uint8_t &ondTypeField, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    uint32_t phy = 0;
    uint32_t ond = 0;
    if (dcmPhyTypeStr2Val(text.word(), &phy, &ond) != 0)
        return Result::failed;
    phyTypeField = static_cast<uint16_t>(phy);
    ondTypeField = static_cast<uint8_t>(ond);
    return Result::ok;
}

Result takeCapabilities(Node element, const char *childName, Converter converter, uint32_t first, uint8_t *record,
                        size_t offset, const Reporter &reporter)
{
    for (const Node cap : children(element)) {
        if (!isNamed(cap, childName))
            continue;
        uint32_t value = 0;
        if (const Result converted = convert(cap, converter, value, reporter); converted != Result::ok)
            return converted;
        _dcmBitSet(record + offset, value - first);
    }
    return Result::ok;
}

Result readBitList(Node element, uint32_t maximum, uint8_t *bits, uint32_t size, const Reporter &reporter)
{
    const Text list = Text::content(element, reporter);
    if (!list)
        return Result::outOfMemory;
    return dcmStr2BitList(list.c_str(), 1, maximum, bits, size) == 0 ? Result::ok : Result::failed;
}

Result readId(Node element, uint32_t count, uint32_t &id, const Reporter &reporter, const Failure &noId,
              const Failure &invalid)
{
    const Text text = Text::attribute(element, "id", reporter);
    if (!text)
        return text.missing(reporter, noId);
    id = text.number();
    return id >= 1 && id <= count ? Result::ok : reporter.saysId(invalid, id);
}

Result takeTemperatures(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count,
                        const Reporter &reporter, const Failure &noNum, const Failure &invalid, const Failure &failed)
{
    if (const Result counted = takeNum(element, count, room, reporter, noNum, invalid); counted != Result::ok)
        return counted;
    count = 0;
    for (const Node sensor : children(element)) {
        if (!isNamed(sensor, "temperature"))
            continue;
        // The decoder appends without a bound of its own.
        if (count == room)
            break;
        if (dcmDecodeTemperatureEntity(sensor, sensors, &count) != 0)
            return reporter.says(failed);
    }
    return Result::ok;
}

} // namespace dcm
