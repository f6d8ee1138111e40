// What holds for the tool's whole process: how it ends without memory, and what libxml2 may print.
#ifndef DCM_TOOLS_PROCESS_H
#define DCM_TOOLS_PROCESS_H

namespace dcmtool {

// To be called before anything else is used of libxml2. From then on the process ends with "out of memory" on standard
// error and kOutOfMemory as soon as C++ or libxml2 cannot get memory, so that no caller has to notice that a tree, a
// text or a list is incomplete; and libxml2 prints nothing by itself.
void prepareProcess();
// The same in a thread that was started later.
void prepareThread();

[[noreturn]] void runOutOfMemory();

} // namespace dcmtool

#endif
