// A folder of pictures and a main window that writes down what it is asked for.
#pragma once

#include "app/MainWindow.h"
#include "app/mWindowsAPI.h"
#include "support/ScratchHome.h"

#include <QStringList>

namespace quorvia::test {

class RecordingWindow : public app::MainWindow
{
  public:
    void RunTool(const QString& name) override { tools.append(name); }
    void OpenX(const QString& path) override
    {
        opened.append(path);
        current = path;
    }
    void GlobalKeyPress(int keyCode, int shift) override
    {
        keys.append(QStringLiteral("%1:%2").arg(keyCode).arg(shift));
    }
    QString currentFile() const override { return current; }

    QStringList tools;
    QStringList opened;
    QStringList keys; ///< "code:mask"
    QString current;
};

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
