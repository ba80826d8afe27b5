// Descriptions over the end of a process: in which order a save asks the system, and what stands on the disk
// when the program is killed at any step of it or right after it.
#include "app/Log.h"
#include "support/ScratchHome.h"
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <dlfcn.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <memory>

using namespace quorvia;

namespace {

const QString oldText = QStringLiteral("the old text");
const QString newText = QStringLiteral("new words");

/// What was asked of the system about the directory of descriptions, and what is to go wrong with it.
struct Watch
{
    bool on = false;
    QStringList calls = {};
    int deadlyCall = 0; ///< the process is killed before it, counted from 1
    bool failsToSync = false;
};

Watch& watch()
{
    static Watch one;
    return one;
}

template <class Call>
Call real(const char* name)
{
    return reinterpret_cast<Call>(::dlsym(RTLD_NEXT, name));
}

void note(const char* call)
{
    if (watch().calls.size() + 1 == watch().deadlyCall)
        std::raise(SIGKILL);
    watch().calls.append(QLatin1String(call));
}

/// Whether `path` is, or lies in, the directory of descriptions.
bool concerns(const char* path)
{
    const QByteArray name(path);
    return watch().on && (name.contains("/Description/") || name.endsWith("/Description"));
}

bool concerns(int file)
{
    if (!watch().on)
        return false;
    std::array<char, PATH_MAX> path = {};
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(file);
    return ::readlink(link.constData(), path.data(), path.size() - 1) > 0 && concerns(path.data());
}

int sync(const char* name, int file)
{
    if (concerns(file)) {
        struct stat status = {};
        const bool directory = ::fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
        note(directory ? "sync the directory" : "sync");
        if (watch().failsToSync) {
            errno = EIO;
            return -1;
        }
    }
    return real<int (*)(int)>(name)(file);
}

} // namespace

// The system's calls, as far as a save may use them; these stand before those of the system's library. A new
// file gets its name by a link or by a rename.
extern "C" {

ssize_t write(int file, const void* bytes, size_t count)
{
    if (concerns(file))
        note("write");
    return real<ssize_t (*)(int, const void*, size_t)>("write")(file, bytes, count);
}

int fsync(int file)
{
    return sync("fsync", file);
}

int fdatasync(int file)
{
    return sync("fdatasync", file);
}

int rename(const char* from, const char* to) noexcept
{
    if (concerns(to))
        note("name");
    return real<int (*)(const char*, const char*)>("rename")(from, to);
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to, unsigned flags) noexcept
{
    if (concerns(to))
        note("name");
    return real<int (*)(int, const char*, int, const char*, unsigned)>("renameat2")(fromDirectory, from,
                                                                                    toDirectory, to, flags);
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) noexcept
{
    if (concerns(to))
        note("name");
    return real<int (*)(int, const char*, int, const char*, int)>("linkat")(fromDirectory, from, toDirectory,
                                                                            to, flags);
}
}

namespace {

/// The child: types `newText` for "a.png" in `folder` and is killed at the call `deadlyCall`, or as soon as
/// the panel says that all is saved when that is 0.
int typeAndDie(const QString& folder, int deadlyCall)
{
    test::PanelBench bench(folder);
    bench.open("a.png");
    watch().on = true;
    watch().deadlyCall = deadlyCall;
    bench.typeAnew(newText);
    if (deadlyCall > 0)
        bench.panel->saveDescriptionNow();
    if (QTest::qWaitFor([&bench] { return !bench.panel->isDescriptionUnsaved(); }))
        std::raise(SIGKILL);
    return EXIT_FAILURE;
}

} // namespace

class TestDescriptionCrash : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    QString m_image;

    QString folder() const { return m_home->path(QStringLiteral("pics/")); }
    bool save(const QString& text) const
    {
        return viewer::writeDescription(viewer::descriptionPath(m_image), text);
    }
    QString stored() const { return viewer::readDescription(viewer::descriptionPath(m_image)).text; }
    QStringList callsOfASave() const
    {
        watch() = {.on = true};
        const bool saved = save(newText);
        watch().on = false;
        return saved ? watch().calls : QStringList();
    }
    bool diesTyping(int deadlyCall) const
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("type"), folder(), QString::number(deadlyCall)});
        return child.waitForFinished() && child.exitStatus() == QProcess::CrashExit &&
               child.exitCode() == SIGKILL;
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        m_image = m_home->write(QStringLiteral("pics/a.png"), "picture");
    }

    void cleanup()
    {
        watch() = {};
        m_home.reset();
    }

    void theDiskHasTheBytesBeforeTheNameMoves_data()
    {
        QTest::addColumn<bool>("old");
        QTest::newRow("a first description") << false;
        QTest::newRow("an old one is replaced") << true;
    }

    void theDiskHasTheBytesBeforeTheNameMoves()
    {
        QFETCH(bool, old);
        QVERIFY(save(old ? oldText : QString()));
        if (!old)
            QVERIFY(QFile::remove(viewer::descriptionPath(m_image)));
        QStringList calls = callsOfASave();
        calls.removeDuplicates();
        QCOMPARE(calls, QStringList({"write", "sync", "name", "sync the directory"}));
        QCOMPARE(stored(), newText);
    }

    void aKillLeavesTheOldTextOrTheNewOne()
    {
        QVERIFY(save(oldText));
        const QStringList calls = callsOfASave();
        const int naming = int(calls.lastIndexOf(QStringLiteral("name"))) + 1;
        QVERIFY(naming > 1);
        for (int call = 1; call <= calls.size(); ++call) {
            QVERIFY(save(oldText));
            QVERIFY2(diesTyping(call), qPrintable(calls.at(call - 1)));
            QCOMPARE(stored(), call <= naming ? oldText : newText);
        }
    }

    void aKillAfterTheSaveLosesNothing_data()
    {
        QTest::addColumn<bool>("old");
        QTest::newRow("a first description") << false;
        QTest::newRow("an old one is replaced") << true;
    }

    void aKillAfterTheSaveLosesNothing()
    {
        QFETCH(bool, old);
        if (old)
            QVERIFY(save(oldText));
        QVERIFY(diesTyping(0));
        QCOMPARE(stored(), newText);
    }

    void whatTheDiskRefusesReplacesNothing()
    {
        QVERIFY(save(oldText));
        watch() = {.on = true, .failsToSync = true};
        QVERIFY(!save(newText));
        QCOMPARE(stored(), oldText);
        QCOMPARE(QFileInfo(viewer::descriptionPath(m_image)).dir().count(), 3U); // ".", "..", the old file
        QFile log(app::logPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("Description not saved: "));
    }
};

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("type"))
        return typeAndDie(arguments.at(2), arguments.at(3).toInt());
    TestDescriptionCrash test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_descriptioncrash.moc"
