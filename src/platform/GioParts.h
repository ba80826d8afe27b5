// What GIO hands out, held so that it is given back. For the files behind this room's headers alone.
#pragma once

#include <QFile>
#include <QString>

#include <gio/gio.h>

#include <memory>

namespace quorvia::platform::gio {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref>;

struct FreeError
{
    void operator()(GError* error) const { g_error_free(error); }
};
using Error = std::unique_ptr<GError, FreeError>;

struct FreeText
{
    void operator()(gchar* text) const { g_free(text); }
};
using Text = std::unique_ptr<gchar, FreeText>;

/// The file at the path `absolute`, there or not. GIO takes each ".." away together with the name before it,
/// even where that name is a link.
inline Object<GFile> fileAt(const QString& absolute)
{
    return Object<GFile>(g_file_new_for_path(QFile::encodeName(absolute).constData()));
}

} // namespace quorvia::platform::gio
