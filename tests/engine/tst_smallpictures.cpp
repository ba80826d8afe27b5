// Pictures read small: what comes back, what is saved, and the order of the reader's thread.
#include "engine/SmallPictures.h"
#include "FakePictures.h"
#include "IndependentReader.h"
#include "support/ChildCheck.h"
#include "support/FullDisk.h"

#include <QColorSpace>
#include <QDir>
#include <QtTest>

#include <pthread.h>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const CancelFlag never = false;
constexpr QSize small(10, 10);

QSize same(QSize page)
{
    return page;
}

QSize toSmall(QSize)
{
    return small;
}

/// What `picture` is read as; a null image when it is not.
SmallImage readNow(const SmallPicture& picture)
{
    const auto read = readSmall(picture, never);
    return read ? *read : SmallImage();
}

} // namespace

class TestSmallPictures : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_order = std::make_shared<Order>();
        m_reader = std::make_unique<SmallPictureReader>();
    }
    void cleanup()
    {
        m_order->gate.open();
        m_reader.reset();
        m_directory.reset();
    }

    void theSizeIsTheAskersChoice()
    {
        QList<QSize> pages;
        const auto sizeFor = [&pages](QSize page) {
            pages.append(page);
            return QSize(33, 44);
        };
        const SmallImage read = readNow({stored(colorPicture({600, 400})), QSize(60, 40), sizeFor, {}});
        QCOMPARE(pages, QList<QSize>{QSize(600, 400)});
        QCOMPARE(read.page, QSize(600, 400));
        QCOMPARE(read.image.size(), QSize(33, 44));
    }

    void pixels_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<int>("format");
        const QSize size(60, 40);
        QTest::newRow("colours") << colorPicture(size) << int(QImage::Format_RGB32);
        QTest::newRow("grey") << greyPicture(size) << int(QImage::Format_Grayscale8);
        QTest::newRow("a palette") << palettePicture(size, 20) << int(QImage::Format_Indexed8);
    }

    void pixels()
    {
        QFETCH(QImage, picture);
        const SmallImage read = readNow({stored(picture), {}, same, {}});
        QTEST(int(read.image.format()), "format");
        QCOMPARE(difference(read.image, picture), QString());
    }

    void transparencyIsWhite()
    {
        QImage clear = plain(20, 10, qRgba(0, 0, 0, 0), QImage::Format_ARGB32);
        clear.setPixel(3, 3, qRgba(255, 0, 0, 255));
        const QImage read = readNow({stored(clear), {}, same, {}}).image;
        QCOMPARE(read.format(), QImage::Format_RGB32);
        QCOMPARE(read.pixel(0, 0), qRgb(255, 255, 255));
        QCOMPARE(read.pixel(3, 3), qRgb(255, 0, 0));
    }

    void colorsComeInSrgb()
    {
        QImage picture = plain(20, 10, qRgb(60, 200, 60));
        picture.setColorSpace(QColorSpace::AdobeRgb);
        const QColor expected(picture.convertedToColorSpace(QColorSpace::SRgb).pixel(0, 0));
        QVERIFY(std::abs(expected.red() - 60) > 20);
        const QColor read(readNow({stored(picture), {}, same, {}}).image.pixel(0, 0));
        QVERIFY2(std::abs(read.red() - expected.red()) <= 2 && std::abs(read.green() - expected.green()) <= 2,
                 qPrintable(read.name()));
    }

    void memoryThatRunsOutOnTheWayIsAnError()
    {
        const auto sizeFor = [](QSize page) -> QSize {
            if (!page.isEmpty())
                throw std::bad_alloc();
            return page;
        };
        const auto read = readSmall({stored(colorPicture({60, 40})), {}, sizeFor, {}}, never);
        QVERIFY(!read);
        QCOMPARE(read.error().kind, ErrorKind::TooLarge);
    }

    void whatCannotBeRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QByteArray huge = QByteArray::fromHex("424d36000000000000003600000028000000");
        huge += QByteArray::fromHex("ffffff7fffffff7f0100180000000000000000000000000000000000000000000000"
                                    "0000");
        QTest::newRow("no image") << QByteArray("no image at all") << int(ErrorKind::NotAnImage);
        QTest::newRow("empty") << QByteArray() << int(ErrorKind::NotAnImage);
        QTest::newRow("only a head") << QByteArray("\x89PNG\r\n\x1a\n") << int(ErrorKind::Damaged);
        QTest::newRow("larger than may be") << huge << int(ErrorKind::TooLarge);
    }

    void whatCannotBeRead()
    {
        QFETCH(QByteArray, bytes);
        const auto read = readSmall({written(bytes), {}, toSmall, thumbnail()}, never);
        QVERIFY(!read);
        QTEST(int(read.error().kind), "kind");
        QVERIFY(!QFile::exists(thumbnail()));
    }

    void whatIsNoFile()
    {
        for (const QString& path : {QString(), path("missing.png"), m_directory->path()})
            QVERIFY(!readSmall({path, {}, toSmall, {}}, never));
    }

    void whatIsScaledIsSaved()
    {
        const SmallImage read = readNow({stored(colorPicture({600, 400})), {60, 40}, to48By32, thumbnail()});
        QFile file(thumbnail());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("\xFF\xD8"));
        QVERIFY(bytes.endsWith("\xFF\xD9"));
        const QImage saved = QImage::fromData(bytes, "JPEG");
        QCOMPARE(saved.size(), QSize(48, 32));
        for (int x = 0; x < saved.width(); ++x) {
            const QColor one(saved.pixel(x, 7));
            const QColor other(read.image.pixel(x, 7));
            QVERIFY2(std::abs(one.red() - other.red()) < 12 && std::abs(one.blue() - other.blue()) < 12,
                     qPrintable(one.name() + other.name())); // of high quality
        }
        QCOMPARE(names(), QStringList({"picture.png", "small.thb"}));
    }

    void aPictureThatIsNotCompleteIsNotSaved()
    {
        QByteArray bytes = contentOf(stored(colorPicture({200, 150})));
        const SmallImage read = readNow({written(bytes.left(bytes.size() / 2)), {}, same, thumbnail()});
        QCOMPARE(read.image.size(), QSize(200, 150));
        QVERIFY(!QFile::exists(thumbnail()));
    }

    void aSaveThatFails_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("bytes"); // that a file may have
        QTest::newRow("no directory") << "nowhere/small.thb" << 1'000'000;
        QTest::newRow("a file in the directory's place") << "picture.png/small.thb" << 1'000'000;
        QTest::newRow("full at once") << "small.thb" << 0;
        QTest::newRow("full half way") << "small.thb" << 500;
    }

    void aSaveThatFails()
    {
        QFETCH(QString, name);
        QFETCH(int, bytes);
        const QString picture = stored(colorPicture({600, 400}));
        SmallImage read;
        {
            const FullDisk disk{rlim_t(bytes)};
            if (disk.isFull())
                read = readNow({picture, {60, 40}, same, m_directory->filePath(name)});
        }
        QCOMPARE(read.image.size(), QSize(600, 400));
        QCOMPARE(names(), QStringList("picture.png")); // and nothing else is left
    }

    void aCancelledReadSavesNothing()
    {
        const CancelFlag cancelled = true;
        const auto read = readSmall({stored(colorPicture({60, 40})), {}, same, thumbnail()}, cancelled);
        QVERIFY(!read);
        QCOMPARE(read.error().kind, ErrorKind::Cancelled);
        CancelFlag late = false;
        const auto sizeFor = [&late](QSize page) {
            late = true;
            return page;
        };
        readSmall({stored(colorPicture({60, 40})), {}, sizeFor, thumbnail()}, late);
        QVERIFY(!QFile::exists(thumbnail()));
    }

    // --- the reader

    void readsInTheOrderOfAsking()
    {
        m_order->gate.close();
        QList<std::shared_ptr<SmallRead>> reads;
        for (const char* name : {"a", "b", "c"})
            reads.append(m_reader->ask(named(name)));
        QVERIFY(m_order->gate.sawArrivals(1));
        QVERIFY(!reads.first()->isDone());
        QVERIFY(reads.first()->result().image.isNull());
        reads.append(m_reader->ask(named("first"), true));
        m_order->gate.open();
        QTRY_VERIFY(std::all_of(reads.begin(), reads.end(), [](const auto& read) { return read->isDone(); }));
        QCOMPARE(m_order->names(), QStringList({"a", "first", "b", "c"}));
        QCOMPARE(reads.last()->result().image.size(), small);
    }

    void whatNobodyHoldsIsNotRead()
    {
        m_order->gate.close();
        auto running = m_reader->ask(named("a", thumbnail()));
        auto dropped = m_reader->ask(named("b"));
        const auto kept = m_reader->ask(named("c"));
        QVERIFY(m_order->gate.sawArrivals(1));
        dropped.reset();
        running.reset(); // too late not to read it, but not to save it
        m_order->gate.open();
        QTRY_VERIFY(kept->isDone());
        QCOMPARE(m_order->names(), QStringList({"a", "c"}));
        QVERIFY(!QFile::exists(thumbnail()));
    }

    void whatIsDroppedIsForgotten()
    {
        m_order->gate.close();
        const auto running = m_reader->ask(named("a"));
        QVERIFY(m_order->gate.sawArrivals(1));
        const auto token = std::make_shared<int>();
        for (int i = 0; i < 100; ++i)
            m_reader->ask(holding(token));
        QVERIFY(token.use_count() <= 2); // only the last, until the next is asked for
        m_order->gate.open();
    }

    void aBrokenFileIsDoneToo()
    {
        const auto broken = m_reader->ask({written("no image"), {}, toSmall, {}});
        const auto missing = m_reader->ask({path("missing"), {}, toSmall, {}});
        const auto good = m_reader->ask(named("a"));
        QTRY_VERIFY(good->isDone());
        QVERIFY(broken->isDone() && missing->isDone());
        QVERIFY(broken->result().image.isNull() && missing->result().image.isNull());
        QCOMPARE(good->result().image.size(), small);
    }

    void standsBack()
    {
        std::atomic<int> level = -100;
        const auto sizeFor = [&level](QSize) {
            level = getpriority(PRIO_PROCESS, 0); // 0: this thread
            return small;
        };
        const auto read = m_reader->ask({stored(colorPicture({60, 40})), {}, sizeFor, {}});
        QTRY_VERIFY(read->isDone());
        QCOMPARE(level.load(), std::max(5, getpriority(PRIO_PROCESS, 0)));
    }

    void endsWhileReading()
    {
        m_order->gate.close();
        const auto running = m_reader->ask(named("a", thumbnail()));
        const auto waiting = m_reader->ask(named("b"));
        auto token = std::make_shared<int>();
        const std::weak_ptr<int> queued = token;
        m_reader->ask(holding(std::move(token)));
        QVERIFY(m_order->gate.sawArrivals(1));
        std::thread end([this] { m_reader.reset(); });
        const bool isEnding = QTest::qWaitFor([&queued] { return queued.expired(); });
        m_order->gate.open();
        end.join();
        QVERIFY(isEnding);
        QCOMPARE(m_order->names(), QStringList("a"));
        QVERIFY(!waiting->isDone());
        QVERIFY(waiting->result().image.isNull());
        QVERIFY(!QFile::exists(thumbnail()));
    }

    void withoutAThreadItReadsAtOnce()
    {
        const SmallPicture picture = named("a");
        const int held = heldInChild([&picture] {
            pthread_attr_t attributes;
            pthread_getattr_default_np(&attributes);
            pthread_attr_setstacksize(&attributes, size_t(1) << 47); // more than a process can have
            pthread_setattr_default_np(&attributes);
            SmallPictureReader reader;
            const auto read = reader.ask(picture);
            return read->isDone() && read->result().image.size() == small;
        });
        QCOMPARE(held, 1);
    }

  private:
    /// Which pictures were read, in their order. The first one read waits at the gate, while that is closed.
    struct Order
    {
        Gate gate;
        std::mutex mutex;
        QStringList read;

        void note(const QString& name)
        {
            {
                const std::lock_guard lock(mutex);
                read.append(name);
            }
            gate.pass(never);
        }
        QStringList names()
        {
            const std::lock_guard lock(mutex);
            return read;
        }
    };

    static QSize to48By32(QSize) { return {48, 32}; }

    QString path(const char* name) const { return m_directory->filePath(QString::fromLatin1(name)); }
    QString thumbnail() const { return path("small.thb"); }
    QStringList names() const
    {
        return QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QString stored(const QImage& image, const char* name = "picture.png") const
    {
        const QString file = path(name);
        return image.save(file) ? file : QString();
    }

    QString written(const QByteArray& bytes) const
    {
        QFile file(path("bytes"));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                                    : QString();
    }

    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// A picture whose reading is noted under `name`.
    SmallPicture named(const char* name, const QString& saveTo = QString()) const
    {
        const auto sizeFor = [order = m_order, told = QString::fromLatin1(name)](QSize) {
            order->note(told);
            return small;
        };
        const QString file = stored(colorPicture({60, 40}), QByteArray(name).append(".png").constData());
        return {file, {}, sizeFor, saveTo};
    }

    /// A picture that keeps hold of `token` as long as anyone keeps the picture.
    static SmallPicture holding(std::shared_ptr<int> token)
    {
        return {QStringLiteral("held"), {}, [held = std::move(token)](QSize page) { return page; }, {}};
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::shared_ptr<Order> m_order;
    std::unique_ptr<SmallPictureReader> m_reader;
};

QTEST_GUILESS_MAIN(TestSmallPictures)
#include "tst_smallpictures.moc"
