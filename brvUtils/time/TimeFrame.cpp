#include "brvUtils/time/TimeFrame.h"

namespace brvUtils {

TimeFrame::TimeFrame(bool measured, double seconds)
    : measuredStep(measured)
    , frameTimer(0.05, 0.0, nullptr)
    , fixedStep(seconds)
{
}

void TimeFrame::init()
{
    frameTimer.setInitTime(0.0);
    start();
    step = fixedStep;
    frameCount = 0;
}

void TimeFrame::start()
{
    frameTimer.init();
    read();
}

void TimeFrame::run()
{
    frameTimer.run();
    read();
    ++frameCount;
}

void TimeFrame::pause()
{
    frameTimer.pause();
}

void TimeFrame::read()
{
    time = frameTimer.getCurrentTime();
    step = measuredStep ? frameTimer.getDeltaTime() : fixedStep;
}

} // namespace brvUtils
