// A scroll bar drawn from pictures. A change of its value moves one small child and draws nothing anew; a
// change of its size repaints the track.
#pragma once

#include "controls/ScrollMetrics.h"

#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

namespace quorvia::controls {

class ScrollSkin;

/// Lies at first. Across it always has the thickness of its skin, whatever size it is given. It takes no
/// keyboard focus unless it is given a focus policy.
class ScrollBar : public QWidget
{
    Q_OBJECT

  public:
    explicit ScrollBar(QWidget* parent = nullptr);
    ~ScrollBar() override;

    /// The position, from 0 to Max.
    int Value() const { return m_value; }
    /// Takes the nearest value within 0 to Max, moves the thumb and emits Change, also for an equal value.
    void SetValue(int value);
    /// The highest value, at least 1.
    int Max() const { return m_max; }
    /// A value that stands above `maximum` is brought down to it without a Change.
    void SetMax(int maximum);
    /// 1 upright, 2 lying.
    int Alight() const { return m_vertical ? 1 : 2; }
    /// 1 puts the bar upright, any other number down; its length becomes 2000 twips.
    void SetAlight(int alight);
    bool Vertical() const { return m_vertical; }
    /// What one step adds at least, 1 at first. Numbers below 1 count as 1.
    int SmallChange() const { return m_smallChange; }
    void SetSmallChange(int change);
    /// True while the thumb follows the pointer.
    bool Dragging() const { return m_grip.has_value(); }
    /// The length of the thumb in twips.
    int ThumbLength() const;

    /// Paints the thumb.
    void DrawSelecter();
    /// Paints the track and its arrows.
    void DrawScroll();
    /// Places everything anew in the present size.
    void SizeScroll();
    /// One step forward: SmallChange, from a maximum of 151 on a hundredth of it when that is more.
    void UpArrowClick();
    /// One step back.
    void DownArrowClick();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void Change(int value);

  protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    Qt::Orientation orientation() const { return m_vertical ? Qt::Vertical : Qt::Horizontal; }
    ScrollTrack track() const;
    ScrollPart partUnder(QPointF point) const;
    int alongTwips(QPointF point) const;
    void placeThumb();
    void stepBy(qint64 steps);
    bool takeKey(int key);
    void repeatStep();
    void followPointer(int position);
    void press(std::optional<ScrollPart> part);
    void letGo();
    void hover(std::optional<ScrollPart> part);
    void nameForReaders();
    void tellReaders();
    void drawTrack(QPainter& painter);
    void drawThumb(QPainter& painter);
    ScrollSkin& skinFor(const QPainter& painter);

    QWidget* m_holder;
    QWidget* m_pScroll;
    QWidget* m_pSelecter;
    QTimer m_tMove;
    std::shared_ptr<ScrollSkin> m_skin;
    std::optional<ScrollPart> m_hovered;
    std::optional<ScrollPart> m_pressed;
    std::optional<int> m_grip; // while dragging: how far into the thumb the pointer holds it, in twips
    int m_value = 0;
    int m_max = 1;
    int m_smallChange = 1;
    int m_wheel = 0; // turned, but not yet a whole notch
    bool m_vertical = false;
};

} // namespace quorvia::controls
