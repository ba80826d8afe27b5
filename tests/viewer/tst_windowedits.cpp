// Edits in the main window: rotate, bevel, resize, save, copy and paste, from the command to pixels and
// files.
#include "app/Paths.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "collections/Filmstrip.h"
#include "collections/ThumbnailCache.h"
#include "commands/frmImageViewSize.h"
#include "controls/gnTab.h"
#include "platform/NextDialog.h"
#include "platform/ToolControl.h"
#include "support/FileContent.h"
#include "support/FullDisk.h"
#include "viewer/CommandStage.h"
#include "viewer/PageNavigator.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quorvia;
using test::contentOf;
using test::ViewerBench;
using viewer::frmImageView;
namespace setting = app::setting;

namespace {

/// Red on the left, blue on the right.
QImage halves(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixel(x, y, 0xffff0000);
    }
    return image;
}

} // namespace

class TestWindowEdits : public QObject, private test::CommandStage
{
    Q_OBJECT

  private:
    engine::ImageEngine& ix1() const { return *m_window->ix1(); }
    QSize size() const { return {ix1().ImagePixelWidth(), ix1().ImagePixelHeight()}; }
    QString caption() const { return m_window->windowTitle(); }
    /// Writes `image` in the format of its name.
    QString write(const QString& name, const QImage& image) const
    {
        const QString extension = name.section(u'.', -1);
        return m_bench->home.write(name, *engine::encoderFor(extension)->encode(image, extension, {}));
    }
    /// A window that shows a.png or another picture of two halves, 40 x 20, the first of the folder.
    QString open(const QString& name = QStringLiteral("pics/a.png"), QSize of = {40, 20})
    {
        QString path = write(name, halves(of));
        show({path});
        return path;
    }
    /// The colour in the viewport at `across` and `down` of its middle, in pixels.
    QColor seen(int across, int down) const
    {
        const QImage shot = m_window->pContain()->grab().toImage();
        return shot.pixelColor(shot.rect().center() + QPoint(across, down));
    }
    bool logged(const char* text) const { return m_bench->logTexts().join(u'\n').contains(text); }
    QString facts() const
    {
        return m_window->findChild<QPlainTextEdit*>(QStringLiteral("tImageInfo"))->toPlainText();
    }
    QString tip() const
    {
        controls::gnTab* const gTab = m_window->panes()->gTab();
        QHelpEvent event(QEvent::ToolTip, {5, 5}, gTab->mapToGlobal(QPoint(5, 5)));
        for (QWidget* part : gTab->findChildren<QWidget*>())
            QCoreApplication::sendEvent(part, &event);
        return gTab->tabs().at(1).ToolTip;
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void rotating_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QColor>("above");
        QTest::newRow("clockwise") << QByteArray("miRotateClock") << QColor(Qt::red);
        QTest::newRow("counter-clockwise") << QByteArray("miRotateCounter") << QColor(Qt::blue);
    }

    void rotating()
    {
        QFETCH(QByteArray, command);
        QFETCH(QColor, above);
        const QString path = open();
        const QByteArray old = contentOf(path);
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        run(command.constData());
        QCOMPARE(QImage(path).size(), QSize(20, 40));
        QCOMPARE(QImage(path).pixelColor(10, 5), above);
        QCOMPARE(seen(0, -6), above);
        QVERIFY(seen(0, 6) != above);
        QCOMPARE(m_window->currentFile(), path);
        QCOMPARE(caption(), app::GetAppDisplayName()); // it was loaded anew
        QCOMPARE(m_trash.names(), QStringList{"a (replaced).png"});
        QCOMPARE(m_trash.content("a (replaced).png"), old);
        QVERIFY(failures().isEmpty() && m_bench->boxes.empty());
    }

    void eachTurnIsSeenHoweverFastTheyFollow()
    {
        const QString path = open(QStringLiteral("pics/a.bmp"), {40, 40}); // its size never changes
        const QList<QColor> upperLeft{Qt::red, Qt::blue, Qt::blue, Qt::red};
        for (int turn = 0; turn < 8; ++turn) {
            run("miRotateClock");
            QCOMPARE(seen(-6, -6), upperLeft.at(turn % 4));
            QCOMPARE(QImage(path).pixelColor(10, 10), upperLeft.at(turn % 4));
        }
        QCOMPARE(m_trash.names().size(), 1); // what the program wrote itself is not kept
    }

