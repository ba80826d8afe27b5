// What the main window does with a key: two debounces, its fixed keys, and behind them the shortcut table.
// Nearly all of it ends in the name of a command. Whether the tool of a command is enabled is not looked at.
#pragma once

#include "app/PendingEvents.h"
#include "app/WaitingInput.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QWidget;

namespace quorvia::commands {

struct FixedKey;
class ShortcutTable;

/// Where the keys lead. All of them are called.
struct KeyboardSinks
{
    QWidget* owner = nullptr; ///< over which the boxes show; may be null
    std::function<void(const QString& name)> runTool;
    std::function<bool()> isDescriptionUnsaved; ///< `tSaveDes` runs
    std::function<void()> minimise;             ///< hide the main window, minimise it, show it again
    std::function<void()> fitWindowToImage;     ///< does nothing when no image is open
    std::function<QString()> interfaceVersions; ///< of the menu control
    std::function<void()> endProcess;           ///< at once, without closing any window
    std::function<void()> letPendingEventsRun = &app::letPendingEventsRun;
};

class Keyboard : public QObject
{
    Q_OBJECT

  public:
    /// `shortcuts` outlives the keyboard, and may be filled later.
    Keyboard(const ShortcutTable* shortcuts, KeyboardSinks sinks, QObject* parent = nullptr);

    /// The key-down step of the main window: a virtual key code and a modifier mask (1 Shift, 2 Ctrl, 4 Alt).
    /// Dropped within 100 ms of the last one that was taken, and when it came while a step ran that took
    /// longer. Ends in GlobalKeyPress().
    void keyDown(int keyCode, int shift);
    /// What a key does in every window that hands its keys on. Dropped as there, by what was taken from any
    /// of the windows, and while a changed description waits to be saved.
    void GlobalKeyPress(int keyCode, int shift);
    /// Runs a quick action, its name compared without case: "FitWindowToImage". Any other does nothing.
    void QuickFunctions(const QString& name);

  private:
    class Step;

    void prepare(QTimer& timer, const char* name);
    void tick(QTimer& timer);
    void letEscPass(int keyCode, int shift);
    void beginStep();
    void endStep();
    void endDebounces();
    void run(const FixedKey& key);
    void runShortcuts(int keyCode, int shift);
    void askForHelp();
    void askForShortcutHelp();
    void showInformation();
    void exit();
    void askToErase();
    void showEngine();

    const ShortcutTable* m_shortcuts;
    KeyboardSinks m_sinks;
    QTimer m_tWait;
    QTimer m_tKey;
    app::WaitingInput m_waiting; ///< after a step: the keys that came while it ran
    QElapsedTimer m_step;        ///< since the outermost step began
    int m_steps = 0;             ///< that are running, one inside the other
    bool m_boxShown = false;     ///< by the step that runs or ran last
};

} // namespace quorvia::commands
