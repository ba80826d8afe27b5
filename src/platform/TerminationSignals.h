// Turns SIGTERM and SIGINT into a call on the event loop, so that the program ends in its usual order.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvia::platform {

/// One at a time in a process; the signals' earlier handlers come back when it goes.
class TerminationSignals : public QObject
{
    Q_OBJECT

  public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

  Q_SIGNALS:
    /// One of the signals has come. Emitted from the event loop.
    void terminationAsked();

  private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quorvia::platform
