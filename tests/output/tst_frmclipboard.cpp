// The clipboard preview: what it shows of which clipboard, how it scrolls, and what is pasted.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "output/ClipboardLayout.h"
#include "output/frmClipboard.h"
#include "support/ScratchHome.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWheelEvent>

#include <memory>
#include <optional>

using namespace quorvia;
using controls::ScrollBar;
using output::frmClipboard;

namespace {

/// Left half red, right half blue.
QImage halves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < height; ++y) {
        for (int x = width / 2; x < width; ++x)
            image.setPixel(x, y, qRgb(0, 0, 255));
    }
    return image;
}

const QImage small = halves(40, 30);
const QImage large = halves(3000, 2000);

class Bench
{
  public:
    Bench() { app::openSettings(); }
    ~Bench() { app::closeSettings(); }
    Q_DISABLE_COPY_MOVE(Bench)

    frmClipboard& show()
    {
        window = std::make_unique<frmClipboard>(frmClipboard::Caller{.PasteImage =
                                                                         [this](const QImage& picture) {
                                                                             ++pastes;
                                                                             pasted = picture;
                                                                             captionThen =
                                                                                 button("cmdFinish")->text();
                                                                             visibleThen =
                                                                                 window->isVisible();
                                                                         }},
                                                platform::ClipboardReader{.text =
                                                                              [this] {
                                                                                  ++reads;
                                                                                  return text;
                                                                              },
                                                                          .image =
                                                                              [this] {
                                                                                  ++imageReads;
                                                                                  return image;
                                                                              }});
        window->show();
        const bool shown = QTest::qWaitForWindowExposed(window.get());
        Q_ASSERT(shown);
        Q_UNUSED(shown);
        return *window;
    }

    template <class Kind = QWidget>
    Kind* part(const char* name) const
    {
        return window->findChild<Kind*>(QLatin1String(name));
    }
    QPushButton* button(const char* name) const { return part<QPushButton>(name); }
    ScrollBar* bar(const char* name) const { return part<ScrollBar>(name); }
    QAction* item(const char* name) const { return part<QAction>(name); }
    QString title() const { return part<QLabel>("lblTitle")->text(); }
    /// The picture area as it looks.
    QImage area() const { return part("picBG")->grab().toImage(); }
    QColor seen(double across, double down) const
    {
        const QImage looks = area();
        return looks.pixelColor(int(looks.width() * across), int(looks.height() * down));
    }

    test::ScratchHome home;
    QString text;
    QImage image;
    int reads = 0;
    int imageReads = 0;
    int pastes = 0;
    std::optional<QImage> pasted;
    QString captionThen;
    bool visibleThen = false;
    std::unique_ptr<frmClipboard> window;
};

/// The toolkit brings what comes from the mouse to the window itself, past the parts that do not want it.
void turnWheel(QWidget* target, QPoint angle, Qt::KeyboardModifiers held = {})
{
    const QPointF middle = QRectF(target->rect()).center();
    QWheelEvent event(middle, target->mapToGlobal(middle), QPoint(), angle, Qt::NoButton, held,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(target, &event);
}

} // namespace

