// Writes what a package carries beside the program: the manual page, what shells complete, and the sizes of
// the program's icon.
#include "commands/CommandHelp.h"
#include "platform/ProgramIcon.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cstdio>

using namespace quorvia;

namespace {

constexpr std::array iconSides = {16, 22, 24, 32, 48, 64, 128, 256, 512};

bool write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
}

bool writeIcons(const QString& directory)
{
    for (const int side : iconSides) {
        const QString place =
            QStringLiteral("%1/icons/hicolor/%2x%2/apps").arg(directory, QString::number(side));
        if (!QDir().mkpath(place) ||
            !platform::programDrawing(side).save(place + QStringLiteral("/quorvia.png")))
            return false;
    }
    return true;
}

bool writeTexts(const QString& directory, const QByteArray& version, const QByteArray& date)
{
    return write(directory + QStringLiteral("/quorvia.1"), commands::manualPage(version, date)) &&
           write(directory + QStringLiteral("/quorvia"), commands::bashCompletion()) &&
           write(directory + QStringLiteral("/_quorvia"), commands::zshCompletion()) &&
           write(directory + QStringLiteral("/quorvia.fish"), commands::fishCompletion());
}

} // namespace

int main(int argc, char* argv[])
{
    constexpr int wanted = 4;
    if (argc != wanted) {
        std::fprintf(stderr, "Usage: %s DIRECTORY VERSION DATE\n", argv[0]);
        return 2;
    }
    const QString directory = QString::fromLocal8Bit(argv[1]);
    if (writeTexts(directory, argv[2], argv[3]) && writeIcons(directory))
        return 0;
    std::fprintf(stderr, "%s: cannot write into %s\n", argv[0], argv[1]);
    return 1;
}
