#include "commands/ToolDispatcher.h"

#include <QTest>

#include <array>

using namespace quorvia::commands;

class TestToolDispatcher : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("done");
        QTest::newRow("a command") << "miNext" << QStringList{"next"};
        QTest::newRow("another") << "miExit" << QStringList{"exit"};
        QTest::newRow("other case") << "minext" << QStringList{};
        QTest::newRow("unknown") << "install" << QStringList{};
        QTest::newRow("empty") << "" << QStringList{};
        QTest::newRow("message") << "miMsg_Done" << QStringList{"message: Done"};
        QTest::newRow("message with blanks")
            << "miMsg_Not available" << QStringList{"message: Not available"};
        QTest::newRow("second field only") << "miMsg_a_b" << QStringList{"message: a"};
        QTest::newRow("message without a field") << "miMsg" << QStringList{"message: "};
        QTest::newRow("field after other text") << "miMsgBox_x" << QStringList{"message: x"};
        QTest::newRow("message in other case") << "mimsg_x" << QStringList{};
        QTest::newRow("reserved") << "miCmd" << QStringList{};
        QTest::newRow("reserved with text") << "miCmd_x" << QStringList{};
        QTest::newRow("exact before prefix") << "miMsgOwn" << QStringList{"own"};
        QTest::newRow("a recent directory") << "tRecent12" << QStringList{"recent: tRecent12"};
        QTest::newRow("the menu of them") << "tRecent" << QStringList{"recent: tRecent"};
        QTest::newRow("shorter than that") << "tRece" << QStringList{};
        QTest::newRow("a file of the list") << "FileX3" << QStringList{"listed: FileX3"};
        QTest::newRow("in other case") << "filex3" << QStringList{};
    }

    void names()
    {
        QFETCH(QString, name);
        QStringList done;
        const std::array<Tool, 3> tools = {Tool{"miNext", [&] { done << "next"; }},
                                           Tool{"miExit", [&] { done << "exit"; }},
                                           Tool{"miMsgOwn", [&] { done << "own"; }}};
        const auto note = [&done](const QString& what) {
            return [&done, what](const QString& text) { done << what + text; };
        };
        const ToolDispatcher dispatcher(tools, {note("recent: "), note("listed: "), note("message: ")});
        dispatcher.RunTool(name);
        QTEST(done, "done");
    }

    void aCommandMayEndTheDispatcher()
    {
        bool ran = false;
        std::unique_ptr<ToolDispatcher> dispatcher;
        const std::array<Tool, 1> tools = {Tool{"end", [&] {
                                                    dispatcher.reset();
                                                    ran = true;
                                                }}};
        dispatcher = std::make_unique<ToolDispatcher>(tools, PrefixTools{});
        dispatcher->RunTool(QStringLiteral("end"));
        QVERIFY(ran);
        QVERIFY(!dispatcher);
    }
};

QTEST_GUILESS_MAIN(TestToolDispatcher)
#include "tst_tooldispatcher.moc"
