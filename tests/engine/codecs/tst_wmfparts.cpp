#include "engine/codecs/wmf/WmfCharset.h"
#include "engine/codecs/wmf/WmfFonts.h"
#include "engine/codecs/wmf/WmfGeometry.h"
#include "engine/codecs/wmf/WmfPixels.h"

#include <QLineF>
#include <QtTest>

#include <cmath>

using namespace quorvia::engine;

namespace {

constexpr double pi = 3.14159265358979;

} // namespace

class TestWmfParts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void maps_data();
    void maps();
    void sweepsAgainstTheClock_data();
    void sweepsAgainstTheClock();
    void clipsFigures();
    void clipsLines();
    void combinesBits_data();
    void combinesBits();
    void readsCharsets_data();
    void readsCharsets();
    void readsSigns_data();
    void readsSigns();
    void findsFamilies_data();
    void findsFamilies();
};

void TestWmfParts::maps_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QPoint>("units");
    QTest::addColumn<QPointF>("pixels");
    QTest::newRow("by window and viewport") << 8 << QPoint(60, 70) << QPointF(25, 40);
    QTest::newRow("at one scale") << 7 << QPoint(60, 70) << QPointF(25, 20);
    QTest::newRow("tenths of millimetres") << 2 << QPoint(10 + 254, 30 + 254) << QPointF(96, -96);
    QTest::newRow("hundredths of millimetres") << 3 << QPoint(10 + 2540, 30) << QPointF(96, 0);
    QTest::newRow("hundredths of an inch") << 4 << QPoint(10 + 100, 30) << QPointF(96, 0);
    QTest::newRow("thousandths of an inch") << 5 << QPoint(10 + 1000, 30) << QPointF(96, 0);
    QTest::newRow("twips") << 6 << QPoint(10 + 1440, 30) << QPointF(96, 0);
    QTest::newRow("unknown mode") << 99 << QPoint(60, 70) << QPointF(25, 40);
}

void TestWmfParts::maps()
{
    QFETCH(int, mode);
    QFETCH(QPoint, units);
    QFETCH(QPointF, pixels);
    WmfMapping mapping(QRectF(0, 0, 100, 100), QSize(100, 100), true);
    mapping.setWindowOrg(QPoint(10, 30));
    mapping.setWindowExt(QSize(200, 100));
    mapping.setWindowExt(QSize(0, 100)); // changes nothing
    mapping.scaleWindowExt({1, 1}, {0, 1});
    mapping.setMode(mode);
    QVERIFY(QLineF(mapping.map(units), pixels).length() < 1e-6);
    QVERIFY(QLineF(mapping.unmap(pixels), units).length() < 1e-6);
}

void TestWmfParts::sweepsAgainstTheClock_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("sweep");
    QTest::newRow("right to top") << QPointF(200, 50) << QPointF(100, 0) << 0.0 << -pi / 2;
    QTest::newRow("top to right") << QPointF(100, 0) << QPointF(200, 50) << -pi / 2 << -3 * pi / 2;
    QTest::newRow("whole") << QPointF(200, 50) << QPointF(300, 50) << 0.0 << -2 * pi;
    QTest::newRow("left to bottom") << QPointF(0, 50) << QPointF(100, 90) << pi << -pi / 2;
}

void TestWmfParts::sweepsAgainstTheClock()
{
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(double, start);
    QFETCH(double, sweep);
    const WmfSweep arc = arcSweep(QRectF(0, 0, 200, 100), from, to);
    QVERIFY(std::abs(arc.start - start) < 1e-6);
    QVERIFY2(std::abs(arc.sweep - sweep) < 1e-6, qPrintable(QString::number(arc.sweep)));
}

