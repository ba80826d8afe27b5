// The welcome panel and the link in the main window: when the panel is made, what it runs, what it says, and
// what a start stores.
#include "app/Product.h"
#include "app/Settings.h"
#include "app/WebPages.h"
#include "commands/WelcomeTips.h"
#include "controls/uLink.h"
#include "platform/MenuControl.h"
#include "platform/PaneBar.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "viewer/PictureStage.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowWelcome : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    static QWidget* bar(frmImageView& window, const char* name)
    {
        return window.panes()->pWelcome()->findChild<QWidget*>(QLatin1String(name));
    }
    static QLabel* row(frmImageView& window, const char* key)
    {
        return window.panes()->pWelcome()->findChild<QLabel*>(QLatin1String(key));
    }
    static QString tips(frmImageView& window)
    {
        QString all;
        for (const char* key : {"TIP", "TIP2", "TIP3", "TIP4", "TIP5"})
            all += row(window, key)->text() + u'\n';
        return all;
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void isThereAfterAStartWithoutAPicture()
    {
        frmImageView& window = m_bench->load();
        QVERIFY(window.panes()->pWelcome()->isVisible());
        QVERIFY(bar(window, "vBar")->isVisible());
        QCOMPARE(row(window, "INFO4")->text(), QStringLiteral("0 total images have been viewed."));
        QVERIFY(row(window, "TIP5")->text().startsWith(QStringLiteral("Tip 5: ")));
    }

    void eachWindowDrawsItsTips()
    {
        QStringList texts;
        for (int number = 1; number <= 14; ++number)
            texts.append(commands::tipText(number));
        QSet<QString> sets;
        for (int round = 0; round < 10; ++round) {
            const QStringList drawn = tips(m_bench->load()).split(u'\n', Qt::SkipEmptyParts);
            QCOMPARE(drawn.size(), 5);
            for (int number = 1; number <= 5; ++number) {
                const QString& tip = drawn.at(number - 1);
                const QString prefix = QStringLiteral("Tip %1: ").arg(number);
                QVERIFY2(tip.startsWith(prefix) && texts.contains(tip.mid(prefix.size())), qPrintable(tip));
            }
            sets.insert(drawn.join(u'\n'));
            m_bench->close();
        }
        QVERIFY(sets.size() > 1);
    }

    void aStartWithAPictureDoesNotPayForIt_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::newRow("file") << "pics/a.png";
        QTest::newRow("folder") << "pics";
    }

    void aStartWithAPictureDoesNotPayForIt()
    {
        QFETCH(QString, argument);
        app::save(setting::cLoad, 1); // the first picture of a folder
        frmImageView& window = m_bench->load({in(qPrintable(argument))});
        QVERIFY(!window.currentFile().isEmpty());
        QVERIFY(!bar(window, "vBar"));
        window.RunTool(QStringLiteral("miCloseImage"));
        QVERIFY(bar(window, "vBar"));
        QVERIFY(bar(window, "vBar")->isVisible());
    }

    void saysHowManyImagesWereOpened()
    {
        app::save(setting::ImageOpenCount, 41);
        frmImageView& window = m_bench->load();
        QCOMPARE(row(window, "INFO4")->text(), QStringLiteral("41 total images have been viewed."));
        const QString drawn = tips(window);
        window.OpenX(in("pics/a.png"));
        QVERIFY(window.panes()->pWelcome()->isHidden());
        window.RunTool(QStringLiteral("miCloseImage"));
        QCOMPARE(row(window, "INFO4")->text(), QStringLiteral("42 total images have been viewed."));
        QCOMPARE(tips(window), drawn); // they stay
    }

    void aRowRunsItsCommand()
    {
        frmImageView& window = m_bench->load();
        QTest::mouseClick(row(window, "HELPTIP"), Qt::LeftButton);
        QTest::mouseClick(row(window, "WEBSITE"), Qt::LeftButton);
        QTRY_COMPARE(window.lastTool(), QStringLiteral("miWebsite"));
    }

    void rightClicks_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<bool>("opens");
        QTest::newRow("beside the rows on the left") << "vBar" << true;
        QTest::newRow("beside the rows on the right") << "vBack" << true;
        QTest::newRow("a link") << "OPEN" << false;
        QTest::newRow("a text") << "OPENTIP" << false;
        QTest::newRow("the sign") << "logo" << true;
    }

    void rightClicks()
    {
        QFETCH(QString, part);
        QFETCH(bool, opens);
        frmImageView& window = m_bench->load();
        window.OpenMenuX(true);
        window.resize(1200, 900);
        QTRY_VERIFY(bar(window, "vBack")->isVisible());
        auto* target = bar(window, qPrintable(part));
        if (const auto* column = qobject_cast<platform::PaneBar*>(target))
            target = column->widget();
        platform::ToolMenu* const menus = window.panes()->ab1()->menus();
        QTest::mouseClick(target, Qt::RightButton, {}, QPoint(target->width() / 2, target->height() - 2));
        QCOMPARE(menus->menu() != nullptr, opens);
    }

    void staysAwayWhileTheWindowChangesItsSize()
    {
        frmImageView& window = m_bench->load();
        window.resize(1200, 800);
        QVERIFY(!bar(window, "vBar")->isVisible());
        QVERIFY(!bar(window, "vBack")->isVisible());
        QVERIFY(!window.ix1()->isVisible());
        QTRY_VERIFY(bar(window, "vBar")->isVisible());
        QVERIFY(bar(window, "vBack")->isVisible());
        QCOMPARE(bar(window, "vBack")->geometry().right(), window.panes()->pWelcome()->width() - 1);
    }

    void aNarrowPanelHasOneColumn()
    {
        frmImageView& window = m_bench->load();
        window.panes()->bPlay()->setVisible(false);
        window.resize(380, 500);
        QTRY_VERIFY(bar(window, "vBar")->isVisible());
        QCOMPARE(bar(window, "vBar")->width(), window.panes()->pWelcome()->width());
        QVERIFY(!bar(window, "vBack")->isVisible());
    }

    /// Keys are the window's once the panel has gone.
    void aPictureTakesTheKeys()
    {
        frmImageView& window = m_bench->load();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton next(&window); // in the order of the keys
        next.show();
        row(window, "OPEN")->setFocus();
        window.OpenX(in("pics/a.png"));
        QCOMPARE(window.focusWidget(), &window);
    }

    void siblingTools_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("offered");
        QTest::newRow("none") << QStringList() << QStringList{"MO", "TE", "NO"};
        QTest::newRow("one") << QStringList{"Tessary"} << QStringList{"MO", "NO"};
        QTest::newRow("all") << QStringList{"Morphane", "Tessary", "Nomalux"} << QStringList();
    }

    void siblingTools()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, offered);
        for (const QString& tool : installed)
            app::saveOfTool(app::common::ProgramPaths, tool, m_bench->home.write(tool, "#!"));
        frmImageView& window = m_bench->load();
        QCOMPARE(bar(window, "Software") != nullptr, !offered.isEmpty());
        for (const char* key : {"MO", "TE", "NO"})
            QCOMPARE(row(window, key) != nullptr, offered.contains(QLatin1String(key)));
    }

    void theLinkGoesThroughItsQuestions()
    {
        const QStringList captions = {
            "Comments?", "Report Errors?",     "Send Feedback?", "Report Bugs?", "", "",
            "",          "Suggest a Feature?", "Comments?"};
        int next = 3;
        for (const QString& caption : captions) {
            frmImageView& window = m_bench->load();
            const controls::uLink* const link = window.panes()->uLink();
            QCOMPARE(link->isVisible(), !caption.isEmpty());
            if (link->isVisible()) {
                QCOMPARE(link->Caption(), caption);
                QVERIFY(link->LinkURL().endsWith(QStringLiteral("?app=QuorviaFeedback&version=1.0.0")));
                const int free = link->parentWidget()->width() - link->geometry().right() - 1;
                QVERIFY(free == 6 || free == 7); // 100 twips
            }
            QCOMPARE(app::read(setting::LinkPreview), next);
            next = next == 7 ? 0 : next + 1;
            m_bench->close();
        }
    }

    void aNewerVersionIsOffered()
    {
        app::save(setting::LatestVersion, QStringLiteral("1.0.1"));
        frmImageView& window = m_bench->load();
        const controls::uLink* const link = window.panes()->uLink();
        QVERIFY(link->isVisible());
        QCOMPARE(link->Caption(), QStringLiteral("Upgrade to version: 1.0.1"));
        QCOMPARE(link->LinkURL(), app::webAddress(app::WebPage::Download));
        QCOMPARE(app::read(setting::LinkPreview), 2);
    }

    void withoutTheDynamicLinkThereIsNone()
    {
        app::save(setting::DynamicLink, 0);
        frmImageView& window = m_bench->load();
        QVERIFY(!window.panes()->uLink()->isVisible());
        QCOMPARE(window.panes()->uLink()->Caption(), QStringLiteral("Launch Web-Browser..."));
        QCOMPARE(app::read(setting::LinkPreview), 2);
    }

    /// Where they would meet, the tabs and their arrows are in front.
    void theLinkGivesWayToTheTabs()
    {
        app::save(setting::LatestVersion, QStringLiteral("20.0.0"));
        frmImageView& window = m_bench->load();
        controls::uLink* const link = window.panes()->uLink();
        window.panes()->bPlay()->setVisible(false);
        const auto inFront = [&] {
            return window.pTop()->childAt(link->geometry().center()) == link ||
                   link->isAncestorOf(window.pTop()->childAt(link->geometry().center()));
        };
        window.resize(1000, 600);
        QVERIFY(inFront());
        window.resize(300, 600);
        QVERIFY(!inFront());
        window.resize(1000, 600);
        QVERIFY(inFront());
    }
};

QTEST_MAIN(TestWindowWelcome)
#include "tst_windowwelcome.moc"
