// A saver on the bench: an image control, a fresh home with a trash, and what was asked of the window.
#pragma once

#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "commands/ImageSaver.h"
#include "engine/ImageEngine.h"
#include "support/FileContent.h"
#include "support/ScratchTrash.h"

#include <QImage>

#include <memory>

namespace quorvia::test {

/// A picture of four quarters: red, green, blue and white, in the order of reading.
inline QImage quarters(QSize size = {40, 20})
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool right = x >= size.width() / 2;
            const bool down = y >= size.height() / 2;
            image.setPixel(x, y,
                           down ? (right ? 0xffffffff : 0xff0000ff) : (right ? 0xff00ff00 : 0xffff0000));
        }
    }
    return image;
}

/// The bytes of `image` as a file named like `name`.
inline QByteArray encoded(const QImage& image, const QString& name)
{
    const QString extension = name.section(u'.', -1);
    return *engine::encoderFor(extension)->encode(image, extension, {});
}

/// The log's texts without date and time.
inline QStringList logTexts()
{
    constexpr int stampLength = 21; // "mm-dd-yyyy - hh:mm:ss"
    QStringList texts;
    for (const QByteArray& line : contentOf(app::logPath()).split('\n'))
        texts.append(QString::fromUtf8(line.mid(stampLength)));
    texts.removeAll(QString());
    return texts;
}

class SaverBench
{
  public:
    /// `trash` outlives the bench.
    explicit SaverBench(ScratchTrash& trash) : m_trash(trash), ix1(std::make_shared<engine::ImageLoader>())
    {
        m_trash.clear();
        app::openSettings();
    }
    ~SaverBench() { app::closeSettings(); }

    QString in(const QString& name) const { return home.path(name); }
    /// Writes a picture of quarters, its format as its name tells, and returns its path.
    QString picture(const QString& name, QSize size = {40, 20}) const
    {
        return home.write(name, encoded(quarters(size), name));
    }
    /// The same, held by the control.
    QString open(const QString& name, QSize size = {40, 20})
    {
        QString path = picture(name, size);
        ix1.SetFileName(path);
        return path;
    }
    commands::ImageSaver::Sinks sinks()
    {
        return {.ix1 = &ix1,
                .redraw = [this] { steps.append(QStringLiteral("redraw")); },
                .openX =
                    [this](const QString& path) {
                        steps.append(QStringLiteral("open ") + path);
                        ix1.SetFileName(path);
                    },
                .written = [this](const QString& path) { steps.append(QStringLiteral("written ") + path); },
                .setCaption =
                    [this](const QString& caption) { steps.append(QStringLiteral("caption ") + caption); },
                .updateToolbar = [this] { steps.append(QStringLiteral("toolbar")); }};
    }

  private:
    ScratchTrash& m_trash;

  public:
    ScratchHome home;
    engine::ImageEngine ix1;
    QStringList steps; ///< what was asked of the window, in its order
    commands::ImageSaver saver{sinks()};
};

} // namespace quorvia::test
