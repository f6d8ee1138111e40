#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// Types and modes are looked for by 32 bits and kept with 16.
void typeBeyondRecord(const Value &value, Findings &findings)
{
    const Role role = value.context.role;
    if (value.attribute == nullptr || value.context.parent != nullptr ||
        (role != Role::frame && role != Role::slot && role != Role::card))
        return;
    forEachNumber(value, [&](const NumberItem &item) {
        const Reading reading = readingOf(item.text);
        // What is beyond 32 bits is reported as cut.
        if (!reading.isNumber || reading.isNegative || reading.bits <= UINT16_MAX || reading.bits > UINT32_MAX)
            return;
        atNumber(value, item,
                 inQuotes(item.text) + " is above 65535: the record has " + std::to_string(reading.bits & UINT16_MAX) +
                     " instead, which may be another " + value.context.name,
                 findings);
    });
}

} // namespace

extern constexpr Rule kTypeBeyondRecord = {"type-beyond-record", Severity::warning,
                                           onValues(typeBeyondRecord, kindsOf(Kind::number, Kind::typeIds))};

} // namespace dcmtool
