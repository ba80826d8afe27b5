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

/// While it lives, each event that tells of a focus is asked for all that a reader asks for.
class CuriousReader
{
  public:
    CuriousReader() : m_before(QAccessible::installUpdateHandler(ask))
    {
        roles().clear();
        QAccessible::setActive(true);
    }
    ~CuriousReader()
    {
        QAccessible::setActive(false);
        QAccessible::installUpdateHandler(m_before);
    }
    Q_DISABLE_COPY_MOVE(CuriousReader)

    /// What the ones with a focus event said that they are.
    static QList<QAccessible::Role>& roles()
    {
        static QList<QAccessible::Role> heard; // the toolkit's handler is a plain function
        return heard;
    }

  private:
    static void ask(QAccessibleEvent* event)
    {
        QAccessibleInterface* const asked =
            event->type() == QAccessible::Focus ? event->accessibleInterface() : nullptr;
        if (!asked)
            return;
        roles().append(asked->role());
        asked->state();
        for (int index = 0; index < asked->childCount(); ++index)
            asked->indexOfChild(asked->child(index));
        asked->actionInterface()->actionNames();
        asked->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    QAccessible::UpdateHandler m_before;
};

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
        const QAccessible::Role role = access(part)->role();
        const CuriousReader reader;
        delete part;
        QVERIFY(!CuriousReader::roles().isEmpty());
        QVERIFY(!CuriousReader::roles().contains(role)); // it was its own no longer
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
