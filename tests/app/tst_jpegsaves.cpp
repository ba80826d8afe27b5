// Which names are those of JPEGs. That their settings arrive is a matter of those who save.
#include "app/JpegSaves.h"

#include <QTest>

using namespace quorvia;

class TestJpegSaves : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void jpegNames_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isJpeg");
        QTest::newRow("jpg") << "/x.jpg" << true;
        QTest::newRow("JPG") << "/x.JPG" << true;
        QTest::newRow("jpeg") << "/x.jpeg" << true;
        QTest::newRow("JpEg") << "/x.JpEg" << true;
        QTest::newRow("no point") << "/xjpeg" << true; // four letters, whatever stands before them
        QTest::newRow("no point, three letters") << "/xxjpg" << false;
        QTest::newRow("jif") << "/x.jif" << false;
        QTest::newRow("png") << "/x.png" << false;
        QTest::newRow("short") << "jpg" << false;
        QTest::newRow("empty") << "" << false;
    }

    void jpegNames()
    {
        QFETCH(QString, path);
        QTEST(app::isJpegName(path), "isJpeg");
    }
};

QTEST_APPLESS_MAIN(TestJpegSaves)
#include "tst_jpegsaves.moc"
