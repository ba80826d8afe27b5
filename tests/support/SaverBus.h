// A session bus of the test's own, and a screen saver on it that writes down what it is asked.
#pragma once

#include "platform/GioParts.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <atomic>
#include <future>
#include <mutex>
#include <thread>

namespace quorvia::test {

/// A bus that ends with the object; the environment names it meanwhile.
class SessionBus
{
  public:
    SessionBus() : m_before(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
    {
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead(20'000))
            m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
    }
    ~SessionBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_before);
    }
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    QByteArray address() const { return m_address; }

  private:
    QByteArray m_before;
    QProcess m_daemon;
    QByteArray m_address;
};

/// The screen saver, on a thread of its own. Its cookies count on from 7.
class ScreenSaver
{
  public:
    /// One that does not answer keeps the questions until answerAll().
    ScreenSaver(const QByteArray& address, bool answers) : m_answers(answers)
    {
        std::promise<void> ready;
        m_thread = std::thread([this, address, &ready] { run(address, ready); });
        ready.get_future().wait();
    }
    ~ScreenSaver()
    {
        g_main_loop_quit(m_loop);
        m_thread.join();
        for (GDBusMethodInvocation* const each : m_waiting)
            g_object_unref(each);
        g_main_loop_unref(m_loop);
    }
    ScreenSaver(const ScreenSaver&) = delete;
    ScreenSaver& operator=(const ScreenSaver&) = delete;

    /// What came so far: "Inhibit application reason", "UnInhibit cookie", "gone" for an asker that left.
    QStringList calls()
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    void answerAll()
    {
        const std::lock_guard lock(m_mutex);
        for (GDBusMethodInvocation* const each : std::exchange(m_waiting, {}))
            answer(each);
    }

  private:
    static void called(GDBusConnection* bus, const char* sender, const char*, const char*, const char* method,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self)
    {
        static_cast<ScreenSaver*>(self)->take(bus, sender, method, parameters, invocation);
    }

    static void left(GDBusConnection*, const char*, gpointer self)
    {
        auto* const saver = static_cast<ScreenSaver*>(self);
        const std::lock_guard lock(saver->m_mutex);
        saver->m_calls.append(QStringLiteral("gone"));
    }

    void take(GDBusConnection* bus, const char* sender, const char* method, GVariant* parameters,
              GDBusMethodInvocation* invocation)
    {
        const std::lock_guard lock(m_mutex);
        if (qstrcmp(method, "Inhibit") != 0) {
            guint32 cookie = 0;
            g_variant_get(parameters, "(u)", &cookie);
            m_calls.append(QStringLiteral("UnInhibit %1").arg(cookie));
            g_dbus_method_invocation_return_value(invocation, nullptr);
            return;
        }
        const char* application = nullptr;
        const char* reason = nullptr;
        g_variant_get(parameters, "(&s&s)", &application, &reason);
        m_calls.append(
            QStringLiteral("Inhibit %1 %2").arg(QString::fromUtf8(application), QString::fromUtf8(reason)));
        g_bus_watch_name_on_connection(bus, sender, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
                                       &ScreenSaver::left, this, nullptr);
        if (m_answers)
            answer(invocation);
        else
            m_waiting.append(invocation);
    }

    void answer(GDBusMethodInvocation* invocation)
    {
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", m_cookie++));
    }

    void run(const QByteArray& address, std::promise<void>& ready)
    {
        GMainContext* const context = g_main_context_new();
        g_main_context_push_thread_default(context);
        m_loop = g_main_loop_new(context, FALSE);
        const platform::gio::Object<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
            address.constData(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                 G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(
            "<node><interface name='org.freedesktop.ScreenSaver'>"
            "<method name='Inhibit'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
            "<arg type='u' direction='out'/></method>"
            "<method name='UnInhibit'><arg type='u' direction='in'/></method></interface></node>",
            nullptr);
        const GDBusInterfaceVTable table = {&ScreenSaver::called, nullptr, nullptr, {}};
        g_dbus_connection_register_object(bus.get(), "/org/freedesktop/ScreenSaver", node->interfaces[0],
                                          &table, this, nullptr, nullptr);
        g_variant_unref(g_dbus_connection_call_sync(
            bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", "org.freedesktop.ScreenSaver", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
            nullptr, nullptr));
        GSource* const running = g_idle_source_new(); // ready when it can be ended
        g_source_set_callback(
            running,
            [](gpointer promise) -> gboolean {
                static_cast<std::promise<void>*>(promise)->set_value();
                return G_SOURCE_REMOVE;
            },
            &ready, nullptr);
        g_source_attach(running, context);
        g_source_unref(running);
        g_main_loop_run(m_loop);
        g_dbus_connection_close_sync(bus.get(), nullptr, nullptr);
        g_dbus_node_info_unref(node);
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    }

    const bool m_answers;
    std::mutex m_mutex;
    QStringList m_calls;
    QList<GDBusMethodInvocation*> m_waiting;
    guint32 m_cookie = 7;
    GMainLoop* m_loop = nullptr;
    std::thread m_thread;
};

} // namespace quorvia::test
