#include "brvUtils/ipc/internal/PartTable.h"

#include <utility>

namespace brvUtils {

static_assert(std::uint32_t{0xFFFFFFFF} >> 23 == 2 * PartTable::capacity - 1);

int PartTable::add(int id, std::size_t size, Lock lock)
{
    const auto index = static_cast<std::size_t>(count_);
    offsets_[index + 1] = offsets_[index] + size;
    ids_[index] = id;
    locks_[index] = std::move(lock);
    used_ = ++count_;
    enter(static_cast<int>(index));
    return static_cast<int>(index);
}

void PartTable::enter(int index)
{
    const int id = ids_[static_cast<std::size_t>(index)];
    std::size_t place = home(id);
    while (places_[place] != none) {
        if (ids_[static_cast<std::size_t>(places_[place])] == id) {
            return; // the first part of that identifier is the one that is found
        }
        place = next(place);
    }
    places_[place] = static_cast<std::int16_t>(index);
}

void PartTable::remove(int index)
{
    --used_;
    for (auto i = static_cast<std::size_t>(index); i < static_cast<std::size_t>(used_); ++i) {
        offsets_[i] = offsets_[i + 1];
        ids_[i] = ids_[i + 1];
        locks_[i] = std::move(locks_[i + 1]);
    }
    offsets_[static_cast<std::size_t>(used_)] = offsets_[static_cast<std::size_t>(used_) + 1];
    locks_[static_cast<std::size_t>(used_)] = Lock();
    places_.fill(none);
    for (int i = 0; i < used_; ++i) {
        enter(i);
    }
}

} // namespace brvUtils
