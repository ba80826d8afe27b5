#include "controls/ScrollBarAccess.h"

#include "controls/ScrollBar.h"
#include "platform/AccessFactory.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace quorvia::controls {

namespace {

class ScrollBarAccess : public QAccessibleWidget, public QAccessibleValueInterface
{
  public:
    explicit ScrollBarAccess(ScrollBar* bar) : QAccessibleWidget(bar, QAccessible::ScrollBar), m_bar(bar) {}

    // The surfaces within it are a matter of drawing.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? QString::number(m_bar->Value()) : QAccessibleWidget::text(kind);
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return m_bar->Value(); }
    void setCurrentValue(const QVariant& value) override { m_bar->SetValue(value.toInt()); }
    QVariant maximumValue() const override { return m_bar->Max(); }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

  private:
    ScrollBar* m_bar;
};

} // namespace

void announceScrollBars()
{
    QAccessible::installFactory(platform::accessOf<ScrollBar, ScrollBarAccess>);
}

} // namespace quorvia::controls
