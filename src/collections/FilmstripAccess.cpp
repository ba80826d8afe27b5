#include "collections/FilmstripAccess.h"

#include "app/mFile.h"
#include "collections/Filmstrip.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTimer>

#include <map>

namespace quorvia::collections {

namespace {

/// One picture. It stands for the entry that has its index at the time of the question.
class CellItem : public QAccessibleInterface, public QAccessibleActionInterface
{
  public:
    CellItem(Filmstrip* strip, int index) : m_strip(strip), m_index(index) {}

    bool isValid() const override { return m_index < m_strip->Images().size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_strip); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QRect rect() const override
    {
        const QRect cell = m_strip->cellRect(m_index);
        return {m_strip->mapToGlobal(cell.topLeft()), cell.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = true;
        state.focusable = true;
        state.selected = m_strip->currentIndex() == m_index;
        state.focused = state.selected && m_strip->hasFocus();
        state.disabled = !m_strip->isEnabled();
        state.invisible = !m_strip->isVisible();
        state.offscreen = !m_strip->rect().intersects(m_strip->cellRect(m_index));
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? app::SplitPathName(m_strip->Images().at(m_index), 2)
                                                      : QString();
    }

    void setText(QAccessible::Text, const QString&) override {}

    void* interface_cast(QAccessible::InterfaceType kind) override
    {
        return kind == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    void doAction(const QString& action) override
    {
        if (action != pressAction() || !isValid() || !m_strip->isEnabled())
            return;
        // Behind the answer: an image is opened, and the list may be another one then.
        QTimer::singleShot(0, m_strip, [strip = m_strip, index = m_index] {
            if (index < strip->Images().size())
                strip->choose(index);
        });
    }

  private:
    Filmstrip* m_strip; ///< the item goes with it
    int m_index;        ///< from 0
};

class StripItems : public QAccessibleWidget
{
  public:
    explicit StripItems(Filmstrip* strip) : QAccessibleWidget(strip, QAccessible::List), m_strip(strip) {}

    ~StripItems() override
    {
        for (const auto& [index, id] : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return int(m_strip->Images().size()); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto found = m_ids.find(index);
        if (found != m_ids.end())
            return QAccessible::accessibleInterface(found->second);
        auto* const item = new CellItem(m_strip, index); // from here on it is the toolkit's
        m_ids.emplace(index, QAccessible::registerAccessibleInterface(item));
        return item;
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (const auto& [index, id] : m_ids) {
            if (QAccessible::accessibleInterface(id) == wanted)
                return index;
        }
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        const QPoint at = m_strip->mapFromGlobal(QPoint(x, y));
        for (int index = 0; index < childCount(); ++index) {
            if (m_strip->cellRect(index).contains(at))
                return child(index);
        }
        return nullptr;
    }

    QAccessibleInterface* focusChild() const override
    {
        return m_strip->hasFocus() ? child(m_strip->currentIndex()) : nullptr;
    }

  private:
    Filmstrip* m_strip;
    mutable std::map<int, QAccessible::Id> m_ids; ///< of the pictures asked for so far, by their index
};

QAccessibleInterface* makeItems(const QString&, QObject* object)
{
    auto* const strip = qobject_cast<Filmstrip*>(object);
    return strip ? new StripItems(strip) : nullptr;
}

} // namespace

void announceFilmstrips()
{
    QAccessible::installFactory(makeItems); // knows the ones that it has
}

} // namespace quorvia::collections
