// Reading the sections of the definition file.
#include "../support/ScratchHome.h"
#include "app/Log.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "commands/InterfaceFile.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace quorvia;
using commands::definitionSection;
using commands::InterfaceFile;
using test::ScratchHome;

namespace {

const QString menuName = QStringLiteral("Menu");

QByteArray logText()
{
    QFile file(app::logPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Keeps the texts of the message boxes of its lifetime.
struct Boxes
{
    QStringList texts;
    platform::MessageBoxAnswerer answerer{[this](const platform::MessageBox& box) {
        texts << box.text;
        return platform::BoxAnswer::Ok;
    }};
};

} // namespace

class TestInterfaceFile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sections_data()
    {
        QTest::addColumn<QString>("definition");
        QTest::addColumn<QString>("section"); // null: none
        const auto row = [](const char* name, const char* definition, const QString& section) {
            QTest::newRow(name) << QString::fromUtf8(definition) << section;
        };
        const QString found = QStringLiteral("A:miA|B:miB");
        row("to the end", "\r\n----- StrData:Menu\r\nA:miA|B:miB", found);
        row("to the next section", "\r\n----- StrData:Menu\r\nA:miA|B:miB\r\n----- StrData:Toolbar\r\n0|miA",
            found);
        row("behind the other section",
            "\r\n----- StrData:Toolbar\r\n0|miA\r\n----- StrData:Menu\r\nA:miA|B:miB", found);
        row("text before it", "words\r\nwords\r\n----- StrData:Menu\r\nA:miA|B:miB", found);
        row("broken lines", "\r\n----- StrData:Menu\r\nA:m\r\niA|\r\n\r\nB:miB\r\n", found);
        row("nothing behind the marker", "\r\n----- StrData:MenuA:miA|B:miB", found);
        row("other case", "\r\n----- sTRdATA:mENU\r\nA:miA|B:miB", found);
        row("ended in the middle of a line", "\r\n----- StrData:Menu\r\nA:miA|B:miB----- anything", found);
        row("the first of two", "\r\n----- StrData:Menu\r\nA:miA|B:miB\r\n----- StrData:Menu\r\nC", found);
        row("lines that end with LF", "\n----- StrData:Menu\nA:m\niA|B:miB\n----- StrData:Toolbar\n0", found);
        row("both kinds of line end", "\r\n----- StrData:Menu\nA:m\r\niA|B:miB\n", found);
        row("a mark of the byte order", "\xEF\xBB\xBF\r\n----- StrData:Menu\r\nA:miA|B:miB", found);
        row("blanks stay", "\r\n----- StrData:Menu\r\n A :miA \r\n  |", QStringLiteral(" A :miA   |"));
        row("five dashes without a blank stay", "\r\n----- StrData:Menu\r\n-----|A",
            QStringLiteral("-----|A"));
        row("a lone return stays", "\r\n----- StrData:Menu\r\nA\rB", QStringLiteral("A\rB"));
        row("letters beyond ASCII",
            "\r\n----- StrData:Menu\r\n\xC3\x96"
            "ffnen:miOpen|",
            QStringLiteral("\u00d6ffnen:miOpen|"));
        row("empty section", "\r\n----- StrData:Menu\r\n\r\n----- StrData:Toolbar\r\n0", QStringLiteral(""));
        row("nothing behind it", "\r\n----- StrData:Menu", QStringLiteral(""));
        row("on the first line", "----- StrData:Menu\r\nA:miA|B:miB", QString());
        row("not at the begin of its line", "\r\n ----- StrData:Menu\r\nA", QString());
        row("another section only", "\r\n----- StrData:Toolbar\r\n0|miA", QString());
        row("no definition", "\x01\x02\xFF\xFE words", QString());
        row("empty", "", QString());
    }

    void sections()
    {
        QFETCH(QString, definition);
        QFETCH(QString, section);
        const std::optional<QString> found = definitionSection(definition, menuName);
        QCOMPARE(found.has_value(), !section.isNull());
        QCOMPARE(found.value_or(QString()), section);
    }

    void bothSectionsOfTheFile()
    {
        const ScratchHome home;
        const Boxes boxes;
        home.write(QStringLiteral("root/interface.dat"),
                   "\r\n----- StrData:Toolbar\r\n0|mi\r\nA\r\n----- StrData:Menu\r\nA:miA|B\r\n");
        const InterfaceFile file;
        QCOMPARE(file.MenuString(), QStringLiteral("A:miA|B"));
        QCOMPARE(file.ToolbarString(), QStringLiteral("0|miA"));
        QCOMPARE(boxes.texts, QStringList());
        QCOMPARE(logText(), QByteArray());
    }

    void aSectionThatIsNotThereIsLogged()
    {
        const ScratchHome home;
        const Boxes boxes;
        home.write(QStringLiteral("root/interface.dat"),
                   "\x8f\x03 no plain text\r\n----- StrData:Menu\r\nA|B");
        const InterfaceFile file;
        QCOMPARE(file.MenuString(), QStringLiteral("A|B"));
        QCOMPARE(logText(), QByteArray());
        QCOMPARE(file.ToolbarString(), QString());
        QVERIFY(logText().contains("interface.dat has no section Toolbar"));
        QCOMPARE(boxes.texts, QStringList());
    }

    void hugeFilesAreNotRead()
    {
        const ScratchHome home;
        const QByteArray head = "\r\n----- StrData:Menu\r\nA|";
        constexpr int most = 1024 * 1024;
        home.write(QStringLiteral("root/interface.dat"), head + QByteArray(most - head.size(), 'x'));
        QCOMPARE(InterfaceFile().MenuString().size(), most - head.size() + 2);
        home.write(QStringLiteral("root/interface.dat"), head + QByteArray(most - head.size() + 1, 'x'));
        QCOMPARE(InterfaceFile().MenuString(), QString());
        QVERIFY(logText().contains("interface.dat cannot be read or is too large"));
    }

    void withoutAFileEachSectionSaysSo()
    {
        const ScratchHome home;
        Boxes boxes;
        // A pipe of the name comes before the shipped file when it is no file: nothing may wait for it.
        QVERIFY(QDir().mkpath(home.path(QStringLiteral("root"))));
        QCOMPARE(
            ::mkfifo(QFile::encodeName(home.path(QStringLiteral("root/interface.dat"))).constData(), 0600),
            0);
        QVERIFY(!InterfaceFile().MenuString().isEmpty()); // the shipped one
        QCOMPARE(boxes.texts, QStringList());
        const InterfaceFile missing(nullptr, home.path(QStringLiteral("none/interface.dat")));
        QCOMPARE(missing.MenuString(), QString());
        QCOMPARE(missing.ToolbarString(), QString());
        const QString text =
            QStringLiteral("Error: Could not locate 'interface.dat' file. Please re-install software.");
        QCOMPARE(boxes.texts, (QStringList{text, text}));
    }

    void textsAreStoredAndNeverReadBack()
    {
        const ScratchHome home;
        app::openSettings();
        QVERIFY(InterfaceFile::SetMenuString(QStringLiteral("mine:miA|")));
        QVERIFY(InterfaceFile::SetToolbarString(QStringLiteral("0|miA")));
        const auto stored = [](const char* key) {
            return app::GetAppSetting(QStringLiteral("Settings"), QLatin1String(key), QString()).toString();
        };
        QCOMPARE(stored("Menu"), QStringLiteral("mine:miA|"));
        QCOMPARE(stored("Toolbar"), QStringLiteral("0|miA"));
        home.write(QStringLiteral("root/interface.dat"),
                   "\r\n----- StrData:Menu\r\nA|B\r\n----- StrData:Toolbar\r\n7");
        QCOMPARE(InterfaceFile().MenuString(), QStringLiteral("A|B"));
        QCOMPARE(InterfaceFile().ToolbarString(), QStringLiteral("7"));
        app::closeSettings();
    }
};

QTEST_GUILESS_MAIN(TestInterfaceFile)
#include "tst_interfacefile.moc"
