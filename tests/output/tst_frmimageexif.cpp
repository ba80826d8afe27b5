// The side bar's window: when it has which panes, where clicks and keys go, and when colours are counted.
#include "output/frmImageEXIF.h"
#include "support/KeyRows.h"
#include "support/RecordingWindow.h"
#include "support/ScratchHome.h"

#include <QAbstractButton>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QTest>

#include <memory>

using namespace quorvia;
using output::frmImageEXIF;

namespace {

class ExifBench
{
  public:
    ExifBench()
    {
        for (const char* name : {"a.png", "b.png"})
            home.write(QLatin1String(name), QByteArray(2048, 'x'));
        bar = std::make_unique<frmImageEXIF>(
            window, frmImageEXIF::Sinks{.image = {.facts = [this] { return facts; },
                                                  .uniqueColors =
                                                      [this] {
                                                          ++counts;
                                                          if (!fallBack.isNull())
                                                              window.current =
                                                                  std::exchange(fallBack, QString());
                                                          return 77;
                                                      }},
                                        .focusImage = [this] { ++focused; }});
        bar->resize(220, 500);
    }

    QString file(const char* name) const { return home.path(QLatin1String(name)); }
    void open(const char* name)
    {
        window.current = file(name);
        bar->InitBar(window.current);
    }
    QStringList titles() const
    {
        QStringList titles;
        for (const platform::Pane& pane : bar->barEXIF()->panes())
            titles.append(pane.title);
        return titles;
    }
    QString textOf(const char* key) const
    {
        const auto* const row = bar->findChild<QLabel*>(QLatin1String(key));
        return row ? row->text() : QString();
    }
    QTimer* rest() const { return bar->findChild<QTimer*>(QStringLiteral("tColors")); }

    test::ScratchHome home;
    test::RecordingWindow window;
    app::ImageFacts facts{QSize(640, 480), 24};
    QString fallBack; ///< the image that comes back when the pixels turn out to be unreadable
    int counts = 0;
    int focused = 0;
    std::unique_ptr<frmImageEXIF> bar;
};

const QStringList allTitles{" Experience", " Photo Information", "Description:", "EXIF Information:"};

/// Counts the panes that are made, and those among them that were painted at once.
class WatchOfPanes : public QObject
{
  public:
    explicit WatchOfPanes(platform::PaneBar* bar) : m_column(bar->widget())
    {
        m_column->installEventFilter(this);
    }

    int made = 0;
    int madeInSight = 0;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded) {
            ++made;
            madeInSight += m_column->updatesEnabled() ? 1 : 0;
        }
        return false;
    }

  private:
    QWidget* m_column;
};

} // namespace

