#include "output/frmImageViewFull.h"

#include "app/Colors.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "engine/DevicePixels.h"
#include "engine/ImageEngine.h"
#include "output/FullScreenBar.h"
#include "platform/OneLine.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <cmath>
#include <utility>

namespace quorvia::output {

namespace {

constexpr int captionPoints = 12;

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

/// The whole pixels that a size of the toolkit stands for: it has rounded what the display told it.
QSize devicePixels(QSize size, double ratio)
{
    return (QSizeF(size) * ratio).toSize();
}

} // namespace

frmImageViewFull::frmImageViewFull(Sinks sinks, QWidget* parent)
    // A dialog, since only those are told to the window manager as belonging to another window.
    : QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint), m_sinks(std::move(sinks)),
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
    setFocus(); // none of the bar's buttons has the keys, and readers ask who has
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
    follow(parentView);
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
        setWindowState(Qt::WindowNoState);
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
    setWindowState(placed.isSecond ? Qt::WindowNoState : Qt::WindowFullScreen); // panels stay below
    if (isVisible())
        raise();
    show();
    activateWindow();
    m_placing = false;
}

/// Looks at what becomes of the main window from now on.
void frmImageViewFull::follow(QWidget* parentView)
{
    if (m_parentView)
        m_parentView->window()->removeEventFilter(this);
    m_parentView = parentView;
    if (parentView)
        parentView->window()->installEventFilter(this);
}

bool frmImageViewFull::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ActivationChange: // it may have been brought to the front
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::WindowStateChange:
        coverMain();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void frmImageViewFull::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        coverMain();
    if (event->type() != QEvent::WindowStateChange || !m_open || m_placing)
        return;
    coverMain();
    if (isMinimized())
        m_saver.release();
    else
        m_saver.hold();
}

/// The control in the main window is not worth painting while nothing of it can be seen.
void frmImageViewFull::coverMain()
{
    QWidget* const owner = m_parentView ? m_parentView->window() : nullptr;
    const bool covers = m_open && !isMinimized() && owner && !owner->isActiveWindow() &&
                        geometry().contains(owner->frameGeometry());
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

FitMode frmImageViewFull::presentMode()
{
    return fitModeOf(app::read(app::setting::cFView));
}

QSize frmImageViewFull::deviceSize() const
{
    return devicePixels(size(), devicePixelRatioF());
}

QSize frmImageViewFull::loadBox() const
{
    return fullScreenLoadBox(presentMode(), deviceSize());
}

void frmImageViewFull::GenImage(engine::ImageEngine* image)
{
    const QString path = image ? image->FileName() : QString(); // known once it is known what is held
    m_name = platform::oneLine(app::SplitPathName(path, 2));
    compose(image);
    m_unpainted = image;
    repaint(); // an update would wait for the toolkit's frame timer
    showTexts(image, path);
}

void frmImageViewFull::compose(engine::ImageEngine* image)
{
    m_ratio = devicePixelRatioF();
    m_pixels = {};
    if (!image)
        return;
    const double pixel = twipsPerDevicePixel(m_ratio);
    const FullScreenView view{
        .window = QSizeF(deviceSize()) * pixel,
        .image = QSizeF(image->ImagePixelWidth(), image->ImagePixelHeight()) * pixel,
        .screen = QSizeF(devicePixels(primary().size(), primary().devicePixelRatio())) *
                  twipsPerDevicePixel(primary().devicePixelRatio()),
    };
    const QRect target = inDevicePixels(composedRect(presentMode(), view), pixel);
    const QRect part = target & QRect(QPoint(), deviceSize());
    m_pixels = image->PaintedPart(target, part, m_back);
    m_at = part.topLeft();
    if (m_pixels.isNull() && !part.isEmpty())
        app::WriteLog(QStringLiteral("Picture not composed: ") + image->LastError());
}

/// After the picture, which is waited for.
void frmImageViewFull::showTexts(const engine::ImageEngine* image, const QString& path)
{
    const QSize pixels = image ? QSize(image->ImagePixelWidth(), image->ImagePixelHeight()) : QSize();
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
    engine::useDevicePixels(painter, ratio);
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
    m_pixels = {}; // as large as the screen
    if (m_sinks.startedForShow)
        m_sinks.closeMain();
}

} // namespace quorvia::output
