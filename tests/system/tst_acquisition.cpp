// `miScan` over sinks: each of its steps, what a failure leaves, and the names of the files.
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "support/ScanDrivers.h"
#include "support/ScratchHome.h"
#include "system/Acquisition.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace quorvia;

namespace {

QImage page(QColor dot = Qt::black)
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixelColor(20, 15, dot);
    return image;
}

} // namespace

class TestAcquisition : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    std::unique_ptr<test::ScanDrivers> m_drivers;
    std::unique_ptr<engine::ImageEngine> m_ix1;
    std::unique_ptr<platform::MessageBoxAnswerer> m_answerer;
    std::vector<platform::MessageBox> m_boxes;
    QStringList m_steps;
    bool m_hasDrivers = true;
    bool m_isEnding = false;
    bool m_endsWhileItIsPlaced = false;
    bool m_isWaitingInABox = false;
    bool m_canSave = true;
    QImage m_scanned;
    QDateTime m_now;
    QString m_before; ///< a file

    void note(const char* step) { m_steps.append(QLatin1String(step)); }
    QString folder() const { return m_home->path(QStringLiteral("root/Acquired Images/")); }
    void scan()
    {
        system::miScan(
            {.ix1 = m_ix1.get(),
             .driversPresent = [this] { return m_hasDrivers; },
             .now = [this] { return m_now; },
             .setCaption =
                 [this](const QString& caption) { m_steps.append(QStringLiteral("caption ") + caption); },
             .restoreCaption = [this] { note("caption back"); },
             .place =
                 [this] {
                     note("place");
                     if (m_endsWhileItIsPlaced && m_ix1->ImagePixelWidth() > 0) {
                         m_isEnding = true;
                         m_ix1->SetFileName(QString());
                     }
                 },
             .saveImage =
                 [this](const QString& path, bool force) {
                     m_steps.append(QStringLiteral("save ") + app::BoolText(force));
                     QVERIFY(QGuiApplication::overrideCursor());
                     QVERIFY(m_ix1->grab().toImage().pixelColor(20, 15) != QColor(Qt::white));
                     if (m_canSave)
                         QVERIFY(m_ix1->Picture().save(path, "JPG"));
                 },
             .saveElsewhere =
                 [this] {
                     note("elsewhere");
                     QCOMPARE(m_ix1->Picture(), page()); // it can be
                 },
             .openX =
                 [this](const QString& path) {
                     QVERIFY(!QGuiApplication::overrideCursor());
                     m_steps.append(QStringLiteral("open ") + path);
                     m_ix1->SetFileName(path);
                 },
             .editIsBack = [this] { note("edit"); },
             .isEnding = [this] { return m_isEnding; },
             .isGone = [] { return false; }});
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        m_drivers = std::make_unique<test::ScanDrivers>();
        m_boxes.clear();
        m_steps.clear();
        m_hasDrivers = m_canSave = true;
        m_isEnding = m_endsWhileItIsPlaced = false;
        m_scanned = page();
        m_now = QDateTime(QDate(2003, 4, 5), QTime(16, 7, 8));
        m_answerer = std::make_unique<platform::MessageBoxAnswerer>([this](const platform::MessageBox& box) {
            m_boxes.push_back(box);
            m_isWaitingInABox = m_isWaitingInABox || QGuiApplication::overrideCursor();
            note("box");
            return platform::BoxAnswer::Ok;
        });
        m_ix1 = std::make_unique<engine::ImageEngine>(std::make_shared<engine::ImageLoader>());
        m_ix1->resize(40, 30);
        m_ix1->SetBackColor(Qt::white);
        m_ix1->SetAcquisitionSource({.select =
                                         [this] {
                                             note("select");
                                             QCOMPARE(m_ix1->FileName(), QString());
                                             QVERIFY(QFileInfo(folder()).isDir());
                                         },
                                     .acquire =
                                         [this] {
                                             note("acquire");
                                             return m_scanned;
                                         }});
        m_before = m_home->path(QStringLiteral("before.png"));
        QVERIFY(page(Qt::red).save(m_before));
    }
    void cleanup()
    {
        QVERIFY(!m_isWaitingInABox);
        m_answerer.reset();
        m_ix1.reset();
        app::closeSettings();
        m_drivers.reset();
        m_home.reset();
    }

    void names_data()
    {
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("name");
        QTest::newRow("month first") << QDateTime(QDate(2026, 11, 2), QTime(23, 59, 58))
                                     << "Image 11022026-235958.jpg";
        QTest::newRow("zeros") << QDateTime(QDate(2003, 1, 2), QTime(0, 0, 7)) << "Image 01022003-000007.jpg";
        QTest::newRow("one second") << QDateTime(QDate(2003, 1, 2), QTime(0, 0, 7, 999))
                                    << "Image 01022003-000007.jpg";
    }

    void names()
    {
        QFETCH(QDateTime, time);
        QTEST(system::acquiredName(time), "name");
    }

    void theDrivers()
    {
        QVERIFY(!system::TwainPresent()); // no helper stands beside this test
        qputenv("QUORVIA_SCAN_HELPER", SCAN_HELPER);
        QVERIFY(system::TwainPresent());
        m_drivers->remove();
        QVERIFY(!system::TwainPresent());
        qunsetenv("QUORVIA_SCAN_HELPER");
    }

    void withoutDrivers()
    {
        m_hasDrivers = false;
        m_ix1->SetFileName(m_before);
        scan();
        QCOMPARE(m_steps, QStringList{"box"});
        QCOMPARE(m_boxes[0].title, QStringLiteral("TWAIN Error"));
        QVERIFY(m_boxes[0].kind == platform::BoxKind::Critical);
        QCOMPARE(m_boxes[0].text,
                 QStringLiteral(
                     "Quorvia has detected that TWAIN drivers are not installed on your computer.  TWAIN is "
                     "the software that interfaces to the scanner or camera hardware.  In order to use this "
                     "feature, you must have a digital camera, scanner, or other input device connected to "
                     "your computer.  You must also install the TWAIN software drivers that come with the "
                     "hardware."));
        QCOMPARE(m_ix1->FileName(), m_before);
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void allSteps()
    {
        m_ix1->SetFileName(m_before);
        scan();
        const QString path = folder() + QStringLiteral("Image 04052003-160708.jpg");
        QCOMPARE(m_steps, (QStringList{"place", "caption TWAIN Select | Quorvia", "select", "acquire",
                                       "caption back", "place", "save True", "open " + path}));
        QVERIFY(QFileInfo(path).isFile());
        QCOMPARE(m_ix1->FileName(), path);
        QVERIFY(m_boxes.empty());
    }

    void theSameSecondReusesTheName()
    {
        scan();
        m_scanned = QImage(60, 50, QImage::Format_RGB32);
        m_scanned.fill(Qt::blue);
        m_scanned.setPixelColor(0, 0, Qt::red);
        scan();
        QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList{"Image 04052003-160708.jpg"});
        QCOMPARE(m_ix1->ImagePixelWidth(), 60);
        m_now = m_now.addSecs(1);
        scan();
        QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), 2);
    }

    void nothingAcquired_data()
    {
        QTest::addColumn<bool>("isOpen");
        QTest::addColumn<bool>("isBlank");
        QTest::newRow("no image open") << false << false;
        QTest::newRow("an image open") << true << false;
        QTest::newRow("no image open, a blank page") << false << true;
        QTest::newRow("an image open, a blank page") << true << true;
    }

    void nothingAcquired()
    {
        QFETCH(bool, isOpen);
        QFETCH(bool, isBlank);
        m_scanned = QImage();
        if (isBlank) {
            m_scanned = QImage(40, 30, QImage::Format_RGB32);
            m_scanned.fill(Qt::white);
        }
        if (isOpen)
            m_ix1->SetFileName(m_before);
        scan();
        QStringList steps{
            "place", "caption TWAIN Select | Quorvia", "select", "acquire", "caption back", "place", "box"};
        if (isOpen)
            steps.append(QStringLiteral("open ") + m_before);
        QCOMPARE(m_steps, steps);
        QCOMPARE(m_boxes[0].text, QStringLiteral("Either 'cancel' was selected or an error was encountered. "
                                                 "TWAIN Acquire cannot continue."));
        QCOMPARE(m_ix1->ImagePixelWidth() > 0, isOpen);
        QVERIFY(QDir(folder()).isEmpty());
    }

    void anImageWhoseFileHasGone()
    {
        m_ix1->SetFileName(m_before);
        QCOMPARE(m_ix1->UniqueColors(), 2);
        QVERIFY(QFile::remove(m_before));
        m_scanned = QImage();
        scan();
        QVERIFY(!m_steps.last().startsWith(QLatin1String("open")));
        QCOMPARE(m_ix1->Picture().convertToFormat(QImage::Format_RGB32), page(Qt::red)); // nobody else has it
    }

    void aFileThatGoesMeanwhile()
    {
        m_ix1->SetFileName(m_before);
        m_ix1->SetAcquisitionSource({.select = {}, .acquire = [this] {
                                         QFile::remove(m_before);
                                         return QImage();
                                     }});
        scan();
        QCOMPARE(m_steps.last(), QStringLiteral("box"));
        QCOMPARE(m_ix1->ImagePixelWidth(), 0);
    }

    void aSaveThatFails()
    {
        m_canSave = false;
        scan();
        QCOMPARE(m_steps.mid(m_steps.size() - 3), (QStringList{"save True", "box", "elsewhere"}));
        QVERIFY(m_boxes[0].kind == platform::BoxKind::Plain);
        QCOMPARE(m_boxes[0].title, QStringLiteral("Quorvia"));
        QVERIFY(m_boxes[0].text.contains(folder() + QStringLiteral("Image 04052003-160708.jpg")));
    }

    void anEditThatWasNotSaved()
    {
        m_ix1->SetFileName(m_before);
        m_ix1->Resize(20, 10);
        const QImage edited = m_ix1->Picture();
        m_scanned = QImage();
        scan();
        QCOMPARE(m_steps.mid(m_steps.size() - 3), (QStringList{"open " + m_before, "place", "edit"}));
        QCOMPARE(m_ix1->FileName(), m_before);
        QCOMPARE(m_ix1->Picture(), edited);
    }

    void whatIsPendingRunsBeforeTheSave()
    {
        m_ix1->SetAcquisitionSource({.select = {}, .acquire = [this] {
                                         QTimer::singleShot(0, this, [this] { note("pending"); });
                                         return page();
                                     }});
        scan();
        const qsizetype save = m_steps.indexOf(QRegularExpression(QStringLiteral("save .*")));
        QVERIFY(save > 0);
        QVERIFY(m_steps.mid(0, save).contains(QStringLiteral("pending")));
    }

    void theProgramEndsWithAPictureInHand_data()
    {
        QTest::addColumn<bool>("inTheDevice");
        QTest::newRow("before it was shown") << true;
        QTest::newRow("while it was shown") << false;
    }

    void theProgramEndsWithAPictureInHand()
    {
        QFETCH(bool, inTheDevice);
        app::openSettings();
        app::save(app::setting::JPEGGray, 1);
        m_endsWhileItIsPlaced = !inTheDevice;
        m_ix1->SetAcquisitionSource({.select = {}, .acquire = [this, inTheDevice] {
                                         m_isEnding = inTheDevice;
                                         return page(Qt::red);
                                     }});
        scan();
        const QImage saved(folder() + QStringLiteral("Image 04052003-160708.jpg"));
        QCOMPARE(saved.size(), QSize(40, 30));
        QVERIFY(saved.allGray()); // the options of JPEG apply
        QVERIFY(m_boxes.empty());
        QVERIFY(m_steps.filter(QRegularExpression(QStringLiteral("open|save|elsewhere"))).isEmpty());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void theProgramEndsMeanwhile()
    {
        m_ix1->SetFileName(m_before);
        m_ix1->SetAcquisitionSource({.select = [this] { m_isEnding = true; },
                                     .acquire =
                                         [this] {
                                             note("acquire");
                                             return page();
                                         }});
        scan();
        QCOMPARE(m_steps, (QStringList{"place", "caption TWAIN Select | Quorvia"}));
        QVERIFY(m_boxes.empty());
    }
};

QTEST_MAIN(TestAcquisition)
#include "tst_acquisition.moc"
