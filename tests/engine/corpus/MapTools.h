// Short ways to netpbm and to programs that want files, for the corpora that are made with them.
#pragma once

#include "Corpus.h"

namespace quorvia::test {

inline QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// Runs a command line like "pnmquant 16" on `input`.
inline QByteArray piped(const char* command, const QByteArray& input)
{
    const QStringList parts = words(command);
    return runTool(parts.first(), parts.mid(1), input);
}

/// The sample picture as PPM of maxval 255.
inline QByteArray sampleMap(QSize size)
{
    return ppmOf(samplePicture(size));
}

/// The sample picture with at most `colors` colours.
inline QByteArray fewColors(QSize size, int colors)
{
    return runTool(QStringLiteral("pnmquant"), {QStringLiteral("-quiet"), QString::number(colors)},
                   sampleMap(size));
}

/// The pixels of any portable map, as netpbm reads it.
inline Rgba mapPixels(const QByteArray& map)
{
    return fromPnm(runTool(QStringLiteral("pamtopam"), {}, map));
}

/// What a program makes of `input`: in its arguments "@in" and "@out" stand for the names of files with these
/// extensions.
inline QByteArray converted(const char* command, const QByteArray& input, const char* inExtension,
                            const char* outExtension)
{
    const ScratchFiles files;
    const QString in = files.write(QStringLiteral("in.") + QLatin1String(inExtension), input);
    const QString outName = QStringLiteral("out.") + QLatin1String(outExtension);
    QStringList parts = words(command);
    parts.replaceInStrings(QStringLiteral("@in"), in);
    parts.replaceInStrings(QStringLiteral("@out"), files.path(outName));
    runTool(parts.first(), parts.mid(1));
    return files.read(outName);
}

/// The sample picture as PNG, with or without its alpha.
inline QByteArray samplePng(QSize size, bool alpha)
{
    if (!alpha)
        return piped("pnmtopng -quiet", sampleMap(size));
    const ScratchFiles files;
    const QString mask = files.write(QStringLiteral("in.pgm"), alphaPgmOf(samplePicture(size)));
    return runTool(QStringLiteral("pnmtopng"), {QStringLiteral("-quiet"), QStringLiteral("-alpha=") + mask},
                   sampleMap(size));
}

/// The pixels of a PNG, as netpbm reads it.
inline Rgba pngPixels(const QByteArray& png)
{
    return fromPnm(piped("pngtopam -quiet -alphapam", png));
}

} // namespace quorvia::test
