// A card's driver that does nothing but answer as a test wants it, and tell of each call. It is loaded in place of a real one.
//
// FAULTY_DRIVER="RFM2gOpen=10" lets that function answer status 10; FAULTY_DRIVER_FIRST and FAULTY_DRIVER_SIZE are what the
// card says of its memory.

#include "brvUtils/export.h"
#include "brvUtils/ipc/Rfm2g.h"
#include "brvUtils/os/Environment.h"

#include <cstdio>
#include <string>

using namespace brvUtils::rfm2g;

namespace {

std::string variable(const char* name, const std::string& otherwise)
{
    return brvUtils::os::environmentVariable(name).value_or(otherwise);
}

Offset offset(const char* name, const std::string& otherwise)
{
    return static_cast<Offset>(std::stoul(variable(name, otherwise)));
}

Status answer(const std::string& function, const std::string& detail = "")
{
    std::printf("%s%s\n", function.c_str(), detail.c_str());
    const std::string fault = variable("FAULTY_DRIVER", "");
    return fault.rfind(function + "=", 0) == 0 ? Status(std::stoi(fault.substr(function.size() + 1))) : Status::success;
}

std::string inBrackets(Event event)
{
    return "(" + std::to_string(static_cast<int>(event)) + ")";
}

int card;

} // namespace

extern "C" {

BRVUTILS_API Status RFM2gOpen(char*, Handle* handle)
{
    const Status status = answer("RFM2gOpen");
    *handle = status == Status::success ? &card : nullptr;
    return status;
}

BRVUTILS_API Status RFM2gClose(Handle* handle)
{
    *handle = nullptr;
    return answer("RFM2gClose");
}

BRVUTILS_API Status RFM2gNodeID(Handle, Node* node)
{
    *node = 7;
    return answer("RFM2gNodeID");
}

BRVUTILS_API Status RFM2gSize(Handle, Offset* bytes)
{
    *bytes = offset("FAULTY_DRIVER_SIZE", "67108864");
    return answer("RFM2gSize");
}

BRVUTILS_API Status RFM2gFirst(Handle, Offset* first)
{
    *first = offset("FAULTY_DRIVER_FIRST", "0");
    return answer("RFM2gFirst");
}

BRVUTILS_API Status RFM2gRead(Handle, Offset, void*, Offset)
{
    return answer("RFM2gRead");
}

BRVUTILS_API Status RFM2gWrite(Handle, Offset, void*, Offset)
{
    return answer("RFM2gWrite");
}

BRVUTILS_API Status RFM2gEnableEvent(Handle, Event event)
{
    return answer("RFM2gEnableEvent", inBrackets(event));
}

BRVUTILS_API Status RFM2gSendEvent(Handle, Node, Event event, std::uint32_t)
{
    return answer("RFM2gSendEvent", inBrackets(event));
}

BRVUTILS_API Status RFM2gEnableEventCallback(Handle, Event event, Callback)
{
    return answer("RFM2gEnableEventCallback", inBrackets(event));
}

#if !defined(FAULTY_DRIVER_INCOMPLETE)
BRVUTILS_API Status RFM2gClearEvent(Handle, Event event)
{
    return answer("RFM2gClearEvent", inBrackets(event));
}
#endif

BRVUTILS_API char* RFM2gErrorMsg(Status status)
{
    static char text[] = "the driver's own words";
    return status == Status(77) ? nullptr : text;
}

BRVUTILS_API Status RFM2gCheckRingCont(Handle)
{
    return answer("RFM2gCheckRingCont");
}

} // extern "C"
