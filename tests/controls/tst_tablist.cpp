#include "controls/TabList.h"

#include <QTest>

using namespace quorvia::controls;

Q_DECLARE_METATYPE(TabRef)

namespace {

/// A list with a tab for each letter of `keys`, its caption the letter in upper case.
TabList listOf(const QString& keys)
{
    TabList tabs;
    for (const QChar key : keys) {
        if (!tabs.add(key.toUpper(), key, {}, {}))
            qFatal("a key stands twice in a test's data");
    }
    return tabs;
}

QString keysOf(const TabList& tabs)
{
    QString keys;
    for (int index = 1; index <= tabs.count(); ++index)
        keys += tabs.at(index).Key.isEmpty() ? QStringLiteral("_") : tabs.at(index).Key;
    return keys;
}

/// The indexes of the tabs with the Selected flag.
QString flagsOf(const TabList& tabs)
{
    QString flags;
    for (int index = 1; index <= tabs.count(); ++index)
        flags += tabs.at(index).Selected ? QString::number(index) : QString();
    return flags;
}

QString flagOf(int selected)
{
    return selected == 0 ? QString() : QString::number(selected);
}

TabRef key(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

class TestTabList : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void adds_data();
    void adds();
    void recordsWhatItIsGiven();
    void refusesAKeyTwice_data();
    void refusesAKeyTwice();
    void finds_data();
    void finds();
    void removes_data();
    void removes();
    void selects_data();
    void selects();
    void changesTexts_data();
    void changesTexts();
    void clears();
    void hovers();
    void placesTabs();
};

void TestTabList::adds_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("result");
    QTest::addColumn<int>("nowSelected");
    QTest::newRow("first of all") << "" << 0 << "x"
                                  << ""
                                  << "x" << 1;
    QTest::newRow("first of all, before something") << "" << 0 << "x"
                                                    << "a"
                                                    << "x" << 1;
    QTest::newRow("at the end") << "abc" << 1 << "x"
                                << ""
                                << "abcx" << 1;
    QTest::newRow("before the first") << "abc" << 1 << "x"
                                      << "a"
                                      << "xabc" << 2;
    QTest::newRow("before the selected") << "abc" << 2 << "x"
                                         << "b"
                                         << "axbc" << 3;
    QTest::newRow("behind the selected") << "abc" << 2 << "x"
                                         << "c"
                                         << "abxc" << 2;
    QTest::newRow("before an unknown tab") << "abc" << 2 << "x"
                                           << "q"
                                           << "abcx" << 2;
    QTest::newRow("empty key") << "abc" << 2 << ""
                               << ""
                               << "abc_" << 2;
    QTest::newRow("none selected") << "abc" << 0 << "x"
                                   << "a"
                                   << "xabc" << 0;
    QTest::newRow("another case of the key") << "abc" << 1 << "A"
                                             << ""
                                             << "abcA" << 1;
}

void TestTabList::adds()
{
    QFETCH(QString, keys);
    QFETCH(int, selected);
    QFETCH(QString, added);
    QFETCH(QString, before);
    TabList tabs = listOf(keys);
    tabs.select(selected);
    QVERIFY(tabs.add(QStringLiteral("X"), added, {}, before));
    QTEST(keysOf(tabs), "result");
    QTEST(tabs.selected(), "nowSelected");
    QCOMPARE(flagsOf(tabs), flagOf(tabs.selected()));
}

void TestTabList::recordsWhatItIsGiven()
{
    TabList tabs;
    QVERIFY(tabs.add(QStringLiteral("Active Image"), QStringLiteral("Image"), QStringLiteral("tip"), {}));
    QCOMPARE(tabs.count(), 1);
    QCOMPARE(tabs.at(1).Caption, QStringLiteral("Active Image"));
    QCOMPARE(tabs.at(1).Key, QStringLiteral("Image"));
    QCOMPARE(tabs.at(1).ToolTip, QStringLiteral("tip"));
    QVERIFY(tabs.at(1).Selected);
    QVERIFY(!tabs.at(1).Hover);
}

void TestTabList::refusesAKeyTwice_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("before");
    QTest::newRow("at the end") << "a"
                                << "";
    QTest::newRow("before another") << "b"
                                    << "a";
    QTest::newRow("before itself") << "a"
                                   << "a";
    QTest::newRow("second empty key") << ""
                                      << "";
}

void TestTabList::refusesAKeyTwice()
{
    QFETCH(QString, key);
    QFETCH(QString, before);
    TabList tabs = listOf(QStringLiteral("ab"));
    QVERIFY(tabs.add(QStringLiteral("first without a key"), {}, {}, {}));
    const ControlStatus status = tabs.add(QStringLiteral("X"), key, {}, before);
    QVERIFY(!status);
    QCOMPARE(status.error(), (ControlError{8601, QStringLiteral("Tab with specified key already exists"),
                                           QStringLiteral("gnTabCtl")}));
    QCOMPARE(keysOf(tabs), QStringLiteral("ab_"));
    QCOMPARE(tabs.selected(), 1);
}

void TestTabList::finds_data()
{
    QTest::addColumn<TabRef>("tab");
    QTest::addColumn<int>("index");
    QTest::newRow("key") << key("b") << 2;
    QTest::newRow("another case") << key("B") << 0;
    QTest::newRow("unknown key") << key("q") << 0;
    QTest::newRow("empty key that no tab has") << key("") << 0;
    QTest::newRow("a number as a key") << key("2") << 0;
    QTest::newRow("index") << TabRef(3) << 3;
    QTest::newRow("index 0") << TabRef(0) << 0;
    QTest::newRow("below 0") << TabRef(-1) << 0;
    QTest::newRow("beyond the last") << TabRef(4) << 0;
}

