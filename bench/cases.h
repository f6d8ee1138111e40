// What is measured: queries on files. The floor of a query is what libxml2 needs to parse and free its file.
#ifndef DCM_BENCH_CASES_H
#define DCM_BENCH_CASES_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace dcmbench {

// A folder that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::string &path() const { return path_; }
    // Writes a file, in folders that are made as needed, and returns its path.
    std::string write(const std::string &name, const std::string &text) const;

private:
    std::string path_;
};

struct Case {
    std::string name;
    std::string file;
    double limit; // the most that the query may cost, in floors; 0: whatever it costs
    std::function<int()> query;
};

// What is wanted is the whole file, and a twentieth of it or less.
constexpr double kWholeLimit = 1.10;
constexpr double kTwentiethLimit = 1.02;

// Every query on the example, on files of one large element, and on many cards with the wanted one in several places.
std::vector<Case> standardCases(const TemporaryFolder &folder);

// The card of type `typeId` among `count` ordinary ones in `file`.
Case cardCase(const std::string &name, const std::string &file, uint32_t typeId, size_t count);

// The floor.
void parseAndFree(const std::string &file);

size_t fileSize(const std::string &file);

// Throws unless each query succeeds.
void check(const std::vector<Case> &cases);

// Joins the pieces into which earlier documents have broken the heap, and gives them back, so that what comes next
// finds the heap of a young process. A used heap costs up to twice as much, and differs from one time to the next.
void tidyHeap();

} // namespace dcmbench

#endif
