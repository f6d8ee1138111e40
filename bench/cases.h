// The measured cases: queries on files. The floor of a query is the cost of libxml2 to parse and free its file.
#ifndef DCM_BENCH_CASES_H
#define DCM_BENCH_CASES_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace dcmbench {

// A folder that is removed with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::string &path() const { return path_; }
    // Writes a file, creates its folders if needed, and returns its path.
    std::string write(const std::string &name, const std::string &text) const;

private:
    std::string path_;
};

// The limit for the cost of a query, in floors; 0: no limit.
struct Limits {
    double instructions;
    double time;
    double peak; // of memory
};

struct Case {
    std::string name;
    std::string file;
    Limits limits;
    std::function<int()> query;
    unsigned parses = 1; // of the file, one for each query
};

// The wanted element is the whole file, about a quarter of it, at most a fifteenth of it, and that of at least 0.5 MB
// or 5 MB.
constexpr Limits kWhole = {1.10, 0, 1.00};
constexpr Limits kQuarter = {0.60, 0, 0.30};
constexpr Limits kFifteenth = {0.45, 0, 0.20};
constexpr Limits kFifteenthOfHalfAMegabyte = {0.45, 0.35, 0.20};
constexpr Limits kFifteenthOf5Megabytes = {0.45, 0.35, 0.02};
// 25 queries in a row.
constexpr Limits kBoot = {0, 0.40, 0.30};

// Every query on the example, on files with one large element, and on many cards with the wanted one in several
// positions.
std::vector<Case> standardCases(const TemporaryFolder &folder);

// The card of type `typeId` among `count` ordinary ones in `file`.
Case cardCase(const std::string &name, const std::string &file, uint32_t typeId, size_t count);

// The floor.
void parseAndFree(const Case &one);

size_t fileSize(const std::string &file);

// Throws unless each query succeeds.
void check(const std::vector<Case> &cases);

// Returns the free memory of earlier documents, so that the next measurement has the heap of a new process. A
// fragmented heap costs up to twice as much, and varies.
void tidyHeap();

} // namespace dcmbench

#endif
