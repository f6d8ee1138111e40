// Concurrent use of the library by many threads.
#include "tests/reliability/queries.h"

#include <libxml/parser.h>

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <thread>

using namespace dcmtest;

namespace {

constexpr unsigned kThreads = 8;

// Runs `work` in all threads, which start together.
void inAllThreads(const std::function<void(unsigned thread)> &work)
{
    pthread_barrier_t start;
    ASSERT_EQ(pthread_barrier_init(&start, nullptr, kThreads), 0);
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < kThreads; thread++)
        threads.emplace_back([&, thread] {
            pthread_barrier_wait(&start);
            work(thread);
        });
    for (std::thread &thread : threads)
        thread.join();
    pthread_barrier_destroy(&start);
}

class Concurrency : public testing::Test {
protected:
    // As libxml2 requires of processes with threads.
    static void SetUpTestSuite() { xmlInitParser(); }
};

// ---- Converters -----------------------------------------------------------------------------------------------------

using Str2Val = int (*)(const unsigned char *text, uint32_t *value);
using Val2Str = const char *(*)(uint32_t value);

struct Vocabulary {
    Str2Val valueOf;
    Val2Str wordOf;
};
constexpr Vocabulary vocabularies[] = {
    {dcmBitOrderStr2Val, dcmBitOrderVal2Str},
    {dcmDriverTypeStr2Val, dcmDriverTypeVal2Str},
    {dcmInnerIfTypeStr2Val, dcmInnerIfTypeVal2Str},
    {dcmWorkmodeStr2Val, dcmWorkmodeVal2Str},
    {dcmPortConnectorStr2Val, dcmPortConnectorTypeVal2Str},
    {dcmPortTypeStr2Val, dcmPortTypeVal2Str},
    {dcmPortTypeCapStr2Val, dcmPortTypeCapVal2Str},
    {dcmMemoryTypeStr2Val, dcmMemoryTypeVal2Str},
    {dcmPortLayerProtoCapStr2Val, dcmPortLayerProtoCapVal2Str},
    {dcmPortTransceiverCapStr2Val, dcmPortTransceiverCapVal2Str},
    {dcmPortOpticalChnCapStr2Val, dcmPortOpticalChnCapVal2Str},
    {dcmPortPoeStandardCapStr2Val, dcmPortPoeStandardCapVal2Str},
    {dcmPortPoeInrushCapStr2Val, dcmPortPoeInrushCapVal2Str},
    {dcmEttAttachStr2Val, dcmEttAttachVal2Str},
    {dcmLedFreqStr2Val, dcmLedFreqVal2Str},
    {dcmLedColorStr2Val, dcmLedColorVal2Str},
    {dcmLedTypeStr2Val, dcmLedTypeVal2Str},
    {dcmTemperTypeStr2Val, dcmTemperTypeVal2Str},
};

// A word that is read and printed.
struct Word {
    const Vocabulary *vocabulary;
    uint32_t value; // printed as the word
    std::string word;
    uint32_t readsAs; // read from the word
};

std::vector<Word> allWords()
{
    std::vector<Word> words;
    // Other words are reported and not used here.
    effectsOf([&] {
        for (const Vocabulary &vocabulary : vocabularies) {
            for (uint32_t value = 0; value < 64; value++) {
                const char *word = vocabulary.wordOf(value);
                uint32_t readsAs = 0;
                if (vocabulary.valueOf(text(word), &readsAs) == 0)
                    words.push_back({&vocabulary, value, word, readsAs});
            }
        }
    });
    return words;
}

bool isConverted(const Word &word)
{
    uint32_t readsAs = UINT32_MAX;
    return word.vocabulary->wordOf(word.value) == word.word &&
           word.vocabulary->valueOf(text(word.word.c_str()), &readsAs) == 0 && readsAs == word.readsAs;
}

// The results of the list codecs for some lists.
std::vector<std::string> codeLists()
{
    std::vector<std::string> results;
    for (const char *list : {"1-4,7", "1-64", "8,9,20-31", "64"}) {
        uint8_t bits[8] = {};
        char printed[256] = {};
        results.push_back(std::to_string(dcmStr2BitList(list, 1, 64, bits, sizeof bits)));
        results.emplace_back(dcmBitList2Str(bits, sizeof bits, printed, sizeof printed));
        results.emplace_back(dcmBitList2Str0(bits, sizeof bits, printed, sizeof printed));
    }
    uint32_t numbers[64] = {};
    results.push_back(std::to_string(dcmStr2Array("0x301,2,77", numbers, sizeof numbers)));
    results.push_back(std::to_string(numbers[0]) + " " + std::to_string(numbers[1]) + " " + std::to_string(numbers[2]));
    results.push_back(std::to_string(dcmStrMatch(7, "1,7")) + std::to_string(dcmStrMatch(8, "1,7")));
    DcmEttInfo entity = {};
    results.push_back(std::to_string(dcmNameToEttInfo("fan-7-a@sys", &entity)) + " " + std::to_string(entity.ettClass));
    return results;
}

} // namespace

TEST_F(Concurrency, GivesEachThreadTheRecordsThatOneThreadAloneGets)
{
    const ZorconfWithExamples zorconf;
    const std::vector<Query> &queries = allQueries();
    std::vector<Outcome> alone;
    for (const Query &query : queries) {
        alone.push_back(query.run());
        ASSERT_EQ(alone.back().result, 0) << query.name;
    }
    constexpr unsigned kRounds = 20;
    std::atomic<unsigned> equal = 0;
    // Different queries run at the same time.
    inAllThreads([&](unsigned thread) {
        for (unsigned round = 0; round < kRounds * queries.size(); round++) {
            const size_t which = (thread + round) % queries.size();
            if (queries[which].run() == alone[which])
                equal++;
        }
    });
    EXPECT_EQ(equal, kThreads * kRounds * queries.size());
}

TEST_F(Concurrency, GivesEachThreadTheConversionsThatOneThreadAloneGets)
{
    const std::vector<Word> words = allWords();
    ASSERT_GT(words.size(), std::size(vocabularies));
    const std::vector<std::string> lists = codeLists();
    constexpr unsigned kRounds = 50;
    std::atomic<unsigned> equal = 0;
    inAllThreads([&](unsigned) {
        for (unsigned round = 0; round < kRounds; round++)
            if (std::all_of(words.begin(), words.end(), isConverted) && codeLists() == lists)
                equal++;
    });
    EXPECT_EQ(equal, kThreads * kRounds);
}
