#include "CodecFixtures.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quorvia::test {

using engine::ByteSource;
using engine::CancelFlag;
using engine::Codec;
using engine::Picture;
using engine::Result;

namespace {

void fail(const QString& text)
{
    QTest::qFail(qPrintable(text), __FILE__, __LINE__);
}

/// Reads the header words of a PNM file.
class PnmReader
{
  public:
    explicit PnmReader(const QByteArray& bytes) : m_bytes(bytes) {}

    QByteArray word()
    {
        while (m_at < m_bytes.size() && (std::isspace(uchar(m_bytes[m_at])) || m_bytes[m_at] == '#')) {
            if (m_bytes[m_at] == '#')
                line();
            else
                ++m_at;
        }
        const qsizetype first = m_at;
        while (m_at < m_bytes.size() && !std::isspace(uchar(m_bytes[m_at])))
            ++m_at;
        return m_bytes.mid(first, m_at - first);
    }
    int number() { return word().toInt(); }
    /// The pixels behind the header and the one blank after it.
    QByteArray rest() const { return m_bytes.mid(m_at + 1); }

  private:
    void line()
    {
        while (m_at < m_bytes.size() && m_bytes[m_at] != '\n')
            ++m_at;
    }

    const QByteArray& m_bytes;
    qsizetype m_at = 0;
};

struct PnmHeader
{
    QSize size;
    int channels = 0;
    int maxval = 0;
};

PnmHeader readHeader(PnmReader& reader)
{
    PnmHeader header;
    const QByteArray magic = reader.word();
    if (magic == "P5" || magic == "P6") {
        const int width = reader.number();
        header.size = QSize(width, reader.number());
        header.channels = magic == "P5" ? 1 : 3;
        header.maxval = reader.number();
    } else if (magic == "P7") {
        int width = 0;
        int height = 0;
        for (QByteArray key = reader.word(); !key.isEmpty() && key != "ENDHDR"; key = reader.word()) {
            const int value = reader.number();
            if (key == "WIDTH")
                width = value;
            else if (key == "HEIGHT")
                height = value;
            else if (key == "DEPTH")
                header.channels = value;
            else if (key == "MAXVAL")
                header.maxval = value;
        }
        header.size = QSize(width, height);
    } else if (magic == "P4") {
        const int width = reader.number();
        header.size = QSize(width, reader.number());
        header.channels = 1;
    }
    return header;
}

/// One bit a pixel, 1 is black, rows filled up to bytes.
QByteArray bitsToGray(const QByteArray& packed, QSize size)
{
    QByteArray gray;
    const int stride = (size.width() + 7) / 8;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            gray.append((packed[y * stride + x / 8] >> (7 - x % 8)) & 1 ? char(0) : char(255));
    }
    return gray;
}

int sampleAt(const QByteArray& samples, qsizetype index, int maxval)
{
    const auto* bytes = reinterpret_cast<const uchar*>(samples.constData());
    const int value = maxval > 255 ? bytes[2 * index] << 8 | bytes[2 * index + 1] : bytes[index];
    return (value * 255 * 2 + maxval) / (2 * maxval);
}

qint64 statusLine(const char* key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(qsizetype(std::strlen(key))).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return -1;
}

} // namespace

const uchar* Rgba::at(int x, int y) const
{
    return reinterpret_cast<const uchar*>(pixels.constData()) + 4 * (qsizetype(y) * size.width() + x);
}

QByteArray runTool(const QString& program, const QStringList& arguments, const QByteArray& input,
                   int warningCode)
{
    constexpr int patience = 60000; // milliseconds
    const QString file = QStandardPaths::findExecutable(program);
    if (file.isEmpty()) {
        fail(QStringLiteral("the program \"%1\", which makes or reads fixtures, is not installed")
                 .arg(program));
        return {};
    }
    QProcess process;
    process.start(file, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit ||
        (process.exitCode() != 0 && process.exitCode() != warningCode)) {
        process.kill();
        fail(QStringLiteral("%1 %2: %3")
                 .arg(program, arguments.join(QLatin1Char(' ')),
                      QString::fromLocal8Bit(process.readAllStandardError())));
        return {};
    }
    return process.readAllStandardOutput();
}

