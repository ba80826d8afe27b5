#include "MapTools.h"

namespace quorvia::test {

namespace {

/// The pixels of a still WebP as libwebp's own program gives them.
Rgba dwebp(const QByteArray& file)
{
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.webp"), file);
    return fromPnm(runTool(QStringLiteral("dwebp"),
                           words("-quiet -pam -o -") + QStringList{QStringLiteral("--"), path}));
}

Fixture fixture(const char* name, const char* options, const QByteArray& picture, const char* extension)
{
    const QByteArray command = QByteArray("cwebp -quiet ") + options + " @in -o @out";
    const QByteArray file = converted(command.constData(), picture, extension, "webp");
    return {QString::fromLatin1(name), file, dwebp(file)};
}

/// An animation whose first frame covers a part of the canvas.
Fixture animated()
{
    const ScratchFiles files;
    const QByteArray lossless =
        converted("cwebp -quiet -lossless @in -o @out", samplePng({20, 12}, true), "png", "webp");
    const QString frame = files.write(QStringLiteral("frame.webp"), lossless);
    const QString whole = files.path(QStringLiteral("whole.webp"));
    // The second frame gives the canvas its size.
    runTool(QStringLiteral("webpmux"),
            QStringList{QStringLiteral("-frame"), frame, QStringLiteral("+100+4+2+0+b"),
                        QStringLiteral("-frame"), frame, QStringLiteral("+100+10+8"), QStringLiteral("-o"),
                        whole});
    const Rgba part = dwebp(lossless);
    QImage canvas(30, 20, QImage::Format_RGBA8888);
    canvas.fill(0);
    for (int y = 0; y < 12; ++y)
        std::copy_n(part.at(0, y), 20 * 4, canvas.scanLine(y + 2) + 4 * 4);
    return {QStringLiteral("animation, first frame off the corner"), files.read(QStringLiteral("whole.webp")),
            rgbaOf(canvas)};
}

} // namespace

std::vector<Fixture> webpCorpus()
{
    const QByteArray small = sampleMap({33, 17});
    const QByteArray clear = samplePng({33, 17}, true);
    return {
        fixture("lossless, 1 x 1", "-lossless", sampleMap({1, 1}), "ppm"),
        fixture("lossless, 33 x 17", "-lossless", small, "ppm"),
        fixture("lossless, 1 x 2000", "-lossless", sampleMap({1, 2000}), "ppm"),
        fixture("lossless, 2000 x 1", "-lossless", sampleMap({2000, 1}), "ppm"),
        fixture("lossless, alpha", "-lossless", clear, "png"),
        fixture("lossless, alpha, exact", "-lossless -exact", clear, "png"),
        fixture("lossless, palette", "-lossless", fewColors({50, 30}, 12), "ppm"),
        fixture("near lossless", "-near_lossless 40", small, "ppm"),
        fixture("lossy, 33 x 17", "-q 80", small, "ppm"),
        fixture("lossy, 1 x 1", "-q 80", sampleMap({1, 1}), "ppm"),
        fixture("lossy, alpha", "-q 60", clear, "png"),
        fixture("lossy, simple filter, 4 partitions", "-q 30 -nostrong -partition_limit 20 -segments 4",
                sampleMap({100, 80}), "ppm"),
        animated(),
    };
}

} // namespace quorvia::test
