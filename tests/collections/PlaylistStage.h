// The panel of the list of pictures on the screen, over the folder "pics".
#pragma once

#include "app/Colors.h"
#include "collections/BatchActions.h"
#include "collections/EntryView.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "platform/FolderTree.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace quorvia::test {

/// The list is made by `list`, its panel by `show`; what the list opens is in `m_opened`.
class PlaylistStage
{
  protected:
    void setUp()
    {
        m_bench = std::make_unique<ListBench>();
        QVERIFY(QDir::setCurrent(in(""))); // as a desktop starts its programs
    }

    void tearDown()
    {
        m_panel.reset();
        m_opened.reset();
        m_batch.reset();
        m_commands.reset();
        m_list.reset();
        QDir::setCurrent(m_startedIn);
        m_bench.reset();
    }

    QString in(const char* name) const { return m_bench->in(name); }
    platform::FolderTree& ftv() const
    {
        return *m_panel->findChild<platform::FolderTree*>(QStringLiteral("ftv"));
    }

    collections::EntryView& lPlaylist() const
    {
        return *m_panel->findChild<collections::EntryView*>(QStringLiteral("lPlaylist"));
    }

    QPushButton& cmdDir() const { return *m_panel->findChild<QPushButton*>(QStringLiteral("cmdDir")); }

    QPushButton& cmdPlaylist() const
    {
        return *m_panel->findChild<QPushButton*>(QStringLiteral("cmdPlaylist"));
    }

    /// The name of the menu that is open; empty when none is.
    static QString menu()
    {
        const QWidget* const open = QApplication::activePopupWidget();
        return open ? open->objectName() : QString();
    }

    static QPoint menuPlace() { return QApplication::activePopupWidget()->pos(); }

    static void closeMenu()
    {
        if (QWidget* const open = QApplication::activePopupWidget())
            open->close();
    }

    QString info() const { return m_panel->findChild<QLabel*>(QStringLiteral("lPlaylistInfo"))->text(); }
    QString shown(int row) const { return lPlaylist().model()->index(row, 0).data().toString(); }

    QList<int> selected() const
    {
        QList<int> rows;
        for (const QModelIndex& index : lPlaylist().selectionModel()->selectedIndexes())
            rows.append(index.row());
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    QPoint place(int row) const
    {
        return lPlaylist().visualRect(lPlaylist().model()->index(row, 0)).center();
    }

    void click(int row, Qt::KeyboardModifiers held = {}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(lPlaylist().viewport(), button, held, place(row));
    }

    bool isInSight(int row) const { return lPlaylist().viewport()->rect().contains(place(row)); }

    /// The list of `folder` (may be empty) as it stands after the start, not yet shown.
    void list(const QString& folder)
    {
        m_list = std::make_unique<collections::PictureList>([this] { return m_bench->window.current; });
        m_commands = std::make_unique<collections::PlaylistCommands>(m_list.get());
        m_batch = std::make_unique<collections::BatchActions>(m_list.get());
        m_opened = std::make_unique<QSignalSpy>(m_list.get(), &collections::PictureList::OpenFile);
        m_list->SetPattern(QStringLiteral("*.jpg"));
        m_list->startUp();
        m_list->setPath(folder);
        m_list->finishRebuild();
    }

    /// The same with its panel on the screen; the list of "pics" when there is none.
    void show()
    {
        if (!m_list)
            list(in("pics"));
        m_panel =
            std::make_unique<collections::Playlist>(m_list.get(), *m_commands, *m_batch, m_bench->window);
        m_panel->resize(240, 640);
        m_panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
    }

    const QString m_startedIn = QDir::currentPath();
    std::unique_ptr<ListBench> m_bench;
    std::unique_ptr<collections::PictureList> m_list;
    std::unique_ptr<collections::PlaylistCommands> m_commands;
    std::unique_ptr<collections::BatchActions> m_batch;
    std::unique_ptr<collections::Playlist> m_panel;
    std::unique_ptr<QSignalSpy> m_opened;
};

} // namespace quorvia::test
