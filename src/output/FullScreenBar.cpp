#include "output/FullScreenBar.h"

#include "app/Twips.h"
#include "platform/Contrast.h"
#include "platform/Icons.h"
#include "platform/OneLine.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include <array>
#include <cmath>

namespace quorvia::output {

namespace {

constexpr int drawingSide = 24; // pixels
constexpr double faceRound = 4;
constexpr double fontPoints = 9.75;
constexpr QRgb nameGround = qRgb(32, 32, 32); // for the white words, whatever the bar's colour
constexpr QMargins aroundName(8, 5, 8, 5);

QString playPicture(bool playing)
{
    return playing ? QStringLiteral("slidestop") : QStringLiteral("slideshow");
}

} // namespace

// --- a button

PictureButton::PictureButton(const char* name, const QString& tip, const QString& picture, QWidget* parent)
    : QAbstractButton(parent), m_picture(picture)
{
    setObjectName(QLatin1String(name));
    setAccessibleName(tip);
    setToolTip(tip);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_NoMousePropagation);
    resize(app::toPixels(QRect(QPoint(), barPicture)).size());
}

void PictureButton::setPicture(const QString& name)
{
    m_picture = name;
    update();
}

void PictureButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF face = QRectF(rect()).adjusted(3, 2, -3, -2);
    if (isDown() || underMouse()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(platform::tint(palette(), isDown() ? 0.28 : 0.14));
        painter.drawRoundedRect(face, faceRound, faceRound);
    }
    const double ratio = devicePixelRatioF();
    QPixmap shown = platform::drawing(m_picture, int(std::lround(drawingSide * ratio)),
                                      palette().color(QPalette::WindowText));
    shown.setDevicePixelRatio(ratio);
    // A whole device pixel, or the strokes blur.
    const auto middle = [ratio](double room) { return std::round((room - drawingSide) / 2 * ratio) / ratio; };
    const double sunk = isDown() ? 1 : 0;
    painter.drawPixmap(QPointF(middle(width()), middle(height()) + sunk), shown);
}

// --- the bar

FullScreenBar::FullScreenBar(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("iFull"));
    setAccessibleName(QStringLiteral("Fullscreen bar"));
    setAttribute(Qt::WA_NoMousePropagation);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    QFont words = font();
    words.setFamilies({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")});
    words.setPointSizeF(fontPoints);
    words.setBold(true);
    setFont(words);

    m_image1 =
        addButton("Image1", QStringLiteral("View Previous Image"), QStringLiteral("previous"), previousLeft);
    m_image2 = addButton("Image2", QStringLiteral("View Next Image"), QStringLiteral("next"), nextLeft);
    m_iPlay = addButton("iPlay", QStringLiteral("Toggle Slideshow Setting"), playPicture(false), playLeft);
    m_iSize = addButton("iSize", QStringLiteral("Change Display Types (Actual, Best Fit, Stretch)"),
                        QStringLiteral("actualsize"), sizeLeft);
    m_iClose = addButton("iClose", QStringLiteral("Close Fullscreen"), QStringLiteral("close"), previousLeft);
    connect(m_image1, &QAbstractButton::clicked, this,
            [this] { Q_EMIT asked(FullScreenAction::PressPrevious); });
    connect(m_image2, &QAbstractButton::clicked, this, [this] { Q_EMIT asked(FullScreenAction::PressNext); });
    connect(m_iPlay, &QAbstractButton::clicked, this, &FullScreenBar::playClicked);
    connect(m_iSize, &QAbstractButton::clicked, this, [this] { Q_EMIT asked(FullScreenAction::Mode); });
    connect(m_iClose, &QAbstractButton::clicked, this, [this] { Q_EMIT asked(FullScreenAction::Close); });

    m_lImage = new QLabel(this);
    m_lImage->setObjectName(QStringLiteral("lImage"));
    m_lImage->setAccessibleName(QStringLiteral("Image name"));
    m_lImage->setTextFormat(Qt::PlainText); // names of files may look like mark-up
    QPalette white = m_lImage->palette();
    white.setColor(QPalette::WindowText, Qt::white);
    m_lImage->setPalette(white);
    tagPlaying(false);
}

PictureButton* FullScreenBar::addButton(const char* name, const QString& tip, const QString& picture,
                                        int left)
{
    auto* const button = new PictureButton(name, tip, picture, this);
    button->move(app::toPixels(left), 0);
    return button;
}

void FullScreenBar::tagPlaying(bool playing)
{
    m_playing = playing;
    m_iPlay->setProperty("tag", playing ? QStringLiteral("playing") : QStringLiteral("stopped"));
}

void FullScreenBar::showPlayPicture(bool playing)
{
    m_iPlay->setPicture(playPicture(playing));
}

void FullScreenBar::showMode(FitMode mode)
{
    constexpr std::array pictures = {"actualsize", "bestfit", "stretch"};
    m_iSize->setPicture(QLatin1String(pictures[size_t(mode)]));
}

void FullScreenBar::showName(const QString& name, QSize imagePixels, const QString& path)
{
    m_name = platform::oneLine(name);
    m_longName = imagePixels.isEmpty() ? m_name : longNameLabel(m_name, imagePixels);
    m_lImage->setToolTip(path.isEmpty() ? QString() : platform::plainToolTip(path));
    fitName();
}

void FullScreenBar::fitName()
{
    const double longWidth = QFontMetricsF(font()).horizontalAdvance(m_longName);
    m_lImage->setText(nameLabel(m_name, m_longName, longWidth, m_lImage->width()));
    m_lImage->setAccessibleDescription(m_lImage->text());
    update();
}

QWidget* FullScreenBar::stepButton(bool forward) const
{
    return forward ? m_image2 : m_image1;
}

/// At once: a hidden bar hears of its size when it shows, and the name is fitted before.
void FullScreenBar::layOut(int windowWidth)
{
    setGeometry(0, 0, windowWidth, app::toPixels(barHeight));
    const FullScreenBarLayout layout = fullScreenBarLayout(app::toTwips(width()));
    m_iClose->move(app::toPixels(layout.closeLeft), 0);
    m_lImage->setGeometry(app::toPixels(layout.name));
    fitName();
}

void FullScreenBar::mouseReleaseEvent(QMouseEvent* event)
{
    Q_EMIT asked(barZoneAction(event->position().x()));
}

void FullScreenBar::paintEvent(QPaintEvent*)
{
    if (m_lImage->text().isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(nameGround));
    painter.drawRoundedRect(QRectF(m_lImage->geometry().marginsAdded(aroundName)), faceRound, faceRound);
}

} // namespace quorvia::output