class TestExif : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ExifBench> m_bench;
    ExifBench& bench() { return *m_bench; }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<ExifBench>(); }
    void cleanup() { m_bench.reset(); }

    void beginsWithOnePane()
    {
        QCOMPARE(bench().titles(), QStringList{" Experience"});
        bench().open("a.png");
        bench().bar->InitBar(QString());
        QCOMPARE(bench().titles(), QStringList{" Experience"});
        QCOMPARE(bench().textOf("Welcome"), QStringLiteral("Welcome Screen"));
        QCOMPARE(bench().textOf("File"), QString());
    }

    void aVanishedFileLeavesOnePane()
    {
        bench().open("a.png");
        QCOMPARE(bench().titles(), allTitles);
        QVERIFY(QFile::remove(bench().file("a.png")));
        bench().open("a.png");
        QCOMPARE(bench().titles(), QStringList{" Experience"});
        bench().bar->InitBar(bench().home.path(QStringLiteral("."))); // a directory is no file
        QCOMPARE(bench().titles(), QStringList{" Experience"});
    }

    void showsTheFile()
    {
        bench().open("a.png");
        QCOMPARE(bench().titles(), allTitles);
        QCOMPARE(bench().textOf("File"), QStringLiteral("a.png"));
        QCOMPARE(bench().textOf("Dimension"),
                 QStringLiteral("Photo: 640x480 24bpp\nFile Size: 2 KB (2,048 bytes)\nUnique Colors: "));
        const QString dates = bench().textOf("Date");
        QVERIFY(dates.startsWith(QLatin1String("Created: Jan. 14th, 2003\n")));
        bench().open("b.png");
        QCOMPARE(bench().textOf("File"), QStringLiteral("b.png"));
        QCOMPARE(bench().textOf("Date"), dates);
    }

    /// Else each pane would be seen coming.
    void paintsNothingWhilePanesAreMade()
    {
        WatchOfPanes watch(bench().bar->barEXIF());
        bench().bar->show();
        bench().open("a.png");
        QCOMPARE(watch.made, allTitles.size());
        QCOMPARE(watch.madeInSight, 0);
        QVERIFY(bench().bar->barEXIF()->updatesEnabled());
    }

    void countsColoursOnlyWhileItShows()
    {
        bench().open("a.png");
        QVERIFY(!bench().rest()->isActive());
        bench().bar->show();
        QTRY_VERIFY(bench().textOf("Dimension").endsWith(QLatin1String("Unique Colors: 77")));
        QCOMPARE(bench().counts, 1);
        bench().bar->hide();
        bench().bar->show();
        QVERIFY(!bench().rest()->isActive()); // they are known
        bench().open("b.png");
        bench().open("a.png");
        QTRY_COMPARE(bench().counts, 2); // one for both
        bench().open("b.png");
        bench().bar->hide();
        QTRY_VERIFY(!bench().rest()->isActive());
        QCOMPARE(bench().counts, 2);
    }

    void anImageWithoutReadablePixelsGivesWay()
    {
        bench().bar->show();
        bench().open("b.png");
        bench().fallBack = bench().file("a.png");
        QTRY_COMPARE(bench().textOf("File"), QStringLiteral("a.png"));
        QTRY_VERIFY(bench().textOf("Dimension").endsWith(QLatin1String("77")));
    }

    void aClickOnAnyRowGivesTheFocusBack_data()
    {
        QTest::addColumn<QString>("key");
        for (const char* key :
             {"Welcome", "Slideshow", "File", "Dimension", "Date", "Desci", "DescAdd", "EXIFI"})
            QTest::newRow(key) << QString::fromLatin1(key);
    }

    void aClickOnAnyRowGivesTheFocusBack()
    {
        QFETCH(QString, key);
        bench().open("a.png");
        bench().bar->show();
        auto* const row = bench().bar->findChild<QLabel*>(key);
        QVERIFY(row);
        QTest::mouseClick(row, Qt::RightButton);
        QCOMPARE(bench().focused, 0);
        QTest::mouseClick(row, Qt::LeftButton);
        QCOMPARE(bench().focused, 1);
        QVERIFY(bench().window.tools.isEmpty());
        QVERIFY(bench().window.opened.isEmpty());
    }

    void keysGoToTheMainWindow_data()
    {
        test::addKeyColumns();
        const auto row = &test::addKeyRow;
        row("Right in the window", "", Qt::Key_Right, {}, {"39:0"});
        row("Ctrl+N in the window", "", Qt::Key_N, Qt::ControlModifier, {"78:2"});
        row("Down in the bar", "barEXIF", Qt::Key_Down, {}, {"40:0"});
        row("Page Down in the bar", "barEXIF", Qt::Key_PageDown, {}, {"34:0"});
        row("Down on a head", "ToolsHead", Qt::Key_Down, {}, {"40:0"});
        row("Escape on a head", "ToolsHead", Qt::Key_Escape, {}, {"27:0"});
        row("Space on a head is its own", "ToolsHead", Qt::Key_Space, {}, {});
        row("Left on a row", "Welcome", Qt::Key_Left, {}, {"37:0"});
        row("Enter on a row is its own", "Welcome", Qt::Key_Return, {}, {});
        row("Ctrl+Enter on a row", "Welcome", Qt::Key_Return, Qt::ControlModifier, {"13:2"});
        row("a key that has no code", "", Qt::Key_MediaPlay, {}, {});
    }

    void keysGoToTheMainWindow()
    {
        QFETCH(QString, widget);
        bench().open("a.png");
        bench().bar->show();
        QWidget* const target =
            widget.isEmpty() ? bench().bar.get() : bench().bar->findChild<QWidget*>(widget);
        QVERIFY(target);
        test::pressKeyOfRow(target);
        QTEST(bench().window.keys, "keys");
    }

    void theBarFillsTheWindow()
    {
        bench().bar->show();
        QCOMPARE(bench().bar->barEXIF()->geometry(), QRect(0, 0, 220, 500));
        bench().bar->resize(300, 200);
        QCOMPARE(bench().bar->barEXIF()->geometry(), QRect(0, 0, 300, 200));
        QCOMPARE(bench().bar->barEXIF()->objectName(), QStringLiteral("barEXIF"));
        QVERIFY(!bench().bar->barEXIF()->accessibleName().isEmpty());
    }
};

QTEST_MAIN(TestExif)
#include "tst_frmimageexif.moc"
