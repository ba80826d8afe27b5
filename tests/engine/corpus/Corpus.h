// The good files of every format that the codecs are held to: made by programs and writers that are not ours,
// over the variants of each format. Pixels are compared with an independent reader's; broken children are
// made from them; the fuzz targets start from them. Making a corpus runs many programs: a few seconds a
// format.
#pragma once

#include "CodecFixtures.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <span>
#include <vector>

namespace quorvia::test {

struct Fixture
{
    QString name;       ///< the variant in words, as "8 bits, run length, 13 x 7"
    QByteArray file;    ///< the whole file
    Rgba expected;      ///< page `page` as an independent reader sees it; an empty size where none is exact
    int tolerance = 0;  ///< largest difference of a channel; above 0 only for lossy forms and drawings
    int page = 1;       ///< from 1
    bool marked = true; ///< false where only the name tells the format
};

/// The fixtures of one format, at least ten.
struct CorpusEntry
{
    const char* extension;           ///< one of the viewer's extensions, or of a format opened by name
    std::vector<Fixture> (*make)();  ///< makes the files; the running test fails when a program is missing
    const engine::Codec& (*codec)(); ///< the one that must take them
};

/// All formats.
std::span<const CorpusEntry> corpusTable();

/// The extension under which the files of `entry` are opened: that of Utah run-length files is shared.
QString fileExtension(const CorpusEntry& entry);

/// What a lossless file of `picture` must show: ImageMagick's reading of `file`, or the picture itself
/// without its alpha where a side is longer than ImageMagick takes.
Rgba expectedOf(const QByteArray& file, const QString& extension, const Rgba& picture);

/// Runs `test` for the corpus that the first argument names, with an application object and the other
/// arguments for Qt Test; the program's exit code.
int runForCorpus(int argc, char** argv, const std::function<int(const CorpusEntry&, int, char**)>& test);

std::vector<Fixture> bmpCorpus();
std::vector<Fixture> dibCorpus();
std::vector<Fixture> rleCorpus(); ///< run-length bitmaps
std::vector<Fixture> utahCorpus();
std::vector<Fixture> gifCorpus();
std::vector<Fixture> jpegCorpus();
std::vector<Fixture> losslessJpegCorpus();
std::vector<Fixture> tiffCorpus();
std::vector<Fixture> wmfCorpus();
std::vector<Fixture> icoCorpus();
std::vector<Fixture> dcxCorpus();
std::vector<Fixture> pbmCorpus();
std::vector<Fixture> pgmCorpus();
std::vector<Fixture> ppmCorpus();
std::vector<Fixture> pcxCorpus();
std::vector<Fixture> picCorpus(); ///< Softimage
std::vector<Fixture> pictCorpus();
std::vector<Fixture> pngCorpus();
std::vector<Fixture> tgaCorpus();
std::vector<Fixture> wpgCorpus();
std::vector<Fixture> webpCorpus();
std::vector<Fixture> avifCorpus();
std::vector<Fixture> jpegXlCorpus();

} // namespace quorvia::test
