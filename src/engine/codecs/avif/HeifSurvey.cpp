#include "engine/codecs/avif/HeifSurvey.h"

#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifFields.h"

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr int mostBits = 16;

constexpr quint64 mostWork = quint64(1) << 50; // keeps sums of sums from running over

/// What decoding an item costs, everything that it is made of included, as often as that is decoded.
struct Work
{
    quint64 pixels = 0;
    quint64 decodings = 0;

    void add(const Work& other)
    {
        pixels = std::min(pixels + other.pixels, mostWork);
        decodings = std::min(decodings + other.decodings, mostWork);
    }
};

/// The work of as many `pictures`, at least 1, of `pixels` each.
Work workOf(quint64 pixels, quint64 pictures)
{
    return {pixels > mostWork / pictures ? mostWork : pixels * pictures, std::min(pictures, mostWork)};
}

quint64 areaOf(QSize size)
{
    return quint64(std::max(size.width(), 0)) * quint64(std::max(size.height(), 0));
}

QSize sizeOf(quint64 width, quint64 height)
{
    constexpr quint64 most = std::numeric_limits<int>::max();
    return QSize(int(std::min(width, most)), int(std::min(height, most)));
}

/// The canvas that the first bytes of a grid or an overlay tell (ISO/IEC 23008-12, 6.6.2).
QSize canvasOf(const QByteArray& head, bool isGrid)
{
    constexpr int rowsAndColumns = 2;
    constexpr int fill = 4 * 2;
    HeifFields fields(head);
    fields.take(1);
    const int bytes = (fields.take(1) & 1) != 0 ? 4 : 2;
    fields.take(isGrid ? rowsAndColumns : fill);
    const quint64 width = fields.take(bytes);
    return sizeOf(width, fields.take(bytes));
}

/// The size that a property of the kind "ispe" tells.
QSize toldSize(const QByteArray& content)
{
    HeifFields fields(content, 4);
    const quint64 width = fields.take(4);
    return sizeOf(width, fields.take(4));
}

/// What the units in the configuration of an HEVC decoder announce; it gets them before those of the stream.
HeifStream configuredHevc(const QByteArray& content, qint64& glances)
{
    constexpr qsizetype arrays = 22;
    HeifFields fields(content, arrays);
    HeifStream found;
    for (quint64 count = fields.take(1); count > 0 && !fields.isAtEnd(); --count) {
        fields.take(1);
        for (quint64 units = fields.take(2); units > 0 && !fields.isAtEnd() && glances >= 0; --units) {
            const QByteArray unit = fields.bytes(qsizetype(fields.take(2)));
            glances -= unit.size() + 2;
            found.add(hevcUnit(unit));
        }
    }
    return found;
}

/// True when a stream that announces `coded` gives a picture of the size `told`: HEVC codes whole blocks, of
/// which the decoder cuts off the rest.
bool agree(QSize coded, QSize told, bool inBlocks)
{
    constexpr int largestBlock = 64;
    if (!inBlocks)
        return coded == told;
    const QSize rest = coded - told;
    return rest.width() >= 0 && rest.height() >= 0 && rest.width() < largestBlock &&
           rest.height() < largestBlock;
}

class Surveyor
{
  public:
    Surveyor(const QByteArray& file, const HeifItems& items) : m_file(file), m_items(items) {}

    HeifSurvey survey();

  private:
    Work visit(quint32 id, bool isAuxiliary, int depth);
    Work visitNew(const HeifItem& item, bool isAuxiliary, int depth);
    HeifStream readCoded(const HeifItem& item, bool isAuxiliary);
    QSize readCanvas(const HeifItem& item, bool isGrid);
    void checkDepths(const HeifItem& item);
    void checkTiles(const HeifItem& grid);
    void checkWork(const Work& work);
    HeifPieces piecesOf(const HeifItem& item);
    void fault(ErrorKind kind, const QString& text);

