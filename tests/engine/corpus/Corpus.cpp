#include "Corpus.h"

#include "engine/codecs/Codecs.h"

#include <QGuiApplication>

#include <algorithm>

namespace quorvia::test {

std::span<const CorpusEntry> corpusTable()
{
    static const CorpusEntry table[] = {
        {"bmp", bmpCorpus, engine::bmpCodec},
        {"dib", dibCorpus, engine::bmpCodec},
        {"rle", rleCorpus, engine::bmpCodec},
        {"utah", utahCorpus, engine::utahRleCodec},
        {"gif", gifCorpus, engine::gifCodec},
        {"jpg", jpegCorpus, engine::jpegCodec},
        {"ljp", losslessJpegCorpus, engine::losslessJpegCodec},
        {"tif", tiffCorpus, engine::tiffCodec},
        {"wmf", wmfCorpus, engine::wmfCodec},
        {"ico", icoCorpus, engine::icoCodec},
        {"dcx", dcxCorpus, engine::dcxCodec},
        {"pbm", pbmCorpus, engine::pnmCodec},
        {"pgm", pgmCorpus, engine::pnmCodec},
        {"ppm", ppmCorpus, engine::pnmCodec},
        {"pcx", pcxCorpus, engine::pcxCodec},
        {"pic", picCorpus, engine::softimageCodec},
        {"pict", pictCorpus, engine::pictCodec},
        {"png", pngCorpus, engine::pngCodec},
        {"tga", tgaCorpus, engine::tgaCodec},
        {"wpg", wpgCorpus, engine::wpgCodec},
        {"webp", webpCorpus, engine::webpCodec},
        {"avif", avifCorpus, engine::avifCodec},
        {"jxl", jpegXlCorpus, engine::jpegXlCodec},
    };
    return table;
}

QString fileExtension(const CorpusEntry& entry)
{
    const QString format = QString::fromLatin1(entry.extension);
    return format == QLatin1String("utah") ? QStringLiteral("rle") : format;
}

Rgba expectedOf(const QByteArray& file, const QString& extension, const Rgba& picture)
{
    constexpr int longestSide = 16000;
    if (std::max(picture.size.width(), picture.size.height()) <= longestSide)
        return readWithMagick(file, extension);
    Rgba opaque = picture;
    for (qsizetype i = 3; i < opaque.pixels.size(); i += 4)
        opaque.pixels[i] = char(255);
    return opaque;
}

int runForCorpus(int argc, char** argv, const std::function<int(const CorpusEntry&, int, char**)>& test)
{
    const QString format = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    for (const CorpusEntry& entry : corpusTable()) {
        if (format != QLatin1String(entry.extension))
            continue;
        argv[1] = argv[0];
        int rest = argc - 1;
        const QGuiApplication application(rest, argv + 1); // some decoders draw
        return test(entry, rest, argv + 1);
    }
    qCritical("no corpus of that name: %s", qPrintable(format));
    return 2;
}

} // namespace quorvia::test
