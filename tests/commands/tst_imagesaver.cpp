// Saving the current image: the steps, what becomes of what is replaced, and what a failure costs.
#include "app/Product.h"
#include "app/Settings.h"
#include "commands/SaverBench.h"
#include "platform/Dialogs.h"
#include "support/FullDisk.h"
#include "support/OddNames.h"

#include <QProcess>
#include <QTest>

#include <sys/stat.h>

using namespace quorvia;
using namespace quorvia::test;
using commands::ImageSaver;
namespace setting = app::setting;

class TestImageSaver : public QObject
{
    Q_OBJECT

  private:
    ScratchTrash m_trash;
    std::unique_ptr<SaverBench> m_bench;

    engine::ImageEngine& ix1() const { return m_bench->ix1; }
    QString in(const char* name) const { return m_bench->in(QLatin1String(name)); }
    void save(const QString& path, bool force = false) const { m_bench->saver.SaveImage(path, force); }
    static QImage pictureIn(const QString& path)
    {
        return QImage(path).convertToFormat(QImage::Format_RGB32);
    }
    static bool logged(const char* text) { return logTexts().join(u'\n').contains(QLatin1String(text)); }
    /// The quantisation steps that a JPEG names first: those of its brightness.
    static int firstStep(const QByteArray& jpeg) { return uchar(jpeg.at(jpeg.indexOf("\xff\xdb") + 5)); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<SaverBench>(m_trash); }
    void cleanup() { m_bench.reset(); }

    void theStepsOfASave()
    {
        m_bench->open("a.png");
        save(in("b.png"));
        QCOMPARE(m_bench->steps,
                 (QStringList{"redraw", "written " + in("b.png"), "open " + in("b.png"), "toolbar"}));
        QCOMPARE(pictureIn(in("b.png")), quarters());
        QCOMPARE(ix1().FileName(), in("b.png"));
        QVERIFY(m_trash.names().isEmpty());
        QVERIFY(logTexts().isEmpty());
    }

    void nothingHappensWithoutAName()
    {
        m_bench->open("a.png");
        save(QString());
        save(QString(), true);
        QVERIFY(m_bench->steps.isEmpty());
    }

    void anImageWithoutAFileIsOnlySavedByForce()
    {
        ix1().SetPicture(quarters());
        save(in("b.bmp"));
        QVERIFY(m_bench->steps.isEmpty());
        QVERIFY(!QFile::exists(in("b.bmp")));
        save(in("b.bmp"), true);
        QCOMPARE(pictureIn(in("b.bmp")), quarters());
        QCOMPARE(ix1().FileName(), in("b.bmp"));
    }

    void ofWhatIsReplacedTheFirstContentIsInTheTrash()
    {
        const QString path = m_bench->open("a.png");
        const QByteArray first = contentOf(path);
        ix1().Rotate(90);
        save(path);
        QCOMPARE(m_trash.names(), QStringList{"a (replaced).png"});
        QCOMPARE(m_trash.content("a (replaced).png"), first);
        QCOMPARE(pictureIn(path).size(), QSize(20, 40));
        ix1().Rotate(90);
        save(path); // what this session wrote itself is no loss
        QCOMPARE(m_trash.names().size(), 1);
        m_bench->picture("a.png", {8, 8}); // another program's
        save(path);
        QCOMPARE(m_trash.names().size(), 2);
        QVERIFY(logTexts().isEmpty());
    }

