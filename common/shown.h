#ifndef DCM_COMMON_SHOWN_H
#define DCM_COMMON_SHOWN_H

namespace dcm {

// What came of showing a type: the exported functions tell only the result of the last write.
struct Shown {
    bool isFound;
    int written;
};

} // namespace dcm

#endif
