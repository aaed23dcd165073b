#include <QApplication>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

/// The main window, once it is there.
static QWidget* WindowWithMenu() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const auto* bar = window->findChild<QMenuBar*>();
        if (bar && !bar->actions().empty() && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// Loaded into the real program, presses the keys that the environment's RIVENFALL_KEYS names, one
/// after the other. "Wait" lets half a second pass.
static void PressKeys() {
    auto* clock = new QTimer(qApp);
    QStringList keys = qEnvironmentVariable("RIVENFALL_KEYS").split(u',');
    QObject::connect(clock, &QTimer::timeout, qApp, [clock, keys]() mutable {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* in = popup ? popup : WindowWithMenu();
        if (!in || keys.isEmpty()) {
            return;
        }
        if (!popup && !in->isActiveWindow()) {
            return in->activateWindow();
        }
        const QString next = keys.takeFirst();
        if (next == u"Wait") {
            return clock->start(700);
        }
        clock->start(50);
        const QKeyCombination key = QKeySequence(next)[0];
        QTest::keyClick(in, key.key(), key.keyboardModifiers());
    });
    clock->start(50);
}
Q_COREAPP_STARTUP_FUNCTION(PressKeys)
