// A print server of a test's own, whose queues keep what they print: the one of tests/journeys/printing.py.
// Make it before the first call that reaches CUPS, which looks at the environment once.
#pragma once

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace quorvia::test {

/// What a queue was given.
struct Print
{
    QString file; ///< the document; empty when none came in time
    QString queue;
    int copies = 0;
    QString title;
    QStringList options;
};

class PrintServer
{
  public:
    /// Starts it and leads this process to it.
    PrintServer();
    ~PrintServer();
    PrintServer(const PrintServer&) = delete;
    PrintServer& operator=(const PrintServer&) = delete;

    /// False when it did not start; it has then said why on the standard error.
    bool isRunning() const { return m_pid > 0; }
    qint64 processId() const { return m_pid; }
    QString socket() const { return m_home.filePath(QStringLiteral("socket")); }

    /// Makes the queue `name`, whose paper is "A4" or "Letter".
    bool addQueue(const QString& name, const QString& paper = QStringLiteral("A4")) const;
    /// Runs one of the server's tools; true when it succeeded.
    bool run(const QString& tool, const QStringList& arguments) const;
    /// How many documents have been printed.
    int count() const;
    /// Waits for one more document than `before`, and gives the last one.
    Print wait(int before) const;
    /// The page of a document, with `dots` to the inch.
    QImage page(const Print& print, int dots) const;

  private:
    QStringList documents() const;

    QProcess m_script;
    QDir m_home;
    qint64 m_pid = 0;
};

} // namespace quorvia::test
