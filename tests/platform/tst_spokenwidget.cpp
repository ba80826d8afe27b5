// What painted widgets tell screen readers.
#include "platform/PaneBar.h"
#include "platform/PaneParts.h"
#include "platform/SpokenWidget.h"

#include <QAccessibleActionInterface>
#include <QDialog>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::platform;

class TestSpokenWidget : public QObject
{
    Q_OBJECT

  private:
    static QAccessibleInterface* access(QObject* object)
    {
        return QAccessible::queryAccessibleInterface(object);
    }

    static QAccessibleActionInterface* actions(QObject* object) { return access(object)->actionInterface(); }

    static PaneItem item(PaneItemKind kind)
    {
        PaneItem made;
        made.key = QStringLiteral("row");
        made.text = QStringLiteral("  Open Image");
        made.kind = kind;
        return made;
    }

  private Q_SLOTS:
    void initTestCase() { announceWindows(); }

    void rowsSayWhatTheyAre_data()
    {
        QTest::addColumn<PaneItemKind>("kind");
        QTest::addColumn<QAccessible::Role>("role");
        QTest::addColumn<int>("clicks");
        QTest::newRow("link") << PaneItemKind::Link << QAccessible::Link << 1;
        QTest::newRow("text") << PaneItemKind::Text << QAccessible::StaticText << 0;
        QTest::newRow("header") << PaneItemKind::Header << QAccessible::StaticText << 0;
    }

    void rowsSayWhatTheyAre()
    {
        QFETCH(PaneItemKind, kind);
        QFETCH(QAccessible::Role, role);
        QFETCH(int, clicks);
        PaneRow row(item(kind), {}, false);
        QCOMPARE(access(&row)->role(), role);
        QCOMPARE(access(&row)->text(QAccessible::Name), QStringLiteral("Open Image"));
        const QSignalSpy clicked(&row, &PaneRow::clicked);
        actions(&row)->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicked.size(), 0); // behind the answer
        QCoreApplication::processEvents();
        QCOMPARE(clicked.size(), clicks);
        QCOMPARE(actions(&row)->actionNames().contains(QAccessibleActionInterface::pressAction()),
                 clicks == 1);
    }

    void aDisabledOneIsNotPressed()
    {
        PaneRow row(item(PaneItemKind::Link), {}, false);
        row.setEnabled(false);
        const QSignalSpy clicked(&row, &PaneRow::clicked);
        actions(&row)->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
        QCOMPARE(clicked.size(), 0);
        QVERIFY(!actions(&row)->actionNames().contains(QAccessibleActionInterface::pressAction()));
    }

    void aHeadIsAButtonThatFolds()
    {
        PaneHead head(QStringLiteral("Tips"), {}, nullptr);
        QCOMPARE(access(&head)->role(), QAccessible::Button);
        QVERIFY(access(&head)->state().collapsed);
        actions(&head)->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(head.isChecked());
        QVERIFY(access(&head)->state().expanded);
        QVERIFY(!access(&head)->state().collapsed);
    }

    void plainWidgetsHaveTheRoleThatTheyAreGiven()
    {
        QWidget window;
        QCOMPARE(access(&window)->role(), QAccessible::Window);
        auto* const within = new QWidget;
        QCOMPARE(access(within)->role(), QAccessible::Window);
        within->setParent(&window); // no longer
        QCOMPARE(access(within)->role(), QAccessible::Client);
        speakAs(within, QAccessible::ToolBar);
        QCOMPARE(access(within)->role(), QAccessible::ToolBar);
        QDialog dialog;
        QCOMPARE(access(&dialog)->role(), QAccessible::Dialog);
    }
};

QTEST_MAIN(TestSpokenWidget)
#include "tst_spokenwidget.moc"
