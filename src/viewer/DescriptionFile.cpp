#include "viewer/DescriptionFile.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "engine/WholeFile.h"
#include "platform/FileStatus.h"

#include <QFile>
#include <QStringDecoder>

namespace quorvia::viewer {

namespace {

constexpr qint64 mostBytes = qint64(64) << 20; // more is no text that somebody wrote

Description unreadable(const QString& sidecar, const QString& why)
{
    app::WriteLog(QStringLiteral("Description not read: %1: %2").arg(sidecar, why));
    return {.state = Description::State::Unreadable};
}

void makeDirectoryAgain(const QString& sidecar)
{
    const QString directory = app::SplitPathName(sidecar, 1);
    if (app::FolderExists(directory))
        return;
    app::MakePath(directory);
    app::WriteLog(app::FolderExists(directory)
                      ? QStringLiteral("Description directory was missing and is made again: ") + directory
                      : QStringLiteral("Description directory cannot be made: ") + directory);
}

} // namespace

QString descriptionPath(const QString& image)
{
    return app::InstallPath() + QStringLiteral("Description/") + app::GetImageKey(image) +
           QStringLiteral(".txt");
}

QString descriptionText(const QByteArray& bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (text.endsWith(u'\n'))
        text.chop(1);
    return text;
}

QByteArray descriptionBytes(const QString& text)
{
    return text.toUtf8() + '\n';
}

Description readDescription(const QString& sidecar)
{
    if (!platform::pathExists(sidecar))
        return {};
    if (!platform::isRegularFile(sidecar)) // to open a pipe would wait for its other end
        return unreadable(sidecar, QStringLiteral("it is not a regular file"));
    QFile file(sidecar);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(sidecar, file.errorString());
    if (file.size() > mostBytes)
        return unreadable(sidecar, QStringLiteral("it is too large"));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return unreadable(sidecar, file.errorString());
    return {.state = Description::State::Read, .text = descriptionText(bytes)};
}

bool writeDescription(const QString& sidecar, const QString& text)
{
    makeDirectoryAgain(sidecar);
    const engine::Status written = engine::writeWholeFile(sidecar, descriptionBytes(text));
    if (written)
        engine::syncDirectoryOf(sidecar);
    else
        app::WriteLog(QStringLiteral("Description not saved: %1: %2").arg(sidecar, written.error().text));
    return bool(written);
}

} // namespace quorvia::viewer
