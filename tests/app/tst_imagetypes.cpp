#include "app/ImageTypes.h"

#include <QStringList>
#include <QtTest>

using namespace quorvia::app;

class TestImageTypes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void listHoldsTwentyOneTypes()
    {
        QCOMPARE(ImageExtensionList,
                 "*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.tif;*.tiff;*.wmf;*.ico;*.dcx;*.jif;*.ljp;*.pbm;"
                 "*.pcx;*.pgm;*.pic;*.png;*.ppm;*.rle;*.tga;*.wpg");
        const QStringList patterns = QString::fromLatin1(ImageExtensionList).split(u';');
        QCOMPARE(patterns.size(), 21);
        QCOMPARE(patterns.first(), QStringLiteral("*.bmp"));
        QCOMPARE(patterns.last(), QStringLiteral("*.wpg"));
        for (const QString& pattern : patterns)
            QVERIFY2(pattern.startsWith(QLatin1String("*.")) && pattern.size() > 4, qPrintable(pattern));
    }

    void stands_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<bool>("stands");
        QTest::newRow("small letters") << "jpeg" << true;
        QTest::newRow("capitals") << "TIFF" << true;
        QTest::newRow("mixed") << "Png" << true;
        QTest::newRow("part of one") << "pe" << true; // a substring test: it stands within "jpeg"
        QTest::newRow("none") << "" << true;
        QTest::newRow("other") << "webp" << false;
        QTest::newRow("playlist") << "qol" << false;
        QTest::newRow("longer than one") << "jpegs" << false;
    }
    void stands()
    {
        QFETCH(QString, extension);
        QTEST(extensionStandsIn(extension, QString::fromLatin1(ImageExtensionList)), "stands");
    }

    void eachTypeHasItsRow()
    {
        const QStringList fields = imageFilters().split(QLatin1Char('|'));
        QCOMPARE(fields.size() % 2, 0);
        QCOMPARE(fields.at(0), QStringLiteral("All Supported Image Types"));
        QCOMPARE(fields.at(1), QLatin1String(ImageExtensionList));
        QStringList patterns;
        for (qsizetype i = 3; i < fields.size(); i += 2) {
            QVERIFY(!fields.at(i - 1).isEmpty());
            patterns += fields.at(i).split(QLatin1Char(';'));
        }
        QStringList all = fields.at(1).split(QLatin1Char(';'));
        patterns.sort();
        all.sort();
        QCOMPARE(patterns, all);
    }

    void otherLists()
    {
        QVERIFY(extensionStandsIn("QOL", "*.qol"));
        QVERIFY(!extensionStandsIn("jpg", "*.qol"));
        QVERIFY(extensionStandsIn("", ""));
        QVERIFY(!extensionStandsIn("jpg", ""));
    }
};

QTEST_GUILESS_MAIN(TestImageTypes)
#include "tst_imagetypes.moc"
