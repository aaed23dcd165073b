#include "controls/Form.h"

#include "controls/CommandButton.h"
#include "controls/Twips.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QIcon>
#include <QKeyEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QPointer>
#include <QSessionManager>
#include <QTimer>
#include <QWindow>

namespace rivenfall {

namespace {

/// Eight points in twips: the size at which the fixed controls hold their captions.
constexpr int FontHeight = 160;

QIcon IconIn(const QString& resource) {
    QIcon icon;
    const QDir pictures(resource);
    for (const QString& picture : pictures.entryList(QDir::Files)) {
        icon.addFile(pictures.filePath(picture));
    }
    return icon;
}

} // namespace

/// The window behind a Form.
class FormWindow : public QMainWindow {
public:
    explicit FormWindow(Form& owner) : Owner(owner) {}

    /// Has @p home get the focus that nobody else can have.
    void SetHome(QWidget* home) {
        Home = home;
        Home->installEventFilter(this);
    }

    /// Raises the window, now and when the window manager has put it where it thinks fit.
    void BringToFront() {
        raise();
        RaiseIsDue = true;
        windowHandle()->installEventFilter(this);
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        // What lets the form go hides it, at once or when it has come to its end.
        event->setAccepted(Owner.MayUnload(FormUnloadMode::ControlMenu) && !isVisible());
    }

    /// On Wayland whoever likes maximises a window, and may end a program whose window doesn't
    /// become as large as told: one with a fixed size takes any, and gives it back at once unless
    /// it is to fill the screen.
    void showEvent(QShowEvent* event) override {
        QMainWindow::showEvent(event);
        if (QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
            windowHandle()->setMaximumSize({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX});
        }
    }

    void resizeEvent(QResizeEvent* event) override {
        QMainWindow::resizeEvent(event);
        if (!isMaximized() && !isFullScreen()) {
            resize(size().boundedTo(maximumSize()));
        }
        Q_EMIT Owner.Resize();
    }

    void changeEvent(QEvent* event) override {
        QMainWindow::changeEvent(event);
        if (event->type() == QEvent::WindowStateChange) {
            Q_EMIT Owner.Resize();
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (!Owner.PressButtonFor(event->key())) {
            QMainWindow::keyPressEvent(event);
        }
    }

    bool focusNextPrevChild(bool next) override {
        const QWidget* focused = focusWidget();
        if (!Home || !focused || focused->isEnabled()) {
            return QMainWindow::focusNextPrevChild(next);
        }
        // Not the Tab key: a control was disabled while it had the focus.
        if (Home->isEnabled()) {
            Home->setFocus(Qt::OtherFocusReason);
        }
        return Home->isEnabled();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == Home && event->type() == QEvent::EnabledChange && Home->isEnabled() &&
            !focusWidget()) {
            Home->setFocus(Qt::OtherFocusReason);
        }
        if (watched == windowHandle() && event->type() == QEvent::Expose && RaiseIsDue &&
            windowHandle()->isExposed()) {
            RaiseIsDue = false;
            QTimer::singleShot(0, this, &QWidget::raise);
        }
        return QMainWindow::eventFilter(watched, event);
    }

private:
    QPointer<QWidget> Home;
    bool RaiseIsDue = false;
    Form& Owner;
};

Form::Form(FormBorder border, int width, int height)
    : pobjWindow(std::make_unique<FormWindow>(*this)) {
    auto* client = new QWidget(pobjWindow.get());
    pobjWindow->setCentralWidget(client);
    // The client's alone: the menu bar has the font of its menus, the system's.
    QFont font = client->font();
    font.setPixelSize(PixelsFromTwips(FontHeight));
    client->setFont(font);
    if (border == FormBorder::Fixed) {
        client->setFixedSize(PixelsFromTwips(width), PixelsFromTwips(height));
        pobjWindow->layout()->setSizeConstraint(QLayout::SetFixedSize);
        pobjWindow->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                   Qt::WindowCloseButtonHint);
    } else {
        pobjWindow->resize(PixelsFromTwips(width), PixelsFromTwips(height));
    }
}

Form::~Form() = default;

QString Form::Caption() const {
    return pobjWindow->windowTitle();
}

void Form::SetCaption(const QString& caption) {
    pobjWindow->setWindowTitle(caption);
}

QString Form::Icon() const {
    return pstrIcon;
}

void Form::SetIcon(const QString& resource) {
    pstrIcon = resource;
    // All forms show the program's one icon, and decoding it takes a notable part of the start.
    if (QApplication::windowIcon().isNull()) {
        QApplication::setWindowIcon(IconIn(resource));
    }
    pobjWindow->setWindowIcon(QApplication::windowIcon());
}

bool Form::Visible() const {
    return pobjWindow->isVisible();
}

FormWindowState Form::WindowState() const {
    if (pobjWindow->isMinimized()) {
        return FormWindowState::Minimized;
    }
    return pobjWindow->isMaximized() ? FormWindowState::Maximized : FormWindowState::Normal;
}

int Form::ScaleWidth() const {
    return TwipsFromPixels(Client()->width());
}

int Form::ScaleHeight() const {
    return TwipsFromPixels(Client()->height());
}

void Form::Show() {
    // Only a window that comes anew may stand in front, minimised or not, without the keyboard.
    pobjWindow->hide();
    pobjWindow->setWindowState(pobjWindow->windowState() & ~Qt::WindowMinimized);
    pobjWindow->show();
}

void Form::Hide() {
    pobjWindow->hide();
}

void Form::ZOrder(int) {
    pobjWindow->BringToFront();
}

void Form::Unload() {
    if (MayUnload(FormUnloadMode::Code)) {
        Hide();
    }
}

void Form::Disable() {
    for (QAction* entry : pobjWindow->menuBar()->findChildren<QAction*>()) {
        entry->setEnabled(false);
    }
    pobjWindow->setEnabled(false);
}

QWidget* Form::Client() const {
    return pobjWindow->centralWidget();
}

QMainWindow* Form::Window() const {
    return pobjWindow.get();
}

void Form::SetDefaultButton(CommandButton& button) {
    pobjDefaultButton = &button;
}

void Form::SetCancelButton(CommandButton& button) {
    pobjCancelButton = &button;
}

void Form::SetHomeControl(Control& control) {
    pobjWindow->SetHome(control.Widget());
}

void Form::LeaveFocusWhenShown() {
    pobjWindow->setAttribute(Qt::WA_ShowWithoutActivating);
}

void Form::AskAtSessionEnd() {
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager& session) {
        // A dialog that waits for its answer can't be passed over, and a question about the
        // session is none of its answers.
        const bool dialogWaits = QApplication::activeModalWidget() != nullptr;
        if (session.allowsInteraction() &&
            (dialogWaits || !MayUnload(FormUnloadMode::SessionEnd))) {
            session.cancel();
        }
    });
}

bool Form::MayUnload(FormUnloadMode mode) {
    bool cancel = false;
    Q_EMIT QueryUnload(cancel, mode);
    return !cancel;
}

bool Form::PressButtonFor(int key) {
    CommandButton* button = nullptr;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        button = pobjDefaultButton;
    } else if (key == Qt::Key_Escape) {
        button = pobjCancelButton;
    }
    if (!button) {
        return false;
    }
    button->Press();
    return true;
}

} // namespace rivenfall
