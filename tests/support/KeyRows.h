// The table of a test that presses keys in the parts of a window and asks what its main window got of them.
#pragma once

#include <QTest>

namespace quorvia::test {

inline void addKeyColumns()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QStringList>("keys");
}

/// `key` with `held` is pressed in the part `widget` (its objectName; empty: the window itself), and the main
/// window gets `keys`, each as "code:mask".
inline void addKeyRow(const char* name, const char* widget, int key, Qt::KeyboardModifiers held,
                      const QStringList& keys)
{
    QTest::newRow(name) << QString::fromLatin1(widget) << key << int(held) << keys;
}

/// Presses the key of the present row in `target`.
inline void pressKeyOfRow(QWidget* target)
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QTest::keyClick(target, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
}

} // namespace quorvia::test
