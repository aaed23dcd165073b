#pragma once

#include <QObject>
#include <QTimer>

namespace rivenfall {

/// A clock that ticks on the event loop.
class Timer : public QObject {
    Q_OBJECT

public:
    /// A clock that is switched off and has no interval.
    Timer();

    /// Switches the clock on or off. It ticks while it is on and has an interval.
    void SetEnabled(bool enabled);

    /// Milliseconds from tick to tick; 0 is no interval.
    void SetInterval(int milliseconds);

Q_SIGNALS:
    /// One tick.
    void Tick();

private:
    void Restart();

    QTimer pobjTimer;
    bool pblnEnabled = false;
    int plngInterval = 0;
};

} // namespace rivenfall
