// How long the list of a folder of 20,000 files takes: folder_list PICTURES [RUNS]. It makes its files
// itself, in a folder of its own, and leaves PICTURES alone. Painted offscreen: without what a display takes.
#include "app/mWindowsAPI.h"
#include "collections/BatchActions.h"
#include "collections/FolderFiles.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "IdleWindow.h"
#include "Ratio.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace quorvia;

namespace {

constexpr int fileCount = 20000;

bool makeFiles(const QString& folder)
{
    for (int i = 0; i < fileCount; ++i) {
        // Names as cameras give them, in no order, of either case.
        const QString name = QStringLiteral("%1_%2.%3")
                                 .arg(i % 3 ? QStringLiteral("IMG") : QStringLiteral("img"))
                                 .arg(i * 7919 % fileCount, 5, 10, QLatin1Char('0'))
                                 .arg(i % 2 ? QStringLiteral("jpg") : QStringLiteral("JPG"));
        QFile file(folder + u'/' + name);
        if (!file.open(QIODevice::WriteOnly))
            return false;
    }
    return true;
}

void report(const char* name, double milliseconds, double most)
{
    std::printf("%-44s %8.2f ms  aim %.0f ms  %s\n", name, milliseconds, most,
                milliseconds <= most ? "met" : "NOT MET");
}

/// The median of what `work` takes in `runs` calls.
template <class Work>
double timed(int runs, const Work& work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(bench::millisecondsOf(work));
    return bench::medianOf(times);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
        qputenv(variable, QFile::encodeName(home.path()));
    const QApplication application(argc, argv);
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    const QTemporaryDir folder;
    if (!folder.isValid() || !makeFiles(folder.path())) {
        std::fprintf(stderr, "no folder of %d files could be made\n", fileCount);
        return 1;
    }
    app::openSettings();
    collections::PictureList list([] { return QString(); });
    list.SetPattern(QStringLiteral("*.bmp;*.gif;*.jpg;*.jpeg;*.png;*.tif;*.tiff;*.tga"));
    list.startUp();
    list.setPath(folder.path());
    const auto rebuild = [&list] {
        list.RefreshPlaylist();
        list.finishRebuild();
    };
    report("Rebuild of 20,000 files, no window", timed(runs, rebuild), 1000);
    if (list.ListCount() != fileCount) {
        std::fprintf(stderr, "%d entries instead of %d\n", list.ListCount(), fileCount);
        return 1;
    }
    report("Looking for a file name among the texts",
           timed(runs, [&list] { list.setListIndex(QStringLiteral("IMG_00001.jpg")); }), 1);
    QStringList files;
    for (int i = 0; i < fileCount; ++i)
        files.append(list.ListFile(i));
    report("Looking for vanished files among them",
           timed(runs, [&] { collections::anyHasVanished(folder.path(), files); }), 50);

    collections::PlaylistCommands commands(&list);
    collections::BatchActions batch(&list);
    bench::IdleWindow window;
    std::unique_ptr<collections::Playlist> panel;
    report("The panel made and painted over them", bench::millisecondsOf([&] {
               panel = std::make_unique<collections::Playlist>(&list, commands, batch, window);
               panel->resize(240, 700);
               panel->show();
               QCoreApplication::processEvents();
           }),
           1000);
    report("Rebuild with the panel, painted",
           timed(runs,
                 [&] {
                     rebuild();
                     QCoreApplication::processEvents();
                 }),
           1000);
    int index = 0;
    report("Another entry chosen and painted",
           timed(10 * runs,
                 [&] {
                     index = (index + 7919) % fileCount;
                     list.SetListIndex(index);
                     QCoreApplication::processEvents();
                 }),
           10);
    panel.reset();
    app::closeSettings();
    return 0;
}
