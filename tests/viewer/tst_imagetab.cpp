// The texts of the first tab.
#include "controls/gnTab.h"
#include "engine/ImageEngine.h"
#include "support/ScratchHome.h"
#include "viewer/ImageTab.h"

#include <QBuffer>
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
        QImage image(33, 17, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(image.save(&buffer, "PNG"));
        bytes.append(QByteArray(1024 * 1234 - bytes.size(), '\0')); // passed over behind the picture
        const QString path = home.write(QStringLiteral("one.png"), bytes);
        controls::gnTab gTab;
        QVERIFY(gTab.AddTab(QStringLiteral("Active Image"), QStringLiteral("Image")));
        engine::ImageEngine ix1(std::make_shared<engine::ImageLoader>());
        viewer::ImageTab tab(&gTab, &ix1);
        const auto tip = [&gTab] { return gTab.tabs().at(1).ToolTip; };
        auto* const pbTabs = gTab.findChild<QWidget*>(QStringLiteral("pbTabs"));
        const auto point = [pbTabs] {
            QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), pbTabs->mapToGlobal(QPoint(5, 5)));
            QCoreApplication::sendEvent(pbTabs, &event);
        };
        point();
        QCOMPARE(tip(), QString()); // there is no picture
        ix1.SetFileName(path);
        tab.update();
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("one.png"));
        QCOMPARE(tip(), QString());
        point();
        QCOMPARE(tip(), QStringLiteral("33x17, 1 Colors [1,234 KB]"));
        tab.update();
        QCOMPARE(tip(), QString());
        ix1.SetPicture(image);
        tab.update();
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("Unknown"));
        point();
        QCOMPARE(tip(), QStringLiteral("33x17, 1 Colors [0 KB]"));
    }
};

QTEST_MAIN(TestImageTab)
#include "tst_imagetab.moc"
