#include "controls/TabProperties.h"

#include <QTest>

using namespace quorvia::controls;

namespace {

struct Row
{
    const char* key;
    QVariant whenRead;
    QVariant whenNew;
    QVariant other;
};

/// Every property but the font: its key, both defaults and another value.
const std::vector<Row> rows = {
    {"TabBackColor", 0x8000000Fu, 0x8000000Fu, 1u},
    {"TabTextColor", 0x80000012u, 0x80000012u, 2u},
    {"ActiveTabBackColor", 0x80000005u, 0x8000000Fu, 3u},
    {"ActiveTabTextColor", 0x80000012u, 0x404040u, 4u},
    {"BackColor", 0x8000000Fu, 0x8000000Cu, 5u},
    {"HoverColour", 0x80000012u, 0x80000012u, 6u},
    {"AllignBottom", false, false, true},
    {"SeperatorLineColor", 0x80000012u, 0x80000012u, 7u},
    {"SelectedTabHoverColor", 0u, 0u, 8u},
    {"BorderType", 1, 1, 4},
};

} // namespace

class TestTabProperties : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesEveryDefault_data();
    void writesEveryDefault();
    void readsBackWhatItWrote();
    void keepsAFont();
    void readsOddValues_data();
    void readsOddValues();
};

void TestTabProperties::writesEveryDefault_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("whenRead");
    QTest::addColumn<QVariant>("whenNew");
    for (const Row& row : rows)
        QTest::newRow(row.key) << row.key << row.whenRead << row.whenNew;
    QTest::newRow("Font") << "Font" << QVariant() << QVariant();
}

void TestTabProperties::writesEveryDefault()
{
    QFETCH(QString, key);
    const QVariantMap read = writeProperties(readProperties({}));
    const QVariantMap made = writeProperties(TabProperties::whenNew());
    QTEST(read.value(key), "whenRead");
    QTEST(made.value(key), "whenNew");
    QCOMPARE(read.size(), qsizetype(rows.size()));
    QCOMPARE(made.size(), qsizetype(rows.size()));
}

void TestTabProperties::readsBackWhatItWrote()
{
    QVariantMap bag;
    for (const Row& row : rows)
        bag.insert(QLatin1String(row.key), row.other);
    bag.insert(QStringLiteral("Font"), QFont(QStringLiteral("DejaVu Sans"), 17));
    const TabProperties properties = readProperties(bag);
    QCOMPARE(properties.ActiveTabTextColor, 4u);
    QCOMPARE(properties.TabBorderType, 4);
    QVERIFY(properties.AllignBottom);
    QCOMPARE(writeProperties(properties), bag);
    QCOMPARE(readProperties(writeProperties(properties)), properties);
}

void TestTabProperties::keepsAFont()
{
    TabProperties properties;
    QVERIFY(!readProperties(writeProperties(properties)).Font);
    properties.Font = QFont(QStringLiteral("DejaVu Sans"), 17);
    QCOMPARE(readProperties(writeProperties(properties)).Font, properties.Font);
}

void TestTabProperties::readsOddValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<quint32>("color");
    QTest::newRow("negative 32-bit number") << QVariant(int(0x8000000Cu)) << 0x8000000Cu;
    QTest::newRow("text of a number") << QVariant(QStringLiteral("255")) << 255u;
    QTest::newRow("no number") << QVariant(QStringLiteral("blue")) << 0x8000000Fu;
    QTest::newRow("nothing") << QVariant() << 0x8000000Fu;
}

void TestTabProperties::readsOddValues()
{
    QFETCH(QVariant, value);
    QTEST(readProperties({{QStringLiteral("BackColor"), value}}).BackColor, "color");
}

QTEST_MAIN(TestTabProperties)
#include "tst_tabproperties.moc"
