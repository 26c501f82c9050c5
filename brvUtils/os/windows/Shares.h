#pragma once

#include <string>
#include <vector>

namespace brvUtils::os {

/// A folder that this computer lends to others.
struct Share
{
    std::string name;
    std::string folder;
};

/// The path that is `rest` below what a drive is connected to (`\\server\share`, or a folder of the share), when that is
/// a share of this computer; otherwise empty. Servers and shares are told apart without case.
std::string pathInShare(const std::string& connection, const std::string& host, const std::vector<Share>& shares, const std::string& rest);

} // namespace brvUtils::os
