// Holds the picture of the rooms in the documentation against the rooms of the build.
#include "RoomArrows.h"

#include <QRectF>
#include <QTest>
#include <QXmlStreamReader>

using namespace quorvia::test;

namespace {

struct DrawnArrow
{
    QString from;
    QString to;
    QPointF begin;
    QPointF tip;
};

struct Picture
{
    QHash<QString, QRectF> rooms;
    QHash<QString, QString> labels; ///< room -> the name that stands in its box
    QHash<QString, QPointF> labelPlaces;
    QList<DrawnArrow> arrows;
    QString error;
};

Picture readPicture(const QString& path)
{
    Picture picture;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        picture.error = QStringLiteral("cannot be read");
    QXmlStreamReader xml(&file);
    QString room;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::EndElement && xml.name() == QLatin1String("g"))
            room.clear();
        if (!xml.isStartElement())
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const auto number = [&attributes](const char* name) {
            return attributes.value(QLatin1String(name)).toDouble();
        };
        const QStringView kind = attributes.value(QLatin1String("class"));
        if (xml.name() == QLatin1String("g") && kind == QLatin1String("room"))
            room = attributes.value(QLatin1String("id")).toString();
        else if (xml.name() == QLatin1String("rect") && !room.isEmpty())
            picture.rooms.insert(room, {number("x"), number("y"), number("width"), number("height")});
        else if (xml.name() == QLatin1String("line") && kind == QLatin1String("arrow"))
            picture.arrows.append({attributes.value(QLatin1String("data-from")).toString(),
                                   attributes.value(QLatin1String("data-to")).toString(),
                                   {number("x1"), number("y1")},
                                   {number("x2"), number("y2")}});
        else if (xml.name() == QLatin1String("text") && kind == QLatin1String("name") && !room.isEmpty()) {
            picture.labelPlaces.insert(room, {number("x"), number("y")});
            picture.labels.insert(room, xml.readElementText());
        }
    }
    if (xml.hasError())
        picture.error = xml.errorString();
    return picture;
}

/// "from > to", sorted: the arrows that no longer way replaces.
QStringList shortestArrows(const Arrows& arrows)
{
    QStringList kept;
    for (auto room = arrows.begin(); room != arrows.end(); ++room) {
        QSet<QString> behind;
        for (const QString& next : room.value())
            behind += reach(arrows, next);
        for (const QString& next : room.value()) {
            if (!behind.contains(next))
                kept.append(room.key() + QStringLiteral(" > ") + next);
        }
    }
    kept.sort();
    return kept;
}

bool isOnEdge(const QRectF& box, qreal edge, const QPointF& point)
{
    return qFuzzyCompare(point.y(), edge) && point.x() > box.left() && point.x() < box.right();
}

} // namespace

class TestRoomPicture : public QObject
{
    Q_OBJECT

  private:
    Arrows m_arrows = readArrows(linesOf(QStringLiteral(ROOMS_FILE)));
    Picture m_picture = readPicture(QStringLiteral(SOURCE_DIRECTORY "/docs/images/rooms.svg"));

  private Q_SLOTS:
    void itIsRead() { QCOMPARE(m_picture.error, QString()); }

    void everyRoomHasItsBox()
    {
        QStringList drawn = m_picture.rooms.keys();
        QStringList built = m_arrows.keys();
        drawn.sort();
        built.sort();
        QVERIFY(built.size() >= 10);
        QCOMPARE(drawn, built);
        for (const QString& room : drawn) {
            QCOMPARE(m_picture.labels.value(room), room);
            QVERIFY2(m_picture.rooms.value(room).contains(m_picture.labelPlaces.value(room)),
                     qPrintable(room));
        }
    }

    void noBoxLiesOnAnother()
    {
        for (auto one = m_picture.rooms.begin(); one != m_picture.rooms.end(); ++one) {
            for (auto other = std::next(one); other != m_picture.rooms.end(); ++other)
                QVERIFY2(!one.value().intersects(other.value()), qPrintable(one.key() + other.key()));
        }
    }

    void theArrowsAreThoseOfTheBuild()
    {
        QStringList drawn;
        for (const DrawnArrow& arrow : m_picture.arrows)
            drawn.append(arrow.from + QStringLiteral(" > ") + arrow.to);
        drawn.sort();
        QCOMPARE(drawn, shortestArrows(m_arrows));
    }

    void eachArrowLeadsDownFromBoxToBox()
    {
        for (const DrawnArrow& arrow : m_picture.arrows) {
            const QRectF from = m_picture.rooms.value(arrow.from);
            const QRectF to = m_picture.rooms.value(arrow.to);
            const QByteArray name = (arrow.from + QStringLiteral(" > ") + arrow.to).toUtf8();
            QVERIFY2(isOnEdge(from, from.bottom(), arrow.begin), name.constData());
            QVERIFY2(isOnEdge(to, to.top(), arrow.tip), name.constData());
            QVERIFY2(arrow.tip.y() > arrow.begin.y(), name.constData());
        }
    }

    void aLongerWayReplacesAnArrow()
    {
        const Arrows arrows = readArrows({QStringLiteral("a: b c"), QStringLiteral("b: c"),
                                          QStringLiteral("c: "), QStringLiteral("d: c")});
        QCOMPARE(shortestArrows(arrows),
                 QStringList({QStringLiteral("a > b"), QStringLiteral("b > c"), QStringLiteral("d > c")}));
    }

    void theDocumentShowsIt()
    {
        const QString text =
            linesOf(QStringLiteral(SOURCE_DIRECTORY "/docs/architecture.md")).join(QLatin1Char('\n'));
        QVERIFY(text.contains(QStringLiteral("](images/rooms.svg)")));
    }
};

QTEST_GUILESS_MAIN(TestRoomPicture)
#include "tst_roompicture.moc"
