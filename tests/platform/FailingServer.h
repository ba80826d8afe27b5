// Stands between a client and a server on a local socket, and fails once the client has sent so much.
#pragma once

#include <QByteArray>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>
#include <thread>

namespace quorvia::test {

enum class Failing {
    Stalls, ///< takes no more, and says nothing
    Cuts,   ///< ends the connection
    IsMute  ///< takes all, and says nothing
};

class FailingServer
{
  public:
    /// Listens at the path `socket` for one client after the other, and leads each to `server`. It fails when
    /// one has sent more than `limit` bytes.
    FailingServer(const QByteArray& socket, const QByteArray& server, Failing how, qint64 limit)
        : m_server(server), m_how(how), m_limit(limit), m_listener(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        const sockaddr_un address = addressOf(socket);
        m_isListening =
            ::bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
            ::listen(m_listener, 4) == 0;
        m_thread = std::thread([this] { run(); });
    }
    ~FailingServer()
    {
        m_ends = true;
        m_thread.join();
        ::close(m_listener);
    }
    FailingServer(const FailingServer&) = delete;
    FailingServer& operator=(const FailingServer&) = delete;

    bool isListening() const { return m_isListening; }
    bool hasFailed() const { return m_hasFailed; }

  private:
    static sockaddr_un addressOf(const QByteArray& path)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
        return address;
    }

    static bool isReadable(int file)
    {
        pollfd one = {file, POLLIN, 0};
        constexpr int step = 20; // milliseconds until the end is looked for again
        return ::poll(&one, 1, step) > 0;
    }

    /// Hands on what there is; how much, below 1 at the end.
    static ssize_t hand(int from, int to)
    {
        std::array<char, 65536> bytes = {};
        const ssize_t count = ::read(from, bytes.data(), bytes.size());
        return count > 0 && ::send(to, bytes.data(), size_t(count), MSG_NOSIGNAL) == count ? count : -1;
    }

    void run()
    {
        while (!m_ends) {
            if (!isReadable(m_listener))
                continue;
            const int client = ::accept(m_listener, nullptr, nullptr);
            const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
            const sockaddr_un address = addressOf(m_server);
            if (::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
                serve(client, server);
            ::close(server);
            ::close(client);
        }
    }

    void serve(int client, int server)
    {
        qint64 sent = 0;
        while (!m_ends) {
            const bool fails = sent > m_limit;
            m_hasFailed = m_hasFailed || fails;
            if (fails && m_how == Failing::Cuts)
                return;
            if (!(fails && m_how == Failing::Stalls) && isReadable(client)) {
                const ssize_t count = hand(client, server);
                if (count < 1)
                    return;
                sent += count;
            }
            if (isReadable(server) && !fails && hand(server, client) < 1)
                return;
        }
    }

    QByteArray m_server;
    Failing m_how;
    qint64 m_limit;
    int m_listener;
    bool m_isListening = false;
    std::atomic<bool> m_ends = false;
    std::atomic<bool> m_hasFailed = false;
    std::thread m_thread;
};

} // namespace quorvia::test
