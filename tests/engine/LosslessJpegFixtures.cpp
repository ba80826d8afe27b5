#include "LosslessJpegFixtures.h"

#include <QtEndian>
#include <QTest>

#include <cstdlib>

namespace quorvia::test {

namespace {

void fail(const char* text)
{
    QTest::qFail(text, __FILE__, __LINE__);
}

// ---- DICOM: elements of a group, a number, a kind, a length and a value; little-endian ----

constexpr char nativeSyntax[] = "1.2.840.10008.1.2.1";
constexpr char losslessJpegSyntax[] = "1.2.840.10008.1.2.4.57";
constexpr quint32 pixelDataTag = 0x7FE00010;

template <class T>
QByteArray number(T value)
{
    const T little = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&little), sizeof little);
}

QByteArray tagBytes(quint32 tag)
{
    return number<quint16>(quint16(tag >> 16)) + number<quint16>(quint16(tag));
}

QByteArray element(quint32 tag, const char* kind, QByteArray value)
{
    if (value.size() % 2 != 0)
        value.append(qstrcmp(kind, "UI") == 0 ? '\0' : ' ');
    const bool longForm = kind[0] == 'O';
    QByteArray out = tagBytes(tag) + kind;
    out += longForm ? QByteArray(2, '\0') + number<quint32>(quint32(value.size()))
                    : number<quint16>(quint16(value.size()));
    return out + value;
}

QByteArray word(quint32 tag, int value)
{
    return element(tag, "US", number<quint16>(quint16(value)));
}

/// A DICOM file around `pixelData`, a whole element.
QByteArray dicomFile(const char* syntax, const SamplePlanes& facts, const QByteArray& pixelData)
{
    constexpr char secondaryCapture[] = "1.2.840.10008.5.1.4.1.1.7";
    const QByteArray meta = element(0x00020001, "OB", QByteArray("\0\1", 2)) +
                            element(0x00020002, "UI", secondaryCapture) +
                            element(0x00020003, "UI", "1.2.3.4") + element(0x00020010, "UI", syntax) +
                            element(0x00020012, "UI", "1.2.3.5");
    const int bits = facts.precision > 8 ? 16 : 8;
    const auto components = int(facts.planes.size());
    QByteArray set = element(0x00080016, "UI", secondaryCapture) + element(0x00080018, "UI", "1.2.3.4");
    set += word(0x00280002, components);
    set += element(0x00280004, "CS", components == 3 ? "RGB" : "MONOCHROME2");
    if (components > 1)
        set += word(0x00280006, 0);
    set += word(0x00280010, facts.size.height()) + word(0x00280011, facts.size.width());
    set += word(0x00280100, bits) + word(0x00280101, facts.precision);
    set += word(0x00280102, facts.precision - 1) + word(0x00280103, 0);
    return QByteArray(128, '\0') + "DICM" + element(0x00020000, "UL", number<quint32>(quint32(meta.size()))) +
           meta + set + pixelData;
}

QByteArray runDcmtk(const char* program, const QStringList& options, const QByteArray& file)
{
    const ScratchFiles files;
    const QString in = files.write(QStringLiteral("in.dcm"), file);
    runTool(QLatin1String(program), options + QStringList{in, files.path(QStringLiteral("out.dcm"))});
    return files.read(QStringLiteral("out.dcm"));
}

/// What stands behind the tag and kind of the pixel data.
QByteArray behindPixelTag(const QByteArray& file)
{
    for (const char* kind : {"OW", "OB"}) {
        const QByteArray mark = tagBytes(pixelDataTag) + kind + QByteArray(2, '\0');
        const qsizetype at = file.lastIndexOf(mark);
        if (at >= 0)
            return file.mid(at + mark.size());
    }
    fail("no pixel data in the DICOM file");
    return {};
}

// ---- lossless JPEG ----

void appendWord(QByteArray& out, int value)
{
    out.append(char(value >> 8));
    out.append(char(value & 255));
}

/// Bits as '0' and '1'.
QByteArray bitText(int value, int count)
{
    QByteArray text;
    for (int i = count - 1; i >= 0; --i)
        text.append((value >> i & 1) != 0 ? '1' : '0');
    return text;
}

QByteArray packed(QByteArray text)
{
    while (text.size() % 8 != 0)
        text.append('1');
    QByteArray out;
    for (qsizetype i = 0; i < text.size(); i += 8) {
        out.append(char(text.mid(i, 8).toInt(nullptr, 2)));
        if (out.back() == char(0xff))
            out.append('\0');
    }
    return out;
}