void TestWmfParts::clipsFigures()
{
    const QRectF box(0, 0, 10, 10);
    const QPolygonF around = {{-1e6, -1e6}, {1e6, -1e6}, {1e6, 1e6}, {-1e6, 1e6}};
    QCOMPARE(clippedFigure(around, box).boundingRect(), box);
    QVERIFY(clippedFigure({{20, 20}, {30, 20}, {30, 30}}, box).isEmpty());
    const QPolygonF within = {{1, 1}, {9, 1}, {5, 9}};
    QCOMPARE(clippedFigure(within, box), within);
    const QPolygonF half = clippedFigure({{5, 5}, {15, 5}, {15, 8}, {5, 8}}, box);
    QCOMPARE(half.boundingRect(), QRectF(5, 5, 5, 3));
}

void TestWmfParts::clipsLines()
{
    const QRectF box(0, 0, 10, 10);
    QCOMPARE(clippedLine({{-5, 5}, {15, 5}}, box), (QList<QPolygonF>{{{0, 5}, {10, 5}}}));
    QCOMPARE(clippedLine({{1, 1}, {2, 2}, {3, 1}}, box), (QList<QPolygonF>{{{1, 1}, {2, 2}, {3, 1}}}));
    QCOMPARE(clippedLine({{5, 5}, {15, 5}, {15, 7}, {5, 7}}, box),
             (QList<QPolygonF>{{{5, 5}, {10, 5}}, {{10, 7}, {5, 7}}}));
    QVERIFY(clippedLine({{-5, -5}, {15, -5}}, box).isEmpty());
}

void TestWmfParts::combinesBits_data()
{
    QTest::addColumn<int>("rop");
    QTest::addColumn<uint>("wanted");
    // Pattern F0F0F0, source CCCCCC, target AAAAAA: the result spells the operation's own number.
    for (int rop = 0; rop < 256; rop += 5)
        QTest::newRow(QByteArray::number(rop, 16).constData())
            << rop << uint(0xFF000000 | rop << 16 | rop << 8 | rop);
}

void TestWmfParts::combinesBits()
{
    QFETCH(int, rop);
    QFETCH(uint, wanted);
    QCOMPARE(combined(rop, 0xFFF0F0F0, 0xFFCCCCCC, 0xFFAAAAAA), wanted);
    const bool source = combined(rop, 0xF0F0F0, 0, 0xAAAAAA) != combined(rop, 0xF0F0F0, 0xFFFFFF, 0xAAAAAA);
    QCOMPARE(ropNeedsSource(rop), source);
}

void TestWmfParts::readsCharsets_data()
{
    QTest::addColumn<int>("charset");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("lengths");
    const auto row = [](const char* name, int charset, const char* bytes, const char16_t* text,
                        const QList<int>& lengths) {
        QTest::newRow(name) << charset << QByteArray(bytes) << QString::fromUtf16(text) << lengths;
    };
    row("western", 0, "A\x80\xE4", u"A€ä", {1, 1, 1});
    row("default", 1, "\xFC", u"ü", {1});
    row("Macintosh", 77, "\x8A", u"ä", {1});
    row("Japanese", 128, "a\x93\xFA\xB1", u"a日ｱ", {1, 2, 1});
    row("Korean", 129, "\xC7\xD1", u"한", {2});
    row("Korean, Johab", 130, "\xD0\x65", u"한", {2});
    row("Chinese, simplified", 134, "\xD6\xD0z", u"中z", {2, 1});
    row("Chinese, traditional", 136, "\xA4\xA4", u"中", {2});
    row("Greek", 161, "\xE1", u"α", {1});
    row("Turkish", 162, "\xFE", u"ş", {1});
    row("Vietnamese", 163, "\xF5", u"ơ", {1});
    row("Hebrew", 177, "\xE0", u"א", {1});
    row("Arabic", 178, "\xC8", u"ب", {1});
    row("Baltic", 186, "\xE0", u"ą", {1});
    row("Cyrillic", 204, "\xC6", u"Ж", {1});
    row("Thai", 222, "\xA1", u"ก", {1});
    row("East European", 238, "\xB9", u"ą", {1});
    row("of the console", 255, "\x81", u"ü", {1});
    row("a letter cut in two", 128, "a\x93", u"a\uFFFD", {1, 1});
    row("no letter", 128, "\x81\x20", u"\uFFFD", {2});
    row("unknown set", 99, "\xE4", u"ä", {1});
}

