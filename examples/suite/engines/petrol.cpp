/// The standard engine: small, with a stepless gearbox that pulls in every gear that the driver believes in.
#include "EnginePlugIn.h"

#include <algorithm>

namespace {

class Petrol : public suite::EngineModel
{
public:
    const char* name() const noexcept override { return "petrol, 45 kW"; }

    double tractionForce(double speed, int) const noexcept override { return speed > 0.0 ? std::min(launch, power / speed) : launch; }

private:
    static constexpr double launch = 4500.0; // N
    static constexpr double power = 45e3; // W
};

} // namespace

SUITE_ENGINE(Petrol)
