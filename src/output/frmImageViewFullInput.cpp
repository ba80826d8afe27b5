// What keys and mouse do in the full-screen window.
#include "app/KeyCodes.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "engine/ImageEngine.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace quorvia::output {

namespace {

/// The command that an action runs; null for one that does something of its own.
const char* toolOf(FullScreenAction action)
{
    struct Row
    {
        FullScreenAction action;
        const char* tool;
    };
    static constexpr std::array rows = {
        Row{FullScreenAction::Random, "miRandom"},
        Row{FullScreenAction::Next, "miNext"},
        Row{FullScreenAction::Previous, "miPrevious"},
        Row{FullScreenAction::SlideShow, "miSlideShow"},
    };
    const auto found =
        std::find_if(rows.begin(), rows.end(), [action](const Row& row) { return row.action == action; });
    return found == rows.end() ? nullptr : found->tool;
}

} // namespace

/// Something that takes its time, from its begin to its end.
class frmImageViewFull::Step
{
  public:
    explicit Step(frmImageViewFull* window) : m_window(window) { window->beginStep(); }
    ~Step()
    {
        if (m_window)
            m_window->endStep();
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    /// False when the step ended the window.
    bool isAlive() const { return m_window; }

  private:
    QPointer<frmImageViewFull> m_window;
};

void frmImageViewFull::beginStep()
{
    ++m_steps;
}

void frmImageViewFull::endStep()
{
    --m_steps;
    m_waiting.letPass();
}

/// Presses count, one after the other. Repeats do not queue behind a step, or they would go on when the key
/// is let go; and none of them closes.
bool frmImageViewFull::isDropped(bool isRepeat, FullScreenAction action) const
{
    return isRepeat && (closes(action) || m_waiting.isPassing());
}

void frmImageViewFull::keyPressEvent(QKeyEvent* event)
{
    const int code = app::virtualKeyCode(event->key(), event->nativeScanCode());
    const FullScreenAction action =
        keyAction(code, app::modifierMask(event->modifiers()), m_sinks.isSlideShowOnly());
    if (!isDropped(event->isAutoRepeat(), action))
        perform(action);
}

void frmImageViewFull::perform(FullScreenAction action)
{
    if (!m_open || action == FullScreenAction::None)
        return;
    if (action == FullScreenAction::Close)
        close();
    else if (action == FullScreenAction::Exit)
        leaveProgram();
    else if (m_steps == 0)
        performSlowly(action);
}

/// The steps are those of keys, which all close while the slideshow runs alone.
void frmImageViewFull::performOfBar(FullScreenAction action)
{
    const bool isKey = action == FullScreenAction::PressNext || action == FullScreenAction::PressPrevious;
    perform(isKey && m_sinks.isSlideShowOnly() ? FullScreenAction::Close : action);
}

void frmImageViewFull::performSlowly(FullScreenAction action)
{
    const Step step(this);
    if (const char* const tool = toolOf(action))
        m_sinks.runTool(QLatin1String(tool));
    else if (action == FullScreenAction::Mode)
        changeMode();
    else if (action == FullScreenAction::Caption)
        toggleCaption();
    else
        pressAndRun(action == FullScreenAction::PressNext);
}

void frmImageViewFull::pressAndRun(bool forward)
{
    const QPointer<QWidget> button = m_iFull->stepButton(forward);
    const QPointer<frmImageViewFull> alive(this);
    button->hide();
    app::letPendingEventsRunButInput();
    if (alive)
        m_sinks.runTool(forward ? QStringLiteral("miNext") : QStringLiteral("miPrevious"));
    if (button)
        button->show();
}

void frmImageViewFull::leaveProgram()
{
    const QPointer<frmImageViewFull> alive(this);
    close();
    if (alive)
        m_sinks.runTool(QStringLiteral("miExit"));
}

void frmImageViewFull::changeMode()
{
    app::save(app::setting::cFView, nextFitMode(app::read(app::setting::cFView)));
    m_iFull->showMode(presentMode());
    GenImage(m_viewedImage);
    Q_EMIT composingChanged();
}

void frmImageViewFull::toggleCaption()
{
    m_showCaption = !m_showCaption;
    GenImage(m_viewedImage);
}

/// The command turns the show on or off; the tag does not ask which.
void frmImageViewFull::clickPlay()
{
    if (!m_open || m_steps > 0)
        return;
    const Step step(this);
    const bool playing = !m_iFull->isTaggedPlaying();
    m_iFull->tagPlaying(playing);
    m_sinks.runTool(QStringLiteral("miSlideShow"));
    if (step.isAlive())
        m_iFull->showPlayPicture(playing);
}

void frmImageViewFull::mousePressEvent(QMouseEvent*)
{
    if (m_sinks.isSlideShowOnly())
        close();
}

void frmImageViewFull::mouseReleaseEvent(QMouseEvent* event)
{
    perform(mouseUpAction(event->button(), app::modifierMask(event->modifiers()), m_sinks.isSlideShowOnly()));
}

void frmImageViewFull::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton || m_sinks.isSlideShowOnly())
        close();
}

void frmImageViewFull::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF at = event->position() * app::twipsPerPixel;
    if (!m_sinks.isSlideShowOnly())
        m_iFull->setVisible(isNearBar(at.y()));
    else if (leavesByMouse(m_exitMouseX, at.x()))
        close();
}

/// Tab is a key like others: nothing here takes the focus.
bool frmImageViewFull::focusNextPrevChild(bool)
{
    return false;
}

} // namespace quorvia::output
