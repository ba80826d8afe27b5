// The pictures that a scroll bar is put together from, drawn for one device pixel ratio. Each is drawn when
// it is first asked for and kept as long as a bar uses the skin; asking again is cheap.
#pragma once

#include <QPixmap>

#include <array>
#include <memory>

namespace quorvia::controls {

/// What a picture is for; v: for a vertical bar, h: for a horizontal one.
enum class SkinRole {
    vspace, ///< background of the track, a tile
    hspace,
    varrowtop,
    varrowbottom,
    harrowleft,
    harrowright,
    vsepbg, ///< fill of the thumb, a tile
    hsepbg,
    vseptop, ///< ends of the thumb
    vsepbottom,
    hsepleft,
    hsepright,
    vsepmid, ///< grip of the thumb
    hsepmid
};
inline constexpr int skinRoleCount = 14;

/// How a part looks. The background of the track has one look only.
enum class SkinState { Normal, Hovered, Pressed, Focused };
inline constexpr int skinStateCount = 4;

/// The size of a picture in device-independent pixels.
QSize skinSize(SkinRole role);

class ScrollSkin
{
  public:
    /// The skin for a device pixel ratio above 0; all who ask for the same ratio share it. For the thread of
    /// the user interface.
    static std::shared_ptr<ScrollSkin> forRatio(qreal ratio);

    explicit ScrollSkin(qreal ratio);

    qreal ratio() const { return m_ratio; }
    /// The picture, its size rounded to whole device pixels, and bearing the ratio.
    QPixmap picture(SkinRole role, SkinState state = SkinState::Normal);
    /// How many pictures have been drawn so far.
    int drawnPictures() const { return m_drawn; }

  private:
    qreal m_ratio;
    int m_drawn = 0;
    std::array<QPixmap, skinRoleCount * skinStateCount> m_pictures;
};

} // namespace quorvia::controls
