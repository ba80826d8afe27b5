#include "collections/EditingPage.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/EditedPlaylist.h"
#include "collections/EditorButtons.h"
#include "collections/EntryView.h"
#include "collections/Filmstrip.h"
#include "collections/FolderFiles.h"
#include "collections/HelpLine.h"
#include "collections/PlaylistCombo.h"
#include "platform/FolderTree.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>

namespace quorvia::collections {

namespace {

constexpr int filmDelay = 200; // milliseconds
constexpr int mostRows = 3;

} // namespace

EditingPage::EditingPage(EditedPlaylist* playlist, QWidget* parent)
    : QWidget(parent), m_playlist(playlist), m_pTitle(new QWidget(this)), m_lTitle(new QLabel(m_pTitle)),
      m_pFile(new QWidget(this)), m_lDirectory(new QLabel(m_pFile)),
      m_fDir(new platform::FolderTree(m_pFile)), m_files{&m_folderFiles, new EntryView(m_pFile),
                                                         new Filmstrip(m_pFile)},
      m_pFileTools(new QWidget(this)), m_pPlaylist(new QWidget(this)), m_lPTitle(new QLabel(m_pPlaylist)),
      m_cPlaylist(new PlaylistCombo(m_pPlaylist)), m_entries{playlist->files(), new EntryView(m_pPlaylist),
                                                             new Filmstrip(m_pPlaylist)},
      m_pPlaylistTools(new QWidget(m_pPlaylist)), m_pFooter(new QWidget(this)),
      m_lHelp(new HelpLine(m_pFooter)), m_lFinished(new QPushButton(m_pFooter)),
      m_iImg(new EditorButtons(m_pPlaylistTools, m_pFileTools, this)), m_mnuPopup(new QMenu(this)),
      m_tFilm(this)
{
    nameParts();
    makeMenu();
    setTabOrders();
    followLists();
    followStrip(m_files, QStringLiteral("Shows thumbnails of the selected 'filelist' images."));
    followStrip(m_entries, QStringLiteral("Shows thumbnails of the selected 'playlist' images."));
    followPointer();
    ShowTip();
    const QString last = app::read(app::setting::LastDirectory);
    // The first time it begins where the panel of the list is.
    const QString folder = app::FolderExists(last) ? last : app::read(app::setting::SelectedPath, QString());
    if (app::FolderExists(folder)) {
        m_fDir->setSelectedFolder(folder);
        showFolder(folder);
    }
}

void EditingPage::nameParts()
{
    struct Name
    {
        QWidget* part;
        const char* name;
        QString accessible;
    };
    const Name names[] = {{m_pTitle, "pTitle", {}},
                          {m_lTitle, "lTitle", {}},
                          {m_pFile, "pFile", {}},
                          {m_lDirectory, "lDirectory", {}},
                          {m_fDir, "fDir", tr("Folders")},
                          {m_files.list, "fFiles", tr("Images of the folder")},
                          {m_files.strip, "Filmstrip", tr("Selected images of the folder")},
                          {m_pFileTools, "pFileTools", {}},
                          {m_pPlaylist, "pPlaylist", {}},
                          {m_lPTitle, "lPTitle", {}},
                          {m_entries.list, "lPlaylist", tr("Images of the playlist")},
                          {m_entries.strip, "Filmstrip2", tr("Selected images of the playlist")},
                          {m_pPlaylistTools, "pPlaylistTools", {}},
                          {m_pFooter, "pFooter", {}},
                          {m_lHelp, "lHelp", {}},
                          {m_lFinished, "lFinished", QStringLiteral("Finished >>")}};
    for (const Name& each : names) {
        each.part->setObjectName(QLatin1String(each.name));
        each.part->setAccessibleName(each.accessible);
    }
    m_lTitle->setText(QStringLiteral("Playlist Editor"));
    QFont bold = font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_lTitle->setFont(bold);
    m_lDirectory->setText(QStringLiteral("Select File Directory:"));
    m_lPTitle->setText(QStringLiteral("Playlist:"));
    m_lFinished->setText(QStringLiteral("Finished >>"));
    m_lFinished->setToolTip(QStringLiteral("Save Playlist, and close editor window."));
    m_lFinished->setAutoDefault(true); // Enter presses it when it has the keys
    m_files.list->setModel(m_files.paths);
    m_entries.list->setModel(m_entries.paths);
    m_tFilm.setObjectName(QStringLiteral("tFilm"));
    m_tFilm.setSingleShot(true);
    m_tFilm.setInterval(filmDelay);
    connect(&m_tFilm, &QTimer::timeout, this, &EditingPage::showFilm);
    connect(m_lFinished, &QPushButton::clicked, this, &EditingPage::finished);
}

void EditingPage::makeMenu()
{
    m_mnuPopup->setObjectName(QStringLiteral("mnuPopup"));
    constexpr std::array names{"mnu1Row", "mnu2Row", "mnu3row"};
    const std::array captions{QStringLiteral("Display '1' Row"), QStringLiteral("Display '2' Rows"),
                              QStringLiteral("Display '3' Rows")};
    auto* const group = new QActionGroup(m_mnuPopup);
    for (int rows = 1; rows <= mostRows; ++rows) {
        QAction* const entry = m_mnuPopup->addAction(captions.at(std::size_t(rows) - 1));
        entry->setObjectName(QLatin1String(names.at(std::size_t(rows) - 1)));
        entry->setCheckable(true);
        entry->setChecked(rows == m_files.strip->NumberOfRows());
        group->addAction(entry);
        connect(entry, &QAction::triggered, this, [this, rows] { setRows(rows); });
    }
}

void EditingPage::setTabOrders()
{
    QWidget* before = m_fDir;
    const auto then = [&before](QWidget* next) { setTabOrder(std::exchange(before, next), next); };
    then(m_files.list);
    for (QWidget* const button : m_iImg->inTabOrder())
        then(button);
    for (QWidget* const next : {static_cast<QWidget*>(m_entries.list), static_cast<QWidget*>(m_cPlaylist),
                                static_cast<QWidget*>(m_files.strip), static_cast<QWidget*>(m_entries.strip),
                                static_cast<QWidget*>(m_lFinished)})
        then(next);
}

// --- places

void EditingPage::resizeEvent(QResizeEvent*)
{
    layOut();
}

void EditingPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
}

