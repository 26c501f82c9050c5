#pragma once

#include "brvUtils/ipc/IShm.h"
#include "brvUtils/ipc/Rfm2g.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Utilities {
class ConfigFile;
}

namespace brvUtils {

class ISemaphore;
struct ReflectiveDriver;

/// A segment in the memory of a reflective-memory card, which mirrors it to the cards of the other computers in its ring.
///
/// Each process has a copy of the segment in ordinary memory. The parts of a composite segment are moved between copy and
/// card one by one, each with a checksum, so that a reader notices a part that has not arrived whole and keeps what it had.
/// Either each read looks at the card, or the writer interrupts the other nodes, whose copies are then refreshed by a thread
/// of the driver.
///
/// On the card there are, from the base address on, the bytes of the segment and then a checksum of 4 bytes, little-endian,
/// for each of 256 parts.
///
/// A part's functions are called by one thread at a time, who holds the part's semaphore; different parts by different
/// threads. The driver's library is loaded with the first segment and stays.
class BRVUTILS_API ShmVmic : public IShm
{
public:
    /// Opens the card and says on the standard output what it found. A segment that cannot be had has a null getPtr(), and
    /// the error stream says why.
    /// \param name not null. \param version above 0 is appended to it as "_<version>".
    /// \param size bytes. The card has to have 1024 more, for the checksums.
    /// \param config with the section of the segment selected. It is asked for "BaseAddress", where the segment starts on the
    ///        card (hexadecimal, with or without 0x); "Interrupt", 1 to 4, by which nodes tell each other of writes, or 0 when
    ///        each read looks at the card (1); "DeviceId", the number of the card in this computer ("1").
    /// \throw ConfigurationError when "BaseAddress" is missing or no such number.
    ShmVmic(char const* name, size_t size, short version, Utilities::ConfigFile& config);

    /// Closes the card, after the last refresh that is under way, and tells on the standard output how often each part was
    /// refreshed and how many of these failed.
    ~ShmVmic() override;
    ShmVmic(const ShmVmic&) = delete;
    ShmVmic& operator=(const ShmVmic&) = delete;

    /// Makes one as the constructor does; the caller owns it. Null when it cannot be had.
    /// \throw ConfigurationError as the constructor.
    static IShm* New(char const* name, size_t size, short version, Utilities::ConfigFile& config);

    /// The copy of this process.
    void* getPtr() const override;
    size_t getSize() const override;

    /// False: the card was there before.
    bool isCreated() const override;
    char const* getName() const override;

    /// 0: any place will do.
    size_t getAlignment() const override;

    /// True; there is nothing to account for.
    bool addPaddingBytes(size_t count) override;

    /// Of a part from 256 on, or one that does not lie within the segment, the error stream is told.
    /// \param index of the part. \param offset, size bytes, within the segment.
    /// \param semaphore not owned; null when the part is no longer to be refreshed by interrupts, which is true on return.
    void describePart(int index, size_t offset, size_t size, ISemaphore* semaphore) override;

    /// Moves the part with its checksum to the card and, where an interrupt is used, raises it on all other nodes.
    void afterWrite(int index) override;

    /// Without an interrupt refreshes the part. \return whether the last refresh brought it whole.
    bool beforeRead(int index) override;

    /// Refreshes the part for the driver's thread. Nothing happens when its semaphore cannot be had within 0.1 s.
    void callback(int index);

private:
    struct Part
    {
        size_t offset = 0;
        size_t size = 0;
        ISemaphore* semaphore = nullptr; ///< Not owned.
        bool valid = false; ///< The last refresh brought it whole.
        std::uint32_t reads = 0; ///< Refreshes.
        std::uint32_t failures = 0; ///< Those whose checksum was another.
    };
    static constexpr int partCount = 256;

    void configure(Utilities::ConfigFile& config);
    bool hasGoodInterrupt() const;
    bool open(const std::string& device);
    bool survey();
    bool listen();
    static std::string holderOf(int interrupt);
    void enroll();
    void resign();
    static void onEvent(rfm2g::Handle card, rfm2g::EventInfo* info);
    static bool hasPart(int index, char const* attempt);
    void refresh(int index);
    bool succeeded(rfm2g::Status status) const;
    rfm2g::Offset checksumOffset(int index) const;
    static int crc(char const* data, size_t length);

    std::string name_;
    size_t size_;
    std::uint32_t baseAddress_ = 0;
    std::int32_t interrupt_ = 1;
    rfm2g::Handle card_ = nullptr;
    std::unique_ptr<char[]> copy_; ///< Null when the segment cannot be had.
    std::array<Part, partCount> parts_;
    const ReflectiveDriver* driver_ = nullptr;
    std::mutex refreshing_; ///< Held by the driver's thread while it refreshes a part, and by whoever describes one.
    int calls_ = 0; ///< Of the driver's threads that are under way.

    static std::map<int, ShmVmic*>& ourInstances; ///< By interrupt.
};

} // namespace brvUtils