QString ScratchFiles::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        fail(QStringLiteral("cannot write %1").arg(file.fileName()));
    return file.fileName();
}

QByteArray ScratchFiles::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Rgba samplePicture(QSize size)
{
    Rgba picture{size, QByteArray(qsizetype(4) * size.width() * size.height(), Qt::Uninitialized)};
    char* out = picture.pixels.data();
    quint32 noise = 12345;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            noise = noise * 1664525U + 1013904223U;
            const bool edge = (x / 16 + y / 12) % 5 == 0;
            const int grain = int(noise >> 28);
            *out++ = char(edge ? 240 : (x * 255 / size.width() + grain) & 255);
            *out++ = char(edge ? 16 : (y * 255 / size.height() + grain / 2) & 255);
            *out++ = char(((x + 2 * y) / 3 + grain) & 255);
            *out++ = char((x * 7 + y * 5) & 255);
        }
    }
    return picture;
}

QByteArray ppmOf(const Rgba& picture)
{
    QByteArray bytes = "P6\n" + QByteArray::number(picture.size.width()) + ' ' +
                       QByteArray::number(picture.size.height()) + "\n255\n";
    for (qsizetype i = 0; i < picture.pixels.size(); i += 4)
        bytes.append(picture.pixels.constData() + i, 3);
    return bytes;
}

namespace {

QByteArray grayOf(const Rgba& picture, int channel, int maxval)
{
    QByteArray bytes = "P5\n" + QByteArray::number(picture.size.width()) + ' ' +
                       QByteArray::number(picture.size.height()) + '\n' + QByteArray::number(maxval) + '\n';
    for (qsizetype i = channel; i < picture.pixels.size(); i += 4) {
        const int value = (uchar(picture.pixels[i]) * maxval * 2 + 255) / 510;
        if (maxval > 255)
            bytes.append(char(value >> 8));
        bytes.append(char(value & 255));
    }
    return bytes;
}

} // namespace

QByteArray pgmOf(const Rgba& picture, int maxval)
{
    return grayOf(picture, 0, maxval);
}

QByteArray alphaPgmOf(const Rgba& picture)
{
    return grayOf(picture, 3, 255);
}

Rgba fromPnm(const QByteArray& bytes)
{
    PnmReader reader(bytes);
    PnmHeader header = readHeader(reader);
    QByteArray samples = reader.rest();
    if (header.channels == 1 && header.maxval == 0 && !header.size.isEmpty()) {
        if (samples.size() >= qsizetype((header.size.width() + 7) / 8) * header.size.height())
            samples = bitsToGray(samples, header.size);
        header.maxval = 255;
    }
    const qsizetype count = qsizetype(header.size.width()) * header.size.height();
    const int bytesPerSample = header.maxval > 255 ? 2 : 1;
    if (count <= 0 || header.channels < 1 || header.channels > 4 || header.maxval < 1 ||
        samples.size() < count * header.channels * bytesPerSample) {
        fail(QStringLiteral("not a PNM file that can be compared"));
        return {};
    }
    Rgba picture{header.size, QByteArray(4 * count, Qt::Uninitialized)};
    char* out = picture.pixels.data();
    const bool color = header.channels >= 3;
    const bool alpha = header.channels % 2 == 0;
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype first = i * header.channels;
        for (int channel = 0; channel < 3; ++channel)
            *out++ = char(sampleAt(samples, first + (color ? channel : 0), header.maxval));
        *out++ = alpha ? char(sampleAt(samples, first + header.channels - 1, header.maxval)) : char(255);
    }
    return picture;
}

Rgba readWithMagick(const QByteArray& file, const QString& extension, const QStringList& options)
{
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.") + extension, file);
    const QStringList tail = {QStringLiteral("-alpha"), QStringLiteral("on"),
                              QStringLiteral("-type"),  QStringLiteral("TrueColorAlpha"),
                              QStringLiteral("-depth"), QStringLiteral("8"),
                              QStringLiteral("pam:-")};
    return fromPnm(runTool(QStringLiteral("convert"), QStringList{path} + options + tail));
}