    void aWriteWithinTheClocksTickIsSeen()
    {
        const QString path = write(QStringLiteral("pics/a.bmp"), halves({40, 40}));
        const auto setTime = [&path] {
            const timespec times[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        };
        setTime();
        open(); // a.png, whose neighbours are read ahead
        QTRY_VERIFY(m_bench->loader().readAheadBytes() >= 40 * 40 * 4 + 40 * 30 * 4);
        run("miLoadFirst");
        QCOMPARE(m_window->currentFile(), path);
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        ix1().Rotate(180);
        ix1().SetSaveFileName(path);
        QVERIFY(ix1().SaveFile());
        setTime(); // as on a disk with coarse times
        run("miRefresh");
        QCOMPARE(seen(-6, 0), QColor(Qt::blue));
    }

    void aReadOnlyFileStays()
    {
        const QString path = open();
        const QByteArray old = contentOf(path);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
        run("miRotateClock");
        QCOMPARE(contentOf(path), old);
        QCOMPARE(size(), QSize(40, 20)); // the refresh has read it again
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        QCOMPARE(failures().size(), 1);
        QVERIFY(logged("; the old file is read-only and stays"));
        QVERIFY(m_trash.names().isEmpty());
    }

    void aFullDiskCostsNoContent()
    {
        const QString path = open(QStringLiteral("pics/a.bmp"), {400, 300});
        const QByteArray old = contentOf(path);
        {
            const test::FullDisk disk(50'000);
            run("miRotateClock");
        }
        QVERIFY(!QFile::exists(path));
        QVERIFY(m_trash.names().contains(QStringLiteral("a.bmp")));
        QCOMPARE(m_trash.content(QStringLiteral("a.bmp")), old);
        QCOMPARE(QDir(in("pics")).entryList(QDir::Files | QDir::Hidden),
                 (QStringList{"a.png", "b.png", "two words.png"}));
        QCOMPARE(caption(), app::GetAppDisplayName());
        QCOMPARE(size(), QSize(300, 400)); // what was turned can still be saved elsewhere
        QVERIFY(logged("; the old file is in the trash"));
        QVERIFY(m_bench->boxes.empty());
    }

    void aTypeThatIsOnlyReadIsTurnedInMemory()
    {
        const QString path = in("pics/a.avif");
        QVERIFY(QFile::rename(open(), path));
        m_window->OpenX(path);
        const QByteArray old = contentOf(path);
        run("miRotateClock");
        QCOMPARE(contentOf(path), old);
        QCOMPARE(seen(0, -6), QColor(Qt::red));
        QVERIFY(caption().startsWith(QStringLiteral("a.avif [20x40] - 2 Colors | Quorvia v")));
        QVERIFY(failures().isEmpty());
    }

    void aPageIsTurnedAndTheOthersAreInTheTrash()
    {
        const QString path = m_bench->document(QStringLiteral("pics/pages.tif"), {Qt::red, Qt::blue});
        const QByteArray pages = contentOf(path);
        m_window = &m_bench->load({path});
        auto* const pTiff = m_window->findChild<viewer::PageNavigator*>();
        QVERIFY(pTiff && !pTiff->isHidden());
        Q_EMIT pTiff->nextClicked();
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        run("miRotateClock");
        QCOMPARE(size(), QSize(30, 40));
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        QVERIFY(pTiff->isHidden());
        QCOMPARE(m_trash.content(QStringLiteral("pages (replaced).tif")), pages);
    }

    void anEdgeIsDrawnInMemory()
    {
        const QString path = open(QStringLiteral("pics/a.png"), {80, 60});
        const QByteArray old = contentOf(path);
        const QSignalSpy changed(m_window->opening(), &viewer::Opening::ImageFileChanged);
        const QColor plain = seen(-38, 0);
        run("miBevel");
        const QColor once = seen(-38, 0);
        QVERIFY(once != plain);
        run("miBevel");
        QVERIFY(seen(-38, 0) != once);
        QCOMPARE(changed.size(), 2);
        QVERIFY(
            caption().startsWith(QStringLiteral("a.png [80x60] - %1 Colors | ").arg(ix1().UniqueColors())));
        QVERIFY(caption().endsWith(QStringLiteral(" Colors | ") + app::GetAppDisplayName()));
        QVERIFY(ix1().UniqueColors() > 2);
        QCOMPARE(contentOf(path), old);
        run("miRefresh");
        QCOMPARE(seen(-38, 0), plain);
        QCOMPARE(caption(), app::GetAppDisplayName());
        QVERIFY(m_bench->boxes.empty());
    }

    void fixedSizes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("miThumb80x80") << QSize(80, 80);
        QTest::newRow("miThumb120x120") << QSize(120, 120);
        QTest::newRow("miThumb240x240") << QSize(240, 240);
        QTest::newRow("miThumb320x320") << QSize(320, 320);
        QTest::newRow("miThumb480x480") << QSize(480, 480);
        QTest::newRow("miThumb480x360") << QSize(480, 360);
        QTest::newRow("miThumb320x240") << QSize(320, 240);
        QTest::newRow("miThumb240x180") << QSize(240, 180);
        QTest::newRow("miThumb120x90") << QSize(120, 90);
        QTest::newRow("miThumb80x60") << QSize(80, 60);
    }

    void fixedSizes()
    {
        QFETCH(QSize, size);
        const QString path = open();
        const QByteArray old = contentOf(path);
        run("miActualSize");
        run(QTest::currentDataTag());
        QCOMPARE(this->size(), size);
        QCOMPARE(ix1().size() * ix1().devicePixelRatioF(), size); // the viewport has placed it
        QCOMPARE(seen(-size.width() / 2 + 3, 0), QColor(Qt::red));
        QCOMPARE(seen(size.width() / 2 - 4, 0), QColor(Qt::blue));
        QVERIFY(
            caption().startsWith(QStringLiteral("a.png [%1x%2] - ").arg(size.width()).arg(size.height())));
        QCOMPARE(contentOf(path), old);
    }

    void whatDescribesTheImageIsTrueAfterAnEdit()
    {
        open();
        run("miViewInformation");
        run("miInterfaceTabs");
        if (!m_window->panes()->isInformationShown())
            run("miInterfaceTabs");
        QTRY_VERIFY(facts().contains(QStringLiteral("Unique Colors:\t2")));
        run("miThumb80x80");
        QVERIFY2(facts().contains(QStringLiteral("80x80")), qPrintable(facts()));
        QTRY_VERIFY(facts().contains(QStringLiteral("Unique Colors:\t%1").arg(ix1().UniqueColors())));
        QVERIFY2(tip().startsWith(QStringLiteral("80x80, ")), qPrintable(tip()));
        QVERIFY(caption().startsWith(QStringLiteral("a.png [80x80]")));
    }

    void theCaptionEndsWithTheImage_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("the next one") << QByteArray("miNext");
        QTest::newRow("none") << QByteArray("miCloseImage");
        QTest::newRow("the same anew") << QByteArray("miRefresh");
    }

