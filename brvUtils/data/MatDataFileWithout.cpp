// Of a build without matio.

#include "brvUtils/data/MatDataFile.h"

#include <stdexcept>

bool MatDataFile::load(std::string const& path, std::vector<std::string> const&)
{
    fileName = path;
    throw std::out_of_range("Error opening : " + path + " (this library was built without support of MAT files)");
}
