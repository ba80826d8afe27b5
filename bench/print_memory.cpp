// What one printed page costs: print_memory [ACROSS DOWN] makes the documents of two pages composed at 300
// pixels to the inch, for paper of that size in twips, else A4. Prints the time and the memory that the
// process took at most for each, the page itself and all that is loaded for it included, as multiples of its
// pixels; ends with 1 when that is more than 1.1.
#include "platform/PrintDocument.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryFile>

#include <algorithm>
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

/// Gradients with `noise` on each colour: a mask of bits, 15 is as hard to compress as a photograph, 255 not
/// compressible at all.
QImage composed(const QSize& size, quint32 noise)
{
    QImage image(size, QImage::Format_RGB32);
    std::minstd_rand random(7);
    const auto colour = [&random, noise](int base) {
        return int(quint32(base) + (random() >> 8U & noise)) & 255;
    };
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qRgb(colour(x / 12), colour(y / 16), colour((x + y) / 30));
    }
    return image;
}

/// Makes the document of one page; the memory that it took at most, the page included, in pages.
double measure(const char* name, const QSize& paper, quint32 noise)
{
    constexpr int margins = 1100; // twips, both sides
    constexpr int dots = 300;
    constexpr int twipsPerInch = 1440;
    constexpr double megabyte = 1e6;
    const qint64 without = memory("VmRSS");
    const QSize target = paper - QSize(margins, margins);
    const QImage page = composed(target * dots / twipsPerInch, noise);
    if (page.isNull())
        fail("no page of that size");
    forgetPeak();
    QTemporaryFile document;
    if (!document.open())
        fail("no file for the document");
    const auto start = std::chrono::steady_clock::now();
    const QRect place(QPoint(margins / 2, margins / 2), target);
    if (!platform::writePdfPage(document, paper, page, place, QStringLiteral("Page")))
        fail("the document cannot be written");
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    const auto pixels = double(page.sizeInBytes());
    const auto most = double(memory("VmHWM") - without);
    std::printf(
        "%s: page %d x %d, %.1f MB; document %.1f MB in %.0f ms; at most %.1f MB, %.3f times the page\n",
        name, page.width(), page.height(), pixels / megabyte, double(document.size()) / megabyte,
        took.count() * 1000, most / megabyte, most / pixels);
    return most / pixels;
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QSize paper(11906, 16838);
    if (argc > 2)
        paper = {std::atoi(argv[1]), std::atoi(argv[2])};
    constexpr double most = 1.1;
    const double photo = measure("like a photo", paper, 15);
    const double noise = measure("noise", paper, 255);
    return std::max(photo, noise) <= most ? 0 : 1;
}