    void withoutATrashTheFileIsReplacedAllTheSame()
    {
        const QString path = m_bench->open("a.png");
        ix1().Rotate(90);
        {
            const ScratchTrash::Closed closed(m_trash);
            save(path);
        }
        QCOMPARE(pictureIn(path).size(), QSize(20, 40));
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logged("Replaced without a copy in the trash: "));
    }

    void pagesThatTheTrashDoesNotTakeStay()
    {
        const QString path = in("a.tif");
        QCOMPARE(QProcess::execute("convert", {"-size", "40x30", "xc:red", "xc:blue", path}), 0);
        const QByteArray pages = contentOf(path);
        ix1().SetFileName(path);
        ix1().Rotate(90);
        {
            const ScratchTrash::Closed closed(m_trash);
            save(path);
        }
        QCOMPARE(contentOf(path), pages);
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logged("may hold more than one picture, and the trash did not take it"));
        QCOMPARE(m_bench->steps, (QStringList{"redraw", "caption " + app::GetAppDisplayName(), "toolbar"}));
        QCOMPARE(ix1().ImagePixelWidth(), 30); // still turned, and can be saved elsewhere
        save(path);                            // with a trash they go there
        QCOMPARE(m_trash.content("a (replaced).tif"), pages);
        QCOMPARE(ix1().PageCount(path), 1);
    }

    void whatMayHoldMoreStaysToo_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QString>("name");
        const QStringList frames{"-size", "40x30", "xc:red", "xc:blue"};
        QTest::newRow("frames of an animation") << frames << "a.gif";
        QTest::newRow("sizes of an icon") << QStringList{"-size", "32x32", "xc:red", "xc:blue"} << "a.ico";
    }

    void whatMayHoldMoreStaysToo()
    {
        QFETCH(QStringList, command);
        QFETCH(QString, name);
        const QString path = m_bench->in(name);
        QCOMPARE(QProcess::execute("convert", command + QStringList{path}), 0);
        const QByteArray whole = contentOf(path);
        ix1().SetFileName(path);
        ix1().Rotate(90);
        {
            const ScratchTrash::Closed closed(m_trash);
            save(path);
        }
        QCOMPARE(contentOf(path), whole);
        QVERIFY(logged("may hold more than one picture"));
        save(path);
        QCOMPARE(m_trash.content(QString(name).replace('.', " (replaced).")), whole);
    }

    void aNameWithoutAFormatCostsNothing()
    {
        m_bench->open("a.png");
        const QString other = m_bench->home.write("other.xyz", "old");
        save(other);
        QCOMPARE(contentOf(other), QByteArray("old"));
        QVERIFY(m_trash.names().isEmpty());
        QCOMPARE(m_bench->steps, (QStringList{"redraw", "caption " + app::GetAppDisplayName(), "toolbar"}));
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logged("no format is written for the extension"));
        QCOMPARE(ix1().FileName(), in("a.png"));
    }

    void aFailedSaveWithoutATrashLeavesTheOldFile()
    {
        const QString path = m_bench->open("a.bmp", {400, 300});
        const QByteArray old = contentOf(path);
        ix1().Rotate(90);
        {
            const ScratchTrash::Closed closed(m_trash);
            const FullDisk disk(2000);
            save(path);
        }
        QCOMPARE(contentOf(path), old);
        QVERIFY(logged("; the old file stays: "));
        QCOMPARE(logTexts().size(), 1);         // both reasons in one line
        QCOMPARE(ix1().ImagePixelWidth(), 300); // what was turned is still there
    }

    void anotherImagesFileIsNotThisSessionsOwn()
    {
        m_bench->open("a.png");
        save(in("best.png")); // held by the control now
        const QByteArray first = contentOf(in("best.png"));
        m_bench->open("b.png", {8, 8});
        save(in("best.png"));
        QCOMPARE(m_trash.content("best (replaced).png"), first);
        QCOMPARE(pictureIn(in("best.png")).size(), QSize(8, 8));
    }

    void anImageWithoutAFileCanBeSavedByItsCommand()
    {
        ix1().SetPicture(quarters());
        const platform::SaveChooserAnswerer chooser(
            [this](const platform::SaveChooser&) { return in("rescued.png"); });
        m_bench->saver.saveAs();
        QCOMPARE(pictureIn(in("rescued.png")), quarters());
    }

    void aNameWithoutAFormatGetsTheDefaultOne()
    {
        m_bench->open("a.png");
        const platform::SaveChooserAnswerer chooser(
            [this](const platform::SaveChooser&) { return in("my.holiday"); });
        m_bench->saver.saveAs();
        QCOMPARE(pictureIn(in("my.holiday.bmp")), quarters());
    }

    void anotherImageThatCameMeanwhileIsNotSaved()
    {
        m_bench->open("a.png");
        m_bench->picture("b.png", {8, 8});
        const platform::SaveChooserAnswerer chooser([this](const platform::SaveChooser&) {
            ix1().SetFileName(in("b.png"));
            return in("new.png");
        });
        m_bench->saver.saveAs();
        QVERIFY(!QFile::exists(in("new.png")));
        QVERIFY(logged("Not saved, since another image was opened meanwhile: "));
    }

    void aFullDiskLeavesNoHalfFile()
    {
        const QString path = m_bench->open("a.bmp", {400, 300});
        const QByteArray old = contentOf(path);
        ix1().Rotate(90);
        {
            const FullDisk disk(2000);
            save(path);
        }
        QVERIFY(!QFile::exists(path));
        QVERIFY(m_trash.names().contains("a.bmp"));
        for (const QString& name : m_trash.names())
            QCOMPARE(m_trash.content(name), old);
        QCOMPARE(QDir(in("")).entryList({"a*"}, QDir::Files | QDir::Hidden), QStringList());
        QCOMPARE(m_bench->steps.at(1), "caption " + app::GetAppDisplayName());
        QCOMPARE(ix1().ImagePixelWidth(), 300);
    }

    void aReadOnlyFileStays()
    {
        const QString path = m_bench->open("a.png");
        const QByteArray old = contentOf(path);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
        ix1().Rotate(90);
        save(path);
        QCOMPARE(contentOf(path), old);
        QVERIFY(m_trash.names().isEmpty());
        QVERIFY(logged("; the old file is read-only and stays"));
        QCOMPARE(m_bench->steps.at(1), "caption " + app::GetAppDisplayName());
        QCOMPARE(ix1().ImagePixelWidth(), 20); // turned; the command reads the file anew
    }

    void aLinkToAReadOnlyFileStaysToo()
    {
        const QString path = m_bench->picture("far/a.png");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
        QVERIFY(QFile::link(path, in("link.png")));
        ix1().SetFileName(in("link.png"));
        save(in("link.png"));
        QVERIFY(QFileInfo(in("link.png")).isSymLink());
        QVERIFY(m_trash.names().isEmpty());
    }

    void ALinkIsWrittenThrough()
    {
        const QString path = m_bench->picture("far/a.png");
        const QByteArray old = contentOf(path);
        QVERIFY(QFile::link(path, in("link.png")));
        ix1().SetFileName(in("link.png"));
        ix1().Rotate(90);
        save(in("link.png"));
        QVERIFY(QFileInfo(in("link.png")).isSymLink());
        QCOMPARE(pictureIn(path).size(), QSize(20, 40));
        QCOMPARE(m_trash.content("a (replaced).png"), old);
    }

    void withoutAnImageNothingIsDeleted()
    {
        const QString path = m_bench->picture("a.png");
        const QByteArray old = contentOf(path);
        save(path, true);
        QCOMPARE(contentOf(path), old);
        QVERIFY(m_trash.names().isEmpty());
        QVERIFY(logged("no image is held"));
    }

    void whatIsNoRegularFileStays_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a directory") << "folder.png";
        QTest::newRow("a device") << "/dev/null";
        QTest::newRow("a directory that has gone") << "gone/a.png";
        QTest::newRow("4,000 letters") << QString(4000, u'x') + ".png";
        QTest::newRow("below a file") << "a.png/b.png";
    }

    void whatIsNoRegularFileStays()
    {
        QFETCH(QString, path);
        if (!path.startsWith(u'/'))
            path = m_bench->in(path);
        m_bench->open("a.png");
        QVERIFY(QDir().mkdir(in("folder.png")));
        const bool isThere = QFileInfo::exists(path);
        save(path);
        QCOMPARE(QFileInfo::exists(path), isThere);
        QVERIFY(m_trash.names().isEmpty());
        QVERIFY(logged("Not saved: "));
        QVERIFY(logTexts().size() == 1);
        QVERIFY(QFile::exists(in("a.png")));
    }

    void names_data() { addOddNames(); }

    void names()
    {
        QFETCH(QString, name);
        const QString path = m_bench->open(name);
        const QByteArray old = contentOf(path);
        ix1().Rotate(90);
        save(path);
        QCOMPARE(pictureIn(path).size(), QSize(20, 40));
        QCOMPARE(m_trash.names(), QStringList{name.chopped(4) + " (replaced).png"});
        QCOMPARE(m_trash.content(m_trash.names().constFirst()), old);
        QVERIFY(logTexts().isEmpty());
    }

    void jpegParametersComeFromTheSettings_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("takesThem");
        QTest::newRow("jpg") << "x.jpg" << true;
        QTest::newRow("jpeg") << "x.jpeg" << true;
        QTest::newRow("another name") << "x.jif" << false;
    }

    void jpegParametersComeFromTheSettings()
    {
        QFETCH(QString, name);
        QFETCH(bool, takesThem);
        m_bench->open("a.png");
        save(m_bench->in("usual-" + name));
        app::save(setting::JPEGLum, 255);
        app::save(setting::JPEGChrome, 0);
        app::save(setting::JPEGSampling, 0);
        app::save(setting::JPEGGray, 1);
        save(m_bench->in(name));
        const QByteArray usual = contentOf(m_bench->in("usual-" + name));
        const QByteArray strong = contentOf(m_bench->in(name));
        QVERIFY(usual.startsWith("\xff\xd8") && strong.startsWith("\xff\xd8"));
        QCOMPARE(firstStep(strong) > firstStep(usual), takesThem);
        QCOMPARE(QImage(m_bench->in(name)).allGray(), takesThem);
        QVERIFY(!QImage(m_bench->in("usual-" + name)).allGray());
    }

    void theDialogForAName()
    {
        const QString path = m_bench->open("a.png");
        platform::SaveChooser asked;
        QString answer;
        const platform::SaveChooserAnswerer chooser([&](const platform::SaveChooser& shown) {
            asked = shown;
            return answer;
        });
        m_bench->saver.saveAs();
        QVERIFY(m_bench->steps.isEmpty()); // nothing was named
        QVERIFY(asked.filters.startsWith(
            "All Supported Image Types|*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.tif;*.tiff;*.wmf;*.ico;*.dcx;*.jif;"
            "*.ljp;*.pbm;*.pcx;*.pgm;*.pic;*.png;*.ppm;*.rle;*.tga;*.wpg"));
        QCOMPARE(asked.extension, QString("bmp"));
        QCOMPARE(asked.name, QString("a.png"));
        QVERIFY(asked.asksBeforeReplacing);
        answer = path; // the very file
        ix1().Rotate(90);
        m_bench->saver.saveAs();
        QCOMPARE(pictureIn(path).size(), QSize(20, 40));
        QCOMPARE(m_trash.names(), QStringList{"a (replaced).png"});
    }
};

QTEST_MAIN(TestImageSaver)
#include "tst_imagesaver.moc"
