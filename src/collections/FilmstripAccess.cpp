#include "collections/FilmstripAccess.h"

#include "app/mFile.h"
#include "collections/Filmstrip.h"
#include "platform/AccessFactory.h"
#include "platform/SpokenItems.h"

#include <QTimer>

namespace quorvia::collections {

namespace {

/// One picture.
class CellItem : public platform::SpokenItem
{
  public:
    CellItem(Filmstrip* strip, int index) : SpokenItem(strip, index, QAccessible::ListItem), m_strip(strip) {}

    bool isValid() const override { return place() < m_strip->Images().size(); }

    QRect rect() const override
    {
        const QRect cell = m_strip->cellRect(place());
        return {m_strip->mapToGlobal(cell.topLeft()), cell.size()};
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? app::SplitPathName(m_strip->Images().at(place()), 2)
                                                      : QString();
    }

  protected:
    bool isSelected() const override { return m_strip->currentIndex() == place(); }
    bool isInSight() const override { return m_strip->rect().intersects(m_strip->cellRect(place())); }

    void press() override
    {
        // Behind the answer: an image is opened, and the list may be another one then.
        const QString file = m_strip->Images().at(place());
        QTimer::singleShot(0, m_strip, [strip = m_strip, index = place(), file] {
            if (strip->Images().value(index) == file)
                strip->choose(index);
        });
    }

  private:
    Filmstrip* m_strip;
};

class StripItems : public platform::SpokenItems
{
  public:
    explicit StripItems(Filmstrip* strip) : SpokenItems(strip, QAccessible::List), m_strip(strip)
    {
        follow(strip, &Filmstrip::listChanged);
    }

    int childCount() const override { return int(m_strip->Images().size()); }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(m_strip->indexAt(m_strip->mapFromGlobal(QPoint(x, y))));
    }

    QAccessibleInterface* focusChild() const override
    {
        return m_strip->hasFocus() ? child(m_strip->currentIndex()) : nullptr;
    }

  protected:
    platform::SpokenItem* makeItem(int index) const override { return new CellItem(m_strip, index); }

  private:
    Filmstrip* m_strip;
};

} // namespace

void announceFilmstrips()
{
    QAccessible::installFactory(platform::accessOf<Filmstrip, StripItems>);
}

} // namespace quorvia::collections
