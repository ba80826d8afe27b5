// How soon the filmstrip fills, and whether a key is answered meanwhile: strip PICTURES [RUNS]. PICTURES is
// the directory that bench/ratios fills; what is made there is taken away again. Painted offscreen unless
// QT_QPA_PLATFORM says otherwise.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "BareDecoders.h"
#include "collections/Filmstrip.h"
#include "controls/ScrollBar.h"
#include "Ratio.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QInputDevice>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

using namespace quorvia;

namespace {

constexpr int pictureCount = 200;
constexpr int manyEntries = 10'000;
constexpr int firstDelay = 100; // milliseconds before the layout
constexpr int pace = 10;        // milliseconds a cell

using Clock = std::chrono::steady_clock;

quint64 microsecondsNow()
{
    const auto now = Clock::now().time_since_epoch();
    return quint64(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

/// A window around the strip, which notes for each key how long it waited.
class Host : public QWidget
{
  public:
    Host() : strip(new collections::Filmstrip)
    {
        auto* const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(strip);
        setFocusPolicy(Qt::StrongFocus);
        resize(1400, 150);
        show();
        setFocus();
    }

    collections::Filmstrip* const strip;
    std::vector<double> waits; ///< milliseconds

  protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        waits.push_back(double(microsecondsNow() - event->timestamp()) / 1000);
    }
};

/// While it lives, a key comes to the window each few milliseconds.
class Typist
{
  public:
    explicit Typist(QWindow* window)
    {
        QInputDevice::primaryKeyboard(); // made here: it belongs to the window's thread
        m_thread = std::jthread([window](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
                auto* const key = new QKeyEvent(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier);
                key->setTimestamp(microsecondsNow());
                QCoreApplication::postEvent(window, key);
            }
        });
    }

  private:
    std::jthread m_thread;
};

/// Milliseconds until the strip, drawn anew, has painted its last cell.
double filled(collections::Filmstrip& strip)
{
    auto* const tDraw = strip.findChild<QTimer*>(QStringLiteral("tDraw"));
    return bench::millisecondsOf([&] {
        strip.DrawStrip();
        while (tDraw->isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
}

void report(const char* name, double value, const char* unit, double most)
{
    std::printf("%-44s %8.2f %s  aim %.0f %s  %s\n", name, value, unit, most, unit,
                value <= most ? "met" : "NOT MET");
    std::fflush(stdout);
}

void reportWaits(std::vector<double> waits)
{
    constexpr double longest = 50;
    if (waits.empty())
        return;
    std::sort(waits.begin(), waits.end());
    report("The key that waited longest meanwhile", waits.back(), "ms", longest);
    std::printf("  of %zu keys: median %.2f ms, 99 of 100 within %.2f ms\n", waits.size(),
                waits[waits.size() / 2], waits[waits.size() * 99 / 100]);
}

double heapMegabytes()
{
    const struct mallinfo2 facts = mallinfo2();
    return double(facts.uordblks + facts.hblkhd) / (1 << 20);
}

/// The strip over 10,000 names, filled and scrolled through.
void measureMany(Host& host, const QString& folder)
{
    constexpr double most = 16; // MB: the names take 2, the cells in sight and their neighbours 1
    host.strip->Clear();
    filled(*host.strip);
    const double before = heapMegabytes();
    for (int i = 0; i < manyEntries; ++i)
        host.strip->add(folder + QStringLiteral("entry%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
    filled(*host.strip);
    auto* const bar = host.strip->findChild<controls::ScrollBar*>(QStringLiteral("sBar"));
    auto* const tDraw = host.strip->findChild<QTimer*>(QStringLiteral("tDraw"));
    double largest = heapMegabytes();
    for (int i = 1; i <= 50; ++i) {
        bar->SetValue(bar->Max() / 50 * i);
        while (tDraw->isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        largest = std::max(largest, heapMegabytes());
    }
    report("Memory for a strip of 10,000 entries", largest - before, "MB", most);
}

int measure(const QString& folder, const QStringList& pictures, const QString& cache, int runs)
{
    Host host;
    for (const QString& picture : pictures)
        host.strip->add(picture);
    const std::string bare = QFile::encodeName(pictures.constFirst()).toStdString();
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> cached;
    for (int run = 0; run < runs; ++run) {
        QDir(cache).removeRecursively();
        QDir().mkpath(cache);
        {
            const Typist typist(host.windowHandle());
            ours.push_back(filled(*host.strip));
        }
        QCoreApplication::processEvents(); // the last keys
        if (QDir(cache).entryList(QDir::Files).size() != pictureCount) {
            std::fprintf(stderr, "the strip has stored other than %d thumbnails\n", pictureCount);
            return 1;
        }
        theirs.push_back(bench::millisecondsOf([&] {
            for (int i = 0; i < pictureCount; ++i)
                bench::bareJpeg(bare.c_str(), 1); // 500 x 375, the smallest that covers a cell
        }));
        cached.push_back(filled(*host.strip));
    }
    const bench::Ratio fill{bench::medianOf(ours), bench::medianOf(theirs), 1.2};
    std::printf("%-44s ours %7.1f ms  theirs %7.1f ms  ratio %5.2f  aim %.2f  %s\n",
                "200 new 12 MP JPEGs : scaled decodes", fill.ours, fill.theirs, fill.ratio(), fill.limit,
                fill.met() ? "met" : "NOT MET");
    reportWaits(host.waits);
    constexpr double slack = 1.05;
    report("200 cached thumbnails, 10 ms each", bench::medianOf(cached), "ms",
           slack * (firstDelay + pictureCount * pace));
    measureMany(host, folder);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: strip PICTURES [RUNS]\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
        qputenv(variable, QFile::encodeName(home.path()));
    const QApplication application(argc, argv);
    const QString source = QFile::decodeName(argv[1]) + QStringLiteral("/photo-12mp.jpg");
    // Beside the picture, so that one file can stand under all names: to the strip a picture is its name.
    const QTemporaryDir folder(QFile::decodeName(argv[1]) + QStringLiteral("/strip-XXXXXX"));
    QStringList pictures;
    for (int i = 0; i < pictureCount; ++i) {
        pictures.append(folder.filePath(QStringLiteral("picture%1.jpg").arg(i)));
        if (link(QFile::encodeName(source).constData(), QFile::encodeName(pictures.last()).constData()) !=
            0) {
            std::perror(argv[1]);
            return 1;
        }
    }
    app::openSettings();
    const QString cache = folder.filePath(QStringLiteral("cache/"));
    app::save(app::common::ThumbnailPath, cache);
    constexpr int mostRuns = 3; // each takes some twenty seconds
    const int runs = std::clamp(argc > 2 ? std::atoi(argv[2]) : mostRuns, 1, mostRuns);
    const int status = measure(folder.path() + u'/', pictures, cache, runs);
    app::closeSettings();
    return status;
}
