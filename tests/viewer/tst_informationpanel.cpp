// The information panel on its own: what it shows and when it asks, its look, and the way through its parts.
#include "app/Colors.h"
#include "platform/Contrast.h"
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

using namespace quorvia;
using test::PanelBench;

class TestInformationPanel : public QObject, private test::PanelStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void showsTheCurrentImage()
    {
        bench().open("a.png");
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), bench().image("a.png"));
        QVERIFY(bench()
                    .textOf("tFileInfo")
                    .startsWith(QLatin1String("File Size: 5 Bytes  0 KB  0.00 MB\n\nCreated On: ")));
        QCOMPARE(bench().textOf("tFileInfo").count(u'\n'), 5);
        QVERIFY(bench()
                    .textOf("tImageInfo")
                    .startsWith(QLatin1String("Dimensions: 640x480\nBits Per Pixel: \t24\n")));
        QTRY_VERIFY(bench().textOf("tImageInfo").endsWith(QLatin1String("\nUnique Colors:\t77")));
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
        QCOMPARE(bench().part<QLabel>("Label1")->text(), QStringLiteral("File Information"));
        QCOMPARE(bench().part<QLabel>("Label2")->text(), QStringLiteral("Image"));
        QCOMPARE(bench().part<QLabel>("Label3")->text(), QStringLiteral("Description"));
        QCOMPARE(bench().part<QLineEdit>("tPath")->toolTip(),
                 QStringLiteral("Double-Click to open containing folder in 'Windows Explorer'"));
    }

    void aFileThatCannotBeReadLeavesTheFactsInPlace()
    {
        bench().open("a.png");
        const QString facts = bench().textOf("tFileInfo");
        QVERIFY(QFile::remove(bench().image("a.png")));
        bench().open("a.png");
        QCOMPARE(bench().textOf("tFileInfo"), facts);
    }

    void asksNothingWhileItIsHidden()
    {
        bench().pInformation.hide();
        bench().open("a.png");
        QVERIFY(!bench().part<QTimer>("tColors")->isActive());
        QCOMPARE(bench().counts, 0);
        QCOMPARE(bench().part<QLineEdit>("tPath")->text(), QString());
        QCOMPARE(bench().textOf("tFileInfo"), QString());
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
        QTRY_VERIFY(bench().textOf("tImageInfo").endsWith(QLatin1String("77")));
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
        QCOMPARE(bench().textOf("tDes"), QStringLiteral("(none)"));
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
