// Which image a description lands on, and when: the delay, the next image, the end, and saves that fail.
#include "app/Paths.h"
#include "support/FullDisk.h"
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

using namespace quorvia;
using test::PanelBench;

class TestDescriptionSaves : public QObject, private test::PanelStage
{
    Q_OBJECT

  private:
    QByteArray log() const
    {
        QFile file(app::logPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aPictureWithoutAFileHasNoDescriptionToSave()
    {
        bench().current = QString();
        bench().panel->showCurrent();
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        QCOMPARE(bench().textOf("tFileInfo"),
                 QStringLiteral("File Size: 0 Bytes  0 KB  0.00 MB\nAttributes: "));
        bench().typeAnew(QStringLiteral("a paste"));
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(bench().sidecars().isEmpty());
        QTest::mouseDClick(bench().part<QLineEdit>("tPath"), Qt::LeftButton);
        QVERIFY(bench().folders.isEmpty());
    }

    void showingSavesNothing()
    {
        bench().open("a.png");
        QVERIFY(!bench().panel->isDescriptionUnsaved());
        bench().panel->saveDescriptionNow();
        bench().open("b.png");
        QVERIFY(bench().sidecars().isEmpty());
    }

    void savesHalfASecondAfterTheLastKey()
    {
        bench().open("a.png");
        QCOMPARE(bench().tSaveDes()->interval(), 500);
        bench().typeAnew(QStringLiteral("a day at sea"));
        QVERIFY(bench().panel->isDescriptionUnsaved());
        QVERIFY(bench().sidecars().isEmpty());
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QCOMPARE(bench().stored("a.png"), QStringLiteral("a day at sea"));
        bench().open("b.png");
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        bench().open("a.png");
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("a day at sea"));
    }

    void everyKeyStartsTheDelayAnew()
    {
        bench().open("a.png");
        QTimer* const tSaveDes = bench().tSaveDes();
        tSaveDes->setTimerType(Qt::PreciseTimer);
        tSaveDes->setInterval(60'000); // so that no stall of the machine matters
        bench().typeAnew(QStringLiteral("x"));
        QTRY_VERIFY(tSaveDes->remainingTime() < 59'000);
        const int before = tSaveDes->remainingTime();
        QTest::keyClicks(bench().tDes(), QStringLiteral("y"));
        QVERIFY(tSaveDes->remainingTime() > before);
    }

    void linesBlanksAndScriptsComeBackAsTyped()
    {
        bench().open("a.png");
        const QString text = QString::fromUtf8(" one\n\ntwo\xc2\xa0\xe6\xbc\xa2\xf0\x9f\x98\x80\t\n");
        bench().tDes()->setFocus();
        bench().tDes()->selectAll();
        QGuiApplication::clipboard()->setText(text);
        bench().tDes()->paste();
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored("a.png"), text);
        bench().open("b.png");
        bench().open("a.png");
        QTest::keyClick(bench().tDes(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(bench().tDes(), QStringLiteral("!"));
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored("a.png"), text + u'!');
    }

    void anotherImageWithinTheDelaySavesUnderTheOldOne()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        bench().open("b.png");
        QVERIFY(!bench().panel->isDescriptionUnsaved());
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        bench().typeAnew(QStringLiteral("of b"));
        bench().open("c.png");
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().stored("b.png"), QStringLiteral("of b"));
        QCOMPARE(bench().sidecars().size(), 2);
        bench().open("a.png");
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("of a"));
    }

