#include "brvUtils/ipc/internal/PartTable.h"

#include <utility>

namespace brvUtils {

static_assert(std::uint32_t{0xFFFFFFFF} >> 23 == 2 * PartTable::capacity - 1);

PartPlace& PartTable::add(int id, std::size_t size, Lock lock)
{
    PartPlace& place = places_[static_cast<std::size_t>(count_)];
    place = {id, count_, end_, std::move(lock)};
    end_ += size;
    used_ = ++count_;
    enter(place);
    return place;
}

void PartTable::enter(PartPlace& place)
{
    std::size_t slot = home(place.id);
    while (slots_[slot] != nullptr) {
        if (slots_[slot]->id == place.id) {
            return; // the first part of that identifier is the one that is found
        }
        slot = next(slot);
    }
    slots_[slot] = &place;
}

void PartTable::remove(const PartPlace& place)
{
    const auto last = static_cast<std::size_t>(--used_);
    for (auto i = static_cast<std::size_t>(&place - places_.data()); i < last; ++i) {
        places_[i] = std::move(places_[i + 1]);
    }
    places_[last] = {};
    slots_.fill(nullptr);
    for (std::size_t i = 0; i < last; ++i) {
        enter(places_[i]);
    }
}

} // namespace brvUtils
