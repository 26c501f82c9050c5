#pragma once

#include <optional>
#include <string>

namespace brvTesting {

/// Sets or removes a variable of this process while the object lives; `getenv` and children started meanwhile see it.
/// The destructor brings back what was there. No other thread may use the environment at the same moment.
class EnvironmentGuard
{
public:
    /// Without a value the variable is removed.
    explicit EnvironmentGuard(const std::string& name, const std::optional<std::string>& value = std::nullopt);
    ~EnvironmentGuard();
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
    std::string name_;
    std::optional<std::string> before_;
};

} // namespace brvTesting
