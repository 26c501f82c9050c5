#include "brvUtils/data/internal/CsvLoader.h"

#include "brvUtils/data/internal/CsvTuning.h"

#include <algorithm>

namespace brvUtils::csv {
namespace {

constexpr std::uint64_t usualBlock = 256 * 1024; ///< Text and values stay in the cache of the processor that parses them.
constexpr std::uint64_t worthThread = 4 * 1024 * 1024; ///< Bytes of the file per thread.
constexpr unsigned mostThreads = 8;
constexpr unsigned rowsPerBlock = 16; ///< At least, about.

unsigned threadCount(std::uint64_t bytes, std::uint64_t blockSize)
{
    if (tuning().threads > 0) {
        return tuning().threads;
    }
    const unsigned processors = std::clamp(std::thread::hardware_concurrency(), 1u, mostThreads);
    // What is on its way stays small beside the whole file.
    const std::uint64_t worth = std::min(bytes / worthThread, bytes / blockSize / 16);
    return static_cast<unsigned>(std::clamp<std::uint64_t>(worth, 1, processors));
}

} // namespace

Tuning& tuning()
{
    static Tuning chosen;
    return chosen;
}

Loader::Loader(const os::InputFile& file, Table& table, std::uint64_t begin)
    : file_(file)
    , table_(table)
    , begin_(begin)
    , blockSize_(tuning().blockSize > 0 ? tuning().blockSize : std::max(usualBlock, begin * rowsPerBlock))
    , blockCount_((file.size() - begin + blockSize_ - 1) / blockSize_)
{
    const unsigned threads = threadCount(file.size() - begin, blockSize_);
    places_ = std::vector<Place>(threads == 1 ? 1 : 2 * threads);
    startThreads(threads - 1);
}

Loader::~Loader()
{
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    toParse_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

/// When there are no more threads to be had those that are there do.
void Loader::startThreads(unsigned count)
{
    threads_.reserve(count);
    try {
        while (threads_.size() < count) {
            threads_.emplace_back(&Loader::work, this);
        }
    } catch (const std::exception&) {
    }
}

void Loader::work()
{
    std::unique_lock lock(mutex_);
    while (true) {
        toParse_.wait(lock, [this] { return stop_ || next_ == blockCount_ || canParse(); });
        if (stop_ || next_ == blockCount_) {
            return;
        }
        parseNext(lock);
        parsed_.notify_one();
    }
}

bool Loader::canParse() const
{
    return next_ < std::min(blockCount_, taken_ + places_.size());
}

void Loader::parseNext(std::unique_lock<std::mutex>& lock)
{
    const std::uint64_t number = next_++;
    Place& place = places_[number % places_.size()];
    lock.unlock();
    try {
        place.block.load(file_, table_, start(number), start(number + 1), file_.size());
    } catch (...) {
        place.failure = std::current_exception();
    }
    lock.lock();
    place.parsed = true;
}

bool Loader::run(const Take& take)
{
    std::unique_lock lock(mutex_);
    while (taken_ < blockCount_) {
        Place& place = places_[taken_ % places_.size()];
        while (!place.parsed) {
            if (canParse()) {
                parseNext(lock);
            } else {
                parsed_.wait(lock);
            }
        }
        lock.unlock();
        if (place.failure) {
            std::rethrow_exception(place.failure);
        }
        check(place.block);
        if (!take(place.block, start(taken_ + 1))) {
            return false;
        }
        if (place.block.cut()) {
            return true;
        }
        lock.lock();
        place.parsed = false;
        ++taken_;
        toParse_.notify_one();
    }
    return true;
}

/// Makes the kinds that the block has the ones of the table.
void Loader::check(Block& block)
{
    const auto wrong = [&] {
        for (std::size_t i = 0; i < block.reached(); ++i) {
            const Kind known = table_.kinds[i];
            if (known != Kind::unknown && known != block.columns()[i].kind) {
                return true;
            }
        }
        return false;
    };
    if (wrong()) {
        block.parse(table_);
    }
    for (std::size_t i = 0; i < block.reached(); ++i) {
        if (table_.kinds[i] == Kind::unknown) {
            table_.kinds[i] = block.columns()[i].kind;
        }
    }
}

std::uint64_t Loader::start(std::uint64_t block) const
{
    return std::min(begin_ + block * blockSize_, file_.size());
}

} // namespace brvUtils::csv
