#include "output/frmImageViewFull.h"

#include "app/Colors.h"
#include "app/KeyCodes.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "engine/ImageEngine.h"
#include "output/FullScreenBar.h"
#include "platform/OneLine.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quorvia::output {

namespace {

constexpr int slowStep = 100; // milliseconds
constexpr int captionPoints = 12;

FitMode presentMode()
{
    return fitModeOf(app::read(app::setting::cFView));
}

const QScreen& primary()
{
    return *QGuiApplication::primaryScreen();
}

/// The device pixel ratio right of the primary screen.
double ratioBeside()
{
    const QScreen* const beside = QGuiApplication::screenAt(primary().geometry().topRight() + QPoint(1, 0));
    return (beside ? *beside : primary()).devicePixelRatio();
}

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
    explicit Step(frmImageViewFull* window) : m_window(window)
    {
        window->beginStep();
        m_clock.start();
    }
    ~Step()
    {
        if (m_window)
            m_window->endStep(m_clock.hasExpired(slowStep));
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    /// False when the step ended the window.
    bool isAlive() const { return m_window; }

  private:
    QPointer<frmImageViewFull> m_window;
    QElapsedTimer m_clock;
};

frmImageViewFull::frmImageViewFull(Sinks sinks, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint), m_sinks(std::move(sinks)),
      m_saver(
          {app::productTitle(), QStringLiteral("Pictures fill the screen")},
          [](const QString& why) { app::WriteLog(QStringLiteral("Screen saver not held back: ") + why); }),
      m_iFull(new FullScreenBar(this))
{
    setObjectName(QStringLiteral("frmImageViewFull"));
    setAccessibleName(QStringLiteral("Fullscreen"));
    setWindowTitle(app::GetAppDisplayName());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false); // the main window goes on, hidden or not
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    m_iFull->hide();
    connect(m_iFull, &FullScreenBar::asked, this, &frmImageViewFull::performOfBar);
    connect(m_iFull, &FullScreenBar::playClicked, this, &frmImageViewFull::clickPlay);
}

frmImageViewFull::~frmImageViewFull()
{
    uncoverMain();
}

// --- showing

void frmImageViewFull::LoadX(engine::ImageEngine* image, QWidget* parentView)
{
    const QPointer<frmImageViewFull> alive(this);
    const QPointer<engine::ImageEngine> viewed(image);
    const auto goesOn = [this, &alive] { return alive && m_open; };
    m_back = app::fromColorNumber(app::read(app::setting::FullBackColor));
    m_exitMouseX = 0;
    m_parentView = parentView;
    m_viewedImage = nullptr;
    if (!std::exchange(m_open, true)) { // nothing of what was shown the last time
        m_pixels = {};
        m_name.clear();
    }
    place();
    app::letPendingEventsRunButInput();
    if (!goesOn())
        return;

    m_iFull->hide();
    m_iFull->layOut(width());
    if (m_sinks.isSlideRunning()) {
        m_iFull->tagPlaying(true);
        m_iFull->showPlayPicture(true);
    }
    m_iFull->showMode(presentMode());
    uncoverMain(); // of another control, when there are two
    m_viewedImage = viewed;
    coverMain();
    GenImage(viewed);
    app::letPendingEventsRunButInput();
    if (!goesOn())
        return;
    m_saver.hold();
    app::letPendingEventsRunButInput();
    if (!goesOn())
        return;
    if (!m_sinks.startedHidden)
        m_sinks.showMain();
    if (!goesOn())
        return;
    coverMain(); // it may have been hidden, and nowhere
    activateWindow();
    update();
    Q_EMIT composingChanged();
}

