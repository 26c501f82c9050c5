#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brvUtils {

/// What became of a text with references to environment variables.
struct ResolvedText
{
    enum class Fault {
        none,
        noEnd, ///< A reference has no "}".
        undefined, ///< There is no variable `name`.
        endless ///< The variable `name` leads back to itself, or to more references than anybody could want.
    };

    std::string text; ///< As far as it came, after a fault.
    Fault fault = Fault::none;
    std::string name;
    std::vector<std::pair<std::string, std::string>> variables; ///< That were read, with their values, in order.
};

/// Replaces every "${NAME}" by its value, the first one first and those inside values too. UTF-8.
/// \param known variables that count before those of the environment.
ResolvedText resolveReferences(std::string text, const std::map<std::string, std::string>& known = {});

/// Why a text was not resolved, in words; empty for Fault::none.
std::string faultText(const ResolvedText& resolved);

} // namespace brvUtils
