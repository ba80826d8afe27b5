// What painted widgets tell screen readers.
#include "platform/PaneBar.h"
#include "platform/PaneParts.h"
#include "platform/SpokenWidget.h"

#include <QAccessibleActionInterface>
#include <QDialog>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::platform;

namespace {

/// A widget of a class that nobody knows.
class OwnWidget : public QWidget
{
};

/// Is a child of a widget; asks for its parent's interface at the end of both.
class LateAsker : public QObject
{
  public:
    LateAsker(QWidget* parent, bool& answered) : QObject(parent), m_answered(answered) {}
    ~LateAsker() override { m_answered = QAccessible::queryAccessibleInterface(parent()) != nullptr; }
    Q_DISABLE_COPY_MOVE(LateAsker)

  private:
    bool& m_answered;
};

/// Asks the interface `id` for all that a reader asks for, as the toolkit may when the focus leaves it; its
/// role.
QAccessible::Role askedForAll(QAccessible::Id id)
{
    QAccessibleInterface* const asked = QAccessible::accessibleInterface(id);
    if (!asked)
        return QAccessible::NoRole;
    asked->state();
    for (int index = 0; index < asked->childCount(); ++index)
        asked->indexOfChild(asked->child(index));
    QAccessibleActionInterface* const actions = asked->actionInterface();
    if (!actions)
        return QAccessible::NoRole;
    actions->actionNames();
    actions->doAction(QAccessibleActionInterface::pressAction());
    return asked->role();
}

} // namespace

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

    void whatADialogBlocksIsNotPressed()
    {
        PaneRow row(item(PaneItemKind::Link), {}, false);
        QDialog dialog;
        dialog.setModal(true);
        PaneRow within(item(PaneItemKind::Link), {}, false);
        within.setParent(&dialog);
        dialog.show();
        const QSignalSpy clicked(&row, &PaneRow::clicked);
        const QSignalSpy clickedWithin(&within, &PaneRow::clicked);
        for (PaneRow* const pressed : {&row, &within})
            actions(pressed)->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clickedWithin.size(), 1);
        QCOMPARE(clicked.size(), 0);
        QVERIFY(!actions(&row)->actionNames().contains(QAccessibleActionInterface::pressAction()));
        dialog.hide();
        actions(&row)->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clicked.size(), 1);
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

    void whatEndsTheEnablingBeforeTheTurnIsNotPressed()
    {
        PaneRow row(item(PaneItemKind::Link), {}, false);
        const QSignalSpy clicked(&row, &PaneRow::clicked);
        actions(&row)->doAction(QAccessibleActionInterface::pressAction());
        row.setEnabled(false);
        QCoreApplication::processEvents();
        QCOMPARE(clicked.size(), 0);
    }

    void mayBeAskedWhileItEnds_data()
    {
        QTest::addColumn<bool>("isHead");
        QTest::newRow("row") << false;
        QTest::newRow("head") << true;
    }

    void mayBeAskedWhileItEnds()
    {
        QFETCH(bool, isHead);
        QWidget window;
        QWidget* const part = isHead
                                  ? static_cast<QWidget*>(new PaneHead(QStringLiteral("Tips"), {}, &window))
                                  : new PaneRow(item(PaneItemKind::Link), {}, false);
        part->setParent(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        part->setFocus();
        QVERIFY(part->hasFocus());
        const QAccessible::Role role = access(part)->role();
        const QAccessible::Id id = QAccessible::uniqueId(access(part));
        QCOMPARE(askedForAll(id), role);
        QList<QAccessible::Role> asked;
        const QObject context;
        connect(qApp, &QApplication::focusChanged, &context, [&] { asked.append(askedForAll(id)); });
        delete part; // which gives up its focus when all of our own has ended
        QCOMPARE(asked.size(), 1);
        QVERIFY(asked.first() != role && asked.first() != QAccessible::NoRole);
    }

    void nothingIsMadeForWhatIsBeingDestroyed_data()
    {
        QTest::addColumn<bool>("isWindow");
        QTest::newRow("window") << true;
        QTest::newRow("within") << false;
    }

    void nothingIsMadeForWhatIsBeingDestroyed()
    {
        QFETCH(bool, isWindow);
        OwnWidget around;
        bool answered = true;
        auto* const own = new OwnWidget;
        if (!isWindow)
            own->setParent(&around);
        speakAs(own, QAccessible::Graphic);
        new LateAsker(own, answered);
        delete own;
        QVERIFY(!answered);
    }

    void plainWidgetsHaveTheRoleThatTheyAreGiven()
    {
        OwnWidget window;
        QCOMPARE(access(&window)->role(), QAccessible::Window);
        auto* const within = new OwnWidget;
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
