// What the tests of commands that change files share: a main window over three pictures, and a trash.
#pragma once

#include "support/ScratchTrash.h"
#include "viewer/PictureStage.h"

namespace quorvia::test {

class CommandStage : protected PictureStage
{
  protected:
    /// A fresh home and an empty trash; no window yet.
    void setUp()
    {
        m_trash.clear();
        PictureStage::setUp();
    }

    /// A window for a command line, with its menus and its list.
    viewer::frmImageView& show(const QStringList& arguments)
    {
        m_window = &m_bench->load(arguments);
        m_window->OpenMenuX(true);
        m_window->list()->finishRebuild();
        return *m_window;
    }
    void run(const char* command) const { m_window->RunTool(QLatin1String(command)); }
    /// What the log says of steps that failed.
    QStringList failures() const { return m_bench->logTexts().filter(QStringLiteral("Not ")); }

    ScratchTrash m_trash;
    viewer::frmImageView* m_window = nullptr;
};

} // namespace quorvia::test
