// The four queries on what a process finds below "/etc/zorconf", in a form that tests can go through.
#ifndef DCM_TESTS_RELIABILITY_QUERIES_H
#define DCM_TESTS_RELIABILITY_QUERIES_H

#include "tests/support/dcm_test.h"

namespace dcmtest {

// What a query came to.
struct Outcome {
    int result = 0;
    std::vector<unsigned char> record; // whole
    Messages messages;

    bool operator==(const Outcome &other) const
    {
        return result == other.result && record == other.record && messages == other.messages;
    }
};

struct Query {
    const char *name;     // of a test
    const char *file;     // below "/etc/zorconf/device"
    const char *function; // as messages name it
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

// A folder in the place of "/etc/zorconf" with the examples.
class ZorconfWithExamples : public Zorconf {
public:
    ZorconfWithExamples();
};

// While it lives, libxml2 does not print what is wrong with thousands of files on standard error.
class SilentLibxml2 {
public:
    SilentLibxml2();
    ~SilentLibxml2();
    SilentLibxml2(const SilentLibxml2 &) = delete;
    SilentLibxml2 &operator=(const SilentLibxml2 &) = delete;
};

// One test in so many of a long row is enough where tests run slowly: with sanitizers and in emulators.
size_t strideOr1(size_t stride);

} // namespace dcmtest

#endif
