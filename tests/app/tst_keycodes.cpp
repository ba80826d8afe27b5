#include "app/KeyCodes.h"

#include <QTest>

using namespace quorvia::app;

class TestKeyCodes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void codes_data()
    {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("code");
        const auto row = [](const char* name, Qt::Key key, int code) {
            QTest::newRow(name) << int(key) << code;
        };
        row("A", Qt::Key_A, 65);
        row("Z", Qt::Key_Z, 90);
        row("0", Qt::Key_0, 48);
        row("9", Qt::Key_9, 57);
        row("Backspace", Qt::Key_Backspace, 8);
        row("Tab", Qt::Key_Tab, 9);
        row("Shift+Tab", Qt::Key_Backtab, 9);
        row("Enter", Qt::Key_Return, 13);
        row("Enter of the keypad", Qt::Key_Enter, 13);
        row("Pause", Qt::Key_Pause, 19);
        row("Esc", Qt::Key_Escape, 27);
        row("Space", Qt::Key_Space, 32);
        row("Page Up", Qt::Key_PageUp, 33);
        row("Page Down", Qt::Key_PageDown, 34);
        row("End", Qt::Key_End, 35);
        row("Home", Qt::Key_Home, 36);
        row("Left", Qt::Key_Left, 37);
        row("Up", Qt::Key_Up, 38);
        row("Right", Qt::Key_Right, 39);
        row("Down", Qt::Key_Down, 40);
        row("Print", Qt::Key_Print, 44);
        row("Insert", Qt::Key_Insert, 45);
        row("Delete", Qt::Key_Delete, 46);
        row("Help", Qt::Key_Help, 47);
        row("Menu", Qt::Key_Menu, 93);
        row("*", Qt::Key_Asterisk, 106);
        row("F1", Qt::Key_F1, 112);
        row("F2", Qt::Key_F2, 113);
        row("F7", Qt::Key_F7, 118);
        row("F10", Qt::Key_F10, 121);
        row("F12", Qt::Key_F12, 123);
        row("F24", Qt::Key_F24, 135);
        row("F25", Qt::Key_F25, 0);
        row(";", Qt::Key_Semicolon, 186);
        row("=", Qt::Key_Equal, 187);
        row("+", Qt::Key_Plus, 187);
        row(",", Qt::Key_Comma, 188);
        row("-", Qt::Key_Minus, 189);
        row(".", Qt::Key_Period, 190);
        row("/", Qt::Key_Slash, 191);
        row("`", Qt::Key_QuoteLeft, 192);
        row("[", Qt::Key_BracketLeft, 219);
        row("backslash", Qt::Key_Backslash, 220);
        row("]", Qt::Key_BracketRight, 221);
        row("'", Qt::Key_Apostrophe, 222);
        row("<", Qt::Key_Less, 226);
        row("a dead key", Qt::Key_Dead_Acute, 0);
        row("Shift alone", Qt::Key_Shift, 0);
        row("Ctrl alone", Qt::Key_Control, 0);
        row("Alt alone", Qt::Key_Alt, 0);
        row("AltGr alone", Qt::Key_AltGr, 0);
        row("a lock", Qt::Key_CapsLock, 0);
        row("no key", Qt::Key_unknown, 0);
    }

    void codes()
    {
        QFETCH(int, qtKey);
        QTEST(virtualKeyCode(qtKey, 0), "code");
    }

    void places_data()
    {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("place");
        QTest::addColumn<int>("code");
        constexpr int cyrillic = 0x0419; // any letter that is not Latin
        const std::pair<int, const char*> rows[] = {
            {10, "1234567890"}, {24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};
        for (const auto& [first, keys] : rows) {
            for (int i = 0; keys[i] != 0; ++i)
                QTest::addRow("Cyrillic on %c", keys[i]) << cyrillic << first + i << int(keys[i]);
        }
        const auto row = [](const char* name, int key, int place, int code) {
            QTest::newRow(name) << key << place << code;
        };
        row("Cyrillic on [", cyrillic, 34, 219);
        row("Cyrillic on ]", cyrillic, 35, 221);
        for (const int place : {0, 9, 20, 23, 36, 37, 47, 51, 59, 61, 94})
            QTest::addRow("Cyrillic on no key of ours, %d", place) << cyrillic << place << 0;
        row("French &", Qt::Key_Ampersand, 10, '1');
        row("French quote", Qt::Key_QuoteDbl, 12, '3');
        row("French '", Qt::Key_Apostrophe, 13, '4');
        row("French -", Qt::Key_Minus, 15, '6');
        row("a dead key on [", Qt::Key_Dead_Circumflex, 34, 219);
        row("Shift+2", Qt::Key_At, 11, '2');
        row("German + on ]", Qt::Key_Plus, 35, 221);
        row("- in its own place", Qt::Key_Minus, 20, 189);
        row("+ of the keypad", Qt::Key_Plus, 86, 187);
        row("French A on Q", Qt::Key_A, 24, 'A');
        row("[ on a digit", Qt::Key_BracketLeft, 11, 219);
        row("] on a digit", Qt::Key_BracketRight, 12, 221);
        row("a digit on another", Qt::Key_7, 11, '7');
        row("Left on a letter", Qt::Key_Left, 24, 37);
        row("F12 on a letter", Qt::Key_F12, 24, 123);
        row("* on a digit", Qt::Key_Asterisk, 10, '1');
        row("* of the keypad", Qt::Key_Asterisk, 63, 106);
    }

    void places()
    {
        QFETCH(int, qtKey);
        QFETCH(int, place);
        QTEST(virtualKeyCode(qtKey, quint32(place)), "code");
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

    void names_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("mask");
        QTest::addColumn<QString>("name");
        QTest::newRow("letter") << int('K') << 0 << "K";
        QTest::newRow("digit") << int('2') << 2 << "Ctrl+2";
        QTest::newRow("Alt") << int('F') << 4 << "Alt+F";
        QTest::newRow("all modifiers") << 118 << 7 << "Ctrl+Alt+Shift+F7";
        QTest::newRow("first function key") << 112 << 0 << "F1";
        QTest::newRow("last function key") << 135 << 0 << "F24";
        QTest::newRow("Enter") << 13 << 2 << "Ctrl+Enter";
        QTest::newRow("Esc") << 27 << 0 << "Esc";
        QTest::newRow("Space") << 32 << 0 << "Space";
        QTest::newRow("Left") << 37 << 0 << "Left";
        QTest::newRow("Up") << 38 << 0 << "Up";
        QTest::newRow("Right") << 39 << 0 << "Right";
        QTest::newRow("Down") << 40 << 0 << "Down";
        QTest::newRow("Delete") << 46 << 0 << "Delete";
        QTest::newRow("[") << 219 << 0 << "[";
        QTest::newRow("]") << 221 << 0 << "]";
    }

    void names()
    {
        QFETCH(int, code);
        QFETCH(int, mask);
        QTEST(keyName(code, mask), "name");
    }
};

QTEST_GUILESS_MAIN(TestKeyCodes)
#include "tst_keycodes.moc"
