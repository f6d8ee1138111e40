#include "tests/reliability/failing.h"

#include <libxml/xmlerror.h>

#include <cerrno>

namespace dcmtest {

namespace {

size_t liveBlocksWithoutLastError()
{
    xmlResetLastError();
    return liveBlocks();
}

// A parser without memory may return no document.
bool saysOutOfMemory(const Query &query, const Messages &messages)
{
    const std::string parseFailed = std::string("[") + query.function + ":#]: xmlfile(FILE) parse failed(err#" +
                                    std::to_string(ENOMEM) + ", " + std::strerror(ENOMEM) + ")";
    return !messages.empty() &&
           (messages == Messages{parseFailed} || messages.front().find(":#]: out of memory.") != std::string::npos);
}

void expectFailureOrRecord(const Query &query, const Outcome &right, const Outcome &outcome)
{
    if (outcome.result == 0) {
        EXPECT_EQ(outcome.messages, right.messages);
        EXPECT_TRUE(outcome.record == right.record) << "0 with another record";
        return;
    }
    EXPECT_EQ(outcome.result, -1);
    EXPECT_TRUE(saysOutOfMemory(query, outcome.messages)) << testing::PrintToString(outcome.messages);
}

} // namespace

void expectNoHarm(const Query &query, Failing failing, size_t stride)
{
    const SilentLibxml2 silent;
    const Outcome right = ask(query);
    ASSERT_EQ(right.result, 0) << testing::PrintToString(right.messages);
    size_t failures = 0;
    bool hasFailed = true;
    for (size_t number = 1; hasFailed && !testing::Test::HasFailure(); number += stride) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        const size_t before = liveBlocksWithoutLastError();
        Outcome outcome;
        {
            const FailingAllocation allocation(number, failing);
            outcome = ask(query);
            hasFailed = allocation.hasFailed();
        }
        expectFailureOrRecord(query, right, outcome);
        EXPECT_EQ(liveBlocksWithoutLastError(), before) << "leaked";
        failures += outcome.result != 0 ? 1 : 0;
        if (!hasFailed) {
            EXPECT_EQ(outcome.result, 0);
        }
    }
    EXPECT_GT(failures, 0U);
}

} // namespace dcmtest
