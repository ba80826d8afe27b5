// What the mouse does to a description on a display that has drags and a clipboard of what is selected; run
// by a journey, in its display.
#include "viewer/PanelBench.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using test::PanelBench;

class TestDescriptionMouse : public QObject, private test::PanelStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void enteringByTheMiddleButtonPastesOverAll()
    {
        QClipboard* const clipboard = QGuiApplication::clipboard();
        QVERIFY(clipboard->supportsSelection());
        bench().open("a.png");
        clipboard->setText(QStringLiteral("my words"), QClipboard::Selection);
        QTest::mouseClick(bench().tDes()->viewport(), Qt::MiddleButton, {}, QPoint(20, 10));
        QCOMPARE(bench().tDes()->toPlainText(), QStringLiteral("my words"));
        QVERIFY(!bench().tDes()->textCursor().hasSelection());
    }

    /// The next image's words would be taken out for those that are dragged.
    void aDragEndsWhenAnotherImageComes()
    {
        QVERIFY(bench().store("a.png", QStringLiteral("some words of a description")));
        bench().open("a.png");
        QPlainTextEdit* const tDes = bench().tDes();
        tDes->setFocus();
        tDes->selectAll();
        bool dragging = true;
        bool ended = false;
        QTimer::singleShot(100, tDes, [&] {
            if (!dragging)
                return;
            bench().current = bench().image("b.png");
            bench().panel->showCurrent();
            ended = true;
        });
        QTimer stuck;
        connect(&stuck, &QTimer::timeout, tDes, [] { qFatal("the drag goes on"); });
        stuck.start(3000);
        QTest::mousePress(tDes->viewport(), Qt::LeftButton, {}, QPoint(20, 10));
        bench().drawTo(60);
        dragging = false;
        QVERIFY(ended); // while the drag ran
        QCOMPARE(tDes->toPlainText(), QStringLiteral("(none)"));
        QVERIFY(!bench().panel->isDescriptionUnsaved());
    }
};

QTEST_MAIN(TestDescriptionMouse)
#include "tst_descriptionmouse.moc"