void EditingPage::layOut()
{
    const EditorPlaces places = layoutEditor({.control = app::inTwips(size()),
                                              .finished = app::inTwips(m_lFinished->sizeHint()),
                                              .caption = app::inTwips(m_lPTitle->sizeHint()),
                                              .title = app::toTwips(m_lTitle->sizeHint().height()),
                                              .combo = app::toTwips(m_cPlaylist->sizeHint().height()),
                                              .button = app::toTwips(EditorButtons::side())});
    const std::pair<QWidget*, QRect> parts[] = {{m_pTitle, places.pTitle},
                                                {m_lTitle, places.lTitle},
                                                {m_pFile, places.pFile},
                                                {m_lDirectory, places.lDirectory},
                                                {m_fDir, places.fDir},
                                                {m_files.list, places.fFiles},
                                                {m_files.strip, places.filmstrip},
                                                {m_pFileTools, places.pFileTools},
                                                {m_pPlaylist, places.pPlaylist},
                                                {m_lPTitle, places.lPTitle},
                                                {m_cPlaylist, places.cPlaylist},
                                                {m_entries.list, places.lPlaylist},
                                                {m_entries.strip, places.filmstrip2},
                                                {m_pPlaylistTools, places.pPlaylistTools},
                                                {m_pFooter, places.pFooter},
                                                {m_lHelp, places.lHelp},
                                                {m_lFinished, places.lFinished}};
    for (const auto& [part, place] : parts)
        part->setGeometry(app::toPixels(place));
    m_iImg->place(places.pImage);
}

} // namespace quorvia::collections
