#include "Corpus.h"
#include "PngFixtures.h"

#include <algorithm>

namespace quorvia::test {

namespace {

QString named(const QString& kind, QSize size, bool interlaced)
{
    return QStringLiteral("%1, %2 x %3%4")
        .arg(kind)
        .arg(size.width())
        .arg(size.height())
        .arg(interlaced ? QStringLiteral(", interlaced") : QString());
}

Fixture fixture(const QString& name, const QByteArray& file)
{
    return {name, file, readWithNetpbm(file)};
}

/// Every colour type and depth without a palette.
void addPlainKinds(std::vector<Fixture>& all, QSize size, bool interlaced)
{
    const Rgba picture = samplePicture(size);
    for (const int depth : {1, 2, 4, 8, 16}) {
        const QByteArray file = magickFile(coarse(picture, std::min(1 << depth, 256)), 0, depth, interlaced);
        all.push_back(fixture(named(QStringLiteral("grey of %1 bits").arg(depth), size, interlaced), file));
    }
    for (const int depth : {8, 16}) {
        const auto add = [&](const char* kind, int colors) {
            const QString text = QStringLiteral("%1 of %2 bits").arg(QLatin1String(kind)).arg(depth);
            all.push_back(
                fixture(named(text, size, interlaced), magickFile(picture, colors, depth, interlaced)));
        };
        add("RGB", 2);
        add("grey and alpha", 4);
        add("RGBA", 6);
    }
}

void addPalettes(std::vector<Fixture>& all, QSize size, bool interlaced)
{
    const Rgba picture = samplePicture(size);
    const ScratchFiles files;
    const QStringList options = interlaced ? QStringList{QStringLiteral("-interlace")} : QStringList();
    const auto add = [&](const char* kind, const QByteArray& pnm, const QStringList& more) {
        all.push_back(fixture(named(QLatin1String(kind), size, interlaced), netpbmFile(pnm, options + more)));
    };
    const QByteArray pixels = ppmOf(picture);
    const auto quantised = [&pixels](const char* colors) {
        return runTool(QStringLiteral("pnmquant"), {QLatin1String(colors)}, pixels);
    };
    add("palette of 8 bits", ppmOf(coarse(picture, 5)), {});
    add("palette of 4 bits", quantised("13"), {});
    add("palette of 2 bits", quantised("4"), {});
    add("palette of 1 bit", quantised("2"), {});
    const QString alpha = files.write(QStringLiteral("alpha.pgm"), alphaPgmOf(coarse(picture, 3)));
    add("palette with alpha", ppmOf(coarse(picture, 3)), {QStringLiteral("-alpha"), alpha});
}

} // namespace

std::vector<Fixture> pngCorpus()
{
    std::vector<Fixture> all;
    for (const bool interlaced : {false, true}) {
        addPlainKinds(all, QSize(37, 21), interlaced);
        addPalettes(all, QSize(37, 21), interlaced);
        all.push_back(fixture(named(QStringLiteral("RGB"), QSize(1, 1), interlaced),
                              magickFile(samplePicture(QSize(1, 1)), 2, 8, interlaced)));
    }
    for (const QSize size : {QSize(1, 20000), QSize(20000, 1)})
        all.push_back(
            fixture(named(QStringLiteral("grey"), size, false), netpbmFile(pgmOf(samplePicture(size)))));
    // Each row filter on its own.
    const QSize size(61, 33);
    for (const char* filter : {"-nofilter", "-sub", "-up", "-avg", "-paeth"})
        all.push_back(fixture(
            named(QStringLiteral("RGB, filter %1").arg(QLatin1String(filter + 1)), size, false),
            netpbmFile(ppmOf(samplePicture(size)), {QLatin1String(filter), QStringLiteral("-force")})));
    return all;
}

} // namespace quorvia::test
