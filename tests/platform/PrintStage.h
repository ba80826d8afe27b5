// What the tests of the system printer share: a print server of their own, pictures, and what a printer says.
#pragma once

#include "../support/PrintServer.h"
#include "../support/ScratchHome.h"
#include "platform/CupsPrinter.h"

#include <QPainter>
#include <QtTest>

#include <csignal>

namespace quorvia::test {

/// Four colours, so that each turn and mirror image would show.
inline QImage quarters(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const QSize half = size / 2;
    painter.fillRect(image.rect(), Qt::yellow);
    painter.fillRect(QRect(QPoint(), half), Qt::red);
    painter.fillRect(half.width(), 0, size.width(), half.height(), Qt::blue);
    painter.fillRect(0, half.height(), half.width(), size.height(), Qt::green);
    return image;
}

/// Nothing that could be compressed.
inline QImage noise()
{
    QImage image(400, 600, QImage::Format_RGB32);
    quint32 value = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            value = value * 1664525U + 1013904223U;
            image.setPixel(x, y, value >> 8U);
        }
    }
    return image;
}

/// The page that a paper of this size leaves, twips.
inline QRect inside(const QSize& page)
{
    constexpr int margin = 550;
    return QRect(QPoint(), page).adjusted(margin, margin, -margin, -margin);
}

/// The server and the environment of a test program. Made in initTestCase(), reset() after each test.
class PrintStage
{
  public:
    const ScratchHome& home() const { return m_home; }
    const PrintServer& server() const { return m_server; }

    /// As it was in the beginning: no queue, no choice of the user.
    void reset()
    {
        ::kill(pid_t(m_server.processId()), SIGCONT);
        toServer(m_server.socket());
        for (const char* variable : {"PRINTER", "LPDEST", "TMPDIR"})
            qunsetenv(variable);
        QFile::remove(m_home.path(".cups/lpoptions"));
        for (const char* queue : {"Alpha", "Keeper", "Omega"})
            m_server.run("lpadmin", {"-x", queue});
    }

    /// Leads this process to the server at `socket`.
    static void toServer(const QString& socket)
    {
        qputenv("CUPS_SERVER", socket.toLocal8Bit());
        cupsSetServer(nullptr); // or it goes on with the one it knows
    }

    /// `printer` is none, and says so.
    static void assertNone(platform::Printer& printer)
    {
        QCOMPARE(printer.deviceName(), QString());
        QVERIFY(!printer.pageSize().isValid() || printer.pageSize().isEmpty());
        QVERIFY(printer.resolution() > 0);
        QVERIFY(!isUsablePrinter(printer));
        QString why;
        QVERIFY(!printer.printPage(quarters({40, 60}), {0, 0, 1000, 1000}, "T", &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!printer.printPage(quarters({40, 60}), {0, 0, 1000, 1000}, "T", nullptr));
    }

    /// Printing fails, with a line that begins with the queue's name and holds `reason`.
    void assertRefused(platform::Printer& printer, const QString& reason) const
    {
        const int before = m_server.count();
        QString why;
        QVERIFY(!printer.printPage(quarters({40, 60}), inside(printer.pageSize()), "T", &why));
        QVERIFY2(why.startsWith("Keeper: ") && why.size() > 12 && !why.contains('\n'), qPrintable(why));
        QVERIFY2(why.contains(reason), qPrintable(why));
        QVERIFY2(!why.contains("Success"), qPrintable(why));
        QCOMPARE(m_server.count(), before);
    }

  private:
    ScratchHome m_home;
    PrintServer m_server;
};

} // namespace quorvia::test
