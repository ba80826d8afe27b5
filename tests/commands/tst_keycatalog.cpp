// The catalog of the main window's keys against the keyboard itself: every key in it does what it says, and
// no other key does anything.
#include "../support/ScratchHome.h"
#include "commands/Keyboard.h"
#include "commands/KeyCatalog.h"
#include "commands/ShortcutTable.h"
#include "platform/Dialogs.h"

#include <QSet>
#include <QTest>

using namespace quorvia;
using namespace quorvia::commands;

namespace {

/// A keyboard that writes down what it does.
class Bench
{
  public:
    Bench()
    {
        fillShortcuts(shortcuts, fixedShortcuts());
        fillShortcuts(shortcuts, mailShortcut());
    }

    QStringList press(int keyCode, int shift)
    {
        done.clear();
        for (QTimer* const timer : keyboard.findChildren<QTimer*>())
            timer->stop(); // as 100 ms without a key do
        keyboard.keyDown(keyCode, shift);
        return done;
    }

    QStringList done;
    ShortcutTable shortcuts;
    Keyboard keyboard{&shortcuts, KeyboardSinks{.owner = nullptr,
                                                .runTool = [this](const QString& name) { done << name; },
                                                .isDescriptionUnsaved = [] { return false; },
                                                .minimise = [this] { done << "minimise"; },
                                                .fitWindowToImage = [this] { done << "fit"; },
                                                .interfaceVersions = [] { return QString(); },
                                                .endProcess = [this] { done << "end"; },
                                                .letPendingEventsRun = [] {}}};
    const platform::MessageBoxAnswerer answerer{[this](const platform::MessageBox&) {
        done << "box";
        return platform::BoxAnswer::No;
    }};
};

} // namespace

class TestKeyCatalog : public QObject
{
    Q_OBJECT

    const test::ScratchHome m_home;

  private Q_SLOTS:
    void everyKeyDoesWhatItSays()
    {
        Bench bench;
        for (const KeyText& key : mainWindowKeys()) {
            const QStringList done = bench.press(key.keyCode, key.shift);
            QCOMPARE(done.size(), 1);
            if (!key.command.isEmpty())
                QCOMPARE(done, QStringList{key.command});
            QVERIFY2(!key.text.isEmpty() && !key.keys.isEmpty(), qPrintable(done.join(u' ')));
            QVERIFY2(key.group != CommandGroup::OtherNames, qPrintable(key.text));
        }
    }

    void noOtherKeyDoesAnything()
    {
        constexpr int lastKeyCode = 255;
        constexpr int allModifiers = 7;
        constexpr int f12 = 123; // which goes with any modifier
        QSet<std::pair<int, int>> told;
        for (const KeyText& key : mainWindowKeys())
            told.insert({key.keyCode, key.shift});
        Bench bench;
        for (int code = 1; code <= lastKeyCode; ++code) {
            for (int shift = 0; shift <= (code == f12 ? 0 : allModifiers); ++shift)
                QVERIFY2(bench.press(code, shift).isEmpty() != told.contains({code, shift}),
                         qPrintable(QStringLiteral("%1 with %2").arg(code).arg(shift)));
        }
    }

    void noKeyIsToldOfTwice()
    {
        QSet<QString> seen;
        for (const KeyText& key : mainWindowKeys()) {
            QVERIFY2(!seen.contains(key.keys), qPrintable(key.keys));
            seen.insert(key.keys);
        }
    }

    void otherNamesLeadToTheirCommand()
    {
        QCOMPARE(catalogEntry(QStringLiteral("miWallpaper"))->name, "miWallpaperS");
        QCOMPARE(catalogEntry(QStringLiteral("miNext"))->name, "miNext");
        QCOMPARE(catalogEntry(QStringLiteral("FileListUpdated"))->name, "FileListUpdated");
        QVERIFY(!catalogEntry(QStringLiteral("miNoSuch")));
    }
};

QTEST_MAIN(TestKeyCatalog)
#include "tst_keycatalog.moc"
