// The one page that is composed: what the preview shows and what the printer gets are these pixels. Composing
// is dear, a pass over the picture and the page; it is left out when nothing has changed. Takes the page's
// pixels, and at most once more as many while it composes and for the scaled picture that it keeps.
#pragma once

#include "output/PageLayout.h"

#include <QFont>
#include <QImage>

class QPainter;

namespace quorvia::output {

/// Everything that decides how the page looks.
struct PageContent
{
    QImage picture;  ///< sRGB; may be null
    QSize imageSize; ///< of the picture at its natural size, in twips
    QSize printer;   ///< the paper, in twips
    int resolution = 300;
    QString title = {};
    QString footer = {}; ///< used with hasFooter
    bool hasFooter = false;
    TitleAlign titleAlign = TitleAlign::Center;
    AreaMode area = AreaMode::Center;
    QRectF custom = {}; ///< as in PageInput
    QSizeF twipsPerPixel{15, 15};
    Decorations decorations = {};
    QFont font = {}; ///< of title and footer, by points
    QColor textColor = Qt::black;
    bool operator==(const PageContent&) const;
};

class PageSurface
{
  public:
    /// Draws the page of `content` unless it stands already. False when there was no memory for it, and then
    /// there is no page.
    bool compose(const PageContent& content);
    /// The page at the resolution asked for, RGB32; null before the first composition and for a paper that is
    /// smaller than its margins.
    const QImage& page() const { return m_page; }
    const PageLayout& layout() const { return m_layout; }
    /// Grows with each page that was drawn.
    quint64 number() const { return m_number; }
    /// Forgets the scaled picture, which only saves time.
    void dropScaled();

  private:
    void drawTexts(QPainter& painter) const;
    void drawShapes(QPainter& painter) const;
    void drawPictures(QPainter& painter);
    void drawCopies(QPainter& painter, QRect band, const std::vector<QPoint>& corners, QSize size);
    void drawTiles(QPainter& painter);
    QFont pageFont() const;
    double toDevice(double twips) const;
    double toTwips(double device) const;
    const QImage& scaled(QSize size, QRect part);

    PageContent m_content;
    PageLayout m_layout;
    QImage m_page;
    quint64 m_number = 0;
    QImage m_scaled; ///< m_scaledPart of the picture at m_scaledSize
    QSize m_scaledSize;
    QRect m_scaledPart;
    qint64 m_scaledFrom = 0; ///< key of the picture
};

} // namespace quorvia::output
