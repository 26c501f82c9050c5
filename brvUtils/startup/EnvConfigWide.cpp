#include "brvUtils/startup/EnvConfig.h"

#include <Utilities/Encoding.h>

// The forms on wide text do what those on narrow text do.

namespace brvUtils {

using Utilities::Encoding::Transcode;

namespace {

std::vector<std::wstring> wide(const std::vector<std::string>& texts)
{
    std::vector<std::wstring> result;
    for (const std::string& text : texts) {
        result.push_back(Transcode(text));
    }
    return result;
}

} // namespace

std::wstring EnvConfig::operator[](const std::wstring& keyword)
{
    return Transcode((*this)[Transcode(keyword)]);
}

std::wstring EnvConfig::getFirstPath(const std::wstring& keyword)
{
    return Transcode(getFirstPath(Transcode(keyword)));
}

std::wstring EnvConfig::getFullPath(const std::wstring& keyword)
{
    return Transcode(getFullPath(Transcode(keyword)));
}

std::vector<std::wstring> EnvConfig::getSeparatedPath(const std::wstring& keyword)
{
    return wide(getSeparatedPath(Transcode(keyword)));
}

void EnvConfig::setSeparatedPath(const std::wstring& keyword, std::vector<std::wstring>& folders, bool save)
{
    std::vector<std::string> narrow;
    for (const std::wstring& folder : folders) {
        narrow.push_back(Transcode(folder));
    }
    setSeparatedPath(Transcode(keyword), narrow, save);
}

std::wstring EnvConfig::getRelativePath(const std::wstring& keyword, const std::wstring& file)
{
    return Transcode(getRelativePath(Transcode(keyword), Transcode(file)));
}

std::wstring EnvConfig::findInPath(const std::wstring& keyword, const std::wstring& file)
{
    return Transcode(findInPath(Transcode(keyword), Transcode(file)));
}

std::wstring EnvConfig::transformInGenericPath(const std::wstring& path, bool strict)
{
    return Transcode(transformInGenericPath(Transcode(path), strict));
}

} // namespace brvUtils
