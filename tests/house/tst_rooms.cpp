// Reads the #include lines of the tree and fails on any arrow between rooms that the build does not list.
#include "RoomArrows.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace quorvia::test;

namespace {

/// What is wrong with the includes of a file of `room`: one text each.
QStringList wrongIncludes(const Arrows& arrows, const QString& room, const QStringList& lines)
{
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*\"([^\"/]+)/[^\"]+\""));
    const QSet<QString> allowed = reach(arrows, room);
    QStringList wrong;
    for (const QString& line : lines) {
        const QString target = include.match(line).captured(1);
        if (arrows.contains(target) && target != room && !allowed.contains(target))
            wrong.append(line.trimmed());
        else if (!target.isEmpty() && !arrows.contains(target))
            wrong.append(line.trimmed());
    }
    return wrong;
}

} // namespace

class TestRooms : public QObject
{
    Q_OBJECT

  private:
    Arrows m_arrows = readArrows(linesOf(QStringLiteral(ROOMS_FILE)));

  private Q_SLOTS:
    void everyRoomIsListed()
    {
        const QStringList folders =
            QDir(QStringLiteral(SOURCE_DIRECTORY "/src")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QVERIFY(folders.size() >= 4);
        for (const QString& folder : folders)
            QVERIFY2(m_arrows.contains(folder),
                     qPrintable(folder + QStringLiteral(" is no room of the build")));
    }

    void arrowsRunDown_data()
    {
        QTest::addColumn<QString>("room");
        QTest::addColumn<QStringList>("forbidden");
        const QStringList upper = {QStringLiteral("viewer"),      QStringLiteral("commands"),
                                   QStringLiteral("collections"), QStringLiteral("output"),
                                   QStringLiteral("system"),      QStringLiteral("scan"),
                                   QStringLiteral("postrel")}; // the last two are programs of their own
        QTest::newRow("platform") << "platform"
                                  << (QStringList(upper) << "app"
                                                         << "controls"
                                                         << "engine");
        QTest::newRow("engine") << "engine"
                                << (QStringList(upper) << "app"
                                                       << "controls"
                                                       << "platform");
        QTest::newRow("app") << "app" << (QStringList(upper) << "controls");
        QTest::newRow("controls") << "controls" << upper;
        const auto others = [&upper](const char* room) {
            QStringList all = upper;
            all.removeOne(QLatin1String(room));
            return all;
        };
        for (const char* middle : {"commands", "collections", "output", "system"})
            QTest::newRow(middle) << middle << others(middle);
        QTest::newRow("viewer") << "viewer" << QStringList{QStringLiteral("scan"), QStringLiteral("postrel")};
        QTest::newRow("scan") << "scan"
                              << (others("scan") << "app"
                                                 << "controls"
                                                 << "engine"
                                                 << "platform");
        QTest::newRow("postrel") << "postrel"
                                 << (others("postrel") << "app"
                                                       << "controls"
                                                       << "engine");
    }

    void theRoomsAreThese()
    {
        QStringList rooms = m_arrows.keys();
        rooms.sort();
        QCOMPARE(rooms, QStringList({"app", "collections", "commands", "controls", "engine", "output",
                                     "platform", "postrel", "scan", "system", "viewer"}));
    }

    void arrowsRunDown()
    {
        QFETCH(QString, room);
        QFETCH(QStringList, forbidden);
        for (const QString& other : forbidden)
            QVERIFY2(m_arrows.contains(other), qPrintable(other)); // a name of a room
        const QSet<QString> reached = reach(m_arrows, room);
        for (const QString& other : forbidden)
            QVERIFY2(!reached.contains(other), qPrintable(room + QStringLiteral(" reaches ") + other));
    }

    void includesFollowTheArrows()
    {
        QStringList wrong;
        int files = 0;
        for (auto room = m_arrows.keyBegin(); room != m_arrows.keyEnd(); ++room) {
            QDirIterator walk(QStringLiteral(SOURCE_DIRECTORY "/src/") + *room, {"*.h", "*.cpp"}, QDir::Files,
                              QDirIterator::Subdirectories);
            while (walk.hasNext()) {
                const QString path = walk.next();
                ++files;
                for (const QString& line : wrongIncludes(m_arrows, *room, linesOf(path)))
                    wrong.append(path + QStringLiteral(": ") + line);
            }
        }
        QVERIFY(files > 20);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    void aForbiddenIncludeIsSeen_data()
    {
        QTest::addColumn<QString>("room");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("isWrong");
        QTest::newRow("down") << "viewer"
                              << "#include \"app/mFile.h\"" << false;
        QTest::newRow("own room") << "engine"
                                  << "#include \"engine/Codec.h\"" << false;
        QTest::newRow("up") << "app"
                            << "#include \"viewer/Opening.h\"" << true;
        QTest::newRow("across") << "engine"
                                << "#  include \"platform/Shell.h\"" << true;
        QTest::newRow("no room") << "app"
                                 << "#include \"nowhere/X.h\"" << true;
        QTest::newRow("system header") << "engine"
                                       << "#include <sys/stat.h>" << false;
    }

    void aForbiddenIncludeIsSeen()
    {
        QFETCH(QString, room);
        QFETCH(QString, line);
        QFETCH(bool, isWrong);
        QCOMPARE(!wrongIncludes(m_arrows, room, {line}).isEmpty(), isWrong);
    }
};

QTEST_GUILESS_MAIN(TestRooms)
#include "tst_rooms.moc"
