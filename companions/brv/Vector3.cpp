#include <brv/Vector3.h>

#include <istream>
#include <ostream>

namespace brv {

std::istream& operator>>(std::istream& stream, Vector3& v)
{
    Vector3 read;
    if (stream >> read.x >> read.y >> read.z) {
        v = read;
    }
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const Vector3& v)
{
    return stream << v.x << ' ' << v.y << ' ' << v.z;
}

} // namespace brv
