// A main window that does nothing, for parts that ask for one.
#pragma once

#include "app/MainWindow.h"

namespace quorvia::bench {

class IdleWindow final : public app::MainWindow
{
  public:
    void RunTool(const QString&) override {}
    void OpenX(const QString&) override {}
    void OpenDirX(const QString&) override {}
    QStringList recentDirectories() const override { return {}; }
    void GlobalKeyPress(int, int) override {}
    QString currentFile() const override { return {}; }
};

} // namespace quorvia::bench
