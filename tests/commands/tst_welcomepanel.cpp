// The welcome panel as a widget: its columns, what clicks and keys run, its sign, and its colours.
#include "app/Colors.h"
#include "commands/WelcomeLogo.h"
#include "commands/WelcomePanel.h"
#include "platform/Contrast.h"
#include "platform/PaneBar.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QChildEvent>
#include <QLabel>
#include <QPointer>
#include <QTest>

#include <memory>

using namespace quorvia;
using commands::WelcomePanel;

namespace {

/// Counts the panes that bars are given, and those among them that were painted at once.
class WatchOfPanes : public QObject
{
  public:
    WatchOfPanes() { QCoreApplication::instance()->installEventFilter(this); }

    int made = 0;
    int madeInSight = 0;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::ChildAdded || !watched->isWidgetType())
            return false;
        const auto* const column = static_cast<const QWidget*>(watched);
        const QWidget* const viewport = column->parentWidget();
        const auto* const bar = viewport ? qobject_cast<platform::PaneBar*>(viewport->parent()) : nullptr;
        const QObject* const child = static_cast<const QChildEvent*>(event)->child();
        if (bar && bar->widget() == column && child->objectName() != QLatin1String("logo")) {
            ++made;
            madeInSight += column->updatesEnabled() ? 1 : 0;
        }
        return false;
    }
};

} // namespace

