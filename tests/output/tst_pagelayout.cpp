// What stands where on the printed page, and its texts. Twips.
#include "output/PageLayout.h"
#include "output/PageTexts.h"

#include <QTest>

using namespace quorvia::output;

namespace {

constexpr QSize upright(11100, 16100); // a page of 10000 x 15000
constexpr QSize lying(16100, 11100);

PageInput input(QSize printer, QSize image, AreaMode area, bool texts = false)
{
    PageInput page{.printer = printer, .image = image, .area = area};
    if (texts) {
        page.title = QSizeF(2000, 300);
        page.footer = QSizeF(3000, 240);
    }
    return page;
}

constexpr QRgb dark = 0xff404040;
constexpr QRgb middle = 0xff808080;

/// Of a picture of 4000 x 3000 at (3000, 6000).
PageLayout decorated(const Decorations& decorations)
{
    PageInput page = input(upright, {4000, 3000}, AreaMode::Center);
    page.decorations = decorations;
    return layOutPage(page);
}

QRectF corners(double left, double top, double right, double bottom)
{
    return {QPointF(left, top), QPointF(right, bottom)};
}

} // namespace

class TestPageLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void images_data()
    {
        QTest::addColumn<QSize>("printer");
        QTest::addColumn<QSize>("image");
        QTest::addColumn<int>("area");
        QTest::addColumn<bool>("texts"); // the title takes 500, the footer 240
        QTest::addColumn<QRectF>("rect");
        const auto row = [](const char* name, QSize printer, QSize image, int area, bool texts, QRectF rect) {
            QTest::newRow(name) << printer << image << area << texts << rect;
        };
        const QSize fits(4000, 3000);
        row("fitting, centred", upright, fits, 0, false, {3000, 6000, 4000, 3000});
        row("fitting, top centre", upright, fits, 1, false, {3000, 0, 4000, 3000});
        row("fitting, top left", upright, fits, 2, false, {0, 0, 4000, 3000});
        row("fitting, top left as it is", upright, fits, 3, false, {0, 0, 4000, 3000});
        row("fitting, centred as it is", upright, fits, 5, false, {3000, 6000, 4000, 3000});
        row("fitting, centred, texts", upright, fits, 0, true, {3000, 6500, 4000, 3000});
        row("fitting, top centre, texts", upright, fits, 1, true, {3000, 500, 4000, 3000});
        row("fitting, top left, texts", upright, fits, 2, true, {0, 500, 4000, 3000});
        row("squeezed by the texts", upright, fits, 3, true, {0, 500, 4000, 2260});
        row("fitting, centred as it is, texts", upright, fits, 5, true, {3000, 6500, 4000, 3000});

        const QSize portraitWide(12000, 16000); // the ratio is the wrong way up: 9900 * 0.75 high
        row("portrait wide, centred", upright, portraitWide, 0, false, {50, 3787.5, 9900, 7425});
        row("portrait wide, top centre", upright, portraitWide, 1, false, {50, 0, 9900, 7425});
        row("portrait wide, top left", upright, portraitWide, 2, false, {0, 0, 9900, 7425});
        row("portrait wide, as it is", upright, portraitWide, 3, true, {0, 500, 12000, 15260});
        row("portrait wide, centred as it is", upright, portraitWide, 5, false, {-1000, -500, 12000, 16000});

        const QSize portraitTall(9000, 18000); // keeps its shape
        row("portrait tall, centred", upright, portraitTall, 0, false, {1250, 0, 7500, 15000});
        row("portrait tall, centred, texts", upright, portraitTall, 0, true, {1435, 870, 7130, 14260});
        row("portrait tall, top centre, texts", upright, portraitTall, 1, true, {1435, 500, 7130, 14260});
        row("portrait tall, top left, texts", upright, portraitTall, 2, true, {0, 500, 7130, 14260});
        // 16000 wide becomes 14900, 14900 * 16/20 = 11920 high, and then 10000 high.
        row("portrait too wide and too tall", lying, {16000, 20000}, 2, false, {0, 0, 12500, 10000});

        const QSize landscapeWide(20000, 10000); // keeps its shape
        row("landscape wide, centred", upright, landscapeWide, 0, false, {50, 5025, 9900, 4950});
        row("landscape wide, top centre", upright, landscapeWide, 1, true, {50, 500, 9900, 4950});
        row("landscape wide, top left", upright, landscapeWide, 2, false, {0, 0, 9900, 4950});
        row("landscape wide, as it is", upright, landscapeWide, 3, false, {0, 0, 20000, 10000});

        const QSize landscapeTall(20000, 16000); // the second ratio is the wrong way up: 0.8 * 10000 wide
        row("landscape tall, centred", lying, landscapeTall, 0, false, {3500, 0, 8000, 10000});
        row("landscape tall, top centre", lying, landscapeTall, 1, false, {3500, 0, 8000, 10000});
        row("landscape tall, top left, texts", lying, landscapeTall, 2, true, {0, 500, 7408, 9260});
        row("landscape tall, not too wide", lying, {14000, 12000}, 0, false, {3214.5, 0, 8571, 10000});

        row("square, centred", upright, {12000, 12000}, 0, false, {50, 2550, 9900, 9900});
        row("square too high", lying, {12000, 12000}, 0, false, {2500, 0, 10000, 10000});
        row("square too high, texts", lying, {12000, 12000}, 2, true, {0, 500, 9260, 9260});
        row("square too wide, its height left", lying, {16000, 16000}, 2, false, {0, 0, 14900, 14900});

        row("fits the page, not what the texts leave", upright, {9000, 14900}, 1, true,
            {500, 500, 9000, 14900});
        row("exactly the page", upright, {10000, 15000}, 0, true, {0, 500, 10000, 15000});
        row("a twip too wide", upright, {10001, 100}, 2, false, {0, 0, 9900, 9900 * (100.0 / 10001)});
    }
    void images()
    {
        QFETCH(QSize, printer);
        QFETCH(QSize, image);
        QFETCH(int, area);
        QFETCH(bool, texts);
        const PageLayout layout = layOutPage(input(printer, image, AreaMode(area), texts));
        QTEST(layout.image, "rect");
        QCOMPARE(layout.pictures, std::vector{layout.image.topLeft()});
        QCOMPARE(layout.page, printer - QSize(1100, 1100));
        QVERIFY(layout.shapes.empty() && !layout.tiles);
    }

    void custom_data()
    {
        QTest::addColumn<QRectF>("typed");
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<bool>("paints");
        QTest::newRow("usual") << QRectF(10, 20, 300, 200) << QRectF(150, 400, 4500, 4000) << true;
        QTest::newRow("off the page") << QRectF(-20, -2000, 5, 5) << QRectF(-300, -40000, 75, 100) << true;
        QTest::newRow("part of a pixel") << QRectF(0, 0, 0.5, 0.25) << QRectF(0, 0, 8, 5) << true;
        QTest::newRow("no width") << QRectF(0, 0, 0, 5) << QRectF(0, 0, 0, 100) << false;
        QTest::newRow("below nothing") << QRectF(0, 0, 5, -5) << QRectF(0, 0, 75, -100) << false;
        QTest::newRow("endless") << QRectF(-1e300, 1e300, 1e300, qInf()) << QRectF(-1e8, 1e8, 1e8, 1e8)
                                 << true;
    }
    void custom()
    {
        QFETCH(QRectF, typed);
        PageInput page = input(upright, {4000, 3000}, AreaMode::Custom, true);
        page.custom = typed;
        page.twipsPerPixel = QSizeF(15, 20);
        const PageLayout layout = layOutPage(page);
        QTEST(layout.image, "rect");
        QTEST(!layout.pictures.empty(), "paints");
    }

    void texts_data()
    {
        QTest::addColumn<int>("align");
        QTest::addColumn<QPointF>("title");
        QTest::newRow("left") << 0 << QPointF(100, 100);
        QTest::newRow("centre") << 1 << QPointF(4000, 100);
        QTest::newRow("right") << 2 << QPointF(7900, 100);
    }
    void texts()
    {
        QFETCH(int, align);
        PageInput page = input(upright, {400, 300}, AreaMode::Center, true);
        page.titleAlign = TitleAlign(align);
        page.footer = QSizeF(3000, 240.5);
        const PageLayout layout = layOutPage(page);
        QTEST(layout.title, "title");
        QCOMPARE(layout.footer, QPointF(3500, 14659.5)); // centred whatever the title is
        QCOMPARE(layout.titleRoom, 500.0);
        QCOMPARE(layout.footerRoom, 240); // a half goes to the even number
    }

    void noTexts()
    {
        const PageLayout layout = layOutPage(input(upright, {400, 300}, AreaMode::TopLeft));
        QCOMPARE(layout.titleRoom, 0.0);
        QCOMPARE(layout.footerRoom, 0);
        QCOMPARE(layout.image.top(), 0.0);
    }

    void shapes_data()
    {
        QTest::addColumn<Decorations>("decorations");
        QTest::addColumn<std::vector<PageShape>>("shapes");
        const std::vector<PageShape> circles{
            {PageForm::Circle, 1, middle, corners(2600, 5600, 3800, 6800)},
            {PageForm::Circle, 1, middle, corners(6200, 5600, 7400, 6800)},
            {PageForm::Circle, 1, middle, corners(6200, 8200, 7400, 9400)},
            {PageForm::Circle, 1, middle, corners(2600, 8200, 3800, 9400)},
        };
        const std::vector<PageShape> squares{
            {PageForm::Box, 1, dark, corners(2800, 5800, 3500, 6500)},
            {PageForm::Box, 1, dark, corners(6500, 5800, 7200, 6500)},
            {PageForm::Box, 1, dark, corners(6500, 8500, 7200, 9200)},
            {PageForm::Box, 1, dark, corners(2800, 8500, 3500, 9200)},
        };
        const PageShape shadow{PageForm::Box, 1, dark, corners(3060, 6060, 7100, 9100)};
        const QRectF outline = corners(2850, 5850, 7150, 9150);
        const PageShape frame{PageForm::Outline, 5, dark, outline};
        using Shapes = std::vector<PageShape>;
        QTest::newRow("none") << Decorations{} << Shapes{};
        QTest::newRow("circles") << Decorations{.circle = true} << circles;
        QTest::newRow("squares") << Decorations{.square = true} << squares;
        QTest::newRow("shadow") << Decorations{.shadow = true} << Shapes{shadow};
        QTest::newRow("frame") << Decorations{.frame = true} << Shapes{frame};
        QTest::newRow("light frame") << Decorations{.lightFrame = true}
                                     << Shapes{{PageForm::Outline, 2, dark, outline}};
        QTest::newRow("both frames") << Decorations{.lightFrame = true, .frame = true}
                                     << Shapes{frame, {PageForm::Outline, 2, 0xffffffff, outline}};
        QTest::newRow("frame around a shadow")
            << Decorations{.shadow = true, .frame = true}
            << Shapes{shadow, {PageForm::Outline, 5, dark, corners(2850, 5850, 7250, 9250)}};
        QTest::newRow("frame around a trail")
            << Decorations{.frame = true, .trail = true}
            << Shapes{{PageForm::Outline, 5, dark, corners(2850, 5850, 9150, 10550)}};
        QTest::newRow("shadow behind a trail")
            << Decorations{.shadow = true, .trail = true} << Shapes{shadow};
    }
    void shapes()
    {
        QFETCH(Decorations, decorations);
        QTEST(decorated(decorations).shapes, "shapes");
    }

    void theyAreDrawnInOneOrder()
    {
        const PageLayout layout = decorated({true, true, true, true, true, false, false});
        QString order;
        for (const PageShape& shape : layout.shapes)
            order += QStringLiteral("cbo").at(int(shape.form));
        QCOMPARE(order, QStringLiteral("ccccbbbbboo"));
        QCOMPARE(layout.shapes[1].rect.right(), 7500.0); // a shadow moves the right circles
    }

    void extents()
    {
        const auto extent = [](const Decorations& decorations) {
            const PageLayout layout = decorated(decorations);
            return QSize(layout.extraWidth, layout.extraHeight);
        };
        QCOMPARE(extent({}), QSize(0, 0));
        QCOMPARE(extent({.shadow = true}), QSize(100, 100));
        QCOMPARE(extent({.trail = true}), QSize(2000, 1400));
        QCOMPARE(extent({.shadow = true, .trail = true}), QSize(2100, 1500));
    }

    void aTrailEndsUnderThePicture()
    {
        const PageLayout layout = decorated({.trail = true});
        QCOMPARE(layout.pictures.size(), size_t(22));
        QCOMPARE(layout.pictures.front(), QPointF(5000, 7400));
        QCOMPARE(layout.pictures[1], QPointF(4900, 7330));
        QCOMPARE(layout.pictures[20], QPointF(3000, 6000));
        QCOMPARE(layout.pictures[21], QPointF(3000, 6000));
        QVERIFY(!layout.tiles);
    }

    void tiles_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<PageTiles>("tiles");
        QTest::newRow("usual") << QSize(4000, 3500) << PageTiles{3, 5, 16};
        QTest::newRow("a divisor") << QSize(5000, 3000) << PageTiles{3, 6, 19};
        QTest::newRow("a twip") << QSize(1, 1) << PageTiles{10001, 15001, qint64(10001) * 15001 + 1};
    }
    void tiles()
    {
        QFETCH(QSize, image);
        PageInput page = input(upright, image, AreaMode::Center, true);
        page.decorations = {.tile = true, .trail = true};
        const PageLayout layout = layOutPage(page);
        QVERIFY(layout.tiles && layout.pictures.empty());
        QTEST(*layout.tiles, "tiles");
    }

    void badSizes_data()
    {
        QTest::addColumn<QSize>("printer");
        QTest::addColumn<QSize>("image");
        QTest::addColumn<int>("titleHeight");
        QTest::newRow("no picture") << upright << QSize(0, 0) << 300;
        QTest::newRow("no width, too high") << upright << QSize(0, 20000) << 300;
        QTest::newRow("no height, too wide") << upright << QSize(20000, 0) << 300;
        QTest::newRow("no paper") << QSize(0, 0) << QSize(400, 300) << 300;
        QTest::newRow("paper of margins") << QSize(1100, 1100) << QSize(400, 300) << 300;
        QTest::newRow("page of a picture's margin") << QSize(1200, 1100) << QSize(400, 300) << 300;
        QTest::newRow("a title higher than the page") << upright << QSize(20000, 30000) << 16000;
    }
    void badSizes()
    {
        QFETCH(QSize, printer);
        QFETCH(QSize, image);
        QFETCH(int, titleHeight);
        for (const bool tile : {false, true}) {
            PageInput page = input(printer, image, AreaMode::Center);
            page.title = QSizeF(2000, titleHeight);
            page.decorations = {.tile = tile, .trail = true};
            const PageLayout layout = layOutPage(page);
            QVERIFY(layout.pictures.empty() && !layout.tiles);
            QVERIFY(qIsFinite(layout.image.width()) && qIsFinite(layout.image.height()));
            QVERIFY(layout.page.width() >= 0 && layout.page.height() >= 0);
        }
    }

    void footers_data()
    {
        QTest::addColumn<bool>("name");
        QTest::addColumn<bool>("directory");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text"); // null: none
        const QString path("/home/a/dune.jpg");
        QTest::newRow("none") << false << false << path << QString();
        QTest::newRow("name") << true << false << path << "dune.jpg";
        QTest::newRow("directory") << false << true << path << "/home/a/";
        QTest::newRow("both") << true << true << path << path;
        QTest::newRow("of no file") << true << true << ""
                                    << "";
        QTest::newRow("without a directory") << false << true << "dune.jpg"
                                             << "";
    }
    void footers()
    {
        QFETCH(bool, name);
        QFETCH(bool, directory);
        QFETCH(QString, path);
        QFETCH(QString, text);
        const auto footer = footerText(name, directory, path);
        QCOMPARE(footer.has_value(), !text.isNull());
        QCOMPARE(footer.value_or(QString()), text);
    }

    void whatTheWindowSays()
    {
        QCOMPARE(captionText("/home/a/dune.jpg"), QStringLiteral("Print Image: dune.jpg"));
        QCOMPARE(pageText({10800, 15008}, {15, 15}), QStringLiteral("Page Dimensions: 720x1001"));
        QCOMPARE(pageText({10800, 15000}, {15, 20}), QStringLiteral("Page Dimensions: 720x750"));
        QCOMPARE(pageText({0, 0}, {15, 15}), QStringLiteral("Page Dimensions: 0x0"));
    }

    void emptyBoxes()
    {
        const QSizeF pixel(15, 20);
        QCOMPARE(withDefaults({}, {4000, 3000}, pixel), (PageBoxes{"0", "0", "267", "150"}));
        QCOMPARE(withDefaults({"1", "x", "", "4"}, {4500, 3000}, pixel), (PageBoxes{"1", "x", "300", "4"}));
        QCOMPARE(boxesRect({"-1.5", "abc", " 2e2px", ""}), QRectF(-1.5, 0, 200, 0));
        QCOMPARE(boxesRect({"1e999", "-1e999", "0", "0"}), QRectF(1e8, -1e8, 0, 0));
    }

    void composing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("composes");
        QTest::newRow("number") << "12" << true;
        QTest::newRow("letters") << "abc" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("lowest") << "-999.9" << true;
        QTest::newRow("too low") << "-1000" << false;
    }
    void composing()
    {
        QFETCH(QString, text);
        QTEST(composesWith(text), "composes");
    }

    void decimals_data()
    {
        QTest::addColumn<double>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 120.0 << "120";
        QTest::newRow("none") << 0.0 << "0";
        QTest::newRow("below none") << -0.00001 << "0";
        QTest::newRow("tenths") << -1.5 << "-1.5";
        QTest::newRow("third") << 400.0 / 3 << "133.3333";
        QTest::newRow("large") << 6666666.0 << "6666666";
    }
    void decimals()
    {
        QFETCH(double, number);
        QTEST(plainDecimal(number), "text");
    }
};

Q_DECLARE_METATYPE(quorvia::output::PageTiles)

QTEST_APPLESS_MAIN(TestPageLayout)
#include "tst_pagelayout.moc"
