#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace brvUtils {

class IdcBlocks;

/// The data types of the blocks that hold these records.
constexpr std::uint16_t idcMeasurementListType = 0x2821;
constexpr std::uint16_t idcObjectListType = 0x2281;

/// What a measurement list says of the ego vehicle.
struct IdcEgo
{
    static constexpr std::size_t valueCount = 6;

    double time = 0; ///< Seconds since 1900, in whole microseconds.
    unsigned count = 0; ///< How many measurements have a key of those below and a number as value; a key may come twice.
    std::array<double, valueCount> values{}; ///< Of the keys 1, 4, 6, 60, 61, 67, as recorded; 0 where there is none.
    std::array<bool, valueCount> present{};
};

/// An object that a scanner tracks, in metres, metres per second and radians.
struct IdcObject
{
    std::int32_t id;
    std::uint8_t classification;
    double length, width, height;
    double x, y; ///< The centre of its box.
    double xSpeed, ySpeed; ///< Over ground.
    double course;
    double xReference, yReference;
};

/// Reads a measurement list from the payload. Behind a value of unknown length nothing more can be read: what came before it
/// stays. \return false when the payload is shorter than the list, which then is of no use.
bool readIdcEgo(IdcBlocks& payload, IdcEgo& ego);

/// Reads an object list from the payload. Behind a measurement of unknown length nothing more can be read: the objects up to
/// the one that it belongs to stay. \param objects replaced. \return false when the payload is shorter than the list, which
/// then is of no use.
bool readIdcObjects(IdcBlocks& payload, std::vector<IdcObject>& objects);

} // namespace brvUtils