void frmImageViewFull::place()
{
    QWidget* const owner = m_parentView ? m_parentView->window() : nullptr;
    const QRect screen = primary().geometry();
    const int mainLeft = owner ? owner->frameGeometry().left() : screen.left();
    const FullScreenPlace placed = fullScreenPlace(mainLeft, screen, ratioBeside());
    m_placing = true; // it is composed in the end
    if (placed.isSecond) {
        setWindowState(windowState() & ~Qt::WindowFullScreen);
        setFixedSize(placed.geometry.size());
    } else {
        setMinimumSize(0, 0);
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
    setGeometry(placed.geometry);
    winId(); // makes the native window, which has to know its owner before it shows
    if (owner) {
        owner->winId();
        windowHandle()->setTransientParent(owner->windowHandle());
    }
    connect(windowHandle(), &QWindow::screenChanged, this, &frmImageViewFull::composeAnew,
            Qt::UniqueConnection);
    if (!placed.isSecond)
        setWindowState(windowState() | Qt::WindowFullScreen); // panels stay below
    if (isVisible())
        raise();
    show();
    activateWindow();
    m_placing = false;
}

/// The control in the main window is not worth painting while nothing of it can be seen.
void frmImageViewFull::coverMain()
{
    QWidget* const owner = m_parentView ? m_parentView->window() : nullptr;
    const bool covers = m_open && owner && geometry().contains(owner->frameGeometry());
    if (m_viewedImage && covers != (m_covered == m_viewedImage))
        m_viewedImage->SetCovered(covers);
    m_covered = covers ? m_viewedImage : nullptr;
}

void frmImageViewFull::uncoverMain()
{
    if (m_covered)
        m_covered->SetCovered(false);
    m_covered = nullptr;
}

// --- composing

QSize frmImageViewFull::deviceSize() const
{
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

QSize frmImageViewFull::loadBox() const
{
    return fullScreenLoadBox(presentMode(), deviceSize());
}

void frmImageViewFull::GenImage(engine::ImageEngine* image)
{
    showTexts(image);
    compose(image);
    m_unpainted = image;
    repaint(); // an update would wait for the toolkit's frame timer
}

void frmImageViewFull::compose(engine::ImageEngine* image)
{
    m_ratio = devicePixelRatioF();
    m_pixels = {};
    if (!image)
        return;
    const double pixel = twipsPerDevicePixel(m_ratio);
    const FullScreenView view{
        .window = app::inTwips(size()),
        .image = QSizeF(image->ImagePixelWidth(), image->ImagePixelHeight()) * pixel,
        .screen = app::inTwips(primary().size()),
    };
    const QRect target = inDevicePixels(composedRect(presentMode(), view), pixel);
    const QRect part = target & QRect(QPoint(), deviceSize());
    m_pixels = image->PaintedPart(target, part, m_back);
    m_at = part.topLeft();
    if (m_pixels.isNull() && !part.isEmpty())
        app::WriteLog(QStringLiteral("Picture not composed: ") + image->LastError());
}

/// Before the composition: the name is known when the picture is, and with it the size.
void frmImageViewFull::showTexts(engine::ImageEngine* image)
{
    const QString path = image ? image->FileName() : QString();
    const QSize pixels = image ? QSize(image->ImagePixelWidth(), image->ImagePixelHeight()) : QSize();
    m_name = platform::oneLine(app::SplitPathName(path, 2));
    m_iFull->showName(m_name, pixels, path);
    setWindowTitle(m_name.isEmpty() ? app::GetAppDisplayName()
                                    : app::GetAppDisplayName() + QStringLiteral(" - ") + m_name);
}

/// For the size and the screen that the window has now.
void frmImageViewFull::composeAnew()
{
    if (!m_open || m_placing || !m_viewedImage)
        return;
    coverMain();
    GenImage(m_viewedImage);
    Q_EMIT composingChanged();
}

void frmImageViewFull::paintEvent(QPaintEvent*)
{
    const double ratio = devicePixelRatioF();
    if (m_viewedImage && ratio != m_ratio)
        QMetaObject::invokeMethod(this, &frmImageViewFull::composeAnew, Qt::QueuedConnection);
    QPainter painter(this);
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    const QRect picture(m_at, m_pixels.size());
    const QRect whole(0, 0, int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
    for (const QRect& rest : QRegion(whole).subtracted(picture))
        painter.fillRect(rest, m_back);
    if (!m_pixels.isNull())
        painter.drawImage(m_at, m_pixels);
    painter.restore();
    if (m_showCaption)
        paintCaption(painter);
    if (const auto image = std::exchange(m_unpainted, nullptr))
        image->NotePainted();
}

void frmImageViewFull::paintCaption(QPainter& painter) const
{
    QFont words;
    words.setFamilies({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")});
    words.setPointSize(captionPoints);
    words.setBold(true);
    painter.setFont(words);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(0, QFontMetricsF(words, this).ascent()), m_name);
}

void frmImageViewFull::resizeEvent(QResizeEvent*)
{
    m_iFull->layOut(width());
    composeAnew();
}

// --- closing

void frmImageViewFull::closeEvent(QCloseEvent* event)
{
    event->accept();
    closingStep();
}

/// Also of a window that was hidden in another way.
void frmImageViewFull::hideEvent(QHideEvent* event)
{
    if (event->spontaneous()) // minimised
        return;
    const QPointer<frmImageViewFull> alive(this);
    closingStep();
    if (alive)
        Q_EMIT composingChanged();
}

void frmImageViewFull::closingStep()
{
    if (!std::exchange(m_open, false))
        return;
    m_saver.release();
    uncoverMain();
    if (m_sinks.startedForShow)
        m_sinks.closeMain();
}

// --- what the user does

void frmImageViewFull::beginStep()
{
    ++m_steps;
}

void frmImageViewFull::endStep(bool slow)
{
    --m_steps;
    m_slow = slow;
    m_waiting.letPass();
}

/// Keys do not queue behind a step: a held one would go on when it is let go. The press that closes always
/// counts, its repeats never: what opened the window may still be held.
bool frmImageViewFull::isDropped(bool isRepeat, FullScreenAction action) const
{
    if (closes(action))
        return isRepeat;
    return m_steps > 0 || (m_waiting.isPassing() && (m_slow || isRepeat));
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
