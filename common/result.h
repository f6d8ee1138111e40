// What a step of decoding comes to.
#ifndef DCM_COMMON_RESULT_H
#define DCM_COMMON_RESULT_H

namespace dcm {

enum class [[nodiscard]] Result{
    ok,
    failed,     // the description is at fault, and that has been reported
    outOfMemory // a text could not be read, and that has been reported: no level may go on as if it were absent
};

// The interface's form of a result.
constexpr int status(Result result)
{
    return result == Result::ok ? 0 : -1;
}

// The result of an exported decoder, for a level that goes on only after 0.
constexpr Result resultOf(int status)
{
    return status == 0 ? Result::ok : Result::failed;
}

// For a step whose faults the level above passes over.
constexpr Result unlessOutOfMemory(Result result)
{
    return result == Result::outOfMemory ? result : Result::ok;
}

} // namespace dcm

#endif
