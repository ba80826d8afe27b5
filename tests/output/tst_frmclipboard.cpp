// The clipboard preview: what it shows of which clipboard, and what is pasted.
#include "app/Settings.h"
#include "app/Twips.h"
#include "ClipboardBench.h"
#include "controls/ScrollBar.h"
#include "output/ClipboardLayout.h"
#include "output/frmClipboard.h"
#include "support/BenchStage.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <optional>

using namespace quorvia;
using namespace quorvia::test;
using output::frmClipboard;

class TestFrmClipboard : public QObject, private BenchStage<ClipboardBench>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void texts()
    {
        bench().show();
        QCOMPARE(bench().button("lblRepaste")->text(), QStringLiteral("Re-paste from Clipboard"));
        QCOMPARE(bench().button("lblCancel")->text(), QStringLiteral("Cancel"));
        QCOMPARE(bench().button("cmdFinish")->text(), QStringLiteral("Paste Image >>"));
        QCOMPARE(bench().item("mnuAspectResize")->text(), QStringLiteral("&Aspect Resize"));
        QCOMPARE(bench().item("mnuScrollbars")->text(), QStringLiteral("&Scrollbars"));
        const auto* const menu = bench().window->findChild<QMenuBar*>();
        QCOMPARE(menu->actions().size(), 1);
        QCOMPARE(menu->actions().front()->text(), QStringLiteral("&View"));
        QVERIFY(!bench().part("pTextP")->isVisible());
        QVERIFY(!bench().part<QLabel>("cmdFinishi")->pixmap().isNull());
        QVERIFY(bench().window->isModal());
        for (const char* name :
             {"pToolbar", "lblRepaste", "lblCancel", "cmdFinish", "picBG", "pClip", "pTextP", "sbH", "sbV"})
            QVERIFY2(!bench().part(name)->accessibleName().isEmpty(), name);
    }

    void whatIsShown_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("isImage"); // that is pasted
        const QString asText = QStringLiteral("Clipboard Preview: Text");
        const QString asImage = QStringLiteral("Clipboard Preview: Image");
        QTest::newRow("text") << "hello" << QImage() << asText << false;
        QTest::newRow("image") << "" << small << asImage << true;
        QTest::newRow("both") << "hello" << small << asText << false;
        QTest::newRow("blanks and an image") << "   " << small << asImage << true;
        QTest::newRow("line ends and an image") << "\r\n" << small << asImage << true;
        QTest::newRow("blanks alone") << "   " << QImage() << asImage << true;
        QTest::newRow("nothing") << "" << QImage() << asImage << true;
    }

    void whatIsShown()
    {
        QFETCH(QString, text);
        QFETCH(QImage, image);
        QFETCH(bool, isImage);
        bench().text = text;
        bench().image = image;
        bench().show();
        QTEST(bench().title(), "title");
        bench().button("cmdFinish")->click();
        QCOMPARE(bench().pastes, 1);
        if (isImage)
            QCOMPARE(*bench().pasted, image);
        else
            QVERIFY(!bench().pasted->isNull() && *bench().pasted != image);
    }

    /// To ask for an image costs the other program the making of one.
    void textIsAskedForAlone()
    {
        bench().text = QStringLiteral("a");
        bench().show();
        QCOMPARE(bench().imageReads, 0);
    }

    void alphaIsKept()
    {
        QImage clear(20, 20, QImage::Format_ARGB32);
        clear.fill(qRgba(255, 0, 0, 100));
        bench().image = clear;
        bench().show();
        QCOMPARE(bench().seen(0, 0), QColor(255, 155, 155)); // on white
        bench().button("cmdFinish")->click();
        QCOMPARE(*bench().pasted, clear);
    }

    void anImageOfAnotherRatioIsPastedPixelForPixel()
    {
        QImage scaled = small;
        scaled.setDevicePixelRatio(2);
        bench().image = scaled;
        bench().show();
        bench().button("cmdFinish")->click();
        QCOMPARE(bench().pasted->devicePixelRatio(), 1.0);
        QCOMPARE(bench().pasted->size(), small.size());
    }

    void anImageBeyondTheLimitsIsNone()
    {
        bench().image = QImage(70000, 1, QImage::Format_Mono);
        bench().show();
        bench().button("cmdFinish")->click();
        QVERIFY(bench().pasted->isNull());
    }

    void theSettingDecides_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("aspect");
        QTest::newRow("none") << "" << true;
        QTest::newRow("True") << "True" << true;
        QTest::newRow("true") << "true" << true;
        QTest::newRow("False") << "False" << false;
        QTest::newRow("anything") << "1" << false;
    }

    void theSettingDecides()
    {
        QFETCH(QString, stored);
        QFETCH(bool, aspect);
        app::save(app::setting::ClipboardView, stored);
        bench().show();
        QCOMPARE(bench().item("mnuAspectResize")->isChecked(), aspect);
        QCOMPARE(bench().item("mnuScrollbars")->isChecked(), !aspect);
    }

    void eitherItemChangesTheMode()
    {
        bench().show();
        for (const char* name : {"mnuAspectResize", "mnuAspectResize", "mnuScrollbars", "mnuScrollbars"}) {
            const bool before = bench().item("mnuAspectResize")->isChecked();
            bench().item(name)->trigger();
            QCOMPARE(bench().item("mnuAspectResize")->isChecked(), !before);
            QCOMPARE(bench().item("mnuScrollbars")->isChecked(), before);
            QCOMPARE(app::read(app::setting::ClipboardView), QString::fromLatin1(before ? "False" : "True"));
        }
    }

    void aLargeImageIsStretched()
    {
        bench().image = large;
        bench().show();
        bench().window->resize(700, 400);
        QVERIFY(!bench().part("pClip")->isVisible());
        QVERIFY(!bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        QCOMPARE(bench().seen(0.01, 0.01), QColor(Qt::red));
        QCOMPARE(bench().seen(0.45, 0.99), QColor(Qt::red));
        QCOMPARE(bench().seen(0.55, 0.01), QColor(Qt::blue));
        QCOMPARE(bench().seen(0.99, 0.99), QColor(Qt::blue));
        bench().button("cmdFinish")->click();
        QCOMPARE(*bench().pasted, large);
    }

    void aSmallImageIsNot()
    {
        bench().image = small;
        bench().show();
        QVERIFY(bench().part("pClip")->isVisible());
        QCOMPARE(bench().part("pClip")->pos(), QPoint(0, 0));
        const QImage area = bench().area();
        QCOMPARE(area.pixelColor(19, 29), QColor(Qt::red));
        QCOMPARE(area.pixelColor(39, 29), QColor(Qt::blue));
        QVERIFY(area.pixelColor(40, 29) != QColor(Qt::blue));
        QVERIFY(area.pixelColor(39, 30) != QColor(Qt::blue));
    }

    void theStretchedOneFollowsTheWindow()
    {
        bench().image = large;
        bench().show();
        bench().window->resize(500, 600);
        bench().area();
        bench().window->resize(800, 300);
        const QImage area = bench().area();
        QCOMPARE(area.pixelColor(area.width() * 9 / 20, area.height() - 1), QColor(Qt::red));
        QCOMPARE(area.pixelColor(area.width() - 1, area.height() - 1), QColor(Qt::blue));
    }

    void pasteIsTheEnd()
    {
        bench().image = small;
        frmClipboard& window = bench().show();
        QTest::keyClick(&window, Qt::Key_Return);
        QCOMPARE(bench().pastes, 1);
        QCOMPARE(bench().captionThen, QStringLiteral("Okay"));
        QVERIFY(bench().visibleThen);
        QVERIFY(!window.isVisible());
        QVERIFY(!bench().part("pClip")->property("tag").isValid());
    }

    void cancelPastesNothing_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("the label") << 0;
        QTest::newRow("Esc") << 1;
        QTest::newRow("the close box") << 2;
    }

    void cancelPastesNothing()
    {
        QFETCH(int, way);
        bench().image = small;
        frmClipboard& window = bench().show();
        if (way == 0)
            QTest::mouseClick(bench().button("lblCancel"), Qt::LeftButton);
        else if (way == 1)
            QTest::keyClick(&window, Qt::Key_Escape);
        else
            QVERIFY(window.close());
        QVERIFY(!window.isVisible());
        QCOMPARE(bench().pastes, 0);
        QCOMPARE(bench().part("pClip")->property("tag").toString(), QStringLiteral("Cancel"));
    }

    void repasteReadsAnew()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = large;
        bench().show();
        bench().bar("sbH")->SetValue(1500);
        bench().text = QStringLiteral("now a text");
        QTest::mouseClick(bench().button("lblRepaste"), Qt::LeftButton);
        QCOMPARE(bench().title(), QStringLiteral("Clipboard Preview: Text"));
        QCOMPARE(bench().part("pClip")->pos(), QPoint(0, 0));
        bench().text.clear();
        bench().image = {};
        QTest::mouseClick(bench().button("lblRepaste"), Qt::LeftButton);
        QCOMPARE(bench().title(), QStringLiteral("Clipboard Preview: Image"));
        QVERIFY(!bench().part("pClip")->isVisible());
        bench().button("cmdFinish")->click();
        QVERIFY(bench().pasted->isNull());
    }

    void tabGoesRound()
    {
        frmClipboard& window = bench().show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(window.focusWidget(), bench().button("cmdFinish"));
        for (const char* next : {"lblRepaste", "lblCancel", "cmdFinish"}) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            QCOMPARE(window.focusWidget(), bench().button(next));
        }
    }

    void aSecondPressWhilePastingDoesNothing()
    {
        bench().image = small;
        int pastes = 0;
        frmClipboard window({.PasteImage =
                                 [&](const QImage&) {
                                     ++pastes;
                                     window.findChild<QPushButton*>(QStringLiteral("cmdFinish"))->click();
                                     window.close();
                                 }},
                            {.text = [] { return QStringLiteral("a"); }, .image = [] { return QImage(); }});
        window.show();
        window.findChild<QPushButton*>(QStringLiteral("cmdFinish"))->click();
        QCOMPARE(pastes, 1);
        QVERIFY(!window.isVisible());
    }

    void textIsPastedAsItShows()
    {
        bench().text = QStringLiteral("MMMM\nMMMM");
        bench().show();
        const QSize shown = bench().part("pClip")->size();
        bench().button("cmdFinish")->click();
        const QSize twips = output::clipSize(bench().pasted->size(), bench().window->devicePixelRatioF());
        QCOMPARE(shown, app::toPixels(QRect(QPoint(), twips)).size());
    }

    /// The real clipboard, and the way that the main window takes.
    void theDesktopsClipboard_data()
    {
        QTest::addColumn<int>("content");
        QTest::addColumn<bool>("isNull");
        QTest::newRow("empty") << 0 << true;
        QTest::newRow("image") << 1 << false;
        QTest::newRow("text") << 2 << false;
        QTest::newRow("a file") << 3 << false;
    }

    void theDesktopsClipboard()
    {
        QFETCH(int, content);
        QClipboard* const clipboard = QGuiApplication::clipboard();
        clipboard->clear();
        if (content == 1)
            clipboard->setImage(small);
        else if (content == 2)
            clipboard->setText(QStringLiteral("text"));
        else if (content == 3) {
            auto* const data = new QMimeData;
            data->setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"))});
            data->setText(QStringLiteral("/tmp/a.png"));
            clipboard->setMimeData(data);
        }
        std::optional<QImage> pasted;
        QString title;
        QTimer::singleShot(0, this, [&] {
            auto* const window = qobject_cast<frmClipboard*>(QApplication::activeModalWidget());
            QVERIFY(window);
            title = window->findChild<QLabel*>(QStringLiteral("lblTitle"))->text();
            window->findChild<QPushButton*>(QStringLiteral("cmdFinish"))->click();
        });
        frmClipboard::ShowClipboard({.PasteImage = [&](const QImage& image) { pasted = image; }});
        QVERIFY(pasted);
        QTEST(pasted->isNull(), "isNull");
        QCOMPARE(title.endsWith(QLatin1String("Text")), content >= 2);
        if (content == 1)
            QCOMPARE(pasted->convertToFormat(QImage::Format_RGB32), small);
        clipboard->clear();
    }

    void aCallerThatGoesTakesTheWindowAlong()
    {
        auto* const caller = new QWidget;
        QTimer::singleShot(0, this, [caller] { delete caller; });
        int pastes = 0;
        frmClipboard::ShowClipboard({.window = caller, .PasteImage = [&](const QImage&) { ++pastes; }});
        QCOMPARE(pastes, 0);
    }
};

QTEST_MAIN(TestFrmClipboard)
#include "tst_frmclipboard.moc"
