#include "commands/Keyboard.h"

#include "app/EraseSettings.h"
#include "app/KeyCodes.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "commands/FixedKeys.h"
#include "commands/KeyBoxes.h"
#include "commands/ShortcutTable.h"

#include <QApplication>
#include <QPointer>

namespace quorvia::commands {

namespace {

constexpr int debounce = 100; // milliseconds

namespace code = app::keyCode;

bool saysYes(QWidget* owner, const platform::MessageBox& box)
{
    return platform::showMessage(owner, box) == platform::BoxAnswer::Yes;
}

} // namespace

/// A key on its way, from the first look at it to the end of all that it does.
class Keyboard::Step
{
  public:
    explicit Step(Keyboard* keyboard) : m_keyboard(keyboard) { keyboard->beginStep(); }
    ~Step()
    {
        if (m_keyboard)
            m_keyboard->endStep();
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    /// False when the step ended the window, and the keyboard with it.
    bool isAlive() const { return m_keyboard; }

  private:
    QPointer<Keyboard> m_keyboard;
};

Keyboard::Keyboard(const ShortcutTable* shortcuts, KeyboardSinks sinks, QObject* parent)
    : QObject(parent), m_shortcuts(shortcuts), m_sinks(std::move(sinks))
{
    prepare(m_tWait, "tWait");
    prepare(m_tKey, "tKey");
    connect(&m_waiting, &app::WaitingInput::delivered, this, &Keyboard::endDebounces);
}

void Keyboard::prepare(QTimer& timer, const char* name)
{
    timer.setObjectName(QLatin1String(name));
    timer.setParent(this);
    timer.setTimerType(Qt::PreciseTimer); // a coarse one may tick early
    timer.setInterval(debounce);
    connect(&timer, &QTimer::timeout, this, [this, &timer] { tick(timer); });
}

/// A tick counts only after the step, and after the keys that came while it ran: a held key would else queue
/// one step after the other, and go on when it is let go.
void Keyboard::tick(QTimer& timer)
{
    if (m_steps > 0 && QApplication::activeModalWidget())
        m_boxShown = true;
    if (m_steps == 0 && !m_waiting.isPassing())
        timer.stop();
}

/// Esc that came while a step ran queues no work and must not be lost; but one that came while a box was up,
/// or went away, was meant for the box.
void Keyboard::letEscPass(int keyCode, int shift)
{
    if (keyCode == code::escape && shift == app::NoModifier && m_waiting.isPassing())
        endDebounces();
}

void Keyboard::beginStep()
{
    if (m_steps++ > 0)
        return;
    m_step.start();
    if (!m_waiting.isPassing()) // then it is still asked for
        m_boxShown = false;
}

void Keyboard::endStep()
{
    // A shorter one leaves the keys behind it to the ticks.
    if (--m_steps == 0 && m_step.hasExpired(m_tKey.interval()))
        m_waiting.letPass();
}

/// The step took longer than the debounces, so that they end with it; after a box they wait for their ticks.
void Keyboard::endDebounces()
{
    if (m_steps > 0 || m_boxShown)
        return;
    m_tWait.stop();
    m_tKey.stop();
}

void Keyboard::keyDown(int keyCode, int shift)
{
    letEscPass(keyCode, shift);
    if (m_tWait.isActive())
        return;
    m_tWait.start();
    const Step step(this);
    if (const FixedKey* const early = keyAmong(earlyKeys(), keyCode, shift))
        run(*early);
    if (step.isAlive())
        GlobalKeyPress(keyCode, shift);
}

void Keyboard::GlobalKeyPress(int keyCode, int shift)
{
    letEscPass(keyCode, shift);
    if (m_tKey.isActive())
        return;
    m_tKey.start();
    const Step step(this);
    if (m_sinks.isDescriptionUnsaved())
        return;
    if (const FixedKey* const fixed = keyAmong(fixedKeys(), keyCode, shift))
        run(*fixed);
    else
        runShortcuts(keyCode, shift);
}

void Keyboard::run(const FixedKey& key)
{
    switch (key.step) {
    case KeyStep::RunTool:
        return m_sinks.runTool(QLatin1String(key.tool));
    case KeyStep::AskForHelp:
        return askForHelp();
    case KeyStep::AskForShortcutHelp:
        return askForShortcutHelp();
    case KeyStep::ShowInformation:
        return showInformation();
    case KeyStep::Exit:
        return exit();
    case KeyStep::Minimise:
        return m_sinks.minimise();
    case KeyStep::FitWindowToImage:
        return QuickFunctions(QStringLiteral("FitWindowToImage"));
    case KeyStep::AskToErase:
        return askToErase();
    case KeyStep::ShowEngine:
        return showEngine();
    }
}

void Keyboard::runShortcuts(int keyCode, int shift)
{
    const QPointer<Keyboard> alive(this); // a command may end the window
    const QStringList tools = m_shortcuts->tools(keyCode, shift);
    for (const QString& tool : tools) {
        if (alive)
            m_sinks.runTool(tool);
    }
}

void Keyboard::QuickFunctions(const QString& name)
{
    if (name.compare(QLatin1String("FitWindowToImage"), Qt::CaseInsensitive) == 0)
        m_sinks.fitWindowToImage();
}

void Keyboard::askForHelp()
{
    const QPointer<Keyboard> alive(this);
    if (saysYes(m_sinks.owner, helpBox()) && alive)
        m_sinks.runTool(QStringLiteral("miHelp"));
}

void Keyboard::askForShortcutHelp()
{
    const QPointer<Keyboard> alive(this);
    if (saysYes(m_sinks.owner, shortcutHelpBox()) && alive)
        m_sinks.runTool(QStringLiteral("miHelpShortcuts"));
}

void Keyboard::showInformation()
{
    const QPointer<Keyboard> alive(this);
    m_sinks.letPendingEventsRun();
    if (!alive)
        return;
    platform::showMessage(
        m_sinks.owner,
        informationBox({.name = app::productTitle(),
                        .version = app::versionText(app::productVersion(), QStringLiteral(".")),
                        .interfaceVersions = m_sinks.interfaceVersions(),
                        .imagesOpened = app::read(app::setting::ImageOpenCount),
                        .file = fileData(QCoreApplication::applicationFilePath())}));
}

void Keyboard::exit()
{
    const QPointer<Keyboard> alive(this);
    m_sinks.letPendingEventsRun();
    if (alive)
        m_sinks.runTool(QStringLiteral("miExit"));
}

void Keyboard::askToErase()
{
    const QPointer<Keyboard> alive(this);
    if (app::askToErase(m_sinks.owner) && alive)
        m_sinks.endProcess();
}

void Keyboard::showEngine()
{
    platform::showMessage(m_sinks.owner, engineBox());
}

} // namespace quorvia::commands
