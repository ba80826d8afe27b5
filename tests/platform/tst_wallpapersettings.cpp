// The wallpaper in settings whose schemas the test makes; the desktop's own tool reads them back. GLib looks
// for schemas once a process, so what needs other ones runs in a child.
#include "../support/ChildCheck.h"
#include "../support/ScratchHome.h"
#include "platform/WallpaperSettings.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

using namespace quorvia::platform;
using Desktop = WallpaperDesktop;
using Style = WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperDesktop)
Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

namespace {

const char options[] = "<key name='picture-options' enum='test.style'><default>'zoom'</default></key>";
const char picture[] = "<key name='picture-uri' type='s'><default>''</default></key>";
const char darkPicture[] = "<key name='picture-uri-dark' type='s'><default>''</default></key>";
const char pictureName[] = "<key name='picture-filename' type='s'><default>''</default></key>";

QByteArray schema(const QByteArray& id, const QByteArray& keys)
{
    return "<schema id='" + id + "' path='/" + QByteArray(id).replace('.', '/') + "/'>" + keys + "</schema>";
}

QByteArray schemaFile(const QByteArray& schemas, const QByteArray& styles)
{
    QByteArray values;
    int number = 0;
    for (const QByteArray& style : styles.split(' '))
        values += "<value nick='" + style + "' value='" + QByteArray::number(number++) + "'/>";
    return "<schemalist><enum id='test.style'>" + values + "</enum>" + schemas + "</schemalist>";
}

const QByteArray allStyles = "none wallpaper centered scaled stretched zoom spanned";

/// What a tool prints, without the line's end; "failed" when it does.
QString output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return "failed";
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

class TestWallpaperSettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_DATA_DIRS", m_home.path("nothing").toUtf8());
        QVERIFY(compile(
            "all",
            schemaFile(schema("org.gnome.desktop.background", QByteArray(options) + picture + darkPicture) +
                           schema("org.cinnamon.desktop.background", QByteArray(options) + picture) +
                           schema("org.mate.background", QByteArray(options) + pictureName),
                       allStyles)));
        QVERIFY(
            compile("old", schemaFile(schema("org.gnome.desktop.background", QByteArray(options) + picture),
                                      allStyles)));
        QVERIFY(compile("keyless", schemaFile(schema("org.gnome.desktop.background", options) +
                                                  schema("org.cinnamon.desktop.background", picture),
                                              allStyles)));
        QVERIFY(compile(
            "unstyled",
            schemaFile(schema("org.gnome.desktop.background", QByteArray(options) + picture), "none zoom")));
        QVERIFY(QDir().mkpath(m_home.path("empty")));
    }

    void whatCannotBeSet_data()
    {
        QTest::addColumn<QString>("schemas");
        QTest::addColumn<Desktop>("desktop");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no schema at all")
            << "empty" << Desktop::Gnome << "the settings org.gnome.desktop.background are not installed";
        QTest::newRow("another desktop's")
            << "old" << Desktop::Mate << "the settings org.mate.background are not installed";
        QTest::newRow("no key of the picture")
            << "keyless" << Desktop::Gnome << "the desktop's settings have no key picture-uri";
        QTest::newRow("no key of the style")
            << "keyless" << Desktop::Cinnamon << "the desktop's settings have no key picture-options";
        QTest::newRow("no such style") << "unstyled" << Desktop::Gnome
                                       << "the desktop's setting picture-options does not take \"stretched\"";
        QTest::newRow("kept elsewhere")
            << "all" << Desktop::Xfce << "this desktop keeps its wallpaper elsewhere";
    }
    void whatCannotBeSet()
    {
        QFETCH(QString, schemas);
        QFETCH(Desktop, desktop);
        QFETCH(QString, reason);
        QCOMPARE(quorvia::test::heldInChild([&] {
                     useSchemas(schemas);
                     QString why;
                     return !setSettingsWallpaper(desktop, "/a/b.bmp", Style::Stretch, &why) &&
                            why == reason && !setSettingsWallpaper(desktop, "/a/b.bmp", Style::Stretch);
                 }),
                 1);
        QVERIFY(!QFile::exists(m_home.path(".config/glib-2.0/settings/keyfile")));
    }

    void withoutADarkLook()
    {
        QCOMPARE(quorvia::test::heldInChild([&] {
                     useSchemas("old");
                     return setSettingsWallpaper(Desktop::Gnome, "/a/b.bmp", Style::Tile);
                 }),
                 1);
        useSchemas("old");
        QCOMPARE(stored("org.gnome.desktop.background", "picture-uri"), QString("'file:///a/b.bmp'"));
        QCOMPARE(stored("org.gnome.desktop.background", "picture-options"), QString("'wallpaper'"));
    }

    void styles_data()
    {
        QTest::addColumn<Desktop>("desktop");
        QTest::addColumn<Style>("style");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("options");
        struct Row
        {
            const char* name;
            Desktop desktop;
            const char* schema;
            QStringList keys;
            QString picture;
        };
        const Row rows[] = {
            {"gnome",
             Desktop::Gnome,
             "org.gnome.desktop.background",
             {"picture-uri", "picture-uri-dark"},
             "\"file:///p%20'q/Quorvia.bmp\""},
            {"cinnamon",
             Desktop::Cinnamon,
             "org.cinnamon.desktop.background",
             {"picture-uri"},
             "\"file:///p%20'q/Quorvia.bmp\""},
            {"mate", Desktop::Mate, "org.mate.background", {"picture-filename"}, "\"/p 'q/Quorvia.bmp\""},
        };
        for (const Row& row : rows) {
            const auto add = [&row](const char* style, Style value, const char* word) {
                QTest::addRow("%s %s", row.name, style)
                    << row.desktop << value << row.schema << row.keys << row.picture << word;
            };
            add("stretch", Style::Stretch, "'stretched'");
            add("tile", Style::Tile, "'wallpaper'");
            add("centre", Style::Centre, "'centered'");
        }
    }
    void styles()
    {
        QFETCH(Desktop, desktop);
        QFETCH(Style, style);
        QFETCH(QString, schema);
        QFETCH(QStringList, keys);
        useSchemas("all");
        QVERIFY(setSettingsWallpaper(desktop, "/elsewhere.bmp", Style::Tile));
        QString why = "untouched";
        QVERIFY2(setSettingsWallpaper(desktop, "/p 'q/Quorvia.bmp", style, &why), qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        for (const QString& key : keys)
            QTEST(stored(schema, key), "picture");
        QTEST(stored(schema, "picture-options"), "options");
    }

    void aSecondPictureOfTheSameNameChangesTheValue()
    {
        useSchemas("all");
        for (const char* expected : {"'file:///a/Q.bmp'", "'file:///a/./Q.bmp'", "'file:///a/Q.bmp'"}) {
            QVERIFY(setSettingsWallpaper(Desktop::Gnome, "/a/Q.bmp", Style::Tile));
            QCOMPARE(stored("org.gnome.desktop.background", "picture-uri"), QString(expected));
            QCOMPARE(stored("org.gnome.desktop.background", "picture-uri-dark"), QString(expected));
        }
    }

  private:
    bool compile(const QString& folder, const QByteArray& schemas) const
    {
        m_home.write(folder + "/test.gschema.xml", schemas);
        return output("glib-compile-schemas", {"--strict", m_home.path(folder)}).isEmpty() &&
               QFile::exists(m_home.path(folder + "/gschemas.compiled"));
    }
    void useSchemas(const QString& folder) const
    {
        qputenv("GSETTINGS_SCHEMA_DIR", m_home.path(folder).toUtf8());
    }
    static QString stored(const QString& schema, const QString& key)
    {
        return output("gsettings", {"get", schema, key});
    }

    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestWallpaperSettings)
#include "tst_wallpapersettings.moc"
