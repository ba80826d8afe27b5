// What the window hands to the desktop: the editor of the current file, the pages of the help.
#include "support/ScratchDesktop.h"
#include "viewer/ViewerBench.h"

#include <QFile>
#include <QLineEdit>
#include <QTest>

using namespace quorvia;
using viewer::frmImageView;

class TestWindowShell : public QObject
{
    Q_OBJECT

  private:
    test::ViewerBench m_bench; // one for all: the desktop is looked at once
    test::ScratchDesktop m_desktop{m_bench.home};

    /// The file that the program `name` was started with last.
    QString startedWith(const char* name) const { return m_desktop.record(QLatin1String(name)).value(1); }

  private Q_SLOTS:
    void initTestCase()
    {
        m_bench.threePictures();
        m_desktop.addType("image/png", "*.png");
        m_desktop.addType("text/html", "*.htm");
        m_desktop.addApplication("files", {"inode/directory"}, "System;FileManager;");
        m_desktop.setDefault("inode/directory", "files");
        m_desktop.addApplication("quorvia", {"image/png"}, "Graphics;Viewer;");
        m_desktop.addApplication("painter", {"image/png"}, "Graphics;RasterGraphics;");
        m_desktop.addApplication("reader", {"text/html"}, "Network;");
        m_desktop.setDefault("image/png", "quorvia");
        m_desktop.setDefault("text/html", "reader");
    }

    void theEditorGetsTheCurrentFile()
    {
        frmImageView& window = m_bench.load({m_bench.in("pics")});
        window.RunTool(QStringLiteral("miEdit"));
        QTRY_COMPARE(startedWith("painter"), m_bench.in("pics/a.png"));
        QVERIFY(m_desktop.record("quorvia").isEmpty());

        m_desktop.forget("painter");
        QVERIFY(QFile::remove(m_bench.in("pics/a.png")));
        window.RunTool(QStringLiteral("miEdit")); // nothing to edit
        window.RunTool(QStringLiteral("miCloseImage"));
        window.RunTool(QStringLiteral("miEdit"));
        QVERIFY(m_bench.logTexts().filter(QStringLiteral("Not run")).isEmpty()); // nor was it tried
        QVERIFY(m_bench.boxes.empty());
    }

    void theFolderOfThePathOpens()
    {
        m_bench.threePictures();
        frmImageView& window = m_bench.load({m_bench.in("pics")});
        window.RunTool(QStringLiteral("miViewInformation"));
        auto* const tPath = window.findChild<QLineEdit*>(QStringLiteral("tPath"));
        QVERIFY(tPath);
        QTest::mouseDClick(tPath, Qt::LeftButton, {}, QPoint(5, 5));
        QTRY_COMPARE(startedWith("files"), m_bench.in("pics"));
    }

    void helpPages_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("page");
        QTest::newRow("help") << "miHelp"
                              << "help/qo_faq_help.htm";
        QTest::newRow("shortcuts") << "miHelpShortcuts"
                                   << "help/qo_shortcut.htm";
    }

    void helpPages()
    {
        QFETCH(QString, command);
        QFETCH(QString, page);
        frmImageView& window = m_bench.load();
        const QString path = m_bench.home.write(QStringLiteral("root/") + page, "<html></html>");
        m_desktop.forget("reader");
        window.RunTool(command);
        QTRY_COMPARE(startedWith("reader"), path);
        QVERIFY(m_bench.boxes.empty());
    }

    void missingHelpIsTold_data() { helpPages_data(); }

    void missingHelpIsTold()
    {
        QFETCH(QString, command);
        QFETCH(QString, page);
        frmImageView& window = m_bench.load();
        QFile::remove(m_bench.home.path(QStringLiteral("root/") + page));
        m_bench.boxes.clear();
        window.RunTool(command);
        QCOMPARE(m_bench.boxes.size(), std::size_t(1));
        QCOMPARE(m_bench.boxes[0].text,
                 QStringLiteral("Help file could not be found… Please re-install the application to fix this "
                                "error."));
        m_bench.boxes.clear();
    }
};

QTEST_MAIN(TestWindowShell)
#include "tst_windowshell.moc"
