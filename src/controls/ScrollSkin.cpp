#include "controls/ScrollSkin.h"

#include <QPainter>

#include <algorithm>
#include <map>

namespace quorvia::controls {

namespace {

// All in device-independent pixels; "along" is along the bar, the other direction is across it.
constexpr int across = 18;
constexpr int tileAlong = 18;
constexpr int arrowAlong = 18;
constexpr int endAlong = 5;
constexpr int gripAlong = 4;
constexpr int thumbMargin = 3; // at both sides of the thumb
constexpr int gripMargin = 6;
constexpr int arrowMargin = 2; // round the plate behind an arrow
constexpr qreal thumbRadius = 4;
constexpr qreal arrowRadius = 3;
constexpr qreal arrowStroke = 1.6;
constexpr QPointF arrowShape[] = {{5.25, 10.75}, {9, 7}, {12.75, 10.75}};

constexpr QColor trackColor(251, 241, 245);
constexpr QColor trackEdge(242, 222, 230);

struct Colors
{
    QColor light;  // the lit side of the thumb
    QColor shade;  // its other side
    QColor border; // three to one against the track, so that the thumb can be made out
    QColor grip;
    QColor plate; // behind an arrow
    QColor arrow;
};

constexpr Colors colorsOf(SkinState state)
{
    switch (state) {
    case SkinState::Hovered:
        return {{255, 247, 250}, {246, 208, 221}, {182, 92, 120},
                {192, 116, 142}, {247, 222, 231}, {160, 72, 101}};
    case SkinState::Pressed:
        return {{252, 228, 236}, {239, 184, 203}, {160, 72, 101},
                {170, 88, 114},  {240, 196, 211}, {138, 52, 82}};
    case SkinState::Focused:
        return {{255, 255, 255}, {250, 224, 233}, {138, 52, 82},
                {192, 116, 142}, {0, 0, 0, 0},    {180, 96, 125}};
    case SkinState::Normal:
        break;
    }
    return {{255, 255, 255}, {250, 224, 233}, {196, 113, 140}, {209, 146, 168}, {0, 0, 0, 0}, {180, 96, 125}};
}

/// Which of the drawings a role takes, and how it is turned. All drawings are of a vertical bar's near end.
enum class Drawing { Space, Arrow, Fill, End, Grip };

struct Turned
{
    Drawing drawing;
    bool lying;
    bool far;
};

constexpr Turned turnedOf(SkinRole role)
{
    switch (role) {
    case SkinRole::vspace:
        return {Drawing::Space, false, false};
    case SkinRole::hspace:
        return {Drawing::Space, true, false};
    case SkinRole::varrowtop:
        return {Drawing::Arrow, false, false};
    case SkinRole::varrowbottom:
        return {Drawing::Arrow, false, true};
    case SkinRole::harrowleft:
        return {Drawing::Arrow, true, false};
    case SkinRole::harrowright:
        return {Drawing::Arrow, true, true};
    case SkinRole::vsepbg:
        return {Drawing::Fill, false, false};
    case SkinRole::hsepbg:
        return {Drawing::Fill, true, false};
    case SkinRole::vseptop:
        return {Drawing::End, false, false};
    case SkinRole::vsepbottom:
        return {Drawing::End, false, true};
    case SkinRole::hsepleft:
        return {Drawing::End, true, false};
    case SkinRole::hsepright:
        return {Drawing::End, true, true};
    case SkinRole::vsepmid:
        return {Drawing::Grip, false, false};
    case SkinRole::hsepmid:
        break;
    }
    return {Drawing::Grip, true, false};
}

constexpr int lengthOf(Drawing drawing)
{
    switch (drawing) {
    case Drawing::Arrow:
        return arrowAlong;
    case Drawing::End:
        return endAlong;
    case Drawing::Grip:
        return gripAlong;
    case Drawing::Space:
    case Drawing::Fill:
        break;
    }
    return tileAlong;
}

/// Draws for one ratio and one look, in device pixels, so that edges fall between two of them.
class Artist
{
  public:
    Artist(QPainter& painter, qreal ratio, SkinState state)
        : m_painter(painter), m_ratio(ratio), m_colors(colorsOf(state)), m_across(device(across)),
          m_hairline(std::max(1, int(ratio)))
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(Qt::NoPen);
    }

