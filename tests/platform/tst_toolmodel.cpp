// Tools, their copies on bands, and who follows whom.
#include "platform/ToolModel.h"

#include <QSignalSpy>
#include <QTest>

using namespace quorvia::platform;

class TestToolModel : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void toolsAreFoundByTheirExactName()
    {
        ToolModel model;
        Tool* const first = model.addTool(1, QStringLiteral("miA"));
        Tool* const second = model.addTool(2, QStringLiteral("miA"));
        QCOMPARE(model.tool(QStringLiteral("miA")), first);
        QVERIFY(!model.tool(QStringLiteral("mia")));
        QCOMPARE(model.toolCount(), 2);
        QCOMPARE(model.toolAt(1), second);
        QVERIFY(!model.toolAt(2));
        QVERIFY(!model.toolAt(-1));
    }

    void bandsAreListedInTheirOrder()
    {
        ToolModel model;
        ToolBand* const menu = model.addBand(QStringLiteral("menu"), BandKind::PopUp);
        ToolBand* const bar = model.addBand(QStringLiteral("bar"), BandKind::Toolbar);
        model.addBand(QStringLiteral("menu"), BandKind::PopUp); // the same once more
        QCOMPARE(model.bandCount(), 2);
        QCOMPARE(model.bandAt(0), menu);
        QCOMPARE(model.bandAt(1), bar);
        QVERIFY(!model.bandAt(2));
        QVERIFY(!model.bandAt(-1));
    }

    void copiesTakeOverWhatIsSetOnTheirTool()
    {
        ToolModel model;
        Tool* const tool = model.addTool(1, QStringLiteral("miA"));
        tool->set(&ToolValues::caption, QStringLiteral("before"));
        Tool* const follower = model.addBand(QStringLiteral("menu"), BandKind::PopUp)->append(tool);
        Tool* const fixed = model.addBand(QStringLiteral("designed"), BandKind::PopUp, false)->append(tool);
        QCOMPARE(follower->values(), tool->values());
        QCOMPARE(fixed->values(), tool->values());
        QSignalSpy changed(follower, &Tool::changed);
        tool->set(&ToolValues::enabled, false);
        tool->set(&ToolValues::enabled, false);
        QCOMPARE(changed.count(), 1);
        QVERIFY(!follower->values().enabled);
        QVERIFY(fixed->values().enabled);
        QCOMPARE(fixed->values().caption, QStringLiteral("before"));
    }

    void whatIsSetOnTheFirstOfANameReachesTheOthers()
    {
        ToolModel model;
        Tool* const first = model.addTool(1, QStringLiteral("miA"));
        Tool* const second = model.addTool(2, QStringLiteral("miA"));
        ToolBand* const band = model.addBand(QStringLiteral("menu"), BandKind::PopUp);
        Tool* const ofFirst = band->append(first);
        Tool* const ofSecond = band->append(second);
        first->set(&ToolValues::enabled, false);
        QVERIFY(!second->values().enabled);
        QVERIFY(!ofFirst->values().enabled);
        QVERIFY(!ofSecond->values().enabled);
        second->set(&ToolValues::caption, QStringLiteral("the second's own"));
        QCOMPARE(ofSecond->values().caption, QStringLiteral("the second's own"));
        QCOMPARE(first->values().caption, QString());
        QCOMPARE(ofFirst->values().caption, QString());
    }

    void aCopyHasItsOwnUntilItsToolIsSetAgain()
    {
        ToolModel model;
        Tool* const tool = model.addTool(1, QStringLiteral("miA"));
        Tool* const copy = model.addBand(QStringLiteral("bar"), BandKind::Toolbar)->append(tool);
        tool->set(&ToolValues::kind, ToolKind::DropDown);
        copy->set(&ToolValues::kind, ToolKind::Plain);
        QCOMPARE(tool->values().kind, ToolKind::DropDown);
        tool->set(&ToolValues::checked, true);
        QCOMPARE(copy->values().kind, ToolKind::Plain);
        tool->set(&ToolValues::kind, ToolKind::DropDown); // as it was: the copy gets it all the same
        QCOMPARE(copy->values().kind, ToolKind::DropDown);
    }

    void picturesHaveVariants()
    {
        ToolModel model;
        Tool* const tool = model.addTool(1, QStringLiteral("#open"));
        Tool* const copy = model.addBand(QStringLiteral("bar"), BandKind::Toolbar)->append(tool);
        tool->setPicture(0, QStringLiteral("open"));
        tool->setPicture(2, QStringLiteral("open-off"));
        QCOMPARE(copy->picture(0), QStringLiteral("open"));
        QCOMPARE(copy->picture(1), QString());
        QCOMPARE(copy->picture(2), QStringLiteral("open-off"));
    }

    void clearedBandsLetGoOfTheirTools()
    {
        ToolModel model;
        Tool* const tool = model.addTool(1, QStringLiteral("miA"));
        ToolBand* const band = model.addBand(QStringLiteral("menu"), BandKind::PopUp);
        QSignalSpy changed(band, &ToolBand::changed);
        band->append(tool);
        band->append(7, QStringLiteral("own"));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(band->toolCount(), 2);
        QCOMPARE(band->tool(QStringLiteral("own"))->id(), 7);
        band->clear();
        QCOMPARE(changed.count(), 3);
        QCOMPARE(band->toolCount(), 0);
        tool->set(&ToolValues::checked, true); // nobody there any more
        QVERIFY(!band->append(nullptr));
        QCOMPARE(band->append(tool)->values().checked, true);
    }

    void aBandOfATakenNameBeginsAnew()
    {
        ToolModel model;
        ToolBand* const band = model.addBand(QStringLiteral("menu"), BandKind::PopUp);
        band->append(model.addTool(1, QStringLiteral("miA")));
        QCOMPARE(model.addBand(QStringLiteral("menu"), BandKind::Toolbar), band);
        QCOMPARE(band->toolCount(), 0);
        QCOMPARE(band->kind(), BandKind::Toolbar);
        QVERIFY(!model.band(QStringLiteral("Menu")));
    }
};

QTEST_GUILESS_MAIN(TestToolModel)
#include "tst_toolmodel.moc"
