#include "collections/BatchActions.h"

#include "app/Log.h"
#include "app/MailArguments.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "collections/BatchConversion.h"
#include "collections/NamedCommand.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"
#include "platform/Trash.h"

#include <QFile>
#include <QPointer>

#include <algorithm>
#include <array>

namespace quorvia::collections {

namespace {

constexpr qsizetype longestArgument = 128 * 1024 - 1; // bytes; the system starts no program with a longer one

/// Those of `files` that can be told to the tool; the log has the others.
QStringList attachable(const QStringList& files)
{
    QStringList attached;
    for (const QString& file : files) {
        if (file.contains(QLatin1String(";/"))) // where the tool sees the next path
            app::WriteLog(QStringLiteral("Not sent, since its path holds \";/\": ") + file);
        else
            attached.append(file);
    }
    return attached;
}

bool fitsTheSystem(const QStringList& arguments)
{
    return std::all_of(arguments.begin(), arguments.end(), [](const QString& argument) {
        return QFile::encodeName(argument).size() <= longestArgument;
    });
}

/// Moves `files` to the trash, until the user breaks off.
void trashAll(const QStringList& files, QWidget* owner)
{
    platform::LongWork work(owner, QObject::tr("Deleting files..."));
    for (int i = 0; i < int(files.size()) && work.goOn(i, int(files.size())); ++i) {
        QString why;
        if (!platform::trashUnlessReadOnly(files.at(i), &why))
            app::WriteLog(QStringLiteral("Not deleted: %1: %2").arg(files.at(i), why));
    }
}

} // namespace

QString convertedName(const QString& file, const QString& ext)
{
    const QString old = app::GetExtension(file);
    return old.isEmpty() ? file : QString(file).replace(old, ext.toLower(), Qt::CaseSensitive);
}

BatchActions::BatchActions(PictureList* list, QObject* parent) : QObject(parent), m_list(list) {}

bool BatchActions::RunTool(const QString& sCommand)
{
    using Row = NamedCommand<BatchActions>;
    static constexpr std::array rows{
        Row{QLatin1String("emailimages"), &BatchActions::EmailImages},
        Row{QLatin1String("deleteselectedfiles"), &BatchActions::DeleteSelectedFiles},
    };
    return runNamed<BatchActions>(*this, rows, sCommand);
}

void BatchActions::ConvertImage(const QString& sExt)
{
    if (!canBegin() || !m_services.loadConversion)
        return;
    m_isBusy = true;
    const QPointer<BatchActions> alive = this;
    BatchConversion(m_list, m_services, selected()).run(sExt);
    if (alive)
        m_isBusy = false;
}

void BatchActions::EmailImages()
{
    if (!canBegin())
        return;
    const QString tool = m_services.mailTool();
    if (tool.isEmpty()) {
        platform::showMessage(m_list->playlist()->dialogOwner(),
                              {.title = app::productTitle(),
                               .text = QStringLiteral("Error: E-Mail applicaion could not be found...")});
        return;
    }
    const QStringList files = attachable(selectedFiles());
    if (files.isEmpty())
        return;
    const QStringList arguments =
        app::mailArguments({.subject = QStringLiteral("Image"), .attachments = files.join(u';')});
    if (!fitsTheSystem(arguments))
        app::WriteLog(QStringLiteral("Not sent: the paths of %1 files are too long").arg(files.size()));
    else if (!m_services.startTool(tool, arguments))
        app::WriteLog(QStringLiteral("Not sent, since it did not start: ") + tool);
}

void BatchActions::DeleteSelectedFiles()
{
    if (!canBegin())
        return;
    QStringList files = selectedFiles();
    files.removeDuplicates();
    const int position = m_list->ListIndex();
    const bool folders = m_list->FolderMode();
    const QString folder = m_list->path();
    m_isBusy = true;
    const QPointer<BatchActions> alive = this;
    trashAll(files, m_list->playlist()->dialogOwner());
    if (!alive)
        return;
    m_isBusy = false;
    m_list->RefreshPlaylist();
    m_list->finishRebuild();
    if (m_list->FolderMode() == folders && m_list->path() == folder) // else it is a place in another list
        pickAgain(position);
}

/// Makes the entry at `position`, or the last one before it, the current and the only selected one.
void BatchActions::pickAgain(int position)
{
    const int index = std::min(position, m_list->ListCount() - 1);
    if (index < 0)
        return;
    if (platform::isFile(m_list->ListFile(index)))
        m_list->SetListIndex(index);
    else // of a playlist: nothing is to be opened
        m_list->select(index);
}

std::vector<BatchEntry> BatchActions::selected() const
{
    std::vector<BatchEntry> entries;
    for (const RowRange& range : m_list->selection()) {
        for (int row = range.first; row <= range.last; ++row)
            entries.push_back({row, m_list->ListFile(row)});
    }
    return entries;
}

QStringList BatchActions::selectedFiles() const
{
    QStringList files;
    for (const RowRange& range : m_list->selection())
        files += m_list->files().mid(range.first, range.last - range.first + 1);
    return files;
}

bool BatchActions::canBegin() const
{
    return !m_isBusy && !m_list->isClosed() && !m_list->selection().empty();
}

} // namespace quorvia::collections
