// Queries whose answer is printed as the library prints it.
#ifndef DCM_TOOLS_QUERY_REPORT_H
#define DCM_TOOLS_QUERY_REPORT_H

#include "common/paths.h"
#include "tools/dcm/exit.h"
#include "tools/dcm/printable.h"

#include <dcm.h>

#include <functional>
#include <string>

namespace dcmtool {

// Asks a query of a file and prints on standard output what it reports; what the parser finds is said on standard
// error. A file that the tool does not open is not asked about: that is said, and the exit is kUnreadable.
Exit askQuery(const std::string &file, const std::function<int()> &query);
// What the exit is once the answer is printed, too.
Exit exitOfQuery(Exit asked);

// The texts that reports print become printable.
inline void makePrintable(DcmFrameInfo &) {}
void makePrintable(DcmSlotInfo &slot);
void makePrintable(DcmCardInfo &card);

// Prints a query's answer under the name of its file, which is nullptr for the default: `get(file, &record)` asks,
// `print(file, record)` prints the record, or with nullptr that there is none.
template <class Record, class Get>
Exit printQuery(const char *file, const Get &get, int (*print)(const char *file, const Record *info))
{
    Record info;
    const std::string opened = dcm::fileOrDefault(file);
    const Exit asked = askQuery(opened, [&] { return get(file, &info); });
    if (asked == kUnreadable)
        return asked;
    makePrintable(info);
    static_cast<void>(print(printable(opened).c_str(), asked == kSuccess ? &info : nullptr));
    return exitOfQuery(asked);
}

} // namespace dcmtool

#endif
