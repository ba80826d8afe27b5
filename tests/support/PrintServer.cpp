#include "PrintServer.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>

namespace quorvia::test {

namespace {

constexpr int patience = 30'000; // milliseconds

bool runs(const QString& program, const QStringList& arguments)
{
    // The server's tools lie where an ordinary user does not look.
    const QString elsewhere =
        QStandardPaths::findExecutable(program, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(elsewhere.isEmpty() ? program : elsewhere, arguments);
    return process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

} // namespace

PrintServer::PrintServer()
{
    m_script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_script.start(QStringLiteral("python3"), {QStringLiteral("-B"), QStringLiteral(PRINT_SERVER_SCRIPT)});
    if (!m_script.waitForReadyRead(patience))
        return;
    const QString line = QString::fromLocal8Bit(m_script.readLine()).trimmed();
    const qsizetype blank = line.lastIndexOf(u' ');
    m_home.setPath(line.left(blank));
    m_pid = line.mid(blank + 1).toLongLong();
    qputenv("CUPS_SERVER", QFile::encodeName(socket()));
    qputenv("CUPS_SERVERROOT", QFile::encodeName(m_home.filePath(QStringLiteral("etc"))));
    for (const char* choice : {"PRINTER", "LPDEST"})
        qunsetenv(choice);
}

PrintServer::~PrintServer()
{
    m_script.closeWriteChannel(); // with that it ends the server and itself
    m_script.waitForFinished(patience);
}

bool PrintServer::addQueue(const QString& name, const QString& paper) const
{
    const QString description = m_home.filePath(QStringLiteral("etc/%1.ppd").arg(paper));
    return run(QStringLiteral("lpadmin"),
               {QStringLiteral("-p"), name, QStringLiteral("-v"), QStringLiteral("keep:/"),
                QStringLiteral("-P"), description, QStringLiteral("-E")});
}

bool PrintServer::run(const QString& tool, const QStringList& arguments) const
{
    return runs(tool, arguments);
}

QStringList PrintServer::documents() const
{
    const QDir prints(m_home.filePath(QStringLiteral("prints")));
    QStringList names = prints.entryList({QStringLiteral("*.pdf")}, QDir::Files);
    const auto number = [](const QString& name) { return QFileInfo(name).baseName().toInt(); };
    std::sort(names.begin(), names.end(),
              [&number](const QString& one, const QString& other) { return number(one) < number(other); });
    for (QString& name : names)
        name = prints.filePath(name);
    return names;
}

int PrintServer::count() const
{
    return int(documents().size());
}

Print PrintServer::wait(int before) const
{
    if (!QTest::qWaitFor([&] { return count() > before; }, patience))
        return {};
    const QString file = documents().constLast();
    QFile ticket(file.chopped(3) + QStringLiteral("txt"));
    if (!ticket.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(ticket.readAll()).split(u'\n');
    lines.resize(4);
    return {file, lines[0], lines[1].toInt(), lines[2], lines[3].split(u' ')};
}

QImage PrintServer::page(const Print& print, int dots) const
{
    const QString target = print.file.chopped(4);
    if (!runs(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-singlefile"),
                                           QStringLiteral("-r"), QString::number(dots), print.file, target}))
        return {};
    return QImage(target + QStringLiteral(".png"));
}

} // namespace quorvia::test
