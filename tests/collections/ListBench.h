// A folder of pictures and a main window that writes down what it is asked for.
#pragma once

#include "app/mWindowsAPI.h"
#include "support/RecordingWindow.h"
#include "support/ScratchHome.h"

namespace quorvia::test {

/// A home with the settings open in it and the folder "pics": a.jpg to e.jpg.
class ListBench
{
  public:
    ListBench()
    {
        app::openSettings();
        for (const char* name : {"a", "b", "c", "d", "e"})
            home.write(QStringLiteral("pics/%1.jpg").arg(QLatin1String(name)), "x");
    }
    ~ListBench() { app::closeSettings(); }
    ListBench(const ListBench&) = delete;
    ListBench& operator=(const ListBench&) = delete;

    QString in(const char* name) const { return home.path(QString::fromUtf8(name)); }

    ScratchHome home;
    RecordingWindow window;
};

} // namespace quorvia::test
