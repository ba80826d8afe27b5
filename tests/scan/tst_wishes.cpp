// What is asked of a scanner against what it has, and the texts that the helper writes.
#include "scan/Output.h"
#include "scan/Wishes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace quorvia::scan;

Q_DECLARE_METATYPE(quorvia::scan::Mode)
Q_DECLARE_METATYPE(quorvia::scan::Allowed)

class TestWishes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void modes_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("chosen");
        const QStringList plain{"Lineart", "Gray", "Color"};
        QTest::newRow("grey") << plain << Mode::Gray << "Gray";
        QTest::newRow("colour") << plain << Mode::Color << "Color";
        const QStringList odd{"Color Lineart", "Gray Halftone", "24bit Color", "True Gray"};
        QTest::newRow("grey in other words") << odd << Mode::Gray << "True Gray";
        QTest::newRow("colour in other words") << odd << Mode::Color << "24bit Color";
        QTest::newRow("the plain one first") << QStringList{"Fast Gray", "GRAY"} << Mode::Gray << "GRAY";
        QTest::newRow("spelt otherwise") << QStringList{"Grey", "Colour"} << Mode::Color << "Colour";
        QTest::newRow("none") << QStringList{"Lineart"} << Mode::Gray << "";
        QTest::newRow("no modes") << QStringList() << Mode::Color << "";
    }

    void modes()
    {
        QFETCH(QStringList, names);
        QFETCH(Mode, mode);
        std::vector<std::string> all;
        for (const QString& name : names)
            all.push_back(name.toStdString());
        QTEST(QString::fromStdString(modeNamed(all, mode).value_or("")), "chosen");
    }

    void numbers_data()
    {
        QTest::addColumn<Allowed>("allowed");
        QTest::addColumn<double>("wanted");
        QTest::addColumn<double>("given");
        const Allowed list{{600, 75, 300}, 0, 0, 0};
        QTest::newRow("in the list") << list << 300.0 << 300.0;
        QTest::newRow("nearest of the list") << list << 500.0 << 600.0;
        QTest::newRow("below the list") << list << 1.0 << 75.0;
        QTest::newRow("between two") << list << 450.0 << 300.0;
        const Allowed range{{}, 50, 1200, 0};
        QTest::newRow("in the range") << range << 333.0 << 333.0;
        QTest::newRow("below the range") << range << 10.0 << 50.0;
        QTest::newRow("above the range") << range << 2400.0 << 1200.0;
        const Allowed steps{{}, 50, 640, 100};
        QTest::newRow("nearest step") << steps << 280.0 << 250.0;
        QTest::newRow("between two steps") << steps << 300.0 << 250.0;
        QTest::newRow("the last step") << steps << 640.0 << 550.0;
        QTest::newRow("any") << Allowed{{}, 0, -1, 0} << 123.0 << 123.0;
        QTest::newRow("one value") << Allowed{{}, 8, 8, 1} << 16.0 << 8.0;
    }

    void numbers()
    {
        QFETCH(Allowed, allowed);
        QFETCH(double, wanted);
        QTEST(nearestAllowed(allowed, wanted), "given");
    }

    void fields()
    {
        QCOMPARE(escaped("plain text"), std::string("plain text"));
        QCOMPARE(escaped("a\tb\nc\rd\\e"), std::string("a\\tb\\nc\\rd\\\\e"));
    }

    void files()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("x.pnm"));
        QCOMPARE(writePnm({2, 1, 3, {1, 2, 3, 4, 5, 6}}, path.toStdString()), std::string());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("P6\n2 1\n255\n\1\2\3\4\5\6"));
        QCOMPARE(pnmHeader({7, 9, 1, {}}), std::string("P5\n7 9\n255\n"));
        QVERIFY(!writePnm({1, 1, 1, {0}}, folder.path().toStdString()).empty());
    }
};

QTEST_GUILESS_MAIN(TestWishes)
#include "tst_wishes.moc"
