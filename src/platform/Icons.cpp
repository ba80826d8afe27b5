#include "platform/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>

/// The resources of a static library have to be asked for, and that outside of every namespace.
static void registerIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace quorvia::platform {

namespace {

constexpr QLatin1String folder(":/icons/");
constexpr QLatin1String ending(".svg");

QString bareName(const QString& name)
{
    return name.startsWith(QLatin1Char('#')) ? name.mid(1) : name;
}

QString pathOf(const QString& bare)
{
    static const bool registered = (registerIcons(), true);
    Q_UNUSED(registered)
    return folder + bare + ending;
}

QColor inkFor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled)
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    return palette.color(QPalette::Active,
                         mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText);
}

class DrawingEngine : public QIconEngine
{
  public:
    DrawingEngine(const QString& name, const QString& disabledName)
        : m_name(name), m_disabledName(disabledName)
    {
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        const QString& name = mode == QIcon::Disabled ? m_disabledName : m_name;
        return drawing(name, std::min(size.width(), size.height()), inkFor(mode));
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = pixmap(rect.size() * ratio, mode, state);
        picture.setDevicePixelRatio(ratio);
        const QSizeF free = QSizeF(rect.size()) - picture.deviceIndependentSize();
        painter->drawPixmap(rect.topLeft() + QPointF(free.width(), free.height()) / 2, picture);
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(size.width(), size.height());
        return {side, side};
    }

    QString iconName() override { return m_name; }
    QString key() const override { return QStringLiteral("quorvia-drawing"); }
    bool isNull() override { return false; }
    QIconEngine* clone() const override { return new DrawingEngine(*this); }

  private:
    QString m_name;
    QString m_disabledName;
};

} // namespace

bool isIcon(const QString& name)
{
    const QString bare = bareName(name);
    return !bare.isEmpty() && !bare.contains(QLatin1Char('/')) && QFile::exists(pathOf(bare));
}

QIcon icon(const QString& name, const QString& disabledName)
{
    if (!isIcon(name))
        return {};
    return QIcon(new DrawingEngine(bareName(name), bareName(isIcon(disabledName) ? disabledName : name)));
}

QPixmap drawing(const QString& name, int side, const QColor& color)
{
    const QString bare = bareName(name);
    const QString key = QStringLiteral("quorvia/%1/%2/%3").arg(bare).arg(side).arg(color.rgba(), 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap) || side <= 0 || !isIcon(name))
        return pixmap;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(pathOf(bare)).render(&painter, QRectF(0, 0, side, side));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace quorvia::platform
