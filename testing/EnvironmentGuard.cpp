#include "testing/EnvironmentGuard.h"

#include "brvUtils/os/Environment.h"

#include <gtest/gtest.h>

namespace brvTesting {

namespace {

void put(const std::string& name, const std::optional<std::string>& value)
{
    const auto error = value ? brvUtils::os::setEnvironmentVariable(name, *value) : brvUtils::os::removeEnvironmentVariable(name);
    EXPECT_EQ(error, brvUtils::os::error::none) << "variable " << name;
}

} // namespace

EnvironmentGuard::EnvironmentGuard(const std::string& name, const std::optional<std::string>& value)
    : name_(name), before_(brvUtils::os::environmentVariable(name))
{
    put(name, value);
}

EnvironmentGuard::~EnvironmentGuard()
{
    put(name_, before_);
}

} // namespace brvTesting
