#include "brvUtils/os/Network.h"

#include <arpa/inet.h>
#include <climits>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace brvUtils::os {

// Sockets need no start here.
ErrorCode startSockets()
{
    return error::none;
}

void stopSockets()
{
}

std::uint32_t dottedAddress(const std::string& text)
{
    return inet_addr(text.c_str());
}

std::string hostName()
{
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 ? name : std::string();
}

bool lookUpHost(const std::string& name, std::uint32_t& address)
{
    char host[HOST_NAME_MAX + 1] = "";
    if (name.empty() && gethostname(host, sizeof host) != 0) {
        return false;
    }
    addrinfo hints {};
    hints.ai_family = AF_INET;
    addrinfo* answer = nullptr;
    if (getaddrinfo(name.empty() ? host : name.c_str(), nullptr, &hints, &answer) != 0) {
        return false;
    }
    address = reinterpret_cast<const sockaddr_in*>(answer->ai_addr)->sin_addr.s_addr;
    freeaddrinfo(answer);
    return true;
}

} // namespace brvUtils::os