class TestFrmClipboard : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<Bench> m_bench;
    Bench& bench() { return *m_bench; }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<Bench>(); }
    void cleanup() { m_bench.reset(); }

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

    void fromAspectResizeToScrollBars()
    {
        bench().image = large;
        bench().show();
        bench().item("mnuScrollbars")->trigger();
        QVERIFY(bench().bar("sbH")->isVisible() && bench().bar("sbV")->isVisible());
        QVERIFY(bench().part("pClip")->isVisible());
        QCOMPARE(bench().seen(0.99, 0.5),
                 QColor(Qt::red)); // the copy is gone: only the left half is in sight
        QCOMPARE(bench().reads, 1);
        const QSize area = app::inTwips(bench().part("picBG")->size());
        const QSize clip = output::clipSize(large.size(), bench().window->devicePixelRatioF());
        QCOMPARE(bench().bar("sbH")->Max(), clip.width() - area.width() + 200);
        QCOMPARE(bench().bar("sbV")->Max(), clip.height() - area.height() + 200);
        bench().item("mnuScrollbars")->trigger();
        QVERIFY(!bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        QCOMPARE(bench().seen(0.99, 0.5), QColor(Qt::blue));
    }

    void barsMoveThePicture()
    {
        bench().image = large;
        bench().show();
        bench().item("mnuScrollbars")->trigger();
        bench().bar("sbH")->SetValue(1500);
        bench().bar("sbV")->SetValue(300);
        QCOMPARE(bench().part("pClip")->pos(), QPoint(-100, -20));
        bench().bar("sbH")->SetValue(bench().bar("sbH")->Max());
        QCOMPARE(bench().seen(0.5, 0.5), QColor(Qt::blue));
        bench().button("cmdFinish")->click();
        QCOMPARE(*bench().pasted, large);
    }

    void oneBarAlone()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = halves(3000, 40);
        bench().show();
        QVERIFY(bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        const QWidget* const area = bench().part("picBG");
        QCOMPARE(area->width(), area->parentWidget()->width());
        QCOMPARE(area->height() + bench().bar("sbH")->height(), area->parentWidget()->height());
    }

    void aWindowMadeLargerTakesItsBarsBack()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
        bench().image = halves(int(700 * ratio), int(500 * ratio));
        bench().show();
        QVERIFY(bench().bar("sbH")->isVisible());
        bench().bar("sbH")->SetValue(600);
        QCOMPARE(bench().part("pClip")->x(), -40);
        bench().window->resize(1000, 900);
        QVERIFY(!bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        QCOMPARE(bench().part("pClip")->pos(), QPoint(0, 0));
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

    void keysScroll_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QPoint>("direction");
        QTest::newRow("Right") << int(Qt::Key_Right) << QPoint(1, 0);
        QTest::newRow("Left") << int(Qt::Key_Left) << QPoint(-1, 0);
        QTest::newRow("Down") << int(Qt::Key_Down) << QPoint(0, 1);
        QTest::newRow("Up") << int(Qt::Key_Up) << QPoint(0, -1);
        QTest::newRow("Page Down") << int(Qt::Key_PageDown) << QPoint(0, 1);
        QTest::newRow("Page Up") << int(Qt::Key_PageUp) << QPoint(0, -1);
        QTest::newRow("Home") << int(Qt::Key_Home) << QPoint(0, -1);
        QTest::newRow("End") << int(Qt::Key_End) << QPoint(0, 1);
    }

    void keysScroll()
    {
        QFETCH(int, key);
        QFETCH(QPoint, direction);
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = large;
        frmClipboard& window = bench().show();
        bench().bar("sbH")->SetValue(3000);
        bench().bar("sbV")->SetValue(3000);
        QTest::keyClick(window.focusWidget(), Qt::Key(key));
        const auto sign = [](int number) { return (number > 0) - (number < 0); };
        QCOMPARE(sign(bench().bar("sbH")->Value() - 3000), direction.x());
        QCOMPARE(sign(bench().bar("sbV")->Value() - 3000), direction.y());
        QCOMPARE(window.focusWidget(), bench().button("cmdFinish"));
    }

    void withoutBarsArrowsWalkTheButtons()
    {
        frmClipboard& window = bench().show();
        QTest::keyClick(window.focusWidget(), Qt::Key_Left);
        QCOMPARE(window.focusWidget(), bench().button("lblCancel"));
    }

    void theWheelScrolls_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QPoint>("angle");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<bool>("across"); // else down
        QTest::newRow("down") << QSize(3000, 2000) << QPoint(0, -120) << false << false;
        QTest::newRow("with Shift") << QSize(3000, 2000) << QPoint(0, -120) << true << true;
        QTest::newRow("tilted") << QSize(3000, 2000) << QPoint(-120, 0) << false << true;
        QTest::newRow("only a lying bar") << QSize(3000, 20) << QPoint(0, -120) << false << true;
        QTest::newRow("only an upright bar") << QSize(20, 2000) << QPoint(0, -120) << true << false;
    }

    void theWheelScrolls()
    {
        QFETCH(QSize, picture);
        QFETCH(QPoint, angle);
        QFETCH(bool, shift);
        QFETCH(bool, across);
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = halves(picture.width(), picture.height());
        bench().show();
        turnWheel(bench().window.get(), angle, shift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(bench().bar("sbH")->Value() > 0, across);
        QCOMPARE(bench().bar("sbV")->Value() > 0, !across);
    }

    void theWheelWithCtrlIsNotTheBars()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = large;
        bench().show();
        turnWheel(bench().window.get(), QPoint(0, -120), Qt::ControlModifier);
        QCOMPARE(bench().bar("sbV")->Value(), 0);
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
