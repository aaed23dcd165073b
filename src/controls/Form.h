#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QMainWindow;
class QWidget;

namespace rivenfall {

class CommandButton;
class Control;
class FormWindow;

/// Whether the user can change a form's size.
enum class FormBorder {
    Fixed,  ///< No.
    Sizable ///< Yes.
};

/// The values of a form's WindowState.
enum class FormWindowState {
    Normal = 0,    ///< Neither of the two below.
    Minimized = 1, ///< Put away as an icon.
    Maximized = 2  ///< As large as the screen.
};

/// Why a form is asked to unload: the values of UnloadMode.
enum class FormUnloadMode {
    ControlMenu = 0, ///< The user closes the window.
    Code = 1,        ///< The program's own code unloads it.
    SessionEnd = 2   ///< The user's session ends.
};

/// A window with controls. It is made hidden; whoever makes it owns it.
class Form : public QObject {
    Q_OBJECT

public:
    ~Form() override;

    /// The text of the title bar.
    QString Caption() const;
    void SetCaption(const QString& caption);

    /// The resource folder that holds the form's icon, one picture a size.
    QString Icon() const;
    void SetIcon(const QString& resource);

    /// True while the form is shown, minimised or not.
    bool Visible() const;

    /// Whether the window is put away or fills the screen.
    FormWindowState WindowState() const;

    /// The client area's size in twips.
    int ScaleWidth() const;
    int ScaleHeight() const;

    /// Shows the form anew, not modal. A minimised one comes back.
    void Show();

    /// Takes the form off the screen; its objects stay.
    void Hide();

    /// Brings the form that was just shown to the front of the window order. @p position is 0, the
    /// front; no other exists.
    void ZOrder(int position);

    /// Asks QueryUnload with FormUnloadMode::Code and hides the form if nothing objects. The form's
    /// objects stay until its owner lets go of it.
    void Unload();

    /// Has no control and no menu of the form answer the user any more. Called when the form is
    /// about to go and stays on the screen until what goes on has ended.
    void Disable();

    /// The container of the form's own controls and menus. Owned by the form.
    QWidget* Client() const;

    /// The window behind the form, for the platform's own code and for tests. Owned by the form.
    QMainWindow* Window() const;

Q_SIGNALS:
    /// The form is about to go for the reason @p UnloadMode. Writing True to @p Cancel keeps it.
    /// Otherwise who receives this hides the form, at once or later: closing it doesn't.
    void QueryUnload(bool& Cancel, rivenfall::FormUnloadMode UnloadMode);

    /// The client area has another size, or the window another state.
    void Resize();

protected:
    /// @p width and @p height are the client area's size in twips.
    Form(FormBorder border, int width, int height);

    /// The button that Enter presses while it is enabled, wherever the focus is, unless a button
    /// has it.
    void SetDefaultButton(CommandButton& button);

    /// The button that Escape presses while it is enabled.
    void SetCancelButton(CommandButton& button);

    /// Gives the focus to @p control, a control of the form, whenever the one that has it is
    /// disabled. While @p control is disabled itself, it waits until it isn't.
    void SetHomeControl(Control& control);

    /// Has Show leave the keyboard to the window that the user is working in.
    void LeaveFocusWhenShown();

    /// Has the end of the user's session ask QueryUnload; a Cancel then keeps the session.
    void AskAtSessionEnd();

private:
    friend class FormWindow;

    bool MayUnload(FormUnloadMode mode);
    bool PressButtonFor(int key);

    std::unique_ptr<FormWindow> pobjWindow;
    QString pstrIcon;
    CommandButton* pobjDefaultButton = nullptr;
    CommandButton* pobjCancelButton = nullptr;
};

} // namespace rivenfall
