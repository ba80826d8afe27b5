#include "platform/SpokenWidget.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <typeinfo>

namespace quorvia::platform {

namespace {

constexpr char roleProperty[] = "spokenRole";

/// The widget as what it says itself. It outlives that side of it by a moment: while the toolkit's part of
/// the widget ends it may still be asked, and is then the toolkit's own.
class SpokenAccess : public QAccessibleWidget
{
  public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override
    {
        const SpokenWidget* const said = spoken();
        return said ? said->spokenRole() : QAccessibleWidget::role();
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (const SpokenWidget* const said = spoken())
            said->addSpokenState(state);
        return state;
    }

    int childCount() const override { return hidesParts() ? 0 : QAccessibleWidget::childCount(); }

    QAccessibleInterface* child(int index) const override
    {
        return hidesParts() ? nullptr : QAccessibleWidget::child(index);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return hidesParts() ? -1 : QAccessibleWidget::indexOfChild(child);
    }

    QStringList actionNames() const override
    {
        const QStringList ofToolkit = QAccessibleWidget::actionNames();
        return pressable(widget()) ? QStringList{pressAction()} + ofToolkit : ofToolkit;
    }

    void doAction(const QString& action) override
    {
        if (action != pressAction()) {
            QAccessibleWidget::doAction(action);
            return;
        }
        // Behind the answer: what a press does may last, or end the widget.
        QTimer::singleShot(0, widget(), [pressed = widget()] {
            if (SpokenWidget* const said = pressable(pressed))
                said->pressSpoken();
        });
    }

  private:
    /// Null once the widget is only the toolkit's: the language says so of what is being destroyed.
    static SpokenWidget* spokenOf(QWidget* widget) { return dynamic_cast<SpokenWidget*>(widget); }

    SpokenWidget* spoken() const { return spokenOf(widget()); }

    bool hidesParts() const
    {
        const SpokenWidget* const said = spoken();
        return said && said->hidesItsParts();
    }

    /// Whether a dialog is up that keeps the mouse from the widget too.
    static bool isBlocked(const QWidget* widget)
    {
        const QWidget* const dialog = QApplication::activeModalWidget();
        return dialog && dialog != widget && !dialog->isAncestorOf(widget);
    }

    /// The widget, if a press does anything now.
    static SpokenWidget* pressable(QWidget* widget)
    {
        SpokenWidget* const said = spokenOf(widget);
        return said && said->isSpokenPressable() && widget->isEnabled() && !isBlocked(widget) ? said
                                                                                              : nullptr;
    }
};

/// Asked for before it gets a parent, a widget is a window only for a while.
class PlainAccess : public QAccessibleWidget
{
  public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override
    {
        if (const QVariant role = widget()->property(roleProperty); role.isValid())
            return QAccessible::Role(role.toInt());
        return widget()->isWindow() ? QAccessible::Window : QAccessibleWidget::role();
    }
};

/// Is asked for each class of the object, the most derived first: what the toolkit knows of it comes before
/// QWidget.
QAccessibleInterface* makeAccess(const QString& className, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    if (widget && dynamic_cast<SpokenWidget*>(widget))
        return new SpokenAccess(widget);
    // Of no class but QWidget is each widget that is being destroyed. What is made for one of those would
    // stay in the toolkit's books; the toolkit itself, which is asked next, can tell them from the living.
    if (!widget || className != QLatin1String("QWidget") || typeid(*widget) == typeid(QWidget))
        return nullptr;
    return new PlainAccess(widget);
}

} // namespace

SpokenWidget::SpokenWidget()
{
    announceWindows();
}

void speakAs(QWidget* widget, QAccessible::Role role)
{
    announceWindows();
    widget->setProperty(roleProperty, int(role));
}

void announceWindows()
{
    QAccessible::installFactory(makeAccess); // knows the ones that it has
}

void SpokenWidget::addSpokenState(QAccessible::State&) const {}

} // namespace quorvia::platform
