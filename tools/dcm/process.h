// The tool's whole process: how it ends when an allocation fails, and that libxml2 prints nothing.
#ifndef DCM_TOOLS_PROCESS_H
#define DCM_TOOLS_PROCESS_H

#include <string>

namespace dcmtool {

// A process linked with this file ends with "out of memory" on standard error and kOutOfMemory as soon as an allocation
// of C++ fails. After this call, which must precede all other use of libxml2, the same holds for libxml2, so that no
// caller needs to check whether a tree or a text is incomplete. Besides, libxml2 prints nothing by itself, and no file
// gets the number of a closed standard descriptor.
void prepareProcess();
// The same for a thread that is started later.
void prepareThread();

[[noreturn]] void runOutOfMemory();

// The text of an error number; ends the process when that says that there is no memory.
std::string systemError(int error);

} // namespace dcmtool

#endif