    /// The image control already has the next image, and the panel has not been told yet.
    void aKeyBetweenLoadAndStatusCountsForTheImageOnThePanel()
    {
        bench().open("a.png");
        bench().current = bench().image("b.png");
        bench().typeAnew(QStringLiteral("of a"));
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().sidecars().size(), 1);
    }

    void aHiddenPanelStillSaves()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        bench().pInformation.hide();
        bench().open("b.png");
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().sidecars().size(), 1);
    }

    void theEndSavesWhatWaits()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        bench().panel.reset();
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
    }

    void anImageThatHasGoneGetsNoDescription()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        QVERIFY(QFile::remove(bench().image("a.png")));
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(bench().sidecars().isEmpty());
    }

    void anImageThatTakesItsPlaceGetsNoDescription_data()
    {
        QTest::addColumn<bool>("switched");
        QTest::newRow("the delay goes by") << false;
        QTest::newRow("it is shown within the delay") << true;
    }

    void anImageThatTakesItsPlaceGetsNoDescription()
    {
        QFETCH(bool, switched);
        bench().open("a.png");
        const QString sidecar = viewer::descriptionPath(bench().image("a.png"));
        bench().typeAnew(QStringLiteral("of the old one"));
        m_stage->home.write(QStringLiteral("pics/a.png"), "another picture");
        if (switched)
            bench().open("a.png");
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(QFile::exists(sidecar));
        QCOMPARE(bench().sidecars().size(), 1);
        bench().open("a.png");
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        bench().typeAnew(QStringLiteral("of the new one"));
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of the new one"));
        QCOMPARE(bench().sidecars().size(), 2);
    }

    void aFailedSaveKeepsTheText_data()
    {
        QTest::addColumn<bool>("limit");
        QTest::newRow("a file in place of the directory") << false;
        QTest::newRow("a limit on file sizes") << true;
    }

    void aFailedSaveKeepsTheText()
    {
        QFETCH(bool, limit);
        constexpr int room = 50000;
        const QString text = QStringLiteral("some words\n").repeated(limit ? room / 10 : 1);
        if (!limit)
            m_stage->home.write(QStringLiteral("root/Description"), "a file");
        bench().open("a.png");
        bench().tDes()->setFocus();
        bench().tDes()->insertPlainText(text); // over the selection
        {
            const test::FullDisk disk(limit ? room : RLIM_INFINITY);
            QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
            QCOMPARE(bench().textOf("tDes"), text);
            QVERIFY(log().contains("Description not saved: "));
            bench().open("a.png"); // as on a change of tabs
            QCOMPARE(bench().textOf("tDes"), text);
        }
        QVERIFY(bench().sidecars().isEmpty());
        if (!limit)
            QVERIFY(QFile::remove(m_stage->home.path(QStringLiteral("root/Description"))));
        QTest::keyClick(bench().tDes(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(bench().tDes(), QStringLiteral("!"));
        QTRY_COMPARE(bench().stored("a.png"), text + u'!');
    }

    void aFailedSaveIsTriedAgainBeforeTheNextImage()
    {
        m_stage->home.write(QStringLiteral("root/Description"), "a file");
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        bench().panel->saveDescriptionNow();
        QVERIFY(QFile::remove(m_stage->home.path(QStringLiteral("root/Description"))));
        bench().open("b.png");
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().sidecars().size(), 1);
    }

    void theProgramsOwnWordIsNotSaved()
    {
        bench().open("a.png");
        bench().tDes()->setPlainText(QStringLiteral("auto"));
        QVERIFY(!bench().panel->isDescriptionUnsaved());
        bench().typeAnew(QStringLiteral("auto")); // its first letters begin to wait
        QTRY_VERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(bench().sidecars().isEmpty());
        QTest::keyClicks(bench().tDes(), QStringLiteral("mobile"));
        QTRY_COMPARE(bench().stored("a.png"), QStringLiteral("automobile"));
    }

    void anEmptiedDescriptionStaysEmpty()
    {
        QVERIFY(bench().store("a.png", QStringLiteral("old")));
        bench().open("a.png");
        bench().tDes()->setFocus();
        QTest::keyClick(bench().tDes(), Qt::Key_Delete);
        bench().open("a.png");
        QCOMPARE(bench().stored("a.png"), QString());
        QCOMPARE(bench().textOf("tDes"), QString());
    }

    void aDescriptionThatCannotBeReadIsNotReplaced()
    {
        const QString sidecar = viewer::descriptionPath(bench().image("b.png"));
        QVERIFY(QDir().mkpath(sidecar)); // a directory in its place
        QVERIFY(bench().store("a.png", QStringLiteral("of a")));
        bench().open("a.png");
        bench().open("b.png");
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        bench().typeAnew(QStringLiteral("of b"));
        QVERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(log().contains("Description not read: "));
        bench().open("a.png");
        QVERIFY(!bench().tDes()->isReadOnly());
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("of a"));
    }
};

QTEST_MAIN(TestDescriptionSaves)
#include "tst_descriptionsaves.moc"
