// Reports failures: to the platform's log and on standard output, with the same format and arguments.
#ifndef DCM_COMMON_REPORT_H
#define DCM_COMMON_REPORT_H

#include "common/platform.h"
#include "common/result.h"

#include <cstdio>

// Completes the text of a message, which is always one literal.
#define DCM_FORMAT(text) "[%s:%u]: " text "\r\n"

// Reports `text` with its arguments in the name of `function`; evaluates to Result::failed. The lambda, which is never
// called, lets the compiler check the arguments against the text: GCC 14 does not check a branch that is never taken.
#define DCM_REPORT(function, text, ...)                                                                                \
    (static_cast<void>([&] { static_cast<void>(std::printf(DCM_FORMAT(text), "", 0U, __VA_ARGS__)); }),                \
     dcm::report(DCM_FORMAT(text), function, static_cast<unsigned>(__LINE__), __VA_ARGS__))

// Declares a message that a level reports later, with the line of the declaration. There is one macro for each list of
// argument types, and each has its own type: a message with a file name or a number cannot be used where there is none.
// The sample arguments let the compiler check the text.
#define DCM_MESSAGE(text) DCM_MESSAGE_OF((dcm::Reporter), text, "", 0U)
#define DCM_MESSAGE_NUM(text) DCM_MESSAGE_OF((dcm::Reporter, int), text, "", 0U, 0)
#define DCM_MESSAGE_ID(text) DCM_MESSAGE_OF((dcm::Reporter, uint32_t), text, "", 0U, 0U)
#define DCM_MESSAGE_TEXT(text) DCM_MESSAGE_OF((dcm::Reporter, const char *), text, "", 0U, "")
#define DCM_MESSAGE_FILE(text) DCM_MESSAGE_OF((dcm::QueryReporter), text, "", 0U, "")
#define DCM_MESSAGE_FILE_NUM(text) DCM_MESSAGE_OF((dcm::QueryReporter, int), text, "", 0U, "", 0)
#define DCM_MESSAGE_OF(types, text, ...)                                                                               \
    dcm::MessageFor<DCM_UNPACK types>(dcm::checked(DCM_FORMAT(text), __VA_ARGS__), __LINE__)
#define DCM_UNPACK(...) __VA_ARGS__

namespace dcm {

template <class... Arguments> [[gnu::noinline]] Result report(const char *format, const Arguments... arguments)
{
    loggingLogOutput(0, 3, 0, format, arguments...);
    std::printf(format, arguments...);
    return Result::failed;
}

// The format, after the compiler has checked it against the arguments.
__attribute__((format(printf, 1, 2))) constexpr const char *checked(const char *format, ...) noexcept
{
    return format;
}

// Some libcs crash on a null "%s".
inline const char *printable(const unsigned char *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "(null)";
}

// A message in a table, without the types of its arguments.
struct Message {
    const char *format = nullptr; // nullptr: nothing is reported
    unsigned line = 0;
    bool namesFile = false;
};

struct Reporter;
struct QueryReporter;

// A message that a `By` reports with `Values`. A query can report every message of a decoder; only a query has the name
// of its file.
template <class By, class... Values> struct MessageFor : Message {
    constexpr MessageFor() noexcept = default;
    constexpr MessageFor(const char *text, unsigned declaredAt) noexcept
    {
        format = text;
        line = declaredAt;
    }
};
template <class... Values> struct MessageFor<QueryReporter, Values...> : Message {
    constexpr MessageFor() noexcept = default;
    constexpr MessageFor(const char *text, unsigned declaredAt) noexcept
    {
        format = text;
        line = declaredAt;
        namesFile = true;
    }
    constexpr MessageFor(const MessageFor<Reporter, Values...> &message) noexcept
        : Message(message) {} // NOLINT(*-explicit-*)
};

// Reports a message whose type was checked when the table was built: one with a file name needs a QueryReporter.
Result reportChecked(const Reporter &reporter, const Message &message);
Result reportChecked(const Reporter &reporter, const Message &message, int num);

// The function that reports.
struct Reporter {
    const char *function;

    Result report(const MessageFor<Reporter> &message) const { return reportChecked(*this, message); }
    Result report(const MessageFor<Reporter, uint32_t> &message, uint32_t id) const;
    Result report(const MessageFor<Reporter, const char *> &message, const char *text) const;
    Result reportOutOfMemory() const;
};

// A query and its file.
struct QueryReporter : Reporter {
    const char *file;

    using Reporter::report;
    Result report(const MessageFor<QueryReporter> &message) const { return reportChecked(*this, message); }
    Result report(const MessageFor<QueryReporter, int> &message, int num) const
    {
        return reportChecked(*this, message, num);
    }
};

} // namespace dcm

#endif
