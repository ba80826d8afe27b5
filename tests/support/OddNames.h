// Names of pictures that are hard on whoever quotes, splits or matches them.
#pragma once

#include <QTest>

namespace quorvia::test {

/// Adds the column "name" and a row a name to the table of a test.
inline void addOddNames()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << "\"a'.png";
    QTest::newRow("percent") << "100%20 %1.png";
    QTest::newRow("newline") << "a\nb.png";
    QTest::newRow("dash") << "-rf.png";
    QTest::newRow("wildcards") << "[a]*?.png";
    QTest::newRow("umlauts") << "Äpfel – größer.png";
}

} // namespace quorvia::test
