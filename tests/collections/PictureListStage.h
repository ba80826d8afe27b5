// A list of pictures over a folder of few files, without a window.
#pragma once

#include "app/mWindowsAPI.h"
#include "collections/PictureList.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QTest>
#include <QTimer>

#include <memory>

namespace quorvia::test {

/// The list with "*.jpg;*.png" for a pattern; `m_current` stands for the image on show.
class PictureListStage
{
  protected:
    void setUp()
    {
        m_home = std::make_unique<ScratchHome>();
        QVERIFY(QDir::setCurrent(in(""))); // as a desktop starts its programs
        app::openSettings();
        m_current.clear();
        for (const char* name :
             {"pics/b.JPG", "pics/A.png", "pics/c.jpg", "pics/notes.txt", "pics/sub/d.jpg"})
            m_home->write(QLatin1String(name), "x");
    }

    void tearDown()
    {
        app::closeSettings();
        QDir::setCurrent(m_startedIn);
        m_home.reset();
    }

    /// The list after the start, of no folder.
    std::unique_ptr<collections::PictureList> list()
    {
        auto made = std::make_unique<collections::PictureList>([this] { return m_current; });
        made->startUp();
        made->SetPattern(QStringLiteral("*.jpg;*.png"));
        made->finishRebuild();
        return made;
    }

    /// The same with the folder "pics" in it: A.png, b.JPG, c.jpg.
    std::unique_ptr<collections::PictureList> pics()
    {
        auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        return made;
    }

    QString in(const char* name) const { return m_home->path(QLatin1String(name)); }

    /// `path` with its "@" replaced by the home directory.
    QString full(QString path) const { return path.replace(QLatin1Char('@'), in("")); }

    static QTimer* timer(const collections::PictureList& list, const char* name)
    {
        return list.findChild<QTimer*>(QLatin1String(name));
    }

    /// What a tick of tAutoUpdate does.
    static void look(const collections::PictureList& list) { Q_EMIT timer(list, "tAutoUpdate")->timeout({}); }

    const QString m_startedIn = QDir::currentPath();
    std::unique_ptr<ScratchHome> m_home;
    QString m_current;
};

} // namespace quorvia::test
