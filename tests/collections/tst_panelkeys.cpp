#include "collections/PanelKeys.h"

#include <QTest>

using namespace quorvia::collections;

Q_DECLARE_METATYPE(quorvia::collections::PanelPart)

class TestPanelKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void keys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("tree");
        QTest::addColumn<bool>("list");
        QTest::addColumn<bool>("button");
        QTest::addColumn<bool>("box");
        const auto row = [](const char* name, int key, Qt::KeyboardModifiers modifiers, bool tree, bool list,
                            bool button, bool box) {
            QTest::newRow(name) << key << int(modifiers) << tree << list << button << box;
        };
        row("Down", Qt::Key_Down, {}, true, false, false, true);
        row("Up", Qt::Key_Up, {}, true, false, false, false);
        row("Left", Qt::Key_Left, {}, true, false, false, false);
        row("Right", Qt::Key_Right, {}, true, false, false, false);
        row("Right of the keypad", Qt::Key_Right, Qt::KeypadModifier, true, false, false, false);
        row("Down of the keypad", Qt::Key_Down, Qt::KeypadModifier, true, false, false, true);
        row("Shift+Down", Qt::Key_Down, Qt::ShiftModifier, false, true, false, false);
        row("Ctrl+Up", Qt::Key_Up, Qt::ControlModifier, false, true, false, false);
        row("Alt+Down", Qt::Key_Down, Qt::AltModifier, false, false, false, true);
        row("Shift+Right", Qt::Key_Right, Qt::ShiftModifier, false, false, false, false);
        row("Home", Qt::Key_Home, {}, true, true, false, false);
        row("End", Qt::Key_End, {}, true, true, false, false);
        row("Shift+End", Qt::Key_End, Qt::ShiftModifier, false, true, false, false);
        row("Page Up", Qt::Key_PageUp, {}, true, true, false, false);
        row("Page Down", Qt::Key_PageDown, {}, true, true, false, false);
        row("Space", Qt::Key_Space, {}, true, true, true, true);
        row("Ctrl+Space", Qt::Key_Space, Qt::ControlModifier, true, true, false, false);
        row("Return", Qt::Key_Return, {}, false, true, true, true);
        row("Enter of the keypad", Qt::Key_Enter, Qt::KeypadModifier, false, true, true, true);
        row("Ctrl+Return", Qt::Key_Return, Qt::ControlModifier, false, false, false, false);
        row("Ctrl+A", Qt::Key_A, Qt::ControlModifier, false, true, false, false);
        row("A", Qt::Key_A, {}, false, false, false, false);
        row("Shift+F10", Qt::Key_F10, Qt::ShiftModifier, false, true, false, false);
        row("F10", Qt::Key_F10, {}, false, false, false, false);
        row("plus", Qt::Key_Plus, Qt::ShiftModifier, true, false, false, false);
        row("minus", Qt::Key_Minus, {}, true, false, false, false);
        row("Ctrl+minus", Qt::Key_Minus, Qt::ControlModifier, false, false, false, false);
        row("star, which would open every folder there is", Qt::Key_Asterisk, {}, false, false, false, false);
        row("Escape", Qt::Key_Escape, {}, false, false, false, false);
        row("Delete", Qt::Key_Delete, {}, false, false, false, false);
        row("R", Qt::Key_R, {}, false, false, false, false);
        row("1", Qt::Key_1, {}, false, false, false, false);
        row("]", Qt::Key_BracketRight, {}, false, false, false, false);
        row("Ctrl+C", Qt::Key_C, Qt::ControlModifier, false, false, false, false);
    }

    void keys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        const Qt::KeyboardModifiers held(modifiers);
        QTEST(keepsKey(PanelPart::Tree, key, held), "tree");
        QTEST(keepsKey(PanelPart::List, key, held), "list");
        QTEST(keepsKey(PanelPart::Button, key, held), "button");
        QTEST(keepsKey(PanelPart::NameBox, key, held), "box");
    }
};

QTEST_GUILESS_MAIN(TestPanelKeys)
#include "tst_panelkeys.moc"
