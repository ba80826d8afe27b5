#include "controls/ScrollComposition.h"

#include <QPainter>

namespace quorvia::controls {

namespace {

/// The pictures of one orientation.
struct Roles
{
    SkinRole space, nearArrow, farArrow, fill, nearEnd, farEnd, grip;
};

constexpr Roles standing{SkinRole::vspace,  SkinRole::varrowtop,  SkinRole::varrowbottom, SkinRole::vsepbg,
                         SkinRole::vseptop, SkinRole::vsepbottom, SkinRole::vsepmid};
constexpr Roles lying{SkinRole::hspace,   SkinRole::harrowleft, SkinRole::harrowright, SkinRole::hsepbg,
                      SkinRole::hsepleft, SkinRole::hsepright,  SkinRole::hsepmid};

/// Places pictures along a bar, in device pixels.
class Row
{
  public:
    Row(QPainter& painter, ScrollSkin& skin, Qt::Orientation orientation, int length)
        : roles(orientation == Qt::Vertical ? standing : lying), m_painter(painter), m_skin(skin),
          m_orientation(orientation)
    {
        // The origin may lie between two pixels of the device: begin and end are rounded to whole ones.
        const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
        const QPoint begin(qRound(origin.x()), qRound(origin.y()));
        const qreal exactBegin = orientation == Qt::Vertical ? origin.y() : origin.x();
        const int wholeBegin = orientation == Qt::Vertical ? begin.y() : begin.x();
        m_length = qRound(exactBegin + length * skin.ratio()) - wholeBegin;
        m_painter.save();
        m_painter.scale(1 / skin.ratio(), 1 / skin.ratio());
        m_painter.translate(begin - origin);
    }
    ~Row() { m_painter.restore(); }
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;

    void tile(SkinRole role, SkinState state)
    {
        const QPixmap picture = m_skin.picture(role, state);
        // One tile more at both ends: a surface that begins or ends between two pixels must not have a gap.
        const int step = along(picture);
        for (int at = -step; at <= m_length; at += step)
            put(picture, at);
    }

    void atBegin(SkinRole role, SkinState state) { put(m_skin.picture(role, state), 0); }

    void atEnd(SkinRole role, SkinState state)
    {
        const QPixmap picture = m_skin.picture(role, state);
        put(picture, m_length - along(picture));
    }

    void inTheMiddle(SkinRole role, SkinState state)
    {
        const QPixmap picture = m_skin.picture(role, state);
        put(picture, m_length / 2 - along(picture) / 2);
    }

    const Roles& roles;

  private:
    int along(const QPixmap& picture) const
    {
        return m_orientation == Qt::Vertical ? picture.height() : picture.width();
    }

    void put(const QPixmap& picture, int at)
    {
        const QPoint place = m_orientation == Qt::Vertical ? QPoint(0, at) : QPoint(at, 0);
        m_painter.drawPixmap(QRect(place, picture.size()), picture, picture.rect());
    }

    QPainter& m_painter;
    ScrollSkin& m_skin;
    Qt::Orientation m_orientation;
    int m_length = 0;
};

} // namespace

qreal paintRatio(const QPainter& painter)
{
    return painter.deviceTransform().m11();
}

void paintTrack(QPainter& painter, ScrollSkin& skin, Qt::Orientation orientation, int length,
                SkinState nearArrow, SkinState farArrow)
{
    Row row(painter, skin, orientation, length);
    row.tile(row.roles.space, SkinState::Normal);
    row.atBegin(row.roles.nearArrow, nearArrow);
    row.atEnd(row.roles.farArrow, farArrow);
}

void paintThumb(QPainter& painter, ScrollSkin& skin, Qt::Orientation orientation, int length, SkinState state)
{
    Row row(painter, skin, orientation, length);
    row.tile(row.roles.fill, state);
    row.atBegin(row.roles.nearEnd, state);
    row.atEnd(row.roles.farEnd, state);
    row.inTheMiddle(row.roles.grip, state);
}

} // namespace quorvia::controls
