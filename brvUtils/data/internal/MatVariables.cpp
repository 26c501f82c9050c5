#include "brvUtils/data/internal/MatVariables.h"

#include "brvUtils/data/internal/MatCheck.h"
#include "brvUtils/os/FileSystem.h"
#include "brvUtils/os/InputFile.h"

#include <algorithm>
#include <climits>

namespace brvUtils {

namespace {

constexpr int highestRank = 32; // of what any program writes
constexpr std::size_t elementsPerPart = 128 * 1024;
constexpr std::uint64_t elementsPerByte = 1100; // deflated data grows by 1032 at most

std::recursive_mutex& matioMutex()
{
    static std::recursive_mutex mutex;
    return mutex;
}

/// What the header says; files of version 4 have none.
mat_ft versionOf(const os::InputFile& file)
{
    constexpr std::uint64_t place = 124;
    std::size_t got = 0;
    char bytes[4] = {};
    const bool read = file.read(place, bytes, sizeof bytes, got) == os::error::none && got == sizeof bytes;
    const std::string text(bytes, sizeof bytes);
    const auto isVersion = [&](char version) {
        return text == std::string{'\0', version, 'I', 'M'} || text == std::string{version, '\0', 'M', 'I'};
    };
    return read && isVersion(1) ? MAT_FT_MAT5 : read && isVersion(2) ? MAT_FT_MAT73 : MAT_FT_MAT4;
}

/// All elements, of all dimensions; `limit` + 1 for more than that.
std::uint64_t elementsUpTo(const matvar_t& variable, std::uint64_t limit)
{
    std::uint64_t elements = 1;
    for (int i = 0; i < variable.rank; ++i) {
        if (variable.dims[i] == 0) {
            return 0;
        }
    }
    for (int i = 0; i < variable.rank; ++i) {
        if (elements > limit / variable.dims[i]) {
            return limit + 1;
        }
        elements *= variable.dims[i];
    }
    return elements;
}

} // namespace

void MatFileClose::operator()(mat_t* file) const
{
    Mat_Close(file);
}

void MatVariableFree::operator()(matvar_t* variable) const
{
    Mat_VarFree(variable);
}

MatVariables::MatVariables(const std::string& path) : turn_(matioMutex())
{
    os::InputFile file; // matio would wait for the other end of a pipe
    if (file.open(path) != os::error::none) {
        return;
    }
    size_ = file.size();
    const mat_ft version = versionOf(file);
    if (version != MAT_FT_MAT73) {
        left_ = version == MAT_FT_MAT5 ? soundMat5Variables(file) : soundMat4Variables(file);
        if (version == MAT_FT_MAT4 && left_ == 0) {
            return; // the oldest files have nothing but variables to be known by
        }
    }
    const std::string opened = os::pathForLibraries(path);
    walker_.reset(Mat_Open(opened.c_str(), MAT_ACC_RDONLY));
    if (version != MAT_FT_MAT73) {
        reader_.reset(Mat_Open(opened.c_str(), MAT_ACC_RDONLY));
    }
    if (walker_ != nullptr && (Mat_GetVersion(walker_.get()) != version || (version != MAT_FT_MAT73 && reader_ == nullptr))) {
        walker_.reset();
    }
}

MatVariables::~MatVariables()
{
    reader_.reset();
    walker_.reset();
    Mat_LogClose();
}

MatVariable MatVariables::next()
{
    return MatVariable(left_-- > 0 ? Mat_VarReadNextInfo(walker_.get()) : nullptr);
}

std::size_t MatVariables::rowsOf(const matvar_t& variable)
{
    const std::size_t rows = variable.dims[0];
    return static_cast<std::size_t>(std::min<std::uint64_t>(rows, elementsUpTo(variable, rows)));
}

template <typename Value>
bool MatVariables::read(matvar_t& variable, std::size_t count, std::vector<Value>& values)
{
    if (!isPlausible(variable)) {
        return false;
    }
    if (!variable.isComplex && count <= INT_MAX) {
        // A vector zeroes what it grows by: in parts, that happens within the cache. What is deflated is to be read at once.
        const bool atAnyPlace = reader_ != nullptr && variable.compression == MAT_COMPRESSION_NONE;
        const std::size_t most = atAnyPlace ? elementsPerPart : count;
        values.reserve(count);
        for (std::size_t done = 0; done < count; done = values.size()) {
            const std::size_t part = std::min(count - done, most);
            values.resize(done + part);
            if (Mat_VarReadDataLinear(reader(), &variable, values.data() + done, static_cast<int>(done), 1, static_cast<int>(part)) != 0) {
                return false;
            }
        }
        return true;
    }
    values.resize(count);
    if (count == 0) {
        return true;
    }
    if (!readAll(variable) || variable.data_size != static_cast<int>(sizeof(Value)) || variable.nbytes / sizeof(Value) < count) {
        return false;
    }
    const void* const from = variable.isComplex ? static_cast<const mat_complex_split_t*>(variable.data)->Re : variable.data;
    std::copy_n(static_cast<const Value*>(from), count, values.data());
    return true;
}

template bool MatVariables::read(matvar_t&, std::size_t, std::vector<double>&);
template bool MatVariables::read(matvar_t&, std::size_t, std::vector<int>&);
template bool MatVariables::read(matvar_t&, std::size_t, std::vector<std::int64_t>&);

bool MatVariables::readAll(matvar_t& variable)
{
    return isPlausible(variable) && Mat_VarReadDataAll(reader(), &variable) == 0 && variable.data != nullptr;
}

std::uint64_t MatVariables::elementsOf(const matvar_t& variable) const
{
    return elementsUpTo(variable, limitOf(variable));
}

std::uint64_t MatVariables::limitOf(const matvar_t& variable) const
{
    const bool mayBeDeflated = variable.compression != MAT_COMPRESSION_NONE || reader_ == nullptr;
    return mayBeDeflated ? size_ * elementsPerByte : size_;
}

bool MatVariables::isPlausible(const matvar_t& variable) const
{
    return variable.rank <= highestRank && elementsOf(variable) <= limitOf(variable);
}

} // namespace brvUtils
