// Adversarial descriptions in any size, which are as expensive as possible: the bounds of the tool's work are measured
// and tested with them.
#ifndef DCM_TESTS_SUPPORT_ADVERSARIAL_FILES_H
#define DCM_TESTS_SUPPORT_ADVERSARIAL_FILES_H

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace adversarial {

struct Shape {
    const char *name;
    std::string (*make)(size_t size); // a file of about `size` bytes

    friend void PrintTo(const Shape &shape, std::ostream *out) { *out << shape.name; }
};

const std::vector<Shape> &shapes();

} // namespace adversarial

#endif
