#include "Judge.h"

#include "app/Product.h"
#include "app/Settings.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>

namespace quorvia::test {

namespace {

using Rows = QList<QStringList>;

/// The lines of the log that belong to what the run does. What tells of damage, of a full disk or of a lost
/// picture is not among them.
constexpr std::array expectedLog{
    "Init: ",
    "Start: ",
    "End: ",
    "Finish: ",
    "Not opened: ",
    "Page not opened: ",
    "Turned on the screen only, since its file is not whole: ",
    "Not changed: ",
    "Image operation failed: ",
    "Not deleted: ",
    "Not renamed: ",
    "Not saved: ",
    "Not saved, since another image was opened meanwhile: ",
    "Not converted, since it is not there: ",
    "Conversion without a preview: ",
    "Clipboard image not shown: ",
    "Cannot stand in a playlist: ",
    "Playlist has been changed by another program: ",
    "Replaced playlist is in the trash: ",
    "Nothing to print. ",
    "Not a number of copies: ",
    "Not printed: ",                // there is no print server
    "Wallpaper not set: ",          // nor a desktop that has one
    "Screen saver not held back: ", // nor a session bus
    "Not run: ",                    // nor a program for every file
    "Not started: ",                // nor the other tools of the family
    "Not sent, since it did not start: ",
};

/// The toolkit's warnings that its platform without a screen always gives, or that a broken file earns.
constexpr std::array expectedWarnings{
    "This plugin does not support ",
};

bool beginsLikeOne(const QString& text, std::span<const char* const> begins)
{
    return std::any_of(begins.begin(), begins.end(),
                       [&text](const char* begin) { return text.startsWith(QLatin1String(begin)); });
}

const QStringList numberType{QStringLiteral("4"), QStringLiteral("integer")};
const QStringList textType{QStringLiteral("1"), QStringLiteral("text")};

bool isSame(const QString& text, const char* other)
{
    return text.compare(QLatin1String(other), Qt::CaseInsensitive) == 0;
}

/// Whether the value of the program's own settings is a number; nothing for one that the catalogue does not
/// know.
std::optional<bool> ownNumber(const QString& section, const QString& name)
{
    for (const app::CatalogueRow& row : app::settingsCatalogue()) {
        if (isSame(section, row.key.section) && isSame(name, row.key.name))
            return row.isNumber;
    }
    static const QRegularExpression placement(QStringLiteral("^frm\\w+(WinState|Left|Top|Width|Height)$"));
    if (isSame(section, app::section::Settings) && placement.match(name).hasMatch())
        return true;
    static const QRegularExpression owner(QStringLiteral("^\\w+x\\.\\w+$"));
    if (isSame(section, app::section::Associations) && owner.match(name).hasMatch())
        return false;
    return std::nullopt;
}

/// The same for a value of either store, by the path of its key.
std::optional<bool> expectedNumber(const QString& key, const QString& name)
{
    using namespace app;
    const QString own = QStringLiteral("Software\\Halvexa\\Quorvia\\");
    if (key.startsWith(own, Qt::CaseInsensitive))
        return ownNumber(key.mid(own.size()), name);
    for (const DesktopKey& each : {desktop::WallpaperStyle, desktop::TileWallpaper}) {
        if (isSame(key, each.keyPath) && isSame(name, each.name))
            return false;
    }
    for (const CommonKey& each :
         {common::ThumbnailPath, common::ImagePlaylistPath, common::ImageDescriptionPath, common::AutoUpdate,
          common::MenuShellReg, common::QOCSInstall, common::Test}) {
        if (key == keyPath(each.subkey) && isSame(name, each.name))
            return false;
    }
    for (const CommonSubkey& each :
         {common::ProgramPaths, common::ProgramShortPaths, common::ProgramAssoPaths,
          common::ProgramFileSupport, common::ComponentPaths, common::WebSites}) {
        if (key == keyPath(each) && name == productTitle())
            return false;
    }
    return std::nullopt;
}

/// The rows that `query` gives on `database`, as texts.
Rows rowsOf(sqlite3* database, const char* query)
{
    Rows rows;
    const auto take = [](void* all, int count, char** values, char**) {
        QStringList row;
        for (int i = 0; i < count; ++i)
            row.append(QString::fromUtf8(values[i]));
        static_cast<Rows*>(all)->append(row);
        return 0;
    };
    char* error = nullptr;
    if (sqlite3_exec(database, query, take, &rows, &error) != SQLITE_OK)
        rows.append({QString::fromUtf8(error)});
    sqlite3_free(error);
    return rows;
}

} // namespace

MemoryFigures memoryFigures(const QList<JournalLine>& lines, int last, int first)
{
    const int steps = last - first + 1;
    MemoryFigures figures;
    QMap<QString, QList<int>> early;
    QMap<QString, QList<int>> late;
    const QString resident = QStringLiteral("memory");
    const QString heap = QStringLiteral("heap");
    const QString peak = QStringLiteral("peak");
    for (const JournalLine& line : lines) {
        if (line.kind != resident && line.kind != heap && line.kind != peak)
            continue;
        const int size = line.detail.toInt();
        const int step = line.step - first + 1;
        if (line.kind != heap)
            figures.peak = std::max(figures.peak, size);
        if (step > steps / 4 && step <= steps / 2)
            early[line.kind].append(size);
        if (step > steps / 4 * 3)
            late[line.kind].append(size);
    }
    figures.early = median(early.value(resident));
    figures.late = median(late.value(resident));
    figures.heapEarly = median(early.value(heap));
    figures.heapLate = median(late.value(heap));
    return figures;
}

QStringList memoryFaults(const MemoryFigures& figures, const MemoryBounds& bounds)
{
    QStringList faults;
    if (figures.peak == 0)
        return {QStringLiteral("no memory was measured")};
    if (figures.peak > bounds.peak)
        faults.append(QStringLiteral("memory: %1 KiB at the peak").arg(figures.peak));
    if (!bounds.hasQuarters)
        return faults;
    if (figures.early == 0 || figures.late == 0)
        faults.append(QStringLiteral("memory: its growth was not measured"));
    if (figures.heapEarly == 0 || figures.heapLate == 0)
        faults.append(QStringLiteral("memory: what is in use between sessions was not measured"));
    if (figures.growth() > bounds.growth)
        faults.append(QStringLiteral("memory: it grew by %1 KiB").arg(figures.growth()));
    if (figures.heapGrowth() > bounds.heapGrowth)
        faults.append(QStringLiteral("memory: %1 KiB more are in use").arg(figures.heapGrowth()));
    return faults;
}

QStringList storeFaults(const QString& path)
{
    sqlite3* raw = nullptr;
    const int opened =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(raw, sqlite3_close);
    if (opened != SQLITE_OK)
        return {QStringLiteral("store not opened: ") + path};
    QStringList faults;
    const Rows whole = rowsOf(raw, "PRAGMA integrity_check");
    if (whole != Rows{{QStringLiteral("ok")}})
        faults.append(QStringLiteral("store not whole: %1: %2").arg(path, whole.value(0).join(u' ')));
    const Rows rows = rowsOf(raw, "SELECT key, name, type, typeof(value) FROM settings");
    if (rows.isEmpty())
        faults.append(QStringLiteral("store without a row: ") + path);
    for (const QStringList& row : rows) {
        const std::optional<bool> isNumber =
            row.size() == 4 ? expectedNumber(row.at(0), row.at(1)) : std::nullopt;
        const QStringList typed = isNumber.value_or(false) ? numberType : textType;
        if (!isNumber || row.mid(2) != typed)
            faults.append(QStringLiteral("store: %1: %2").arg(path, row.join(u'|')));
    }
    return faults;
}

QStringList logFaults(const QString& path)
{
    constexpr qsizetype stamp = 21; // "mm-dd-yyyy - hh:mm:ss"
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("no log")};
    QStringList faults;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (!beginsLikeOne(line.mid(stamp), expectedLog))
            faults.append(QStringLiteral("log: ") + line.mid(stamp));
    }
    return faults;
}

QStringList warningFaults(const QList<JournalLine>& lines)
{
    QStringList faults;
    for (const JournalLine& line : lines) {
        if (line.kind == QLatin1String("warning") && !beginsLikeOne(line.detail, expectedWarnings))
            faults.append(QStringLiteral("warning: ") + line.detail);
    }
    faults.removeDuplicates();
    return faults;
}

} // namespace quorvia::test
