#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

using namespace brvTesting;

TEST(CapturedOutput, TakesCAndCppStreamsInOrder)
{
    CapturedOutput captured;
    std::printf("one\n");
    std::cout << "two\n";
    std::printf("three");
    std::cerr << "four\n";
    std::fprintf(stderr, "five\r\n");
    EXPECT_EQ(captured.out(), "one\ntwo\nthree");
    EXPECT_EQ(captured.err(), "four\nfive\r\n");
    std::cout << "\n";
    EXPECT_EQ(captured.out(), "one\ntwo\nthree\n");
}

TEST(CapturedOutput, GivesTheStreamsBack)
{
    CapturedOutput outer;
    {
        CapturedOutput inner;
        std::cout << "inner";
        EXPECT_EQ(inner.out(), "inner");
    }
    std::cout << "outer";
    EXPECT_EQ(outer.out(), "outer");
}
