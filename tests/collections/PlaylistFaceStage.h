// The panel in a window of its own, over the folder "pics", with both its faces.
#pragma once

#include "collections/BatchActions.h"
#include "collections/EntryView.h"
#include "collections/PanelTabs.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistHead.h"
#include "collections/PlaylistKeeper.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "support/QolPaths.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QTimerEvent>
#include <QtTest>

#include <memory>

namespace quorvia::test {

/// A window around the panel that takes drops itself, as the main window does.
class DropWindow : public QWidget
{
  public:
    DropWindow() { setAcceptDrops(true); }
};

/// The list stands from the start; `show` makes the panel.
class PlaylistFaceStage
{
  protected:
    void setUp()
    {
        m_bench = std::make_unique<ListBench>();
        m_list = std::make_unique<collections::PictureList>([this] { return m_bench->window.current; });
        m_commands = std::make_unique<collections::PlaylistCommands>(m_list.get());
        m_batch = std::make_unique<collections::BatchActions>(m_list.get());
        m_list->SetPattern(QStringLiteral("*.jpg"));
        m_list->startUp();
        m_list->setPath(in("pics"));
        m_list->finishRebuild();
    }

    void tearDown()
    {
        if (QWidget* const open = QApplication::activePopupWidget())
            open->close();
        m_around.reset();
        m_panel = nullptr;
        m_batch.reset();
        m_commands.reset();
        m_list.reset();
        m_bench.reset();
    }

    QString in(const char* name) const { return m_bench->in(name); }
    collections::PlaylistKeeper& playlist() const { return *m_list->playlist(); }
    QWidget* part(const char* name) const { return m_panel->findChild<QWidget*>(QLatin1String(name)); }
    collections::EntryView& lPlaylist() const { return *m_panel->findChild<collections::EntryView*>(); }
    collections::PlaylistHead& head() const { return *m_panel->findChild<collections::PlaylistHead*>(); }

    QString text(const char* label) const
    {
        return m_panel->findChild<QLabel*>(QLatin1String(label))->text();
    }

    QTimer& tAni() const { return *m_panel->findChild<QTimer*>(QStringLiteral("tAni")); }

    QStringList stored(const char* name) const
    {
        QFile file(collections::namedPlaylistPath(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? test::qolPaths(file.readAll()) : QStringList("(none)");
    }

    void makePlaylist(const char* name, const QStringList& files)
    {
        playlist().ClearPlaylist();
        playlist().AddPlaylistFiles(files);
        playlist().SaveQOLPlaylist(collections::namedPlaylistPath(QLatin1String(name)));
        playlist().fillNames();
    }

    void click(const char* name) { QTest::mouseClick(part(name), Qt::LeftButton); }
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QString menuName() { return menu() ? menu()->objectName() : QString(); }

    static QAction* row(const char* tool)
    {
        return menu() ? menu()->findChild<QAction*>(QLatin1String(tool)) : nullptr;
    }

    static QStringList rows()
    {
        QStringList names;
        for (const QAction* const action : menu()->actions()) {
            if (action->isVisible())
                names << (action->isSeparator() ? QStringLiteral("-") : action->objectName());
        }
        return names;
    }

    /// Opens the menu of the list and chooses a tool of it.
    void choose(const char* tool)
    {
        m_panel->RunTool(QStringLiteral("showcontextmenu"));
        QVERIFY2(row(tool), tool);
        row(tool)->trigger();
        menu()->close();
    }

    void tick() const
    {
        QTimerEvent event(tAni().timerId());
        QCoreApplication::sendEvent(&tAni(), &event);
    }

    /// Does at once what is left of the tabs' way.
    void endAnimation() const
    {
        for (int ticks = 0; ticks < 200 && tAni().isActive(); ++ticks)
            tick();
        QVERIFY(!tAni().isActive());
    }

    void showPlaylist()
    {
        m_list->SelectTab(1);
        m_list->finishRebuild();
        endAnimation();
    }

    void show()
    {
        m_around = std::make_unique<DropWindow>();
        m_panel =
            new collections::Playlist(m_list.get(), *m_commands, *m_batch, m_bench->window, m_around.get());
        m_around->resize(260, 600);
        m_panel->resize(260, 600);
        m_around->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_around.get()));
    }

    std::unique_ptr<ListBench> m_bench;
    std::unique_ptr<collections::PictureList> m_list;
    std::unique_ptr<collections::PlaylistCommands> m_commands;
    std::unique_ptr<collections::BatchActions> m_batch;
    std::unique_ptr<DropWindow> m_around;
    collections::Playlist* m_panel = nullptr;
};

} // namespace quorvia::test
