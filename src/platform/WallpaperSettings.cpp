#include "platform/WallpaperSettings.h"

#include "platform/GioParts.h"
#include "platform/Reason.h"

#include <array>
#include <vector>

namespace quorvia::platform {

namespace {

using gio::Object;

struct UnrefSchema
{
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
using Schema = std::unique_ptr<GSettingsSchema, UnrefSchema>;

struct UnrefKey
{
    void operator()(GSettingsSchemaKey* key) const { g_settings_schema_key_unref(key); }
};
using SchemaKey = std::unique_ptr<GSettingsSchemaKey, UnrefKey>;

struct UnrefVariant
{
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

/// The words of picture-options, by style.
constexpr std::array<const char*, 3> optionWords = {"stretched", "wallpaper", "centered"};

/// Where a desktop keeps its wallpaper.
struct Place
{
    WallpaperDesktop desktop;
    const char* schema;
    const char* key;            ///< of the picture
    bool isAddress;             ///< it is one, not a path
    const char* key2 = nullptr; ///< of the picture of the dark look; not every version has it
};

constexpr Place places[] = {
    {WallpaperDesktop::Gnome, "org.gnome.desktop.background", "picture-uri", true, "picture-uri-dark"},
    {WallpaperDesktop::Cinnamon, "org.cinnamon.desktop.background", "picture-uri", true},
    {WallpaperDesktop::Mate, "org.mate.background", "picture-filename", false},
};

struct Change
{
    const char* key;
    Variant value;
};

/// The settings of one schema, and what is to be written to them.
class Writer
{
  public:
    explicit Writer(Schema schema)
        : m_schema(std::move(schema)), m_settings(g_settings_new_full(m_schema.get(), nullptr, nullptr))
    {
    }

    bool has(const char* key) const { return g_settings_schema_has_key(m_schema.get(), key); }

    /// The text stored under `key`; empty when it is none.
    QString text(const char* key) const
    {
        const Variant value(g_settings_get_value(m_settings.get(), key));
        return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)
                   ? QString::fromUtf8(g_variant_get_string(value.get(), nullptr))
                   : QString();
    }

    /// Plans a change. GLib complains aloud about a key that is not there and a value out of its range, so
    /// both are asked for before. Empty, or what stands in the way.
    QString plan(const char* key, const QString& text)
    {
        if (!has(key))
            return QStringLiteral("the desktop's settings have no key %1").arg(QLatin1String(key));
        if (!g_settings_is_writable(m_settings.get(), key))
            return QStringLiteral("the desktop's setting %1 is locked").arg(QLatin1String(key));
        Variant value(g_variant_ref_sink(g_variant_new_string(text.toUtf8().constData())));
        const SchemaKey about(g_settings_schema_get_key(m_schema.get(), key));
        if (!g_settings_schema_key_range_check(about.get(), value.get()))
            return QStringLiteral("the desktop's setting %1 does not take \"%2\"")
                .arg(QLatin1String(key), text);
        m_changes.push_back({key, std::move(value)});
        return {};
    }

    /// Writes all of it as one change, so that no picture shows in the style of another.
    bool write()
    {
        g_settings_delay(m_settings.get());
        bool written = true;
        for (const Change& change : m_changes)
            written = g_settings_set_value(m_settings.get(), change.key, change.value.get()) && written;
        if (written)
            g_settings_apply(m_settings.get());
        else
            g_settings_revert(m_settings.get());
        g_settings_sync();
        return written;
    }

  private:
    Schema m_schema;
    Object<GSettings> m_settings;
    std::vector<Change> m_changes;
};

const Place* placeOf(WallpaperDesktop desktop)
{
    for (const Place& place : places) {
        if (place.desktop == desktop)
            return &place;
    }
    return nullptr;
}

/// g_settings_new() ends the program when the schema is not installed, so it is looked up first.
Schema schemaOf(const char* name)
{
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    return Schema(source ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr);
}

/// Empty, or what stands in the way.
QString planPicture(Writer& writer, const Place& place, const char* key, const QString& path)
{
    const QString present = writer.has(key) ? writer.text(key) : QString();
    return writer.plan(key, place.isAddress ? changedAddress(path, present) : changedPath(path, present));
}

} // namespace

bool setSettingsWallpaper(WallpaperDesktop desktop, const QString& path, WallpaperStyle style, QString* why)
{
    const Place* const place = placeOf(desktop);
    if (!place)
        return fail(why, QStringLiteral("this desktop keeps its wallpaper elsewhere"));
    Schema schema = schemaOf(place->schema);
    if (!schema)
        return fail(why,
                    QStringLiteral("the settings %1 are not installed").arg(QLatin1String(place->schema)));
    Writer writer(std::move(schema));
    QString obstacle = writer.plan("picture-options", QLatin1String(optionWords[size_t(style)]));
    if (obstacle.isEmpty())
        obstacle = planPicture(writer, *place, place->key, path);
    if (obstacle.isEmpty() && place->key2 && writer.has(place->key2))
        obstacle = planPicture(writer, *place, place->key2, path);
    if (!obstacle.isEmpty())
        return fail(why, obstacle);
    return writer.write() || fail(why, QStringLiteral("the desktop's settings cannot be written"));
}

} // namespace quorvia::platform