class TestWelcomePanel : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<QWidget> m_window;
    QWidget* m_pane = nullptr;
    WelcomePanel* m_panel = nullptr;
    QStringList m_tools;

    template <class Part>
    Part* part(const char* name) const
    {
        return m_window->findChild<Part*>(QLatin1String(name));
    }
    QLabel* row(const char* key) const { return part<QLabel>(key); }
    QStringList taken()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_tools, {});
    }

  private Q_SLOTS:
    void init()
    {
        QCursor::setPos(0, 0); // far away
        m_window = std::make_unique<QWidget>();
        m_window->setFocusPolicy(Qt::StrongFocus);
        m_window->setAccessibleName(QStringLiteral("window"));
        m_window->setGeometry(100, 100, 1000, 700);
        m_pane = new QWidget(m_window.get());
        m_pane->setObjectName(QStringLiteral("pWelcome"));
        m_pane->setAutoFillBackground(true);
        m_pane->setGeometry(m_window->rect());
        m_panel = new WelcomePanel(m_pane,
                                   {.missingTools = {QStringLiteral("Tessary")},
                                    .imagesOpened = 3,
                                    .tips = {"a", "b", "c", "d", "e"}},
                                   [this](const QString& name) { m_tools.append(name); });
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_tools.clear();
    }

    void cleanup()
    {
        m_window.reset();
        QApplication::setPalette(QPalette());
    }

    void theColumnsFollowThePanel()
    {
        QCOMPARE(m_panel->vBar(), part<platform::PaneBar>("vBar"));
        QCOMPARE(m_panel->vBack(), part<platform::PaneBar>("vBack"));
        QCOMPARE(m_panel->vBar()->geometry(), QRect(0, 0, 400, 700));
        QCOMPARE(m_panel->vBack()->geometry(), QRect(400, 0, 600, 700));
        m_pane->resize(399, 500);
        QCOMPARE(m_panel->vBar()->geometry(), QRect(0, 0, 399, 500));
        QVERIFY(!m_panel->vBack()->isVisible());
        m_pane->resize(700, 500);
        QCOMPARE(m_panel->vBack()->geometry(), QRect(400, 0, 300, 500));
        QVERIFY(m_panel->vBack()->isVisible());
        for (const platform::PaneBar* bar : {m_panel->vBar(), m_panel->vBack()})
            QVERIFY(!bar->accessibleName().isEmpty());
    }

    void clicksRunCommands_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("command");
        const auto line = [](const char* key, const char* command) {
            QTest::newRow(key) << QString::fromLatin1(key) << QString::fromLatin1(command);
        };
        line("OPEN", "miOpen");
        line("HELP", "miHelp");
        line("DEVL2", "miHVXAWebsite");
        line("MEDIA", "miLindoraCenter");
        line("TE", "miWebTessary");
        line("TEMORE", "miWebTessary");
        line("OPENTIP", "");
        line("INFO4", "");
        line("TIP3", "");
    }

    void clicksRunCommands()
    {
        QFETCH(QString, key);
        QFETCH(QString, command);
        auto* const row = m_window->findChild<QLabel*>(key);
        QVERIFY(row);
        const QStringList expected = command.isEmpty() ? QStringList() : QStringList{command};
        QTest::mouseClick(row, Qt::LeftButton);
        QCOMPARE(taken(), expected);
        QTest::mouseClick(row, Qt::RightButton);
        QCOMPARE(taken(), QStringList());
        QTest::keyClick(row, Qt::Key_Return);
        QCOMPARE(taken(), expected);
    }

    /// The command may end the window, and the row with it.
    void commandsRunWhenTheClickIsOver()
    {
        QTest::mouseClick(row("OPEN"), Qt::LeftButton);
        QVERIFY(m_tools.isEmpty());
        QCOMPARE(taken(), QStringList{"miOpen"});
    }

    void tabReachesEveryCommand()
    {
        part<QAbstractButton>("WelcomeHead")->setFocus();
        QSet<QString> reached;
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(!QApplication::focusWidget()->accessibleName().isEmpty());
            reached.insert(QApplication::focusWidget()->objectName());
        }
        for (const char* key :
             {"OPEN", "Playlist", "WEBSITE", "HELP", "DEVL2", "MEDIA", "HVXAGALLEY", "TE", "TEMORE"})
            QVERIFY2(reached.contains(QLatin1String(key)), key);
        for (const char* key : {"OPENTIP", "INFO4", "TIP"})
            QVERIFY2(!reached.contains(QLatin1String(key)), key);
    }

    void theNumberOfImagesAloneChanges()
    {
        const QPointer<QLabel> before = row("INFO4");
        QCOMPARE(row("INFO4")->text(), QStringLiteral("3 total images have been viewed."));
        const QString tip = row("TIP")->text();
        m_panel->setImagesOpened(4);
        QCOMPARE(row("INFO4"), before.data());
        QCOMPARE(row("INFO4")->text(), QStringLiteral("4 total images have been viewed."));
        QCOMPARE(row("TIP")->text(), tip);
    }

    void theColumnsStayAwayDuringAResize()
    {
        m_panel->setUpdate(false);
        m_pane->resize(900, 600);
        QVERIFY(!m_panel->vBar()->isVisible());
        QVERIFY(!m_panel->vBack()->isVisible());
        m_panel->setUpdate(true);
        QVERIFY(m_panel->vBar()->isVisible());
        QCOMPARE(m_panel->vBack()->geometry(), QRect(400, 0, 500, 600));
        QVERIFY(m_panel->vBack()->isVisible());
        m_panel->setUpdate(false);
        m_pane->resize(300, 600);
        m_panel->setUpdate(true);
        QVERIFY(!m_panel->vBack()->isVisible()); // no room for it
    }

    void theKeysComeBackAfterAResize()
    {
        row("HELP")->setFocus();
        m_panel->setUpdate(false);
        QVERIFY(m_window->hasFocus());
        m_panel->setUpdate(false); // the next step of the drag
        m_panel->setUpdate(true);
        QVERIFY(row("HELP")->hasFocus());
        m_panel->setUpdate(false);
        QWidget other(m_window.get());
        other.show();
        other.setFocus(); // where the user went meanwhile
        m_panel->setUpdate(true);
        QVERIFY(other.hasFocus());
    }

    void logoCommands_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("command");
        QTest::newRow("left") << int(Qt::LeftButton) << 0 << "miLindoraCenter";
        QTest::newRow("right") << int(Qt::RightButton) << 0 << "";
        QTest::newRow("middle") << int(Qt::MiddleButton) << 0 << "";
        for (const int button : {int(Qt::LeftButton), int(Qt::RightButton), int(Qt::MiddleButton)}) {
            for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier})
                QTest::addRow("%d with %x", button, int(modifier)) << button << int(modifier) << "miOpen";
        }
        QTest::newRow("a key of the number pad")
            << int(Qt::LeftButton) << int(Qt::KeypadModifier) << "miLindoraCenter";
    }

    void logoCommands()
    {
        QFETCH(int, button);
        QFETCH(int, modifiers);
        QFETCH(QString, command);
        auto* const logo = part<commands::WelcomeLogo>("logo");
        QTRY_VERIFY(logo->isVisible() && logo->width() > 50);
        QTest::mouseClick(logo, Qt::MouseButton(button), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(taken(), command.isEmpty() ? QStringList() : QStringList{command});
        QTest::mousePress(logo, Qt::MouseButton(button), Qt::KeyboardModifiers(modifiers));
        QTest::mouseRelease(logo, Qt::MouseButton(button), Qt::KeyboardModifiers(modifiers), QPoint(-9, -9));
        QCOMPARE(taken(), QStringList());
    }

    void readersAreToldOfALink()
    {
        auto* const logo = part<commands::WelcomeLogo>("logo");
        QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(logo);
        QCOMPARE(access->role(), QAccessible::Link);
        QVERIFY(!access->text(QAccessible::Name).isEmpty());
        access->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(taken(), QStringList()); // behind the answer
        QCoreApplication::processEvents();
        QCOMPARE(taken(), QStringList{QStringLiteral("miLindoraCenter")});
    }

    void aDoubleClickOnTheLogoIsOne()
    {
        auto* const logo = part<commands::WelcomeLogo>("logo");
        QTRY_VERIFY(logo->isVisible() && logo->width() > 50);
        QTest::mouseClick(logo, Qt::LeftButton);
        const QPointF at(3, 3);
        QMouseEvent second(QEvent::MouseButtonDblClick, at, logo->mapToGlobal(at), Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(logo, &second);
        QTest::mouseRelease(logo, Qt::LeftButton);
        QCOMPARE(taken(), QStringList{QStringLiteral("miLindoraCenter")});
    }

    void theLogoStandsAtTheLowerRight()
    {
        auto* const logo = part<commands::WelcomeLogo>("logo");
        QTRY_VERIFY(logo->mapTo(m_pane, QPoint()).x() > 700 && logo->mapTo(m_pane, QPoint()).y() > 550);
        QVERIFY(!logo->accessibleName().isEmpty());
        m_pane->resize(480, 700); // narrower than the logo: the rows must not be cut off for it
        QTRY_VERIFY(row("MEDIA")->mapTo(m_pane, QPoint(row("MEDIA")->width(), 0)).x() <= 480);
    }

    void nothingIsPaintedWhileItIsBuilt()
    {
        QWidget pane;
        pane.show();
        const WatchOfPanes watch;
        const WelcomePanel panel(&pane, {.missingTools = {QStringLiteral("Tessary")}, .tips = {"a"}},
                                 [](const QString&) {});
        QCOMPARE(watch.made, 2 + 3);
        QCOMPARE(watch.madeInSight, 0);
        QVERIFY(panel.vBar()->updatesEnabled());
        QVERIFY(panel.vBack()->updatesEnabled());
    }

    void theHeadsHaveTheirOwnColour_data()
    {
        QTest::addColumn<QString>("head");
        for (const char* head :
             {"WelcomeHead", "InformationHead", "ResourceHead", "SoftwareHead", "TIPSHead"})
            QTest::newRow(head) << QString::fromLatin1(head);
    }

    void theHeadsHaveTheirOwnColour()
    {
        QFETCH(QString, head);
        auto* const button = part<QAbstractButton>(qPrintable(head));
        QVERIFY(button);
        const QImage image = button->grab().toImage();
        QCOMPARE(image.pixelColor(2, 2), QColor(0, 85, 170)); // red in the lowest byte of its number
        bool white = false;
        for (int x = 0; x < image.width(); ++x)
            white = white || image.pixelColor(x, image.height() / 2) == QColor(Qt::white);
        QVERIFY(white);
    }

    void allCanBeReadOnTheDesktopsColours_data()
    {
        QTest::addColumn<QColor>("base");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("grey") << QColor(239, 240, 241) << QColor(35, 38, 41);
        QTest::newRow("dark") << QColor(30, 32, 34) << QColor(240, 240, 240);
        QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
    }

    /// They may change while the panel shows.
    void allCanBeReadOnTheDesktopsColours()
    {
        QFETCH(QColor, base);
        QFETCH(QColor, text);
        QPalette desktop;
        desktop.setColor(QPalette::Base, base);
        desktop.setColor(QPalette::Text, text);
        QApplication::setPalette(desktop);
        QTRY_COMPARE(m_pane->grab().toImage().pixelColor(2, 690), base);
        QTRY_VERIFY(row("OPEN")->isVisible() && row("TIP2")->isVisible());
        for (const char* key : {"OPEN", "OPENTIP", "INFO", "TE", "TIP2"}) {
            const QColor ink = row(key)->palette().color(QPalette::WindowText);
            QVERIFY2(platform::contrast(base, ink) >= 4.5, key);
        }
    }
};

QTEST_MAIN(TestWelcomePanel)
#include "tst_welcomepanel.moc"
