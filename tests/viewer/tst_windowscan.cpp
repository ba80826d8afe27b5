// The command that scans in the window, with the real helper and the pretended scanners behind it.
#include "app/Settings.h"
#include "commands/ToolDispatcher.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "platform/ScanSource.h"
#include "support/ScanDrivers.h"
#include "viewer/CommandStage.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using platform::ScanChoice;
using platform::ScanMode;
using platform::ScanSourceQuestion;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowScan : public QObject, private test::CommandStage
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScanDrivers> m_drivers;
    std::unique_ptr<platform::ScanSourceAnswerer> m_answerer;
    std::vector<ScanSourceQuestion> m_asked;
    std::optional<ScanChoice> m_answer;
    std::function<void()> m_whenAsked;

    QStringList acquired() const { return QDir(in("root/Acquired Images")).entryList(QDir::Files); }

    /// The box that nothing came was there, and the picture from before is; `caption` is its title.
    void isAsBefore(const QString& caption) const
    {
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(m_bench->boxes[0].text.startsWith(QStringLiteral("Either 'cancel' was selected")));
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
        QCOMPARE(m_bench->middle(), QColor(Qt::red));
        QCOMPARE(m_window->windowTitle(), caption);
        QVERIFY(!m_window->scan().isBusy());
        QVERIFY(acquired().isEmpty());
    }

  private Q_SLOTS:
    void init()
    {
        setUp();
        m_drivers = std::make_unique<test::ScanDrivers>();
        qputenv("QUORVIA_SCAN_HELPER", SCAN_HELPER);
        m_asked.clear();
        m_answer = ScanChoice{"test:1", ScanMode::Color, 75};
        m_whenAsked = {};
        m_answerer =
            std::make_unique<platform::ScanSourceAnswerer>([this](const ScanSourceQuestion& question) {
                m_asked.push_back(question);
                if (m_whenAsked)
                    m_whenAsked();
                return m_answer;
            });
    }
    void cleanup()
    {
        tearDown();
        m_answerer.reset();
        m_drivers.reset();
    }

    void whatIsScannedBecomesTheCurrentImage()
    {
        frmImageView& window = show({in("pics")});
        const QString caption = window.windowTitle();
        QString asking;
        m_whenAsked = [&] { asking = window.windowTitle(); };
        run("miScan");
        QCOMPARE(asking, QStringLiteral("TWAIN Select | Quorvia"));
        QCOMPARE(acquired().size(), 1);
        QVERIFY(QRegularExpression(QStringLiteral("^Image \\d{8}-\\d{6}\\.jpg$"))
                    .match(acquired()[0])
                    .hasMatch());
        QCOMPARE(window.currentFile(), in("root/Acquired Images/") + acquired()[0]);
        QCOMPARE(window.ix1()->ImagePixelWidth(), 118);
        QVERIFY(window.ix1()->UniqueColors() > 2);
        QCOMPARE(window.windowTitle(), caption);
        QVERIFY(m_bench->boxes.empty());
        QVERIFY(!window.scan().isBusy());
        QCOMPARE(m_asked.size(), size_t(1));
        QCOMPARE(m_asked[0].devices.size(), 2);
        QCOMPARE(m_asked[0].start, ScanChoice());
    }

    void theOptionsOfJpegApply_data()
    {
        QTest::addColumn<int>("gray");
        QTest::newRow("as scanned") << 0;
        QTest::newRow("without colours") << 1;
    }
    void theOptionsOfJpegApply()
    {
        QFETCH(int, gray);
        show({in("pics")});
        app::save(setting::JPEGGray, gray);
        run("miScan");
        QCOMPARE(acquired().size(), 1);
        const QImage saved(in("root/Acquired Images/") + acquired()[0]);
        QCOMPARE(saved.width(), 118);
        QCOMPARE(saved.allGray(), gray == 1);
    }

    void theLastChoiceIsKept()
    {
        show({in("pics")});
        m_answer = ScanChoice{"test:0", ScanMode::Gray, 100};
        run("miScan");
        QCOMPARE(m_window->ix1()->ImagePixelWidth(), 157);
        m_answer.reset();
        QVERIFY(m_bench->boxes.empty());
        run("miScan");
        QCOMPARE(m_bench->boxes.size(), size_t(1)); // and scans nothing with the choice from before
        QCOMPARE(m_asked.back().start, (ScanChoice{"test:0", ScanMode::Gray, 100}));
        run("miScan"); // a cancel forgets nothing
        QCOMPARE(m_bench->boxes.size(), size_t(2));
        QCOMPARE(m_asked.back().start, (ScanChoice{"test:0", ScanMode::Gray, 100}));
    }

    void cancelled_data()
    {
        QTest::addColumn<bool>("isOpen");
        QTest::addColumn<bool>("atTheDevice");
        QTest::newRow("at the choice, an image open") << true << false;
        QTest::newRow("at the choice, no image") << false << false;
        QTest::newRow("by the device, an image open") << true << true;
        QTest::newRow("by the device, no image") << false << true;
    }

    void cancelled()
    {
        QFETCH(bool, isOpen);
        QFETCH(bool, atTheDevice);
        frmImageView& window = show({in("pics")});
        const QString file = window.currentFile();
        QCOMPARE(file, in("pics/a.png"));
        if (!isOpen)
            run("miCloseImage");
        if (atTheDevice)
            m_drivers->pretend({"read-status-code \"SANE_STATUS_CANCELLED\""});
        else
            m_answer.reset();
        const QString caption = window.windowTitle();
        run("miScan");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(m_bench->boxes[0].text.startsWith(QStringLiteral("Either 'cancel' was selected")));
        QCOMPARE(window.currentFile(), isOpen ? file : QString());
        QCOMPARE(window.ix1()->ImagePixelWidth() > 0, isOpen);
        QCOMPARE(window.windowTitle(), caption);
        QCOMPARE(window.panes()->pWelcome()->isHidden(), isOpen);
        if (isOpen)
            QCOMPARE(m_bench->middle(), QColor(Qt::red));
        QVERIFY(acquired().isEmpty());
    }

    void whatFailsIsInTheLog()
    {
        show({in("pics")});
        m_drivers->pretend({"read-status-code \"SANE_STATUS_JAMMED\""});
        run("miScan");
        QCOMPARE(m_bench->logTexts().filter(QStringLiteral("jammed")).size(), 1);
        m_drivers->pretend({"number_of_devices 0"}); // the driver falls over it
        m_answer.reset();
        run("miScan");
        QVERIFY(m_asked.back().devices.isEmpty());
        QCOMPARE(m_bench->logTexts().filter(QStringLiteral("could not be listed")).size(), 1);
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
    }

    void aDriverThatFailsAmidThePicture_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("why");
        QTest::newRow("fails") << QByteArray("read fails") << "Error during device I/O";
        QTest::newRow("crashes") << QByteArray("read crashes") << "the scanner helper crashed";
    }

    void aDriverThatFailsAmidThePicture()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QString, why);
        frmImageView& window = show({in("pics")});
        const QString caption = window.windowTitle();
        m_drivers->installOdd(ODD_DRIVERS, fault.constData());
        m_answer = ScanChoice{"odd:one", ScanMode::Gray, 75};
        run("miScan");
        QCOMPARE(m_asked.size(), size_t(1));
        QCOMPARE(m_asked[0].devices.size(), 1);
        QCOMPARE(m_bench->logTexts().filter(QStringLiteral("Nothing was acquired: ")).filter(why).size(), 1);
        isAsBefore(caption);
    }

    void aDriverThatFindsNothing()
    {
        frmImageView& window = show({in("pics")});
        const QString caption = window.windowTitle();
        const QStringList log = m_bench->logTexts();
        m_drivers->installOdd(ODD_DRIVERS, "no device");
        m_answerer.reset(); // the dialog itself
        QStringList rows;
        bool isOkEnabled = true;
        const test::NextDialog<QDialog> next(
            [&](QDialog& dialog) {
                const auto* const devices = dialog.findChild<QListWidget*>(QStringLiteral("Devices"));
                for (int i = 0; i < devices->count(); ++i)
                    rows.append(devices->item(i)->text());
                auto* const buttons = dialog.findChild<QDialogButtonBox*>();
                isOkEnabled = buttons->button(QDialogButtonBox::Ok)->isEnabled();
                QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
            },
            QStringLiteral("ScanSource"));
        run("miScan");
        QVERIFY(next.seen());
        QCOMPARE(rows, QStringList(QStringLiteral("No scanner or camera was found.")));
        QVERIFY(!isOkEnabled);
        QCOMPARE(m_bench->logTexts(), log); // the driver did all right
        isAsBefore(caption);
    }

    void aBlankPage()
    {
        show({in("pics")});
        m_drivers->pretend({"test-picture \"Solid white\""});
        run("miScan");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(acquired().isEmpty());
        QCOMPARE(m_bench->middle(), QColor(Qt::red));
    }

    void aSaveThatFails_data()
    {
        QTest::addColumn<bool>("isSavedElsewhere");
        QTest::newRow("saved elsewhere") << true;
        QTest::newRow("not saved at all") << false;
    }

    void aSaveThatFails()
    {
        QFETCH(bool, isSavedElsewhere);
        frmImageView& window = show({in("pics")});
        m_bench->home.write(QStringLiteral("root/Acquired Images"), "in the way");
        const QString place = in("kept.png");
        int asked = 0;
        const platform::SaveChooserAnswerer chooser([&](const platform::SaveChooser&) {
            ++asked;
            return isSavedElsewhere ? place : QString();
        });
        run("miScan");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(m_bench->boxes[0].text.contains(QStringLiteral("Acquired Images")));
        QCOMPARE(asked, 1);
        QCOMPARE(window.ix1()->ImagePixelWidth(), 118); // still there to be saved
        QCOMPARE(QImage(place).width(), isSavedElsewhere ? 118 : 0);
        QCOMPARE(window.currentFile(), isSavedElsewhere ? place : QString());
    }

    void anEditSurvivesACancel()
    {
        frmImageView& window = show({in("pics")});
        run("miThumb80x60");
        const QString caption = window.windowTitle();
        m_answer.reset();
        run("miScan");
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        QCOMPARE(window.ix1()->ImagePixelWidth(), 80);
        QCOMPARE(window.windowTitle(), caption);
    }

    void noDrivers()
    {
        show({in("pics")});
        m_drivers->remove();
        run("miScan");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QCOMPARE(m_bench->boxes[0].title, QStringLiteral("TWAIN Error"));
        QVERIFY(m_asked.empty());
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
    }

    void noSecondOneInside()
    {
        frmImageView& window = show({in("pics")});
        m_whenAsked = [&] {
            QVERIFY(window.scan().isBusy());
            run("miScan");
        };
        run("miScan");
        QCOMPARE(m_asked.size(), size_t(1));
        QCOMPARE(acquired().size(), 1);
    }

    void theSlideshowWaits()
    {
        frmImageView& window = show({in("pics")});
        run("miSlideShow");
        auto* const timer = window.slideshow()->findChild<QTimer*>();
        QVERIFY(timer);
        m_whenAsked = [&] {
            QVERIFY(window.slideshow()->isRunning());
            timer->start(1);
            QTest::qWait(50);
            QCOMPARE(window.currentFile(), QString());
        };
        m_answer.reset();
        run("miScan");
        QCOMPARE(m_asked.size(), size_t(1));
    }

    void theWindowClosesMeanwhile()
    {
        frmImageView& window = show({in("pics")});
        m_whenAsked = [&] { window.close(); };
        run("miScan");
        QVERIFY(window.isUnloaded());
        QVERIFY(m_bench->boxes.empty());
        QVERIFY(acquired().isEmpty());
    }

    void theWindowClosesAmidTheScan()
    {
        frmImageView& window = show({in("pics")});
        m_drivers->pretend(test::slowScan());
        m_answer->resolution = 600;
        m_whenAsked = [&] { QTimer::singleShot(400, &window, [&] { window.close(); }); };
        run("miScan");
        QVERIFY(window.isUnloaded());
        QVERIFY(m_bench->boxes.empty());
        QVERIFY(acquired().isEmpty());
    }
};

QTEST_MAIN(TestWindowScan)
#include "tst_windowscan.moc"
