#include "brvUtils/data/DataMatrixFactory.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/data/IdcDataFile.h"
#include "brvUtils/data/MatDataFile.h"

DataMatrix* DataMatrixFactory::create(std::string const& fileName, char separator, CsvDataFile::TypeForced typeForced)
{
    std::string extension;
    brvUtils::getExtension(fileName, extension);
    if (extension == ".csv") {
        return new CsvDataFile(separator, typeForced);
    }
    if (extension == ".mat") {
        return new MatDataFile();
    }
    if (extension == ".idc") {
        return new IdcDataFile();
    }
    return nullptr;
}
