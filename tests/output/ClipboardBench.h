// The clipboard preview on the bench: a clipboard of our own, and what is pasted written down.
#pragma once

#include "app/mWindowsAPI.h"
#include "controls/ScrollBar.h"
#include "output/frmClipboard.h"
#include "support/ScratchHome.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <optional>

namespace quorvia::test {

/// Left half red, right half blue.
inline QImage halves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < height; ++y) {
        for (int x = width / 2; x < width; ++x)
            image.setPixel(x, y, qRgb(0, 0, 255));
    }
    return image;
}

inline const QImage small = halves(40, 30);
inline const QImage large = halves(3000, 2000);

class ClipboardBench
{
  public:
    ClipboardBench() { app::openSettings(); }
    ~ClipboardBench() { app::closeSettings(); }
    Q_DISABLE_COPY_MOVE(ClipboardBench)

    output::frmClipboard& show()
    {
        window = std::make_unique<output::frmClipboard>(
            output::frmClipboard::Caller{.PasteImage =
                                             [this](const QImage& picture) {
                                                 ++pastes;
                                                 pasted = picture;
                                                 captionThen = button("cmdFinish")->text();
                                                 visibleThen = window->isVisible();
                                             }},
            platform::ClipboardReader{.text =
                                          [this] {
                                              ++reads;
                                              return text;
                                          },
                                      .image =
                                          [this] {
                                              ++imageReads;
                                              return image;
                                          }});
        window->show();
        const bool shown = QTest::qWaitForWindowExposed(window.get());
        Q_ASSERT(shown);
        Q_UNUSED(shown);
        return *window;
    }

    template <class Kind = QWidget>
    Kind* part(const char* name) const
    {
        return window->findChild<Kind*>(QLatin1String(name));
    }
    QPushButton* button(const char* name) const { return part<QPushButton>(name); }
    controls::ScrollBar* bar(const char* name) const { return part<controls::ScrollBar>(name); }
    QAction* item(const char* name) const { return part<QAction>(name); }
    QString title() const { return part<QLabel>("lblTitle")->text(); }
    /// The picture area as it looks.
    QImage area() const { return part("picBG")->grab().toImage(); }
    QColor seen(double across, double down) const
    {
        const QImage looks = area();
        return looks.pixelColor(int(looks.width() * across), int(looks.height() * down));
    }

    ScratchHome home;
    QString text;
    QImage image;
    int reads = 0;
    int imageReads = 0;
    int pastes = 0;
    std::optional<QImage> pasted;
    QString captionThen;
    bool visibleThen = false;
    std::unique_ptr<output::frmClipboard> window;
};

} // namespace quorvia::test
