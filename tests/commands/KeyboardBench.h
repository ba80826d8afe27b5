// A keyboard on the bench: it writes down what its keys do, and boxes are answered at once.
#pragma once

#include "commands/Keyboard.h"
#include "commands/ShortcutTable.h"
#include "platform/Dialogs.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace quorvia::test {

inline constexpr int f1 = 112;
inline constexpr int f2 = 113;
inline constexpr int f7 = 118;
inline constexpr int f10 = 121;
inline constexpr int f12 = 123;
inline constexpr int escape = 27;

/// A keyboard with the fixed shortcuts that writes down what it does.
class KeyboardBench
{
  public:
    KeyboardBench() { commands::fillShortcuts(shortcuts, commands::fixedShortcuts()); }

    /// Ends the debounces, as 100 ms without a key do.
    void rest() const
    {
        for (const char* name : {"tWait", "tKey"})
            timer(name)->stop();
    }
    QTimer* timer(const char* name) const { return keyboard->findChild<QTimer*>(QLatin1String(name)); }
    QStringList press(int keyCode, int shift)
    {
        done.clear();
        keyboard->keyDown(keyCode, shift);
        return done;
    }
    QStringList pressElsewhere(int keyCode, int shift)
    {
        done.clear();
        keyboard->GlobalKeyPress(keyCode, shift);
        return done;
    }

    /// Makes every command take longer than the debounces, with its events.
    void makeStepsLong()
    {
        whenRun = [this](const QString&) {
            QElapsedTimer step;
            step.start();
            QTRY_VERIFY(step.hasExpired(2 * timer("tKey")->interval()));
        };
    }
    bool isResting() const { return !timer("tWait")->isActive() && !timer("tKey")->isActive(); }

    QStringList done;
    bool unsaved = false;
    platform::BoxAnswer answer = platform::BoxAnswer::No;
    std::vector<platform::MessageBox> boxes;
    commands::ShortcutTable shortcuts;
    std::function<void(const QString&)> whenRun = [](const QString&) {};
    std::unique_ptr<commands::Keyboard> keyboard = std::make_unique<commands::Keyboard>(
        &shortcuts, commands::KeyboardSinks{.owner = nullptr,
                                            .runTool =
                                                [this](const QString& name) {
                                                    done << name;
                                                    whenRun(name);
                                                },
                                            .isDescriptionUnsaved = [this] { return unsaved; },
                                            .minimise = [this] { done << "minimise"; },
                                            .fitWindowToImage = [this] { done << "fit"; },
                                            .interfaceVersions = [] { return QStringLiteral("3.1"); },
                                            .endProcess = [this] { done << "end"; },
                                            .letPendingEventsRun = [this] { done << "events"; }});
    const platform::MessageBoxAnswerer answerer{[this](const platform::MessageBox& box) {
        boxes.push_back(box);
        done << "box";
        return answer;
    }};
};

} // namespace quorvia::test
