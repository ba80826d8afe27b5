// The information panel on its own: what it shows, when it asks, and which image a description lands on.
#include "app/Colors.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "platform/Contrast.h"
#include "support/FullDisk.h"
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QUrl>

#include <memory>

using namespace quorvia;
using test::PanelBench;

class TestInformationPanel : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::PanelStage> m_stage;
    PanelBench& bench() { return m_stage->bench; }
    QByteArray log() const
    {
        QFile file(app::logPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString textOf(const char* field) { return bench().part<QPlainTextEdit>(field)->toPlainText(); }

  private Q_SLOTS:
    void init() { m_stage = std::make_unique<test::PanelStage>(); }
    void cleanup() { m_stage.reset(); }

    void showsTheCurrentImage()
    {
        bench().open("a.png");
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("a.png"));
        QVERIFY(textOf("tFileInfo")
                    .startsWith(QLatin1String("File Size: 5 Bytes  0 KB  0.00 MB\n\nCreated On: ")));
        QCOMPARE(textOf("tFileInfo").count(u'\n'), 5);
        QVERIFY(
            textOf("tImageInfo").startsWith(QLatin1String("Dimensions: 640x480\nBits Per Pixel: \t24\n")));
        QTRY_VERIFY(textOf("tImageInfo").endsWith(QLatin1String("\nUnique Colors:\t77")));
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        QCOMPARE(bench().part<QLabel>("Label1")->text(), QStringLiteral("File Information"));
        QCOMPARE(bench().part<QLabel>("Label2")->text(), QStringLiteral("Image"));
        QCOMPARE(bench().part<QLabel>("Label3")->text(), QStringLiteral("Description"));
        QCOMPARE(bench().part<QLineEdit>("tPath")->toolTip(),
                 QStringLiteral("Double-Click to open containing folder in 'Windows Explorer'"));
    }

    void aFileThatCannotBeReadLeavesTheFactsInPlace()
    {
        bench().open("a.png");
        const QString facts = textOf("tFileInfo");
        QVERIFY(QFile::remove(bench().image("a.png")));
        bench().open("a.png");
        QCOMPARE(textOf("tFileInfo"), facts);
    }

    void asksNothingWhileItIsHidden()
    {
        bench().pInformation.hide();
        bench().open("a.png");
        QVERIFY(!bench().part<QTimer>("tColors")->isActive());
        QCOMPARE(bench().counts, 0);
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), QString());
        QCOMPARE(textOf("tFileInfo"), QString());
        bench().pInformation.show();
        bench().panel->showCurrent();
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("a.png"));
        QTRY_COMPARE(bench().counts, 1);
    }

    void hiddenBeforeItCountsItDoesNot()
    {
        bench().open("a.png");
        bench().pInformation.hide();
        QTRY_VERIFY(!bench().part<QTimer>("tColors")->isActive());
        QCOMPARE(bench().counts, 0);
    }

    void aWalkCountsTheColoursOfTheLastImageOnly()
    {
        for (const char* name : {"a.png", "b.png", "c.png"})
            bench().open(name);
        QTRY_COMPARE(bench().counts, 1);
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("c.png"));
    }

    void anImageWithoutReadablePixelsGivesWay()
    {
        bench().open("a.png");
        QTRY_COMPARE(bench().counts, 1);
        bench().fallBack = bench().image("a.png");
        bench().open("b.png");
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("b.png"));
        QTRY_COMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("a.png"));
        QTRY_VERIFY(textOf("tImageInfo").endsWith(QLatin1String("77")));
    }

    void aPictureWithoutAFileHasNoDescriptionToSave()
    {
        bench().current = QString();
        bench().panel->showCurrent();
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        QCOMPARE(textOf("tFileInfo"), QStringLiteral("File Size: 0 Bytes  0 KB  0.00 MB\nAttributes: "));
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
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        bench().open("a.png");
        QCOMPARE(textOf("tDes"), QStringLiteral("a day at sea"));
    }

    void everyKeyStartsTheDelayAnew()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("x"));
        QTRY_VERIFY(bench().tSaveDes()->remainingTime() < 400);
        QTest::keyClicks(bench().tDes(), QStringLiteral("y"));
        QVERIFY(bench().tSaveDes()->remainingTime() > 400);
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
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        bench().typeAnew(QStringLiteral("of b"));
        bench().open("c.png");
        QCOMPARE(bench().stored("a.png"), QStringLiteral("of a"));
        QCOMPARE(bench().stored("b.png"), QStringLiteral("of b"));
        QCOMPARE(bench().sidecars().size(), 2);
        bench().open("a.png");
        QCOMPARE(textOf("tDes"), QStringLiteral("of a"));
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
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
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
            QCOMPARE(textOf("tDes"), text);
            QVERIFY(log().contains("Description not saved: "));
            bench().open("a.png"); // as on a change of tabs
            QCOMPARE(textOf("tDes"), text);
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
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
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
        QCOMPARE(textOf("tDes"), QString());
    }

    void aDescriptionThatCannotBeReadIsNotReplaced()
    {
        const QString sidecar = viewer::descriptionPath(bench().image("b.png"));
        QVERIFY(QDir().mkpath(sidecar)); // a directory in its place
        QVERIFY(bench().store("a.png", QStringLiteral("of a")));
        bench().open("a.png");
        bench().open("b.png");
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        bench().typeAnew(QStringLiteral("of b"));
        QVERIFY(!bench().panel->isDescriptionUnsaved());
        QVERIFY(log().contains("Description not read: "));
        bench().open("a.png");
        QVERIFY(!bench().tDes()->isReadOnly());
        QCOMPARE(textOf("tDes"), QStringLiteral("of a"));
    }

    /// What is typed there must not run the window's commands.
    void aBoxThatTakesNoTextKeepsItsKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("taken");
        const auto row = [](const char* name, int key, int modifiers, const char* text, bool taken) {
            QTest::newRow(name) << key << modifiers << QString::fromLatin1(text) << taken;
        };
        row("a letter", Qt::Key_D, Qt::NoModifier, "d", true);
        row("a capital", Qt::Key_D, Qt::ShiftModifier, "D", true);
        row("Delete", Qt::Key_Delete, Qt::NoModifier, "\x7f", true);
        row("Backspace", Qt::Key_Backspace, Qt::NoModifier, "\b", true);
        row("Enter", Qt::Key_Return, Qt::NoModifier, "\r", true);
        row("a command of the window", Qt::Key_O, Qt::ControlModifier, "\x0f", false);
        row("a function key", Qt::Key_F11, Qt::NoModifier, "", false);
        row("Escape", Qt::Key_Escape, Qt::NoModifier, "\x1b", false);
    }

    void aBoxThatTakesNoTextKeepsItsKeys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QVERIFY(QDir().mkpath(viewer::descriptionPath(bench().image("a.png"))));
        bench().open("a.png");
        QVERIFY(bench().tDes()->isReadOnly());
        bench().tDes()->setFocus();
        QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers), text);
        QCoreApplication::sendEvent(bench().tDes(), &event);
        QTEST(event.isAccepted(), "taken");
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
    }

    void everyLineEndOfTheKeysIsOne_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::newRow("Enter") << 0;
        QTest::newRow("Shift+Enter") << int(Qt::ShiftModifier);
    }

    void everyLineEndOfTheKeysIsOne()
    {
        QFETCH(int, modifiers);
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("one"));
        QTest::keyClick(bench().tDes(), Qt::Key_Return, Qt::KeyboardModifiers(modifiers));
        QTest::keyClicks(bench().tDes(), QStringLiteral("two"));
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored("a.png"), QStringLiteral("one\ntwo"));
    }

    void nothingOfOneImageIsUndoneIntoAnother_data()
    {
        QTest::addColumn<bool>("redone");
        QTest::newRow("undone") << false;
        QTest::newRow("redone") << true;
    }

    void nothingOfOneImageIsUndoneIntoAnother()
    {
        QFETCH(bool, redone);
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("of a"));
        if (redone)
            bench().tDes()->undo();
        bench().open("b.png");
        redone ? bench().tDes()->redo() : bench().tDes()->undo();
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        QVERIFY(!bench().panel->isDescriptionUnsaved());
    }

    void aMebibyteComesBack_data()
    {
        QTest::addColumn<int>("column"); // of the line ends
        QTest::newRow("lines") << 80;
        QTest::newRow("a single word") << (2 << 20);
    }

    void aMebibyteComesBack()
    {
        QFETCH(int, column);
        QString text(1 << 20, u'x');
        for (qsizetype at = column - 1; at < text.size(); at += column)
            text[at] = u'\n';
        bench().open("a.png");
        bench().tDes()->setFocus();
        bench().tDes()->selectAll();
        QGuiApplication::clipboard()->setText(text);
        bench().tDes()->paste();
        bench().open("b.png");
        QVERIFY(bench().stored("a.png") == text);
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
        bench().open("a.png");
        QTest::keyClick(bench().tDes(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(bench().tDes(), QStringLiteral("!"));
        bench().open("b.png");
        QVERIFY(bench().stored("a.png") == text + u'!');
    }

    /// A line so long that the box shows it in pieces; the first has 8192 letters.
    void aLongLineIsEditedAsOne_data()
    {
        QTest::addColumn<int>("caret"); // in the document, where the place between the pieces counts as one
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("kept"); // letters before the caret
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("lost");
        const auto row = [](const char* name, int caret, int key, int kept, const char* typed, int lost) {
            QTest::newRow(name) << caret << key << kept << QString::fromLatin1(typed) << lost;
        };
        row("Backspace behind the place", 8193, Qt::Key_Backspace, 8191, "", 1);
        row("Backspace before it", 8192, Qt::Key_Backspace, 8191, "", 1);
        row("Delete before the place", 8192, Qt::Key_Delete, 8192, "", 1);
        row("Delete behind it", 8193, Qt::Key_Delete, 8192, "", 1);
        row("Enter behind it", 8193, Qt::Key_Return, 8192, "\n", 0);
        row("Enter before it", 8192, Qt::Key_Return, 8192, "\n", 0);
        row("a letter behind it", 8193, Qt::Key_X, 8192, "x", 0);
    }

    void aLongLineIsEditedAsOne()
    {
        QFETCH(int, caret);
        QFETCH(int, key);
        QFETCH(int, kept);
        QFETCH(QString, typed);
        QFETCH(int, lost);
        QString line;
        while (line.size() < 10000)
            line += QString::number(line.size());
        QVERIFY(bench().store("a.png", line));
        bench().open("a.png");
        QPlainTextEdit* const tDes = bench().tDes();
        tDes->setFocus();
        QCOMPARE(tDes->document()->blockCount(), 2);
        QTextCursor cursor = tDes->textCursor();
        cursor.setPosition(caret);
        tDes->setTextCursor(cursor);
        QTest::keyClick(tDes, Qt::Key(key));
        bench().panel->saveDescriptionNow();
        QVERIFY(bench().stored("a.png") == line.left(kept) + typed + line.mid(kept + lost));
        tDes->undo();
        tDes->selectAll();
        tDes->copy();
        QVERIFY(QGuiApplication::clipboard()->text() == line);
    }

    /// A file dropped anywhere opens; a text dropped on the box goes into it.
    void whatIsDropped_data()
    {
        QTest::addColumn<bool>("file");
        QTest::newRow("a file is left to the window") << true;
        QTest::newRow("a text is taken") << false;
    }

    void whatIsDropped()
    {
        QFETCH(bool, file);
        bench().open("a.png");
        QMimeData dragged;
        if (file)
            dragged.setUrls({QUrl::fromLocalFile(bench().image("b.png"))});
        else
            dragged.setText(QStringLiteral("a text"));
        QDragEnterEvent event(QPoint(20, 10), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(bench().tDes()->viewport(), &event);
        QCOMPARE(event.isAccepted(), !file);
    }

    void linesOfOtherSystemsArePasted()
    {
        bench().open("a.png");
        bench().tDes()->setFocus();
        QGuiApplication::clipboard()->setText(QStringLiteral("one\r\ntwo\rthree"));
        bench().tDes()->paste();
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored("a.png"), QStringLiteral("one\ntwo\nthree"));
    }

    void enteringSelectsAll_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("by Tab") << Qt::NoButton;
        QTest::newRow("by a click") << Qt::LeftButton;
        QTest::newRow("by the middle button") << Qt::MiddleButton;
        QTest::newRow("by the right button") << Qt::RightButton;
    }

    void enteringSelectsAll()
    {
        QFETCH(Qt::MouseButton, button);
        if (QGuiApplication::clipboard()->supportsSelection())
            QGuiApplication::clipboard()->clear(QClipboard::Selection); // nothing to paste
        bench().open("a.png");
        QPlainTextEdit* const tDes = bench().tDes();
        if (button == Qt::NoButton)
            tDes->setFocus(Qt::TabFocusReason);
        else
            QTest::mousePress(tDes->viewport(), button, {}, QPoint(20, 10));
        if (button == Qt::LeftButton || button == Qt::MiddleButton) // a menu keeps the other's release
            QTest::mouseRelease(tDes->viewport(), button, {}, QPoint(20, 10));
        QVERIFY(tDes->hasFocus());
        QCOMPARE(tDes->textCursor().selectedText(), QStringLiteral("(none)"));
        QTest::mouseClick(tDes->viewport(), Qt::LeftButton, {}, QPoint(20, 10));
        QVERIFY(!tDes->textCursor().hasSelection()); // the second click places the caret
        QTest::keyClicks(tDes, QStringLiteral("x"));
        QVERIFY(textOf("tDes") != QLatin1String("x"));
    }

    /// As by a click on its scroll bar.
    void enteringBesideTheTextSelectsAll()
    {
        bench().open("a.png");
        bench().tDes()->setFocus(Qt::MouseFocusReason);
        QTRY_COMPARE(bench().tDes()->textCursor().selectedText(), QStringLiteral("(none)"));
    }

    /// Over text that was selected when the box was left, too.
    void aSelectionCanBeDrawnWhileEntering()
    {
        QVERIFY(bench().store("a.png", QStringLiteral("some words of a description")));
        bench().open("a.png");
        QPlainTextEdit* const tDes = bench().tDes();
        tDes->selectAll();
        QTest::mousePress(tDes->viewport(), Qt::LeftButton, {}, QPoint(6, 10));
        for (const int x : {30, 50, 70})
            bench().drawTo(x);
        QTest::mouseRelease(tDes->viewport(), Qt::LeftButton, {}, QPoint(70, 10));
        const QString drawn = tDes->textCursor().selectedText();
        QVERIFY2(drawn.size() > 2 && drawn.size() < 20, qPrintable(drawn));
    }

    void comingBackFromAMenuKeepsTheCaret()
    {
        bench().open("a.png");
        bench().typeAnew(QStringLiteral("text"));
        QPlainTextEdit* const tDes = bench().tDes();
        tDes->clearFocus();
        tDes->setFocus(Qt::PopupFocusReason);
        QVERIFY(!tDes->textCursor().hasSelection());
    }

    void theNextImageIsSelectedWhileTheBoxHasTheFocus()
    {
        bench().open("a.png");
        bench().tDes()->setFocus();
        bench().open("b.png");
        QCOMPARE(bench().tDes()->textCursor().selectedText(), QStringLiteral("(none)"));
        bench().tDes()->clearFocus();
        bench().open("a.png");
        QVERIFY(!bench().tDes()->textCursor().hasSelection());
    }

    void theFolderOpens()
    {
        bench().open("a.png");
        auto* const tPath = bench().part<QLineEdit>("tPath");
        QTest::mouseClick(tPath, Qt::LeftButton);
        QTest::mouseDClick(tPath, Qt::RightButton);
        QVERIFY(bench().folders.isEmpty());
        QTest::mouseDClick(tPath, Qt::LeftButton);
        QCOMPARE(bench().folders, QStringList{bench().pictures});
        QTest::keyClick(tPath, Qt::Key_Return);
        QCOMPARE(bench().folders.size(), 2);
        QTest::keyClick(tPath, Qt::Key_Return, Qt::AltModifier);
        QCOMPARE(bench().folders.size(), 2);
    }

    void tabLeadsThroughTheParts()
    {
        bench().open("a.png");
        bench().part<QLineEdit>("tPath")->setFocus();
        for (const char* name : {"tFileInfo", "tImageInfo", "tDes"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(name));
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget()->objectName() != QLatin1String("tDes"));
        QCOMPARE(textOf("tDes"), QStringLiteral("(none)"));
    }

    void allPartsHaveNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("tPath") << "Path";
        QTest::newRow("tFileInfo") << "File Information";
        QTest::newRow("tImageInfo") << "Image";
        QTest::newRow("tDes") << "Description";
    }

    void allPartsHaveNames()
    {
        QTEST(bench().part<QWidget>(QTest::currentDataTag())->accessibleName(), "name");
    }

    void theTextsStandOutFromTheChrome_data()
    {
        QTest::addColumn<QColor>("chrome");
        QTest::newRow("the blue of the start") << QColor(0, 121, 191);
        QTest::newRow("white") << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black);
        QTest::newRow("yellow") << QColor(Qt::yellow);
    }

    void theTextsStandOutFromTheChrome()
    {
        QFETCH(QColor, chrome);
        app::setPaneColor(&bench().pInformation, chrome);
        for (const char* name : {"tPath", "tFileInfo", "tImageInfo"}) {
            const QPalette colors = bench().part<QWidget>(name)->palette();
            QVERIFY2(platform::contrast(chrome, colors.color(QPalette::Text)) > 4.5, name);
            const QColor selected = colors.color(QPalette::Highlight);
            QVERIFY2(platform::contrast(chrome, selected) > 4.5, name);
            QVERIFY2(platform::contrast(selected, colors.color(QPalette::HighlightedText)) > 4.5, name);
        }
        for (const char* name : {"Label1", "Label2", "Label3"}) {
            const QColor ink = bench().part<QWidget>(name)->palette().color(QPalette::WindowText);
            QVERIFY2(platform::contrast(chrome, ink) > 4.5, name);
        }
        const QPalette box = bench().tDes()->palette();
        QVERIFY(platform::contrast(box.color(QPalette::Base), box.color(QPalette::Text)) > 4.5);
    }

    void theImagesFactsTakeALineEach_data()
    {
        QTest::addColumn<int>("width");
        QTest::newRow("wide") << 1200;
        QTest::newRow("usual") << 900;
        QTest::newRow("rather narrow") << 600;
    }

    void theImagesFactsTakeALineEach()
    {
        QFETCH(int, width);
        bench().pShowInfo.resize(width, 174);
        bench().facts.pixels = QSize(12000, 9000);
        bench().colors = 1 << 24;
        bench().open("a.png");
        auto* const field = bench().part<QPlainTextEdit>("tImageInfo");
        QTRY_COMPARE(bench().counts, 1);
        QTRY_COMPARE(bench().panel->width(), width);
        for (int line = 0; line < 3; ++line)
            QCOMPARE(field->document()->findBlockByNumber(line).layout()->lineCount(), 1);
    }

    void theImagesNumbersStandBelowEachOther()
    {
        bench().open("a.png");
        QTRY_COMPARE(bench().counts, 1);
        auto* const field = bench().part<QPlainTextEdit>("tImageInfo");
        const auto placeOf = [field](int line, int letter) {
            return field->document()->findBlockByNumber(line).layout()->lineAt(0).cursorToX(letter);
        };
        const int depth = 17; // letters before the number, the tab among them
        const int colors = 15;
        QCOMPARE(placeOf(1, depth), placeOf(2, colors));
        const int blank = field->fontMetrics().horizontalAdvance(u' ');
        QVERIFY(placeOf(1, depth) - placeOf(1, depth - 2) > blank);
        QVERIFY(placeOf(2, colors) - placeOf(2, colors - 1) > blank);
    }

    void aNarrowPanelBreaksNoWord()
    {
        bench().pShowInfo.resize(300, 174);
        bench().open("a.png");
        QTRY_COMPARE(bench().panel->width(), 300);
        for (const char* name : {"tFileInfo", "tImageInfo"}) {
            auto* const field = bench().part<QPlainTextEdit>(name);
            QVERIFY(!field->horizontalScrollBar()->isVisible());
            const QTextBlock first = field->document()->begin();
            const int end = first.layout()->lineAt(0).textLength();
            QVERIFY2(first.text().at(end - 1).isSpace(), qPrintable(first.text().left(end)));
        }
    }

    void theFocusIsSeen_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("tPath") << "tDes";
        QTest::newRow("tFileInfo") << "tDes";
        QTest::newRow("tImageInfo") << "tDes";
        QTest::newRow("tDes") << "tPath";
    }

    void theFocusIsSeen()
    {
        QFETCH(QString, before);
        bench().open("a.png");
        QTRY_COMPARE(bench().counts, 1);
        auto* const part = bench().part<QWidget>(QTest::currentDataTag());
        bench().part<QWidget>(qPrintable(before))->setFocus(Qt::TabFocusReason);
        const QImage without = part->grab().toImage();
        part->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(part->grab().toImage() != without); // a caret may be in the dark half of its blinking
    }

    void theFocusOfThePathIsSeenOverAChangeOfImage()
    {
        bench().open("a.png");
        auto* const tPath = bench().part<QLineEdit>("tPath");
        tPath->setFocus(Qt::TabFocusReason);
        bench().open("b.png");
        QCOMPARE(tPath->selectedText(), bench().image("b.png"));
        QCOMPARE(tPath->cursorPosition(), 0); // a long one is seen from its start
        bench().tDes()->setFocus();
        bench().open("a.png");
        QVERIFY(!tPath->hasSelectedText());
    }

    void theFactsCanBeSelectedByKeys_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("tFileInfo") << "File Size:";
        QTest::newRow("tImageInfo") << "Dimensions:";
    }

    void theFactsCanBeSelectedByKeys()
    {
        QFETCH(QString, name);
        bench().open("a.png");
        auto* const field = bench().part<QPlainTextEdit>(QTest::currentDataTag());
        field->setFocus(Qt::TabFocusReason);
        QVERIFY(field->isReadOnly());
        for (int letter = 0; letter < name.size(); ++letter)
            QTest::keyClick(field, Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), name);
    }

    void fillsItsPane()
    {
        QCOMPARE(bench().panel->geometry(), bench().pShowInfo.rect());
        bench().pShowInfo.resize(400, 120);
        QTRY_COMPARE(bench().panel->geometry(), QRect(0, 0, 400, 120));
        QVERIFY(bench().panel->rect().contains(bench().tDes()->geometry()));
    }
};

QTEST_MAIN(TestInformationPanel)
#include "tst_informationpanel.moc"
