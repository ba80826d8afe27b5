#include "commands/Keys.h"

#include <QTest>

using namespace quorvia::commands;

class TestKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void codes_data()
    {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("code");
        QTest::newRow("A") << int(Qt::Key_A) << 65;
        QTest::newRow("Z") << int(Qt::Key_Z) << 90;
        QTest::newRow("0") << int(Qt::Key_0) << 48;
        QTest::newRow("9") << int(Qt::Key_9) << 57;
        QTest::newRow("Esc") << int(Qt::Key_Escape) << 27;
        QTest::newRow("Left") << int(Qt::Key_Left) << 37;
        QTest::newRow("Up") << int(Qt::Key_Up) << 38;
        QTest::newRow("Right") << int(Qt::Key_Right) << 39;
        QTest::newRow("Down") << int(Qt::Key_Down) << 40;
        QTest::newRow("[") << int(Qt::Key_BracketLeft) << 219;
        QTest::newRow("]") << int(Qt::Key_BracketRight) << 221;
        QTest::newRow("a dead key") << int(Qt::Key_Dead_Acute) << 0;
        QTest::newRow("Shift alone") << int(Qt::Key_Shift) << 0;
    }

    void codes()
    {
        QFETCH(int, qtKey);
        QTEST(virtualKeyCode(qtKey), "code");
    }

    void masks_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("mask");
        QTest::newRow("none") << int(Qt::NoModifier) << 0;
        QTest::newRow("Shift") << int(Qt::ShiftModifier) << 1;
        QTest::newRow("Ctrl") << int(Qt::ControlModifier) << 2;
        QTest::newRow("Alt") << int(Qt::AltModifier) << 4;
        QTest::newRow("Ctrl+Alt") << int(Qt::ControlModifier | Qt::AltModifier) << 6;
        QTest::newRow("keypad only") << int(Qt::KeypadModifier) << 0;
        QTest::newRow("keypad and Shift") << int(Qt::KeypadModifier | Qt::ShiftModifier) << 1;
    }

    void masks()
    {
        QFETCH(int, modifiers);
        QTEST(modifierMask(Qt::KeyboardModifiers(modifiers)), "mask");
    }

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
