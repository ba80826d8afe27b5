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

#include <algorithm>
#include <array>
#include <utility>

namespace quorvia::commands {

namespace {

constexpr char defaultExtension[] = "bmp";

/// Whether there is a format for the name of `path`.
bool isWritten(const QString& path)
{
    return engine::encoderFor(QFileInfo(path).suffix());
}

/// Whether a file named like `path` may hold more than is seen of it at once: animations, sizes, drawings.
bool mayHoldMore(const QString& path)
{
    constexpr std::array extensions{"gif", "ico", "wmf", "wpg"};
    const QString extension = QFileInfo(path).suffix().toLower();
    return std::any_of(extensions.begin(), extensions.end(),
                       [&extension](const char* one) { return extension == QLatin1String(one); });
}

} // namespace

ImageSaver::ImageSaver(Sinks sinks) : m_sinks(std::move(sinks)) {}

void ImageSaver::SaveImage(const QString& path, bool force)
{
    if (path.isEmpty() || (m_sinks.ix1->FileName().isEmpty() && !force))
        return;
    QString withoutCopy;
    const bool replaces = mayReplace(path, withoutCopy);
    m_sinks.redraw();
    if (replaces && write(path)) {
        if (!withoutCopy.isEmpty())
            app::WriteLog(withoutCopy);
        m_sinks.openX(path);
    } else {
        m_sinks.setCaption(app::GetAppDisplayName()); // and the image stays, which can be saved elsewhere
    }
    m_sinks.updateToolbar();
}

/// False when what is at `path` must stay. What can be replaced, and is not this session's own state of the
/// same image, is in the trash then, or `withoutCopy` has a line for the log. The file itself stays until the
/// new one takes its name, so that no crash leaves neither.
bool ImageSaver::mayReplace(const QString& path, QString& withoutCopy) const
{
    const engine::ImageEngine& ix1 = *m_sinks.ix1;
    const bool willFail = ix1.ImagePixelWidth() == 0 || platform::isReadOnly(path) || !isWritten(path);
    const bool isOwn = path == ix1.FileName() && m_own.value(path) == engine::PageKey::of(path, 1);
    if (!platform::isRegularFile(path) || willFail || isOwn)
        return true;
    QString why;
    if (platform::keepInTrash(path, &why))
        return true;
    if (mayHoldMore(path) || ix1.PageCount(path) > 1) {
        app::WriteLog(QStringLiteral("Not saved: %1 may hold more than one picture, and the trash did not "
                                     "take it: %2")
                          .arg(path, why));
        return false;
    }
    withoutCopy = QStringLiteral("Replaced without a copy in the trash: %1: %2").arg(path, why);
    return true;
}

bool ImageSaver::write(const QString& path)
{
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    ix1->SetSaveFileName(path);
    if (app::isJpegName(path))
        app::takeJpegSettings(*ix1);
    if (!ix1->SaveFile()) {
        takeAway(path, ix1->LastError());
        return false;
    }
    m_own.insert(path, engine::PageKey::of(path, 1));
    m_sinks.written(path);
    return true;
}

/// What a save that failed leaves at `path` is not the image that the user has before him, and goes. Never
/// for good, and not when it was clear from the start that nothing could be written.
void ImageSaver::takeAway(const QString& path, const QString& why) const
{
    QString line = QStringLiteral("Not saved: %1: %2").arg(path, why);
    const bool wasTried =
        isWritten(path) && m_sinks.ix1->ImagePixelWidth() > 0 && !m_sinks.ix1->Picture().isNull();
    if (wasTried && platform::isRegularFile(path)) {
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
    const engine::ImageEngine& ix1 = *m_sinks.ix1;
    const QString current = ix1.FileName();
    const QString chosen =
        platform::chooseSaveFile(m_sinks.owner, {.title = QObject::tr("Save Image"),
                                                 .filters = app::imageFilters(),
                                                 .start = app::SplitPathName(current, 1),
                                                 .extension = QLatin1String(defaultExtension),
                                                 .name = app::SplitPathName(current, 2),
                                                 .asksBeforeReplacing = true});
    if (chosen.isEmpty())
        return;
    if (ix1.FileName() != current) {
        app::WriteLog(QStringLiteral("Not saved, since another image was opened meanwhile: ") + chosen);
        return;
    }
    const bool hasNoFile = current.isEmpty() && ix1.ImagePixelWidth() > 0; // as a paste that was not written
    SaveImage(isWritten(chosen) ? chosen : chosen + u'.' + QLatin1String(defaultExtension), hasNoFile);
}

} // namespace quorvia::commands
