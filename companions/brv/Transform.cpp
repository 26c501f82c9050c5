#include <brv/Transform.h>

namespace brv {

Transform::Transform(const Mark& mark)
    : translation_(mark.position())
{
    const double sr = std::sin(mark.roll), cr = std::cos(mark.roll);
    const double sp = std::sin(mark.pitch), cp = std::cos(mark.pitch);
    const double sh = std::sin(mark.heading), ch = std::cos(mark.heading);
    x_ = {cp * ch, cp * sh, -sp};
    y_ = {sp * ch * sr - cr * sh, sp * sh * sr + cr * ch, cp * sr};
    z_ = {sp * ch * cr + sr * sh, sp * sh * cr - sr * ch, cp * cr};
}

Mark Transform::toMark() const
{
    // The heading is what turns the x axis; what is left without it gives the other angles. Near a pitch of a right angle the
    // heading is uncertain, and the roll makes up for whatever it was taken for.
    const double length = std::sqrt(x_.x * x_.x + x_.y * x_.y);
    const double sh = length > 0.0 ? x_.y / length : 0.0;
    const double ch = length > 0.0 ? x_.x / length : 1.0;
    const double roll = std::atan2(z_.x * sh - z_.y * ch, y_.y * ch - y_.x * sh);
    return {translation_.x, translation_.y, translation_.z, roll, std::atan2(-x_.z, length), std::atan2(sh, ch)};
}

Transform Transform::inverse() const
{
    Transform result;
    result.x_ = {x_.x, y_.x, z_.x};
    result.y_ = {x_.y, y_.y, z_.y};
    result.z_ = {x_.z, y_.z, z_.z};
    result.translation_ = -result.rotate(translation_);
    return result;
}

Transform Transform::operator*(const Transform& inner) const
{
    Transform result;
    result.x_ = rotate(inner.x_);
    result.y_ = rotate(inner.y_);
    result.z_ = rotate(inner.z_);
    result.translation_ = *this * inner.translation_;
    return result;
}

} // namespace brv
