// The main window's commands, its keys and what is dropped on it.
#include "app/Settings.h"
#include "viewer/PictureStage.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <QUrl>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestCommandTable : public QObject, private test::PictureStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theRecentListCanBeCleared()
    {
        frmImageView& window = m_bench->load();
        window.OpenX(in("pics/a.png"));
        window.RunTool(QStringLiteral("miRecentClear"));
        QCOMPARE(app::read(setting::Recent), QStringLiteral(";;"));
        QCOMPARE(window.opening()->recent(), (QStringList{"", "", ""}));
    }

    void theLastCommandIsKept()
    {
        frmImageView& window = m_bench->load();
        window.RunTool(QStringLiteral("miCmd_x"));
        QCOMPARE(window.lastTool(), QStringLiteral("miCmd_x"));
    }

    void commandsOfTheTable()
    {
        frmImageView& window = m_bench->load({in("pics")});
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        window.RunTool(QStringLiteral("miPrevious"));
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
        window.RunTool(QStringLiteral("miNext"));
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        window.RunTool(QStringLiteral("miCloseImage"));
        QCOMPARE(window.currentFile(), QString());
        window.RunTool(QStringLiteral("miNext")); // with no image open: the first entry again
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        window.RunTool(QStringLiteral("miBestFit"));
        QVERIFY(!window.viewport()->FitToWindow());
        window.RunTool(QStringLiteral("miActualSize"));
        QVERIFY(window.viewport()->FitToWindow());
        const int opened = app::read(setting::ImageOpenCount);
        window.RunTool(QStringLiteral("miRefresh"));
        QCOMPARE(app::read(setting::ImageOpenCount), opened + 1);
        window.RunTool(QStringLiteral("miHide"));
        QVERIFY(!window.isVisible());
        window.RunTool(QStringLiteral("miShow"));
        QVERIFY(window.isVisible());
    }

    void anEmptyListHoldsNoSteps()
    {
        frmImageView& window = m_bench->load();
        for (const char* tool : {"miNext", "miPrevious", "miRandom", "miLoadFirst", "miRefresh"}) {
            window.RunTool(QLatin1String(tool));
            QCOMPARE(window.lastTool(), QLatin1String(tool));
            QCOMPARE(window.list()->ListIndex(), -1);
        }
        QCOMPARE(window.currentFile(), QString());
        QVERIFY(m_bench->boxes.empty());
    }

    void keysAreDebounced()
    {
        frmImageView& window = m_bench->load({in("pics")});
        auto* tWait = window.findChild<QTimer*>(QStringLiteral("tWait"));
        auto* tKey = window.findChild<QTimer*>(QStringLiteral("tKey"));
        QVERIFY(tWait && tKey);
        QCOMPARE(tWait->interval(), 100);
        QCOMPARE(tKey->interval(), 100);
        constexpr int longerThanTheTest = 1000 * 1000;
        tWait->setInterval(longerThanTheTest);
        tKey->setInterval(longerThanTheTest);
        QTest::keyClick(&window, Qt::Key_Right);
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QTest::keyClick(&window, Qt::Key_Right); // lost at the first debounce
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        tWait->stop();
        QTest::keyClick(&window, Qt::Key_Right); // lost at the second
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QVERIFY(tWait->isActive());
        tWait->stop();
        tKey->stop();
        QTest::keyClick(&window, Qt::Key_Right);
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
    }

    void dropsOpen_data()
    {
        QTest::addColumn<QStringList>("dropped");
        QTest::addColumn<QString>("open");
        QTest::newRow("a file") << QStringList{"file:@/b.png"} << "b.png";
        QTest::newRow("a folder") << QStringList{"file:@"} << "a.png";
        QTest::newRow("the first local one of several")
            << QStringList{"https://x.example/y.png", "file:@/b.png", "file:@/a.png"} << "b.png";
        QTest::newRow("nothing local") << QStringList{"https://x.example/y.png"} << "";
    }

    void dropsOpen()
    {
        QFETCH(QStringList, dropped);
        QFETCH(QString, open);
        frmImageView& window = m_bench->load();
        QMimeData data;
        QList<QUrl> urls;
        for (QString& text : dropped)
            urls.append(QUrl(text.replace(QLatin1Char('@'), QStringLiteral("//") + in("pics"))));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &drop);
        QCOMPARE(window.currentFile(), open.isEmpty() ? QString() : in("pics/") + open);
    }
};

QTEST_MAIN(TestCommandTable)
#include "tst_commandtable.moc"
