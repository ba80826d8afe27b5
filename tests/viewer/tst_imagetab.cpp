// The texts of the first tab.
#include "controls/gnTab.h"
#include "engine/ImageEngine.h"
#include "support/ScratchHome.h"
#include "viewer/ImageTab.h"

#include <QHelpEvent>
#include <QImage>
#include <QTest>

using namespace quorvia;

class TestImageTab : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void captions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::newRow("none") << ""
                              << "Unknown";
        QTest::newRow("short") << "a.png"
                               << "a.png";
        QTest::newRow("twenty characters") << "abcdefghijklmnop.png"
                                           << "abcdefghijklmnop.png";
        QTest::newRow("one more") << "abcdefghijklmnopq.png"
                                  << "abcdefghijklmno...png";
        QTest::newRow("several points") << "abc.defghijklmnopq.tar.png"
                                        << "abc.defghijklmn...png";
        QTest::newRow("no point") << "abcdefghijklmnopqrstuvwxyz"
                                  << "abcdefghijklmno...abcdefghijklmnopqrstuvwxyz";
    }

    void captions()
    {
        QFETCH(QString, name);
        QTEST(viewer::tabCaption(name), "caption");
    }

    void tips()
    {
        QCOMPARE(viewer::tabTip(QSize(640, 480), 77, QStringLiteral("1,234 KB")),
                 QStringLiteral("640x480, 77 Colors [1,234 KB]"));
    }

    void theTipIsMadeWhenItShows()
    {
        const test::ScratchHome home;
        const QString path = home.path(QStringLiteral("one.png"));
        QImage image(33, 17, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(path));
        controls::gnTab gTab;
        QVERIFY(gTab.AddTab(QStringLiteral("Active Image"), QStringLiteral("Image")));
        engine::ImageEngine ix1(std::make_shared<engine::ImageLoader>());
        viewer::ImageTab tab(&gTab, &ix1);
        ix1.SetFileName(path);
        tab.update();
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("one.png"));
        QCOMPARE(gTab.tabs().at(1).ToolTip, QString());
        auto* const pbTabs = gTab.findChild<QWidget*>(QStringLiteral("pbTabs"));
        QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), pbTabs->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(pbTabs, &event);
        QVERIFY2(gTab.tabs().at(1).ToolTip.startsWith(QStringLiteral("33x17, 1 Colors [")),
                 qPrintable(gTab.tabs().at(1).ToolTip));
    }
};

QTEST_MAIN(TestImageTab)
#include "tst_imagetab.moc"
