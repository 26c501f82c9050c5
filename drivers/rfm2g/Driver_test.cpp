#include "rfm2g/Driver_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace cardTest {

namespace {

void* symbol(const char* name)
{
#ifdef _WIN32
    static const HMODULE library = LoadLibraryA(SOFTWARE_CARD);
    return library != nullptr ? reinterpret_cast<void*>(GetProcAddress(library, name)) : nullptr;
#else
    static void* const library = dlopen(SOFTWARE_CARD, RTLD_NOW | RTLD_LOCAL);
    return library != nullptr ? dlsym(library, name) : nullptr;
#endif
}

template <typename Function>
void find(Function*& function, const char* name)
{
    function = reinterpret_cast<Function*>(symbol(name));
    EXPECT_NE(function, nullptr) << name;
}

} // namespace

const Driver& driver()
{
    static const Driver found = [] {
        Driver driver{};
        find(driver.open, "RFM2gOpen");
        find(driver.close, "RFM2gClose");
        find(driver.nodeId, "RFM2gNodeID");
        find(driver.size, "RFM2gSize");
        find(driver.first, "RFM2gFirst");
        find(driver.read, "RFM2gRead");
        find(driver.write, "RFM2gWrite");
        find(driver.enableEvent, "RFM2gEnableEvent");
        find(driver.sendEvent, "RFM2gSendEvent");
        find(driver.enableEventCallback, "RFM2gEnableEventCallback");
        find(driver.clearEvent, "RFM2gClearEvent");
        find(driver.errorMsg, "RFM2gErrorMsg");
        find(driver.checkRingCont, "RFM2gCheckRingCont");
        return driver;
    }();
    return found;
}

std::string device(const std::string& number)
{
#ifdef _WIN32
    return "\\\\.\\rfm2g" + number;
#else
    return "/dev/rfm2g" + number;
#endif
}

OwnRings::OwnRings() : folder_("rfm2g-test"), folderVariable_("RFM2G_FOLDER", folder_.file()) {}

OpenNode::OpenNode(Node node)
{
    EXPECT_EQ(driver().open(device(std::to_string(node)).data(), &handle_), Status::success);
}

OpenNode::~OpenNode()
{
    if (handle_ != nullptr) {
        close();
    }
}

void OpenNode::close()
{
    EXPECT_EQ(driver().close(&handle_), Status::success);
}

std::uint32_t OpenNode::word(Offset offset) const
{
    std::uint32_t value = 0;
    EXPECT_EQ(driver().read(handle_, offset, &value, sizeof value), Status::success);
    return value;
}

std::ostream& operator<<(std::ostream& stream, const Told& told)
{
    return stream << "event " << static_cast<int>(told.event) << " of node " << told.node << " with " << told.data;
}

struct Receiver::Inboxes
{
    std::mutex mutex;
    std::map<Handle, std::shared_ptr<Inbox>> ofHandles;

    static Inboxes& instance()
    {
        static Inboxes inboxes;
        return inboxes;
    }
};

Receiver::Receiver(Handle handle, const std::vector<Event>& events, std::function<void(const Told&)> inCallback) : handle_(handle)
{
    inbox_->inCallback = std::move(inCallback);
    {
        const std::lock_guard lock(Inboxes::instance().mutex);
        Inboxes::instance().ofHandles[handle_] = inbox_;
    }
    for (const Event event : events) {
        EXPECT_EQ(driver().enableEvent(handle_, event), Status::success);
        EXPECT_EQ(listen(event), Status::success);
    }
}

Receiver::~Receiver()
{
    const std::lock_guard lock(Inboxes::instance().mutex);
    Inboxes::instance().ofHandles.erase(handle_);
}

Status Receiver::listen(Event event)
{
    return driver().enableEventCallback(handle_, event, &Receiver::callback);
}

void Receiver::callback(Handle handle, EventInfo* info)
{
    std::shared_ptr<Inbox> inbox;
    {
        const std::lock_guard lock(Inboxes::instance().mutex);
        const auto found = Inboxes::instance().ofHandles.find(handle);
        inbox = found != Inboxes::instance().ofHandles.end() ? found->second : nullptr;
    }
    if (!inbox) {
        return;
    }
    const Told told{info->event, info->node, info->data};
    if (inbox->inCallback) {
        inbox->inCallback(told);
    }
    const std::lock_guard lock(inbox->mutex);
    inbox->told.push_back(told);
    inbox->changed.notify_all();
}

std::vector<Told> Receiver::await(const std::function<std::size_t()>& wanted)
{
    std::unique_lock lock(inbox_->mutex);
    std::vector<Told>& told = inbox_->told;
    std::size_t count = 0;
    EXPECT_TRUE(inbox_->changed.wait_for(lock, std::chrono::seconds(30), [&] { return (count = wanted()) != 0; }))
        << told.size() << " were told";
    const auto end = told.begin() + static_cast<std::ptrdiff_t>(count);
    std::vector<Told> taken(told.begin(), end);
    told.erase(told.begin(), end);
    return taken;
}

std::vector<Told> Receiver::until(const Told& last)
{
    return await([&] {
        const std::vector<Told>& told = inbox_->told;
        const auto found = std::find(told.begin(), told.end(), last);
        return found != told.end() ? static_cast<std::size_t>(found - told.begin() + 1) : 0;
    });
}

std::vector<Told> Receiver::next(std::size_t count)
{
    return await([&] { return inbox_->told.size() >= count ? count : 0; });
}

} // namespace cardTest
