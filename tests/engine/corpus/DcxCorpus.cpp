#include "MapTools.h"

#include <QtEndian>

namespace quorvia::test {

namespace {

QByteArray page(const char* options, const QByteArray& map)
{
    return piped((QByteArray("ppmtopcx -quiet ") + options).constData(), map);
}

/// A DCX of `pages` with a table of `entries` offsets.
QByteArray bound(const std::vector<QByteArray>& pages, int entries)
{
    QByteArray file = QByteArray::fromHex("b168de3a") + QByteArray(4 * entries, '\0');
    for (size_t i = 0; i < pages.size(); ++i) {
        qToLittleEndian<quint32>(quint32(file.size()), file.data() + 4 + 4 * i);
        file += pages[i];
    }
    return file;
}

Rgba pixelsOf(const QByteArray& pcx)
{
    return fromPnm(runTool(QStringLiteral("pcxtoppm"), {}, pcx));
}

QByteArray madeBy(const QString& program, const QStringList& first, const char* format)
{
    const ScratchFiles files;
    const QString one = files.write(QStringLiteral("1.ppm"), sampleMap({33, 17}));
    const QString two = files.write(QStringLiteral("2.ppm"), sampleMap({20, 30}));
    return runTool(program, first + QStringList{one, two, QString::fromLatin1(format)});
}

} // namespace

std::vector<Fixture> dcxCorpus()
{
    const std::vector<QByteArray> pages = {
        page("-24bit", sampleMap({33, 17})),
        page("", fewColors({21, 30}, 200)),
        page("-packed", fewColors({35, 9}, 16)),
        page("", piped("pgmtopbm -floyd", pgmOf(samplePicture({37, 21})))),
        page("-24bit", sampleMap({1, 2000})),
        page("", fewColors({33, 17}, 16)),
    };
    const QByteArray all = bound(pages, 1024);
    std::vector<Fixture> fixtures;
    for (size_t i = 0; i < pages.size(); ++i)
        fixtures.push_back(
            {QStringLiteral("page %1 of 6").arg(i + 1), all, pixelsOf(pages[i]), 0, int(i) + 1});
    const QByteArray magick = madeBy(QStringLiteral("convert"), {}, "dcx:-");
    const QByteArray graphics =
        madeBy(QStringLiteral("gm"), {QStringLiteral("convert"), QStringLiteral("-adjoin")}, "dcx:-");
    for (int i = 1; i <= 2; ++i) {
        const Rgba expected = samplePicture(i == 1 ? QSize(33, 17) : QSize(20, 30));
        const Rgba opaque = fromPnm(ppmOf(expected));
        fixtures.push_back({QStringLiteral("ImageMagick, page %1").arg(i), magick, opaque, 0, i});
        fixtures.push_back({QStringLiteral("GraphicsMagick, page %1").arg(i), graphics, opaque, 0, i});
    }
    fixtures.push_back({QStringLiteral("one page"), bound({pages[1]}, 1024), pixelsOf(pages[1])});
    fixtures.push_back(
        {QStringLiteral("short table"), bound({pages[0], pages[3]}, 3), pixelsOf(pages[3]), 0, 2});
    fixtures.push_back(
        {QStringLiteral("no end mark"), bound({pages[0], pages[3]}, 2), pixelsOf(pages[3]), 0, 2});
    fixtures.push_back({QStringLiteral("1023 pages"),
                        bound(std::vector<QByteArray>(1023, page("-24bit", sampleMap({3, 2}))), 1024),
                        fromPnm(sampleMap({3, 2})), 0, 1023});
    return fixtures;
}

} // namespace quorvia::test
