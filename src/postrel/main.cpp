// The mail tool that comes with the viewer: hands subject, text and files to the user's own mail program,
// through the desktop's xdg-email, and tells him when that cannot be done. It sends nothing itself.
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "postrel/MailRequest.h"

#include <QApplication>
#include <QProcess>

#include <cstdio>
#include <cstdlib>

using namespace quorvia;

namespace {

constexpr int wrongUse = 1; // as xdg-email has them
constexpr int fileMissing = 2;
constexpr int notComposed = 4;

QStringList argumentsOf(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// Tells `text`, in a box where there is a screen for it.
int fail(int code, const QString& text, int argc, char* argv[])
{
    std::fprintf(stderr, "postrel: %s\n", qPrintable(text));
    const bool hasScreen = std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY");
    if (hasScreen) {
        const QApplication application(argc, argv);
        platform::showMessage(nullptr, {platform::BoxKind::Information, platform::BoxButtons::Ok,
                                        QStringLiteral("Postrel"), text});
    }
    return code;
}

} // namespace

int main(int argc, char* argv[])
{
    const QStringList words = argumentsOf(argc, argv);
    if (words.isEmpty()) {
        std::fprintf(stderr, "Usage: postrel /subject:TEXT /hiddenbody:TEXT /attachments:PATH[;PATH...]\n");
        return wrongUse;
    }
    const postrel::MailRequest request = postrel::mailRequest(words, platform::isRegularFile);
    for (const QString& path : request.attachments) {
        if (!platform::isRegularFile(path))
            return fail(fileMissing,
                        QApplication::translate("Postrel", "The file to send is not there:\n%1").arg(path),
                        argc, argv);
    }
    QProcess composer;
    composer.setProcessChannelMode(QProcess::ForwardedChannels);
    composer.start(QStringLiteral("xdg-email"), postrel::composerArguments(request));
    constexpr int forEver = -1; // some mail programs stay while their window is open
    if (composer.waitForStarted() && composer.waitForFinished(forEver) &&
        composer.exitStatus() == QProcess::NormalExit && composer.exitCode() == 0)
        return 0;
    return fail(notComposed,
                QApplication::translate("Postrel",
                                        "No mail program could be opened for the message. Choose one in the "
                                        "settings of the desktop and try again."),
                argc, argv);
}
