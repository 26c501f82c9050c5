#include "brvUtils/ipc/internal/ObjectRoles.h"

#include "brvUtils/ipc/internal/PortTable.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string_view>
#include <system_error>

namespace brvUtils {

namespace {

using Role = NamedObject::Role;
using Kind = NamedObject::Kind;

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// A number that fills the text, as printed: no blanks, no plus.
bool toNumber(std::string_view text, int& number)
{
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc() && end == text.data() + text.size();
}

/// "<segment> Part <identifier>". The instance stands before it once more than before the segment's own name.
bool parsePartLock(NamedObject& object)
{
    constexpr std::string_view mark = " Part ";
    const std::string_view name = object.name;
    const std::size_t place = name.rfind(mark);
    if (place == std::string_view::npos || !toNumber(name.substr(place + mark.size()), object.part)) {
        return false;
    }
    object.segment = name.substr(0, place);
    return true;
}

/// "<segment without the version of its memory> Init Lock".
bool parseInitLock(NamedObject& object)
{
    constexpr std::string_view mark = " Init Lock";
    if (!endsWith(object.name, mark)) {
        return false;
    }
    object.segment = object.name.substr(0, object.name.size() - mark.size());
    return true;
}

/// Takes the instance away that stands before the name twice: what is left begins with it again.
std::string_view withoutFirst(std::string_view text, std::size_t count)
{
    const std::string_view rest = text.substr(count);
    return rest.substr(0, count) == text.substr(0, count) ? rest : text;
}

bool isVersionBehind(std::string_view segment, std::string_view composite)
{
    int version = 0;
    return segment.size() > composite.size() + 1 && segment.substr(0, composite.size()) == composite && segment[composite.size()] == '_'
        && toNumber(segment.substr(composite.size() + 1), version) && version > 0;
}

} // namespace

void assignRoles(std::vector<NamedObject>& objects)
{
    std::set<std::string_view> segments;
    for (NamedObject& object : objects) {
        if (object.kind == Kind::segment) {
            segments.insert(object.name);
            object.role = object.name == ports::tableName ? Role::portTable : Role::other;
        } else if (object.kind == Kind::semaphore) {
            object.role = object.name == ports::guardName ? Role::portGuard
                : parsePartLock(object) ? Role::partLock
                : parseInitLock(object) ? Role::initLock : Role::other;
        }
    }
    std::set<std::string> composites;
    for (NamedObject& object : objects) {
        if (object.role == Role::partLock) {
            for (std::size_t count = 1; segments.count(object.segment) == 0 && count <= object.segment.size() / 2; ++count) {
                if (const std::string_view rest = withoutFirst(object.segment, count); segments.count(rest) != 0) {
                    object.segment = rest;
                }
            }
            composites.insert(object.segment);
        } else if (object.role == Role::initLock && segments.count(object.segment) == 0) {
            const auto next = segments.lower_bound(object.segment);
            object.segment = next != segments.end() && isVersionBehind(*next, object.segment) ? std::string(*next) : object.segment;
        }
    }
    for (NamedObject& object : objects) {
        if (object.kind == Kind::segment && composites.count(object.name) != 0) {
            object.role = Role::segment;
        }
    }
}

} // namespace brvUtils
