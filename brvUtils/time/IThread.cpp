#include "brvUtils/time/IThread.h"

#include "brvUtils/time/ITimer.h"
#include "brvUtils/time/ThreadAction.h"

namespace brvUtils {

const int IThread::PRIORITY_IDLE = 0;
const int IThread::PRIORITY_LOWEST = 1;
const int IThread::PRIORITY_BELOW_NORMAL = 2;
const int IThread::PRIORITY_NORMAL = 3;
const int IThread::PRIORITY_ABOVE_NORMAL = 4;
const int IThread::PRIORITY_HIGHEST = 5;
const int IThread::PRIORITY_TIME_CRITICAL = 6;

const double IThread::defaultTimeOut = 1.0;

// The tables of virtual functions have this one place.
IThread::~IThread() = default;
ITimer::~ITimer() = default;
ThreadAction::~ThreadAction() = default;

} // namespace brvUtils
