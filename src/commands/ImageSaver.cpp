#include "commands/ImageSaver.h"

#include "app/ImageTypes.h"
#include "app/JpegSaves.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/Trash.h"

#include <QFileInfo>
#include <QObject>

#include <utility>

namespace quorvia::commands {

ImageSaver::ImageSaver(Sinks sinks) : m_sinks(std::move(sinks)) {}

void ImageSaver::SaveImage(const QString& path, bool force)
{
    if (path.isEmpty() || (m_sinks.ix1->FileName().isEmpty() && !force))
        return;
    const bool replaces = mayReplace(path);
    m_sinks.redraw();
    if (replaces)
        write(path);
    if (platform::isFile(path))
        m_sinks.openX(path);
    else
        m_sinks.setCaption(app::GetAppDisplayName());
    m_sinks.updateToolbar();
}

/// False when what is at `path` must stay. What can be replaced, and is not this session's own, is in the
/// trash then. The file itself stays until the new one takes its name, so that no crash leaves neither.
bool ImageSaver::mayReplace(const QString& path) const
{
    const bool willFail = m_sinks.ix1->ImagePixelWidth() == 0 || platform::isReadOnly(path) ||
                          !engine::encoderFor(QFileInfo(path).suffix());
    if (!platform::isRegularFile(path) || willFail || m_own.value(path) == engine::PageKey::of(path, 1))
        return true;
    QString why;
    if (platform::keepInTrash(path, &why))
        return true;
    const bool hasPages = m_sinks.ix1->PageCount(path) > 1;
    app::WriteLog((hasPages ? QStringLiteral("Not saved: %1 has more than one page, and the trash did not "
                                             "take them: %2")
                            : QStringLiteral("Replaced without a copy in the trash: %1: %2"))
                      .arg(path, why));
    return !hasPages;
}

void ImageSaver::write(const QString& path)
{
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    ix1->SetSaveFileName(path);
    if (app::isJpegName(path))
        app::takeJpegSettings(*ix1);
    if (ix1->SaveFile()) {
        m_own.insert(path, engine::PageKey::of(path, 1));
        m_sinks.written(path);
    } else {
        takeAway(path, ix1->LastError());
    }
}

/// What a save that failed leaves at `path` is not the image that the user has before him, and goes. Never
/// for good, and not while there is no image at all that could be saved elsewhere.
void ImageSaver::takeAway(const QString& path, const QString& why) const
{
    QString line = QStringLiteral("Not saved: %1: %2").arg(path, why);
    const bool isHeld = m_sinks.ix1->ImagePixelWidth() > 0 && !m_sinks.ix1->Picture().isNull();
    if (isHeld && platform::isRegularFile(path)) {
        QString whyNot;
        if (platform::isReadOnly(path))
            line += QStringLiteral("; the old file is read-only and stays");
        else if (platform::trashUnlessReadOnly(path, &whyNot))
            line += QStringLiteral("; the old file is in the trash");
        else
            line += QStringLiteral("; the old file stays: %1").arg(whyNot);
    }
    app::WriteLog(line);
}

void ImageSaver::saveAs()
{
    const QString current = m_sinks.ix1->FileName();
    SaveImage(platform::chooseSaveFile(m_sinks.owner, {.title = QObject::tr("Save Image"),
                                                       .filters = app::imageFilters(),
                                                       .start = app::SplitPathName(current, 1),
                                                       .extension = QStringLiteral("bmp"),
                                                       .name = app::SplitPathName(current, 2),
                                                       .asksBeforeReplacing = true}),
              false);
}

} // namespace quorvia::commands
