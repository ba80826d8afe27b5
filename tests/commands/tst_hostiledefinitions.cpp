// Definitions that nobody would write: whatever stands in them, the build ends, and soon.
#include "../support/ScratchHome.h"
#include "app/Paths.h"
#include "BuildStage.h"
#include "commands/InterfaceFile.h"

#include <QFile>
#include <QTest>

#include <random>

using namespace quorvia;
using namespace quorvia::platform;
using test::BuildStage;
using test::ScratchHome;

namespace {

constexpr int million = 1000 * 1000;

/// The number of tools that a build made.
int made(const BuildStage& stage)
{
    static const int designed = BuildStage().model.toolCount();
    return stage.model.toolCount() - designed;
}

/// `text` `count` times.
QString many(const char* text, int count)
{
    return QString::fromLatin1(text).repeated(count);
}

QByteArray randomBytes(std::mt19937& random, int count, const QByteArray& letters)
{
    QByteArray bytes;
    for (int index = 0; index < count; ++index)
        bytes +=
            letters.isEmpty() ? char(random()) : letters[qsizetype(random() % std::size_t(letters.size()))];
    return bytes;
}

} // namespace

class TestHostileDefinitions : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_home = std::make_unique<ScratchHome>(); }
    void cleanup() { m_home.reset(); }

    void withoutEnd_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QString>("toolbar");
        QTest::addColumn<int>("tools"); // made by the build
        constexpr int most = commands::MenuBuild::mostItems;
        const QString two = QStringLiteral("A:miA|B:miB");
        QTest::newRow("items") << many("|", million) << QString() << most;
        QTest::newRow("items of one name") << many("A:miA|", million / 4) << QString() << most;
        QTest::newRow("lines") << many("-|", million / 2) << QString() << most;
        QTest::newRow("children") << "A>" + many(",", million) + "|B" << QString() << most;
        QTest::newRow("grandchildren") << "A>B%" + many("*", million) + "|C" << QString() << most;
        QTest::newRow("parents") << many("A>|", million / 3) << QString() << most;
        QTest::newRow("parents of other names") << [] {
            QString text;
            for (int index = 0; index < million / 10; ++index)
                text += QStringLiteral("p%1>a|").arg(index);
            return text;
        }() << QString() << most;
        QTest::newRow("openers of level 1") << many(">", million) + "|A" << QString() << 3;
        QTest::newRow("openers of level 2") << "A>" + many("%", million) + "|B" << QString() << 4;
        QTest::newRow("fields") << many(":", million) + "|A" << QString() << 2;
        QTest::newRow("a caption") << many("x", million) + "|A" << QString() << 2;
        QTest::newRow("an icon") << "A:miA:" + many("#", million) + "|B" << QString() << 2;
        QTest::newRow("places for mail")
            << many("[InternalExtensions]", million / 20) + "|A" << QString() << most;
        QTest::newRow("buttons") << two << "0" + many("|miA", million / 4) << 2;
        QTest::newRow("lines of the toolbar") << two << "0" + many("|-", million / 2) << 2;
        QTest::newRow("empty buttons") << two << many("|", million) << 2;
        QTest::newRow("unknown buttons") << two << "0" + many("|x", million / 2) << 2;
        QTest::newRow("a width") << two << many("9", million) + "|miA" << 2;
        QTest::newRow("numbers put in") << two << many("[num]", million / 5) << 2;
    }

    void withoutEnd()
    {
        QFETCH(QString, menu);
        QFETCH(QString, toolbar);
        BuildStage stage;
        stage.postrel = true;
        stage.run(menu, toolbar);
        QVERIFY(stage.build.isBuilt());
        QTEST(made(stage), "tools");
        const ToolBand* const built = stage.band(QStringLiteral("Toolbar"));
        QVERIFY(!built || built->toolCount() < commands::MenuBuild::mostItems);
    }

    void whatIsLeftOutIsLogged()
    {
        BuildStage stage;
        stage.run(many("A:miA|", commands::MenuBuild::mostItems - 1) + QStringLiteral("B:miB"));
        QVERIFY(!QFile::exists(app::logPath())); // just as many as there may be
        QVERIFY(stage.model.tool(QStringLiteral("miB")));
        stage.run(many("A:miA|", commands::MenuBuild::mostItems) + QStringLiteral("C:miC"));
        QVERIFY(!stage.model.tool(QStringLiteral("miC")));
        QFile log(app::logPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("The definition has too many items"));
    }

    void bandsThatOpenThemselves_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::newRow("the context menu") << "A:miA:::NewImage:|B";
        QTest::newRow("a parent within itself") << "A>A%B*C,D|E";
        QTest::newRow("each other") << "A>x:x:::mnuB:|B>y:y:::mnuA:|C";
        QTest::newRow("the toolbar") << "A:miA:::Toolbar:|B";
        QTest::newRow("a band that is not there") << "A:miA:::nowhere:|B";
    }

    void bandsThatOpenThemselves()
    {
        QFETCH(QString, menu);
        BuildStage stage;
        stage.run(menu, QStringLiteral("0|miA"));
        QVERIFY(stage.build.isBuilt());
        QVERIFY(stage.band(QStringLiteral("NewImage"))->toolCount() >= 2);
        stage.run(menu, QStringLiteral("0|miA"));
        QVERIFY(stage.build.isBuilt());
    }

    void wildNames_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::newRow("names of bands and carriers")
            << "NewImage:NewImage:Toolbar|Toolbar:Toolbar|#open:#open:#open|miSep:miSep|bRecent:tRecent0";
        QTest::newRow("no names") << "::::::|::|A::A|:";
        QTest::newRow("zeros") << QString(QLatin1String("A\0:mi\0A|B", 9));
        QTest::newRow("half characters")
            << QString(QChar(0xD800)) + "|" + QChar(0xDC00) + ">" + QChar(0xD800);
        QTest::newRow("a menu of the other section") << "[num]|miOpenMenu|[InternalExtensions]";
        QTest::newRow("places within places") << "[Internal[extensions]Extensions]|A";
    }

    void wildNames()
    {
        QFETCH(QString, menu);
        BuildStage stage;
        stage.postrel = true;
        stage.run(menu, menu);
        QVERIFY(stage.build.isBuilt());
        QVERIFY(made(stage) >= 2);
    }

    void randomFiles_data()
    {
        QTest::addColumn<QByteArray>("letters"); // empty: all bytes
        QTest::newRow("all bytes") << QByteArray();
        QTest::newRow("separators and letters") << QByteArray("|>,%*:-#abmi[]\r\n ");
        QTest::newRow("separators") << QByteArray("|>,%*:");
    }

    void randomFiles()
    {
        QFETCH(QByteArray, letters);
        std::mt19937 random(5);
        for (int round = 0; round < 100; ++round) {
            const QByteArray menu = randomBytes(random, 2000, letters);
            const QByteArray bar = randomBytes(random, 200, letters);
            m_home->write(QStringLiteral("root/interface.dat"),
                          "\r\n----- StrData:Menu\r\n" + menu + "\r\n----- StrData:Toolbar\r\n" + bar);
            const commands::InterfaceFile file;
            BuildStage stage;
            stage.postrel = round % 2 == 0;
            stage.run(file.MenuString(), file.ToolbarString());
            QVERIFY(stage.build.isBuilt());
            QVERIFY(made(stage) > 0);
        }
    }

    void brokenShippedFile()
    {
        QFile shipped(QStringLiteral(QUORVIA_SOURCE "/data/interface.dat"));
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        const QByteArray good = shipped.readAll();
        std::mt19937 random(7);
        int builds = 0;
        for (int round = 0; round < 300; ++round) {
            QByteArray broken = good.left(qsizetype(random() % std::size_t(good.size())));
            for (int change = 0; change < round % 8 && !broken.isEmpty(); ++change)
                broken[qsizetype(random() % std::size_t(broken.size()))] = char(random());
            m_home->write(QStringLiteral("root/interface.dat"), broken);
            const commands::InterfaceFile file;
            BuildStage stage;
            stage.run(file.MenuString(), file.ToolbarString());
            builds += stage.build.isBuilt() ? 1 : 0;
            QCOMPARE(stage.build.isBuilt(), !stage.menu.isEmpty());
        }
        QVERIFY(builds > 200);
    }

  private:
    std::unique_ptr<ScratchHome> m_home;
};

QTEST_GUILESS_MAIN(TestHostileDefinitions)
#include "tst_hostiledefinitions.moc"
