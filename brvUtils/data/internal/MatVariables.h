#pragma once

#include <matio.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brvUtils {

struct MatFileClose
{
    void operator()(mat_t* file) const;
};
struct MatVariableFree
{
    void operator()(matvar_t* variable) const;
};
using MatVariable = std::unique_ptr<matvar_t, MatVariableFree>;

/// The variables of a MAT file, one after the other: what they are, then as much of their values as is wanted.
///
/// Files may be damaged: a variable that claims to hold more than its file can is never asked for its values. One object at a
/// time does anything in a process, since matio and what it builds on are made for one thread: others wait for the end of it.
class MatVariables
{
public:
    /// Opens a regular file. `path` is UTF-8.
    explicit MatVariables(const std::string& path);
    ~MatVariables();

    bool isOpen() const { return walker_ != nullptr; }

    /// Bytes of the file when it was opened.
    std::uint64_t size() const { return size_; }

    /// The next variable, without its values; null at the end, or where the file is damaged.
    MatVariable next();

    /// All elements that a variable claims to have; a number that no file of this size can hold stands for all above it.
    std::uint64_t elementsOf(const matvar_t& variable) const;

    /// The elements that can be read of a column: the first dimension, or 0 for what has none.
    static std::size_t rowsOf(const matvar_t& variable);

    /// Reads the first elements in the order of storage, of complex numbers the real part. Value is what matio makes of the
    /// variable's class. False when that fails, or the file is too small for it.
    template <typename Value>
    bool read(matvar_t& variable, std::size_t count, std::vector<Value>& values);

    /// Reads all elements, as matio keeps them.
    bool readAll(matvar_t& variable);

private:
    mat_t* reader() const { return reader_ != nullptr ? reader_.get() : walker_.get(); }
    std::uint64_t limitOf(const matvar_t& variable) const;
    bool isPlausible(const matvar_t& variable) const;

    std::unique_lock<std::recursive_mutex> turn_; // of whoever reads; the progress function may load other files
    std::uint64_t size_ = 0;
    std::size_t left_ = std::numeric_limits<std::size_t>::max(); ///< Variables that may be asked for.
    std::unique_ptr<mat_t, MatFileClose> walker_; ///< Its place in the file is behind the last variable.
    std::unique_ptr<mat_t, MatFileClose> reader_; ///< Its place is anywhere: reading a part of a variable moves it. None for 7.3.
};

} // namespace brvUtils
