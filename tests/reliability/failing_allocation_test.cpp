// Each allocation of each query fails in turn: the result is a reported failure or the right record.
#include "tests/reliability/allocator.h"
#include "tests/reliability/failing.h"
#include "tests/reliability/queries.h"

using namespace dcmtest;

namespace {

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
    // The port list of a VM is short.
    expectNoHarm(query, failing, query.name == kVmQuery.name ? 1 : strideOr1(7));
}

// Texts in several nodes, which must be copied, and entities; then a prefix without a namespace, whose error hides the
// one that libxml2 raises for a failed allocation.
TEST_P(FailingAllocationOf, FailsTheQueryOrDoesNotMatterWhereTextsAreCopiedAndOtherErrorsFollow)
{
    const auto &[query, failing] = GetParam();
    const Zorconf zorconf;
    const std::string warning = "<last other:b='c'/>";
    zorconf.write(
        "device.xml",
        "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE device [<!ENTITY one '1'><!ENTITY eleven '&one;1'>"
        "<!ENTITY leds \"<led-entity num='1'><led name='sys'/></led-entity>\">"
        "<!ATTLIST slot kind CDATA 'line'><!ELEMENT slot ANY>]>"
        "<device xmlns:a='urn:a' a:b='c'><frame typeid='&one;'><maxslotnum><!-- two -->2<?x?>2</maxslotnum>"
        "<slotmap><mpu>1-<![CDATA[2]]>,&eleven;</mpu></slotmap>&leds;</frame>"
        "<slot typeid='&one;'><inner-port num='&eleven;'><port commslot='&one;'><slotid>1</slotid>"
        "<driver>in<!-- -->eth</driver><phytype>g<!-- -->e</phytype></port></inner-port></slot>"
        "<card typeid='0x301' name='&eleven;'><panel-port num='&one;' startportid='&one;' maxportid='9'>"
        "<port id='&one;'><driver>c<!-- -->dl</driver><phytype>&#103;<?x?>e</phytype></port></panel-port></card>" +
            warning + "</device>");
    zorconf.write("vm-3.xml",
                  "<!DOCTYPE panel-port [<!ENTITY one '1'>]><panel-port num='&one;'><ifindex>&one;<!-- -->2</ifindex>" +
                      warning + "</panel-port>");
    expectNoHarm(query, failing, 1);
}
