// What the package's scripts do with the settings that all users share: the program's part goes, others'
// stays, and no script ever fails. They run with that store and the program in places of the test.
#include "platform/SettingsStore.h"
#include "support/FileContent.h"
#include "support/ProgramAnswer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace quorvia;
using test::answerOf, test::contentOf, test::ProgramAnswer;

namespace {

const QString paths = QStringLiteral("Software\\Halvexa\\Common\\ProgramPaths");
const QString testing = QStringLiteral("Software\\Halvexa\\Common\\Testing");

} // namespace

class TestPackageScripts : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_program;

    QString store() const { return m_folder->filePath("machine.db"); }

    /// Runs the script called `name` as dpkg does, with the environment `variables` on top.
    ProgramAnswer run(const QString& name, const QString& word,
                      const QList<std::pair<QString, QString>>& variables = {})
    {
        QByteArray text = contentOf(SCRIPTS_FOLDER "/" + name);
        const QByteArray place = "/var/lib/halvexa/machine.db";
        if (text.count(place) != 1)
            return {};
        text.replace(place, store().toUtf8()).replace("/usr/bin/quorvia", m_program.toUtf8());
        QProcess script;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto& [variable, value] : variables)
            environment.insert(variable, value);
        script.setProcessEnvironment(environment);
        return answerOf(script, "/bin/sh", {"-c", QString::fromUtf8(text), name, word});
    }

    /// Makes the store with the row of one tool for each of `tools`, and the row common to all.
    void fill(const QStringList& tools)
    {
        platform::SettingsStore settings(store());
        for (const QString& tool : tools)
            QCOMPARE(settings.write(paths, tool, platform::ValueType::Text, "/opt/" + tool),
                     platform::WriteResult::Written);
        QCOMPARE(settings.write(testing, "Test", platform::ValueType::Text, "Vaild"),
                 platform::WriteResult::Written);
    }

    /// The tools that still stand in the store.
    QStringList tools() const
    {
        const platform::SettingsStore settings(store());
        QStringList found;
        for (const char* tool : {"Quorvia", "Morphane"}) {
            if (settings.read(paths, QLatin1String(tool)))
                found.append(QLatin1String(tool));
        }
        return found;
    }

  private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_program = QStringLiteral(PROGRAM);
    }

    void theProgramTakesItsPartBack_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QStringList>("left");
        QTest::newRow("remove") << "remove" << QStringList{"Morphane"};
        QTest::newRow("upgrade") << "upgrade" << QStringList{"Quorvia", "Morphane"};
        QTest::newRow("deconfigure") << "deconfigure" << QStringList{"Quorvia", "Morphane"};
    }
    void theProgramTakesItsPartBack()
    {
        QFETCH(QString, word);
        QFETCH(QStringList, left);
        fill({"Quorvia", "Morphane"});
        const ProgramAnswer answer = run("prerm", word);
        QCOMPARE(answer.output, QString());
        QCOMPARE(answer.code, 0);
        QCOMPARE(tools(), left);
    }

    void withoutAStoreNothingIsMade()
    {
        for (const char* script : {"prerm", "postrm"}) {
            for (const char* word : {"remove", "purge"}) {
                const ProgramAnswer answer = run(script, word);
                QCOMPARE(answer.output, QString());
                QCOMPARE(answer.code, 0);
            }
        }
        QVERIFY(QDir(m_folder->path()).isEmpty());
    }

    /// Users may write beside the store: what they link there is theirs.
    void noLinkIsFollowed()
    {
        const QString other = m_folder->filePath("other");
        QFile file(other);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("no database"), 11);
        file.close();
        QVERIFY(QFile::link(other, store()));
        QCOMPARE(run("prerm", "remove").code, 0);
        QCOMPARE(run("postrm", "purge").code, 0);
        QCOMPARE(contentOf(other), QByteArray("no database"));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList({"machine.db", "other"}));
    }

    void aProgramThatFailsIsTold()
    {
        fill({"Quorvia"});
        m_program = QStringLiteral("/bin/false");
        const ProgramAnswer answer = run("prerm", "remove");
        QCOMPARE(answer.output, "quorvia: its part of " + store() + " stays\n");
        QCOMPARE(answer.code, 0);
        QCOMPARE(tools(), QStringList{"Quorvia"});
    }

    /// A full disk is when somebody removes programs.
    void noRoomForAHomeIsNoFailure()
    {
        fill({"Quorvia"});
        QCOMPARE(run("prerm", "remove", {{"TMPDIR", m_folder->filePath("none")}}).code, 0);
        QCOMPARE(tools(), QStringList{"Quorvia"});
    }

    void aStoreThatServesNobodyGoes_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QStringList>("tools");
        QTest::addColumn<bool>("goes");
        QTest::newRow("purge, nobody's") << "purge" << QStringList() << true;
        QTest::newRow("purge, a sibling's") << "purge" << QStringList{"Morphane"} << false;
        QTest::newRow("remove") << "remove" << QStringList() << false;
        QTest::newRow("upgrade") << "upgrade" << QStringList() << false;
    }
    void aStoreThatServesNobodyGoes()
    {
        QFETCH(QString, word);
        QFETCH(QStringList, tools);
        QFETCH(bool, goes);
        fill(tools);
        const ProgramAnswer answer = run("postrm", word);
        QCOMPARE(answer.output, QString());
        QCOMPARE(answer.code, 0);
        QCOMPARE(QFile::exists(store()), !goes);
        QCOMPARE(QDir(m_folder->path()).isEmpty(), goes); // and what lies beside it
        QVERIFY(QDir(m_folder->path()).exists());
    }

    /// Users may put what they like into the store.
    void noCommandOfTheStoreIsRun()
    {
        const QString made = m_folder->filePath("made");
        QProcess maker;
        maker.start("sqlite3", {store(), "CREATE TABLE stand_in (key, name); CREATE VIEW settings AS SELECT "
                                         "edit('', 'touch " +
                                             made + "') AS key, '' AS name;"});
        QVERIFY(maker.waitForFinished() && maker.exitCode() == 0);
        QCOMPARE(run("postrm", "purge").code, 0);
        QVERIFY(!QFile::exists(made));
        QVERIFY(QFile::exists(store()));
    }

    void whatCannotBeLookedIntoStays_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("searched");
        QTest::newRow("damaged") << QByteArray("no database") << qEnvironmentVariable("PATH");
        QTest::newRow("without the program that looks") << QByteArray() << "/nowhere";
    }
    void whatCannotBeLookedIntoStays()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, searched);
        fill({});
        if (!content.isEmpty()) {
            QFile file(store());
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QCOMPARE(file.write(content), content.size());
        }
        QCOMPARE(run("postrm", "purge", {{"PATH", searched}}).code, 0);
        QVERIFY(QFile::exists(store()));
    }
};

QTEST_GUILESS_MAIN(TestPackageScripts)
#include "tst_packagescripts.moc"
