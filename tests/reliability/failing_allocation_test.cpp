// Queries one of whose allocations fails, for each of them: every one ends in a failure that is reported, or in the
// right record.
#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"

#include <libxml/xmlerror.h>

#include <cerrno>

using namespace dcmtest;

namespace {

size_t liveBlocksWithoutLastError()
{
    xmlResetLastError();
    return liveBlocks();
}

// A parser that gets no memory may say so by giving no document.
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

// Lets each allocation of a query fail in turn; `stride` leaves some out.
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

using QueryAndFailing = std::tuple<Query, Failing>;

class FailingAllocationOf : public testing::TestWithParam<QueryAndFailing> {};

std::string nameOf(const testing::TestParamInfo<QueryAndFailing> &info)
{
    const auto &[query, failing] = info.param;
    return std::string(query.name) + (failing == Failing::once ? "Once" : "FromThenOn");
}

INSTANTIATE_TEST_SUITE_P(, FailingAllocationOf,
                         testing::Combine(testing::ValuesIn(allQueries()),
                                          testing::Values(Failing::once, Failing::fromThenOn)),
                         nameOf);

} // namespace

TEST_P(FailingAllocationOf, FailsTheQueryOrDoesNotMatter)
{
    const ZorconfWithExamples zorconf;
    const auto &[query, failing] = GetParam();
    // The VM's is short.
    expectNoHarm(query, failing, query.name == kVmQuery.name ? 1 : strideOr1(7));
}

// Texts in pieces, which have to be copied, and entities; then a prefix without a namespace: that error hides the one
// which libxml2 has raised for want of memory.
TEST_P(FailingAllocationOf, FailsTheQueryOrDoesNotMatterWhereTextsAreCopiedAndOtherErrorsFollow)
{
    const auto &[query, failing] = GetParam();
    const Zorconf zorconf;
    const std::string warning = "<last other:b='c'/>";
    zorconf.write("device.xml",
                  "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE device [<!ENTITY one '1'><!ENTITY eleven '&one;1'>"
                  "<!ENTITY leds \"<led-entity num='1'><led name='sys'/></led-entity>\">"
                  "<!ATTLIST slot kind CDATA 'line'><!ELEMENT slot ANY>]>"
                  "<device xmlns:a='urn:a' a:b='c'><frame typeid='&one;'><maxslotnum><!-- two -->2<?x?>2</maxslotnum>"
                  "<slotmap><mpu>1-<![CDATA[2]]>,&eleven;</mpu></slotmap>&leds;</frame>"
                  "<slot typeid='&one;'><inner-port num='&eleven;'><port commslot='&one;'><slotid>1</slotid>"
                  "<driver>in<!-- -->eth</driver><phytype>g<!-- -->e</phytype></port>"
                  "</inner-port></slot>"
                  "<card typeid='0x301' name='&eleven;'><panel-port num='&one;' startportid='&one;' maxportid='9'>"
                  "<port id='&one;'><driver>c<!-- -->dl</driver><phytype>&#103;<?x?>e</phytype></port></panel-port>"
                  "</card>" +
                      warning + "</device>");
    zorconf.write("vm-3.xml", "<!DOCTYPE panel-port [<!ENTITY one '1'>]><panel-port num='&one;'><ifindex>&one;<!-- -->2"
                              "</ifindex>" +
                                  warning + "</panel-port>");
    expectNoHarm(query, failing, 1);
}
