#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

namespace rivenfall {

/// What every control of a window has: its place, whether it is shown and whether it answers.
///
/// A control wraps one widget. The widget's parent is the container's widget, and whichever of
/// control and container goes first takes the widget with it.
class Control : public QObject {
    Q_OBJECT

public:
    ~Control() override;

    /// True while the control answers the user.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    /// Shows or hides the control.
    void SetVisible(bool visible);

    /// Places the control in its container. All four values are twips; the size is not negative.
    void Move(int left, int top, int width, int height);

    /// Gives the control the keyboard, as soon as its window has it.
    void SetFocus();

    /// Brings the control in front of its siblings. @p position is 0, the front; no other exists.
    void ZOrder(int position);

    /// Sets the name under which a screen reader presents the control.
    void SetAccessibleName(const QString& name);

    /// The widget behind the control, for the platform's own code and for tests. Not owned by the
    /// caller; null once the container is gone.
    QWidget* Widget() const;

protected:
    /// Wraps @p widget and takes part in its ownership as told above.
    explicit Control(QWidget* widget);

private:
    QPointer<QWidget> pobjWidget;
};

} // namespace rivenfall
