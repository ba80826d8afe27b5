// What a painted widget tells screen readers in place of what the toolkit would guess: its role, and that it
// can be pressed. A widget of ours inherits it beside QWidget; for one that has only a role to tell,
// speakAs() is enough. Nothing is made of it until a reader asks.
#pragma once

#include <QAccessible>

class QWidget;

namespace quorvia::platform {

class SpokenWidget
{
  public:
    SpokenWidget();
    virtual ~SpokenWidget() = default;
    SpokenWidget(const SpokenWidget&) = delete;
    SpokenWidget& operator=(const SpokenWidget&) = delete;

    virtual QAccessible::Role spokenRole() const = 0;
    /// Adds to the states that the toolkit knows.
    virtual void addSpokenState(QAccessible::State& state) const;
    /// Whether `pressSpoken` does anything.
    virtual bool isSpokenPressable() const { return false; }
    /// Does what a click of the user does. Is called only when the widget is enabled, and no dialog blocks
    /// it.
    virtual void pressSpoken() {}
    /// Whether the widgets within are a matter of drawing, of which a reader need not know.
    virtual bool hidesItsParts() const { return false; }
};

/// Lets `widget`, of a class of our own that the toolkit knows no better than as QWidget, tell that it is a
/// `role`.
void speakAs(QWidget* widget, QAccessible::Role role);
/// Lets windows of such classes tell that they are windows. Only the first call does anything; it must
/// come behind the making of the application, which announces what the toolkit knows.
void announceWindows();

} // namespace quorvia::platform
