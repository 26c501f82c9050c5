#include "testing/IdcWriter.h"

#include <cmath>
#include <cstring>
#include <type_traits>

namespace brvTesting {

namespace {

/// Bytes, the high ones first.
class Bytes
{
public:
    template <typename Value>
    Bytes& put(Value value)
    {
        using Bits = std::conditional_t<sizeof(Value) == 1, std::uint8_t,
            std::conditional_t<sizeof(Value) == 2, std::uint16_t, std::conditional_t<sizeof(Value) == 4, std::uint32_t, std::uint64_t>>>;
        Bits bits;
        std::memcpy(&bits, &value, sizeof bits);
        for (std::size_t i = sizeof bits; i-- > 0;) {
            bytes_ += static_cast<char>(bits >> (8 * i) & 0xFF);
        }
        return *this;
    }
    Bytes& put(IdcTime time) { return put(time.seconds).put(time.fraction); }
    Bytes& put(const IdcPoint& point) { return put(point[0]).put(point[1]); }
    Bytes& put(std::monostate) { return *this; }
    Bytes& put(const std::string& text)
    {
        put(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
        return *this;
    }
    Bytes& putWithZero(const std::string& text)
    {
        bytes_ += text;
        bytes_ += '\0';
        return *this;
    }
    Bytes& put(const std::vector<IdcMeasurement>& measurements, std::optional<std::uint16_t> count)
    {
        put(count.value_or(static_cast<std::uint16_t>(measurements.size())));
        for (const IdcMeasurement& measurement : measurements) {
            put(measurement.key).put(measurement.type.value_or(static_cast<std::uint8_t>(measurement.value.index())));
            std::visit([this](const auto& value) { put(value); }, measurement.value);
        }
        return *this;
    }

    std::string& text() { return bytes_; }

private:
    std::string bytes_;
};

void put(Bytes& bytes, const IdcObjectRecord& object)
{
    bytes.put(object.id).put(object.flags).put(object.age).put(object.lastMeasured).put(object.predictionAge);
    bytes.put(object.classification).put(object.certainty).put(object.classificationAge);
    bytes.put(object.box).put(object.boxSigma).put(object.course).put(object.courseSigma);
    bytes.put(object.relativeVelocity).put(object.relativeVelocitySigma).put(object.velocity).put(object.velocitySigma);
    bytes.put(object.height).put(object.heightSigma).put(object.motionReference).put(object.motionReferenceSigma);
    bytes.put(object.acceleration).put(object.accelerationSigma).put(object.yawRate).put(object.yawRateSigma);
    bytes.put(object.contourCount.value_or(static_cast<std::uint8_t>(object.contour.size()))).put(object.closestPoint);
    bytes.put(object.location).put(object.reference).put(object.referenceSigma).put(object.referenceCorrelation);
    bytes.put(object.centreOfGravity).put(object.priority).put(object.existence);
    bytes.put(object.heightOffset).put(object.heightOffsetSigma).put(std::uint16_t{0});
    for (const IdcPoint& point : object.contour) {
        bytes.put(point);
    }
    bytes.put(object.measurements, object.measurementCount);
}

} // namespace

IdcTime idcTime(double seconds)
{
    const double whole = std::floor(seconds);
    return {static_cast<std::uint32_t>(whole), static_cast<std::uint32_t>((seconds - whole) * 4294967296.0)};
}

std::string idcPayload(const IdcMeasurementList& list)
{
    Bytes bytes;
    bytes.put(list.microseconds).put(list.time).putWithZero(list.listName).putWithZero(list.groupName);
    bytes.put(list.measurements, list.count);
    return std::move(bytes.text());
}

std::string idcPayload(const IdcObjectList& list)
{
    Bytes bytes;
    bytes.put(list.time).put(list.id).put(list.device).put(list.interfaceVersion).put(list.flags).put(std::uint8_t{0});
    bytes.put(list.count.value_or(static_cast<std::uint16_t>(list.objects.size())));
    for (const IdcObjectRecord& object : list.objects) {
        put(bytes, object);
    }
    return std::move(bytes.text());
}

std::string idcFrameEnd(std::uint32_t frame, std::uint32_t size, std::uint32_t nextSize, IdcTime time)
{
    Bytes bytes;
    bytes.put(frame).put(size).put(nextSize).put(time).text().append(12, '\0');
    return std::move(bytes.text());
}

void IdcWriter::block(std::uint16_t type, const std::string& payload, const IdcHeader& header)
{
    Bytes bytes;
    const std::uint32_t size = static_cast<std::uint32_t>(payload.size());
    bytes.put(header.magic.value_or(0xAFFEC0C2)).put(header.previousSize.value_or(previousSize_)).put(header.size.value_or(size));
    bytes.put(header.reserved).put(header.device).put(type).put(header.time);
    bytes_ += bytes.text();
    bytes_ += payload;
    previousSize_ = size;
}

} // namespace brvTesting
