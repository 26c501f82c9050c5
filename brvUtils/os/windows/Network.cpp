#define _WINSOCK_DEPRECATED_NO_WARNINGS // inet_addr, for the forms of address that it alone takes

#include "brvUtils/os/Network.h"

#include "brvUtils/os/Encoding.h"

#include <winsock2.h>

#include <ws2tcpip.h>

namespace brvUtils::os {

ErrorCode startSockets()
{
    WSADATA data;
    return static_cast<ErrorCode>(WSAStartup(MAKEWORD(2, 2), &data));
}

void stopSockets()
{
    WSACleanup();
}

std::uint32_t dottedAddress(const std::string& text)
{
    return inet_addr(text.c_str());
}

std::string hostName()
{
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 ? utf8FromWide(wideFromLocal(name)) : std::string();
}

bool lookUpHost(const std::string& name, std::uint32_t& address)
{
    addrinfo hints {};
    hints.ai_family = AF_INET;
    addrinfo* answer = nullptr;
    if (getaddrinfo(name.c_str(), "", &hints, &answer) != 0) {
        return false;
    }
    address = reinterpret_cast<const sockaddr_in*>(answer->ai_addr)->sin_addr.s_addr;
    freeaddrinfo(answer);
    return true;
}

} // namespace brvUtils::os
