#include "brvUtils/os/ObjectList.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ObjectQueries.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <algorithm>
#include <utility>

namespace brvUtils::os {

namespace {

constexpr NTSTATUS success = 0;

/// The session's directory of named objects.
std::wstring sessionDirectory()
{
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return session == 0 ? L"\\BaseNamedObjects" : L"\\Sessions\\" + std::to_wstring(session) + L"\\BaseNamedObjects";
}

/// The state of an object, or false when it is gone, or this user may not ask.
bool describe(const ObjectQueries& queries, const wchar_t* name, ListedObject& object)
{
    if (object.kind == ObjectKind::semaphore) {
        const ScopedHandle semaphore(OpenSemaphoreW(ObjectQueries::queryState, FALSE, name));
        SemaphoreState state{};
        object.stateKnown = semaphore.open() && queries.querySemaphore(semaphore.get(), 0, &state, sizeof state, nullptr) == success;
        object.taken = object.stateKnown && state.count == 0;
        object.stateWord = static_cast<std::uint64_t>(state.count);
        return semaphore.open() || GetLastError() == ERROR_ACCESS_DENIED;
    }
    if (object.kind == ObjectKind::event) {
        const ScopedHandle event(OpenEventW(ObjectQueries::queryState, FALSE, name));
        EventStateRead state{};
        object.stateKnown = event.open() && queries.queryEvent(event.get(), 0, &state, sizeof state, nullptr) == success;
        object.manualReset = object.stateKnown && state.type == 0;
        object.set = object.stateKnown && state.state != 0;
        object.stateWord = static_cast<std::uint64_t>(state.state);
        return event.open() || GetLastError() == ERROR_ACCESS_DENIED;
    }
    // The right to ask alone is another name for the right to copy, which does not include it.
    const ScopedHandle section(OpenFileMappingW(FILE_MAP_READ | SECTION_QUERY, FALSE, name));
    SectionState state{};
    if (section.open() && queries.querySection(section.get(), 0, &state, sizeof state, nullptr) == success) {
        object.size = static_cast<std::uint64_t>(state.size.QuadPart);
    }
    return section.open() || GetLastError() == ERROR_ACCESS_DENIED;
}

bool kindOf(const std::wstring& type, ObjectKind& kind)
{
    constexpr std::pair<const wchar_t*, ObjectKind> kinds[] = {
        {L"Semaphore", ObjectKind::semaphore}, {L"Event", ObjectKind::event}, {L"Section", ObjectKind::segment}};
    for (const auto& [text, known] : kinds) {
        if (type == text) {
            kind = known;
            return true;
        }
    }
    return false;
}

std::wstring textOf(const UNICODE_STRING& text)
{
    return std::wstring(text.Buffer, text.Length / sizeof(wchar_t));
}

struct Mapping
{
    HANDLE handle;
    const char* view;
    ~Mapping()
    {
        if (view != nullptr) {
            UnmapViewOfFile(view);
        }
        CloseHandle(handle);
    }
};

} // namespace

ObjectList listObjects()
{
    ObjectList list;
    std::wstring directoryName = sessionDirectory();
    list.place = utf8FromWide(directoryName);
    const ObjectQueries queries;
    if (!queries.complete()) {
        list.error = error::notSupported;
        return list;
    }
    const auto bytes = static_cast<USHORT>(directoryName.size() * sizeof(wchar_t));
    UNICODE_STRING name{bytes, bytes, directoryName.data()};
    OBJECT_ATTRIBUTES attributes{};
    attributes.Length = sizeof attributes;
    attributes.ObjectName = &name;
    HANDLE opened = nullptr;
    if (queries.openDirectory(&opened, ObjectQueries::queryDirectory, &attributes) != success) {
        list.error = error::accessDenied;
        return list;
    }
    const ScopedHandle directory(opened);
    // One entry at a time: who makes or closes objects meanwhile shifts those behind, so that one may be told twice.
    alignas(DirectoryEntry) char buffer[4096];
    ULONG context = 0;
    while (queries.readDirectory(directory.get(), buffer, sizeof buffer, TRUE, FALSE, &context, nullptr) == success) {
        const auto& entry = *reinterpret_cast<const DirectoryEntry*>(buffer);
        const std::wstring wideName = textOf(entry.name);
        ListedObject object;
        object.name = localFromWide(wideName);
        if (kindOf(textOf(entry.type), object.kind) && describe(queries, wideName.c_str(), object)) {
            list.objects.push_back(std::move(object));
        }
    }
    std::sort(list.objects.begin(), list.objects.end(), [](const ListedObject& a, const ListedObject& b) { return a.name < b.name; });
    const auto same = [](const ListedObject& a, const ListedObject& b) { return a.name == b.name; };
    list.objects.erase(std::unique(list.objects.begin(), list.objects.end(), same), list.objects.end());
    return list;
}

bool onlyObjectsOfTheLibrary() noexcept
{
    return false;
}

ErrorCode readSegment(const char* name, bool (*take)(void* context, const char* bytes, std::size_t count), void* context)
{
    const HANDLE handle = OpenFileMappingA(FILE_MAP_READ, FALSE, name);
    if (handle == nullptr) {
        return GetLastError();
    }
    const Mapping mapping{handle, static_cast<const char*>(MapViewOfFile(handle, FILE_MAP_READ, 0, 0, 0))};
    MEMORY_BASIC_INFORMATION region{};
    if (mapping.view == nullptr || VirtualQuery(mapping.view, &region, sizeof region) == 0) {
        return GetLastError();
    }
    if (region.State != MEM_COMMIT) {
        return error::invalidData; // another program's, which has only reserved it: reading would be a fault
    }
    take(context, mapping.view, region.RegionSize);
    return error::none;
}

} // namespace brvUtils::os