QByteArray codeOf(int category, bool longCodes)
{
    return longCodes ? QByteArray(category, '1') + '0' : bitText(category, 5);
}

QByteArray codedDifference(int difference, bool longCodes)
{
    int value = difference & 0xFFFF; // modulo 2^16, then as -32767 to 32768
    if (value > 32768)
        value -= 65536;
    int category = 0;
    while (std::abs(value) >= 1 << category)
        ++category;
    QByteArray code = codeOf(category, longCodes);
    if (category == 0 || category == 16)
        return code;
    return code + bitText(value > 0 ? value : value + (1 << category) - 1, category);
}

} // namespace

SamplePlanes samplePlanes(QSize size, int components, int precision)
{
    const Rgba picture = samplePicture(size);
    SamplePlanes result{size, precision, {}};
    quint32 noise = 99;
    for (int component = 0; component < components; ++component) {
        std::vector<int> plane;
        for (qsizetype i = component; i < picture.pixels.size(); i += 4) {
            noise = noise * 1664525U + 1013904223U;
            const int value = uchar(picture.pixels[i]);
            plane.push_back(precision <= 8 ? value >> (8 - precision)
                                           : value << (precision - 8) | int(noise >> (40 - precision)));
        }
        result.planes.push_back(std::move(plane));
    }
    return result;
}

Rgba shownPlanes(const SamplePlanes& planes, int shift)
{
    const int top = (1 << planes.precision) - 1;
    Rgba shown{planes.size, {}};
    for (size_t i = 0; i < planes.planes[0].size(); ++i) {
        for (size_t channel = 0; channel < 3; ++channel) {
            const int value = planes.planes[planes.planes.size() < 3 ? 0 : channel][i] >> shift << shift;
            shown.pixels.append(char((value * 255 + top / 2) / top));
        }
        shown.pixels.append(char(255));
    }
    return shown;
}

QByteArray dcmtkJpeg(const SamplePlanes& planes, int predictor, int shift)
{
    QByteArray samples;
    for (size_t i = 0; i < planes.planes[0].size(); ++i) {
        for (const std::vector<int>& plane : planes.planes) {
            if (planes.precision > 8)
                samples += number<quint16>(quint16(plane[i]));
            else
                samples.append(char(plane[i]));
        }
    }
    const QByteArray native =
        dicomFile(nativeSyntax, planes, element(pixelDataTag, planes.precision > 8 ? "OW" : "OB", samples));
    const QByteArray made =
        runDcmtk("dcmcjpeg",
                 {QStringLiteral("+el"), QStringLiteral("+sv"), QString::number(predictor),
                  QStringLiteral("+pt"), QString::number(shift)},
                 native);
    // A length that says "items", the item of the offset table, the item of the picture.
    const QByteArray items = behindPixelTag(made).mid(4);
    const auto lengthAt = [&](qsizetype at) {
        return at + 8 <= items.size() ? qsizetype(qFromLittleEndian<quint32>(items.constData() + at + 4)) : 0;
    };
    const qsizetype picture = 8 + lengthAt(0);
    return items.mid(picture + 8, lengthAt(picture));
}

SamplePlanes readByDcmtk(const QByteArray& file, const SamplePlanes& facts)
{
    QByteArray even = file;
    if (even.size() % 2 != 0)
        even.append('\0');
    const QByteArray item = tagBytes(0xFFFEE000);
    const QByteArray pixelData = tagBytes(pixelDataTag) + "OB" + QByteArray(2, '\0') +
                                 number<quint32>(0xFFFFFFFF) + item + number<quint32>(0) + item +
                                 number<quint32>(quint32(even.size())) + even + tagBytes(0xFFFEE0DD) +
                                 number<quint32>(0);
    const QByteArray native = runDcmtk("dcmdjpeg", {QStringLiteral("+cn"), QStringLiteral("+px")},
                                       dicomFile(losslessJpegSyntax, facts, pixelData));
    const QByteArray samples = behindPixelTag(native).mid(4);
    SamplePlanes result{facts.size, facts.precision, {}};
    const size_t count = size_t(facts.size.width()) * size_t(facts.size.height());
    const size_t components = facts.planes.size();
    const size_t bytes = facts.precision > 8 ? 2 : 1;
    if (size_t(samples.size()) < count * components * bytes) {
        fail("dcmdjpeg gave too few samples");
        return {};
    }
    for (size_t component = 0; component < components; ++component) {
        std::vector<int> plane;
        for (size_t i = 0; i < count; ++i) {
            const char* at = samples.constData() + (i * components + component) * bytes;
            plane.push_back(bytes == 2 ? qFromLittleEndian<quint16>(at) : uchar(*at));
        }
        result.planes.push_back(std::move(plane));
    }
    return result;
}

