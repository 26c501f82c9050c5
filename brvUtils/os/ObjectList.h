#pragma once

#include "brvUtils/os/Error.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Looking at named objects from outside. Who looks opens no object on Linux, so that none lives longer by it, takes no lock,
/// sweeps nothing, and reads bytes that others are changing: what does not fit together is read again or left out.
/// On Windows the state of an object can only be asked for through a handle, which lives for the length of the question.
namespace brvUtils::os {

enum class ObjectKind { semaphore, event, segment };

/// A process that has to do with an object.
struct ObjectUser
{
    std::uint32_t processId = 0; ///< 0: unknown.
    std::string program; ///< File name of its executable, cut at 39 bytes; empty when unknown.
};

/// Who took a semaphore that is taken.
enum class TakerLife {
    unknown, ///< The system does not tell (Windows), or a wait was ended just now.
    nobody, ///< Nobody: it was made taken.
    running,
    ended ///< Without releasing it, or it has closed all it had open.
};

struct ListedObject
{
    ObjectKind kind = ObjectKind::semaphore;
    std::string name; ///< In the bytes by which it is opened.
    bool stateKnown = false;
    bool taken = false; ///< Of a semaphore.
    bool set = false; ///< Of an event.
    bool manualReset = false; ///< Of an event.
    std::uint64_t size = 0; ///< Of a segment, in bytes, as its maker asked (Windows: in whole pages).
    std::uint64_t stateWord = 0; ///< Has another value when the state has changed, as far as that can be seen.
    std::uint32_t resets = 0; ///< Of a manual-reset event, where the system counts them; wraps at 2^29.
    TakerLife takerLife = TakerLife::unknown; ///< Of a semaphore that is taken.
    ObjectUser taker; ///< The same.
    bool holdersKnown = false; ///< Whether `holders` are all.
    std::vector<ObjectUser> holders; ///< Processes that have it open.
};

struct ObjectList
{
    /// fileNotFound: nobody has any object open here. accessDenied: the place is not this user's. revisionMismatch and
    /// invalidData: made by another version of the library, or damaged. Others as the system says.
    ErrorCode error = error::none;
    std::string place; ///< The folder, or the directory of the session's objects.
    std::vector<ListedObject> objects; ///< In no order. On Windows those of all programs of the session.
    std::size_t leftOver = 0; ///< What killed processes left in the table; it is in nobody's way.
};

/// The objects that are alive now.
ObjectList listObjects();

/// Whether what listObjects finds was made by this library (Linux: yes; Windows: the objects of all programs are in one place).
bool onlyObjectsOfTheLibrary() noexcept;

/// Hands the bytes of a segment over, piece after piece, without a lock: they may be of different moments.
/// \param take told where the piece lies, for a call that ends before the next one. False ends the reading.
/// \return fileNotFound when there is no such segment, also when it went meanwhile.
ErrorCode readSegment(const char* name, bool (*take)(void* context, const char* bytes, std::size_t count), void* context);

} // namespace brvUtils::os
