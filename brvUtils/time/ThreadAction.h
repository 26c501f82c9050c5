#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

/// The work of a thread.
class BRVUTILS_API ThreadAction
{
public:
    virtual ~ThreadAction();

    /// Does one piece of it, on the thread. What it throws ends the process.
    /// \return true to be called again, false when all is done.
    virtual bool execute() = 0;
};

/// Work that a member function of another object does.
/// \tparam T class of the object.
template <typename T>
class ThreadMemberFunction : public ThreadAction
{
public:
    /// \param object not owned; must live as long as the thread runs. \param function as execute().
    ThreadMemberFunction(T* object, bool (T::*function)())
        : object_(object)
        , function_(function)
    {
    }

    bool execute() override { return (object_->*function_)(); }

private:
    T* object_;
    bool (T::*function_)();
};

} // namespace brvUtils
