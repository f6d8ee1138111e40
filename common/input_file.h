// The file that a query reads.
#ifndef DCM_COMMON_INPUT_FILE_H
#define DCM_COMMON_INPUT_FILE_H

#include <cstddef>

namespace dcm {

// A regular file of limited size, opened by its path: no other kind of name reaches anything. It is read as it is, so
// that a compressed file costs what its own bytes cost.
class InputFile {
public:
    static constexpr size_t kSizeMax = size_t{128} << 20;

    explicit InputFile(const char *path);
    ~InputFile();
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    // Why the file cannot be opened or read, as an error number; 0 while it can.
    int error() const { return error_; }

    // libxml2's way to read it, with the object as context.
    static int readNext(void *file, char *buffer, int size);

private:
    int descriptor_;
    int error_ = 0;
    size_t left_ = kSizeMax;
};

} // namespace dcm

#endif
