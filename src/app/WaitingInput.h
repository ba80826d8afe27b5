// Tells when the input that waits in the queues has been delivered. What was pressed while the program was
// busy stands there like what is pressed afterwards: the times that the events carry are no help, as they are
// missing in some, and count on by themselves where the toolkit repeats a held key.
#pragma once

#include <QObject>
#include <QTimer>

namespace quorvia::app {

class WaitingInput : public QObject
{
    Q_OBJECT

  public:
    explicit WaitingInput(QObject* parent = nullptr);

    /// Begins to wait until all input that came before this call has been delivered; delivered() tells of it,
    /// some turns of the event loop later. While it waits already, it begins anew.
    void letPass();
    bool isPassing() const { return m_turn.isActive(); }

  Q_SIGNALS:
    void delivered();

  private:
    void countTurn();

    QTimer m_turn;
    int m_turnsLeft = 0;
};

} // namespace quorvia::app
