#pragma once

#include "brvUtils/export.h"

#include <brv/Mark.h>
#include <brv/Transform.h>
#include <brv/Vector3.h>

namespace brvUtils {

class RelativePosition;

/// A frame of reference: that of the pose of its origin. Without an origin it is the global frame, in which every chain of
/// frames has to end. What it points to is not owned, and has to outlive its use.
class BRVUTILS_API Base
{
public:
    /// \param origin null for the global frame.
    explicit Base(RelativePosition* origin = nullptr);

    /// The pose that this frame is of; null for the global frame.
    RelativePosition* getOrigin() const;

    /// Makes it the frame of another pose, or the global one.
    void setOrigin(RelativePosition* origin);

    /// A point of this frame as the global frame has it. The local bases of the origins on the way must not be null.
    brv::Vector3 resolve(brv::Vector3 v) const;

private:
    RelativePosition* origin_;
};

/// A pose within a frame, and the origin of another one where a Base says so. Metres and radians. Threads may look at a chain
/// that nobody changes; getTransformationMatrix, which keeps its result in the object, is for one thread at a time.
class BRVUTILS_API RelativePosition
{
public:
    /// \param localBase the frame, not owned; null counts as the global one. \param place the pose within it.
    RelativePosition(Base* localBase, brv::Mark place);

    /// The pose within the local base.
    const brv::Mark& getPlace() const;

    /// Replaces the pose within the local base.
    void setPlace(brv::Mark place);

    /// Replaces the position only.
    void setPos(double x, double y, double z);

    /// Replaces the angles only.
    void setDir(double heading, double pitch, double roll);

    /// Heading, pitch and roll, as x, y and z.
    brv::Vector3 getDir() const;

    /// The frame that the pose is given in; may be null.
    Base* getLocalBase() const;

    /// Gives the same pose another frame, so that the absolute pose changes.
    void changeLocalBase(Base* localBase);

    /// The frame that has no origin, one in the process.
    static Base* getGlobalBase();

    /// From the frame of this pose to the local base, of the pose as it is now. Overwritten by the next call.
    const brv::Transform& getTransformationMatrix() const;

    /// The pose within the global frame, its angles as by brv::Transform::toMark; the pose itself when its local base is the
    /// global one.
    brv::Mark getAbsolutePlace() const;

    /// Does nothing: kept for callers. Set the pose by setPlace.
    void setAbsolutePlace(brv::Mark place);

    /// Writes the pose to the standard output, a line each between two of asterisks.
    void display() const;

    /// Writes nothing: kept for callers.
    void displayChain() const;

private:
    bool hasOrigin() const;

    brv::Mark place_;
    Base* localBase_;
    mutable brv::Transform transform_;
};

} // namespace brvUtils
