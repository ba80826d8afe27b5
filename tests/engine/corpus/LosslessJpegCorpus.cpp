#include "Corpus.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"

namespace quorvia::test {

namespace {

QString named(const char* kind, const SamplePlanes& picture, int predictor)
{
    return QStringLiteral("%1, %2 components of %3 bits, predictor %4, %5 x %6")
        .arg(QLatin1String(kind))
        .arg(picture.planes.size())
        .arg(picture.precision)
        .arg(predictor)
        .arg(picture.size.width())
        .arg(picture.size.height());
}

/// A file of DCMTK's writer, as its reader sees it.
Fixture written(QSize size, int components, int precision, int predictor, int shift = 0)
{
    const SamplePlanes picture = samplePlanes(size, components, precision);
    const QByteArray file = dcmtkJpeg(picture, predictor, shift);
    SamplePlanes seen = readByDcmtk(file, picture);
    seen.precision = file.mid(frameAt(file) + 4, 1).toHex().toInt(nullptr, 16); // 16 for all above 8
    return {named(shift > 0 ? "dcmcjpeg with point transform" : "dcmcjpeg", picture, predictor), file,
            shownPlanes(seen)};
}

/// A file put together by hand, as DCMTK's reader sees it.
Fixture madeAndRead(const char* kind, const LosslessJpegMaker& maker)
{
    const QByteArray file = maker.bytes();
    return {named(kind, maker.picture, maker.predictor), file, shownPlanes(readByDcmtk(file, maker.picture))};
}

/// A file put together by hand that DCMTK's reader does not take; its pixels are known by its making.
Fixture made(const char* kind, const LosslessJpegMaker& maker)
{
    return {named(kind, maker.picture, maker.predictor), maker.bytes(),
            shownPlanes(maker.picture, maker.shift)};
}

} // namespace

std::vector<Fixture> losslessJpegCorpus()
{
    std::vector<Fixture> corpus;
    for (int predictor = 1; predictor <= 7; ++predictor) {
        corpus.push_back(written(QSize(37, 23), 3, 8, predictor));
        corpus.push_back(written(QSize(41, 19), 1, 16, predictor));
    }
    corpus.push_back(written(QSize(64, 33), 1, 8, 6));
    corpus.push_back(written(QSize(33, 17), 1, 10, 5));
    corpus.push_back(written(QSize(33, 17), 1, 8, 2, 2));
    corpus.push_back(written(QSize(33, 17), 1, 16, 7, 5));
    corpus.push_back(written(QSize(1, 1), 3, 8, 1));
    corpus.push_back(written(QSize(1, 20000), 1, 8, 5));
    corpus.push_back(written(QSize(20000, 1), 3, 8, 4));

    LosslessJpegMaker maker;
    maker.picture = samplePlanes(QSize(29, 40), 3, 8);
    maker.predictor = 4;
    maker.restartRows = 3;
    corpus.push_back(madeAndRead("restarts", maker));
    maker.restartRows = 0;
    maker.longCodes = true;
    corpus.push_back(madeAndRead("long codes", maker));
    maker.interleaved = false;
    maker.acTable = true;
    corpus.push_back(madeAndRead("a scan each", maker));
    maker.restartRows = 1;
    corpus.push_back(madeAndRead("a scan each, restarts", maker));
    maker = {};
    for (const int precision : {2, 5, 9, 12, 13, 16}) {
        maker.picture = samplePlanes(QSize(23, 14), 1, precision);
        maker.predictor = 1 + precision % 7;
        corpus.push_back(precision == 2 ? made("by hand", maker) : madeAndRead("by hand", maker));
    }
    return corpus;
}

} // namespace quorvia::test
