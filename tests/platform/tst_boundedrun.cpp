// Tools that end, fail, hang or are not there.
#include "../support/FileContent.h"
#include "../support/ScratchHome.h"
#include "platform/BoundedRun.h"

#include <QFile>
#include <QTest>

using namespace quorvia::platform;

class TestBoundedRun : public QObject
{
    Q_OBJECT

  private:
    quorvia::test::ScratchHome m_home;

    QString script(const QString& name, const QByteArray& body) const
    {
        const QString file = m_home.write(name, "#!/bin/sh\n" + body);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file;
    }

  private Q_SLOTS:
    void outcomes()
    {
        QString why;
        const QString record = m_home.path("record");
        QVERIFY(runBounded(script("good", "printf '%s' \"$1$2\" > '" + record.toUtf8() + "'\n"),
                           {"a b", "'c"}, 10000, &why));
        QCOMPARE(quorvia::test::contentOf(record), "a b'c");
        QVERIFY(!runBounded(script("bad", "exit 3\n"), {}, 10000, &why));
        QCOMPARE(why, m_home.path("bad failed"));
        QVERIFY(!runBounded("no-such-tool", {}, 10000, &why));
        QVERIFY2(why.startsWith("no-such-tool: "), qPrintable(why));
    }

    void isFoundInPath()
    {
        QVERIFY(runBounded("true", {}, 10000, nullptr));
        QVERIFY(!runBounded("false", {}, 10000, nullptr));
    }

    /// What takes too long is left alone: it ends its work later.
    void aSlowTool()
    {
        const QString done = m_home.path("done");
        const QString tool = script("slow", "sleep 1\ntouch '" + done.toUtf8() + "'\n");
        QString why;
        QVERIFY(!runBounded(tool, {}, 50, &why));
        QCOMPARE(why, tool + " is not done yet");
        QVERIFY(!QFile::exists(done));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(done), 20000);
    }
};

QTEST_GUILESS_MAIN(TestBoundedRun)
#include "tst_boundedrun.moc"
