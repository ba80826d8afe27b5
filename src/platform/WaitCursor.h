// The pointer of a program that waits.
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace quorvia::platform {

/// While this lives, the pointer says that the program waits.
class WaitCursor
{
  public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

} // namespace quorvia::platform
