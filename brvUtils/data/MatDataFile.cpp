#include "brvUtils/data/MatDataFile.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/data/internal/MatLibrary.h"
#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/startup/ModulePaths.h"

#include <stdexcept>

namespace {

/// The library that reads MAT files, which lies beside this one and stays loaded.
struct Library
{
    brvUtils::LoadMatFile* loadFile;
    std::string fault; ///< Why there is none.
};

Library openLibrary()
{
    const std::string path = brvUtils::getPath(brvUtils::getBrvUtilsPath()) + "/" BRV_MAT_LIBRARY;
    const brvUtils::os::LibraryOpening opening = brvUtils::os::openLibrary(path);
    void* const function = brvUtils::os::librarySymbol(opening.opened, brvUtils::loadMatFileName);
    return {reinterpret_cast<brvUtils::LoadMatFile*>(function), path + (opening.opened != nullptr ? " is another library" : ": " + opening.text)};
}

} // namespace

bool MatDataFile::load(std::string const& path, std::vector<std::string> const& wantedColumns)
{
    struct Columns final : brvUtils::MatColumns
    {
        explicit Columns(MatDataFile& table) : table_(table) {}
        void begin() override { table_.clear(); }
        void add(const std::string& name, std::vector<double>&& values) override { table_.append<double>(name).values = std::move(values); }
        void add(const std::string& name, std::vector<int>&& values) override { table_.append<int>(name).values = std::move(values); }
        void add(const std::string& name, std::vector<std::string>&& values) override { table_.append<std::string>(name).values = std::move(values); }
        bool report(std::uint64_t done, std::uint64_t total) override { return table_.report(done, total); }
        MatDataFile& table_;
    };

    fileName = path;
    static const Library library = openLibrary();
    if (library.loadFile == nullptr) {
        throw std::out_of_range("Error opening : " + path + " (what reads MAT files cannot be loaded: " + library.fault + ")");
    }
    Columns taken(*this);
    return library.loadFile(path, wantedColumns, taken);
}
