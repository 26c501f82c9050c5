#include "brvUtils/startup/ArgHandlers.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/os/Process.h"

#include <chrono>
#include <iostream>
#include <locale>
#include <sstream>
#include <thread>

namespace brvUtils::privateArgParser {
namespace {

[[noreturn]] void rejectProcessor(int processor, os::ProcessorMask shared, os::ProcessorMask system)
{
    std::ostringstream text;
    text.imbue(std::locale::classic()); // masks without separators of thousands
    text << "ProcessorId [" << processor << "] is not valid on this computer" << std::endl
         << "Process affinity mask = " << shared << std::endl // kept for callers: what the request shares with the system, so 0
         << "System affinity mask = " << system << std::endl;
    std::cout << text.str() << " . Quitting..." << std::endl;
    std::this_thread::sleep_for(std::chrono::milliseconds(3000)); // leaves people time to read a window that closes
    throw CommandLineError(text.str());
}

void bindTo(int processor)
{
    const os::ProcessorMask mask = os::ProcessorMask { 1 } << processor;
    os::ProcessorMask process = 0;
    os::ProcessorMask system = 0;
    os::processAffinity(process, system);
    if ((mask & system) == 0) {
        rejectProcessor(processor, mask & system, system);
    }
    if (os::setProcessAffinity(mask) != os::error::none) {
        const std::string reason = os::lastSystemErrorText();
        std::ostringstream text;
        text.imbue(std::locale::classic());
        // Kept for callers: the address of the system's text, not the text.
        text << "SetProcessAffinityMask" << "  failed on processor [" << processor << "] - ERROR = " << static_cast<const void*>(reason.c_str());
        std::cout << text.str() << " . Quitting..." << std::endl;
        throw SystemRessourcesError(text.str());
    }
    std::cout << "Process affinity set on processor [" << processor << "]" << std::endl;
    if (os::setThreadAffinity(mask) == os::error::none) {
        std::cout << "Thread affinity set on processor [" << processor << "]" << std::endl;
    } else {
        std::cout << "Warning : Thread affinity failed on processor [" << processor << "]" << std::endl;
    }
}

} // namespace

Handler* ProcessorHandler::clone() const
{
    return new ProcessorHandler(*this);
}

std::string ProcessorHandler::getType() const
{
    return "proc";
}

void ProcessorHandler::process(const std::string& value, bool checkDefault)
{
    number_.process(value, checkDefault);
    if (processor_ < -1) {
        throw CommandLineError("Invalid processor option : should be either -1 (undefined) or positive value \n"
                               "(id of processor on which we want to run, id starting at 0)");
    }
    if (processor_ >= 32) {
        throw CommandLineError("Max core number reached. Remember that processorId are starting at 0.");
    }
    if (processor_ != -1) {
        bindTo(processor_);
    }
}

} // namespace brvUtils::privateArgParser
