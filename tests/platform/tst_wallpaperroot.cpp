// The root window of an X server that the test starts: what it shows, that it stays, and what is freed.
#include "platform/WallpaperRoot.h"

#include <QImage>
#include <QProcess>
#include <QtTest>

#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace quorvia::platform;
using Style = WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

namespace {

struct Free
{
    void operator()(void* answer) const { std::free(answer); }
};
template <class T>
using Answer = std::unique_ptr<T, Free>;

/// An X server without a window manager, that ends with the object.
class Server
{
  public:
    explicit Server(const QString& screen)
    {
        int ends[2] = {-1, -1};
        if (::pipe(ends) != 0)
            return;
        m_process.start("Xvfb",
                        {"-displayfd", QString::number(ends[1]), "-screen", "0", screen, "-nolisten", "tcp"});
        m_process.waitForStarted();
        ::close(ends[1]);
        char digits[16] = {};
        const auto count = ::read(ends[0], digits, sizeof digits - 1);
        ::close(ends[0]);
        if (count > 0)
            m_display = ':' + QByteArray(digits).trimmed();
        m_connection = xcb_connect(m_display.constData(), nullptr);
    }
    ~Server()
    {
        xcb_disconnect(m_connection);
        m_process.terminate();
        m_process.waitForFinished();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    QByteArray display() const { return m_display; }
    xcb_connection_t* connection() const { return m_connection; }
    bool runs() const { return !m_display.isEmpty() && !xcb_connection_has_error(m_connection); }
    xcb_screen_t* screen() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data; }

    xcb_atom_t atom(const char* name) const
    {
        const Answer<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, uint16_t(std::strlen(name)), name), nullptr));
        return answer->atom;
    }

    /// The pixmap that a property of the root window names; 0 for none.
    xcb_pixmap_t named(const char* property) const
    {
        const Answer<xcb_get_property_reply_t> answer(xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, screen()->root, atom(property), XCB_ATOM_PIXMAP, 0, 1),
            nullptr));
        return answer && answer->value_len == 1
                   ? *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(answer.get()))
                   : 0;
    }

    void name(const char* property, xcb_pixmap_t pixmap) const
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, screen()->root, atom(property),
                            XCB_ATOM_PIXMAP, 32, 1, &pixmap);
    }

    bool exists(xcb_drawable_t drawable) const
    {
        xcb_generic_error_t* raw = nullptr;
        const Answer<xcb_get_geometry_reply_t> answer(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, drawable), &raw));
        const Answer<xcb_generic_error_t> error(raw);
        return answer != nullptr;
    }

    /// A pixmap of another program's, which `owner` is the connection of.
    static xcb_pixmap_t makePixmap(xcb_connection_t* owner)
    {
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(owner)).data;
        const xcb_pixmap_t pixmap = xcb_generate_id(owner);
        xcb_create_pixmap(owner, screen->root_depth, pixmap, screen->root, 4, 4);
        return pixmap;
    }

    /// What is on the drawable, a window or a pixmap of the screen's size.
    QImage shot(xcb_drawable_t drawable) const
    {
        const uint16_t width = screen()->width_in_pixels;
        const uint16_t height = screen()->height_in_pixels;
        const Answer<xcb_get_image_reply_t> answer(xcb_get_image_reply(
            m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, 0, 0, width, height, ~0U),
            nullptr));
        if (!answer)
            return {};
        return QImage(xcb_get_image_data(answer.get()), width, height, QImage::Format_RGB32).copy();
    }

  private:
    QProcess m_process;
    QByteArray m_display;
    xcb_connection_t* m_connection = nullptr;
};

} // namespace

