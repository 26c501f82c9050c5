/// An engine with a gearbox of five gears. With an open clutch, also while gears are changed, the car rolls.
#include "EnginePlugIn.h"

#include <algorithm>
#include <iterator>

namespace {

struct Gear
{
    double force; ///< What the engine's torque comes to on the road, N.
    double topSpeed; ///< Where the engine turns no faster, m/s.
};

class Diesel : public suite::EngineModel
{
public:
    const char* name() const noexcept override { return "diesel, 50 kW"; }

    double tractionForce(double speed, int gear) const noexcept override
    {
        if (gear < 1) {
            return 0.0;
        }
        const auto& [force, topSpeed] = gears[std::min<std::size_t>(static_cast<std::size_t>(gear), std::size(gears)) - 1];
        return speed < topSpeed ? std::min(force, power / std::max(speed, 1.0)) : 0.0;
    }

private:
    static constexpr double power = 50e3; // W
    static constexpr Gear gears[] = {{4800.0, 10.0}, {2900.0, 18.0}, {1900.0, 27.0}, {1400.0, 37.0}, {1100.0, 47.0}};
};

} // namespace

SUITE_ENGINE(Diesel)
