// The result of a step of decoding.
#ifndef DCM_COMMON_RESULT_H
#define DCM_COMMON_RESULT_H

namespace dcm {

enum class [[nodiscard]] Result{
    ok,
    failed,     // the description is at fault, and that has been reported
    outOfMemory // an allocation failed, and that has been reported: no level may treat the text as absent
};

// The result of an exported function.
constexpr int status(Result result)
{
    return result == Result::ok ? 0 : -1;
}

// The result of an exported decoder that was called internally.
constexpr Result resultOf(int status)
{
    return status == 0 ? Result::ok : Result::failed;
}

// For a step whose faults the calling level ignores.
constexpr Result unlessOutOfMemory(Result result)
{
    return result == Result::outOfMemory ? result : Result::ok;
}

} // namespace dcm

#endif
