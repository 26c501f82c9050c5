#include "brvUtils/data/internal/IdcRecords.h"

#include "brvUtils/data/internal/IdcBlocks.h"

#include <boost/endian/conversion.hpp>
#include <cmath>

namespace brvUtils {

namespace {

/// Bytes of a record, by their offset in it.
class Fields
{
public:
    explicit Fields(const unsigned char* bytes)
        : bytes_(bytes)
    {
    }

    template <typename Value>
    Value get(std::size_t offset) const
    {
        return boost::endian::endian_load<Value, sizeof(Value), boost::endian::order::big>(bytes_ + offset);
    }

private:
    const unsigned char* bytes_;
};

enum class Read {
    whole,
    rest, ///< What comes behind cannot be read.
    cut ///< The payload is shorter.
};

/// A measurement's value. \param value the number, when it is one. \param isNumber whether it is.
Read readValue(IdcBlocks& payload, unsigned type, double& value, bool& isNumber)
{
    static constexpr std::size_t sizes[] = {0, 4, 8, 1, 1, 2, 2, 4, 4, 8, 8, 1, 4};
    isNumber = false;
    if (type >= std::size(sizes)) {
        return Read::rest;
    }
    const unsigned char* const bytes = payload.take(sizes[type]);
    if (bytes == nullptr) {
        return Read::cut;
    }
    const Fields fields(bytes);
    isNumber = true;
    switch (type) {
    case 1: value = static_cast<double>(fields.get<float>(0)); break;
    case 2: value = fields.get<double>(0); break;
    case 3: value = fields.get<std::int8_t>(0); break;
    case 4: value = fields.get<std::uint8_t>(0); break;
    case 5: value = fields.get<std::int16_t>(0); break;
    case 6: value = fields.get<std::uint16_t>(0); break;
    case 7: value = fields.get<std::int32_t>(0); break;
    case 8: value = fields.get<std::uint32_t>(0); break;
    case 9: value = static_cast<double>(fields.get<std::int64_t>(0)); break;
    case 10: value = static_cast<double>(fields.get<std::uint64_t>(0)); break;
    case 11: value = fields.get<std::uint8_t>(0) != 0; break;
    case 12: isNumber = false; return payload.skip(fields.get<std::uint32_t>(0)) ? Read::whole : Read::cut;
    default: isNumber = false; break;
    }
    return Read::whole;
}

/// The next measurements of the payload, their number first. \param store what is done with the number of a key.
template <typename Store>
Read readMeasurements(IdcBlocks& payload, const Store& store)
{
    const unsigned char* bytes = payload.take(2);
    if (bytes == nullptr) {
        return Read::cut;
    }
    for (unsigned left = Fields(bytes).get<std::uint16_t>(0); left > 0; --left) {
        bytes = payload.take(3);
        if (bytes == nullptr) {
            return Read::cut;
        }
        const unsigned key = Fields(bytes).get<std::uint16_t>(0);
        double value = 0;
        bool isNumber = false;
        const Read read = readValue(payload, bytes[2], value, isNumber);
        if (read != Read::whole) {
            return read;
        }
        if (isNumber) {
            store(key, value);
        }
    }
    return Read::whole;
}

/// Where among the values of the ego vehicle a key has its place, or behind them all.
std::size_t placeOf(unsigned key)
{
    switch (key) {
    case 1: return 0;
    case 4: return 1;
    case 6: return 2;
    case 60: return 3;
    case 61: return 4;
    case 67: return 5;
    default: return IdcEgo::valueCount;
    }
}

/// The centre of the box lies half of its length and width from the reference point, as the place of that on the box says.
void placeCentre(IdcObject& object, unsigned location)
{
    // By location code: middle, the corners from front left clockwise, the middles of the sides from the front clockwise.
    static constexpr signed char forward[] = {0, 1, 1, -1, -1, 1, 0, -1, 0};
    static constexpr signed char left[] = {0, 1, -1, -1, 1, 0, -1, 0, 1};
    object.x = object.xReference;
    object.y = object.yReference;
    if (location == 0 || location >= std::size(forward)) {
        return;
    }
    const double x = -forward[location] * object.length / 2;
    const double y = -left[location] * object.width / 2;
    const double cosine = std::cos(object.course);
    const double sine = std::sin(object.course);
    object.x += cosine * x - sine * y;
    object.y += sine * x + cosine * y;
}

IdcObject objectOf(const Fields& fields)
{
    const auto number = [&fields](std::size_t offset) { return static_cast<double>(fields.get<float>(offset)); };
    IdcObject object{};
    object.id = fields.get<std::int32_t>(0);
    object.classification = fields.get<std::uint8_t>(20);
    object.length = number(26);
    object.width = number(30);
    object.course = number(42);
    object.xSpeed = number(66);
    object.ySpeed = number(70);
    object.height = number(82);
    object.xReference = number(126);
    object.yReference = number(130);
    placeCentre(object, fields.get<std::uint16_t>(124));
    return object;
}

} // namespace

bool readIdcEgo(IdcBlocks& payload, IdcEgo& ego)
{
    constexpr std::size_t fixed = 12;
    const unsigned char* const bytes = payload.take(fixed);
    if (bytes == nullptr) {
        return false;
    }
    const Fields fields(bytes);
    // Kept for callers: a microsecond is 4294.97 of these units, and the fraction so counted ends below a million.
    const std::uint32_t microseconds = fields.get<std::uint32_t>(8) / 4295;
    ego = {};
    ego.time = fields.get<std::uint32_t>(4) + microseconds * 1e-6;
    if (!payload.skipText() || !payload.skipText()) { // the names of list and group
        return false;
    }
    return readMeasurements(payload, [&ego](unsigned key, double value) {
        const std::size_t place = placeOf(key);
        if (place < IdcEgo::valueCount) {
            ego.values[place] = value;
            ego.present[place] = true;
            ++ego.count;
        }
    }) != Read::cut;
}

bool readIdcObjects(IdcBlocks& payload, std::vector<IdcObject>& objects)
{
    constexpr std::size_t headSize = 16;
    constexpr std::size_t objectSize = 164;
    objects.clear();
    const unsigned char* const head = payload.take(headSize);
    if (head == nullptr) {
        return false;
    }
    for (unsigned left = Fields(head).get<std::uint16_t>(14); left > 0; --left) {
        const unsigned char* const bytes = payload.take(objectSize);
        if (bytes == nullptr) {
            return false;
        }
        objects.push_back(objectOf(Fields(bytes)));
        const std::size_t contourPoints = bytes[122];
        if (!payload.skip(8 * contourPoints)) {
            return false;
        }
        const Read read = readMeasurements(payload, [](unsigned, double) {});
        if (read != Read::whole) {
            return read == Read::rest;
        }
    }
    return true;
}

} // namespace brvUtils
