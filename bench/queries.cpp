// Compares each query and its alternatives with the floor, which is libxml2 parsing and freeing the file. The two
// alternate in random order, so that disturbances affect both. Times are processor times, so that other processes do
// not count; for several concurrent processes they are elapsed times.
#include "bench/cases.h"
#include "bench/descriptions.h"
#include "bench/panel_readers.h"
#include "bench/parsers.h"

#include <benchmark/benchmark.h>
#include <dcm.h>
#include <libxml/parser.h>

#include <sys/wait.h>
#include <unistd.h>

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

template <class Action> double secondsFor(clockid_t clock, Action action)
{
    const auto now = [clock] {
        timespec time = {};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double start = now();
    action();
    return now() - start;
}

// Runs several processes that start together, and returns the mean of their times.
template <class Action> double secondsForEach(unsigned processes, Action action)
{
    int gate[2];
    int results[2];
    if (pipe(gate) != 0 || pipe(results) != 0)
        throw std::runtime_error("cannot make a pipe");
    for (unsigned i = 0; i < processes; i++) {
        const pid_t process = fork();
        if (process < 0)
            throw std::runtime_error("cannot make a process");
        if (process > 0)
            continue;
        // Blocks until the last process closes its end of the pipe.
        close(gate[1]);
        char nothing = 0;
        bool isGood = read(gate[0], &nothing, sizeof nothing) == 0;
        const double seconds = secondsFor(CLOCK_MONOTONIC, action);
        isGood = isGood && write(results[1], &seconds, sizeof seconds) == ssize_t{sizeof seconds};
        _exit(isGood ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    for (const int end : {gate[0], gate[1], results[1]})
        close(end);
    double sum = 0;
    for (unsigned i = 0; i < processes; i++) {
        double seconds = 0;
        if (read(results[0], &seconds, sizeof seconds) != ssize_t{sizeof seconds})
            throw std::runtime_error("a process failed");
        sum += seconds;
    }
    close(results[0]);
    for (unsigned i = 0; i < processes; i++)
        wait(nullptr);
    return sum / processes;
}

// One repetition: pairs of floor and query. Its counters are the medians of the pairs.
void measure(benchmark::State &state, const Case &one, unsigned processes)
{
    static std::minstd_rand random{std::random_device{}()};
    std::vector<double> floors;
    std::vector<double> queries;
    std::vector<double> ratios;
    const auto seconds = [&](auto action) {
        dcmbench::tidyHeap();
        return processes > 1 ? secondsForEach(processes, action) : secondsFor(CLOCK_PROCESS_CPUTIME_ID, action);
    };
    const auto floor = [&] { floors.push_back(seconds([&] { dcmbench::parseAndFree(one); })); };
    const auto query = [&] { queries.push_back(seconds([&] { benchmark::DoNotOptimize(one.query()); })); };
    // The first pair gets the same heap as the next ones.
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

// The number of pairs in a repetition, so that each parses some megabytes: all of it takes a few minutes.
int64_t pairsFor(const Case &one)
{
    return std::clamp<int64_t>(10'000'000 / static_cast<int64_t>(dcmbench::fileSize(one.file)), 1, 200);
}

void add(const Case &one, unsigned processes = 1)
{
    benchmark::RegisterBenchmark(one.name.c_str(), [=](benchmark::State &state) { measure(state, one, processes); })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(pairsFor(one));
}

// ---- Parsers alone --------------------------------------------------------------------------------------------------

void addParsers(const std::string &name, const std::string &file)
{
    struct Parser {
        const char *name;
        bool (*parse)(const char *file);
    };
    constexpr Parser parsers[] = {{"empty SAX handlers", dcmbench::parseWithSax},
                                  {"expat, empty handlers", dcmbench::parseWithExpat}};
    for (const auto &[parserName, parse] : parsers) {
        const Case one = {"side by side: " + name + "/" + parserName, file, {}, [file, parse = parse] {
                              return parse(file.c_str()) ? 0 : -1;
                          }};
        dcmbench::check({one});
        add(one);
    }
}

// ---- Alternatives to the library ------------------------------------------------------------------------------------

using PanelReader = bool (*)(const char *file, uint32_t typeId, dcmbench::Panel &panel);

template <class Record> std::string_view bytesOf(const Record &record)
{
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

void addSideBySide(const std::string &name, const std::string &file, uint32_t typeId)
{
    struct Alternative {
        const char *name;
        PanelReader read;
    };
    constexpr Alternative alternatives[] = {{"XPath", dcmbench::readWithXPath},
                                            {"streaming reader", dcmbench::readWithTextReader},
                                            {"pugixml", dcmbench::readWithPugixml}};
    const Case query = dcmbench::cardCase("side by side: " + name + "/query", file, typeId, 1);
    add({query.name, file, {}, query.query});

    DcmCardInfo card;
    if (dcmCardInfoGet(file.c_str(), typeId, 1, &card) != 0)
        throw std::runtime_error("cannot read " + file);
    for (const Alternative &alternative : alternatives) {
        const PanelReader read = alternative.read;
        auto panel = std::make_shared<dcmbench::Panel>();
        if (!read(file.c_str(), typeId, *panel) || bytesOf(panel->ports) != bytesOf(card.panelIf))
            throw std::runtime_error(std::string(alternative.name) + " reads other ports than the library in " + file);
        add({"side by side: " + name + "/" + alternative.name, file, {}, [=] {
                 return read(file.c_str(), typeId, *panel) ? 0 : -1;
             }});
    }
    addParsers(name, file);
}

void addAll(const dcmbench::TemporaryFolder &folder)
{
    const std::vector<Case> cases = dcmbench::standardCases(folder);
    dcmbench::check(cases);
    for (const Case &one : cases) {
        add(one);
        // A network element starts many processes at once.
        if (one.parses > 1)
            add({one.name + ", six at once", one.file, {}, one.query, one.parses}, 6);
    }

    addParsers("example", DCM_SOURCE_DIR "/examples/device.xml");
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
