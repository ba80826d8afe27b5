// The manual page and the scripts of completion as their readers take them: without complaint, and bash, fish
// and zsh complete what they should. The files are those that a package would carry.
#include "commands/CommandHelp.h"
#include "support/FileContent.h"
#include "support/ProgramAnswer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace quorvia;
using test::answerOf, test::contentOf, test::ProgramAnswer;

namespace {

const QString handout = QStringLiteral(HANDOUT_FOLDER "/");

QStringList sortedLines(const QString& text)
{
    QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

} // namespace

class TestShells : public QObject
{
    Q_OBJECT

  private:
    QTemporaryDir m_folder;

    /// What `word` behind "quorvia" becomes in `shell`, sorted.
    QStringList completed(const QString& shell, const QString& word) const
    {
        if (shell == QLatin1String("bash"))
            return sortedLines(answerOf(shell,
                                        {"--norc", "-c",
                                         "source '" + handout +
                                             "quorvia'; COMP_WORDS=(quorvia \"$1\"); COMP_CWORD=1; "
                                             "_quorvia; printf '%s\\n' \"${COMPREPLY[@]}\"",
                                         "bash", word},
                                        m_folder.path())
                                   .output);
        QString words = answerOf("env",
                                 {"HOME=" + m_folder.path(), shell, "--no-config", "-c",
                                  "source '" + handout + "quorvia.fish'; complete -C 'quorvia " + word + "'"},
                                 m_folder.path())
                            .output;
        QStringList lines;
        for (const QString& line : sortedLines(words))
            lines.append(line.section(u'\t', 0, 0));
        return lines;
    }

  private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        for (const char* name : {"dawn.JPG", "dawn.qol", "day.txt", "two words.png"}) {
            QFile file(m_folder.filePath(QLatin1String(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("days")));
    }

    void theFilesHoldTheTexts()
    {
        QCOMPARE(contentOf(handout + "quorvia"), commands::bashCompletion());
        QCOMPARE(contentOf(handout + "_quorvia"), commands::zshCompletion());
        QCOMPARE(contentOf(handout + "quorvia.fish"), commands::fishCompletion());
        QCOMPARE(contentOf(handout + "quorvia.1"), commands::manualPage(VERSION, RELEASE_DATE));
    }

    void noComplaint_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("bash") << "bash" << QStringList{"-n", handout + "quorvia"};
        QTest::newRow("zsh") << "zsh" << QStringList{"-n", handout + "_quorvia"};
        QTest::newRow("fish") << "fish" << QStringList{"--no-config", "-n", handout + "quorvia.fish"};
        QTest::newRow("mandoc") << "mandoc" << QStringList{"-Tlint", handout + "quorvia.1"};
        QTest::newRow("groff") << "groff"
                               << QStringList{"-man", "-ww", "-z", "-Tutf8", handout + "quorvia.1"};
    }
    void noComplaint()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        const ProgramAnswer answer = answerOf(program, arguments);
        QCOMPARE(answer.output, QString());
        QCOMPARE(answer.code, 0);
    }

    void theManualPageShowsTheCommands()
    {
        const ProgramAnswer page = answerOf("mandoc", {"-Tascii", handout + "quorvia.1"});
        QCOMPARE(page.code, 0);
        const QString text = QString(page.output).remove(QRegularExpression(".\b"));
        QVERIFY2(text.simplified().contains("/miNext Go to the next image. /miPrevious "), qPrintable(text));
        QVERIFY(text.contains("~/.config/halvexa/user.db"));
    }

    void completes_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QStringList>("expected");
        for (const QString shell : {"bash", "fish"}) {
            const bool bash = shell == QLatin1String("bash");
            const QByteArray name = shell.toLatin1();
            const auto row = [&name](const char* what) -> QTestData& {
                return QTest::newRow((name + ": " + what).constData());
            };
            const QString slash = bash ? "" : "/"; // the one adds it later
            row("a command") << shell << "/miNe" << QStringList{"/miNext"};
            row("commands") << shell << "/miRotate" << QStringList{"/miRotateClock", "/miRotateCounter"};
            row("not on a line") << shell << "/miThumbDel" << QStringList();
            row("an option") << shell << "--v" << QStringList{"--version"};
            row("a word that is a command's") << shell << "/uninst" << QStringList{"/uninstall"};
            row("pictures, playlists, folders")
                << shell << "da" << QStringList{"dawn.JPG", "dawn.qol", "days" + slash};
        }
        QTest::newRow("bash: blanks") << "bash"
                                      << "tw" << QStringList{"two words.png"};
        QTest::newRow("bash: a text, left to the shell") << "bash"
                                                         << "day.t" << QStringList();
        QTest::newRow("fish: blanks") << "fish"
                                      << "two\\ w" << QStringList{"two words.png"};
        QTest::newRow("fish: a quote") << "fish"
                                       << "\"two w" << QStringList{"two words.png"};
        QTest::newRow("fish: home") << "fish"
                                    << "~/da" << QStringList{"~/dawn.JPG", "~/dawn.qol", "~/days/"};
    }
    void completes()
    {
        QFETCH(QString, shell);
        QFETCH(QString, word);
        QFETCH(QStringList, expected);
        QCOMPARE(completed(shell, word), expected);
    }

    /// What zsh makes of a line at its Tab key, asked of an interactive one.
    void zshCompletes_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a command") << "/miNe"
                                   << "/miNext ";
        QTest::newRow("commands, as far as they agree") << "/miRotateC"
                                                        << "/miRotateC";
        QTest::newRow("not on a line") << "/miThumbDel"
                                       << "/miThumbDel";
        QTest::newRow("an option") << "--v"
                                   << "--version ";
        QTest::newRow("a word that is a command's") << "/uninst"
                                                    << "/uninstall ";
        QTest::newRow("a picture") << "dawn.J"
                                   << "dawn.JPG ";
        QTest::newRow("a folder, not the text beside it") << "day"
                                                          << "days/";
        QTest::newRow("blanks") << "two"
                                << "two\\ words.png ";
    }
    void zshCompletes()
    {
        QFETCH(QString, word);
        QFETCH(QString, expected);
        const ProgramAnswer answer =
            answerOf("zsh",
                     {"-f", "-c",
                      "zmodload zsh/zpty; TERM=vt100 zpty shell zsh -f -i\n"
                      "zpty -w shell \"PS1=; fpath=(${1:h} \\$fpath); autoload -U compinit; compinit -u -D; "
                      "tell() { print -r -- \\$BUFFER'|' >told.part; mv told.part told; zle kill-buffer }; "
                      "zle -N tell; bindkey '^Xp' tell; touch ready\"\n"
                      "for each in {1..200}; do [[ -e ready ]] && break; sleep 0.1; done\n"
                      "zpty -w -n shell \"quorvia $2\"$'\\t\\C-xp'\n"
                      "for each in {1..200}; do [[ -e told ]] && break; sleep 0.1; done\n"
                      "cat told; rm -f told ready; zpty -d shell",
                      "zsh", handout + "_quorvia", word},
                     m_folder.path());
        QCOMPARE(answer.output, "quorvia " + expected + "|\n");
    }
};

QTEST_GUILESS_MAIN(TestShells)
#include "tst_shells.moc"
