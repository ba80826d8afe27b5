// A surface that shows a picture from its top left corner. Painting costs what is exposed; stretched, one
// pass over the picture for each new size.
#pragma once

#include <QImage>
#include <QWidget>

namespace quorvia::output {

class ClipSurface : public QWidget
{
  public:
    explicit ClipSurface(const char* name, QWidget* parent = nullptr);

    /// Shows `picture`, one of its pixels on one of the screen; null clears the surface.
    void showPicture(const QImage& picture);
    /// Shows `picture` at the size of the surface, whatever its proportions.
    void stretchPicture(const QImage& picture);
    void clear() { showPicture({}); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const QImage& stretched(QSize size);

    QImage m_picture;
    QImage m_stretched; ///< of m_picture, at the size it was painted at last
    bool m_stretches = false;
};

} // namespace quorvia::output
