#include "testing/Child.h"

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    // Before the test framework takes notice of anything: the arguments of a child are the child's.
    if (const auto exitCode = brvTesting::runAsChild(argc, argv)) {
        return *exitCode;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
