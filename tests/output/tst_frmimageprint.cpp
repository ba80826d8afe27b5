// The print window, driven as a user does.
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "support/FakePrinter.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <memory>
#include <optional>

using namespace quorvia;
using controls::ScrollBar;
using output::frmImagePrint;
using platform::PageOrientation;
namespace setting = app::setting;

namespace {

constexpr QRgb red = 0xffff0000;
constexpr QRgb white = 0xffffffff;

QImage redPicture()
{
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

/// The window for a picture of 400 x 300 pixels of the screen.
class Bench
{
  public:
    explicit Bench(QWidget* owner = nullptr)
        : window(new frmImagePrint(printer, {redPicture(), {6000, 4500}, QStringLiteral("/home/a/dune.jpg")},
                                   owner)),
          alive(window)
    {
    }
    ~Bench() { delete alive.data(); }
    Q_DISABLE_COPY_MOVE(Bench)

    template <class Kind = QWidget>
    Kind& part(const char* name) const
    {
        auto* const found = window->findChild<Kind*>(QLatin1String(name));
        Q_ASSERT(found);
        return *found;
    }
    QLineEdit& box(const char* name) const { return part<QLineEdit>(name); }
    ScrollBar& bar(const char* name) const { return part<ScrollBar>(name); }
    QRadioButton& area(int line) const
    {
        return part<QRadioButton>(qPrintable(QStringLiteral("oA%1").arg(line)));
    }
    QPushButton& button(const char* name) const { return part<QPushButton>(name); }
    /// What the boxes hold, their numbers as on a screen of 15 twips a pixel.
    QString boxes() const
    {
        QStringList texts;
        for (const char* name : {"txtLeft", "txtTop", "txtWidth", "txtHeight"}) {
            bool isNumber = false;
            const double number = box(name).text().toDouble(&isNumber) / window->devicePixelRatioF();
            texts << (isNumber ? QString::number(number) : box(name).text());
        }
        return texts.join(u' ');
    }
    /// What the window says of a page of `width` x `height` twips.
    QString pageSaid(int width, int height) const
    {
        const double pixels = window->devicePixelRatioF() / app::twipsPerPixel;
        return QStringLiteral("Page Dimensions: %1x%2")
            .arg(qRound(width * pixels))
            .arg(qRound(height * pixels));
    }
    quint64 composed() const { return window->page().number(); }
    QString device() const { return part<QLabel>("lPrinter").text(); }
    /// Moves the mouse over the preview with the button down, in twips of it.
    void drag(QPoint from, QPoint to) const
    {
        QWidget& preview = part("pPreview");
        QTest::mousePress(&preview, Qt::LeftButton, {}, from / app::twipsPerPixel);
        QTest::mouseMove(&preview, to / app::twipsPerPixel);
        QTest::mouseRelease(&preview, Qt::LeftButton, {}, to / app::twipsPerPixel);
    }

    /// Shows the window, lets `act` use it and closes it. True when it was shown.
    bool show(const std::function<void()>& act) const
    {
        test::NextDialog<frmImagePrint> next([&](frmImagePrint& shown) {
            shown.activateWindow();
            if (QTest::qWaitForWindowActive(&shown))
                act();
            if (frmImagePrint* const open = alive.data(); open && open->isVisible())
                open->reject();
        });
        window->ShowX();
        return next.seen();
    }

    std::shared_ptr<test::FakePrinter> printer = std::make_shared<test::FakePrinter>();
    frmImagePrint* window;
    QPointer<frmImagePrint> alive; ///< null once the owner has taken it along
};

QString logText()
{
    QFile file(app::logPath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Types into `box` as a user who has selected all of it.
void type(QLineEdit& box, const QString& text)
{
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, text);
}

} // namespace

class TestFrmImagePrint : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void whatItShowsFirst()
    {
        const Bench bench;
        QStringList texts;
        QVERIFY(bench.show([&] {
            texts << bench.window->windowTitle() << bench.boxes()
                  << bench.part<QComboBox>("cboTitle").currentText()
                  << bench.part<QComboBox>("cboZoom").currentText() << bench.part<QLabel>("lPage").text()
                  << bench.device();
            for (int line = 0; line < 6; ++line)
                texts << bench.area(line).text();
            for (const char* name : {"lAccept", "lClose", "lFont", "lSelectPrinter", "FXButton"})
                texts << bench.button(name).text();
            for (const QAction* item : bench.part<QMenu>("FXFeatures").actions())
                texts << item->text();
        }));
        QCOMPARE(texts, (QStringList{"Print Image",
                                     "0 0 400 300",
                                     "Center",
                                     "50%",
                                     bench.pageSaid(10806, 15738),
                                     "  Office   Copies: 1",
                                     "Center Image and Resize",
                                     "Align Top-Center and Resize",
                                     "Align Top-Left and Resize",
                                     "Align Top-Left (Without Rezize)",
                                     "Custom Alignment",
                                     "Center Image (Without Resize)",
                                     "Print",
                                     "Close",
                                     "Font...",
                                     "Copies...",
                                     "FX Features >",
                                     "Shadow",
                                     "Light Frame",
                                     "Normal Frame",
                                     "Circle Corners",
                                     "Square Corners",
                                     "Tile Image",
                                     "Image Trail"}));
        QVERIFY(bench.printer->jobs.empty());
    }

    void everyControlHasANameThatCanBeSaid()
    {
        const Bench bench;
        QStringList silent;
        QVERIFY(bench.show([&] {
            for (const QWidget* part : bench.window->findChildren<QWidget*>()) {
                const bool isOwn = !part->objectName().isEmpty() && !part->objectName().startsWith("qt_");
                const bool isInside = qobject_cast<const ScrollBar*>(part->parentWidget()) ||
                                      part->parentWidget()->objectName() == "pScroll";
                const bool isOfTheToolkit = qobject_cast<QComboBox*>(part->parentWidget());
                if (isOwn && !isInside && !isOfTheToolkit && part->accessibleName().isEmpty())
                    silent << part->objectName();
            }
        }));
        QCOMPARE(silent, QStringList());
    }

    void oneCompositionAtTheStart()
    {
        const Bench bench;
        QCOMPARE(bench.composed(), quint64(0));
        quint64 composed = 0;
        QVERIFY(bench.show([&] { composed = bench.composed(); }));
        QCOMPARE(composed, quint64(1));
    }

    void everyControlComposes_data()
    {
        using Act = std::function<void(const Bench&)>;
        QTest::addColumn<Act>("act");
        QTest::addColumn<int>("compositions");
        const auto row = [](const char* name, const Act& act, int compositions = 1) {
            QTest::newRow(name) << act << compositions;
        };
        row("title's place", [](const Bench& b) { b.part<QComboBox>("cboTitle").setCurrentIndex(2); });
        row("file name", [](const Bench& b) { b.part<QCheckBox>("chkFilename").click(); });
        row("path", [](const Bench& b) { b.part<QCheckBox>("chkPath").click(); });
        row("landscape", [](const Bench& b) { b.part<QRadioButton>("oLayout1").click(); });
        row(
            "landscape and back",
            [](const Bench& b) {
                b.part<QRadioButton>("oLayout1").click();
                b.part<QRadioButton>("oLayout0").click();
            },
            2);
        for (int line = 1; line < 6; ++line) {
            const QByteArray name = "area " + QByteArray::number(line);
            row(name.constData(), [line](const Bench& b) { b.area(line).click(); });
        }
        row(
            "the same area", [](const Bench& b) { b.area(0).click(); }, 0);
        for (const char* name :
             {"mnuShadow", "mnuLFrame", "mnuFrame", "mnuCircle", "mnuSquare", "mnuTile", "mnuTrail"})
            row(name, [name](const Bench& b) { b.part<QAction>(name).trigger(); });
        row(
            "zoom", [](const Bench& b) { b.part<QComboBox>("cboZoom").setCurrentIndex(0); }, 0);
        row(
            "a box that is not used", [](const Bench& b) { b.box("txtLeft").setText("20"); }, 0);
        row(
            "no change", [](const Bench& b) { b.window->UpdatePage(); }, 0);
        const auto custom = [](const char* name, const char* text) {
            return [name, text](const Bench& b) {
                b.area(4).click();
                b.box(name).setText(QLatin1String(text));
            };
        };
        row("left", custom("txtLeft", "20"), 2);
        row("top", custom("txtTop", "20"), 2);
        row("width", custom("txtWidth", "20"), 2);
        row("height", custom("txtHeight", "20"), 2);
        row("letters", custom("txtWidth", "abc"), 2); // 0: nothing is painted
        row("too low", custom("txtTop", "-1000"), 1);
        row("an emptied box", custom("txtWidth", ""), 1);
        row(
            "closing and opening the window", [](const Bench& b) { b.window->resize(1000, 700); }, 0);
    }
    void everyControlComposes()
    {
        QFETCH(std::function<void(const Bench&)>, act);
        const Bench bench;
        int compositions = -1;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            act(bench);
            compositions = int(bench.composed() - before);
        }));
        QTEST(compositions, "compositions");
    }

    void lettersInABoxPaintNothing()
    {
        const Bench bench;
        QRgb usual = 0;
        QRgb lettered = 0;
        QString boxes;
        QVERIFY(bench.show([&] {
            bench.area(4).click();
            usual = bench.window->page().page().pixel(20, 20);
            type(bench.box("txtWidth"), "abc");
            lettered = bench.window->page().page().pixel(20, 20);
            bench.box("txtHeight").clear();
            bench.area(0).click();
            boxes = bench.boxes();
        }));
        QCOMPARE(usual, red);
        QCOMPARE(lettered, white);
        QCOMPARE(boxes, QStringLiteral("0 0 abc 300")); // the emptied one is filled at the next composition
    }

    void aTitleWaitsForTheTimer()
    {
        const Bench bench;
        quint64 before = 0;
        quint64 typed = 0;
        bool composedOnce = false;
        QVERIFY(bench.show([&] {
            before = bench.composed();
            type(bench.box("txtTitle"), "Dune");
            typed = bench.composed();
            composedOnce = QTest::qWaitFor([&] { return bench.composed() == before + 1; }, 3000) &&
                           !bench.part<QTimer>("tUpdate").isActive();
        }));
        QCOMPARE(typed, before);
        QVERIFY(composedOnce);
        QCOMPARE(bench.part<QTimer>("tUpdate").interval(), 500);
    }

    void captions()
    {
        const Bench bench;
        QStringList captions;
        QVERIFY(bench.show([&] {
            bench.part<QCheckBox>("chkPath").click();
            captions << bench.window->windowTitle();
            bench.part<QCheckBox>("chkPath").click();
            captions << bench.window->windowTitle();
        }));
        QCOMPARE(captions, (QStringList{"Print Image: dune.jpg", "Print Image: dune.jpg"}));
    }

    void orientations()
    {
        const Bench bench;
        QStringList seen;
        QVERIFY(bench.show([&] {
            const auto see = [&] {
                const QSize page = bench.window->page().page().size();
                const QSize preview = bench.part("pPreview").size();
                seen << QStringLiteral("%1 %2 %3")
                            .arg(int(bench.printer->turned))
                            .arg(page.width() > page.height())
                            .arg(preview.width() > preview.height());
            };
            see();
            bench.part<QRadioButton>("oLayout1").click();
            see();
            seen << bench.part<QLabel>("lPage").text();
            bench.part<QRadioButton>("oLayout0").click();
            see();
        }));
        QCOMPARE(seen, (QStringList{"1 0 0", "2 1 1", bench.pageSaid(15738, 10806), "1 0 0"}));
    }

    // --- settings

    void settingsAreReadAndWritten_data()
    {
        QTest::addColumn<std::function<void(const Bench&)>>("close");
        using Act = std::function<void(const Bench&)>;
        QTest::newRow("button") << Act([](const Bench& b) { b.button("lClose").click(); });
        QTest::newRow("escape") << Act([](const Bench& b) { QTest::keyClick(b.window, Qt::Key_Escape); });
        QTest::newRow("window") << Act([](const Bench& b) { b.window->close(); });
        QTest::newRow("print") << Act([](const Bench& b) { b.button("lAccept").click(); });
    }
    void settingsAreReadAndWritten()
    {
        QFETCH(std::function<void(const Bench&)>, close);
        app::save(setting::PrintFontName, QStringLiteral("DejaVu Serif"));
        app::save(setting::PrintFontSize, QStringLiteral("20"));
        for (const app::OpenNumberKey& style : {setting::PrintFontBold, setting::PrintFontItalic,
                                                setting::PrintFontStrike, setting::PrintFontUnderline})
            app::save(style, 1);
        app::save(setting::PrintFontColor, 0x0000ff);
        app::save(setting::PrintLayout, 1);
        app::save(setting::PrintArea, 5);
        app::save(setting::PrintTitleA, 2);
        app::save(setting::PrintZoom, 1);
        app::save(setting::PrintFilename, 1);
        app::save(setting::PrintPath, 1);
        const Bench bench;
        QCOMPARE(bench.printer->turned, PageOrientation::Landscape);
        QStringList shown;
        QVERIFY(bench.show([&] {
            shown << bench.part<QComboBox>("cboTitle").currentText()
                  << bench.part<QComboBox>("cboZoom").currentText();
            if (bench.part<QRadioButton>("oLayout1").isChecked() && bench.area(5).isChecked() &&
                bench.part<QCheckBox>("chkFilename").isChecked() &&
                bench.part<QCheckBox>("chkPath").isChecked())
                shown << "all";
            bench.part<QRadioButton>("oLayout0").click();
            bench.area(2).click();
            bench.part<QComboBox>("cboTitle").setCurrentIndex(0);
            bench.part<QComboBox>("cboZoom").setCurrentIndex(4);
            bench.part<QCheckBox>("chkFilename").click();
            bench.part<QCheckBox>("chkPath").click();
            close(bench);
        }));
        QCOMPARE(shown, (QStringList{"Right", "25%", "all"}));
        QVERIFY(!bench.window->isVisible());
        QCOMPARE(app::read(setting::PrintFontName, QString()), QStringLiteral("DejaVu Serif"));
        QCOMPARE(app::read(setting::PrintFontSize, QString()), QStringLiteral("20"));
        for (const app::OpenNumberKey& style : {setting::PrintFontBold, setting::PrintFontItalic,
                                                setting::PrintFontStrike, setting::PrintFontUnderline})
            QCOMPARE(app::read(style, 0), 1);
        QCOMPARE(app::read(setting::PrintFontColor, 0), 0x0000ff);
        QCOMPARE(app::read(setting::PrintLayout), 0);
        QCOMPARE(app::read(setting::PrintArea), 2);
        QCOMPARE(app::read(setting::PrintTitleA), 0);
        QCOMPARE(app::read(setting::PrintZoom), 4);
        QCOMPARE(app::read(setting::PrintFilename), 0);
        QCOMPARE(app::read(setting::PrintPath), 0);
    }

    void anOwnerThatGoesTakesTheWindowAlong()
    {
        auto* const owner = new QWidget;
        const Bench bench(owner);
        QVERIFY(bench.show([&] {
            bench.area(3).click();
            delete owner;
        }));
        QVERIFY(bench.alive.isNull());
        QCOMPARE(app::read(setting::PrintArea), 3);
    }

    // --- the preview

    void drags_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("down right") << QPoint(600, 900) << QPoint(1800, 1500);
        QTest::newRow("up left") << QPoint(1800, 1500) << QPoint(600, 900);
        QTest::newRow("down left") << QPoint(1800, 900) << QPoint(600, 1500);
        QTest::newRow("up right") << QPoint(600, 1500) << QPoint(1800, 900);
    }
    void drags()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        const Bench bench;
        QString boxes;
        quint64 compositions = 0;
        QRgb inside = 0;
        QRgb outside = 0;
        bool isCustom = false;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            bench.drag(from, to);
            compositions = bench.composed() - before;
            boxes = bench.boxes();
            isCustom = bench.area(4).isChecked();
            const QImage& page = bench.window->page().page(); // 20 twips a pixel, at half the size
            inside = page.pixel(61, 91);
            outside = page.pixel(59, 91);
        }));
        QCOMPARE(boxes, QStringLiteral("80 120 160 80"));
        QCOMPARE(compositions, quint64(1));
        QVERIFY(isCustom);
        QCOMPARE(inside, red);
        QCOMPARE(outside, white);
    }

    void aSecondDragComposesOnceToo()
    {
        const Bench bench;
        quint64 compositions = 0;
        QVERIFY(bench.show([&] {
            bench.drag({600, 900}, {1800, 1500});
            const quint64 before = bench.composed();
            bench.drag({900, 600}, {2400, 2400});
            compositions = bench.composed() - before;
        }));
        QCOMPARE(compositions, quint64(1));
        QCOMPARE(bench.boxes(), QStringLiteral("120 80 200 240"));
    }

    void theFrameFollowsTheMouse()
    {
        const Bench bench;
        QStringList seen;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            QWidget& frame = bench.part("sDraw");
            const auto see = [&] {
                const QRect at = frame.geometry();
                seen << (frame.isVisible() ? QStringLiteral("%1 %2 %3 %4")
                                                 .arg(at.x())
                                                 .arg(at.y())
                                                 .arg(at.width())
                                                 .arg(at.height())
                                           : QStringLiteral("-"));
            };
            see();
            QTest::mousePress(&preview, Qt::LeftButton, {}, {40, 60});
            see();
            QTest::mouseMove(&preview, {20, 80});
            see();
            seen << (frame.grab().toImage().pixel(0, 0) == red ? "red" : "another colour");
            QTest::mouseRelease(&preview, Qt::LeftButton, {}, {20, 80});
            see();
        }));
        QCOMPARE(seen, (QStringList{"-", "40 60 1 1", "20 60 20 20", "red", "-"}));
    }

    void aDragBeyondThePage()
    {
        const Bench bench;
        QString boxes;
        QVERIFY(bench.show([&] { bench.drag({600, 900}, {-900, 1500}); }));
        boxes = bench.boxes();
        QCOMPARE(boxes, QStringLiteral("-120 120 200 80"));
    }

    void clicks_data()
    {
        QTest::addColumn<QPoint>("to");
        QTest::newRow("click") << QPoint(600, 900);
        QTest::newRow("thin drag") << QPoint(735, 1500);
    }
    void clicks()
    {
        QFETCH(QPoint, to);
        const Bench bench;
        QString boxes;
        QVERIFY(bench.show([&] { bench.drag({600, 900}, to); }));
        boxes = bench.boxes();
        QCOMPARE(boxes, QStringLiteral("80 120 400 300"));
        QVERIFY(bench.area(4).isChecked());
    }

    void thePreviewShowsThePage()
    {
        const Bench bench;
        QRgb middle = 0;
        QRgb corner = 0;
        QSize size;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            size = preview.size();
            const QImage looks = preview.grab().toImage();
            middle = looks.pixel(looks.width() / 2, looks.height() / 2);
            corner = looks.pixel(2, 2);
        }));
        QCOMPARE(size, QSize(361, 525)); // 10806 x 15738 twips, halved
        QCOMPARE(middle, red);
        QCOMPARE(corner, white);
    }

    void bars()
    {
        const Bench bench;
        QStringList seen;
        int left = 0;
        int top = 0;
        QPoint scrolled;
        QVERIFY(bench.show([&] {
            const auto see = [&] {
                seen << QStringLiteral("%1%2%3")
                            .arg(bench.bar("sWidth").isVisible())
                            .arg(bench.bar("sHeight").isVisible())
                            .arg(bench.part("pHold").isVisible());
            };
            bench.window->resize(900, 640); // whatever the screen
            see();
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6); // 300%
            see();
            QVERIFY2(bench.bar("sHeight").Vertical(), "upright");
            QVERIFY2(bench.bar("sHeight").Value() == 2, "starts at 2");
            // 32418 twips in the frame: its maximum is below 275.
            const int width = app::toTwips(bench.part("pBox").width());
            QCOMPARE(bench.bar("sWidth").Max(), qRound((32418 - width + 1100) / 100.0));
            QCOMPARE(bench.bar("sWidth").Value(), std::min(275, bench.bar("sWidth").Max()));
            bench.bar("sWidth").SetValue(20);
            bench.bar("sHeight").SetValue(30);
            left = bench.part("pPreview").x();
            top = bench.part("pPreview").y();
            bench.window->resize(bench.window->width() + 60, bench.window->height() + 60);
            scrolled = bench.part("pPreview").pos();
            bench.part<QComboBox>("cboZoom").setCurrentIndex(0);
            see();
        }));
        QCOMPARE(seen, (QStringList{"000", "111", "000"}));
        QCOMPARE(left, -97); // 550 - 2000 twips, towards the left
        QCOMPARE(top, -164);
        QCOMPARE(scrolled, QPoint(left, top));
    }

    void wheels_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("moves"); // signs
        QTest::newRow("down") << Qt::KeyboardModifiers() << QPoint(0, -1);
        QTest::newRow("sideways") << Qt::KeyboardModifiers(Qt::ShiftModifier) << QPoint(-1, 0);
        QTest::newRow("not at all") << Qt::KeyboardModifiers(Qt::ControlModifier) << QPoint(0, 0);
    }
    void wheels()
    {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        const Bench bench;
        QPoint moved;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            bench.bar("sWidth").SetValue(10);
            QWidget& preview = bench.part("pPreview");
            const QPoint before = preview.pos();
            QWidget& frame = bench.part("pBox"); // where the toolkit brings it past the preview
            const QPointF at(100, 100);
            QWheelEvent turn(at, frame.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, modifiers,
                             Qt::NoScrollPhase, false);
            QApplication::sendEvent(&frame, &turn);
            const QPoint way = preview.pos() - before;
            moved = {way.x() < 0 ? -1 : way.x() > 0, way.y() < 0 ? -1 : way.y() > 0};
        }));
        QTEST(moved, "moves");
    }

    void keysScroll()
    {
        const Bench bench;
        int moved = 0;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            QWidget& frame = bench.part("pBox");
            frame.setFocus();
            const int before = bench.part("pPreview").y();
            QTest::keyClick(&frame, Qt::Key_Down);
            moved = bench.part("pPreview").y() - before;
        }));
        QVERIFY(moved < 0);
    }

    void otherKeysGoOnToTheWindow_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("held");
        QTest::addColumn<bool>("closes");
        QTest::newRow("escape") << int(Qt::Key_Escape) << Qt::KeyboardModifiers() << true;
        QTest::newRow("letter") << int(Qt::Key_A) << Qt::KeyboardModifiers() << false;
        QTest::newRow("function key") << int(Qt::Key_F1) << Qt::KeyboardModifiers() << false;
        QTest::newRow("modifier") << int(Qt::Key_Control) << Qt::KeyboardModifiers() << false;
        QTest::newRow("Ctrl+P") << int(Qt::Key_P) << Qt::KeyboardModifiers(Qt::ControlModifier) << false;
        QTest::newRow("Enter") << int(Qt::Key_Return) << Qt::KeyboardModifiers() << false;
        QTest::newRow("Space") << int(Qt::Key_Space) << Qt::KeyboardModifiers() << false;
        QTest::newRow("an arrow with Ctrl")
            << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::ControlModifier) << false;
    }

    /// The bars show, the frame has the focus, and neither wants the key.
    void otherKeysGoOnToTheWindow()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, held);
        QFETCH(bool, closes);
        const Bench bench;
        bool isOpen = true;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            bench.part("pBox").setFocus();
            QTest::keyClick(&bench.part("pBox"), Qt::Key(key), held);
            isOpen = bench.window->isVisible();
        }));
        QCOMPARE(isOpen, !closes);
        QVERIFY(bench.printer->jobs.empty());
    }

    void escapeGivesUpARectangle()
    {
        const Bench bench;
        bool open = false;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            QTest::mousePress(&preview, Qt::LeftButton, {}, QPoint(50, 50));
            QTest::mouseMove(&preview, QPoint(150, 150));
            QTest::keyClick(bench.window, Qt::Key_Escape);
            open = bench.window->isVisible();
            QTest::mouseRelease(&preview, Qt::LeftButton, {}, QPoint(150, 150));
        }));
        QVERIFY(open);
        QCOMPARE(bench.boxes(), QStringLiteral("0 0 400 300"));
        QVERIFY(bench.area(0).isChecked());
    }

    void fitsOnTheScreen()
    {
        const Bench bench;
        QVERIFY(bench.show([&] {}));
        const QSize room = bench.window->screen()->availableSize();
        const QSize least = bench.window->minimumSize();
        QVERIFY(bench.window->width() < std::max(room.width(), least.width() + 1));
        QVERIFY(bench.window->height() < std::max(room.height(), least.height() + 1));
    }

    // --- dialogs

    void copies_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("copies");
        QTest::addColumn<bool>("logs");
        QTest::newRow("empty") << "" << 2 << false;
        QTest::newRow("three") << "3" << 3 << false;
        QTest::newRow("none") << "0" << 2 << false;
        QTest::newRow("below") << "-2" << 2 << false;
        QTest::newRow("letters") << "abc" << 2 << true;
        QTest::newRow("too many") << "99999999999" << 2 << false;
    }
    void copies()
    {
        QFETCH(QString, typed);
        QFETCH(int, copies);
        Bench bench;
        bench.printer->count = 2;
        platform::TextQuestion asked;
        const platform::TextQuestionAnswerer answerer([&](const platform::TextQuestion& question) {
            asked = question;
            return typed;
        });
        QString said;
        QVERIFY(bench.show([&] {
            bench.button("lSelectPrinter").click();
            said = bench.device();
        }));
        QCOMPARE(asked.title, QStringLiteral("Printer Copies"));
        QCOMPARE(asked.text, QStringLiteral("Enter number of copies:"));
        QCOMPARE(asked.answer, QStringLiteral("2"));
        QCOMPARE(bench.printer->count, copies);
        // It was made while there was one copy, and an empty answer leaves everything.
        QCOMPARE(said, QStringLiteral("  Office   Copies: %1").arg(typed.isEmpty() ? 1 : copies));
        QTEST(logText().contains("Not a number of copies: abc"), "logs");
    }

    void fonts_data()
    {
        QTest::addColumn<bool>("accepts");
        QTest::newRow("accepted") << true;
        QTest::newRow("cancelled") << false;
    }
    void fonts()
    {
        QFETCH(bool, accepts);
        const Bench bench;
        platform::FontQuestion asked;
        const platform::FontAnswerer answerer([&](const platform::FontQuestion& question) {
            asked = question;
            QFont font(QStringLiteral("DejaVu Serif"), 30, QFont::Bold, true);
            font.setUnderline(true);
            return accepts ? std::optional<platform::ColoredFont>({font, Qt::blue}) : std::nullopt;
        });
        quint64 compositions = 0;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            bench.button("lFont").click();
            compositions = bench.composed() - before;
        }));
        QCOMPARE(asked.start.font.pointSize(), 12);
        QCOMPARE(compositions, quint64(accepts ? 1 : 0));
        QCOMPARE(app::read(setting::PrintFontName, QString()), accepts ? "DejaVu Serif" : "Verdana");
        QCOMPARE(app::read(setting::PrintFontSize, QString()), QString::number(accepts ? 30 : 12));
        QCOMPARE(app::read(setting::PrintFontBold, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontItalic, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontUnderline, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontStrike, 9), 0);
        QCOMPARE(app::read(setting::PrintFontColor, 9), accepts ? 0xff0000 : 0);
    }

    // --- printing

    void printing_data()
    {
        QTest::addColumn<bool>("landscape");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QRect>("target");
        QTest::addColumn<QString>("job");
        QTest::newRow("upright") << false << "" << QRect(550, 550, 10806, 15738) << "dune.jpg";
        QTest::newRow("lying, with a title") << true << "Sand" << QRect(550, 550, 15738, 10806) << "Sand";
    }
    void printing()
    {
        QFETCH(bool, landscape);
        QFETCH(QString, title);
        Bench bench;
        bench.printer->count = 4;
        bool waits = false;
        bench.printer->meanwhile = [&] {
            waits =
                QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
            bench.button("lAccept").click(); // once more
            QTest::keyClick(bench.window, Qt::Key_Escape);
        };
        bool isOpen = true;
        QVERIFY(bench.show([&] {
            if (landscape)
                bench.part<QRadioButton>("oLayout1").click();
            bench.box("txtTitle").setText(title);
            bench.button("lAccept").click();
            isOpen = bench.window->isVisible();
        }));
        QVERIFY(!isOpen && waits && !QApplication::overrideCursor());
        QCOMPARE(bench.printer->jobs.size(), size_t(1));
        const test::FakePrinter::Job& job = bench.printer->jobs.front();
        QTEST(job.target, "target");
        QTEST(job.title, "job");
        QCOMPARE(job.copies, 4);
        QCOMPARE(job.picture, bench.window->page().page());
        QCOMPARE(bench.window->result(), int(QDialog::Accepted));
        QVERIFY(!logText().contains("Not printed"));
    }

    void aTitleThatWasTypedJustNowIsPrinted()
    {
        const Bench bench;
        bool wasWaiting = false;
        QVERIFY(bench.show([&] {
            bench.part<QRadioButton>("oA2").click(); // at the top, below the title
            bench.box("txtTitle").setText(QStringLiteral("HHHH"));
            wasWaiting = bench.part<QTimer>("tUpdate").isActive();
            bench.button("lAccept").click();
        }));
        QVERIFY(wasWaiting);
        const QImage page = bench.printer->jobs.at(0).picture;
        QCOMPARE(page.pixel(0, 5), white); // the picture has moved down
        bool isInked = false;
        for (int x = 0; x < page.width(); ++x)
            isInked = isInked || qRed(page.pixel(x, 12)) < 100;
        QVERIFY(isInked);
        QVERIFY(!bench.part<QTimer>("tUpdate").isActive());
    }

    void aFailureIsLoggedAndTheWindowCloses()
    {
        Bench bench;
        bench.printer->failure = QStringLiteral("no paper");
        QVERIFY(bench.show([&] { bench.button("lAccept").click(); }));
        QVERIFY(!bench.window->isVisible());
        QVERIFY(logText().contains("Not printed: no paper"));
        QCOMPARE(logText().count(u'\n'), 1);
    }

    void aPrinterWithoutPaper()
    {
        Bench bench;
        bench.printer->paper = {};
        QVERIFY(bench.show([&] { bench.button("lAccept").click(); }));
        QVERIFY(bench.printer->jobs.empty());
        QVERIFY(logText().contains("Not printed: there is no page"));
    }

    void enterInABoxDoesNotPrint()
    {
        const Bench bench;
        bool isOpen = false;
        QVERIFY(bench.show([&] {
            for (const char* name : {"txtTitle", "txtLeft"}) {
                bench.box(name).setFocus();
                QTest::keyClick(&bench.box(name), Qt::Key_Return);
            }
            isOpen = bench.window->isVisible();
        }));
        QVERIFY(isOpen && bench.printer->jobs.empty());
    }

    void theKeyboardReachesTheButtons_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("enter") << int(Qt::Key_Return);
        QTest::newRow("blank") << int(Qt::Key_Space);
    }
    void theKeyboardReachesTheButtons()
    {
        QFETCH(int, key);
        const Bench bench;
        bool reached = false;
        QVERIFY(bench.show([&] {
            QWidget* const accept = &bench.button("lAccept");
            for (int i = 0; i < 40 && !accept->hasFocus(); ++i) {
                if (QWidget* const focus = QApplication::focusWidget())
                    QTest::keyClick(focus, Qt::Key_Tab);
            }
            reached = accept->hasFocus();
            QTest::keyClick(accept, Qt::Key(key));
        }));
        QVERIFY(reached);
        QCOMPARE(bench.printer->jobs.size(), size_t(1));
    }

    void theEffectsAreAMenu()
    {
        const Bench bench;
        bool isShown = false;
        bool isChecked = false;
        QRgb shadow = 0;
        QVERIFY(bench.show([&] {
            bench.button("FXButton").click();
            QMenu& menu = bench.part<QMenu>("FXFeatures");
            isShown = menu.isVisible();
            QTest::mouseClick(&menu, Qt::LeftButton, {},
                              menu.actionGeometry(&bench.part<QAction>("mnuShadow")).center());
            isChecked = bench.part<QAction>("mnuShadow").isChecked();
            bench.area(2).click();
            shadow = bench.window->page().page().pixel(303, 227); // just outside of 300 x 225
        }));
        QVERIFY(isShown && isChecked);
        QCOMPARE(shadow, qRgb(0x40, 0x40, 0x40));
    }
};

QTEST_MAIN(TestFrmImagePrint)
#include "tst_frmimageprint.moc"
