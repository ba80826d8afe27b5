#include "../support/ScratchHome.h"
#include "app/NativePath.h"

#include <QDir>
#include <QtTest>

using namespace quorvia::app;

class TestNativePath : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_home.write("pics/sub/a.jpg", "x");
        m_home.write("pics/b.jpg", "x");
        m_home.write("pics/odd\\name.jpg", "x");
        m_home.write("pics/odd/name.jpg", "x");
        m_home.write("pics/D:x.jpg", "x");
        m_home.write("pics/x.jpg", "x");
    }

    void paths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("native");
        const QString pics = m_home.path("pics");
        const QString foreign = QString(pics).replace(u'/', u'\\');
        const auto same = [](const char* row, const QString& path) { QTest::newRow(row) << path << path; };
        same("empty", "");
        same("native", pics + "/b.jpg");
        same("native, missing", pics + "/none.jpg");
        QTest::newRow("backslashes") << foreign + "\\b.jpg" << pics + "/b.jpg";
        QTest::newRow("drive") << "C:" + foreign + "\\b.jpg" << pics + "/b.jpg";
        QTest::newRow("drive, small letter") << "z:" + pics + "/sub/a.jpg" << pics + "/sub/a.jpg";
        QTest::newRow("relative") << "sub\\a.jpg"
                                  << "sub/a.jpg";
        QTest::newRow("drive and relative") << "C:b.jpg"
                                            << "b.jpg";
        same("backslash that is part of a name", "odd\\name.jpg");
        same("drive that is part of a name", "D:x.jpg");
        same("maps to nothing", "C:\\pics\\none.jpg");
        same("maps to a directory", foreign + "\\sub");
        same("a drive alone", "C:");
        same("backslash alone", "\\");
        same("address", "file:///a/b.jpg");
        same("no drive: a digit", "1:b.jpg");
        same("zero character", QStringLiteral("a\\") + QChar(u'\0'));
    }
    void paths()
    {
        QFETCH(QString, path);
        QTEST(nativePath(path, m_home.path("pics")), "native");
    }

    void presentDirectory()
    {
        QVERIFY(QDir::setCurrent(m_home.path("pics/sub")));
        QCOMPARE(nativePath("C:a.jpg"), QStringLiteral("a.jpg"));
        QCOMPARE(nativePath("..\\b.jpg"), QStringLiteral("../b.jpg"));
        QCOMPARE(nativePath("C:b.jpg"), QStringLiteral("C:b.jpg"));
    }

  private:
    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestNativePath)
#include "tst_nativepath.moc"
