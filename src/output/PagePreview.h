// The page as the print window shows it, at the size of the widget, with the rectangle that the mouse draws
// on it. Painting costs what is seen; a repaint of the same page is a blit.
#pragma once

#include "engine/DisplayCache.h"

#include <QWidget>

namespace quorvia::output {

class PageSurface;

class PagePreview : public QWidget
{
    Q_OBJECT

  public:
    /// Shows what `page`, which must live as long, holds when it is painted.
    PagePreview(const PageSurface& page, QWidget* parent);

    /// Forgets the rectangle that is being drawn. False when none is.
    bool giveUpDrawing();

  Q_SIGNALS:
    /// The mouse was let go: the rectangle it drew, in twips of the preview; 1 by 1 when it has not moved.
    void drawn(const QRectF& twips);

  protected:
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void showDrawn(const QRectF& drawn);

    const PageSurface& m_page;
    engine::DisplayCache m_cache;
    QWidget* m_sDraw;
    QRectF m_drawn;
    QPoint m_anchor; ///< twips
};

} // namespace quorvia::output
