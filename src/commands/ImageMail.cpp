#include "commands/ImageMail.h"

#include "app/JpegSaves.h"
#include "app/Log.h"
#include "app/MailArguments.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/WebPages.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace quorvia::commands {

namespace {

/// Makes an empty file that only the user may read; a save keeps that. False when there is one already, or a
/// link.
bool makePrivate(const QString& path)
{
    constexpr mode_t ownerOnly = 0600;
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownerOnly);
    return file >= 0 && ::close(file) == 0;
}

} // namespace

QString promotionalLine()
{
    return QStringLiteral("<BRX><BRX>- This mail was sent with %1, the image viewer. You can get it at %2")
        .arg(app::productTitle(), app::webAddress(app::WebPage::Product));
}

ImageMail::ImageMail(Sinks sinks) : m_sinks(std::move(sinks)) {}

void ImageMail::send()
{
    const QString tool = m_sinks.toolPath();
    if (!platform::isFile(tool)) {
        platform::showMessage(m_sinks.owner,
                              {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                               QStringLiteral("Error: E-Mail application could not be found...")});
        return;
    }
    const QString file = m_sinks.ix1->FileName();
    if (!platform::isFile(file))
        return;
    const QString attached = attachment(file);
    if (attached.isEmpty()) {
        app::WriteLog(QStringLiteral("Not sent, since another image was opened meanwhile: ") + file);
        return;
    }
    const QStringList arguments =
        app::mailArguments({.subject = QStringLiteral("Image (") + app::SplitPathName(file, 2) + u')',
                            .hiddenBody = promotionalLine(),
                            .attachments = attached});
    const platform::ShellCode code = m_sinks.start(tool, arguments);
    if (code != platform::ShellCode::Ok)
        app::WriteLog(QStringLiteral("Not started: %1: %2").arg(tool, app::ShellMessage(int(code))));
}

/// The file to send for the current one, `file`: a JPEG of it when it is none and the user wants that. Empty
/// when it is not the current one any more once he has said so.
QString ImageMail::attachment(const QString& file)
{
    if (app::GetExtension(file).compare(QLatin1String("jpg"), Qt::CaseInsensitive) == 0)
        return file;
    if (platform::showMessage(m_sinks.owner,
                              {platform::BoxKind::Question, platform::BoxButtons::YesNo, app::productTitle(),
                               QStringLiteral("Would you like convert this image to the JPEG format?")}) !=
        platform::BoxAnswer::Yes)
        return file;
    if (m_sinks.ix1->FileName() != file)
        return {};
    const QString path = app::InstallPath() + QStringLiteral("qo_sendimage.jpg");
    return convertTo(path) ? path : file;
}

bool ImageMail::convertTo(const QString& path)
{
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    app::MakePath(app::InstallPath());
    QFile::remove(path);
    const bool isPrivate = makePrivate(path);
    ix1->SetSaveFileName(path);
    app::takeJpegSettings(*ix1);
    const bool saved = isPrivate && ix1->SaveFile();
    if (!saved) {
        app::WriteLog(QStringLiteral("Not converted for a mail: %1: %2")
                          .arg(path, isPrivate ? ix1->LastError()
                                               : QStringLiteral("no file of the user's own can be made")));
        if (isPrivate)
            QFile::remove(path); // it is empty
    }
    app::letPendingEventsRun();
    ix1->SetSaveFileName(QString());
    return saved;
}

} // namespace quorvia::commands
