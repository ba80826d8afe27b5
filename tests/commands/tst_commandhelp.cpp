// What is said of the command line: the help, the manual page and the completion of three shells name each
// command of the catalog that belongs there once, and nothing else.
#include "commands/CommandHelp.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace quorvia;

namespace {

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// "/name" of all commands of the catalog for which `isForCommandLine` holds.
QStringList commandsOfTheCatalog()
{
    QStringList names;
    for (const commands::CommandText& command : commands::commandCatalog()) {
        if (commands::isForCommandLine(command))
            names.append(u'/' + QLatin1String(command.name));
    }
    return names;
}

/// The options that begin with "--", and those that look like commands.
QStringList options()
{
    QStringList words;
    for (const commands::LineOption& option : commands::lineOptions())
        words.append(QLatin1String(option.word));
    return words;
}

/// What the only group of `pattern` catches, wherever it matches in `text`.
QStringList caught(const QByteArray& text, const char* pattern)
{
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::MultilineOption);
    QStringList words;
    auto match = expression.globalMatch(QString::fromUtf8(text));
    while (match.hasNext())
        words.append(match.next().captured(1));
    return words;
}

QByteArray manual()
{
    return commands::manualPage("1.2.3", "2026-01-02");
}

} // namespace

class TestCommandHelp : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theCatalogIsNotEmpty()
    {
        QVERIFY(commandsOfTheCatalog().size() > 60);
        QVERIFY(!commandsOfTheCatalog().contains(QStringLiteral("/FileListUpdated")));
        QCOMPARE(options().size(), 4);
    }

    void eachNameOnce_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<bool>("withMessage");
        QTest::newRow("help") << commands::helpText() << QByteArray("^  ([-/]\\S+)  ") << true;
        QTest::newRow("manual page") << manual().replace("\\-", "-") << QByteArray("^\\.B ([-/][^/\\s]+)$")
                                     << true;
        QTest::newRow("bash") << commands::bashCompletion()
                              << QByteArray("^(?:    local words=')?([-/]\\S+)$") << false;
        QTest::newRow("zsh") << commands::zshCompletion() << QByteArray("^        '([-/][^:]+):") << false;
        QTest::newRow("fish") << commands::fishCompletion().replace(" -l ", " -a --")
                              << QByteArray("^complete -c quorvia -a ([-/]\\S+) -d '") << false;
    }
    void eachNameOnce()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, pattern);
        QFETCH(bool, withMessage);
        QStringList expected = options() + commandsOfTheCatalog();
        if (withMessage)
            expected.append(QLatin1String(commands::messageOption().word));
        QCOMPARE(sorted(caught(text, pattern.constData())), sorted(expected));
    }

    /// A name's words stand behind it.
    void theWordsStandWithTheNames()
    {
        const QByteArray help = commands::helpText();
        const QByteArray page = manual();
        const QByteArray zsh = commands::zshCompletion();
        const QByteArray fish = commands::fishCompletion();
        QVERIFY(help.contains("  /miNext               go to the next image\n"));
        QVERIFY(help.contains("  /tOpenx               the same as miOpen\n"));
        QVERIFY(page.contains(".B /miNext\nGo to the next image.\n"));
        QVERIFY(page.contains(".B /tOpenx\nThe same as miOpen.\n"));
        QVERIFY(zsh.contains("'/miNext:go to the next image'\n"));
        QVERIFY(fish.contains("-a /miNext -d 'go to the next image'\n"));
    }

    void theGroupsOfTheHelp()
    {
        QStringList headings;
        for (const commands::CommandLineGroup& group : commands::commandLineGroups())
            headings.append(QLatin1String(commands::headingOf(group.group)));
        QCOMPARE(caught(commands::helpText(), "^(\\S.*):$"), QStringList("Options") + headings);
        QCOMPARE(caught(manual(), "^\\.SS (.*)$"), headings);
        QCOMPARE(headings.size(), 9);
    }

    void theSectionsOfTheManualPage()
    {
        QCOMPARE(caught(manual(), "^\\.SH (.*)$"),
                 QStringList({"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "ENVIRONMENT",
                              "FILES", "EXIT STATUS", "SEE ALSO"}));
        QVERIFY(manual().startsWith(".TH QUORVIA 1 2026-01-02 \"Quorvia 1.2.3\" "));
    }

    /// Nothing that troff or a shell would take for its own is left in a phrase as it is.
    void phrasesArePlain()
    {
        QVERIFY(manual().contains(".B \\-\\-help\n"));
        QVERIFY(manual().contains(".B \\(ti/.config/halvexa/user.db\n"));
        QVERIFY(commands::zshCompletion().contains("remove the program'\\''s settings"));
        QVERIFY(commands::fishCompletion().contains("remove the program\\'s settings"));
    }

    void theEndingsOfFiles()
    {
        const QList<QByteArray> endings = commands::openedEndings();
        QCOMPARE(endings.first(), QByteArray("bmp"));
        QVERIFY(endings.contains("jif") && endings.contains("wpg") && endings.contains("qol"));
        for (const QString name :
             {"webp", "avif", "heic", "jxl", "pict", "vst"}) // which open when they are named
            QVERIFY2(endings.contains(name.toLatin1()), qPrintable(name));
        QCOMPARE(QSet<QByteArray>(endings.begin(), endings.end()).size(), endings.size());
    }
};

QTEST_GUILESS_MAIN(TestCommandHelp)
#include "tst_commandhelp.moc"
