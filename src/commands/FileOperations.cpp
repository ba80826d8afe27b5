#include "commands/FileOperations.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/Rename.h"
#include "platform/Trash.h"

#include <utility>

namespace quorvia::commands {

namespace {

void moveToTrash(const QString& path)
{
    QString why;
    if (!platform::trashUnlessReadOnly(path, &why))
        app::WriteLog(QStringLiteral("Not deleted: %1: %2").arg(path, why));
}

} // namespace

bool changesExtension(const QString& before, const QString& after)
{
    constexpr int length = 3;
    return before.right(length) != after.right(length);
}

FileOperations::FileOperations(Sinks sinks) : m_sinks(std::move(sinks)) {}

void FileOperations::refreshAndGoOn()
{
    m_sinks.refresh();
    if (!platform::isFile(m_sinks.currentFile()))
        m_sinks.next();
}

void FileOperations::deleteCurrent()
{
    const QString path = m_sinks.currentFile();
    if (!platform::isFile(path))
        return;
    moveToTrash(path);
    m_sinks.closeImage();
    refreshAndGoOn();
}

void FileOperations::deleteOfStrip()
{
    const QString path = m_sinks.fileOfMenu();
    if (!platform::isFile(path))
        return;
    if (path == m_sinks.currentFile())
        m_sinks.closeImage();
    moveToTrash(path);
    refreshAndGoOn();
    m_sinks.refreshStripEntry(path);
}

void FileOperations::renameCurrent()
{
    const QString path = m_sinks.currentFile();
    if (!platform::isFile(path))
        return;
    const QString before = app::SplitPathName(path, 2);
    const QString after = platform::askText(
        m_sinks.owner, {QStringLiteral("Rename File"), QStringLiteral("Rename File to"), before});
    if (after.isEmpty() || after == before)
        return;
    if (changesExtension(before, after) &&
        platform::showMessage(
            m_sinks.owner,
            {platform::BoxKind::Question, platform::BoxButtons::YesNoCancel,
             QStringLiteral("Change Extension?"),
             QStringLiteral("Are you sure you wish change the file extension?\n\nDoing so might cause "
                            "problems with opening the file...")}) != platform::BoxAnswer::Yes)
        return;
    renameTo(path, after);
}

void FileOperations::renameTo(const QString& path, const QString& name)
{
    QString why;
    if (!platform::renameInPlace(path, name, &why)) {
        app::WriteLog(QStringLiteral("Not renamed: %1 to %2: %3").arg(path, name, why));
        return;
    }
    const QString renamed = app::SplitPathName(path, 1) + name;
    m_sinks.renamed(path, renamed);
    m_sinks.refresh();
    m_sinks.openX(renamed);
}

} // namespace quorvia::commands
