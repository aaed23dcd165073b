#include "controls/Timer.h"

namespace rivenfall {

Timer::Timer() {
    pobjTimer.setTimerType(Qt::PreciseTimer);
    connect(&pobjTimer, &QTimer::timeout, this, &Timer::Tick);
}

void Timer::SetEnabled(bool enabled) {
    pblnEnabled = enabled;
    Restart();
}

void Timer::SetInterval(int milliseconds) {
    plngInterval = milliseconds;
    Restart();
}

void Timer::Restart() {
    if (pblnEnabled && plngInterval > 0) {
        pobjTimer.start(plngInterval);
    } else {
        pobjTimer.stop();
    }
}

} // namespace rivenfall
