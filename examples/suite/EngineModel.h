#pragma once

#include <cstdint>

namespace suite {

/// What an engine with its gearbox gives a car. Plug-ins make them. One thread at a time.
class EngineModel
{
public:
    virtual ~EngineModel() = default;

    /// Such as "petrol, 45 kW"; valid as long as this object.
    virtual const char* name() const noexcept = 0;

    /// The most that it puts on the road, N.
    /// \param speed of the car, m/s, not negative. \param gear 1 and up; 0: none, or the clutch is open.
    virtual double tractionForce(double speed, int gear) const noexcept = 0;
};

/// Another number for each change of the class above: a plug-in and its user have to have the same.
constexpr std::uint32_t engineInterface = 1;

/// Names and types of what each plug-in exports, as C functions.
struct EngineSymbols
{
    /// The engineInterface that the plug-in was built with. Nothing else is called before this was asked.
    using Version = std::uint32_t();
    static constexpr const char* version = "suiteEngineInterface";

    /// Makes an engine. May throw what derives from std::exception.
    using Make = EngineModel*();
    static constexpr const char* make = "suiteMakeEngine";

    /// Takes one away that Make gave.
    using Destroy = void(EngineModel*);
    static constexpr const char* destroy = "suiteDestroyEngine";
};

} // namespace suite
