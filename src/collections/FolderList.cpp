#include "collections/FolderList.h"

#include "app/mFile.h"
#include "app/Settings.h"

#include <QDir>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int rebuildDelay = 10; // milliseconds

bool comesBefore(const QString& a, const QString& b)
{
    const int order = a.compare(b, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a < b;
}

} // namespace

QStringList sortedFolderFiles(const QString& folder, const QString& pattern)
{
    QStringList files;
    if (folder.isEmpty())
        return files;
    app::ListFiles(folder, pattern, false, files);
    std::sort(files.begin(), files.end(), comesBefore);
    return files;
}

QString entryText(int number, const QString& path)
{
    return QStringLiteral("%1. %2 (%3)")
        .arg(QString::number(number), app::GetBaseName(path, false), app::GetExtension(path).toUpper());
}

FolderList::FolderList(std::function<QString()> currentFile, QObject* parent)
    : QObject(parent), m_currentFile(std::move(currentFile))
{
    m_tFolder.setSingleShot(true);
    m_tFolder.setInterval(rebuildDelay);
    connect(&m_tFolder, &QTimer::timeout, this, &FolderList::rebuild);
}

void FolderList::restoreSelectedPath()
{
    if (app::read(app::setting::cLoad) == 1)
        setPath(app::read(app::setting::SelectedPath, QString()));
}

void FolderList::setPath(const QString& folder)
{
    if (m_closed || !app::FolderExists(folder))
        return;
    const QString clean = QDir::cleanPath(folder);
    if (clean == m_path)
        return;
    m_path = clean;
    RefreshPlaylist();
}

void FolderList::SetPattern(const QString& pattern)
{
    m_pattern = pattern;
    RefreshPlaylist();
}

void FolderList::SetListIndex(int index)
{
    if (m_closed || index < -1 || index >= ListCount() || index == m_index)
        return;
    m_index = index;
    pick(index);
}

void FolderList::setListIndex(const QString& text)
{
    for (int i = 0; i < ListCount(); ++i) {
        if (List(i) == text) {
            SetListIndex(i);
            return;
        }
    }
}

QString FolderList::List(int index) const
{
    const QString file = ListFile(index);
    return file.isEmpty() ? QString() : entryText(index + 1, file).trimmed();
}

QString FolderList::ListFile(int index) const
{
    return m_files.value(index);
}

void FolderList::RefreshPlaylist()
{
    if (!m_closed)
        m_tFolder.start();
}

void FolderList::finishRebuild()
{
    if (m_tFolder.isActive())
        rebuild();
}

void FolderList::CloseDown()
{
    m_closed = true;
    m_tFolder.stop();
}

void FolderList::rebuild()
{
    m_tFolder.stop();
    m_files = sortedFolderFiles(m_path, m_pattern);
    m_index = -1;
    if (!m_files.isEmpty())
        app::save(app::setting::SelectedPath, m_path);
    Q_EMIT ListChanged();
}

void FolderList::pick(int index)
{
    const QString file = ListFile(index);
    if (!file.isEmpty() && file != m_currentFile())
        Q_EMIT OpenFile(file);
}

} // namespace quorvia::collections
