#include "SceneConfiguration.h"

#include "Configuration.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/core/Parsers.h>

#include <cmath>
#include <string>
#include <vector>

namespace suite {

namespace {

constexpr double degree = 3.141592653589793 / 180.0;
constexpr double kilometresPerHour = 1.0 / 3.6;

/// So many numbers that a module's setting holds.
std::vector<double> numbers(const std::string& module, const std::string& name, std::size_t count)
{
    const std::string text = moduleSetting(module, name);
    const std::vector<float> found = brvUtils::Parsers::parseFloats(text);
    if (found.size() != count) {
        throw brvUtils::ConfigurationError("\"" + name + "\" in the section \"" + module + "\" is to be " + std::to_string(count)
            + (count == 1 ? " number" : " numbers") + ", not \"" + text + "\"");
    }
    return std::vector<double>(found.begin(), found.end());
}

double number(const std::string& module, const std::string& name)
{
    return numbers(module, name, 1).front();
}

/// Metres, and behind them heading, pitch and roll in degrees.
brv::Mark pose(const std::string& module, const std::string& name)
{
    const std::vector<double> n = numbers(module, name, 6);
    return {n[0], n[1], n[2], n[5] * degree, n[4] * degree, n[3] * degree};
}

} // namespace

ClosedRoad configuredRoad()
{
    return {number("road", "straight"), number("road", "radius"), number("road", "laneWidth")};
}

TrafficPlans configuredTraffic()
{
    TrafficPlans plans;
    int count = 0;
    for (TrafficPlan& plan : plans) {
        const std::vector<double> n = numbers("traffic", "vehicle" + std::to_string(++count), 3);
        plan = {static_cast<int>(std::lround(n[0])), n[1], n[2] * kilometresPerHour};
    }
    return plans;
}

SensorMounting configuredSensor()
{
    return {pose("sensor", "roof"), pose("sensor", "mounting"), number("sensor", "range"), number("sensor", "fieldOfView") * degree};
}

} // namespace suite