    const QByteArray& m_file;
    const HeifItems& m_items;
    HeifSurvey m_found;
    QHash<quint32, std::optional<Work>> m_visited; ///< without a value while the visit lasts
    qint64 m_glances = heifGlances;
    bool m_colour = false; ///< some coded picture has colours
};

void Surveyor::fault(ErrorKind kind, const QString& text)
{
    if (!m_found.fault)
        m_found.fault = Error{kind, text};
}

HeifPieces Surveyor::piecesOf(const HeifItem& item)
{
    HeifPieces pieces = heifPieces(m_file, m_items, item);
    if (pieces.size() > m_file.size())
        fault(ErrorKind::Damaged, QStringLiteral("an item of more bytes than the file"));
    return pieces;
}

/// Reads the stream of a coded `item` and what is told of it; its size and pictures by the stream.
HeifStream Surveyor::readCoded(const HeifItem& item, bool isAuxiliary)
{
    constexpr qsizetype av1Units = 4;
    const bool isAv1 = item.type == "av01";
    const HeifPieces stream = piecesOf(item);
    HeifStream coded;
    HeifPieces fed; // as the AV1 decoder gets them: the frames of the stream may go by the header before it
    bool configured = false;
    for (const int index : item.properties) {
        const HeifProperty& property = m_items.properties[index];
        const QByteArray& bytes = property.content;
        int bits = 8;
        bool grey = false;
        if (isAv1 && property.name == "av1C" && bytes.size() >= av1Units) {
            fed.append(bytes.mid(av1Units));
            const auto flags = uchar(bytes[2]);
            bits = (flags & 0x40) == 0 ? 8 : (flags & 0x20) == 0 ? 10 : 12;
            grey = (flags & 0x10) != 0;
        } else if (!isAv1 && property.name == "hvcC" && bytes.size() > 22) {
            coded.add(configuredHevc(bytes, m_glances));
            bits = 8 + (uchar(bytes[17]) & 7);
            grey = (uchar(bytes[16]) & 3) == 0;
        } else {
            continue;
        }
        if (configured)
            fault(ErrorKind::Damaged, QStringLiteral("two configurations of one decoder"));
        configured = true;
        m_found.bits = std::max(m_found.bits, bits);
        m_colour = m_colour || (!grey && !isAuxiliary);
    }
    fed.append(stream);
    coded.add(isAv1 ? av1Stream(fed, m_glances) : hevcStream(stream, m_glances));
    if (m_glances < 0)
        fault(ErrorKind::Damaged, QStringLiteral("more units in the streams than any picture has"));
    if (!configured)
        fault(ErrorKind::Damaged, QStringLiteral("a coded picture without its decoder's configuration"));
    if (coded.size.isEmpty())
        fault(ErrorKind::Damaged, QStringLiteral("a coded picture that tells no size"));
    else
        m_found.coded.append(coded.size);
    return coded;
}

QSize Surveyor::readCanvas(const HeifItem& item, bool isGrid)
{
    constexpr qint64 longestHead = 2 + 8 + 8;
    const QSize canvas = canvasOf(piecesOf(item).bytes(0, longestHead), isGrid);
    m_found.canvases.append(canvas);
    if (canvas.isEmpty())
        fault(ErrorKind::Damaged, QStringLiteral("a canvas without a size"));
    return canvas;
}

/// The pixel information of a grid decides how deep its canvas is made.
void Surveyor::checkDepths(const HeifItem& item)
{
    for (const int index : item.properties) {
        if (m_items.properties[index].name != "pixi")
            continue;
        HeifFields fields(m_items.properties[index].content, 4);
        for (quint64 channels = fields.take(1); channels > 0; --channels) {
            const quint64 bits = fields.take(1);
            if (bits < 1 || bits > mostBits)
                fault(ErrorKind::Damaged, QStringLiteral("samples of %1 bits").arg(bits));
        }
    }
}

