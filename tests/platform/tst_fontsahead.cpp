#include "platform/FontsAhead.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QTest>

using namespace quorvia;

class TestFontsAhead : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void libraries_data()
    {
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<bool>("stands");
        QTest::newRow("the desktop's") << QByteArray("libfontconfig.so.1") << true;
        QTest::newRow("none of that name") << QByteArray("libnosuchfonts.so.1") << false;
        QTest::newRow("one without fonts") << QByteArray("libm.so.6") << false;
    }

    void libraries()
    {
        QFETCH(QByteArray, library);
        platform::FontsAhead ahead(library.constData());
        QTEST(ahead.wait(), "stands");
        QTEST(ahead.wait(), "stands");
    }

    void toolkitFindsItsFonts()
    {
        {
            const platform::FontsAhead unasked; // ends by itself
        }
        int count = 1;
        QByteArray name("tst");
        char* arguments[] = {name.data(), nullptr};
        const QGuiApplication application(count, arguments);
        QVERIFY(QFontDatabase::families().contains(QStringLiteral("DejaVu Sans")));
    }
};

QTEST_APPLESS_MAIN(TestFontsAhead)
#include "tst_fontsahead.moc"