    void draw(Drawing drawing)
    {
        const int length = device(lengthOf(drawing));
        switch (drawing) {
        case Drawing::Space:
            return space(length);
        case Drawing::Arrow:
            return arrow();
        case Drawing::Fill:
            space(length);
            // Begins above the picture and ends below it: of the body, only straight sides are seen.
            return body(-length, 3 * length);
        case Drawing::End:
            space(length); // shows beside the round corners, where the fill must not
            return body(0, 3 * length);
        case Drawing::Grip:
            return grip(length);
        }
    }

  private:
    int device(int length) const { return qRound(length * m_ratio); }

    void space(int length)
    {
        m_painter.fillRect(0, 0, m_across, length, trackColor);
        m_painter.fillRect(0, 0, m_hairline, length, trackEdge);
    }

    void arrow()
    {
        const int margin = device(arrowMargin);
        const int side = m_across - 2 * margin;
        m_painter.setBrush(m_colors.plate);
        m_painter.drawRoundedRect(margin, margin, side, side, arrowRadius * m_ratio, arrowRadius * m_ratio);
        QPolygonF shape;
        for (const QPointF& point : arrowShape)
            shape << point * m_ratio;
        m_painter.setPen(
            QPen(m_colors.arrow, arrowStroke * m_ratio, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        m_painter.drawPolyline(shape);
        m_painter.setPen(Qt::NoPen);
    }

    void body(int begin, int length)
    {
        const int margin = device(thumbMargin);
        const QRectF outer(margin, begin, m_across - 2 * margin, length);
        QLinearGradient shine(outer.topLeft(), outer.topRight());
        shine.setColorAt(0, m_colors.light);
        shine.setColorAt(1, m_colors.shade);
        rounded(outer, thumbRadius * m_ratio, m_colors.border);
        rounded(outer.adjusted(m_hairline, m_hairline, -m_hairline, -m_hairline),
                thumbRadius * m_ratio - m_hairline, shine);
    }

    void rounded(const QRectF& rectangle, qreal radius, const QBrush& brush)
    {
        m_painter.setBrush(brush);
        m_painter.drawRoundedRect(rectangle, radius, radius);
    }

    void grip(int length)
    {
        const int margin = device(gripMargin);
        const int width = m_across - 2 * margin;
        m_painter.fillRect(margin, 0, width, m_hairline, m_colors.grip);
        m_painter.fillRect(margin, length - m_hairline, width, m_hairline, m_colors.grip);
    }

    QPainter& m_painter;
    qreal m_ratio;
    Colors m_colors;
    int m_across;
    int m_hairline;
};

/// The picture of a role: the drawing, turned pixel by pixel, so that all four directions look the same.
QPixmap drawn(SkinRole role, SkinState state, qreal ratio)
{
    const Turned turned = turnedOf(role);
    QImage image(qRound(across * ratio), qRound(lengthOf(turned.drawing) * ratio),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Artist(painter, ratio, state).draw(turned.drawing);
    painter.end();
    if (turned.far)
        image = image.mirrored(false, true);
    if (turned.lying)
        image = image.transformed(QTransform().rotate(90)).mirrored(true, false);
    image.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(std::move(image));
}

} // namespace

QSize skinSize(SkinRole role)
{
    const Turned turned = turnedOf(role);
    const QSize standing(across, lengthOf(turned.drawing));
    return turned.lying ? standing.transposed() : standing;
}

std::shared_ptr<ScrollSkin> ScrollSkin::forRatio(qreal ratio)
{
    // The bars own the skins, since no pixmap may outlive the application.
    static std::map<qreal, std::weak_ptr<ScrollSkin>> known;
    std::weak_ptr<ScrollSkin>& kept = known[ratio];
    std::shared_ptr<ScrollSkin> skin = kept.lock();
    if (!skin) {
        skin = std::make_shared<ScrollSkin>(ratio);
        kept = skin;
    }
    return skin;
}

ScrollSkin::ScrollSkin(qreal ratio) : m_ratio(ratio) {}

QPixmap ScrollSkin::picture(SkinRole role, SkinState state)
{
    QPixmap& kept = m_pictures.at(std::size_t(role) * skinStateCount + std::size_t(state));
    if (kept.isNull()) {
        kept = drawn(role, state, m_ratio);
        ++m_drawn;
    }
    return kept;
}

} // namespace quorvia::controls
