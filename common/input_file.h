// The file of a query.
#ifndef DCM_COMMON_INPUT_FILE_H
#define DCM_COMMON_INPUT_FILE_H

#include <cstddef>

namespace dcm {

// A regular file of limited size, opened by its path; URLs and the like are plain paths. It is read without
// decompression, so the cost of a compressed file is that of its own bytes.
class InputFile {
public:
    static constexpr size_t kSizeMax = size_t{128} << 20;

    explicit InputFile(const char *path);
    ~InputFile();
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    // The error number of opening or reading the file; 0 without an error.
    int error() const { return error_; }

    // libxml2's read callback; the context is the object.
    static int readNext(void *file, char *buffer, int size);

private:
    int descriptor_;
    int error_ = 0;
    size_t left_ = kSizeMax;
};

} // namespace dcm

#endif
