// A plugin that a Qt program loads at its start when QT_QPA_GENERIC_PLUGINS names it. It writes a
// byte to standard output when the program's first window has been painted.

#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>

#include <unistd.h>

namespace rivenfall {

/// Waits for the first paint event of the process.
class FirstPaintWatch : public QObject {
    Q_OBJECT

public:
    explicit FirstPaintWatch(QObject* application) : QObject(application) {
        application->installEventFilter(this);
    }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() == QEvent::Paint && receiver->isWidgetType()) {
            QCoreApplication::instance()->removeEventFilter(this);
            // The other widgets of the window follow before the event loop goes on.
            QMetaObject::invokeMethod(this, &FirstPaintWatch::Report, Qt::QueuedConnection);
        }
        return false;
    }

private:
    static void Report() {
        if (write(STDOUT_FILENO, "p", 1) != 1) {
            _exit(1);
        }
    }
};

/// The plugin as Qt finds it.
class FirstPaintPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "FirstPaint.json")

public:
    QObject* create(const QString&, const QString&) override {
        return new FirstPaintWatch(QCoreApplication::instance());
    }
};

} // namespace rivenfall

#include "FirstPaint.moc"