/// A tile that is put together itself has no depth of its own to make the canvas by.
void Surveyor::checkTiles(const HeifItem& grid)
{
    for (const quint32 id : grid.parts) {
        const QByteArray type = m_items.items.value(id).type;
        if (type == "grid" || type == "iovl" || type == "iden")
            return fault(ErrorKind::Unsupported, QStringLiteral("a grid whose tiles are no coded pictures"));
    }
}

Work Surveyor::visitNew(const HeifItem& item, bool isAuxiliary, int depth)
{
    const bool isHevc = item.type == "hvc1" || item.type == "hev1";
    const bool isCoded = isHevc || item.type == "av01";
    const bool isGrid = item.type == "grid";
    HeifStream whole;
    if (isCoded)
        whole = readCoded(item, isAuxiliary);
    else if (isGrid || item.type == "iovl")
        whole.size = readCanvas(item, isGrid);
    else if (item.type != "iden")
        fault(ErrorKind::Unsupported,
              QStringLiteral("pictures of the kind \"%1\" are not read").arg(QString::fromLatin1(item.type)));
    for (const int index : item.properties) {
        const HeifProperty& property = m_items.properties[index];
        if (property.name == "ispe" && item.type != "iden" &&
            !agree(whole.size, toldSize(property.content), isHevc))
            fault(ErrorKind::Damaged, QStringLiteral("the picture has not the size that its header told"));
    }
    checkDepths(item);
    if (isGrid)
        checkTiles(item);
    Work work = workOf(areaOf(whole.size), std::max<quint64>(whole.pictures, 1));
    for (const quint32 part : isCoded ? QList<quint32>() : item.parts)
        work.add(visit(part, isAuxiliary, depth + 1));
    for (const quint32 auxiliary : item.auxiliaries)
        work.add(visit(auxiliary, true, depth + 1));
    return work;
}

Work Surveyor::visit(quint32 id, bool isAuxiliary, int depth)
{
    constexpr int mostDepth = 8;
    const auto item = m_items.items.constFind(id);
    const auto before = m_visited.constFind(id);
    if (before != m_visited.cend() && before.value())
        return *before.value();
    if (before != m_visited.cend() || depth > mostDepth || item == m_items.items.cend()) {
        fault(ErrorKind::Damaged, QStringLiteral("an item made of itself, or of one that is not there"));
        return {};
    }
    m_visited.insert(id, std::nullopt);
    const Work work = visitNew(*item, isAuxiliary, depth);
    m_visited.insert(id, work);
    return work;
}

/// Tiles may be cut, pictures be laid over each other and coded in layers or slices, but not without end.
void Surveyor::checkWork(const Work& work)
{
    constexpr quint64 mostTimes = 8;
    constexpr quint64 freePixels = quint64(64) << 20;
    constexpr quint64 freeDecodings = 256;
    constexpr quint64 smallestTile = 64 * 64;
    quint64 area = 0;
    for (const QSize size : m_found.coded + m_found.canvases)
        area = std::max(area, areaOf(size));
    if (work.pixels / mostTimes > area + freePixels / mostTimes ||
        work.decodings > freeDecodings + area / smallestTile)
        fault(ErrorKind::Damaged, QStringLiteral("a picture of more parts than its size is worth"));
}

HeifSurvey Surveyor::survey()
{
    const QList<quint32> roots = m_items.primary ? QList<quint32>{*m_items.primary} : m_items.items.keys();
    Work work;
    for (const quint32 id : roots)
        work.add(visit(id, false, 0));
    if (m_items.primary)
        checkWork(work);
    m_found.isGrey = !m_colour && !m_found.coded.isEmpty();
    return std::move(m_found);
}

} // namespace

HeifSurvey surveyHeif(const QByteArray& file, const HeifItems& items)
{
    return Surveyor(file, items).survey();
}

} // namespace quorvia::engine
