#pragma once

#include <algorithm>

namespace suite {

/// Drives a car of some 1,000 kg at a wanted speed: a proportional and integral controller of the force. One thread at a
/// time.
class Driver
{
public:
    /// The force to ask the car for, N. \param target, speed m/s. \param seconds since the last call.
    double force(double target, double speed, double seconds)
    {
        const double error = target - speed;
        if (target <= 0.0 && speed < standstill) {
            // A foot on the brake, and nothing remembered that would be in the way at the start.
            sum_ = 0.0;
            return -holding;
        }
        const double wanted = proportional * error + sum_;
        const double given = std::clamp(wanted, -strongest, strongest);
        if (given == wanted) { // else the sum would go on growing for nothing
            sum_ += integral * error * seconds;
        }
        return given;
    }

private:
    static constexpr double proportional = 4000.0; // N per m/s
    static constexpr double integral = 2000.0; // N per m
    static constexpr double strongest = 5000.0; // N
    static constexpr double holding = 500.0; // N
    static constexpr double standstill = 0.1; // m/s

    double sum_ = 0.0; ///< N
};

} // namespace suite
