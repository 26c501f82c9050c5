#include "DrivingCycle.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace suite {

DrivingCycle::DrivingCycle(std::string name, double nominalDistance, std::vector<Operation> operations)
    : name_(std::move(name))
    , nominalDistance_(nominalDistance)
    , operations_(std::move(operations))
{
    double end = 0.0;
    for (const Operation& operation : operations_) {
        end += operation.duration;
        ends_.push_back(end);
    }
}

double DrivingCycle::distance() const
{
    double sum = 0.0;
    for (const Operation& operation : operations_) {
        sum += (operation.from + operation.to) / 2.0 * operation.duration;
    }
    return sum;
}

double DrivingCycle::speedAt(double time) const
{
    const double now = withinCycle(time);
    const std::size_t index = indexAt(now);
    const Operation& operation = operations_[index];
    return operation.to - (operation.to - operation.from) * (ends_[index] - now) / operation.duration;
}

double DrivingCycle::withinCycle(double time) const
{
    return std::fmod(time, duration());
}

std::size_t DrivingCycle::indexAt(double time) const
{
    const auto end = std::upper_bound(ends_.begin(), ends_.end(), time);
    return end != ends_.end() ? static_cast<std::size_t>(end - ends_.begin()) : operations_.size() - 1;
}

} // namespace suite
