// When the check for a newer version is due, and what the updater is told.
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/Dialogs.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"
#include "support/FileContent.h"
#include "system/UpdateCheck.h"

#include <QTest>

using namespace quorvia;
namespace setting = app::setting;

Q_DECLARE_METATYPE(quorvia::platform::BoxAnswer)

class TestUpdateCheck : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;
    QDate m_today;
    bool m_connected = true;
    QString m_updater;
    QList<QStringList> m_started;
    QString m_weekAtStart;
    platform::ShellCode m_code = platform::ShellCode::Ok;

    system::UpdateSinks sinks()
    {
        return {.today = [this] { return m_today; },
                .isConnected = [this] { return m_connected; },
                .start =
                    [this](const QString& program, const QStringList& arguments) {
                        m_weekAtStart = app::read(setting::LastCheck);
                        m_started.append(QStringList(program) + arguments);
                        return m_code;
                    }};
    }
    void check(bool forced = false) { system::CheckForUpdate(false, forced, sinks()); }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        m_updater = m_home->write(QStringLiteral("bin/updater"), "#!/bin/sh\n");
        app::save(app::common::AutoUpdate, m_updater);
        m_today = QDate(2026, 11, 22);
        m_connected = true;
        m_started.clear();
        m_code = platform::ShellCode::Ok;
    }
    void cleanup() { m_home.reset(); }

    /// The updater is a program of its own, which writes while ours has the store open.
    void anUpdaterTellsOfALaterVersion()
    {
        QCOMPARE(app::read(setting::LatestVersion), QStringLiteral("0.0.0"));
        const QString told = m_home->path(QStringLiteral("told"));
        const QByteArray script =
            "#!/bin/sh\nsqlite3 -cmd '.timeout 5000' '" + platform::userStorePath().toLocal8Bit() +
            "' \"INSERT OR REPLACE INTO settings (key, name, type, value) VALUES "
            "('Software\\\\Halvexa\\\\Quorvia\\\\Settings', 'Latest Version', 1, '2.0.1')\"\n"
            "printf '%s\\n' \"$@\" > '" +
            told.toLocal8Bit() + "'\n";
        m_home->write(QStringLiteral("bin/updater"), script);
        QVERIFY(QFile::setPermissions(m_updater, QFile::ReadOwner | QFile::ExeOwner));
        system::UpdateSinks real = sinks();
        real.start = [](const QString& program, const QStringList& arguments) {
            return platform::startProgram(program, arguments, QString());
        };
        system::CheckForUpdate(false, true, real);
        QTRY_COMPARE(app::read(setting::LatestVersion), QStringLiteral("2.0.1"));
        QTRY_COMPARE(test::contentOf(told),
                     QByteArray("/showdialog\n/versionupdate:(Halvexa;1.0.0;Quorvia;)\n/exit\n"));
    }

    void weeks_data()
    {
        QTest::addColumn<QDate>("day");
        QTest::addColumn<QString>("week");
        QTest::newRow("first day") << QDate(2026, 1, 1) << "12026"; // a Thursday
        QTest::newRow("first Saturday") << QDate(2026, 1, 3) << "12026";
        QTest::newRow("first Sunday") << QDate(2026, 1, 4) << "22026";
        QTest::newRow("a Saturday") << QDate(2026, 11, 21) << "472026";
        QTest::newRow("the Sunday behind it") << QDate(2026, 11, 22) << "482026";
        QTest::newRow("last day") << QDate(2026, 12, 31) << "532026";
        QTest::newRow("the next day, in the same seven") << QDate(2027, 1, 1) << "12027";
        QTest::newRow("a year from a Sunday on") << QDate(2023, 1, 1) << "12023";
        QTest::newRow("its first Saturday") << QDate(2023, 1, 7) << "12023";
        QTest::newRow("its second Sunday") << QDate(2023, 1, 8) << "22023";
        QTest::newRow("a year from a Saturday on") << QDate(2000, 1, 2) << "22000"; // a leap year of 54 weeks
        QTest::newRow("its last day") << QDate(2000, 12, 31) << "542000";
    }

    void weeks()
    {
        QFETCH(QDate, day);
        QTEST(system::weekOfYear(day), "week");
    }

    void arguments_data()
    {
        QTest::addColumn<bool>("report");
        QTest::addColumn<bool>("forced");
        QTest::addColumn<QStringList>("arguments");
        const QString update = QStringLiteral("/versionupdate:(Halvexa;1.0.0;Quorvia;)");
        QTest::newRow("after a start") << false << false << QStringList({update, "/exit"});
        QTest::newRow("asked for") << false << true << QStringList({"/showdialog", update, "/exit"});
        QTest::newRow("installed") << true << true
                                   << QStringList({"/loginstall:(Halvexa;1.0.0;Quorvia;)", "/exit"});
    }

    void arguments()
    {
        QFETCH(bool, report);
        QFETCH(bool, forced);
        QTEST(system::updaterArguments(report, forced), "arguments");
        system::CheckForUpdate(report, forced, sinks());
        QCOMPARE(m_started.size(), 1);
        QTEST(m_started.first().mid(1), "arguments");
        QCOMPARE(m_started.first().first(), m_updater);
    }

    void onceAWeek()
    {
        check();
        QCOMPARE(m_weekAtStart, QStringLiteral("482026")); // it stands before the updater runs
        check();
        m_today = QDate(2026, 11, 28);
        check();
        QCOMPARE(m_started.size(), 1);
        m_today = QDate(2026, 11, 29);
        check();
        QCOMPARE(m_started.size(), 2);
        QCOMPARE(app::read(setting::LastCheck), QStringLiteral("492026"));
    }

    void forcedCounts()
    {
        check(true);
        check(true);
        QCOMPARE(m_started.size(), 2);
        check();
        QCOMPARE(m_started.size(), 2);
    }

    void switchedOff()
    {
        app::save(setting::AutoUpdate, 0);
        check();
        QVERIFY(m_started.isEmpty());
        QCOMPARE(app::read(setting::LastCheck), QString());
        check(true);
        QCOMPARE(m_started.size(), 1);
    }

    void withoutConnectionItStaysDue()
    {
        m_connected = false;
        check();
        check(true);
        QVERIFY(m_started.isEmpty());
        QCOMPARE(app::read(setting::LastCheck), QString());
        m_connected = true;
        check();
        QCOMPARE(m_started.size(), 1);
    }

    void withoutUpdater_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("none named") << QString();
        QTest::newRow("gone") << QStringLiteral("/nowhere/updater");
        QTest::newRow("a directory") << QStringLiteral("/tmp");
    }

    void withoutUpdater()
    {
        QFETCH(QString, path);
        app::save(app::common::AutoUpdate, path);
        check();
        check(true);
        QVERIFY(m_started.isEmpty());
        QCOMPARE(app::read(setting::LastCheck), QString());
    }

    void aFailedStartIsNoMatter()
    {
        m_code = platform::ShellCode::AccessDenied;
        check();
        QCOMPARE(app::read(setting::LastCheck), QStringLiteral("482026"));
    }

    void asksBefore_data()
    {
        QTest::addColumn<platform::BoxAnswer>("answer");
        QTest::addColumn<int>("started");
        QTest::newRow("ok") << platform::BoxAnswer::Ok << 1;
        QTest::newRow("cancel") << platform::BoxAnswer::Cancel << 0;
    }

    void asksBefore()
    {
        QFETCH(platform::BoxAnswer, answer);
        platform::MessageBox asked;
        const platform::MessageBoxAnswerer answerer([&](const platform::MessageBox& box) {
            asked = box;
            return answer;
        });
        app::save(setting::AutoUpdate, 0);
        system::askAndCheckForUpdate(nullptr, sinks());
        QTEST(int(m_started.size()), "started");
        QVERIFY(asked.buttons == platform::BoxButtons::OkCancel);
        QCOMPARE(asked.text,
                 QStringLiteral(
                     "This application will know check for an updated version: Please make sure you are "
                     "currently connected to the internet before continuing.\n\nNote: AutoUpdate may not "
                     "work on all computers. You can check for an updated version manually by visiting "
                     "the application homepage.\n\nClick 'Ok' to proceed to check for updates."));
        if (!m_started.isEmpty())
            QCOMPARE(m_started.first().value(1), QStringLiteral("/showdialog"));
    }

    void theFirstStartOfAVersion()
    {
        QVERIFY(system::isFirstStartOfVersion());
        QVERIFY(!system::isFirstStartOfVersion());
        app::save(setting::StartedVersion, QStringLiteral("0.9.9"));
        QVERIFY(system::isFirstStartOfVersion());
        QVERIFY(!system::isFirstStartOfVersion());
    }
};

QTEST_GUILESS_MAIN(TestUpdateCheck)
#include "tst_updatecheck.moc"
