// Which program a desktop of the test's own opens a type with, and what a change does to its lists.
#include "../support/FileContent.h"
#include "../support/ScratchHome.h"
#include "platform/MimeApps.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia::platform;
using quorvia::test::contentOf;

namespace {

const QString png = "image/png";
const QString own = "quorvia.desktop";
const QByteArray defaults = "[Default Applications]\n";

} // namespace

class TestMimeApps : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<quorvia::test::ScratchHome> m_home;

    void addEntry(const QString& name, const QString& share = ".local/share",
                  const QByteArray& more = {}) const
    {
        m_home->write(share + "/applications/" + name + ".desktop",
                      "[Desktop Entry]\nType=Application\nName=A\nExec=true %f\n" + more);
    }
    QString userList() const { return m_home->path(".config/mimeapps.list"); }
    static QString used() { return MimeApps().first(MimeRole::Default, png); }
    static QString offered() { return MimeApps().first(MimeRole::Offered, png); }
    static QStringList put(MimeRole role)
    {
        MimeApps desktop;
        desktop.putFirst(role, png, own);
        return desktop.save();
    }
    static QStringList takeOut()
    {
        MimeApps desktop;
        desktop.takeOut(png, own);
        return desktop.save();
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<quorvia::test::ScratchHome>();
        qputenv("XDG_DATA_DIRS", m_home->path("share").toLocal8Bit());
        qputenv("XDG_CONFIG_DIRS", m_home->path("etc").toLocal8Bit());
        qunsetenv("XDG_CURRENT_DESKTOP");
        for (const char* name : {"a", "b", "c", "quorvia"})
            addEntry(QLatin1String(name));
    }
    void cleanup() { m_home.reset(); }

    /// Each step hides the one before it.
    void theOrderOfPlaces()
    {
        QCOMPARE(used(), QString());
        m_home->write("share/applications/mimeinfo.cache",
                      "[MIME Cache]\nimage/png=gone.desktop;c.desktop;\n");
        QCOMPARE(used(), "c.desktop");
        m_home->write(".local/share/applications/mimeinfo.cache", "[MIME Cache]\nimage/png=b.desktop;\n");
        QCOMPARE(used(), "b.desktop");
        m_home->write("etc/mimeapps.list", "[Added Associations]\nimage/png=a.desktop\n");
        QCOMPARE(used(), "a.desktop");
        m_home->write("share/applications/mimeapps.list", defaults + "image/png=c.desktop\n");
        QCOMPARE(used(), "c.desktop");
        m_home->write(".local/share/applications/mimeapps.list", defaults + "image/png=b.desktop\n");
        QCOMPARE(used(), "b.desktop");
        m_home->write("etc/mimeapps.list", defaults + "image/png=a.desktop\n");
        QCOMPARE(used(), "a.desktop");
        m_home->write(".config/mimeapps.list", defaults + "image/png=gone.desktop;c.desktop\n");
        QCOMPARE(used(), "c.desktop");
        qputenv("XDG_CURRENT_DESKTOP", "Budgie:GNOME");
        m_home->write(".config/gnome-mimeapps.list", defaults + "image/png=b.desktop\n");
        QCOMPARE(used(), "b.desktop");
        m_home->write(".config/budgie-mimeapps.list", defaults + "image/png=a.desktop\n");
        QCOMPARE(used(), "a.desktop");
    }

    void removedOnesAreNotOffered()
    {
        m_home->write(".config/mimeapps.list",
                      "[Added Associations]\nimage/png=gone.desktop;a.desktop\n[Removed Associations]\nimage/"
                      "png=b.desktop\n");
        m_home->write("share/applications/mimeinfo.cache", "[MIME Cache]\nimage/png=b.desktop;c.desktop;\n");
        QCOMPARE(offered(), "a.desktop");
        QVERIFY(QFile::remove(m_home->path(".local/share/applications/a.desktop")));
        QCOMPARE(offered(), "c.desktop");
        addEntry("c", ".local/share", "Hidden=true\n");
        QCOMPARE(offered(), QString());
    }

    void thereAndBack_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("defaults") << defaults + "image/png=a.desktop;b.desktop;\n";
        QTest::newRow("none") << QByteArray("# mine\n\n[Added Associations]\nimage/gif=a.desktop");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("odd") << QByteArray("\xff\xfe\r\n[Default Applications]\r\nodd line\r\n");
    }
    void thereAndBack()
    {
        QFETCH(QByteArray, text);
        m_home->write(".config/mimeapps.list", text);
        for (const MimeRole role : {MimeRole::Default, MimeRole::Offered})
            QCOMPARE(put(role), QStringList());
        QCOMPARE(used(), own);
        QCOMPARE(offered(), own);
        QCOMPARE(takeOut(), QStringList());
        QCOMPARE(contentOf(userList()), text);
    }

    void aListOfOursGoesAgain()
    {
        QCOMPARE(put(MimeRole::Default), QStringList());
        QCOMPARE(used(), own);
        QCOMPARE(takeOut(), QStringList());
        QVERIFY(!QFile::exists(userList()));
        QCOMPARE(takeOut(), QStringList());
        QVERIFY(!QFile::exists(userList()));
    }

    void whereTheDesktopHasASay()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const QByteArray common = defaults + "image/png=a.desktop\n";
        const QByteArray special = defaults + "image/png=b.desktop\n";
        m_home->write(".config/mimeapps.list", common);
        const QString list = m_home->write(".config/gnome-mimeapps.list", special);
        QCOMPARE(put(MimeRole::Default), QStringList());
        QCOMPARE(contentOf(userList()), common);
        QCOMPARE(contentOf(list), defaults + "image/png=quorvia.desktop;b.desktop\n");
        QCOMPARE(put(MimeRole::Offered), QStringList()); // for which such a list has no say
        QVERIFY(contentOf(userList()).contains("image/png=quorvia.desktop\n"));
        qunsetenv("XDG_CURRENT_DESKTOP"); // given back from another desktop
        QCOMPARE(takeOut(), QStringList());
        QCOMPARE(contentOf(userList()), common);
        QCOMPARE(contentOf(list), special);
    }

    void nothingIsWrittenWithoutAChange()
    {
        const QString list = m_home->write(".config/mimeapps.list", defaults + "image/png=a.desktop\n");
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::stat(QFile::encodeName(list).constData(), &before), 0);
        QCOMPARE(takeOut(), QStringList());
        QCOMPARE(::stat(QFile::encodeName(list).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino); // a write would have put another file there
    }

    /// What others write between the first look and the save is kept, and ours goes where theirs leaves room.
    void changedMeanwhile()
    {
        const QByteArray first = defaults + "image/png=a.desktop\n";
        const QByteArray second = "# theirs\n" + defaults + "image/gif=b.desktop\nimage/png=c.desktop\n";
        m_home->write(".config/mimeapps.list", first);
        MimeApps taking;
        taking.putFirst(MimeRole::Default, png, own);
        m_home->write(".config/mimeapps.list", second);
        QCOMPARE(taking.save(), QStringList());
        QCOMPARE(contentOf(userList()), QByteArray(second).replace("png=", "png=quorvia.desktop;"));
        QCOMPARE(taking.first(MimeRole::Default, "image/gif"), "b.desktop");
        MimeApps giving;
        giving.takeOut(png, own);
        m_home->write(".config/mimeapps.list", first);
        QCOMPARE(giving.save(), QStringList());
        QCOMPARE(contentOf(userList()), first);
    }

    void aListOfOursThatOthersFilledMeanwhileStays()
    {
        QCOMPARE(put(MimeRole::Default), QStringList());
        MimeApps giving;
        giving.takeOut(png, own);
        const QByteArray theirs = "[Added Associations]\nimage/gif=a.desktop\n";
        m_home->write(".config/mimeapps.list", contentOf(userList()) + theirs);
        QCOMPARE(giving.save(), QStringList());
        QVERIFY(contentOf(userList()).endsWith(theirs));
        QVERIFY(!contentOf(userList()).contains(own.toLatin1()));
    }

    void twoNamesForOneList()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const QByteArray text = defaults + "image/png=a.desktop\n";
        m_home->write(".config/mimeapps.list", text);
        QVERIFY(QFile::link("mimeapps.list", m_home->path(".config/gnome-mimeapps.list")));
        MimeApps desktop;
        desktop.putFirst(MimeRole::Default, png, own);
        desktop.putFirst(MimeRole::Default, "image/gif", own);
        desktop.putFirst(MimeRole::Offered, png, own);
        QCOMPARE(desktop.save(), QStringList());
        for (const char* type : {"image/png", "image/gif"})
            QCOMPARE(MimeApps().first(MimeRole::Default, type), own);
        QCOMPARE(offered(), own);
        MimeApps back;
        back.takeOut({}, own);
        QCOMPARE(back.save(), QStringList());
        QCOMPARE(contentOf(userList()), text);
    }

    void whatTheUserChose()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        m_home->write(".config/mimeapps.list",
                      defaults + "image/png=gone.desktop;\n[Added Associations]\nimage/png=b.desktop\n");
        m_home->write(".config/gnome-mimeapps.list",
                      defaults + "image/png=a.desktop\n[Added Associations]\nimage/png=c.desktop\n");
        m_home->write(".config/kde-mimeapps.list", defaults + "image/png=c.desktop\n");
        m_home->write("etc/mimeapps.list", defaults + "image/png=c.desktop\n");
        MimeApps desktop;
        QCOMPARE(desktop.chosenByUser(MimeRole::Default, png), (QStringList{"a.desktop", "gone.desktop"}));
        QCOMPARE(desktop.chosenByUser(MimeRole::Offered, png), QStringList{"b.desktop"});
        QCOMPARE(desktop.chosenByUser(MimeRole::Default, "image/gif"), QStringList());
    }

    /// What could not be read afterwards is not written.
    void aListThatWouldBecomeTooLarge()
    {
        QByteArray text = defaults;
        text += QByteArray(4 * 1024 * 1024 - 10 - text.size(), '#');
        m_home->write(".config/mimeapps.list", text);
        QCOMPARE(put(MimeRole::Default), QStringList{userList() + ": it would become too large"});
        QVERIFY(contentOf(userList()) == text);
    }

    void whatCannotBeReadStays_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("a directory") << 0;
        QTest::newRow("a pipe") << 1;
        QTest::newRow("huge") << 2;
        QTest::newRow("a link to a device") << 3;
    }
    void whatCannotBeReadStays()
    {
        QFETCH(int, kind);
        m_home->write(".config/.keep", "");
        const QByteArray path = QFile::encodeName(userList());
        if (kind == 0)
            QVERIFY(QDir().mkpath(userList()));
        else if (kind == 1)
            QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        else if (kind == 2)
            m_home->write(".config/mimeapps.list", QByteArray(5 * 1024 * 1024, '['));
        else
            QCOMPARE(::symlink("/dev/zero", path.constData()), 0);
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::lstat(path.constData(), &before), 0);
        m_home->write("share/applications/mimeinfo.cache", "[MIME Cache]\nimage/png=c.desktop;\n");
        QCOMPARE(used(), "c.desktop");
        QCOMPARE(put(MimeRole::Default), QStringList{userList() + ": it cannot be read"});
        QCOMPARE(takeOut(), QStringList{userList() + ": it cannot be read"}); // we may stand in it still
        QCOMPARE(::lstat(path.constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(after.st_mode, before.st_mode);
    }

    void aListThatIsReadOnlyStays()
    {
        const QByteArray text = defaults + "image/png=a.desktop\n";
        const QString list = m_home->write(".config/mimeapps.list", text);
        QVERIFY(QFile::setPermissions(list, QFile::ReadOwner));
        QCOMPARE(put(MimeRole::Default), QStringList{list + ": the file is read only"});
        QCOMPARE(contentOf(list), text);
    }

    void anyBytes()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 50; ++round) {
            QByteArray text(random.bounded(4000), Qt::Uninitialized);
            for (char& each : text)
                each = char(random.bounded(256));
            m_home->write(".config/mimeapps.list", text);
            QCOMPARE(put(MimeRole::Default), QStringList());
            QCOMPARE(used(), own);
            QCOMPARE(takeOut(), QStringList());
            QCOMPARE(contentOf(userList()), text);
        }
    }

    void aHugeLine()
    {
        QByteArray text = defaults + "image/png=";
        for (int i = 0; i < 100000; ++i)
            text += "x.desktop;";
        m_home->write(".config/mimeapps.list", text);
        QCOMPARE(used(), QString());
        QCOMPARE(put(MimeRole::Default), QStringList());
        QCOMPARE(used(), own);
        QCOMPARE(takeOut(), QStringList());
        QCOMPARE(contentOf(userList()), text);
    }
};

QTEST_GUILESS_MAIN(TestMimeApps)
#include "tst_mimeapps.moc"
