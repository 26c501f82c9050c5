#pragma once

#include "brvUtils/data/internal/CsvBlock.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace brvUtils::csv {

/// The blocks of a file, parsed by this thread and others, and handed on in their order.
///
/// A block knows the kinds of those columns that had a value when it was parsed, and guesses the others by its own first
/// values. When it turns out wrong it is parsed again.
class Loader
{
public:
    /// Takes the blocks, in their order, on the thread that runs the loader. False stops. \param done bytes of the file.
    using Take = std::function<bool(const Block& block, std::uint64_t done)>;

    /// The lines from `begin` on, which a line feed stands before. All are used as long as the loader lives.
    Loader(const os::InputFile& file, Table& table, std::uint64_t begin);
    ~Loader();
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    /// \return false when `take` stopped it. \throw what `take` throws, std::bad_alloc.
    bool run(const Take& take);

private:
    /// A block and who has it. Block n of the file is parsed in place n modulo their number.
    struct Place
    {
        Block block;
        bool parsed = false;
        std::exception_ptr failure;
    };

    void startThreads(unsigned count);
    void work();
    bool canParse() const;
    void parseNext(std::unique_lock<std::mutex>& lock);
    void check(Block& block);
    std::uint64_t start(std::uint64_t block) const;

    const os::InputFile& file_;
    Table& table_;
    std::uint64_t begin_;
    std::uint64_t blockSize_;
    std::uint64_t blockCount_;
    std::vector<Place> places_;

    std::mutex mutex_; ///< For all below, and who has which place.
    std::condition_variable toParse_;
    std::condition_variable parsed_;
    std::uint64_t next_ = 0; ///< To be parsed.
    std::uint64_t taken_ = 0; ///< How many were handed on.
    bool stop_ = false;
    std::vector<std::thread> threads_;
};

} // namespace brvUtils::csv
