// Measures each query, and other ways to read the same, against the floor: what libxml2 needs to parse and free the
// file. The two take turns, in random order, so that what disturbs the machine disturbs both; the time is that of the
// processor, so that other processes do not count.
#include "bench/cases.h"
#include "bench/descriptions.h"
#include "bench/panel_readers.h"

#include <benchmark/benchmark.h>
#include <dcm.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>

namespace {

using dcmbench::Case;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Action> double secondsFor(Action action)
{
    dcmbench::tidyHeap();
    const double start = processorSeconds();
    action();
    return processorSeconds() - start;
}

// One repetition: pairs of floor and query. Its counters are the medians of the pairs.
void measure(benchmark::State &state, const Case &one)
{
    static std::minstd_rand random{std::random_device{}()};
    std::vector<double> floors;
    std::vector<double> queries;
    std::vector<double> ratios;
    const auto floor = [&] { floors.push_back(secondsFor([&] { dcmbench::parseAndFree(one); })); };
    const auto query = [&] { queries.push_back(secondsFor([&] { benchmark::DoNotOptimize(one.query()); })); };
    // The first pair finds the memory as the next ones do.
    dcmbench::parseAndFree(one);
    while (state.KeepRunning()) {
        if (random() % 2 == 0) {
            floor();
            query();
        } else {
            query();
            floor();
        }
        ratios.push_back(queries.back() / floors.back());
        state.SetIterationTime(queries.back());
    }
    state.counters["bytes"] = static_cast<double>(dcmbench::fileSize(one.file));
    state.counters["floor_us"] = median(floors) * 1e6;
    state.counters["query_us"] = median(queries) * 1e6;
    state.counters["ratio"] = median(ratios);
    if (one.limits.time > 0)
        state.counters["limit"] = one.limits.time;
}

// One line for each benchmark, in the order in which they were added: the medians of its repetitions, and the smallest
// and the largest ratio among them.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        Row row;
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            row.index = static_cast<size_t>(run.family_index);
            row.name = run.run_name.function_name;
            row.counters = run.counters;
            row.floors.push_back(run.counters.at("floor_us"));
            row.queries.push_back(run.counters.at("query_us"));
            row.ratios.push_back(run.counters.at("ratio"));
        }
        if (!row.ratios.empty())
            rows_.push_back(row);
    }

    void Finalize() override
    {
        std::sort(rows_.begin(), rows_.end(), [](const Row &one, const Row &other) { return one.index < other.index; });
        std::printf("%-48s %9s %9s %9s %8s %6s  %-13s %5s\n", "", "bytes", "floor us", "query us", "ns/byte", "ratio",
                    "from - to", "limit");
        for (const Row &row : rows_)
            isGood_ = print(row) && isGood_;
    }
    // Whether no limit was exceeded.
    bool isGood() const { return isGood_; }

private:
    struct Row {
        size_t index = 0;
        std::string name;
        benchmark::UserCounters counters;
        std::vector<double> floors;
        std::vector<double> queries;
        std::vector<double> ratios;
    };

    static bool print(const Row &row)
    {
        const double bytes = row.counters.at("bytes");
        const double ratio = median(row.ratios);
        const auto [least, most] = std::minmax_element(row.ratios.begin(), row.ratios.end());
        std::printf("%-48s %9.0f %9.1f %9.1f %8.2f %6.3f  %.3f - %.3f", row.name.c_str(), bytes, median(row.floors),
                    median(row.queries), median(row.queries) * 1e3 / bytes, ratio, *least, *most);
        bool isOver = false;
        if (const auto limit = row.counters.find("limit"); limit != row.counters.end()) {
            isOver = ratio > limit->second;
            std::printf(" %5.2f%s", static_cast<double>(limit->second), isOver ? " exceeded" : "");
        }
        std::printf("\n");
        return !isOver;
    }

    std::vector<Row> rows_;
    bool isGood_ = true;
};

// As many pairs in a repetition as make some megabytes: small files get many, and all of it takes a few minutes.
int64_t pairsFor(const Case &one)
{
    return std::clamp<int64_t>(10'000'000 / static_cast<int64_t>(dcmbench::fileSize(one.file)), 1, 200);
}

void add(const Case &one)
{
    benchmark::RegisterBenchmark(one.name.c_str(), [one](benchmark::State &state) { measure(state, one); })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(pairsFor(one));
}

// ---- Other ways to the same ports -----------------------------------------------------------------------------------

using PanelReader = bool (*)(const char *file, uint32_t typeId, dcmbench::Panel &panel);

template <class Record> std::string_view bytesOf(const Record &record)
{
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

void addSideBySide(const std::string &name, const std::string &file, uint32_t typeId)
{
    struct Way {
        const char *name;
        PanelReader read;
    };
    constexpr Way ways[] = {{"XPath", dcmbench::readWithXPath},
                            {"streaming reader", dcmbench::readWithTextReader},
                            {"pugixml", dcmbench::readWithPugixml}};
    const Case query = dcmbench::cardCase("side by side: " + name + "/query", file, typeId, 1);
    add({query.name, file, {}, query.query});

    DcmCardInfo card;
    if (dcmCardInfoGet(file.c_str(), typeId, 1, &card) != 0)
        throw std::runtime_error("cannot read " + file);
    for (const Way &way : ways) {
        const PanelReader read = way.read;
        auto panel = std::make_shared<dcmbench::Panel>();
        if (!read(file.c_str(), typeId, *panel) || bytesOf(panel->ports) != bytesOf(card.panelIf))
            throw std::runtime_error(std::string(way.name) + " reads other ports than the library in " + file);
        add({"side by side: " + name + "/" + way.name, file, {}, [=] {
                 return read(file.c_str(), typeId, *panel) ? 0 : -1;
             }});
    }
}

void addAll(const dcmbench::TemporaryFolder &folder)
{
    const std::vector<Case> cases = dcmbench::standardCases(folder);
    dcmbench::check(cases);
    for (const Case &one : cases)
        add(one);

    using dcmbench::kTypeId;
    addSideBySide("one large card", folder.write("side-card.xml", dcmbench::largeCard(dcmbench::Layout::indented)),
                  kTypeId);
    const std::string many = folder.write("side-cards.xml", dcmbench::ordinaryCards(200));
    addSideBySide("200 cards, the first", many, kTypeId);
    addSideBySide("200 cards, the last", many, kTypeId + 199);

    const size_t cardSize = dcmbench::ordinaryCards(1000).size() / 1000;
    for (const size_t tenths : {1U, 10U, 50U, 100U, 500U}) { // of a megabyte
        const size_t count = tenths * 100'000 / cardSize;
        const std::string name = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
        const std::string file = folder.write("growth " + name + ".xml", dcmbench::ordinaryCards(count));
        add(dcmbench::cardCase("growth: " + name, file, kTypeId + static_cast<uint32_t>(count) - 1, count));
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    try {
        const dcmbench::TemporaryFolder folder;
        addAll(folder);
        Table table;
        benchmark::RunSpecifiedBenchmarks(&table);
        benchmark::Shutdown();
        return table.isGood() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
