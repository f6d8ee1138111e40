// Entities that refer to one another, each to the previous one: their text is nested as deep as the list is long.
#include "tests/support/dcm_test.h"

#include <pthread.h>

#include <cstdlib>

using namespace dcmtest;

namespace {

constexpr size_t kStack = 256 * 1024; // of a thread that queries
constexpr unsigned kDepth = 20000;

std::string reference(unsigned entity)
{
    return "&e" + std::to_string(entity) + ";";
}

// Declares a chain of entities. "used" refers to each once, the innermost first, because otherwise the parser rejects
// the depth.
std::string withEntities(const std::string &frame)
{
    std::string declarations = "<!ENTITY e0 '7'>";
    std::string used = reference(0);
    for (unsigned entity = 1; entity <= kDepth; entity++) {
        declarations += "<!ENTITY e" + std::to_string(entity) + " '" + reference(entity - 1) + "'>";
        used += reference(entity);
    }
    return "<!DOCTYPE device [" + declarations + "]><device><used>" + used + "</used>" + frame + "</device>";
}

// Runs in a separate process, on a thread with a given stack; returns 0 if the query returns, and has failed or read
// the 7.
int queryOnSmallStack(const std::string &frame)
{
    const TemporaryFile file(withEntities(frame));
    static DcmFrameInfo info;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread;
    const auto query = [](void *path) -> void * {
        static bool isRight;
        const int result = dcmFrameInfoGet(static_cast<const char *>(path), 7, &info);
        isRight = result == -1 || (result == 0 && info.maxSlotId == 7);
        return &isRight;
    };
    if (pthread_create(&thread, &attributes, query, const_cast<char *>(file.c_str())) != 0)
        return 2;
    void *isRight = nullptr;
    pthread_join(thread, &isRight);
    return *static_cast<bool *>(isRight) ? 0 : 1;
}

} // namespace

TEST(EntityNesting, DoesNotExhaustTheStackInAContent)
{
    const std::string frame = "<frame typeid='7'><maxslotnum>" + reference(kDepth) + "</maxslotnum></frame>";
    EXPECT_EXIT(std::exit(queryOnSmallStack(frame)), testing::ExitedWithCode(0), "");
}

TEST(EntityNesting, DoesNotExhaustTheStackInAnAttribute)
{
    const std::string frame = "<frame typeid='" + reference(kDepth) + "'><maxslotnum>7</maxslotnum></frame>";
    EXPECT_EXIT(std::exit(queryOnSmallStack(frame)), testing::ExitedWithCode(0), "");
}
