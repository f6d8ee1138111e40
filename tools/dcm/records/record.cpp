#include "tools/dcm/records/record.h"

#include "common/bits.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace dcmtool {

namespace {

// A class number is the platform's: finds the row whose word has it.
const char *entityClassWord(uint32_t number)
{
    for (const auto &row : gDcmEttClass) {
        uint32_t value = 0;
        if (dcmEttClassStr2Val(reinterpret_cast<const unsigned char *>(row), &value) == 0 && value == number)
            return row;
    }
    return nullptr;
}

const char *readWordFor(const dcm::Vocabulary &vocabulary, uint32_t number)
{
    if (vocabulary.rows != nullptr)
        return number < vocabulary.count ? vocabulary.rows[number] : nullptr;
    for (size_t i = 0; i < vocabulary.count; i++)
        if (vocabulary.words[i].direction != dcm::Direction::prints && vocabulary.words[i].value == number)
            return vocabulary.words[i].word;
    return nullptr;
}

std::string hexadecimal(uint32_t number)
{
    char text[sizeof "0x12345678"];
    std::snprintf(text, sizeof text, "0x%04" PRIx32, number);
    return text;
}

} // namespace

// ---- FieldValues
// ---------------------------------------------------------------------------------------------------------

const uint8_t *FieldValue::bytes() const
{
    return static_cast<const uint8_t *>(record_) + field_->offset + entry_ * field_->stride;
}

int64_t FieldValue::number() const
{
    return field_->load(bytes());
}

std::vector<uint32_t> FieldValue::numbers() const
{
    std::vector<uint32_t> numbers;
    if (field_->kind == FieldKind::numberList) {
        numbers.resize(field_->stride / sizeof(uint32_t));
        std::memcpy(numbers.data(), bytes(), field_->stride);
        numbers.erase(std::find(numbers.begin(), numbers.end(), 0U), numbers.end());
        return numbers;
    }
    const uint32_t first = field_->kind == FieldKind::bitList ? 1 : field_->first;
    for (uint32_t bit = 0; bit < field_->stride * 8; bit++)
        if (dcm::_dcmBitTest(bytes(), bit) != 0)
            numbers.push_back(bit + first);
    return numbers;
}

std::string_view FieldValue::text() const
{
    const size_t room = field_->textLength.load != nullptr
                            ? std::min(field_->size, static_cast<size_t>(field_->textLength.of(record_)))
                            : field_->size;
    const auto *text = reinterpret_cast<const char *>(bytes());
    return {text, strnlen(text, room)};
}

Record FieldValue::record() const
{
    const bool hasLedType = field_->ledType.load != nullptr;
    return {*field_->record, bytes(), hasLedType ? static_cast<uint32_t>(field_->ledType.of(record_)) : ledType_};
}

bool FieldValue::isGiven() const
{
    switch (field_->kind) {
    case FieldKind::number:
    case FieldKind::word:
        return number() != field_->notGiven;
    case FieldKind::wordSet:
    case FieldKind::bitList:
    case FieldKind::numberList:
        return !numbers().empty();
    case FieldKind::text:
        return !text().empty();
    case FieldKind::record:
        break;
    }
    return true;
}

const dcm::Vocabulary *FieldValue::vocabulary() const
{
    if (field_->words == WordSource::vocabulary)
        return field_->vocabulary;
    const bool hasLedType = field_->ledType.load != nullptr;
    return dcm::ledStateWords(hasLedType ? static_cast<uint32_t>(field_->ledType.of(record_)) : ledType_);
}

const char *FieldValue::wordFor(uint32_t number) const
{
    if (field_->words == WordSource::entityClass)
        return entityClassWord(number);
    const dcm::Vocabulary *words = vocabulary();
    return words != nullptr ? readWordFor(*words, number) : nullptr;
}

const char *FieldValue::reportWordFor(uint32_t number) const
{
    if (field_->words == WordSource::entityClass) {
        const char *word = entityClassWord(number);
        return word != nullptr ? word : "unknown";
    }
    const dcm::Vocabulary *words = vocabulary();
    return words != nullptr ? dcm::printWord(*words, number) : "unknown";
}

std::string FieldValue::words() const
{
    const auto shown = [this](int64_t number) {
        const bool hasWords = field_->kind == FieldKind::word || field_->kind == FieldKind::wordSet;
        const char *word = hasWords ? wordFor(static_cast<uint32_t>(number)) : nullptr;
        if (word != nullptr)
            return std::string(word);
        return field_->isHexadecimal ? hexadecimal(static_cast<uint32_t>(number)) : std::to_string(number);
    };
    switch (field_->kind) {
    case FieldKind::number:
    case FieldKind::word:
        return shown(number());
    case FieldKind::bitList:
        return rangesOf(numbers());
    case FieldKind::numberList:
    case FieldKind::wordSet: {
        std::string all;
        for (const uint32_t number : numbers())
            all += (all.empty() ? "" : ",") + shown(number);
        return all;
    }
    case FieldKind::text:
        return std::string(text());
    case FieldKind::record:
        break;
    }
    return {};
}

// ---- Records --------------------------------------------------------------------------------------------------------

FieldValues::FieldValues(const Field &field, const void *record, uint32_t ledType)
    : field_(field), record_(record), ledType_(ledType), most_(field.entries != 0 ? field.entries : 1)
{
    if (field.extent == Extent::counted)
        most_ = std::min(most_, static_cast<size_t>(field.extentOf.of(record)));
}

void FieldValues::Iterator::skipUnused()
{
    const Field &field = values_->field_;
    if (field.extent != Extent::upToUnused && field.extent != Extent::used)
        return;
    for (; entry_ < values_->most_; entry_++) {
        const auto *record = static_cast<const uint8_t *>(values_->record_);
        if (field.extentOf.of(record + field.offset + entry_ * field.stride) != 0)
            return;
        if (field.extent == Extent::upToUnused)
            entry_ = values_->most_ - 1;
    }
}

bool Record::isSame(const Field &field, const Record &other) const
{
    if (field.bits != 0)
        return field.load(bytes_) == field.load(other.bytes_);
    return std::memcmp(static_cast<const uint8_t *>(bytes_) + field.offset,
                       static_cast<const uint8_t *>(other.bytes_) + field.offset, field.size) == 0;
}

const Field &Record::field(std::string_view name) const
{
    const Field *found = std::find_if(begin(), end(), [name](const Field &field) { return name == field.name; });
    if (found == end())
        throw std::logic_error("no field " + std::string(name));
    return *found;
}

std::string rangesOf(const std::vector<uint32_t> &numbers)
{
    std::string ranges;
    for (size_t i = 0; i < numbers.size();) {
        size_t last = i;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            last++;
        ranges += (i != 0 ? "," : "") + std::to_string(numbers[i]);
        if (last != i)
            ranges += "-" + std::to_string(numbers[last]);
        i = last + 1;
    }
    return ranges;
}

} // namespace dcmtool
