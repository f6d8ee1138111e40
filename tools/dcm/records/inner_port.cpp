#include "tools/dcm/records/inner_port.h"

#include "tools/dcm/records/record.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

bool isDescribed(const DcmInnerIfInfo &port)
{
    const Record record = recordOf(port);
    // Entries that are not described have system 0.
    return port.sysId != 0 || std::any_of(record.begin(), record.end(), [&](const Field &field) {
               return std::strcmp(field.name, "sysId") != 0 && record[field].isGiven();
           });
}

} // namespace dcmtool
