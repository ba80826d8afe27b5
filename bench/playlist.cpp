// What a playlist of 50,000 files asks of the window: playlist PICTURES [RUNS]. Each piece of work goes on in
// the event loop with the panel on show; told are how long it takes, and for how long at most the window
// stands still. It makes its files itself, in a folder of its own, and leaves PICTURES alone.
#include "collections/Playlist.h"

#include "app/mWindowsAPI.h"
#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistKeeper.h"
#include "IdleWindow.h"
#include "Ratio.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>

using namespace quorvia;
using collections::PictureList;

namespace {

constexpr int fileCount = 50000;
constexpr double longestStandstill = 200; // milliseconds
constexpr int quiet = 300;                // milliseconds without work that end a measurement

bool makeFiles(const QString& folder)
{
    for (int i = 0; i < fileCount; ++i) {
        QFile file(folder + QStringLiteral("/IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
        if (!file.open(QIODevice::WriteOnly))
            return false;
    }
    return true;
}

/// How long the event loop was kept from a timer of a millisecond, at most.
double standstillOf(const std::function<void()>& work)
{
    using Clock = std::chrono::steady_clock;
    double longest = 0;
    auto last = Clock::now();
    QTimer tick;
    QTimer end;
    QEventLoop loop;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const auto now = Clock::now();
        longest = std::max(longest, std::chrono::duration<double, std::milli>(now - last).count());
        last = now;
    });
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    tick.start(1);
    end.setSingleShot(true);
    QTimer::singleShot(0, [&] {
        work();
        end.start(quiet);
    });
    loop.exec();
    return longest;
}

void report(const char* name, int runs, const std::function<void()>& prepare,
            const std::function<void()>& work)
{
    std::vector<double> found;
    for (int run = 0; run < runs; ++run) {
        prepare();
        QCoreApplication::processEvents();
        found.push_back(standstillOf(work));
    }
    const double most = *std::max_element(found.begin(), found.end());
    std::printf("%-40s stands still %7.1f ms, at most %7.1f ms  aim %.0f ms  %s\n", name,
                bench::medianOf(found), most, longestStandstill,
                most <= longestStandstill ? "met" : "NOT MET");
    std::fflush(stdout);
}

/// The least that a load does: read the file, look at each line's file.
int bareLoad(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    int there = 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        struct stat status = {};
        if (line.startsWith('/') && ::stat(line.chopped(1).constData(), &status) == 0)
            ++there;
    }
    return there;
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "QUORVIA_ROOT"})
        qputenv(variable, QFile::encodeName(home.path()));
    const QApplication application(argc, argv);
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    const QTemporaryDir folder;
    if (!folder.isValid() || !makeFiles(folder.path()) || !QDir().mkpath(collections::playlistFolder())) {
        std::fprintf(stderr, "no folder of %d files could be made\n", fileCount);
        return 1;
    }
    app::openSettings();
    PictureList list([] { return QString(); });
    list.SetPattern(QStringLiteral("*.bmp;*.gif;*.jpg;*.jpeg;*.png;*.tif;*.tiff;*.tga"));
    list.startUp();
    list.setPath(folder.path());
    list.finishRebuild();
    collections::PlaylistCommands commands(&list);
    collections::BatchActions batch(&list);
    bench::IdleWindow window;
    collections::Playlist panel(&list, commands, batch, window);
    panel.resize(260, 700);
    panel.show();
    collections::PlaylistKeeper& playlist = *list.playlist();
    const auto nothing = [] {};

    report(
        "All files of the folder moved to it", runs,
        [&] {
            list.SelectTab(1);
            playlist.ClearPlaylist();
            list.SelectTab(0);
            list.finishRebuild();
        },
        [&] { commands.RunTool(QStringLiteral("movefilelisttoplaylist")); });
    if (list.ListCount() != fileCount) {
        std::fprintf(stderr, "%d entries instead of %d\n", list.ListCount(), fileCount);
        return 1;
    }
    const QString path = collections::namedPlaylistPath(playlist.ActivePlaylist());
    const QString whole = home.filePath(QStringLiteral("Whole.qol")); // whose copy is shortened below
    if (!QFile::copy(path, whole))
        return 1;
    report("Loaded and shown", runs, nothing, [&] { playlist.LoadQOLPlaylist(path); });
    report("The list built anew", runs, nothing, [&] { list.RefreshPlaylist(); });
    report("A look for vanished files", runs, nothing,
           [&] { Q_EMIT list.findChild<QTimer*>(QStringLiteral("tAutoUpdate"))->timeout({}); });
    report("One file added, list built and saved", runs, nothing,
           [&] { playlist.AddPlaylistFile(list.ListFile(0)); });
    report(
        "Every second entry taken out and saved", runs,
        [&] {
            playlist.LoadQOLPlaylist(path);
            list.finishRebuild();
            std::vector<collections::RowRange> rows;
            for (int row = 0; row < list.ListCount(); row += 2)
                rows.push_back({row, row});
            list.setSelection(rows);
        },
        [&] {
            commands.RunTool(QStringLiteral("clearselected"));
            playlist.AddPlaylistFiles(list.files());
        });

    playlist.ClearPlaylist();
    list.SelectTab(0);
    list.finishRebuild();
    playlist.AddPlaylistFiles(list.files());
    playlist.saveOpen();
    const bench::Ratio load = bench::compare(
        "Load beside the bare reads", [&] { return collections::QolFile().load(path, nullptr)->size(); },
        [&] { return bareLoad(path); }, runs, 3);
    app::closeSettings();
    return load.ratio() > 0 ? 0 : 1;
}
