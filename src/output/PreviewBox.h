// The frame around the preview of a page: centres the page, or scrolls it by bars along the frame's inside.
// Wheel and keys scroll as well.
#pragma once

#include <QWidget>

namespace quorvia::controls {
class ScrollBar;
}

namespace quorvia::output {

class PagePreview;
class PageSurface;
struct PreviewAxis;

class PreviewBox : public QWidget
{
    Q_OBJECT

  public:
    /// `page` must live as long.
    PreviewBox(const PageSurface& page, QWidget* parent);

    /// Shows a page of `page` twips at the factor `zoom`, in the present size of the frame.
    void layOut(QSize page, double zoom);
    PagePreview& preview() const { return *m_pPreview; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    controls::ScrollBar* addBar(const char* name, const QString& accessible, int alight);
    void layOutBar(controls::ScrollBar& bar, const PreviewAxis& axis, int start);
    void placeBars();
    void scroll();

    PagePreview* m_pPreview;
    controls::ScrollBar* m_sWidth;
    controls::ScrollBar* m_sHeight;
    QWidget* m_pHold;
    QPoint m_centred;         ///< pixels; of an axis without a bar
    bool m_isPassing = false; ///< a key is with a bar
};

} // namespace quorvia::output
