// A main window that writes down what it is asked for.
#pragma once

#include "app/MainWindow.h"

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
    void OpenDirX(const QString& directory) override { openedDirectories.append(directory); }
    QStringList recentDirectories() const override { return recent; }
    void GlobalKeyPress(int keyCode, int shift) override
    {
        keys.append(QStringLiteral("%1:%2").arg(keyCode).arg(shift));
    }
    QString currentFile() const override { return current; }

    QStringList tools;
    QStringList opened;
    QStringList openedDirectories;
    QStringList recent;
    QStringList keys; ///< "code:mask"
    QString current;
};

} // namespace quorvia::test
