#include "common/decoder.h"

#include <cstring>

namespace dcm {

namespace {

// Separate functions, so that their locals are off the stack while a row is processed: walks are nested.
[[gnu::noinline]] const Row *findRow(const Row *rows, const Row *end, const char *name)
{
    const uint32_t key = wordKey(name);
    for (; rows != end; rows++)
        if (rows->key == key && std::strcmp(rows->name, name) == 0)
            break;
    return rows;
}
[[gnu::noinline]] Result fail(const Reporter &reporter, const Message &message, Result result)
{
    static_cast<void>(reportChecked(reporter, message));
    return result;
}

} // namespace

Result walk(Node parent, const Row *rows, size_t count, void *record, const Reporter &reporter)
{
    const Row *end = rows + count;
    for (const Node element : children(parent)) {
        // Without memory, libxml2 may create an element without a name.
        if (nameOf(element) == nullptr)
            return reporter.reportOutOfMemory();
        const Row *row = findRow(rows, end, nameOf(element));
        if (row == end)
            continue;
        if (const Result taken = row->take(element, record, reporter); taken != Result::ok)
            return fail(reporter, row->message, taken);
    }
    return Result::ok;
}

namespace {

template <class Value> Result takeNumberInto(Node element, Value &field, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    field = static_cast<Value>(text.number());
    return Result::ok;
}

} // namespace

Result takeNumber(Node element, uint8_t &field, const Reporter &reporter)
{
    return takeNumberInto(element, field, reporter);
}

Result takeNumber(Node element, int8_t &field, const Reporter &reporter)
{
    return takeNumberInto(element, field, reporter);
}

Result takeNumber(Node element, uint16_t &field, const Reporter &reporter)
{
    return takeNumberInto(element, field, reporter);
}

Result takeNumber(Node element, uint32_t &field, const Reporter &reporter)
{
    return takeNumberInto(element, field, reporter);
}

Result readKeyword(Node element, const Vocabulary &words, uint32_t &value, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    return readWord(words, text.word(), value) ? Result::ok : reportUnknown(words, text.word());
}

Result takeKeyword(Node element, const Vocabulary &words, uint8_t &field, const Reporter &reporter)
{
    uint32_t value = 0;
    const Result converted = readKeyword(element, words, value, reporter);
    if (converted == Result::ok)
        field = static_cast<uint8_t>(value);
    return converted;
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

Result takeCapabilities(Node element, const char *childName, const Vocabulary &words, uint32_t first, uint8_t *record,
                        size_t offset, const Reporter &reporter)
{
    for (const Node cap : children(element)) {
        if (!isNamed(cap, childName))
            continue;
        uint32_t value = 0;
        if (const Result converted = readKeyword(cap, words, value, reporter); converted != Result::ok)
            return converted;
        _dcmBitSet(record + offset, value - first);
    }
    return Result::ok;
}

Result takeBits(Node element, size_t maximum, uint8_t *bits, size_t size, const Reporter &reporter)
{
    const Text list = Text::content(element, reporter);
    if (!list)
        return Result::outOfMemory;
    return resultOf(dcmStr2BitList(list.c_str(), 1, static_cast<uint32_t>(maximum), bits, static_cast<uint32_t>(size)));
}

Result readOptional(Node element, const char *attribute, uint32_t &number, const Reporter &reporter)
{
    const Text text = Text::attribute(element, attribute, reporter);
    if (text)
        number = text.number();
    return text.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

Result readRequired(Node element, const char *attribute, uint32_t &number, const Message &message,
                    const Reporter &reporter)
{
    const Text text = Text::attribute(element, attribute, reporter);
    if (!text) {
        return fail(reporter, message, text.isOutOfMemory() ? Result::outOfMemory : Result::failed);
    }
    number = text.number();
    return Result::ok;
}

namespace {

template <class Count>
Result takeNumInto(Node element, size_t most, Count &count, const Count &shown, const AnyCountMessages &messages,
                   const Reporter &reporter)
{
    uint32_t num = 0;
    if (const Result read = readRequired(element, numOf(most).name, num, messages.noNum, reporter); read != Result::ok)
        return read;
    count = static_cast<Count>(num);
    return count <= most ? Result::ok : reportChecked(reporter, messages.invalid, shown);
}

} // namespace

Result takeNum(Node element, size_t most, uint8_t &count, const uint8_t &shown, const AnyCountMessages &messages,
               const Reporter &reporter)
{
    return takeNumInto(element, most, count, shown, messages, reporter);
}

Result takeNum(Node element, size_t most, uint16_t &count, const uint16_t &shown, const AnyCountMessages &messages,
               const Reporter &reporter)
{
    return takeNumInto(element, most, count, shown, messages, reporter);
}

Result readId(Node element, uint32_t count, uint32_t &id, const IdMessages &messages, const Reporter &reporter)
{
    if (const Result read = readRequired(element, kId, id, messages.noId, reporter); read != Result::ok)
        return read;
    return id >= 1 && id <= count ? Result::ok : reporter.report(messages.invalid, id);
}

Result readIds(Node element, const char *attribute, size_t maximum, uint8_t *bits, size_t size,
               const IdListMessages &messages, const Reporter &reporter)
{
    const Text ids = Text::attribute(element, attribute, reporter);
    if (!ids)
        return ids.reportMissing(reporter, messages.noId);
    const int status =
        dcmStr2BitList(ids.c_str(), 1, static_cast<uint32_t>(maximum), bits, static_cast<uint32_t>(size));
    return status == 0 || messages.invalid.format == nullptr ? Result::ok
                                                             : reporter.report(messages.invalid, ids.c_str());
}

} // namespace dcm
