#include "brvUtils/ipc/ConfigurationPortManager.h"

#include "brvUtils/ipc/IShm.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmFactory.h"
#include "brvUtils/ipc/internal/Lock.h"
#include "brvUtils/ipc/internal/PortTable.h"
#include "brvUtils/os/ObjectList.h"
#include "brvUtils/os/ProcessLife.h"
#include "brvUtils/os/ProcessProgram.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>

namespace brvUtils {

namespace {

constexpr std::chrono::duration<double> longestWait{30.0};

constexpr unsigned short firstPort = ports::first;
constexpr size_t portCount = ports::count;

/// One per port: the number of the process that has it, or 0. A process that is killed while it changes the table leaves
/// nothing half done, since each entry is right by itself, whatever the others hold.
using Entry = std::atomic<std::uint32_t>;
static_assert(sizeof(Entry) == 4 && Entry::is_always_lock_free);

Entry* entriesOf(const IShm& table)
{
    return static_cast<Entry*>(table.getPtr());
}

/// Also when processes that had the guard are found dead on the way: it is free then, and the table needs no repair.
bool take(Lock& guard)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + longestWait;
    std::string deadTaker;
    Lock::Outcome outcome = guard.take(longestWait.count(), deadTaker);
    while (outcome == Lock::Outcome::takerDied) {
        const std::chrono::duration<double> rest = end - Clock::now();
        outcome = guard.take(std::max(rest.count(), 0.0), deadTaker);
    }
    return outcome == Lock::Outcome::taken;
}

/// Asks for each process once, so that all of its ports have the same fate.
class Living
{
public:
    bool has(std::uint32_t process)
    {
        const auto found = std::find(known_.begin(), known_.begin() + count_, process);
        const auto place = static_cast<size_t>(found - known_.begin());
        if (found == known_.begin() + count_) {
            known_[place] = process;
            alive_[place] = os::processIsAlive(process);
            ++count_;
        }
        return alive_[place];
    }

private:
    std::ptrdiff_t count_ = 1;
    std::array<std::uint32_t, portCount + 1> known_{os::currentProcessId()};
    std::array<bool, portCount + 1> alive_{true};
};

} // namespace

ConfigurationPortManager* ConfigurationPortManager::ourInstance = nullptr;

ConfigurationPortManager::ConfigurationPortManager(std::unique_ptr<Lock> guard, std::unique_ptr<IShm> table)
    : guard_(std::move(guard))
    , table_(std::move(table))
{
}

ConfigurationPortManager::~ConfigurationPortManager()
{
    release();
    ourInstance = nullptr;
}

ConfigurationPortManager* ConfigurationPortManager::getInstance()
{
    if (ourInstance != nullptr) {
        return ourInstance;
    }
    auto guard = std::make_unique<Lock>(SemaphoreWin32::New(ports::guardName, true, false));
    if (!guard->isOpen()) {
        std::cerr << "Unable to create semaphore for port management shm." << std::endl;
        return nullptr;
    }
    if (!take(*guard)) {
        return nullptr;
    }
    {
        const Unlock unlock(*guard);
        std::unique_ptr<IShm> table(newShm(ports::tableName, portCount * sizeof(Entry), 0, false));
        if (table != nullptr && table->getPtr() != nullptr) {
            ourInstance = new ConfigurationPortManager(std::move(guard), std::move(table));
            return ourInstance;
        }
    }
    guard.reset();
    std::cerr << "Unable to create port management shm." << std::endl;
    return nullptr;
}

bool ConfigurationPortManager::allocate(size_t count, std::vector<unsigned short>& ports)
{
    ports.clear();
    ports.reserve(std::min(count, portCount));
    if (count == 0 || !take(*guard_)) {
        return false;
    }
    const Unlock unlock(*guard_);
    cleanupPortsOfDeadProcesses();
    Entry* entries = entriesOf(*table_);
    for (size_t i = 0; i < portCount && ports.size() < count; ++i) {
        if (entries[i] == 0) {
            ports.push_back(static_cast<unsigned short>(firstPort + i));
        }
    }
    if (ports.size() < count) {
        ports.clear();
        return false;
    }
    const std::uint32_t own = os::currentProcessId();
    for (const unsigned short port : ports) {
        entries[port - firstPort] = own;
    }
    return true;
}

bool ConfigurationPortManager::release()
{
    if (!take(*guard_)) {
        std::cerr << "Timeout while waiting for access to port management shm." << std::endl;
        return false;
    }
    const Unlock unlock(*guard_);
    cleanupPortsOfDeadProcesses();
    Entry* entries = entriesOf(*table_);
    std::replace_if(entries, entries + portCount, [own = os::currentProcessId()](const Entry& entry) { return entry == own; }, 0U);
    return true;
}

std::vector<PortHolder> ConfigurationPortManager::look()
{
    struct Reading
    {
        std::array<std::uint32_t, portCount> entries{};
        size_t read = 0;
    } reading;
    const auto take = [](void* context, const char* bytes, size_t count) {
        auto& to = *static_cast<Reading*>(context);
        const size_t part = std::min(count, sizeof to.entries - to.read);
        std::memcpy(reinterpret_cast<char*>(to.entries.data()) + to.read, bytes, part);
        to.read += part;
        return to.read < sizeof to.entries;
    };
    std::vector<PortHolder> holders;
    if (os::readSegment(ports::tableName, take, &reading) != os::error::none) {
        return holders;
    }
    Living living;
    for (size_t i = 0; i < portCount; ++i) {
        if (const std::uint32_t process = reading.entries[i]; process != 0) {
            holders.push_back({static_cast<unsigned short>(firstPort + i), process, os::programOfProcess(process), living.has(process)});
        }
    }
    return holders;
}

void ConfigurationPortManager::cleanupPortsOfDeadProcesses()
{
    Living living;
    Entry* entries = entriesOf(*table_);
    std::replace_if(entries, entries + portCount, [&](const Entry& entry) { return entry != 0 && !living.has(entry); }, 0U);
}

} // namespace brvUtils
