// Descriptions made to cost a program as much as possible, in any size: what bounds the work of the tool is measured
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
