#include "brvUtils/platform/ProgramOutput.h"

#include "brvUtils/os/ProgramOutput.h"

#include <iostream>

namespace brvUtils {

namespace {

os::OwnOutput* own(void* output)
{
    return static_cast<os::OwnOutput*>(output);
}

} // namespace

ProgramOutput::ProgramOutput(OtherOutput others)
{
    std::cout.flush();
    os::ErrorCode error = os::error::none;
    output_ = os::takeStandardOutput(others == OtherOutput::errorStream, error);
}

ProgramOutput::~ProgramOutput()
{
    std::cout.flush();
    os::giveStandardOutputBack(own(output_));
}

bool ProgramOutput::write(std::string_view text)
{
    return output_ != nullptr && os::writeOwnOutput(own(output_), text) == os::error::none;
}

int ProgramOutput::terminalWidth() const
{
    return output_ != nullptr ? os::ownOutputWidth(own(output_)) : 0;
}

} // namespace brvUtils
