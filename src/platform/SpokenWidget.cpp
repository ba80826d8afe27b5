#include "platform/SpokenWidget.h"

#include <QAccessibleWidget>
#include <QTimer>
#include <QVariant>
#include <QWidget>

namespace quorvia::platform {

namespace {

constexpr char roleProperty[] = "spokenRole";

class SpokenAccess : public QAccessibleWidget
{
  public:
    SpokenAccess(QWidget* widget, SpokenWidget* spoken) : QAccessibleWidget(widget), m_spoken(spoken) {}

    QAccessible::Role role() const override { return m_spoken->spokenRole(); }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        m_spoken->addSpokenState(state);
        return state;
    }

    int childCount() const override
    {
        return m_spoken->hidesItsParts() ? 0 : QAccessibleWidget::childCount();
    }

    QAccessibleInterface* child(int index) const override
    {
        return m_spoken->hidesItsParts() ? nullptr : QAccessibleWidget::child(index);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return m_spoken->hidesItsParts() ? -1 : QAccessibleWidget::indexOfChild(child);
    }

    QStringList actionNames() const override
    {
        const QStringList ofToolkit = QAccessibleWidget::actionNames();
        return m_spoken->isSpokenPressable() && widget()->isEnabled() ? QStringList{pressAction()} + ofToolkit
                                                                      : ofToolkit;
    }

    void doAction(const QString& action) override
    {
        if (action != pressAction()) {
            QAccessibleWidget::doAction(action);
            return;
        }
        if (!m_spoken->isSpokenPressable() || !widget()->isEnabled())
            return;
        // Behind the answer: what a press does may last, or end the widget.
        QTimer::singleShot(0, widget(), [spoken = m_spoken] { spoken->pressSpoken(); });
    }

  private:
    SpokenWidget* m_spoken; ///< is the widget itself
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
    if (auto* const spoken = dynamic_cast<SpokenWidget*>(object); spoken && widget)
        return new SpokenAccess(widget, spoken);
    if (!widget || className != QLatin1String("QWidget"))
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
