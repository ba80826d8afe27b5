#include "commands/Keys.h"

#include <QTest>

using namespace quorvia::commands;

class TestKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tools_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("shift");
        QTest::addColumn<QStringList>("tools");
        const auto row = [](const char* name, int code, int shift, const QStringList& tools) {
            QTest::newRow(name) << code << shift << tools;
        };
        row("Right", 39, 0, {"miNext"});
        row("Left", 37, 0, {"miPrevious"});
        row("Down", 40, 0, {"miNext"});
        row("Up", 38, 0, {"miPrevious"});
        row("Esc", 27, 0, {"miExit"});
        row("]", 221, 0, {"miNext"});
        row("[", 219, 0, {"miPrevious"});
        row("Ctrl+N", 'N', 2, {"miNext"});
        row("Ctrl+B", 'B', 2, {"miPrevious"});
        row("R", 'R', 0, {"miRandom"});
        row("Ctrl+2", '2', 2, {"miBestFit"});
        row("Ctrl+1", '1', 2, {"miActualSize"});
        row("Q", 'Q', 0, {"miCloseImage"});
        row("Shift+Right", 39, 1, {});
        row("Ctrl+Right", 39, 2, {});
        row("Alt+Right", 39, 4, {});
        row("Ctrl+Shift+N", 'N', 3, {});
        row("Ctrl+Esc", 27, 2, {});
        row("no key", 0, 0, {});
    }

    void tools()
    {
        QFETCH(int, code);
        QFETCH(int, shift);
        QTEST(toolsForKey(code, shift), "tools");
    }
};

QTEST_GUILESS_MAIN(TestKeys)
#include "tst_keys.moc"
