// The playlist that the editor has in hand, without a window: its files, its name and its file. Nothing is
// saved by itself. Dear is what looks at each of many files: a load, and adding a folder's.
#pragma once

#include "collections/PathModel.h"
#include "collections/QolFile.h"
#include "collections/RowRanges.h"

#include <QObject>

#include <vector>

class QWidget;

namespace quorvia::collections {

struct RowMove;

class EditedPlaylist : public QObject
{
    Q_OBJECT

  public:
    using QObject::QObject;

    /// The one record of the files: full paths, in order. One may stand there several times.
    PathModel* files() { return &m_files; }
    /// The name of the playlist in hand; empty when it has none.
    const QString& name() const { return m_name; }

    /// Takes the playlist in the file at `path` in hand: an empty one of that name when there is none. False,
    /// and nothing has changed, when the user broke off or the editor closed meanwhile. Long work belongs to
    /// `owner`.
    bool load(const QString& path, QWidget* owner);
    /// Writes the files to the file at `path`, whose name the playlist takes. What another program has
    /// written there stays when nothing has changed here, and is loaded. False when something that the user
    /// changed is not on the disk.
    bool save(const QString& path, QWidget* owner);
    /// A playlist without files and name.
    void forget();
    /// Leaves no file, and the next save writes a playlist of its own.
    void beginAnew();
    /// The file of the playlist in hand has been given the name `name`.
    void renamed(const QString& name);

    void clear();
    /// Appends a file that exists; any other is passed over.
    void add(const QString& file);
    /// The same with many, in their order. None is added when the user breaks off.
    void add(const QStringList& files, QWidget* owner);
    /// Takes out the entries at `rows` (0-based).
    void remove(const std::vector<RowRange>& rows);
    void move(const RowMove& move);

    /// Every later load and change is shut out.
    void closeDown() { m_closed = true; }

  Q_SIGNALS:
    void nameChanged(const QString& name);

  private:
    void setName(const QString& name);
    void replace(const QStringList& files);

    PathModel m_files;
    QString m_name;
    QolFile m_file;
    bool m_changed = false; ///< the files, since they were loaded or saved
    bool m_closed = false;
};

} // namespace quorvia::collections
