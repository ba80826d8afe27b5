// A main window over a picture of two halves, red and blue, and what is seen of it.
#pragma once

#include "viewer/CommandStage.h"

#include <QColor>
#include <QImage>

namespace quorvia::test {

/// Red on the left, blue on the right.
inline QImage halves(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixel(x, y, 0xffff0000);
    }
    return image;
}

/// A window that is made with the first picture, `open`.
class EditStage : protected CommandStage
{
  protected:
    engine::ImageEngine& ix1() const { return *m_window->ix1(); }
    QSize size() const { return {ix1().ImagePixelWidth(), ix1().ImagePixelHeight()}; }

    /// Writes `image` in the format of its name.
    QString write(const QString& name, const QImage& image) const
    {
        const QString extension = name.section(u'.', -1);
        return m_bench->home.write(name, *engine::encoderFor(extension)->encode(image, extension, {}));
    }

    /// A window that shows a.png or another picture of two halves, 40 x 20, the first of the folder.
    QString open(const QString& name = QStringLiteral("pics/a.png"), QSize of = {40, 20})
    {
        QString path = write(name, halves(of));
        show({path});
        return path;
    }

    /// The colour in the viewport at `across` and `down` of its middle, in pixels.
    QColor seen(int across, int down) const
    {
        const QImage shot = m_window->pContain()->grab().toImage();
        return shot.pixelColor(shot.rect().center() + QPoint(across, down));
    }

    bool logged(const char* text) const { return m_bench->logTexts().join(u'\n').contains(text); }
};

} // namespace quorvia::test
