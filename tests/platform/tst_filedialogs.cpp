// The dialogs for files and folders on the (offscreen) screen, and the seam that answers them for a test.
#include "../support/ScratchHome.h"
#include "NextDialog.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace quorvia::platform;

namespace {

using NextDialog = quorvia::test::NextDialog<QFileDialog>;

/// Writes `name` into the line of `dialog` and accepts.
void enter(QFileDialog& dialog, const QString& name)
{
    auto* const line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    line->setText(name);
    QTest::keyClick(line, Qt::Key_Return);
}

} // namespace

class TestFileDialogs : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_home.write("pictures/one.png", "1");
        m_home.write("pictures/two.png", "2");
        m_home.write("pictures/words.txt", "w");
        m_home.write("elsewhere/three.png", "3");
    }

    void theNewestAnswererChooses()
    {
        QStringList asked;
        const FolderBrowserAnswerer olderFolder([](const FolderBrowser&) { return QString("/older"); });
        const FileChooserAnswerer olderFile([](const FileChooser&) { return QString("/older/file"); });
        const FilesChooserAnswerer olderFiles([](const FileChooser&) { return QStringList{"/a", "/b"}; });
        const SaveChooserAnswerer olderSave([](const SaveChooser&) { return QString("/older/save"); });
        {
            const FolderBrowserAnswerer folder([&asked](const FolderBrowser& browser) {
                asked << browser.title << browser.start;
                return QString("/newer");
            });
            const FileChooserAnswerer file([&asked](const FileChooser& chooser) {
                asked << chooser.title << chooser.filters << chooser.start;
                return QString("/newer/file");
            });
            const FilesChooserAnswerer files([&asked](const FileChooser& chooser) {
                asked << chooser.title;
                return QStringList{"/c", "/d"};
            });
            const SaveChooserAnswerer save([&asked](const SaveChooser& chooser) {
                asked << chooser.title << chooser.filters << chooser.start << chooser.extension;
                return QString("/newer/save");
            });
            QCOMPARE(browseForFolder(nullptr, {"folder", "/usr"}), QString("/newer"));
            QCOMPARE(chooseFile(nullptr, {"file", "All|*", "/usr"}), QString("/newer/file"));
            QCOMPARE(chooseFiles(nullptr, {"files", "All|*", "/usr"}), QStringList({"/c", "/d"}));
            QCOMPARE(chooseSaveFile(nullptr, {"save", "All|*", "/usr", "png"}), QString("/newer/save"));
        }
        QCOMPARE(asked.join('|'), QString("folder|/usr|file|All|*|/usr|files|save|All|*|/usr|png"));
        QCOMPARE(browseForFolder(nullptr, {}), QString("/older"));
        QCOMPARE(chooseFile(nullptr, {}), QString("/older/file"));
        QCOMPARE(chooseFiles(nullptr, {}), QStringList({"/a", "/b"}));
        QCOMPARE(chooseSaveFile(nullptr, {}), QString("/older/save"));
    }

    void aFolderIsChosen_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("chosen") << "accept"
                                << "/usr/share";
        QTest::newRow("cancelled") << "reject"
                                   << "";
    }
    void aFolderIsChosen()
    {
        QFETCH(QString, button);
        QStringList seen;
        NextDialog next([&](QFileDialog& dialog) {
            seen << dialog.windowTitle() << dialog.directory().path();
            QMetaObject::invokeMethod(&dialog, qPrintable(button), Qt::DirectConnection);
        });
        QTEST(browseForFolder(nullptr, {"Choose", "/usr/share"}), "chosen");
        QCOMPARE(seen, QStringList({"Choose", "/usr/share"}));
    }

    void aDialogWithoutAStartBeginsInTheWorkingDirectory()
    {
        QString first;
        NextDialog before([](QFileDialog& dialog) { enter(dialog, "one.png"); });
        QCOMPARE(chooseFile(nullptr, {"Open", "All|*", pictures()}), pictures() + "/one.png");
        QVERIFY(QDir::setCurrent(m_home.path("elsewhere")));
        NextDialog next([&](QFileDialog& dialog) {
            first = dialog.directory().path();
            dialog.reject();
        });
        QCOMPARE(chooseFile(nullptr, {}), QString());
        QCOMPARE(first, QDir::currentPath());
    }

    void aFileIsChosen()
    {
        QStringList filters;
        NextDialog next([&](QFileDialog& dialog) {
            filters = dialog.nameFilters();
            enter(dialog, "two.png");
        });
        QCOMPARE(chooseFile(nullptr, {"Open", "Pictures|*.png;*.jpg|All|*", pictures()}),
                 pictures() + "/two.png");
        QCOMPARE(filters, QStringList({"Pictures (*.png *.jpg)", "All (*)"}));
    }

    void aRowOfTheFiltersIsShownFirst_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("shown");
        QTest::newRow("usually") << 0 << "Pictures (*.png)";
        QTest::newRow("another") << 1 << "All (*)";
        QTest::newRow("one that is not there") << 2 << "Pictures (*.png)";
    }

    void aRowOfTheFiltersIsShownFirst()
    {
        QFETCH(int, row);
        QString shown;
        NextDialog next([&](QFileDialog& dialog) {
            shown = dialog.selectedNameFilter();
            dialog.reject();
        });
        chooseFile(nullptr, {.filters = "Pictures|*.png|All|*", .shownRow = row});
        QTEST(shown, "shown");
    }

    void severalFilesAreChosen_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("chosen");
        QTest::newRow("one") << "two.png" << QStringList{"two.png"};
        QTest::newRow("several") << "\"one.png\" \"two.png\" \"words.txt\""
                                 << QStringList{"one.png", "two.png", "words.txt"};
        QTest::newRow("none") << "" << QStringList{};
    }
    void severalFilesAreChosen()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, chosen);
        for (QString& name : chosen)
            name.prepend(pictures() + '/');
        QStringList names;
        auto mode = QFileDialog::AnyFile;
        NextDialog next([&](QFileDialog& dialog) {
            names << dialog.objectName() << dialog.windowTitle() << dialog.accessibleName();
            mode = dialog.fileMode();
            enter(dialog, typed);
            if (typed.isEmpty())
                dialog.reject();
        });
        QCOMPARE(chooseFiles(nullptr, {"Add", "All|*", pictures()}), chosen);
        QCOMPARE(names, QStringList({"FilesChooser", "Add", "Add"}));
        QCOMPARE(mode, QFileDialog::ExistingFiles); // else the list below the line lets one be chosen only
    }

    void aNameToWriteIsGivenItsExtension_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("path");
        QTest::newRow("none") << "png"
                              << "new" << pictures() + "/new.png";
        QTest::newRow("its own") << "png"
                                 << "new.PNG" << pictures() + "/new.PNG";
        QTest::newRow("another") << "png"
                                 << "new.jpg" << pictures() + "/new.jpg";
        QTest::newRow("blanks") << "tar.gz"
                                << "a b" << pictures() + "/a b.tar.gz";
        QTest::newRow("not wanted") << ""
                                    << "new" << pictures() + "/new";
        QTest::newRow("elsewhere") << "png" << m_home.path("elsewhere/new")
                                   << m_home.path("elsewhere/new.png");
        QTest::newRow("there already") << "png"
                                       << "one" << pictures() + "/one.png";
    }
    void aNameToWriteIsGivenItsExtension()
    {
        QFETCH(QString, extension);
        QFETCH(QString, typed);
        QStringList names;
        NextDialog next([&](QFileDialog& dialog) {
            names << dialog.objectName() << dialog.windowTitle() << dialog.accessibleName()
                  << dialog.nameFilters() << dialog.directory().path();
            enter(dialog, typed);
        });
        // Nobody is to be asked whether a file is replaced; were he, he would say no.
        quorvia::test::NextDialog<QMessageBox> question([](QMessageBox& box) {
            box.reject();
            qobject_cast<QFileDialog*>(box.parentWidget())->reject();
        });
        QTEST(chooseSaveFile(nullptr, {"Save", "Pictures|*.png", pictures(), extension}), "path");
        QVERIFY(!question.seen());
        QCOMPARE(names, QStringList({"SaveChooser", "Save", "Save", "Pictures (*.png)", pictures()}));
        QFile kept(m_home.path("pictures/one.png"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("1"));
        QVERIFY(!QFile::exists(pictures() + "/new.png"));
    }

    void aNameStandsInTheLineAtFirst_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("none") << "";
        QTest::newRow("new") << "new.png";
        QTest::newRow("there already") << "one.png";
        QTest::newRow("blanks and signs") << "a  b%20 'c'.png";
    }
    void aNameStandsInTheLineAtFirst()
    {
        QFETCH(QString, name);
        QString line;
        NextDialog next([&](QFileDialog& dialog) {
            line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
            dialog.reject();
        });
        chooseSaveFile(nullptr, {.title = "Save", .filters = "All|*", .start = pictures(), .name = name});
        QCOMPARE(line, name);
    }

    void aFileIsReplacedAfterAQuestion_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("agrees");
        QTest::addColumn<bool>("isAsked");
        QTest::newRow("yes") << "one.png" << true << true;
        QTest::newRow("no") << "one.png" << false << true;
        QTest::newRow("another name") << "new.png" << false << false;
    }
    void aFileIsReplacedAfterAQuestion()
    {
        QFETCH(QString, typed);
        QFETCH(bool, agrees);
        QFETCH(bool, isAsked);
        NextDialog next([&](QFileDialog& dialog) { enter(dialog, typed); });
        quorvia::test::NextDialog<QMessageBox> question([&](QMessageBox& box) {
            auto* const dialog = qobject_cast<QFileDialog*>(box.parentWidget());
            box.button(agrees ? QMessageBox::Yes : QMessageBox::No)->click();
            if (!agrees)
                dialog->reject();
        });
        const QString path = chooseSaveFile(
            nullptr, {.title = "Save", .filters = "All|*", .start = pictures(), .asksBeforeReplacing = true});
        QCOMPARE(question.seen(), isAsked);
        QCOMPARE(path, isAsked && !agrees ? QString() : pictures() + "/" + typed);
    }

    void nothingIsWrittenWhenSavingIsCancelled()
    {
        NextDialog next([](QFileDialog& dialog) { dialog.reject(); });
        QCOMPARE(chooseSaveFile(nullptr, {"Save", "Pictures|*.png", pictures(), "png"}), QString());
        QVERIFY(next.seen());
    }

    void anOwnerThatGoesEndsTheDialog_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("folder") << 0;
        QTest::newRow("file") << 1;
        QTest::newRow("files") << 2;
        QTest::newRow("save") << 3;
    }
    void anOwnerThatGoesEndsTheDialog()
    {
        QFETCH(int, kind);
        auto owner = std::make_unique<QWidget>();
        const auto show = [&owner](int of) -> QStringList {
            if (of == 2)
                return chooseFiles(owner.get(), {"Title", "All|*", "/usr"});
            const QString chosen = of == 0   ? browseForFolder(owner.get(), {"Title", "/usr"})
                                   : of == 1 ? chooseFile(owner.get(), {"Title", "All|*", "/usr"})
                                             : chooseSaveFile(owner.get(), {"Title", "All|*", "/usr", "png"});
            return chosen.isEmpty() ? QStringList() : QStringList{chosen};
        };
        NextDialog next([&owner](QFileDialog& dialog) {
            QVERIFY(dialog.parentWidget() == owner.get());
            owner.reset();
        });
        QCOMPARE(show(kind), QStringList());
        QVERIFY(next.seen() && !owner);
    }

  private:
    QString pictures() const { return m_home.path("pictures"); }

    quorvia::test::ScratchHome m_home;
};

QTEST_MAIN(TestFileDialogs)
#include "tst_filedialogs.moc"
