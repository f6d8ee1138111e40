// The four queries on the files in "/etc/zorconf", as a table for tests.
#ifndef DCM_TESTS_RELIABILITY_QUERIES_H
#define DCM_TESTS_RELIABILITY_QUERIES_H

#include "tests/support/dcm_test.h"

namespace dcmtest {

// The result of a query.
struct Outcome {
    int result = 0;
    std::vector<unsigned char> record; // all bytes
    Messages messages;

    bool operator==(const Outcome &other) const
    {
        return result == other.result && record == other.record && messages == other.messages;
    }
};

struct Query {
    const char *name;     // of a test
    const char *file;     // below "/etc/zorconf/device"
    const char *function; // in messages
    Outcome (*run)();     // into a record between guards; collects no messages
};
std::ostream &operator<<(std::ostream &out, const Query &query);

// Frame 1, slot 1, card 0x0301 in mode 0, VM 3.
extern const Query kFrameQuery;
extern const Query kSlotQuery;
extern const Query kCardQuery;
extern const Query kVmQuery;
const std::vector<Query> &allQueries();

// Runs a query and collects its messages.
Outcome ask(const Query &query);

// A folder with the examples that replaces "/etc/zorconf".
class ZorconfWithExamples : public Zorconf {
public:
    ZorconfWithExamples();
};

// During its lifetime, libxml2 does not print the errors of thousands of files on standard error.
class SilentLibxml2 {
public:
    SilentLibxml2();
    ~SilentLibxml2();
    SilentLibxml2(const SilentLibxml2 &) = delete;
    SilentLibxml2 &operator=(const SilentLibxml2 &) = delete;
};

// Where tests run slowly (sanitizers, emulators), long rows of tests use only one in this many.
size_t strideOr1(size_t stride);

} // namespace dcmtest

#endif
