#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

namespace brvTesting {

namespace {

std::string textOf(const brvUtils::os::StandardStreamCapture& capture)
{
    // In case a test has unlinked the C++ streams from those of C.
    std::cout.flush();
    std::cerr.flush();
    return capture.text();
}

} // namespace

CapturedOutput::CapturedOutput()
{
    EXPECT_EQ(out_.error(), brvUtils::os::error::none) << "standard output not captured";
    EXPECT_EQ(err_.error(), brvUtils::os::error::none) << "standard error stream not captured";
}

CapturedOutput::~CapturedOutput()
{
    if (testing::Test::HasFailure()) {
        handOn_.out = out();
        handOn_.err = err();
    }
}

CapturedOutput::HandOn::~HandOn()
{
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fwrite(err.data(), 1, err.size(), stderr);
    std::fflush(stdout);
}

std::string CapturedOutput::out() const
{
    return textOf(out_);
}

std::string CapturedOutput::err() const
{
    return textOf(err_);
}

} // namespace brvTesting
