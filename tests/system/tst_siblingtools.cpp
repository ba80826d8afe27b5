// Starting the other tools of the family, and what happens when one is not there.
#include "app/Log.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/Dialogs.h"
#include "system/SiblingTools.h"

#include <QFile>
#include <QTest>

using namespace quorvia;

class TestSiblingTools : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;
    QList<QStringList> m_started; ///< program and arguments
    QStringList m_ran;
    QString m_current;
    platform::ShellCode m_code = platform::ShellCode::Ok;

    system::SiblingSinks sinks()
    {
        return {.owner = nullptr,
                .currentFile = [this] { return m_current; },
                .start =
                    [this](const QString& program, const QStringList& arguments) {
                        m_started.append(QStringList(program) + arguments);
                        return m_code;
                    },
                .runTool = [this](const QString& name) { m_ran.append(name); }};
    }
    static const system::SiblingTool& tool(const QString& title)
    {
        for (const system::SiblingTool& each : system::siblingTools()) {
            if (title == QLatin1String(each.title))
                return each;
        }
        qFatal("no such tool");
    }

    static void tools()
    {
        QTest::addColumn<QString>("title");
        for (const char* title : {"Morphane", "Tessary", "Nomalux"})
            QTest::newRow(title) << QString::fromLatin1(title);
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        m_started.clear();
        m_ran.clear();
        m_current = QStringLiteral("/pics/two words>x.png");
        m_code = platform::ShellCode::Ok;
    }
    void cleanup() { m_home.reset(); }

    void names_data() { tools(); }
    void names()
    {
        QFETCH(QString, title);
        QCOMPARE(QLatin1String(tool(title).runCommand), QStringLiteral("miRun") + title);
        QCOMPARE(QLatin1String(tool(title).webCommand), QStringLiteral("miWeb") + title);
        QCOMPARE(system::siblingTools().size(), std::size_t(3));
    }

    void starts_data() { tools(); }
    void starts()
    {
        QFETCH(QString, title);
        const QString program = m_home->write(QStringLiteral("bin/") + title, "#!/bin/sh\n");
        app::saveOfTool(app::common::ProgramPaths, title, program);
        const platform::MessageBoxAnswerer nobody([](const platform::MessageBox&) {
            QTest::qFail("a box", __FILE__, __LINE__);
            return platform::BoxAnswer::No;
        });
        const QStringList image = title == QLatin1String("Morphane")
                                      ? QStringList(m_current + QStringLiteral(">JPG"))
                                      : QStringList();
        system::runSibling(tool(title), sinks());
        m_current.clear();
        system::runSibling(tool(title), sinks());
        QCOMPARE(m_started, QList<QStringList>({QStringList(program) + image, {program}}));
        QVERIFY(m_ran.isEmpty());
    }

    void isNotThere_data() { tools(); }
    void isNotThere()
    {
        QFETCH(QString, title);
        app::saveOfTool(app::common::ProgramPaths, title, QStringLiteral("/nowhere/at/all"));
        platform::BoxAnswer answer = platform::BoxAnswer::No;
        QList<platform::MessageBox> boxes;
        const platform::MessageBoxAnswerer answerer([&](const platform::MessageBox& box) {
            boxes.append(box);
            return answer;
        });
        system::runSibling(tool(title), sinks());
        QVERIFY(m_ran.isEmpty());
        answer = platform::BoxAnswer::Yes;
        system::runSibling(tool(title), sinks());
        QCOMPARE(m_ran, QStringList(QStringLiteral("miWeb") + title));
        QVERIFY(m_started.isEmpty());
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes.first().title, QStringLiteral("Program Not Found"));
        QVERIFY(boxes.first().buttons == platform::BoxButtons::YesNo);
        QCOMPARE(boxes.first().text,
                 title + QStringLiteral(" could not be found on this computer.\nWould you like to "
                                        "proceed to the product website where you can download\n"
                                        "and install the application?"));
    }

    /// A stale path does no harm: the next place is looked at.
    void aStalePath()
    {
        const QString program = m_home->write(QStringLiteral("bin/tessary"), "#!/bin/sh\n");
        app::saveOfTool(app::common::ProgramPaths, QStringLiteral("Tessary"),
                        QStringLiteral("/gone/tessary"));
        app::saveOfTool(app::common::ComponentPaths, QStringLiteral("Tessary"), program);
        system::runSibling(tool(QStringLiteral("Tessary")), sinks());
        QCOMPARE(m_started, QList<QStringList>({{program}}));
    }

    void aFailedStartIsLogged()
    {
        const QString program = m_home->write(QStringLiteral("bin/nomalux"), "rubbish");
        app::saveOfTool(app::common::ProgramPaths, QStringLiteral("Nomalux"), program);
        m_code = platform::ShellCode::BadExecutable;
        system::runSibling(tool(QStringLiteral("Nomalux")), sinks());
        QFile log(app::logPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains(program.toUtf8() + ": The executable file is invalid or corrupt"));
        QVERIFY(m_ran.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSiblingTools)
#include "tst_siblingtools.moc"
