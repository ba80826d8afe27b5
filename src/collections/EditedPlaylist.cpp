#include "collections/EditedPlaylist.h"

#include "app/Log.h"
#include "collections/EditorMoves.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistIntake.h"
#include "collections/QolText.h"

#include <QPointer>

namespace quorvia::collections {

bool EditedPlaylist::load(const QString& path, QWidget* owner)
{
    const QPointer<EditedPlaylist> alive = this;
    QolFile file = m_file; // the user may break off
    const std::optional<QStringList> files = file.load(path, owner);
    if (!alive || m_closed || !files)
        return false;
    m_file = std::move(file);
    m_files.setPaths(*files);
    m_changed = false;
    setName(playlistName(path));
    return true;
}

bool EditedPlaylist::save(const QString& path, QWidget* owner)
{
    if (m_closed)
        return !m_changed;
    switch (m_file.save(path, m_files.paths(), m_changed)) {
    case QolFile::Saved::Left:
        app::WriteLog(QStringLiteral("Playlist has been changed by another program: ") + path);
        load(path, owner);
        return true;
    case QolFile::Saved::Written:
        m_changed = false;
        break;
    case QolFile::Saved::Failed:
        break;
    }
    setName(playlistName(path));
    return !m_changed;
}

void EditedPlaylist::forget()
{
    m_file.forget();
    m_files.setPaths({});
    m_changed = false;
    setName(QString());
}

void EditedPlaylist::beginAnew()
{
    m_file.forget();
    clear();
}

void EditedPlaylist::renamed(const QString& name)
{
    m_file.renamed(namedPlaylistPath(name));
    setName(name);
}

void EditedPlaylist::clear()
{
    replace({});
}

void EditedPlaylist::add(const QString& file)
{
    if (m_closed || !canBeAdded(file))
        return;
    m_files.append(file);
    m_changed = true;
}

void EditedPlaylist::add(const QStringList& files, QWidget* owner)
{
    const QPointer<EditedPlaylist> alive = this;
    const std::optional<QStringList> added = addable(files, owner);
    if (alive && added && !added->isEmpty())
        replace(m_files.paths() + *added);
}

void EditedPlaylist::remove(const std::vector<RowRange>& rows)
{
    if (!rows.empty())
        replace(withoutRows(m_files.paths(), rows));
}

void EditedPlaylist::move(const RowMove& move)
{
    if (m_closed || move.blocks.empty())
        return;
    m_files.move(move);
    m_changed = true;
}

void EditedPlaylist::replace(const QStringList& files)
{
    if (m_closed)
        return;
    m_files.setPaths(files);
    m_changed = true;
}

void EditedPlaylist::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    Q_EMIT nameChanged(m_name);
}

} // namespace quorvia::collections
