// Looks which of many files are there, some at a time between the events, so that no window waits for it.
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

namespace quorvia::collections {

class PresenceWalk : public QObject
{
    Q_OBJECT

  public:
    /// Hears of a file (0-based) whether it is there, in the order of the list. False ends the walk.
    /// It does not begin another one itself.
    using Visitor = std::function<bool(int index, bool isThere)>;

    explicit PresenceWalk(QObject* parent = nullptr);

    /// Begins a walk over `files`; one that is under way ends. The first files are looked at before this
    /// returns.
    void begin(const QStringList& files, Visitor visitor);
    void stop();
    bool isUnderWay() const { return m_next.isActive(); }

  private:
    void walkOn();

    QStringList m_files;
    Visitor m_visitor;
    int m_index = 0;
    QTimer m_next;
};

} // namespace quorvia::collections
