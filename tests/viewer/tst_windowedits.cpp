// Edits in the main window: bevel, resize, save, copy and paste, from the command to pixels and files.
#include "app/Paths.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "commands/frmImageViewSize.h"
#include "controls/gnTab.h"
#include "EditStage.h"
#include "platform/NextDialog.h"
#include "platform/ToolControl.h"
#include "support/FileContent.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
namespace setting = app::setting;

class TestWindowEdits : public QObject, private EditStage
{
    Q_OBJECT

  private:
    QString caption() const { return m_window->windowTitle(); }

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
};

QTEST_MAIN(TestWindowEdits)
#include "tst_windowedits.moc"
