// What the codec tests share: fixture files made by independent programs (netpbm, ImageMagick,
// libjpeg-turbo's tools), pixels read back by them, and comparisons that name the first wrong pixel. A
// program that is missing or fails is a failed test that says so.
#pragma once

#include "engine/Codec.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <memory>

namespace quorvia::test {

/// A picture as plain bytes: R, G, B, A a pixel, 8 bits each, not premultiplied, rows from the top.
struct Rgba
{
    QSize size;
    QByteArray pixels;

    const uchar* at(int x, int y) const;
};

/// Runs `program` with `input` on its standard input and gives its standard output. When it is missing, takes
/// over a minute or ends with another code than 0 and `warningCode`, the running test fails and the result is
/// empty.
QByteArray runTool(const QString& program, const QStringList& arguments, const QByteArray& input = {},
                   int warningCode = 0);

/// A directory for fixture files, gone with the object.
class ScratchFiles
{
  public:
    QString path(const QString& name) const { return m_directory.filePath(name); }
    /// Writes `bytes` to `name`; returns the full path.
    QString write(const QString& name, const QByteArray& bytes) const;
    /// The bytes of `name`; empty when it cannot be read.
    QByteArray read(const QString& name) const;

  private:
    QTemporaryDir m_directory;
};

/// A picture with ramps, edges and some noise in all channels, the same for the same arguments.
Rgba samplePicture(QSize size);
/// `picture` as PPM (maxval 255), its alpha left out.
QByteArray ppmOf(const Rgba& picture);
/// The red channel of `picture` as PGM of `maxval` (1 to 65535; the value v * maxval / 255, rounded).
QByteArray pgmOf(const Rgba& picture, int maxval = 255);
/// The alpha channel of `picture` as PGM.
QByteArray alphaPgmOf(const Rgba& picture);

/// Reads PGM, PPM or PAM bytes (P4 to P7), as the independent programs write them; 16-bit samples are brought
/// to 8 bits by v * 255 / maxval, rounded. An empty size, and a failed test, when it is none of these.
Rgba fromPnm(const QByteArray& bytes);
/// The pixels of an image file of any kind, as ImageMagick reads them; `options` stand before the output.
Rgba readWithMagick(const QByteArray& file, const QString& extension, const QStringList& options = {});
/// The pixels of `image`.
Rgba rgbaOf(const QImage& image);
/// `picture` as an image (RGBA8888).
QImage imageOf(const Rgba& picture);

/// Empty when both pictures are the same up to `tolerance` in each channel; else where they first differ.
QString firstDifference(const Rgba& got, const Rgba& wanted, int tolerance = 0);
/// Peak signal to noise ratio of the colour channels in dB; 99 when they are the same, 0 for other sizes.
double psnr(const Rgba& one, const Rgba& other);

/// Opens `file` with `codec` and decodes page 1.
engine::Result<engine::Picture> decodeBytes(const engine::Codec& codec, const QByteArray& file,
                                            QSize box = {});

/// Bytes in memory that count what is read and tell about each read: the same seams as a file. Several
/// threads may read; `onRead` is then called on each of them.
class WatchedSource final : public engine::ByteSource
{
  public:
    /// `onRead` is called before each read with its offset.
    explicit WatchedSource(QByteArray bytes, std::function<void(qint64 offset)> onRead = {});
    qint64 size() const override;
    qint64 read(qint64 offset, void* out, qint64 length) const override;
    /// The offset behind the last byte that was read so far.
    qint64 reached() const { return m_reached; }

  private:
    QByteArray m_bytes;
    std::function<void(qint64)> m_onRead;
    mutable std::atomic<qint64> m_reached = 0;
};

/// How many bytes the resident memory grew at its peak while `work` ran; -1 where the system does not tell.
qint64 peakGrowth(const std::function<void()>& work);
/// What the address sanitizer itself takes for an allocation of `bytes`: an eighth of it; 0 in other builds.
qint64 sanitizerShare(qint64 bytes);

} // namespace quorvia::test
