#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace suite {

/// One line of a driving cycle's table: the speed changes evenly from one value to another.
struct Operation
{
    std::string kind; ///< Such as "idling" or "acceleration".
    double from = 0.0; ///< Speed at the start, m/s.
    double to = 0.0; ///< Speed at the end, m/s.
    double duration = 0.0; ///< Seconds.
    int gear = 0; ///< 0: none, or the clutch is open.
};

/// A speed to follow over time. It starts again when it is over. Does not change once made; any thread may ask.
class DrivingCycle
{
public:
    /// \param operations at least one, each of a positive duration.
    /// \param nominalDistance of one cycle in metres, as published.
    DrivingCycle(std::string name, double nominalDistance, std::vector<Operation> operations);

    const std::string& name() const { return name_; }
    double nominalDistance() const { return nominalDistance_; }

    /// Seconds of one cycle.
    double duration() const { return ends_.back(); }

    /// Metres of one cycle, as its speeds give them.
    double distance() const;

    /// The speed to be driven, m/s. \param time seconds since the start, not negative.
    double speedAt(double time) const;

    /// The operation that holds at that time.
    const Operation& operationAt(double time) const { return operations_[indexAt(withinCycle(time))]; }

private:
    double withinCycle(double time) const;
    std::size_t indexAt(double time) const;

    std::string name_;
    double nominalDistance_;
    std::vector<Operation> operations_;
    std::vector<double> ends_; ///< Of the operations, seconds since the start of the cycle.
};

} // namespace suite
