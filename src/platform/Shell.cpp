#include "platform/Shell.h"

#include "platform/FileStatus.h"
#include "platform/GioParts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

namespace quorvia::platform {

namespace {

using gio::Error;
using gio::fileAt;
using gio::Object;
using gio::Text;

constexpr char ownDesktopId[] = "quorvia.desktop";

using Applications = std::vector<Object<GAppInfo>>;

ShellCode codeOfIo(int code)
{
    switch (code) {
    case G_IO_ERROR_NOT_FOUND:
        return ShellCode::FileNotFound;
    case G_IO_ERROR_NOT_DIRECTORY:
    case G_IO_ERROR_NOT_MOUNTED:
    case G_IO_ERROR_INVALID_FILENAME:
    case G_IO_ERROR_FILENAME_TOO_LONG:
    case G_IO_ERROR_HOST_NOT_FOUND:
        return ShellCode::PathNotFound;
    case G_IO_ERROR_PERMISSION_DENIED:
    case G_IO_ERROR_READ_ONLY:
        return ShellCode::AccessDenied;
    case G_IO_ERROR_TIMED_OUT:
        return ShellCode::TimedOut;
    case G_IO_ERROR_BUSY:
    case G_IO_ERROR_WOULD_BLOCK:
        return ShellCode::Busy;
    case G_IO_ERROR_NOT_SUPPORTED:
        return ShellCode::NoAssociation;
    case G_IO_ERROR_DBUS_ERROR:
        return ShellCode::TransactionFailed;
    default:
        return ShellCode::Failed;
    }
}

/// The program that the desktop chose could not be started.
ShellCode codeOfSpawn(int code)
{
    switch (code) {
    case G_SPAWN_ERROR_ACCES:
    case G_SPAWN_ERROR_PERM:
        return ShellCode::AccessDenied;
    case G_SPAWN_ERROR_NOEXEC:
    case G_SPAWN_ERROR_LIBBAD:
    case G_SPAWN_ERROR_ISDIR:
        return ShellCode::BadExecutable;
    case G_SPAWN_ERROR_NOMEM:
        return ShellCode::OutOfMemory;
    case G_SPAWN_ERROR_TXTBUSY:
        return ShellCode::SharingViolation;
    case G_SPAWN_ERROR_NOENT:
    case G_SPAWN_ERROR_NOTDIR:
        return ShellCode::AssociationIncomplete;
    default:
        return ShellCode::Failed;
    }
}

ShellCode codeOf(const Error& error)
{
    if (!error)
        return ShellCode::Failed;
    if (error->domain == G_IO_ERROR)
        return codeOfIo(error->code);
    if (error->domain == G_SPAWN_ERROR)
        return codeOfSpawn(error->code);
    return error->domain == G_DBUS_ERROR ? ShellCode::TransactionFailed : ShellCode::Failed;
}

/// What stands in the way of looking at `path`, by the system's error number.
ShellCode codeOfMissing(int number, const QString& path)
{
    if (number == EACCES || number == EPERM)
        return ShellCode::AccessDenied;
    if (number == ENOMEM)
        return ShellCode::OutOfMemory;
    if (path.isEmpty())
        return ShellCode::FileNotFound;
    return isDirectory(QFileInfo(path).path()) ? ShellCode::FileNotFound : ShellCode::PathNotFound;
}

/// Ok when the absolute `path` exists and the user may read it.
ShellCode readable(const QString& path)
{
    struct stat status = {};
    if (const int number = fileStatus(path, status))
        return codeOfMissing(number, path);
    return ::access(QFile::encodeName(path).constData(), R_OK) == 0 ? ShellCode::Ok : ShellCode::AccessDenied;
}

QString absolutePath(const QString& path)
{
    return path.isEmpty() ? path : QDir::current().absoluteFilePath(path);
}

ShellCode openAddress(const QByteArray& address)
{
    GError* raw = nullptr;
    const bool opened = g_app_info_launch_default_for_uri(address.constData(), nullptr, &raw);
    const Error error(raw);
    return opened ? ShellCode::Ok : codeOf(error);
}

/// The content type of `file`, null when it cannot be told.
Text contentType(GFile* file)
{
    const Object<GFileInfo> info(g_file_query_info(file, G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                   G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    const char* type = info ? g_file_info_get_content_type(info.get()) : nullptr;
    return Text(g_strdup(type));
}

bool isOwn(GAppInfo* application)
{
    const char* id = g_app_info_get_id(application);
    return id && std::strcmp(id, ownDesktopId) == 0;
}

bool editsRasterGraphics(GAppInfo* application)
{
    if (!G_IS_DESKTOP_APP_INFO(application))
        return false;
    const char* list = g_desktop_app_info_get_categories(G_DESKTOP_APP_INFO(application));
    const QList<QByteArray> categories = QByteArray(list).split(';');
    return categories.contains("RasterGraphics") && !categories.contains("Viewer");
}

Applications take(GList* list)
{
    Applications applications;
    for (GList* entry = list; entry; entry = entry->next)
        applications.emplace_back(G_APP_INFO(entry->data));
    g_list_free(list);
    return applications;
}

Object<GAppInfo> firstEditor(Applications applications)
{
    const auto found =
        std::find_if(applications.begin(), applications.end(), [](const Object<GAppInfo>& application) {
            return !isOwn(application.get()) && g_app_info_should_show(application.get()) &&
                   editsRasterGraphics(application.get());
        });
    return found == applications.end() ? nullptr : std::move(*found);
}

Object<GAppInfo> editorFor(const char* type)
{
    if (type) {
        Object<GAppInfo> chosen(g_app_info_get_default_for_type(type, FALSE));
        if (chosen && !isOwn(chosen.get()))
            return chosen;
        if (Object<GAppInfo> editor = firstEditor(take(g_app_info_get_all_for_type(type))))
            return editor;
    }
    Applications all = take(g_app_info_get_all());
    // The desktop gives them in no order; by id, the same one is taken every time.
    std::sort(all.begin(), all.end(), [](const Object<GAppInfo>& left, const Object<GAppInfo>& right) {
        return qstrcmp(g_app_info_get_id(left.get()), g_app_info_get_id(right.get())) < 0;
    });
    return firstEditor(std::move(all));
}

/// True when the bytes that `path` begins with are those of a program or of a script.
bool beginsLikeProgram(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // may be executed but not read: the system alone can tell
    const QByteArray start = file.read(4);
    return start.startsWith("\177ELF") || start.startsWith("#!") || start.startsWith("MZ");
}

/// Ok when the absolute `path` can be handed to the system as a program.
ShellCode executable(const QString& path)
{
    struct stat status = {};
    if (const int number = fileStatus(path, status))
        return codeOfMissing(number, path);
    if (!S_ISREG(status.st_mode) || ::access(QFile::encodeName(path).constData(), X_OK) != 0)
        return ShellCode::AccessDenied;
    return beginsLikeProgram(path) ? ShellCode::Ok : ShellCode::BadExecutable;
}

} // namespace

bool isAddress(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const Text scheme(g_uri_parse_scheme(bytes.constData()));
    return scheme && std::strlen(scheme.get()) > 1 && !pathExists(text);
}

ShellCode shellOpen(const QString& target)
{
    if (isAddress(target)) {
        const QUrl url(target);
        if (!url.isLocalFile())
            return openAddress(url.isValid() ? url.toEncoded() : target.toUtf8());
        const ShellCode found = readable(url.toLocalFile());
        return found == ShellCode::Ok ? openAddress(url.toEncoded()) : found;
    }
    const QString path = absolutePath(target);
    const ShellCode found = readable(path);
    if (found != ShellCode::Ok)
        return found;
    const Text address(g_file_get_uri(fileAt(path).get()));
    return openAddress(QByteArray(address.get()));
}

ShellCode shellEdit(const QString& path)
{
    const QString absolute = absolutePath(path);
    const ShellCode found = readable(absolute);
    if (found != ShellCode::Ok)
        return found;
    const Object<GFile> file = fileAt(absolute);
    const Text type = contentType(file.get());
    const Object<GAppInfo> editor = editorFor(type.get());
    if (!editor)
        return ShellCode::NoAssociation;
    GList only = {file.get(), nullptr, nullptr};
    GError* raw = nullptr;
    const bool started = g_app_info_launch(editor.get(), &only, nullptr, &raw);
    const Error error(raw);
    return started ? ShellCode::Ok : codeOf(error);
}

ShellCode startProgram(const QString& program, const QStringList& arguments, const QString& directory)
{
    const QString file =
        program.contains(u'/') ? absolutePath(program) : QStandardPaths::findExecutable(program);
    if (file.isEmpty())
        return ShellCode::FileNotFound;
    const ShellCode ready = executable(file);
    if (ready != ShellCode::Ok)
        return ready;
    if (!directory.isEmpty() && !isDirectory(directory))
        return ShellCode::PathNotFound;
    QProcess process;
    process.setProgram(file);
    process.setArguments(arguments);
    process.setWorkingDirectory(directory);
    // What is left to fail: another machine's program, a script whose interpreter is missing, a full process
    // table.
    return process.startDetached() ? ShellCode::Ok : ShellCode::BadExecutable;
}

bool isProgramFile(const QString& path)
{
    return executable(absolutePath(path)) == ShellCode::Ok;
}

QString findProgram(const QStringList& directories, const QString& name)
{
    for (const QString& directory : directories) {
        if (isProgramFile(directory + name))
            return directory + name;
    }
    return {};
}

} // namespace quorvia::platform
