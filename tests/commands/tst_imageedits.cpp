// The edits of the current image: what they make of its pixels, and what is asked of the window in which
// order.
#include "app/Product.h"
#include "commands/ImageEdits.h"
#include "commands/SaverBench.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using commands::ImageEdits;

class TestImageEdits : public QObject
{
    Q_OBJECT

  private:
    ScratchTrash m_trash;
    std::unique_ptr<SaverBench> m_bench;
    std::unique_ptr<ImageEdits> m_edits;
    std::function<void()> m_dialog;

    engine::ImageEngine& ix1() const { return m_bench->ix1; }
    QStringList& steps() const { return m_bench->steps; }
    QSize size() const { return {ix1().ImagePixelWidth(), ix1().ImagePixelHeight()}; }
    QString caption(const QString& rest) const
    {
        return "caption " + rest + " Colors | " + app::GetAppDisplayName();
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<SaverBench>(m_trash);
        m_dialog = [] {};
        const auto note = [this](const char* step) {
            return [this, step] { steps().append(QLatin1String(step)); };
        };
        m_edits = std::make_unique<ImageEdits>(ImageEdits::Sinks{
            .ix1 = &ix1(),
            .redraw = note("redraw"),
            .imageFileChanged = note("changed"),
            .updateStatus = note("status"),
            .updateToolbar = note("toolbar"),
            .setCaption = [this](const QString& text) { steps().append("caption " + text); },
            .saveImage = [this](const QString& path,
                                bool force) { steps().append((force ? "force " : "save ") + path); },
            .runTool = [this](const QString& name) { steps().append(name); },
            .askForSize = [this] { m_dialog(); }});
    }
    void cleanup()
    {
        m_edits.reset();
        m_bench.reset();
    }

