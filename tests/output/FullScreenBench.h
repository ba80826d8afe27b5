// The full-screen window on the bench: a main window with its image, and calls written down.
#pragma once

#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"
#include "support/SaverBus.h"
#include "support/ScratchHome.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>

#include <functional>
#include <memory>

namespace quorvia::test {

inline constexpr QRgb red = qRgb(255, 0, 0);
inline constexpr QRgb blue = qRgb(0, 0, 255);
inline constexpr QRgb green = qRgb(0, 128, 0);

/// Red with a blue left edge of one pixel.
inline QImage edged(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(red);
    for (int y = 0; y < height; ++y)
        image.setPixel(0, y, blue);
    return image;
}

class FullScreenBench
{
  public:
    FullScreenBench()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // no desktop of the one who runs the test
        qunsetenv("XDG_RUNTIME_DIR");
        app::openSettings();
        app::save(app::setting::FullBackColor, 128 << 8);
        main = std::make_unique<QWidget>();
        main->setGeometry(50, 50, 300, 200);
        ix1 = new engine::ImageEngine(std::make_shared<engine::ImageLoader>(), main.get());
        ix1->resize(300, 200);
        main->show();
    }
    ~FullScreenBench()
    {
        window.reset();
        main.reset();
        app::closeSettings();
    }
    Q_DISABLE_COPY_MOVE(FullScreenBench)

    output::frmImageViewFull& make()
    {
        output::frmImageViewFull::Sinks sinks;
        sinks.runTool = [this](const QString& name) {
            calls.append(name);
            if (onTool)
                onTool(name);
        };
        sinks.isSlideRunning = [this] { return slideRunning; };
        sinks.isSlideShowOnly = [this] { return slideShowOnly; };
        sinks.showMain = [this] {
            calls.append(QStringLiteral("showMain"));
            main->show();
        };
        sinks.closeMain = [this] { calls.append(QStringLiteral("closeMain")); };
        sinks.startedHidden = startedHidden;
        sinks.startedForShow = startedForShow;
        window = std::make_unique<output::frmImageViewFull>(sinks);
        return *window;
    }

    /// The window with `picture` of the file "one.png"; without a picture there is no image.
    output::frmImageViewFull& show(const QImage& picture = {})
    {
        if (!window)
            make();
        if (!picture.isNull())
            open(QStringLiteral("one.png"), picture);
        window->LoadX(ix1, main.get());
        calls.removeAll(QStringLiteral("showMain"));
        return *window;
    }

    void open(const QString& name, const QImage& picture)
    {
        if (!picture.save(home.path(name)))
            qFatal("picture not written");
        ix1->SetFileName(home.path(name));
    }

    template <class Kind = output::PictureButton>
    Kind* part(const char* name) const
    {
        return window->findChild<Kind*>(QLatin1String(name));
    }
    QWidget* bar() const { return part<QWidget>("iFull"); }
    QString label() const { return part<QLabel>("lImage")->text(); }
    QString tag() const { return part("iPlay")->property("tag").toString(); }

    double ratio() const { return window->devicePixelRatioF(); }
    QSize device() const { return (QSizeF(window->size()) * ratio()).toSize(); }
    /// What stands in the window, one pixel a device pixel.
    QImage seen() const
    {
        QImage image = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }
    /// The background with `color` in `part` (device pixels) of it.
    QImage expected(const QRect& part, QRgb color = red) const
    {
        QImage image(device(), QImage::Format_RGB32);
        image.fill(green);
        QPainter(&image).fillRect(part, QColor(color));
        return image;
    }
    void moveMouse(QPointF at)
    {
        QMouseEvent move(QEvent::MouseMove, at, window->mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(window.get(), &move);
    }
    void press(int key, Qt::KeyboardModifiers held = {}, bool repeat = false)
    {
        QKeyEvent event(QEvent::KeyPress, key, held, QString(), repeat);
        QCoreApplication::sendEvent(window.get(), &event);
    }

    ScratchHome home;
    std::unique_ptr<QWidget> main;
    engine::ImageEngine* ix1;
    QStringList calls;
    std::function<void(const QString& name)> onTool;
    bool slideRunning = false;
    bool slideShowOnly = false;
    bool startedHidden = false;
    bool startedForShow = false;
    std::unique_ptr<output::frmImageViewFull> window;
};

inline QImage plain(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(red);
    return image;
}

/// Counts the paints of a widget.
class Paints : public QObject
{
  public:
    explicit Paints(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

} // namespace quorvia::test
