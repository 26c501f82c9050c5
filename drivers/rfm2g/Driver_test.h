#pragma once

#include "rfm2g/RingPlace.h"

#include "brvUtils/ipc/Rfm2g.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

namespace cardTest {

using namespace brvUtils::rfm2g;

/// What the library exports, which is loaded at run time as programs do.
struct Driver
{
    Open* open;
    Close* close;
    NodeId* nodeId;
    Size* size;
    First* first;
    Read* read;
    Write* write;
    EnableEvent* enableEvent;
    SendEvent* sendEvent;
    EnableEventCallback* enableEventCallback;
    ClearEvent* clearEvent;
    ErrorMsg* errorMsg;
    CheckRingCont* checkRingCont;
};
const Driver& driver();

/// The path of a device.
std::string device(const std::string& number);

/// Rings of a test's own, for this process and children that it starts.
class OwnRings
{
public:
    OwnRings();
    softwareCard::RingPlace place() const { return {folder_.file(), softwareCard::defaultRing}; }

private:
    brvTesting::TemporaryFolder folder_;
    brvTesting::EnvironmentGuard folderVariable_;
    brvTesting::EnvironmentGuard ring_{"RFM2G_RING"};
    brvTesting::EnvironmentGuard node_{"RFM2G_NODE"};
    brvTesting::EnvironmentGuard size_{"RFM2G_SIZE"};
};

/// A handle of a node; the test fails when it cannot be had.
class OpenNode
{
public:
    explicit OpenNode(Node node);
    ~OpenNode();
    OpenNode(const OpenNode&) = delete;
    OpenNode& operator=(const OpenNode&) = delete;

    operator Handle() const { return handle_; }
    void close();
    Status send(Node to, Event event, std::uint32_t data = 0) const { return driver().sendEvent(handle_, to, event, data); }
    Status write(Offset offset, std::uint32_t value) const { return driver().write(handle_, offset, &value, sizeof value); }
    /// The word at an offset.
    std::uint32_t word(Offset offset) const;

private:
    Handle handle_ = nullptr;
};

struct Told
{
    Event event;
    Node node;
    std::uint32_t data;
    bool operator==(const Told& other) const { return event == other.event && node == other.node && data == other.data; }
};
std::ostream& operator<<(std::ostream& stream, const Told& told);

/// Keeps what the driver tells a handle. One per handle.
class Receiver
{
public:
    /// Enables these events for the handle, and hears of them.
    /// \param inCallback called on the driver's thread before an event is kept.
    explicit Receiver(Handle handle, const std::vector<Event>& events = {}, std::function<void(const Told&)> inCallback = {});
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    Status listen(Event event);
    /// What was told since the last call, up to and with `last`; waits for it. The test fails when it does not come.
    std::vector<Told> until(const Told& last);
    /// The same until as many were told.
    std::vector<Told> next(std::size_t count);

private:
    /// The driver's thread may be at it when the receiver is gone.
    struct Inbox
    {
        std::function<void(const Told&)> inCallback;
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<Told> told;
    };
    struct Inboxes;
    static void callback(Handle handle, EventInfo* info);
    std::vector<Told> await(const std::function<std::size_t()>& wanted);

    Handle handle_;
    std::shared_ptr<Inbox> inbox_ = std::make_shared<Inbox>();
};

} // namespace cardTest