    void captions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::newRow("plain") << "a.png"
                               << "a.png [80x60] - 7 Colors | ";
        QTest::newRow("none") << ""
                              << " [80x60] - 7 Colors | ";
        QTest::newRow("places of arguments") << "%1%2 %3.png"
                                             << "%1%2 %3.png [80x60] - 7 Colors | ";
    }

    void captions()
    {
        QFETCH(QString, name);
        QFETCH(QString, caption);
        const app::Version version = app::productVersion();
        QCOMPARE(
            commands::editedCaption(name, {80, 60}, 7),
            caption +
                QString("Quorvia v%1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision));
    }

    void rotating_data()
    {
        QTest::addColumn<double>("degrees");
        QTest::addColumn<QColor>("first"); // at the upper left
        QTest::newRow("clockwise") << -90.0 << QColor(Qt::blue);
        QTest::newRow("counter-clockwise") << 90.0 << QColor(Qt::green);
    }

    void rotating()
    {
        QFETCH(double, degrees);
        const QString path = m_bench->open("a.png");
        m_edits->rotate(degrees);
        QCOMPARE(size(), QSize(20, 40));
        QTEST(ix1().Picture().pixelColor(0, 0), "first");
        QCOMPARE(steps(), (QStringList{"save " + path, "miRefresh"}));
    }

    void whatNobodyWritesIsTurnedInMemory()
    {
        const QString path = m_bench->open("a.png");
        const QString other = m_bench->home.path("b.avif");
        QVERIFY(QFile::rename(path, other)); // the content tells what it is
        ix1().SetFileName(other);
        const QByteArray before = contentOf(other);
        m_edits->rotate(90);
        QCOMPARE(size(), QSize(20, 40));
        QCOMPARE(steps(), (QStringList{"redraw", "changed", "status", caption("b.avif [20x40] - 4")}));
        QCOMPARE(contentOf(other), before);
    }

    void whatIsStillOnItsWayIsTurnedInMemory()
    {
        const QString path = m_bench->open("a.jpg", {400, 300});
        QFile file(path);
        QVERIFY(file.resize(file.size() / 2));
        const QByteArray half = contentOf(path);
        ix1().SetFileName(path);
        QVERIFY(!ix1().IsComplete());
        m_edits->rotate(90);
        QCOMPARE(size(), QSize(300, 400));
        QVERIFY(!ix1().IsComplete());
        QCOMPARE(steps().mid(0, 3), (QStringList{"redraw", "changed", "status"}));
        QCOMPARE(contentOf(path), half);
        QCOMPARE(logTexts(), QStringList{"Turned on the screen only, since its file is not whole: " + path});
    }

    void anImageWithoutAFileIsTurnedInMemory()
    {
        ix1().SetPicture(quarters());
        m_edits->rotate(90);
        QCOMPARE(size(), QSize(20, 40));
        QCOMPARE(steps(), (QStringList{"redraw", "changed", "status", caption(" [20x40] - 4")}));
    }

    void theEdgeIsDrawnEachTime()
    {
        m_bench->open("a.png", {80, 60});
        const QImage plain = ix1().Picture();
        m_edits->bevel();
        const QImage once = ix1().Picture();
        QCOMPARE(steps().mid(0, 2), (QStringList{"changed", "status"}));
        QVERIFY(steps().at(2).startsWith("caption a.png [80x60] - "));
        m_edits->bevel();
        const QImage twice = ix1().Picture();
        const QPoint blue(1, 40); // at the left, in what was blue: white is mixed in
        QVERIFY(once.pixelColor(blue).red() > plain.pixelColor(blue).red());
        QVERIFY(twice.pixelColor(blue).red() > once.pixelColor(blue).red());
        QCOMPARE(twice.pixelColor(30, 20), plain.pixelColor(30, 20)); // the edge is 10 pixels wide
        QCOMPARE(once.pixelColor(11, 40), plain.pixelColor(11, 40));
        QVERIFY(once.pixelColor(8, 40) != plain.pixelColor(8, 40));
    }

    void fixedSizes_data()
    {
        QTest::addColumn<QSize>("size");
        for (const commands::FixedSize& each : commands::fixedSizes()) {
            const QStringList told = QString(QLatin1String(each.command)).mid(7).split('x'); // "miThumb80x60"
            QTest::newRow(each.command) << QSize(told.value(0).toInt(), told.value(1).toInt());
        }
    }

    void fixedSizes()
    {
        QFETCH(QSize, size);
        m_bench->open("a.png", {400, 30});
        for (const commands::FixedSize& each : commands::fixedSizes()) {
            if (QLatin1String(each.command) == QLatin1String(QTest::currentDataTag()))
                m_edits->resize(each);
        }
        QCOMPARE(this->size(), size);
        const QImage picture = ix1().Picture();
        QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::red)); // the whole image, its proportions ignored
        QCOMPARE(picture.pixelColor(size.width() - 3, size.height() - 3), QColor(Qt::white));
        QCOMPARE(steps().mid(0, 3), (QStringList{"redraw", "changed", "status"}));
        QVERIFY(steps().at(3).startsWith(
            QString("caption a.png [%1x%2] - ").arg(size.width()).arg(size.height())));
        QCOMPARE(steps().size(), 4);
    }

    void thereAreTenOfThem() { QCOMPARE(commands::fixedSizes().size(), std::size_t(10)); }

    void theSizeOfTheDialog()
    {
        m_bench->open("a.png");
        m_dialog = [this] {
            steps().append("dialog");
            ix1().Resample(10, 10);
        };
        m_edits->customResize();
        QCOMPARE(steps().mid(0, 4), (QStringList{"dialog", "redraw", "status", "toolbar"}));
        QVERIFY(steps().at(4).startsWith("caption a.png [10x10] - "));
        QVERIFY(logTexts().isEmpty());
    }

    void anOldErrorIsNotToldAgain()
    {
        m_bench->open("a.png");
        ix1().SetSaveFileName("/nowhere/a.png");
        QVERIFY(!ix1().SaveFile());
        m_edits->customResize(); // cancelled
        m_edits->copy();
        QVERIFY(logTexts().isEmpty());
        m_edits->bevel();
        QVERIFY(logTexts().isEmpty());
    }

    void withoutAnImageNothingIsSaid()
    {
        m_edits->rotate(90);
        QCOMPARE(steps(), QStringList());
        m_edits->bevel();
        m_edits->resize(commands::fixedSizes().front());
        m_edits->customResize();
        m_edits->EnableEditing();
        m_edits->copy();
        QVERIFY(steps().filter("caption").isEmpty());
        QVERIFY(logTexts().isEmpty());
        QCOMPARE(size(), QSize(0, 0));
    }

    void copying()
    {
        QGuiApplication::clipboard()->clear();
        m_bench->open("a.png");
        m_edits->copy();
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), quarters());
        QCOMPARE(steps(), QStringList());
    }

    void pasting()
    {
        m_bench->open("a.png");
        ix1().SetPaintEnabled(false);
        m_edits->PasteImage(quarters({8, 6}));
        QVERIFY(ix1().PaintEnabled());
        QCOMPARE(ix1().FileName(), QString());
        QCOMPARE(ix1().Picture(), quarters({8, 6}));
        QVERIFY(QFileInfo(app::InstallPath()).isDir());
        QCOMPARE(steps(),
                 (QStringList{"force " + app::InstallPath() + "untitled.bmp", caption(" [8x6] - 4")}));
    }

    void pastingNothing()
    {
        const QString path = m_bench->open("a.png");
        m_edits->PasteImage(QImage());
        QCOMPARE(ix1().FileName(), path);
        QCOMPARE(steps(), QStringList());
    }

    void whatIsTooLargeIsLogged()
    {
        m_bench->open("a.png");
        m_edits->resize({"", 1'000'000, 1'000'000});
        QCOMPARE(size(), QSize(40, 20));
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().at(0).startsWith("Not changed: "));
    }
};

QTEST_MAIN(TestImageEdits)
#include "tst_imageedits.moc"
