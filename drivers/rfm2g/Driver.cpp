#include "rfm2g/Handles.h"
#include "rfm2g/Messages.h"
#include "rfm2g/Settings.h"

#include "brvUtils/ipc/Rfm2g.h"

#include <cstdio>
#include <new>

// What the library exports.

#ifdef _WIN32
#define SOFTWARE_CARD_EXPORT extern "C" __declspec(dllexport)
#else
#define SOFTWARE_CARD_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using namespace brvUtils::rfm2g;
using namespace softwareCard;

constexpr auto lastEvent = Event::parityError;

/// Nothing that is thrown reaches a caller.
template <typename Work>
Status guarded(Work work)
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return Status::lowMemory;
    } catch (...) {
        return Status::driverError;
    }
}

/// Does something with the card of a handle.
template <typename Work>
Status withCard(Handle handle, Work work)
{
    return guarded([&] {
        if (handle == nullptr) {
            return Status::nullDescriptor;
        }
        const std::shared_ptr<Card> card = Handles::instance().find(handle);
        return card ? work(*card) : Status::notOpen;
    });
}

bool isEvent(Event event, Event last)
{
    return event >= Event::reset && event <= last;
}

Status open(const char* device, Handle& handle)
{
    std::string problem;
    const std::optional<Settings> settings = settingsOf(device, problem);
    MemberOpening opening{nullptr, Status::noBoard, ""};
    if (settings) {
        opening = Member::open(*settings);
        problem = opening.problem;
    }
    if (!problem.empty()) {
        std::fprintf(stderr, "[software card] %s\n", problem.c_str());
    }
    if (opening.member) {
        handle = Handles::instance().add(std::move(opening.member));
    }
    return opening.status;
}

} // namespace

SOFTWARE_CARD_EXPORT Status RFM2gOpen(char* device, Handle* handle)
{
    if (device == nullptr) {
        return Status::badParameter1;
    }
    return handle == nullptr ? Status::badParameter2 : guarded([&] { return open(device, *handle); });
}

SOFTWARE_CARD_EXPORT Status RFM2gClose(Handle* handle)
{
    if (handle == nullptr || *handle == nullptr) {
        return Status::nullDescriptor;
    }
    return guarded([&] {
        const std::shared_ptr<Card> card = Handles::instance().remove(*handle);
        if (!card) {
            return Status::notOpen;
        }
        card->close();
        *handle = nullptr;
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gNodeID(Handle handle, Node* node)
{
    return withCard(handle, [&](Card& card) {
        if (node == nullptr) {
            return Status::badParameter2;
        }
        *node = card.member().node();
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gSize(Handle handle, Offset* bytes)
{
    return withCard(handle, [&](Card& card) {
        if (bytes == nullptr) {
            return Status::badParameter2;
        }
        *bytes = card.member().ring().size();
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gFirst(Handle handle, Offset* offset)
{
    return withCard(handle, [&](Card&) {
        if (offset == nullptr) {
            return Status::badParameter2;
        }
        *offset = 0;
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gRead(Handle handle, Offset from, void* to, Offset length)
{
    return withCard(handle, [&](Card& card) {
        if (to == nullptr) {
            return Status::badParameter3;
        }
        return card.member().ring().read(from, to, length) ? Status::success : Status::outOfRange;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gWrite(Handle handle, Offset to, void* from, Offset length)
{
    return withCard(handle, [&](Card& card) {
        if (from == nullptr) {
            return Status::badParameter3;
        }
        if (!card.member().ring().contains(to, length)) {
            return Status::outOfRange;
        }
        return card.member().write(to, from, length) ? Status::success : Status::writeError;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gEnableEvent(Handle handle, Event event)
{
    return withCard(handle, [&](Card& card) {
        if (!isEvent(event, lastEvent)) {
            return Status::badParameter2;
        }
        card.enable(event);
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gSendEvent(Handle handle, Node to, Event event, std::uint32_t data)
{
    return withCard(handle, [&](Card& card) {
        if (to >= nodeCount && to != allNodes) {
            return Status::badParameter2;
        }
        if (!isEvent(event, Event::user4)) {
            return Status::badParameter3;
        }
        if (to == card.member().node()) {
            return Status::ownNode;
        }
        card.member().send({data, card.member().node(), to, static_cast<unsigned>(event)});
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gEnableEventCallback(Handle handle, Event event, Callback callback)
{
    return withCard(handle, [&](Card& card) {
        if (!isEvent(event, lastEvent)) {
            return Status::badParameter2;
        }
        return callback == nullptr ? Status::badParameter3 : card.setCallback(event, callback);
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gClearEvent(Handle handle, Event event)
{
    return withCard(handle, [&](Card& card) {
        if (!isEvent(event, lastEvent)) {
            return Status::badParameter2;
        }
        card.clear(event);
        return Status::success;
    });
}

SOFTWARE_CARD_EXPORT Status RFM2gCheckRingCont(Handle handle)
{
    return withCard(handle, [](Card& card) { return card.member().ring().faults().ringOpen ? Status::linkTestFail : Status::success; });
}

SOFTWARE_CARD_EXPORT char* RFM2gErrorMsg(Status status)
{
    return const_cast<char*>(messageOf(status));
}
