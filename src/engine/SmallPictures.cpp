#include "engine/SmallPictures.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/ColorConversion.h"
#include "engine/ReadAheadThread.h"
#include "engine/Transforms.h"
#include "engine/WholeFile.h"

#include <QFileInfo>
#include <QPainter>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>

namespace quorvia::engine {

namespace {

/// The best that is sensible for so few pixels: hardly any quantisation, all of the colour planes.
const EncodeOptions thumbnailOptions = {.jpeg = {.luminance = 4, .chrominance = 5, .subSampling = 0}};

QImage onWhite(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage opaque(image.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return opaque;
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    painter.drawImage(0, 0, image);
    return opaque;
}

void save(const QImage& image, const QString& path)
{
    const auto bytes =
        encoderFor(QStringLiteral("jpg"))->encode(image, QStringLiteral("jpg"), thumbnailOptions);
    if (bytes)
        writeWholeFile(path, *bytes);
}

Result<SmallImage> read(const SmallPicture& wanted, const CancelFlag& cancel)
{
    const auto source = ByteSource::open(wanted.path);
    if (!source)
        return source.error();
    const auto decoder = openDecoder(*source, QFileInfo(wanted.path).suffix().toLower());
    if (!decoder)
        return decoder.error();
    const auto header = (*decoder)->header(1); // refuses what is too large before anything is decoded
    if (!header)
        return header.error();
    auto picture = (*decoder)->decode(1, wanted.box, cancel);
    if (!picture)
        return picture.error();
    // Scaled first: so few pixels are soon converted.
    QImage scaled = resized(picture->image, wanted.sizeFor(picture->fullSize));
    picture->image = QImage();
    const QImage image = onWhite(toSrgb(std::move(scaled), picture->profile));
    if (image.isNull())
        return noMemoryError();
    if (!wanted.saveTo.isEmpty() && picture->complete && !cancel)
        save(image, wanted.saveTo);
    return SmallImage{image, picture->fullSize};
}

class Reading final : public SmallRead
{
  public:
    Reading(SmallPicture wanted, std::shared_ptr<CancelFlag> dropped)
        : m_wanted(std::move(wanted)), m_dropped(std::move(dropped))
    {
    }

    bool isDone() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_result.has_value();
    }

    SmallImage result() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_result.value_or(SmallImage());
    }

    void run()
    {
        const auto read = readSmall(m_wanted, *m_dropped);
        const std::lock_guard lock(m_mutex);
        m_result = read ? *read : SmallImage();
    }

  private:
    const SmallPicture m_wanted;
    const std::shared_ptr<CancelFlag> m_dropped;
    mutable std::mutex m_mutex;
    std::optional<SmallImage> m_result;
};

/// What the asker gets: it drops the reading, which the thread may hold for longer, when it goes.
class ReadHold final : public SmallRead
{
  public:
    ReadHold(std::shared_ptr<Reading> reading, std::shared_ptr<CancelFlag> dropped)
        : m_reading(std::move(reading)), m_dropped(std::move(dropped))
    {
    }
    ~ReadHold() override { *m_dropped = true; }
    ReadHold(const ReadHold&) = delete;
    ReadHold& operator=(const ReadHold&) = delete;

    bool isDone() const override { return m_reading->isDone(); }
    SmallImage result() const override { return m_reading->result(); }

  private:
    const std::shared_ptr<Reading> m_reading;
    const std::shared_ptr<CancelFlag> m_dropped;
};

struct Queued
{
    std::shared_ptr<Reading> reading;
    std::shared_ptr<CancelFlag> dropped;
};

} // namespace

SmallRead::~SmallRead() = default;

Result<SmallImage> readSmall(const SmallPicture& picture, const CancelFlag& cancel)
{
    try {
        return read(picture, cancel);
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

class SmallPictureReader::Private
{
  public:
    std::shared_ptr<SmallRead> ask(const SmallPicture& picture, bool first)
    {
        auto dropped = std::make_shared<CancelFlag>(false);
        auto reading = std::make_shared<Reading>(picture, dropped);
        if (hasThread())
            enqueue({reading, dropped}, first);
        else
            reading->run();
        return std::make_shared<ReadHold>(std::move(reading), std::move(dropped));
    }

    void stop()
    {
        const std::lock_guard lock(m_mutex);
        m_thread.request_stop();
        if (m_running)
            *m_running = true;
        m_queue.clear();
    }

  private:
    /// False when the machine has no thread left.
    bool hasThread()
    {
        if (m_thread.joinable())
            return true;
        try {
            m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
        } catch (const std::system_error&) {
            return false;
        }
        return true;
    }

    void enqueue(Queued queued, bool first)
    {
        {
            const std::lock_guard lock(m_mutex);
            std::erase_if(m_queue, [](const Queued& other) { return other.dropped->load(); });
            m_queue.insert(first ? m_queue.begin() : m_queue.end(), std::move(queued));
        }
        m_work.notify_one();
    }

    void run(const std::stop_token& stop)
    {
        stepBack();
        std::unique_lock lock(m_mutex);
        while (m_work.wait(lock, stop, [this] { return !m_queue.empty(); }) && !stop.stop_requested()) {
            Queued next = m_queue.front();
            m_queue.pop_front();
            m_running = next.dropped;
            lock.unlock();
            if (!*next.dropped)
                next.reading->run();
            next = {}; // freed without the mutex
            lock.lock();
            m_running.reset();
        }
    }

    std::mutex m_mutex;
    std::condition_variable_any m_work;
    std::deque<Queued> m_queue;
    std::shared_ptr<CancelFlag> m_running; // of the decode under way
    std::jthread m_thread;                 // begins with the first picture; the last member, so joined first
};

SmallPictureReader::SmallPictureReader() : d(std::make_unique<Private>()) {}

SmallPictureReader::~SmallPictureReader()
{
    d->stop();
}

std::shared_ptr<SmallRead> SmallPictureReader::ask(const SmallPicture& picture, bool first)
{
    return d->ask(picture, first);
}

} // namespace quorvia::engine
