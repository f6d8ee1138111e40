#include "tests/reliability/allocator.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    dcmtest::installAllocator();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
