// The mail tool that comes with the viewer: hands subject, text and files to the user's own mail program,
// through the desktop's xdg-email, and tells him when that cannot be done. It sends nothing itself.
#include "platform/Dialogs.h"
#include "postrel/MailRequest.h"

#include <QApplication>

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace quorvia;

namespace {

constexpr int wrongUse = 1; // as xdg-email has them
constexpr int fileMissing = 2;
constexpr int notComposed = 4;

QByteArrayList argumentsOf(int argc, char* argv[])
{
    QByteArrayList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(argv[i]);
    return arguments;
}

bool isRegularFile(const QByteArray& path)
{
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Runs `program`, looked up in the path, with `arguments` to its end, however long that takes: some mail
/// programs stay while their window is open. True when it ended well. Not by the toolkit, whose arguments are
/// text and could not name every file.
bool runs(const char* program, const QByteArrayList& arguments)
{
    std::vector<char*> words{const_cast<char*>(program)}; // the call does not write to them
    for (const QByteArray& argument : arguments)
        words.push_back(const_cast<char*>(argument.constData()));
    words.push_back(nullptr);
    pid_t process = 0;
    if (posix_spawnp(&process, program, nullptr, nullptr, words.data(), environ) != 0)
        return false;
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
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
    const QByteArrayList words = argumentsOf(argc, argv);
    if (words.isEmpty()) {
        std::fprintf(stderr, "Usage: postrel /subject:TEXT /hiddenbody:TEXT /attachments:PATH[;PATH...]\n");
        return wrongUse;
    }
    const postrel::MailRequest request = postrel::mailRequest(words, isRegularFile);
    for (const QByteArray& path : request.attachments) {
        if (!isRegularFile(path))
            return fail(fileMissing,
                        QApplication::translate("Postrel", "The file to send is not there:\n%1")
                            .arg(QString::fromLocal8Bit(path)),
                        argc, argv);
    }
    if (runs("xdg-email", postrel::composerArguments(request)))
        return 0;
    return fail(notComposed,
                QApplication::translate("Postrel",
                                        "No mail program could be opened for the message. Choose one in the "
                                        "settings of the desktop and try again."),
                argc, argv);
}
