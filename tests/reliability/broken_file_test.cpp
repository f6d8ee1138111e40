// Damaged descriptions: truncated, or with flipped bits.
#include "tests/reliability/queries.h"

#include <unistd.h>

using namespace dcmtest;

namespace {

// The numbers of damaged descriptions that were accepted and rejected.
struct Tally {
    size_t read = 0;
    size_t refused = 0;
};

// A query on this content returns 0, or -1 after a report.
void expectAnswer(const Zorconf &zorconf, const Query &query, const std::string &content, Tally &tally)
{
    // Some file systems wait for the disk when a file is overwritten.
    unlink(zorconf.path(query.file).c_str());
    zorconf.write(query.file, content);
    const Outcome outcome = ask(query);
    if (outcome.result == 0) {
        tally.read++;
        return;
    }
    tally.refused++;
    EXPECT_EQ(outcome.result, -1);
    EXPECT_FALSE(outcome.messages.empty());
}

constexpr size_t kEachByteUpTo = 4096;
constexpr size_t kStrideBehind = 97;

constexpr char kSmallDevice[] =
    "<?xml version=\"1.0\"?>\n"
    "<device><frame typeid='1'><maxslotnum>9</maxslotnum><slotmap><mpu>1-2</mpu></slotmap>"
    "<slotinfo><slotid id='1'><supportcardtype>1,2</supportcardtype></slotid></slotinfo>"
    "<fanctrl-entity num='1'><fanctrl id='1'><fannum>3</fannum></fanctrl></fanctrl-entity></frame>"
    "<slot typeid='1'><inner-port num='2'><port commslot='1'><slotid>1</slotid><driver>ineth</driver>"
    "<phytype>ge</phytype></port></inner-port></slot>"
    "<card typeid='0x301'><panel-port num='2' startportid='1' maxportid='2'><port id='1'><phytype>ge</phytype>"
    "<driver>cdl</driver><!-- x --></port></panel-port><led-entity num='1'><led id='1' type='fan'>"
    "<state type='stop' pri='1'><color>red</color><freq>on</freq></state></led></led-entity></card></device>\n";

class BrokenFile : public testing::TestWithParam<Query> {
protected:
    const SilentLibxml2 silent_;

    // The queries on devices use a small one.
    static std::string smallDescription()
    {
        return GetParam().file == std::string("device.xml") ? kSmallDevice : readFile(example(GetParam().file));
    }
};

std::string nameOf(const testing::TestParamInfo<Query> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, BrokenFile, testing::ValuesIn(allQueries()), nameOf);

} // namespace

TEST_P(BrokenFile, MayBeCutAnywhere)
{
    const Zorconf zorconf;
    const std::string whole = readFile(example(GetParam().file));
    const size_t end = whole.rfind('>'); // of the root
    const size_t stride = strideOr1(7);
    Tally tally;
    for (size_t size = 0; size <= end && !HasFailure();
         size += size < kEachByteUpTo ? stride : kStrideBehind * stride) {
        SCOPED_TRACE("cut to " + std::to_string(size) + " bytes");
        expectAnswer(zorconf, GetParam(), whole.substr(0, size), tally);
    }
    EXPECT_EQ(tally.read, 0U) << "nothing short of the whole is well-formed";
    expectAnswer(zorconf, GetParam(), whole.substr(0, end + 1), tally);
    EXPECT_EQ(tally.read, 1U);
}

TEST_P(BrokenFile, MayHaveAnyBitFlipped)
{
    const Zorconf zorconf;
    const std::string whole = smallDescription();
    const size_t stride = strideOr1(7);
    Tally tally;
    expectAnswer(zorconf, GetParam(), whole, tally);
    ASSERT_EQ(tally.read, 1U);
    for (size_t bit = 0; bit < whole.size() * 8 && !HasFailure(); bit += stride) {
        SCOPED_TRACE("bit " + std::to_string(bit % 8) + " of byte " + std::to_string(bit / 8));
        std::string broken = whole;
        broken[bit / 8] = static_cast<char>(broken[bit / 8] ^ (1 << bit % 8));
        expectAnswer(zorconf, GetParam(), broken, tally);
    }
    EXPECT_GT(tally.read, 1U) << "of the flipped bits some are in comments and numbers";
    EXPECT_GT(tally.refused, 0U);
}

TEST_P(BrokenFile, MayHaveAnyByteInverted)
{
    const Zorconf zorconf;
    const std::string whole = smallDescription();
    const size_t stride = strideOr1(3);
    Tally tally;
    for (size_t byte = 0; byte < whole.size() && !HasFailure(); byte += stride) {
        SCOPED_TRACE("byte " + std::to_string(byte));
        std::string broken = whole;
        broken[byte] = static_cast<char>(~broken[byte]);
        expectAnswer(zorconf, GetParam(), broken, tally);
    }
    EXPECT_GT(tally.refused, 0U);
}
