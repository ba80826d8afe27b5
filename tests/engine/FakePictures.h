// Pictures out of thin air for the loader and the control: a table of named pages, and gates that hold a
// decode until the test lets it go.
#pragma once

#include "engine/ImageLoader.h"

#include <QImage>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace quorvia::test {

/// A door that decodes wait at. Open to begin with.
class Gate
{
  public:
    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_open = false;
    }

    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

    /// Waits until the door is open or `cancel` is set.
    void pass(const engine::CancelFlag& cancel)
    {
        std::unique_lock lock(m_mutex);
        ++m_arrived;
        m_changed.notify_all();
        while (!m_open && !cancel)
            m_changed.wait_for(lock, std::chrono::milliseconds(1)); // the flag has no condition of its own
    }

    /// True when `count` decodes have come to the door in all; waits for that up to 10 seconds.
    bool sawArrivals(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_arrived >= count; });
    }

    int arrivals()
    {
        const std::lock_guard lock(m_mutex);
        return m_arrived;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = true;
    int m_arrived = 0;
};

struct FakeFile
{
    std::vector<QImage> pages;
    bool badPixels = false; ///< the header is fine, no page decodes
    bool scales = true;     ///< a decode for a box gives a smaller picture
    bool badFull = false;   ///< only a picture for a box decodes
    bool readError = false; ///< decodes end early
    int bitsPerPixel = 24;
    std::shared_ptr<Gate> headerGate = std::make_shared<Gate>();
    std::shared_ptr<Gate> firstGate = std::make_shared<Gate>(); ///< decodes with a box
    std::shared_ptr<Gate> fullGate = std::make_shared<Gate>();  ///< decodes of every pixel
};

/// Files by name, filled by the test before the loads begin.
class FakePictures
{
  public:
    FakeFile& operator[](const QString& name) { return m_files[name]; }

    engine::DecoderOpener opener()
    {
        return [this](const QString& name) -> engine::Result<std::unique_ptr<engine::Decoder>> {
            const auto found = m_files.find(name);
            if (found == m_files.end())
                return engine::Error{engine::ErrorKind::NotFound, QStringLiteral("no such picture")};
            return std::unique_ptr<engine::Decoder>(std::make_unique<FakeDecoder>(found->second, *this));
        };
    }

    /// The names of the decodes begun so far, in their order; with "+" behind for every pixel.
    QStringList order()
    {
        const std::lock_guard lock(m_mutex);
        return m_order;
    }

    int openDecoders() const { return m_openDecoders; }

  private:
    class FakeDecoder final : public engine::Decoder
    {
      public:
        FakeDecoder(const FakeFile& file, FakePictures& pictures) : m_file(file), m_pictures(pictures)
        {
            ++m_pictures.m_openDecoders;
        }
        ~FakeDecoder() override { --m_pictures.m_openDecoders; }

        int pageCount() override { return static_cast<int>(m_file.pages.size()); }

        engine::Result<engine::PageHeader> header(int page) override
        {
            m_file.headerGate->pass(engine::CancelFlag(false));
            if (page < 1 || page > pageCount())
                return engine::Error{engine::ErrorKind::Damaged, QStringLiteral("no such page")};
            return engine::PageHeader{m_file.pages[static_cast<size_t>(page - 1)].size(),
                                      m_file.bitsPerPixel};
        }

        engine::Result<engine::Picture> decode(int page, QSize box, const engine::CancelFlag& cancel) override
        {
            m_pictures.note(m_file, box);
            (box.isEmpty() ? m_file.fullGate : m_file.firstGate)->pass(cancel);
            if (cancel)
                return engine::Error{engine::ErrorKind::Cancelled, QStringLiteral("cancelled")};
            if (m_file.badPixels || (m_file.badFull && box.isEmpty()))
                return engine::Error{engine::ErrorKind::Damaged, QStringLiteral("bad pixels")};
            QImage image = m_file.pages[static_cast<size_t>(page - 1)];
            const QSize full = image.size();
            if (m_file.scales)
                image = image.scaled(engine::fittedSize(full, box)); // nearest: the colours stay
            engine::Picture picture{image, full, m_file.bitsPerPixel, !m_file.readError};
            picture.readError = m_file.readError;
            return picture;
        }

        bool scales() const override { return m_file.scales; }

      private:
        const FakeFile& m_file;
        FakePictures& m_pictures;
    };

    void note(const FakeFile& file, QSize box)
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [name, candidate] : m_files) {
            if (&candidate == &file)
                m_order.append(box.isEmpty() ? name + QLatin1Char('+') : name);
        }
    }

    std::map<QString, FakeFile> m_files;
    std::mutex m_mutex;
    QStringList m_order;
    std::atomic<int> m_openDecoders = 0;
};

/// An image of one colour.
inline QImage plain(int width, int height, QRgb color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, format);
    image.fill(color);
    return image;
}

/// An image whose pixels are all different in their place: red counts columns, green rows.
inline QImage graded(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, (x / 256) * 16 + y / 256));
    }
    return image;
}

} // namespace quorvia::test
