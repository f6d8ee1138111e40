// What holds for the tool's whole process: how it ends without memory, and what libxml2 may print.
#ifndef DCM_TOOLS_PROCESS_H
#define DCM_TOOLS_PROCESS_H

#include <string>

namespace dcmtool {

// A process that this is linked into ends with "out of memory" on standard error and kOutOfMemory as soon as C++ cannot
// get memory. From this call on, which comes before anything else is used of libxml2, it does so when libxml2 cannot:
// no caller has to notice that a tree or a text is incomplete. And libxml2 prints nothing by itself, and no file takes
// the number of a standard descriptor that is closed.
void prepareProcess();
// The same in a thread that was started later.
void prepareThread();

[[noreturn]] void runOutOfMemory();

// The text of an error number; ends the process when that says that there is no memory.
std::string systemError(int error);

} // namespace dcmtool

#endif
