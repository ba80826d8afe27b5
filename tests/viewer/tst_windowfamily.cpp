// The window's commands that lead to the maker's pages, to the other tools and to a newer version, on a
// desktop whose programs write down how they were started.
#include "app/Settings.h"
#include "app/WebPages.h"
#include "platform/NetworkState.h"
#include "support/ScratchDesktop.h"
#include "system/WebCommands.h"
#include "viewer/ViewerBench.h"

#include <QFile>
#include <QScopeGuard>
#include <QTest>

using namespace quorvia;
namespace setting = app::setting;

class TestWindowFamily : public QObject
{
    Q_OBJECT

  private:
    test::ViewerBench m_bench; // one for all: the desktop is looked at once
    test::ScratchDesktop m_desktop{m_bench.home};

  private Q_SLOTS:
    void initTestCase()
    {
        m_bench.threePictures();
        m_desktop.addApplication("browser", {"x-scheme-handler/https"}, "Network;", "%u");
        m_desktop.setDefault("x-scheme-handler/https", "browser");
    }

    void pages_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : system::webCommands())
            QTest::newRow(command) << QString::fromLatin1(command);
    }

    void pages()
    {
        QFETCH(QString, command);
        m_desktop.forget(QStringLiteral("browser"));
        m_bench.load().RunTool(command);
        QTRY_COMPARE(m_desktop.record(QStringLiteral("browser")).value(1), system::webAddressOf(command));
        QVERIFY(m_bench.boxes.empty());
    }

    void aPageThatDoesNotOpenIsLogged_data() { pages_data(); }

    /// There is no browser that could be started.
    void aPageThatDoesNotOpenIsLogged()
    {
        QFETCH(QString, command);
        viewer::frmImageView& window = m_bench.load();
        const qsizetype before = m_bench.logTexts().size();
        QVERIFY(QFile::setPermissions(m_bench.in("bin/browser"), QFile::ReadOwner | QFile::WriteOwner));
        const auto back = qScopeGuard([this] { m_desktop.makeProgram(QStringLiteral("browser")); });
        window.RunTool(command);
        const QStringList lines = m_bench.logTexts().mid(before).filter(QStringLiteral("Not run"));
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines[0].startsWith(QStringLiteral("Not run: ") + system::webAddressOf(command)),
                 qPrintable(lines[0]));
        QVERIFY(m_bench.boxes.empty());
    }

    void morphaneGetsTheImage()
    {
        const QString program = m_desktop.makeProgram(QStringLiteral("morphane"));
        viewer::frmImageView& window = m_bench.load({m_bench.in("pics/two words.png")});
        app::saveOfTool(app::common::ProgramPaths, QStringLiteral("Morphane"), program);
        window.RunTool(QStringLiteral("miRunMorphane"));
        QTRY_COMPARE(m_desktop.record(QStringLiteral("morphane")).mid(1),
                     QStringList(m_bench.in("pics/two words.png") + QStringLiteral(">JPG")));
        m_desktop.forget(QStringLiteral("morphane"));
        window.RunTool(QStringLiteral("miCloseImage"));
        window.RunTool(QStringLiteral("miRunMorphane"));
        QTRY_COMPARE(m_desktop.record(QStringLiteral("morphane")).size(),
                     1); // the directory, and no argument
    }

    void aToolThatIsMissingLeadsToItsPage()
    {
        m_desktop.forget(QStringLiteral("browser"));
        viewer::frmImageView& window = m_bench.load();
        const platform::MessageBoxAnswerer yes(
            [](const platform::MessageBox&) { return platform::BoxAnswer::Yes; });
        window.RunTool(QStringLiteral("miRunTessary"));
        QTRY_COMPARE(m_desktop.record(QStringLiteral("browser")).value(1),
                     system::webAddressOf(QStringLiteral("miWebTessary")));
    }

    void theUpdaterAfterAStart_data()
    {
        QTest::addColumn<QString>("startedBefore");
        QTest::addColumn<int>("isDue");
        QTest::addColumn<QString>("form");
        QTest::newRow("the first of this version") << "0.1.0" << 1 << "/loginstall:(";
        QTest::newRow("the first, checks switched off") << "0.1.0" << 0 << "/loginstall:(";
        QTest::newRow("another") << "1.0.0" << 1 << "/versionupdate:(";
    }

    void theUpdaterAfterAStart()
    {
        QFETCH(QString, startedBefore);
        QFETCH(int, isDue);
        QFETCH(QString, form);
        m_bench.close();
        m_desktop.forget(QStringLiteral("updater"));
        viewer::frmImageView& window = m_bench.make();
        app::save(app::common::AutoUpdate, m_desktop.makeProgram(QStringLiteral("updater")));
        app::save(setting::StartedVersion, startedBefore);
        app::save(setting::LastCheck, QString());
        app::save(setting::AutoUpdate, isDue);
        window.buildInterfaceSoon();
        QTRY_VERIFY(window.interfaceTools()->isBuilt());
        QCOMPARE(app::read(setting::StartedVersion), QStringLiteral("1.0.0"));
        QCOMPARE(!app::read(setting::LastCheck).isEmpty(), platform::isConnected());
        if (platform::isConnected())
            QTRY_COMPARE(m_desktop.record(QStringLiteral("updater")).mid(1),
                         QStringList({form + QStringLiteral("Halvexa;1.0.0;Quorvia;)"), "/exit"}));
    }

    void checkingOnDemandAsks()
    {
        viewer::frmImageView& window = m_bench.load();
        m_bench.boxes.clear();
        m_desktop.forget(QStringLiteral("updater"));
        app::save(app::common::AutoUpdate, m_desktop.makeProgram(QStringLiteral("updater")));
        window.RunTool(QStringLiteral("miAutoUpdate"));
        QCOMPARE(m_bench.boxes.size(), std::size_t(1));
        QVERIFY(m_bench.boxes[0].buttons == platform::BoxButtons::OkCancel);
        m_bench.boxes.clear();
        if (platform::isConnected()) // its OK was pressed
            QTRY_COMPARE(m_desktop.record(QStringLiteral("updater")).mid(1),
                         QStringList({"/showdialog", "/versionupdate:(Halvexa;1.0.0;Quorvia;)", "/exit"}));
    }
};

QTEST_MAIN(TestWindowFamily)
#include "tst_windowfamily.moc"
