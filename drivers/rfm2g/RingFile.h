#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

namespace softwareCard {

/// The file that a ring lies in, mapped to memory. Threads may share one.
class RingFile
{
public:
    /// Whether a file that is not there is to be made.
    enum class Missing { fail, make };

    /// Opens a file; problem() tells whether that failed.
    /// \param path UTF-8.
    RingFile(const std::string& path, Missing missing);
    ~RingFile();
    RingFile(const RingFile&) = delete;
    RingFile& operator=(const RingFile&) = delete;

    /// Why a function failed last, with the file's path; empty before that.
    const std::string& problem() const { return problem_; }

    /// Locks the ring among all processes and threads; a process that dies has unlocked it. Waits as long as it takes.
    bool lock();
    void unlock();

    // Only while the ring is locked:

    /// Whether somebody took the file out of its folder after it was opened here.
    bool wasRemoved() const;
    /// Removes the file. On Windows it is closed first, and this fails while others have it open.
    bool remove();
    /// Bytes.
    std::uint64_t size() const;
    /// Makes the file empty, and then that long: all zero.
    bool clear(std::uint64_t size);
    /// The first bytes.
    bool readStart(void* to, std::size_t length);
    /// Maps that many bytes from the start on; later failures of other functions do not change that.
    bool map(std::uint64_t length);
    /// Makes sure of space for bytes that nobody has used yet.
    bool reserve(std::uint64_t offset, std::uint64_t length);
    /// Whether another RingFile has taken that place.
    bool isTaken(unsigned place);
    /// A place, a number that only one RingFile at a time has; a process that dies has freed its own. \return false when it is
    /// taken.
    bool take(unsigned place);

    /// Of a place that was taken.
    void free(unsigned place);

    /// What was mapped; null before.
    void* memory() const { return memory_; }

private:
    bool fail(const char* what);

    std::string path_;
    std::string problem_;
    std::mutex locked_; ///< The system's lock belongs to the file, whichever thread took it.
    std::intptr_t file_ = -1;
    void* memory_ = nullptr;
    std::uint64_t mapped_ = 0;
};

} // namespace softwareCard
