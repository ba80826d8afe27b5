#include "system/OtherViewer.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "platform/BaseDirectories.h"
#include "platform/DesktopEntries.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/MimeApps.h"
#include "platform/Shell.h"
#include "platform/TextFile.h"
#include "system/DesktopPresence.h"

#include <QFileInfo>

#include <algorithm>

namespace quorvia::system {

namespace {

constexpr QLatin1String patternName("AssociationImages.dat");
constexpr QLatin1String entryHead("[Desktop Entry]");

QString doubled(QString path)
{
    return path.replace(u'\\', QStringLiteral("\\\\"));
}

/// A line end in a path would be one in the entry.
bool canBeWritten(const QString& path)
{
    return std::none_of(path.begin(), path.end(), [](QChar each) { return each.unicode() < 0x20; });
}

bool note(const QString& what)
{
    app::WriteLog(QStringLiteral("Other viewer: ") + what);
    return false;
}

/// The value of an "Exec" line with the program as an entry wants it; empty when it is not quoted.
QByteArray execValue(const QString& value)
{
    const qsizetype end = value.lastIndexOf(u'"');
    if (!value.startsWith(u'"') || end < 2)
        return {};
    QString program = value.mid(1, end - 1);
    program.replace(QStringLiteral("\\\\"), QStringLiteral("\\"));
    return platform::execWord(program) + value.mid(end + 1).toUtf8();
}

/// What an id that is new, or stands for this very text, is made of: a stem and a number from 2 on.
QString stemFor(const QString& program)
{
    QString name = QFileInfo(program).fileName();
    for (QChar& each : name) {
        if (!each.isLetterOrNumber() && each != u'.' && each != u'_')
            each = u'_';
    }
    return QStringLiteral("userapp-") + name;
}

QString pathOf(const QString& id)
{
    return platform::dataHome() + QStringLiteral("/applications/") + id;
}

bool holds(const QString& path, const QByteArray& text)
{
    QByteArray present;
    return platform::readTextFile(path, present) == platform::TextRead::Done && present == text;
}

/// An id that no entry has, or one that has this very text. Empty when there are too many.
QString idFor(const QString& program, const QByteArray& text)
{
    constexpr int mostOfAName = 99;
    for (int number = 1; number <= mostOfAName; ++number) {
        const QString mark = number == 1 ? QString() : u'-' + QString::number(number);
        QString id = stemFor(program) + mark + QStringLiteral(".desktop");
        struct stat status = {};
        const bool isFree = platform::fileStatus(pathOf(id), status, platform::Links::Keep) != 0 &&
                            platform::entryPath(id).isEmpty();
        if (isFree || holds(pathOf(id), text))
            return id;
    }
    return {};
}

/// True when `program` can be made the viewer; else the user is told.
bool isProgram(QWidget* owner, const QString& program)
{
    using namespace platform;
    if (isProgramFile(program))
        return true;
    showMessage(owner, {BoxKind::Plain, BoxButtons::Ok, app::productTitle(),
                        app::ShellMessage(int(ShellCode::BadExecutable))});
    return false;
}

bool agrees(QWidget* owner, const QString& program)
{
    using namespace platform;
    const QString text =
        QStringLiteral("Do you want to have %1 become the default viewer for all image formats?");
    return showMessage(owner, {BoxKind::Question, BoxButtons::YesNo, app::productTitle(),
                               text.arg(program)}) == BoxAnswer::Yes;
}

bool install(const RegisteredEntry& entry, const QString& program)
{
    const QString id = idFor(program, entry.text);
    const QString path = pathOf(id);
    QString why = QStringLiteral("too many entries of that name");
    if (id.isEmpty() || (!holds(path, entry.text) && !platform::replaceTextFile(path, entry.text, &why)))
        return note(path + QStringLiteral(": ") + why);
    provideOwnTypes();
    platform::MimeApps desktop;
    for (const QByteArray& type : entry.types)
        desktop.putFirst(platform::MimeRole::Default, QString::fromUtf8(type), id);
    const QStringList reasons = desktop.save();
    for (const QString& reason : reasons)
        note(reason);
    markApplications();
    return reasons.isEmpty();
}

} // namespace

QString registrationText(const QString& pattern, const QString& installPath, const QString& program)
{
    QStringList lines = pattern.split(u'\n');
    for (QString& line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        line.replace(QStringLiteral("{app}"), doubled(installPath));
        line.replace(QStringLiteral("{appexe}"), doubled(program));
    }
    return lines.join(QStringLiteral("\r\n"));
}

std::optional<RegisteredEntry> importRegistration(const QString& text, const QString& name)
{
    RegisteredEntry entry;
    bool hasProgram = false;
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    if (lines.first() != entryHead)
        return {};
    for (const QString& line : lines) {
        const QString key = line.section(u'=', 0, 0);
        const QString value = line.section(u'=', 1);
        QByteArray written = line.toUtf8();
        if (line == entryHead) {
            written += "\nName=" + doubled(name).toUtf8();
        } else if (key == QLatin1String("Exec")) {
            const QByteArray command = execValue(value);
            hasProgram = !command.isEmpty();
            written = "Exec=" + command;
        } else if (key == QLatin1String("MimeType")) {
            entry.types = value.toUtf8().split(';');
            entry.types.removeAll(QByteArray());
        }
        if (!written.isEmpty())
            entry.text += written + '\n';
    }
    if (!hasProgram || entry.types.isEmpty())
        return {};
    return entry;
}

bool associateOther(QWidget* owner, const QString& program)
{
    QByteArray pattern;
    if (platform::readTextFile(app::resourcePath(patternName), pattern) != platform::TextRead::Done) {
        platform::showMessage(
            owner, {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                    QStringLiteral(
                        "Association Information could not be found, please re-install this application.")});
        return false;
    }
    if (!canBeWritten(program) || !canBeWritten(app::InstallPath()))
        return note(QStringLiteral("a path with control characters cannot be registered"));
    const QString text = registrationText(QString::fromUtf8(pattern), app::InstallPath(), program);
    const QString written = app::InstallPath() + patternName + QStringLiteral(".reg");
    QString why;
    if (!platform::replaceTextFile(written, text.toUtf8(), &why))
        return note(written + QStringLiteral(": ") + why);
    const auto entry = importRegistration(text, QFileInfo(program).fileName());
    if (!entry)
        return note(QStringLiteral("the pattern is no desktop entry"));
    return isProgram(owner, program) && agrees(owner, program) && install(*entry, program);
}

} // namespace quorvia::system