QByteArray LosslessJpegMaker::segment(int code, const QByteArray& body)
{
    QByteArray out = QByteArrayLiteral("\xff") + char(code);
    appendWord(out, int(body.size()) + 2);
    return out + body;
}

namespace {

/// The entropy-coded segments of a scan over the components in `parts`.
QByteArray scanData(const LosslessJpegMaker& maker, const std::vector<size_t>& parts)
{
    const int width = maker.picture.size.width();
    QByteArray out;
    QByteArray bits;
    for (int y = 0; y < maker.picture.size.height(); ++y) {
        const bool restart = maker.restartRows > 0 && y % maker.restartRows == 0;
        if (restart && y > 0) {
            out += packed(bits) + '\xff' + char(0xd0 + (y / maker.restartRows - 1) % 8);
            bits.clear();
        }
        for (int x = 0; x < width; ++x) {
            for (const size_t part : parts) {
                const auto sample = [&](int column, int row) {
                    return maker.picture.planes[part][size_t(row) * size_t(width) + size_t(column)] >>
                           maker.shift;
                };
                int predicted = 0;
                if (y == 0 || restart) {
                    predicted = x > 0 ? sample(x - 1, y) : 1 << (maker.picture.precision - maker.shift - 1);
                } else if (x == 0) {
                    predicted = sample(0, y - 1);
                } else {
                    const int a = sample(x - 1, y);
                    const int b = sample(x, y - 1);
                    const int c = sample(x - 1, y - 1);
                    const int table[] = {a,           b, c, a + b - c, a + ((b - c) >> 1), b + ((a - c) >> 1),
                                         (a + b) >> 1};
                    predicted = table[maker.predictor - 1];
                }
                bits += codedDifference(sample(x, y) - predicted, maker.longCodes);
            }
        }
    }
    return out + packed(bits);
}

} // namespace

QByteArray LosslessJpegMaker::bytes() const
{
    QByteArray out = QByteArrayLiteral("\xff\xd8") + marks;
    QByteArray frame(1, char(picture.precision));
    appendWord(frame, picture.size.height());
    appendWord(frame, picture.size.width());
    frame.append(char(picture.planes.size()));
    for (size_t i = 0; i < picture.planes.size(); ++i) {
        frame.append(char(i + 1));
        frame.append(char(i == 0 ? sampling : 0x11));
        frame.append('\0');
    }
    out += segment(process, frame);
    if (acTable)
        out += segment(0xc4, QByteArray(1, 0x12) + '\3' + QByteArray(15, '\0') + "\x77\x78\x79");
    QByteArray table(1, '\2');
    for (int length = 1; length <= 16; ++length)
        table.append(char(longCodes ? 1 : length == 5 ? 17 : 0));
    for (int category = 0; category < (longCodes ? 16 : 17); ++category)
        table.append(char(category));
    out += segment(0xc4, table);
    if (restartRows > 0) {
        QByteArray interval;
        appendWord(interval, restartRows * picture.size.width());
        out += segment(0xdd, interval);
    }
    std::vector<std::vector<size_t>> scans;
    for (size_t i = 0; i < picture.planes.size(); ++i) {
        if (scans.empty() || !interleaved)
            scans.emplace_back();
        scans.back().push_back(i);
    }
    for (const std::vector<size_t>& parts : scans) {
        QByteArray body(1, char(parts.size()));
        for (const size_t part : parts) {
            body.append(char(part + 1));
            body.append('\x20');
        }
        body.append(char(predictor));
        body.append('\0');
        body.append(char(shift));
        out += segment(0xda, body) + scanData(*this, parts);
    }
    return out + "\xff\xd9";
}

QByteArray adobeMark(int transform)
{
    return LosslessJpegMaker::segment(0xee, QByteArray("Adobe\0\x64\0\0\0\0", 11) + char(transform));
}

QByteArray jfifMark()
{
    return LosslessJpegMaker::segment(0xe0, QByteArray("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
}

} // namespace quorvia::test
