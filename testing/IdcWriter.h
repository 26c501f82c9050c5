#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace brvTesting {

/// A time as recordings hold it: seconds since 1900 and units of 2^-32 s.
struct IdcTime
{
    std::uint32_t seconds = 0;
    std::uint32_t fraction = 0;
};

/// The seconds and their fraction.
IdcTime idcTime(double seconds);

/// A value of a measurement. Its place among the alternatives is the type that is written.
using IdcValue = std::variant<std::monostate, float, double, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
    std::uint32_t, std::int64_t, std::uint64_t, bool, std::string>;

struct IdcMeasurement
{
    std::uint16_t key = 0;
    IdcValue value = {};
    std::optional<std::uint8_t> type = {}; ///< In place of the right one.
};

struct IdcMeasurementList
{
    std::uint32_t microseconds = 0;
    IdcTime time = {};
    std::string listName = {};
    std::string groupName = {};
    std::vector<IdcMeasurement> measurements = {};
    std::optional<std::uint16_t> count = {}; ///< In place of the right number of measurements.
};

using IdcPoint = std::array<float, 2>;

/// An object with the fields of the format, in their order.
struct IdcObjectRecord
{
    std::uint32_t id = 0;
    std::uint16_t flags = 0;
    std::uint32_t age = 0;
    IdcTime lastMeasured = {};
    std::uint16_t predictionAge = 0;
    std::uint8_t classification = 5;
    std::uint8_t certainty = 100;
    std::uint32_t classificationAge = 0;
    IdcPoint box = {}, boxSigma = {};
    float course = 0, courseSigma = 0;
    IdcPoint relativeVelocity = {}, relativeVelocitySigma = {};
    IdcPoint velocity = {}, velocitySigma = {};
    float height = 0, heightSigma = 0;
    IdcPoint motionReference = {}, motionReferenceSigma = {};
    float acceleration = 0, accelerationSigma = 0;
    float yawRate = 0, yawRateSigma = 0;
    std::uint8_t closestPoint = 0;
    std::uint16_t location = 0;
    IdcPoint reference = {}, referenceSigma = {};
    float referenceCorrelation = 0;
    IdcPoint centreOfGravity = {};
    std::uint16_t priority = 0;
    float existence = 0;
    std::int8_t heightOffset = 0;
    std::uint8_t heightOffsetSigma = 0;
    std::vector<IdcPoint> contour = {};
    std::vector<IdcMeasurement> measurements = {};
    std::optional<std::uint8_t> contourCount = {}; ///< In place of the right one.
    std::optional<std::uint16_t> measurementCount = {}; ///< In place of the right one.
};

struct IdcObjectList
{
    IdcTime time = {};
    std::uint8_t id = 0;
    std::uint8_t device = 1;
    std::uint16_t interfaceVersion = 0;
    std::uint8_t flags = 0;
    std::vector<IdcObjectRecord> objects = {};
    std::optional<std::uint16_t> count = {}; ///< In place of the right number of objects.
};

/// The header of a block, of which each field is right unless it is given.
struct IdcHeader
{
    std::optional<std::uint32_t> magic = {};
    std::optional<std::uint32_t> previousSize = {};
    std::optional<std::uint32_t> size = {};
    std::uint8_t reserved = 0;
    std::uint8_t device = 0;
    IdcTime time = {};
};

/// The payloads of blocks.
std::string idcPayload(const IdcMeasurementList& list);
std::string idcPayload(const IdcObjectList& list);
/// A frame separator: the number of the frame, its size and that of the next one.
std::string idcFrameEnd(std::uint32_t frame, std::uint32_t size, std::uint32_t nextSize, IdcTime time);

/// Puts a recording together, block by block.
class IdcWriter
{
public:
    /// Data types of blocks.
    static constexpr std::uint16_t measurementList = 0x2821, objectList = 0x2281, frameEnd = 0x1100, frameIndex = 0x6130,
                                   trailer = 0x6120, image = 0x2403;

    void block(std::uint16_t type, const std::string& payload, const IdcHeader& header = {});
    void add(const IdcMeasurementList& list, const IdcHeader& header = {}) { block(measurementList, idcPayload(list), header); }
    void add(const IdcObjectList& list, const IdcHeader& header = {}) { block(objectList, idcPayload(list), header); }
    /// Bytes that are no block.
    void garbage(const std::string& bytes) { bytes_ += bytes; }

    /// The recording so far.
    const std::string& bytes() const { return bytes_; }
    /// Gives the recording away and starts another one.
    std::string take() { return std::exchange(bytes_, {}); }

private:
    std::string bytes_;
    std::uint32_t previousSize_ = 0;
};

} // namespace brvTesting