Rgba rgbaOf(const QImage& image)
{
    Rgba picture{image.size(), {}};
    const QImage plain = image.convertToFormat(QImage::Format_RGBA8888);
    for (int y = 0; y < plain.height(); ++y)
        picture.pixels.append(reinterpret_cast<const char*>(plain.constScanLine(y)),
                              qsizetype(4) * plain.width());
    return picture;
}

QImage imageOf(const Rgba& picture)
{
    return QImage(picture.at(0, 0), picture.size.width(), picture.size.height(), picture.size.width() * 4,
                  QImage::Format_RGBA8888)
        .copy();
}

QString firstDifference(const Rgba& got, const Rgba& wanted, int tolerance)
{
    if (got.size != wanted.size)
        return QStringLiteral("%1 x %2 pixels instead of %3 x %4")
            .arg(got.size.width())
            .arg(got.size.height())
            .arg(wanted.size.width())
            .arg(wanted.size.height());
    const auto text = [](const uchar* p) {
        return QStringLiteral("(%1, %2, %3, %4)").arg(p[0]).arg(p[1]).arg(p[2]).arg(p[3]);
    };
    for (int y = 0; y < got.size.height(); ++y) {
        for (int x = 0; x < got.size.width(); ++x) {
            const uchar* one = got.at(x, y);
            const uchar* other = wanted.at(x, y);
            for (int channel = 0; channel < 4; ++channel) {
                if (std::abs(one[channel] - other[channel]) > tolerance)
                    return QStringLiteral("pixel %1, %2 is %3 instead of %4")
                        .arg(x)
                        .arg(y)
                        .arg(text(one), text(other));
            }
        }
    }
    return {};
}

double psnr(const Rgba& one, const Rgba& other)
{
    if (one.size != other.size || one.pixels.isEmpty())
        return 0;
    double sum = 0;
    for (qsizetype i = 0; i < one.pixels.size(); ++i) {
        const int difference = i % 4 == 3 ? 0 : uchar(one.pixels[i]) - uchar(other.pixels[i]);
        sum += difference * difference;
    }
    const double mean = sum / (double(one.pixels.size()) * 3 / 4);
    return mean == 0 ? 99 : 10 * std::log10(255.0 * 255.0 / mean);
}

Result<Picture> decodeBytes(const Codec& codec, const QByteArray& file, QSize box)
{
    auto decoder = codec.open(ByteSource::fromBytes(file));
    if (!decoder)
        return decoder.error();
    const CancelFlag goOn{false};
    return (*decoder)->decode(1, box, goOn);
}

WatchedSource::WatchedSource(QByteArray bytes, std::function<void(qint64)> onRead)
    : m_bytes(std::move(bytes)), m_onRead(std::move(onRead))
{
}

qint64 WatchedSource::size() const
{
    return m_bytes.size();
}

qint64 WatchedSource::read(qint64 offset, void* out, qint64 length) const
{
    if (m_onRead)
        m_onRead(offset);
    const qint64 count = std::clamp<qint64>(m_bytes.size() - offset, 0, length);
    if (count > 0) {
        std::memcpy(out, m_bytes.constData() + offset, size_t(count));
        m_reached = std::max<qint64>(m_reached, offset + count);
    }
    return count;
}

qint64 peakGrowth(const std::function<void()>& work)
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1) // 5: the peak begins anew
        return -1;
    reset.close();
    const qint64 before = statusLine("VmRSS:");
    work();
    const qint64 peak = statusLine("VmHWM:");
    return before < 0 || peak < 0 ? -1 : std::max<qint64>(0, peak - before);
}

qint64 sanitizerShare(qint64 bytes)
{
#ifdef __SANITIZE_ADDRESS__
    return bytes / 8;
#else
    Q_UNUSED(bytes);
    return 0;
#endif
}

} // namespace quorvia::test
