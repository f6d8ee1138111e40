// How a failure is reported: through the platform's log and on standard output, with the same format and arguments.
#ifndef DCM_COMMON_REPORT_H
#define DCM_COMMON_REPORT_H

#include "common/platform.h"
#include "common/result.h"

#include <cstdio>

// Every message is one literal, which this completes.
#define DCM_MESSAGE(text) "[%s:%u]: " text "\r\n"

// Reports `text` with its arguments as said by `function`; the value is Result::failed. The branch that is never taken
// lets the compiler check the arguments against the text.
#define DCM_REPORT(function, text, ...)                                                                                \
    (false ? (static_cast<void>(std::printf(DCM_MESSAGE(text), function, 0U, __VA_ARGS__)), dcm::Result::failed)       \
           : dcm::report(DCM_MESSAGE(text), function, static_cast<unsigned>(__LINE__), __VA_ARGS__))

// What a level says when a step below it failed: the text and where it stands. There is one macro for each list of
// arguments that Reporter completes. The sample arguments let the compiler check the text; they are never evaluated.
#define DCM_SAYS(text) DCM_FAILURE(text, false, "", 0U)
#define DCM_SAYS_NUM(text) DCM_FAILURE(text, false, "", 0U, 0)
#define DCM_SAYS_ID(text) DCM_FAILURE(text, false, "", 0U, 0U)
#define DCM_SAYS_FILE(text) DCM_FAILURE(text, true, "", 0U, "")
#define DCM_SAYS_FILE_NUM(text) DCM_FAILURE(text, true, "", 0U, "", 0)
#define DCM_FAILURE(text, namesFile, ...)                                                                              \
    dcm::failure<sizeof(std::printf(DCM_MESSAGE(text), __VA_ARGS__))>(DCM_MESSAGE(text), __LINE__, namesFile)

namespace dcm {

template <class... Arguments> [[gnu::noinline]] Result report(const char *format, const Arguments... arguments)
{
    loggingLogOutput(0, 3, 0, format, arguments...);
    std::printf(format, arguments...);
    return Result::failed;
}

// Some libcs crash on a null "%s".
inline const char *printable(const unsigned char *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "(null)";
}

struct Failure {
    const char *format = nullptr; // nullptr: the level adds nothing
    unsigned line = 0;
    bool namesFile = false;
};

// What DCM_FAILURE makes; the parameter is only there to be computed.
template <size_t> constexpr Failure failure(const char *format, unsigned line, bool namesFile)
{
    return {format, line, namesFile};
}

// Who reports: a function and, for a query, its file.
struct Reporter {
    const char *function;
    const char *file = nullptr;

    Result says(const Failure &failure) const;
    Result says(const Failure &failure, int num) const;
    Result saysId(const Failure &failure, uint32_t id) const;
    Result runsOutOfMemory() const;
};

} // namespace dcm

#endif