class TestWallpaperRoot : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        QImage picture(30, 20, QImage::Format_RGB32);
        picture.fill(Qt::red);
        for (int y = 0; y < 20; ++y) {
            for (int x = 15; x < 30; ++x)
                picture.setPixelColor(x, y, QColor(1, 120, 254));
        }
        QVERIFY(picture.save(path()));
    }

    void shows_data()
    {
        QTest::addColumn<Style>("style");
        QTest::addColumn<QList<QPoint>>("red");
        QTest::addColumn<QList<QPoint>>("blue");
        QTest::addColumn<QList<QPoint>>("black");
        using Points = QList<QPoint>;
        // One screen on the left half, none on the right one.
        QTest::newRow("stretch") << Style::Stretch << Points{{0, 0}, {300, 899}}
                                 << Points{{799, 0}, {500, 450}} << Points{{800, 0}, {1599, 899}};
        QTest::newRow("tile") << Style::Tile << Points{{0, 0}, {30, 0}, {1590, 899}, {0, 880}}
                              << Points{{15, 0}, {29, 19}, {45, 880}} << Points{};
        QTest::newRow("centre") << Style::Centre << Points{{385, 440}, {399, 459}}
                                << Points{{400, 440}, {414, 459}}
                                << Points{{384, 440}, {415, 440}, {400, 439}, {400, 460}, {0, 0}};
    }
    void shows()
    {
        QFETCH(Style, style);
        const Server server("1600x900x24");
        QVERIFY(server.runs());
        QString why = "untouched";
        QVERIFY2(setRootWallpaper(path(), style, {{0, 0, 800, 900}}, server.display(), &why),
                 qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        const xcb_pixmap_t pixmap = server.named("_XROOTPMAP_ID");
        QVERIFY(pixmap != 0);
        QCOMPARE(server.named("ESETROOT_PMAP_ID"), pixmap);
        const QImage screen = server.shot(server.screen()->root);
        QCOMPARE(server.shot(pixmap), screen);
        check(screen, "red", QColor(Qt::red));
        check(screen, "blue", QColor(1, 120, 254));
        check(screen, "black", QColor(Qt::black));
    }

    void staysWhenTheScreenIsDrawnAnew()
    {
        const Server server("320x200x24");
        QVERIFY(server.runs());
        QVERIFY(setRootWallpaper(path(), Style::Tile, {}, server.display()));
        const QImage before = server.shot(server.screen()->root);
        const xcb_window_t window = xcb_generate_id(server.connection());
        const uint32_t white = 0xffffff;
        xcb_create_window(server.connection(), XCB_COPY_FROM_PARENT, window, server.screen()->root, 0, 0, 320,
                          200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                          &white);
        xcb_map_window(server.connection(), window);
        QCOMPARE(server.shot(window).pixel(0, 0), qRgb(255, 255, 255));
        xcb_destroy_window(server.connection(), window);
        QCOMPARE(server.shot(server.screen()->root), before);
    }

    void theFormerPixmapIsFreed()
    {
        const Server server("320x200x24");
        QVERIFY(server.runs());
        QVERIFY(setRootWallpaper(path(), Style::Tile, {}, server.display()));
        const xcb_pixmap_t first = server.named("_XROOTPMAP_ID");
        QVERIFY(server.exists(first));
        QVERIFY(setRootWallpaper(path(), Style::Centre, {}, server.display()));
        const xcb_pixmap_t second = server.named("_XROOTPMAP_ID");
        QVERIFY(second != first);
        QVERIFY(!server.exists(first));
        QVERIFY(server.exists(second));
        QCOMPARE(server.shot(server.screen()->root).pixelColor(0, 0), QColor(Qt::black));
    }

    void aProgramThatRunsIsNotEnded_data()
    {
        QTest::addColumn<bool>("isFirst");
        QTest::newRow("its pixmap under the one name") << true;
        QTest::newRow("its pixmap under the other") << false;
    }
    void aProgramThatRunsIsNotEnded()
    {
        QFETCH(bool, isFirst);
        const Server server("320x200x24");
        QVERIFY(server.runs());
        xcb_connection_t* const other = xcb_connect(server.display().constData(), nullptr);
        const xcb_pixmap_t theirs = Server::makePixmap(other);
        xcb_flush(other);
        QTRY_VERIFY(server.exists(theirs));
        server.name(isFirst ? "_XROOTPMAP_ID" : "ESETROOT_PMAP_ID", theirs);
        QVERIFY(server.exists(theirs)); // and the name has arrived
        QVERIFY(setRootWallpaper(path(), Style::Tile, {}, server.display()));
        const bool isThere = server.exists(theirs);
        xcb_disconnect(other);
        QVERIFY(isThere);
        QVERIFY(server.named("_XROOTPMAP_ID") != theirs);
        QCOMPARE(server.named("ESETROOT_PMAP_ID"), server.named("_XROOTPMAP_ID"));
    }

    void otherDepths_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("reason");
        QTest::newRow("16") << "320x200x16"
                            << "the root window has pixels of another kind (depth 16)";
        QTest::newRow("8") << "320x200x8"
                           << "the root window has pixels of another kind (depth 8)";
        QTest::newRow("30") << "320x200x30"
                            << "the root window has pixels of another kind (depth 30)";
    }
    void otherDepths()
    {
        QFETCH(QString, screen);
        const Server server(screen);
        QVERIFY(server.runs());
        QString why;
        QVERIFY(!setRootWallpaper(path(), Style::Tile, {}, server.display(), &why));
        QTEST(why, "reason");
        QCOMPARE(server.named("_XROOTPMAP_ID"), xcb_pixmap_t(0));
    }

    void withoutAServer()
    {
        QString why;
        QVERIFY(!setRootWallpaper(path(), Style::Tile, {}, "nowhere:999", &why));
        QCOMPARE(why, QString("the X server cannot be reached"));
        QVERIFY(!setRootWallpaper(path(), Style::Tile, {}, "nowhere:999"));
    }

    void withoutAPicture()
    {
        const Server server("320x200x24");
        QVERIFY(server.runs());
        QString why;
        QVERIFY(!setRootWallpaper(m_home.filePath("none.bmp"), Style::Tile, {}, server.display(), &why));
        QVERIFY(!why.isEmpty());
        QCOMPARE(server.named("_XROOTPMAP_ID"), xcb_pixmap_t(0));
    }

  private:
    QString path() const { return m_home.filePath("Quorvia.bmp"); }

    /// Compares the points of the row's column with a colour.
    static void check(const QImage& screen, const char* column, const QColor& colour)
    {
        const auto points =
            *static_cast<QList<QPoint>*>(QTest::qData(column, QMetaType::fromType<QList<QPoint>>().id()));
        for (const QPoint& point : points)
            QVERIFY2(screen.pixelColor(point) == colour,
                     qPrintable(QString("%1,%2 is %3")
                                    .arg(point.x())
                                    .arg(point.y())
                                    .arg(screen.pixelColor(point).name())));
    }

    QTemporaryDir m_home;
};

QTEST_GUILESS_MAIN(TestWallpaperRoot)
#include "tst_wallpaperroot.moc"
