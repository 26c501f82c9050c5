/// A motor with one gear: all of its force from standstill on, all of its power from there on, and a fixed top speed.
#include "EnginePlugIn.h"

#include <algorithm>

namespace {

class Electric : public suite::EngineModel
{
public:
    const char* name() const noexcept override { return "electric, 60 kW"; }

    double tractionForce(double speed, int) const noexcept override
    {
        return speed < topSpeed ? std::min(fullForce, power / std::max(speed, 1.0)) : 0.0;
    }

private:
    static constexpr double fullForce = 5000.0; // N
    static constexpr double power = 60e3; // W
    static constexpr double topSpeed = 36.0; // m/s
};

} // namespace

SUITE_ENGINE(Electric)
