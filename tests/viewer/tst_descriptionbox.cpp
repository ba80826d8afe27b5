// The box of the description under keys, mouse, drops and the clipboard.
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QUrl>

using namespace quorvia;
using test::PanelBench;

class TestDescriptionBox : public QObject, private test::PanelStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
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
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
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
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
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
        QVERIFY(bench().textOf("tDes") != QLatin1String("x"));
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
};

QTEST_MAIN(TestDescriptionBox)
#include "tst_descriptionbox.moc"
