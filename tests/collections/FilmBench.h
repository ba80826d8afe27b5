// A filmstrip over a folder of pictures of one colour each, and a cache of its own.
#pragma once

#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/Filmstrip.h"
#include "collections/StripSurface.h"
#include "controls/ScrollBar.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QImage>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <memory>

namespace quorvia::test {

/// 600 x 120 pixels: cells of 159 x 120, with a bar less.
class FilmBench
{
  public:
    FilmBench()
    {
        app::openSettings();
        QDir().mkpath(cache());
        QDir().mkpath(home.path(QStringLiteral("pics")));
        app::save(app::common::ThumbnailPath, cache());
        strip = std::make_unique<collections::Filmstrip>();
        strip->resize(600, 120);
        strip->show();
        if (QTest::qWaitForWindowActive(strip.get()))
            strip->clearFocus(); // whose frame would stand on the first cell
    }
    ~FilmBench()
    {
        strip.reset();
        app::closeSettings();
    }
    FilmBench(const FilmBench&) = delete;
    FilmBench& operator=(const FilmBench&) = delete;

    QString cache() const { return home.path(QStringLiteral("cache/")); }
    QStringList thumbnails() const { return QDir(cache()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    QString picture(const QString& name, const QColor& color, QSize size = QSize(60, 40)) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        const QString path = home.path(QStringLiteral("pics/") + name);
        image.save(path, "PNG");
        return path;
    }

    /// Adds `count` files named as they count, which are no images unless `color` is valid.
    void addMany(int count, const QColor& color = QColor()) const
    {
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("p%1.png").arg(i, 5, 10, QLatin1Char('0'));
            strip->add(color.isValid() ? picture(name, color) : home.path(QStringLiteral("pics/") + name));
        }
    }

    QTimer& timer(const char* name) const { return *strip->findChild<QTimer*>(QLatin1String(name)); }
    controls::ScrollBar& bar() const
    {
        return *strip->findChild<controls::ScrollBar*>(QStringLiteral("sBar"));
    }
    QWidget& surface() const { return *strip->findChild<QWidget*>(QStringLiteral("pImages")); }

    /// Waits until nothing is painted any more.
    bool settles(int milliseconds = 30'000) const
    {
        return QTest::qWaitFor(
            [this] {
                return !timer("tDraw").isActive() && !timer("tSelectionChange").isActive() &&
                       !timer("tDrawSelected").isActive();
            },
            milliseconds);
    }
    bool draws() const
    {
        strip->DrawStrip();
        return settles();
    }
    void laysOut() const
    {
        strip->DrawStrip();
        QVERIFY(QTest::qWaitFor([this] { return timer("tDraw").interval() != 100; }, 5'000));
    }

    /// The colour in the middle and in the corner of the cell in `column` (from 0) and `row` of `rows`.
    QColor middle(int column, int row = 0, int rows = 1) const { return at(column + 0.5, row + 0.5, rows); }
    QColor corner(int column, int row = 0, int rows = 1) const
    {
        return at(column + 0.005, row + 0.008, rows);
    }
    QColor at(double across, double down, int rows) const
    {
        const QImage shot = surface().grab().toImage();
        const double height = double(shot.height()) / rows;
        const double width = height * 1.333;
        const QPoint point(int(across * width), int(down * height));
        return shot.valid(point) ? QColor(shot.pixel(point)) : QColor();
    }

    ScratchHome home;
    std::unique_ptr<collections::Filmstrip> strip;
};

/// True when the colours differ by no more than a JPEG changes them.
inline bool isNear(const QColor& one, const QColor& other)
{
    const auto near = [](int a, int b) { return std::abs(a - b) <= 4; };
    return near(one.red(), other.red()) && near(one.green(), other.green()) && near(one.blue(), other.blue());
}

} // namespace quorvia::test
