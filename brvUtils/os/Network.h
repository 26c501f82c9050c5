#pragma once

#include "brvUtils/os/Error.h"

#include <cstdint>
#include <string>

namespace brvUtils::os {

/// Starts the sockets layer, version 2.2. The system counts: one `stopSockets` per successful start.
ErrorCode startSockets();

void stopSockets();

/// What `dottedAddress` gives for text that is no address. It is also the address 255.255.255.255.
constexpr std::uint32_t noAddress = 0xFFFFFFFF;

/// The IPv4 address written in `text`, in network byte order, in all the forms that `inet_addr` knows; else `noAddress`.
std::uint32_t dottedAddress(const std::string& text);

/// The name of this computer in the network, in UTF-8; empty when the system does not tell. The sockets layer must be started.
std::string hostName();

/// The first IPv4 address of a host, in network byte order; the empty name is this computer. Asks the system's name
/// service, which may block for seconds. False when the name is not known. The sockets layer must be started.
bool lookUpHost(const std::string& name, std::uint32_t& address);

} // namespace brvUtils::os
