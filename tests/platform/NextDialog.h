// Waits beside a modal call for the dialog that it shows, and does something with it.
#pragma once

#include <QApplication>
#include <QTimer>

#include <functional>
#include <utility>

namespace quorvia::test {

/// Calls `act` with the next modal dialog of the type `Dialog`, as soon as it is on the screen. Only with one
/// of the objectName `name` where that is given: others may come first, such as the box of a long work.
template <class Dialog>
class NextDialog
{
  public:
    explicit NextDialog(std::function<void(Dialog&)> act, const QString& name = {}) : m_act(std::move(act))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, name] {
            auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible() || (!name.isEmpty() && dialog->objectName() != name))
                return;
            m_timer.stop();
            m_seen = true;
            m_act(*dialog);
        });
        m_timer.start(1);
    }
    bool seen() const { return m_seen; }

  private:
    std::function<void(Dialog&)> m_act;
    QTimer m_timer;
    bool m_seen = false;
};

} // namespace quorvia::test
