#include "platform/ScreenSaverGuard.h"

#include "platform/GioParts.h"

#include <QByteArray>
#include <QFile>

#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr char service[] = "org.freedesktop.ScreenSaver"; // the interface too
constexpr char object[] = "/org/freedesktop/ScreenSaver";
constexpr guint endPatience = 250; // milliseconds

struct UnrefContext
{
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
struct UnrefLoop
{
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};
struct EndSource
{
    void operator()(GSource* source) const
    {
        g_source_destroy(source);
        g_source_unref(source);
    }
};
using Source = std::unique_ptr<GSource, EndSource>;

/// Where the session bus listens; empty when there is none. To ask GIO could start one.
QByteArray sessionAddress()
{
    QByteArray named = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray directory = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray socket = directory + "/bus";
    if (!named.isEmpty() || directory.isEmpty() || !QFile::exists(QFile::decodeName(socket)))
        return named;
    const gio::Text escaped(g_dbus_address_escape_value(socket.constData()));
    return QByteArrayLiteral("unix:path=") + escaped.get();
}

QString textOf(GError* raw)
{
    const gio::Error error(raw);
    return error ? QString::fromUtf8(error->message).simplified() : QString();
}

} // namespace

/// The thread and what it knows. Everything but the public operations runs on the thread, and none of it
/// waits.
class ScreenSaverGuard::Asker
{
  public:
    Asker(const Texts& texts, QByteArray address, std::chrono::milliseconds patience,
          std::function<void(const QString& why)> report)
        : m_application(texts.application.toUtf8()), m_reason(texts.reason.toUtf8()),
          m_address(std::move(address)), m_patience(guint(patience.count())), m_report(std::move(report)),
          m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context.get(), FALSE)),
          m_thread([this] { run(); })
    {
    }
    ~Asker()
    {
        post<&Asker::end>();
        m_thread.join();
    }
    Asker(const Asker&) = delete;
    Asker& operator=(const Asker&) = delete;

    void hold() { post<&Asker::want>(); }
    void release() { post<&Asker::unwant>(); }

  private:
    template <void (Asker::*step)()>
    static gboolean called(gpointer self)
    {
        (static_cast<Asker*>(self)->*step)();
        return G_SOURCE_REMOVE;
    }

    template <void (Asker::*step)()>
    Source after(guint milliseconds)
    {
        Source source(milliseconds == 0 ? g_idle_source_new() : g_timeout_source_new(milliseconds));
        g_source_set_priority(source.get(), G_PRIORITY_DEFAULT); // one after the other
        g_source_set_callback(source.get(), &Asker::called<step>, this, nullptr);
        g_source_attach(source.get(), m_context.get());
        return source;
    }

    template <void (Asker::*step)()>
    void post()
    {
        g_source_unref(after<step>(0).release()); // the context keeps it until it has run
    }

    void run()
    {
        g_main_context_push_thread_default(m_context.get());
        g_main_loop_run(m_loop.get());
        m_openLimit.reset();
        m_endLimit.reset();
        dropBus(); // a question without an answer holds it too
        g_main_context_pop_thread_default(m_context.get());
    }

    void want()
    {
        if (!std::exchange(m_wanted, true))
            m_failed = false;
        settle();
    }

    void unwant()
    {
        m_wanted = false;
        settle();
    }

    void end()
    {
        m_wanted = false;
        m_ending = true;
        m_endLimit = after<&Asker::quit>(endPatience);
        g_cancellable_cancel(m_cancelOpening.get());
        settle();
    }

    void quit() { g_main_loop_quit(m_loop.get()); }

    /// Takes the next step towards what is wanted. The answer to it comes back here.
    void settle()
    {
        if (m_opening || m_asking)
            return;
        if (m_bus && g_dbus_connection_is_closed(m_bus.get()))
            dropBus();
        if (!m_wanted && m_cookie)
            letGo();
        if (m_ending)
            flush();
        else if (m_wanted && !m_cookie && !m_failed)
            m_bus ? ask() : open();
    }

    void failBecause(const QString& why)
    {
        m_failed = true;
        dropBus(); // with it goes what a late answer would hold
        if (!m_ending)
            m_report(why);
    }

    void dropBus()
    {
        if (m_bus && !g_dbus_connection_is_closed(m_bus.get()))
            g_dbus_connection_close(m_bus.get(), nullptr, nullptr, nullptr);
        m_bus.reset();
        m_cookie.reset();
    }

    /// A connection of our own. The one that GIO shares ends the program together with the bus.
    void open()
    {
        if (m_address.isEmpty())
            return failBecause(QStringLiteral("there is no session bus"));
        m_opening = true;
        m_cancelOpening.reset(g_cancellable_new());
        m_openLimit = after<&Asker::giveUpOpening>(m_patience);
        const auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        g_dbus_connection_new_for_address(m_address.constData(), flags, nullptr, m_cancelOpening.get(),
                                          &Asker::opened, this);
    }

    void giveUpOpening() { g_cancellable_cancel(m_cancelOpening.get()); }

    static void opened(GObject*, GAsyncResult* result, gpointer data)
    {
        auto* const self = static_cast<Asker*>(data);
        GError* error = nullptr;
        self->m_bus.reset(g_dbus_connection_new_for_address_finish(result, &error));
        self->m_opening = false;
        self->m_openLimit.reset();
        if (!self->m_bus)
            self->failBecause(textOf(error));
        self->settle();
    }

    void ask()
    {
        m_asking = true;
        g_dbus_connection_call(m_bus.get(), service, object, service, "Inhibit",
                               g_variant_new("(ss)", m_application.constData(), m_reason.constData()),
                               G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, int(m_patience),
                               nullptr, &Asker::answered, this);
    }

    static void answered(GObject* bus, GAsyncResult* result, gpointer data)
    {
        auto* const self = static_cast<Asker*>(data);
        GError* error = nullptr;
        GVariant* const answer =
            g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(bus), result, &error);
        self->m_asking = false;
        if (answer) {
            guint32 cookie = 0;
            g_variant_get(answer, "(u)", &cookie);
            g_variant_unref(answer);
            self->m_cookie = cookie;
        } else {
            self->failBecause(textOf(error));
        }
        self->settle();
    }

    void letGo()
    {
        g_dbus_connection_call(m_bus.get(), service, object, service, "UnInhibit",
                               g_variant_new("(u)", *std::exchange(m_cookie, {})), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    }

    /// The end, as soon as what has been said is on its way.
    void flush()
    {
        if (!m_bus)
            return quit();
        g_dbus_connection_flush(
            m_bus.get(), nullptr,
            [](GObject*, GAsyncResult*, gpointer self) { static_cast<Asker*>(self)->quit(); }, this);
    }

    const QByteArray m_application;
    const QByteArray m_reason;
    const QByteArray m_address;
    const guint m_patience; ///< milliseconds
    const std::function<void(const QString& why)> m_report;

    bool m_wanted = false;
    bool m_failed = false; ///< since it was last wanted
    bool m_ending = false;
    bool m_opening = false;
    bool m_asking = false;
    std::optional<guint32> m_cookie; ///< of what is held
    gio::Object<GCancellable> m_cancelOpening;
    gio::Object<GDBusConnection> m_bus;
    Source m_openLimit;
    Source m_endLimit;

    const std::unique_ptr<GMainContext, UnrefContext> m_context;
    const std::unique_ptr<GMainLoop, UnrefLoop> m_loop;
    std::thread m_thread; ///< last: it uses all of the above
};

ScreenSaverGuard::ScreenSaverGuard(Texts texts, std::function<void(const QString& why)> failed,
                                   std::chrono::milliseconds patience)
    : m_texts(std::move(texts)), m_failed(std::move(failed)), m_patience(patience)
{
}

ScreenSaverGuard::~ScreenSaverGuard() = default;

void ScreenSaverGuard::hold()
{
    if (std::exchange(m_held, true))
        return;
    const auto tell = [this](const QString& why) {
        QMetaObject::invokeMethod(
            &m_home, [this, why] { report(why); }, Qt::QueuedConnection);
    };
    try {
        if (!m_asker)
            m_asker = std::make_unique<Asker>(m_texts, sessionAddress(), m_patience, tell);
        m_asker->hold();
    } catch (const std::system_error&) {
        tell(QStringLiteral("no thread can be started"));
    }
}

void ScreenSaverGuard::release()
{
    if (std::exchange(m_held, false) && m_asker)
        m_asker->release();
}

void ScreenSaverGuard::report(const QString& why)
{
    if (m_failed)
        m_failed(why);
}

} // namespace quorvia::platform