void TestTabList::finds()
{
    QFETCH(TabRef, tab);
    QTEST(listOf(QStringLiteral("abc")).indexOf(tab), "index");
}

void TestTabList::removes_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("selected");
    QTest::addColumn<TabRef>("tab");
    QTest::addColumn<QString>("left");
    QTest::addColumn<int>("nowSelected");
    QTest::addColumn<bool>("signalled");
    QTest::newRow("selected, in the middle") << "abc" << 2 << key("b") << "ac" << 2 << true;
    QTest::newRow("selected, first") << "abc" << 1 << TabRef(1) << "bc" << 1 << true;
    QTest::newRow("selected, last") << "abc" << 3 << TabRef(3) << "ab" << 2 << true;
    QTest::newRow("before the selected") << "abc" << 3 << key("a") << "bc" << 2 << false;
    QTest::newRow("behind the selected") << "abc" << 1 << key("c") << "ab" << 1 << false;
    QTest::newRow("the only one") << "a" << 1 << TabRef(1) << "" << 0 << false;
    QTest::newRow("none selected") << "abc" << 0 << TabRef(1) << "bc" << 0 << false;
    QTest::newRow("unknown key") << "abc" << 2 << key("q") << "abc" << 2 << false;
    QTest::newRow("unknown index") << "abc" << 2 << TabRef(4) << "abc" << 2 << false;
    QTest::newRow("index 0") << "abc" << 2 << TabRef(0) << "abc" << 2 << false;
    QTest::newRow("from an empty list") << "" << 0 << TabRef(1) << "" << 0 << false;
}

void TestTabList::removes()
{
    QFETCH(QString, keys);
    QFETCH(int, selected);
    QFETCH(TabRef, tab);
    TabList tabs = listOf(keys);
    tabs.select(selected);
    QTEST(tabs.remove(tab), "signalled");
    QTEST(keysOf(tabs), "left");
    QTEST(tabs.selected(), "nowSelected");
    QCOMPARE(flagsOf(tabs), flagOf(tabs.selected()));
}

void TestTabList::selects_data()
{
    QTest::addColumn<TabRef>("tab");
    QTest::addColumn<int>("selected");
    QTest::newRow("key") << key("c") << 3;
    QTest::newRow("index") << TabRef(2) << 2;
    QTest::newRow("the selected one") << TabRef(1) << 1;
    QTest::newRow("unknown key") << key("q") << 0;
    QTest::newRow("unknown index") << TabRef(9) << 0;
}

void TestTabList::selects()
{
    QFETCH(TabRef, tab);
    QFETCH(int, selected);
    TabList tabs = listOf(QStringLiteral("abc"));
    QCOMPARE(tabs.select(tab), selected != 0);
    QCOMPARE(tabs.selected(), selected);
    QCOMPARE(flagsOf(tabs), flagOf(selected));
}

void TestTabList::changesTexts_data()
{
    QTest::addColumn<TabRef>("tab");
    QTest::addColumn<int>("changed");
    QTest::newRow("key") << key("b") << 2;
    QTest::newRow("index") << TabRef(3) << 3;
    QTest::newRow("unknown key") << key("q") << 0;
    QTest::newRow("unknown index") << TabRef(0) << 0;
}

void TestTabList::changesTexts()
{
    QFETCH(TabRef, tab);
    QFETCH(int, changed);
    TabList tabs = listOf(QStringLiteral("abc"));
    tabs.setCaption(tab, QStringLiteral("Loading..."));
    tabs.setToolTip(tab, QStringLiteral("tip"));
    for (int index = 1; index <= 3; ++index) {
        const bool isChanged = index == changed;
        QCOMPARE(tabs.at(index).Caption == QStringLiteral("Loading..."), isChanged);
        QCOMPARE(tabs.at(index).ToolTip == QStringLiteral("tip"), isChanged);
    }
}

void TestTabList::clears()
{
    TabList tabs = listOf(QStringLiteral("abc"));
    tabs.hover(2);
    tabs.clear();
    QCOMPARE(tabs.count(), 0);
    QCOMPARE(tabs.selected(), 0);
    QCOMPARE(tabs.hovered(), 0);
    QVERIFY(tabs.add(QStringLiteral("A"), QStringLiteral("a"), {}, {}));
    QCOMPARE(tabs.selected(), 1);
}

void TestTabList::hovers()
{
    TabList tabs = listOf(QStringLiteral("abc"));
    QCOMPARE(tabs.hovered(), 0);
    QVERIFY(tabs.hover(2));
    QVERIFY(!tabs.hover(2));
    QCOMPARE(tabs.hovered(), 2);
    QVERIFY(tabs.hover(3));
    QVERIFY(!tabs.at(2).Hover);
    QVERIFY(tabs.at(3).Hover);
    QVERIFY(tabs.hover(0));
    QCOMPARE(tabs.hovered(), 0);
}

void TestTabList::placesTabs()
{
    TabList tabs = listOf(QStringLiteral("ab"));
    const std::vector<TabSpan> spans{{5, 20}, {28, 30}};
    tabs.place(spans);
    QCOMPARE(tabs.at(2).Left, 28);
    QCOMPARE(tabs.at(2).Width, 30);
    QCOMPARE(tabs.spans(), spans);
}

QTEST_APPLESS_MAIN(TestTabList)
#include "tst_tablist.moc"
