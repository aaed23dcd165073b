#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>

/// Loaded into the real program, presses the keys that the environment's RIVENFALL_KEYS names, one
/// after the other.
static void PressKeys() {
    auto* clock = new QTimer(qApp);
    QStringList keys = qEnvironmentVariable("RIVENFALL_KEYS").split(u',');
    QPointer<QWidget> window;
    QObject::connect(clock, &QTimer::timeout, qApp, [keys, window]() mutable {
        // The first one is the main window.
        window = window ? window.data() : QApplication::activeWindow();
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* in = popup ? popup : window.data();
        if (!in || keys.isEmpty()) {
            return;
        }
        if (!popup && !in->isActiveWindow()) {
            return in->activateWindow();
        }
        const QKeyCombination key = QKeySequence(keys.takeFirst())[0];
        QTest::keyClick(in, key.key(), key.keyboardModifiers());
    });
    clock->start(50);
}
Q_COREAPP_STARTUP_FUNCTION(PressKeys)