void TestWmfParts::readsCharsets()
{
    QFETCH(int, charset);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QList<int>, lengths);
    QString got;
    QList<int> gotLengths;
    for (const WmfLetter& letter : wmfLetters(bytes, charset)) {
        got += letter.text;
        gotLengths.append(letter.bytes);
    }
    QCOMPARE(got, text);
    QCOMPARE(gotLengths, lengths);
}

void TestWmfParts::readsSigns_data()
{
    QTest::addColumn<QString>("face");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("sign");
    QTest::newRow("alpha") << QStringLiteral("Symbol") << 0x61 << 0x3B1;
    QTest::newRow("Delta") << QStringLiteral("SYMBOL") << 0x44 << 0x394;
    QTest::newRow("minus") << QStringLiteral("Symbol") << 0x2D << 0x2212;
    QTest::newRow("integral") << QStringLiteral("Symbol") << 0xF2 << 0x222B;
    QTest::newRow("sum") << QStringLiteral("Symbol") << 0xE5 << 0x2211;
    QTest::newRow("left bracket, top") << QStringLiteral("Symbol") << 0xE9 << 0x23A1;
    QTest::newRow("infinity") << QStringLiteral("Symbol") << 0xA5 << 0x221E;
    QTest::newRow("last") << QStringLiteral("Symbol") << 0xFE << 0x23AD;
    QTest::newRow("tick") << QStringLiteral("Wingdings") << 0xFC << 0x2713;
    QTest::newRow("square") << QStringLiteral("wingdings") << 0xA7 << 0x25AA;
    QTest::newRow("scissors") << QStringLiteral("ZapfDingbats") << 0x22 << 0x2702;
    QTest::newRow("star") << QStringLiteral("Monotype Sorts") << 0x48 << 0x2605;
    QTest::newRow("circled one") << QStringLiteral("ITC Zapf Dingbats") << 0xAC << 0x2460;
    QTest::newRow("letters stay") << QStringLiteral("Arial") << 0x61 << 0x61;
}

void TestWmfParts::readsSigns()
{
    QFETCH(QString, face);
    QFETCH(int, code);
    QFETCH(int, sign);
    QCOMPARE(int(wmfSign(wmfSignsOf(face), uchar(code)).unicode()), sign);
}

void TestWmfParts::findsFamilies_data()
{
    QTest::addColumn<QString>("face");
    QTest::addColumn<int>("pitchAndFamily");
    QTest::addColumn<QString>("last");
    const QString serif = QStringLiteral("DejaVu Serif");
    const QString sans = QStringLiteral("DejaVu Sans");
    const QString mono = QStringLiteral("DejaVu Sans Mono");
    QTest::newRow("Times") << QStringLiteral("Times New Roman") << 0 << serif;
    QTest::newRow("Courier") << QStringLiteral("Courier New") << 0 << mono;
    QTest::newRow("Arial") << QStringLiteral("Arial") << 0 << sans;
    QTest::newRow("MS Sans Serif") << QStringLiteral("MS Sans Serif") << 0 << sans;
    QTest::newRow("MS Serif") << QStringLiteral("MS Serif") << 0 << serif;
    QTest::newRow("Century Gothic") << QStringLiteral("Century Gothic") << 0x10 << sans;
    QTest::newRow("a roman one") << QStringLiteral("Quire") << 0x12 << serif;
    QTest::newRow("a modern one") << QStringLiteral("Quire") << 0x31 << mono;
    QTest::newRow("a swiss one") << QStringLiteral("Quire") << 0x22 << sans;
    QTest::newRow("no name") << QString() << 0 << sans;
}

void TestWmfParts::findsFamilies()
{
    QFETCH(QString, face);
    QFETCH(int, pitchAndFamily);
    QFETCH(QString, last);
    const QStringList families = wmfFamilies(face, pitchAndFamily);
    QCOMPARE(families.last(), last);
    QCOMPARE(families.contains(face), !face.isEmpty());
}

QTEST_GUILESS_MAIN(TestWmfParts)
#include "tst_wmfparts.moc"