    void theCaptionEndsWithTheImage()
    {
        QFETCH(QByteArray, command);
        open(QStringLiteral("pics/a[*].png"));
        run("miBevel");
        QVERIFY(caption().startsWith(QStringLiteral("a[*][*].png [40x20] - "))); // which shows "[*]" once
        run(command.constData());
        QCOMPARE(caption(), app::GetAppDisplayName());
    }

    void aHiddenPictureIsNotNamed()
    {
        open();
        run("miQuickHide");
        run("miBevel");
        QCOMPARE(caption(), QStringLiteral("Unknown"));
        run("miRotateClock");
        QCOMPARE(caption(), QStringLiteral("Unknown"));
    }

    void withoutAnImageNothingHappens()
    {
        m_window = &m_bench->load();
        m_window->OpenMenuX(true);
        const platform::SaveChooserAnswerer chooser(
            [this](const platform::SaveChooser&) { return in("pics/a.png"); });
        test::NextDialog<commands::frmImageViewSize> dialog(
            [](commands::frmImageViewSize& shown) { shown.accept(); });
        const QByteArray old = contentOf(in("pics/a.png"));
        const QString before = caption();
        for (const char* command :
             {"miRotateClock", "miRotateCounter", "miBevel", "miThumb80x80", "miThumb480x360", "miCopy",
              "miSave", "miCustomResize", "miDelete", "miThumbDelete", "miRename"})
            run(command);
        QVERIFY(dialog.seen());
        QCOMPARE(caption(), before);
        QCOMPARE(contentOf(in("pics/a.png")), old);
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
        QVERIFY(m_trash.names().isEmpty());
    }

