#include "brvUtils/startup/GenericPath.h"

#include "brvUtils/startup/internal/References.h"

#include "brvUtils/os/Environment.h"

#include <iostream>

namespace brvUtils {

namespace Encoding = Utilities::Encoding;

namespace {

const std::string studioReference = "${STUDIO_PATH}";

std::string resolve(const std::string& path)
{
    const ResolvedText result = resolveReferences(path);
    switch (result.fault) {
    case ResolvedText::Fault::none: return result.text;
    case ResolvedText::Fault::noEnd:
        std::cout << "Environment variable start tag \"${\" found, but no end tag \"}\"" << std::endl;
        break;
    case ResolvedText::Fault::undefined:
        std::cout << "No " << result.name << "environment variable found" << std::endl; // kept for callers: no blank
        break;
    case ResolvedText::Fault::endless:
        std::cout << "Environment variable " << result.name << " leads back to itself, or to too much text" << std::endl;
        break;
    }
    return path;
}

} // namespace

std::string resolveGenericPath(const std::string& path, Encoding::Mode mode)
{
    if (path.find("${") == std::string::npos) {
        return path;
    }
    if (mode == Encoding::Mode::Utf8) {
        return resolve(path);
    }
    return Encoding::Transcode(resolveGenericPath(Encoding::Transcode(path, mode)), mode);
}

std::wstring resolveGenericPath(const std::wstring& path)
{
    return Encoding::Transcode(resolve(Encoding::Transcode(path)));
}

std::string getVeloraLocalFolderPath(const std::string& generic)
{
    const auto local = os::environmentVariable("LOCAL_STUDIO_PATH");
    if (!local || generic.compare(0, studioReference.size(), studioReference) != 0) {
        return {};
    }
    return *local + generic.substr(studioReference.size());
}

} // namespace brvUtils
