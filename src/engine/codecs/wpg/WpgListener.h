// Hears libwpg tell a drawing and draws it on a canvas.
#pragma once

#include "engine/codecs/wpg/WpgCanvas.h"
#include "engine/codecs/wpg/WpgSilentListener.h"

#include <functional>

namespace quorvia::engine {

class WpgListener final : public WpgSilentListener
{
  public:
    /// Gives the bitmap that stands in the file as one pixel of colour number `index`.
    using BitmapOf = std::function<QImage(int index)>;

    WpgListener(WpgCanvas& canvas, BitmapOf bitmapOf) : m_canvas(canvas), m_bitmapOf(std::move(bitmapOf)) {}

    void setStyle(const Properties& properties) override;
    void drawRectangle(const Properties& properties) override;
    void drawEllipse(const Properties& properties) override;
    void drawPolygon(const Properties& properties) override;
    void drawPolyline(const Properties& properties) override;
    void drawPath(const Properties& properties) override;
    void drawGraphicObject(const Properties& properties) override;
    void startTextObject(const Properties& properties) override;
    void endTextObject() override { finishLine(); }
    void closeParagraph() override { finishLine(); }
    void openSpan(const Properties& properties) override;
    void insertText(const librevenge::RVNGString& text) override;
    void insertTab() override { m_text += QLatin1Char(' '); }
    void insertSpace() override { m_text += QLatin1Char(' '); }
    void insertLineBreak() override { finishLine(); }

  private:
    void finishLine();

    WpgCanvas& m_canvas;
    BitmapOf m_bitmapOf;
    WpgStyle m_style;
    Qt::FillRule m_fillRule = Qt::OddEvenFill;
    QPointF m_textAt; ///< inches
    QString m_text;   ///< of the line under way
    QFont m_font;
    double m_textSize = 12.0 / 72; ///< inches
    QColor m_textColor = Qt::black;
};

} // namespace quorvia::engine