    void theDialogForASize()
    {
        open(QStringLiteral("pics/a.png"), {200, 100});
        QString shown;
        bool isHis = false;
        test::NextDialog<commands::frmImageViewSize> next([&](commands::frmImageViewSize& dialog) {
            isHis = dialog.parentWidget() == m_window;
            auto* const tW = dialog.findChild<QLineEdit*>(QStringLiteral("tW"));
            shown = tW->text() + u'x' + dialog.findChild<QLineEdit*>(QStringLiteral("tH"))->text();
            dialog.findChild<QCheckBox*>(QStringLiteral("Check1"))->setChecked(true);
            dialog.activateWindow();
            tW->setFocus();
            if (!QTest::qWaitFor([tW] { return tW->hasFocus(); }))
                return dialog.reject();
            tW->selectAll();
            QTest::keyClicks(tW, QStringLiteral("50"));
            QTest::keyClick(tW, Qt::Key_Return);
        });
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window)); // so that it comes not while the dialog is typed in
        run("miActualSize");
        run("miCustomResize");
        QVERIFY(next.seen() && isHis);
        QCOMPARE(shown, QStringLiteral("200x100"));
        QCOMPARE(size(), QSize(50, 25));
        QCOMPARE(ix1().size() * ix1().devicePixelRatioF(), QSize(50, 25));
        QVERIFY(caption().startsWith(QStringLiteral("a.png [50x25] - ")));
        QVERIFY(failures().isEmpty());
    }

    void saving_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isGray"); // by the JPEG settings
        QTest::newRow("png") << "pics/new.png" << false;
        QTest::newRow("bmp") << "pics/new.bmp" << false;
        QTest::newRow("jpg") << "pics/new.jpg" << true;
        QTest::newRow("jpeg") << "pics/new.jpeg" << true;
        QTest::newRow("over itself") << "pics/a.png" << false;
    }

    void saving()
    {
        QFETCH(QString, name);
        QFETCH(bool, isGray);
        const QString path = open();
        app::save(setting::JPEGGray, 1);
        platform::SaveChooser asked;
        const platform::SaveChooserAnswerer chooser([&](const platform::SaveChooser& shown) {
            asked = shown;
            return m_bench->home.path(name);
        });
        run("miThumb80x60");
        run("miSave");
        QCOMPARE(asked.name, QStringLiteral("a.png"));
        QCOMPARE(asked.extension, QStringLiteral("bmp"));
        QCOMPARE(m_window->currentFile(), m_bench->home.path(name));
        QCOMPARE(QImage(m_bench->home.path(name)).size(), QSize(80, 60));
        QCOMPARE(QImage(m_bench->home.path(name)).allGray(), isGray);
        QCOMPARE(m_trash.names().isEmpty(), m_bench->home.path(name) != path);
        QCOMPARE(caption(), app::GetAppDisplayName());
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
    }

    void aSaveWithoutANameIsNone()
    {
        const QString path = open();
        const QByteArray old = contentOf(path);
        const platform::SaveChooserAnswerer chooser([](const platform::SaveChooser&) { return QString(); });
        run("miBevel");
        run("miSave");
        QCOMPARE(contentOf(path), old);
        QVERIFY(caption().startsWith(QStringLiteral("a.png [40x20]"))); // the edit is still there
    }

    void copying()
    {
        open();
        QGuiApplication::clipboard()->clear();
        run("miCopy");
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
                 halves({40, 20}));
    }

    void pasting()
    {
        open();
        const QString untitled = app::InstallPath() + QStringLiteral("untitled.bmp");
        m_bench->home.write(QStringLiteral("root/untitled.bmp"), "of an earlier day");
        m_window->images().edits().PasteImage(halves({60, 30}));
        QCOMPARE(m_window->currentFile(), untitled);
        QCOMPARE(QImage(untitled).size(), QSize(60, 30));
        QVERIFY(caption().startsWith(QStringLiteral("untitled.bmp [60x30] - 2 Colors | ")));
        QCOMPARE(seen(-8, 0), QColor(Qt::red));
        QCOMPARE(m_trash.content(QStringLiteral("untitled (replaced).bmp")), QByteArray("of an earlier day"));
        const auto* const model = m_window->panes()->ab1()->model();
        QVERIFY(model->tool(QStringLiteral("miRotateClock"))->values().enabled); // it is open like any other
        m_window->images().edits().PasteImage(QImage());
        QCOMPARE(m_window->currentFile(), untitled);
    }

    void aPasteThatCannotBeWrittenCanBeSavedElsewhere()
    {
        open();
        QVERIFY(QDir().mkpath(app::InstallPath() + QStringLiteral("untitled.bmp"))); // in its place
        m_window->images().edits().PasteImage(halves({60, 30}));
        QCOMPARE(size(), QSize(60, 30));
        QCOMPARE(m_window->currentFile(), QString());
        QVERIFY(logged("Not saved: "));
        QVERIFY(QFileInfo(app::InstallPath() + QStringLiteral("untitled.bmp")).isDir());
        const platform::SaveChooserAnswerer chooser(
            [this](const platform::SaveChooser&) { return in("pics/rescued.png"); });
        run("miSave");
        QCOMPARE(m_window->currentFile(), in("pics/rescued.png"));
        QCOMPARE(QImage(in("pics/rescued.png")).size(), QSize(60, 30));
    }

    void theStripShowsWhatWasTurned_data()
    {
        QTest::addColumn<bool>("inSight");
        QTest::addColumn<bool>("inHaste"); // before the strip has marked the image
        QTest::newRow("in sight") << true << false;
        QTest::newRow("in sight, in haste") << true << true;
        QTest::newRow("out of sight") << false << true;
    }

    void theStripShowsWhatWasTurned()
    {
        QFETCH(bool, inSight);
        QFETCH(bool, inHaste);
        write(QStringLiteral("pics/b.png"), halves({200, 200}));
        m_window = &m_bench->load({in("pics")});
        m_window->OpenMenuX(true);
        m_window->resize(900, 700);
        run("miViewFilmstrip");
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(-20, 0).red() > 200);
        if (!inSight)
            run("miViewNormal");
        run("miNext");
        QVERIFY(inHaste || stripSettles());
        auto* const tDraw = m_window->filmstrip()->Filmstrip1()->findChild<QTimer*>("tDraw");
        run("miRotateClock"); // within the second in which the picture was written, mostly
        QCOMPARE(tDraw->isActive(), inSight && inHaste); // else there is no need to draw all of it
        run("miNext");
        run("miViewFilmstrip");
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(0, -20).red() > 200 && cellPixel(0, -20).blue() < 60);
        QVERIFY(cellPixel(-20, 20).blue() > 200);
        m_window->filmstrip()->Filmstrip1()->DrawStrip(); // by the stored thumbnails
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(0, -20).red() > 200 && cellPixel(0, -20).blue() < 60);
    }

    void aThumbnailOfTheFormerContentGoes()
    {
        const QString path = open();
        const QString thumbnail = collections::thumbnailFor(path);
        m_bench->home.write(QStringLiteral("root/Thumbs/other.thb"), "must stay");
        m_bench->home.write(QStringLiteral("root/Thumbs/") + thumbnail.section(u'/', -1), "of a second");
        QVERIFY(collections::hasThumbnail(thumbnail));
        m_window->filmstrip()->refreshEntry(path); // written within that second
        QVERIFY(!collections::hasThumbnail(thumbnail));
        QVERIFY(QFile::exists(in("root/Thumbs/other.thb")));
    }

  private:
    bool stripSettles() const
    {
        const auto* const strip = m_window->filmstrip()->Filmstrip1();
        return QTest::qWaitFor(
            [strip] {
                for (const char* timer : {"tResize", "tDraw", "tSelectionChange", "tDrawSelected"}) {
                    if (strip->findChild<QTimer*>(QLatin1String(timer))->isActive())
                        return false;
                }
                return true;
            },
            10000);
    }
    /// The colour in the second of the strip's three cells, so far from its middle.
    QColor cellPixel(int across, int down) const
    {
        auto* const pImages =
            m_window->filmstrip()->Filmstrip1()->findChild<QWidget*>(QStringLiteral("pImages"));
        const QImage shot = pImages->grab().toImage();
        return shot.pixelColor(shot.width() / 2 + across, shot.height() / 2 + down);
    }
};

QTEST_MAIN(TestWindowEdits)
#include "tst_windowedits.moc"
