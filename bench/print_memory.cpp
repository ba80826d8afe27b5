// What one printed page costs: print_memory [ACROSS DOWN] makes the document of a composed page, as large as
// A4 at 300 pixels to the inch unless told otherwise. Prints the time and the memory that the process had at
// most meanwhile, the page itself included, as multiples of its pixels; ends with 1 when that is more than
// three.
#include "platform/PrintDocument.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryFile>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

using namespace quorvia;

namespace {

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "print_memory: %s\n", what);
    std::exit(1);
}

/// The bytes of a line of /proc/self/status.
qint64 memory(const QByteArray& name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        fail("no status of the process");
    const QByteArrayList lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').constFirst().toLongLong() * 1024;
    }
    fail("a line of the status is missing");
}

/// Forgets what the process needed at most so far.
void forgetPeak()
{
    QFile references(QStringLiteral("/proc/self/clear_refs"));
    if (!references.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || references.write("5") != 1)
        fail("the peak cannot be set back");
}

/// As hard to compress as a photograph: gradients with some noise.
QImage photo(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    std::minstd_rand random(7);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int noise = int(random() >> 8U & 15U);
            row[x] = qRgb((x / 12 + noise) & 255, (y / 16 + noise) & 255, ((x + y) / 30 + noise) & 255);
        }
    }
    return image;
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QSize size(2480, 3507);
    if (argc > 2)
        size = {std::atoi(argv[1]), std::atoi(argv[2])};
    const qint64 without = memory("VmRSS");
    const QImage page = photo(size);
    if (page.isNull())
        fail("no page of that size");
    const qint64 before = memory("VmRSS");
    forgetPeak();
    QTemporaryFile document;
    if (!document.open())
        fail("no file for the document");
    const auto start = std::chrono::steady_clock::now();
    const QSize paper = size * 24 / 5; // twips at 300 pixels to the inch
    if (!platform::writePdfPage(document, paper, page, QRect(QPoint(), paper), QStringLiteral("Page")))
        fail("the document cannot be written");
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;

    constexpr double most = 3.0;
    constexpr double megabyte = 1e6;
    const auto pixels = double(page.sizeInBytes());
    const double times = double(memory("VmHWM") - without) / pixels;
    std::printf("page %d x %d, %.1f MB; document %.1f MB in %.0f ms; memory %.1f MB before, at most %.1f MB "
                "more, page included: %.2f times the page\n",
                size.width(), size.height(), pixels / megabyte, double(document.size()) / megabyte,
                took.count() * 1000, double(before) / megabyte, double(memory("VmHWM") - without) / megabyte,
                times);
    return times <= most ? 0 : 1;
}
