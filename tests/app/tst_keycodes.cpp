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
};

QTEST_GUILESS_MAIN(TestKeyCodes)
#include "tst_keycodes.moc"
