#pragma once

#include "brvUtils/export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brvUtils {

class IShm;
class Lock;

/// Who has a port.
struct PortHolder
{
    unsigned short port = 0; ///< From 25099 to 25300.
    std::uint32_t process = 0; ///< Its number.
    std::string program; ///< File name of its executable in UTF-8; empty when it has ended or the system does not tell.
    bool alive = false; ///< One that has ended keeps its ports until somebody asks for some, or gives some back.
};

/// Gives the modules of a computer network ports that no other module has, from 25099 to 25300.
///
/// A table shared by all instances of the suite tells which process has which port; like every named object it is seen by
/// one user, or the group of a STUDIO_IPC_NAMESPACE (on Windows: by one session), and others have tables of their own. What a
/// process has when it ends, however it ends, is given to others again. The ports are not opened: programs that do not ask
/// here may use them.
/// There is one manager per process; once it was got, any thread may use it.
class BRVUTILS_API ConfigurationPortManager
{
public:
    /// The manager of this process, which lasts until the process ends or somebody deletes it. The first call makes it, and
    /// has to return before other threads call. Null, with a line on the error stream, when the table or its guard cannot be
    /// had; the next call tries again.
    static ConfigurationPortManager* getInstance();

    /// Gives back the ports of this process, as release().
    ~ConfigurationPortManager();
    ConfigurationPortManager(const ConfigurationPortManager&) = delete;
    ConfigurationPortManager& operator=(const ConfigurationPortManager&) = delete;

    /// Takes the lowest free ports, besides those that the process has already.
    /// \param count how many.
    /// \param ports they, in increasing order; they need not be consecutive. Empty after a failure.
    /// \return false, and nothing is taken, for a count of 0, when fewer are free, or when the table is not to be had within
    ///         30 s.
    bool allocate(size_t count, std::vector<unsigned short>& ports);

    /// Gives back all ports of this process, be there any or none. False, with a line on the error stream, when the table is
    /// not to be had within 30 s.
    bool release();

    /// Who has which port now, in increasing order, for people: no manager is made, the guard is not taken and nothing is
    /// freed. Empty when nobody has one, and when the table lies on a reflective-memory card.
    static std::vector<PortHolder> look();

protected:
    /// Frees the ports of processes that have ended. Only while the guard is held.
    void cleanupPortsOfDeadProcesses();

private:
    ConfigurationPortManager(std::unique_ptr<Lock> guard, std::unique_ptr<IShm> table);

    std::unique_ptr<Lock> guard_;
    std::unique_ptr<IShm> table_;

    static ConfigurationPortManager* ourInstance;
};

} // namespace brvUtils
