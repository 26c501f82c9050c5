#include "brvUtils/geometry/ReferenceFrames.h"

#include <iostream>

namespace brvUtils {

Base::Base(RelativePosition* origin)
    : origin_(origin)
{
}

RelativePosition* Base::getOrigin() const
{
    return origin_;
}

void Base::setOrigin(RelativePosition* origin)
{
    origin_ = origin;
}

brv::Vector3 Base::resolve(brv::Vector3 v) const
{
    for (const Base* base = this; base->origin_ != nullptr; base = base->origin_->getLocalBase()) {
        v = brv::Transform(base->origin_->getPlace()) * v;
    }
    return v;
}

RelativePosition::RelativePosition(Base* localBase, brv::Mark place)
    : place_(place)
    , localBase_(localBase)
{
}

const brv::Mark& RelativePosition::getPlace() const
{
    return place_;
}

void RelativePosition::setPlace(brv::Mark place)
{
    place_ = place;
}

void RelativePosition::setPos(double x, double y, double z)
{
    place_ = {x, y, z, place_.roll, place_.pitch, place_.heading};
}

void RelativePosition::setDir(double heading, double pitch, double roll)
{
    place_ = {place_.x, place_.y, place_.z, roll, pitch, heading};
}

brv::Vector3 RelativePosition::getDir() const
{
    return {place_.heading, place_.pitch, place_.roll};
}

Base* RelativePosition::getLocalBase() const
{
    return localBase_;
}

void RelativePosition::changeLocalBase(Base* localBase)
{
    localBase_ = localBase;
}

Base* RelativePosition::getGlobalBase()
{
    static Base global;
    return &global;
}

const brv::Transform& RelativePosition::getTransformationMatrix() const
{
    transform_ = brv::Transform(place_);
    return transform_;
}

bool RelativePosition::hasOrigin() const
{
    return localBase_ != nullptr && localBase_->getOrigin() != nullptr;
}

brv::Mark RelativePosition::getAbsolutePlace() const
{
    if (!hasOrigin()) {
        return place_;
    }
    brv::Transform absolute(place_);
    for (const RelativePosition* position = this; position->hasOrigin();) {
        position = position->localBase_->getOrigin();
        absolute = brv::Transform(position->place_) * absolute;
    }
    return absolute.toMark();
}

void RelativePosition::setAbsolutePlace(brv::Mark) {}

void RelativePosition::display() const
{
    const char* const border = "*************";
    std::cout << border << std::endl;
    std::cout << " x : " << place_.x << std::endl;
    std::cout << " y : " << place_.y << std::endl;
    std::cout << " z : " << place_.z << std::endl;
    std::cout << " h : " << place_.heading << std::endl;
    std::cout << " p : " << place_.pitch << std::endl;
    std::cout << " r : " << place_.roll << std::endl;
    std::cout << border << std::endl;
}

void RelativePosition::displayChain() const {}

} // namespace brvUtils
