// Message boxes on the (offscreen) screen, answered by keys and clicks, and the seam that answers them for a
// test.
#include "platform/Dialogs.h"

#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

using namespace quorvia::platform;

Q_DECLARE_METATYPE(quorvia::platform::BoxAnswer)
Q_DECLARE_METATYPE(quorvia::platform::BoxButtons)
Q_DECLARE_METATYPE(quorvia::platform::BoxKind)

namespace {

/// Calls `act` with the next message box, as soon as it is on the screen.
class NextBox : public QObject
{
  public:
    explicit NextBox(std::function<void(QMessageBox&)> act) : m_act(std::move(act))
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            m_timer.stop();
            m_seen = true;
            m_act(*box);
        });
        m_timer.start(1);
    }
    bool seen() const { return m_seen; }

  private:
    std::function<void(QMessageBox&)> m_act;
    QTimer m_timer;
    bool m_seen = false;
};

void press(QMessageBox& box, QMessageBox::StandardButton button)
{
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void answers_data()
    {
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<int>("button");
        QTest::addColumn<BoxAnswer>("answer");
        QTest::newRow("ok") << BoxButtons::Ok << int(QMessageBox::Ok) << BoxAnswer::Ok;
        QTest::newRow("yes of two") << BoxButtons::YesNo << int(QMessageBox::Yes) << BoxAnswer::Yes;
        QTest::newRow("no of two") << BoxButtons::YesNo << int(QMessageBox::No) << BoxAnswer::No;
        QTest::newRow("yes of three") << BoxButtons::YesNoCancel << int(QMessageBox::Yes) << BoxAnswer::Yes;
        QTest::newRow("no of three") << BoxButtons::YesNoCancel << int(QMessageBox::No) << BoxAnswer::No;
        QTest::newRow("cancel") << BoxButtons::YesNoCancel << int(QMessageBox::Cancel) << BoxAnswer::Cancel;
    }
    void answers()
    {
        QFETCH(BoxButtons, buttons);
        QFETCH(int, button);
        NextBox next([button](QMessageBox& box) { press(box, QMessageBox::StandardButton(button)); });
        QTEST(showMessage(nullptr, {.buttons = buttons, .title = "Title", .text = "Text"}), "answer");
        QVERIFY(next.seen());
    }

    void closing_data()
    {
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<BoxAnswer>("answer");
        QTest::newRow("ok") << BoxButtons::Ok << BoxAnswer::Ok;
        QTest::newRow("yes, no") << BoxButtons::YesNo << BoxAnswer::No;
        QTest::newRow("yes, no, cancel") << BoxButtons::YesNoCancel << BoxAnswer::Cancel;
    }
    void closing()
    {
        QFETCH(BoxButtons, buttons);
        NextBox escape([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QTEST(showMessage(nullptr, {.buttons = buttons}), "answer");
        NextBox close([](QMessageBox& box) { box.close(); });
        QTEST(showMessage(nullptr, {.buttons = buttons}), "answer");
        QVERIFY(escape.seen() && close.seen());
    }

    void enterPressesTheFirstButton_data()
    {
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<BoxAnswer>("answer");
        QTest::newRow("ok") << BoxButtons::Ok << BoxAnswer::Ok;
        QTest::newRow("yes, no") << BoxButtons::YesNo << BoxAnswer::Yes;
        QTest::newRow("yes, no, cancel") << BoxButtons::YesNoCancel << BoxAnswer::Yes;
    }
    void enterPressesTheFirstButton()
    {
        QFETCH(BoxButtons, buttons);
        NextBox next([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QTEST(showMessage(nullptr, {.buttons = buttons}), "answer");
        QVERIFY(next.seen());
    }

    void lettersStandAsTheyAre()
    {
        const QString text = QStringLiteral("<b>/home/a&b/<i>.jpg</i>\n\nsecond line");
        QString shown;
        QString spoken;
        Qt::TextFormat format = Qt::AutoText;
        NextBox next([&](QMessageBox& box) {
            format = box.textFormat();
            shown = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->text();
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&box);
            spoken = accessible->text(QAccessible::Name) + u'|' + accessible->text(QAccessible::Description);
            press(box, QMessageBox::Ok);
        });
        showMessage(nullptr, {.title = "File <Error>", .text = text});
        QVERIFY(next.seen());
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(shown, text);
        QCOMPARE(spoken, QStringLiteral("File <Error>|") + text);
    }

    void kinds_data()
    {
        QTest::addColumn<BoxKind>("kind");
        QTest::addColumn<int>("icon");
        QTest::newRow("plain") << BoxKind::Plain << int(QMessageBox::NoIcon);
        QTest::newRow("information") << BoxKind::Information << int(QMessageBox::Information);
        QTest::newRow("question") << BoxKind::Question << int(QMessageBox::Question);
    }
    void kinds()
    {
        QFETCH(BoxKind, kind);
        int icon = -1;
        QString title;
        NextBox next([&](QMessageBox& box) {
            icon = box.icon();
            title = box.windowTitle();
            press(box, QMessageBox::Ok);
        });
        showMessage(nullptr, {.kind = kind, .title = "Fatial Error"});
        QTEST(icon, "icon");
        QCOMPARE(title, QStringLiteral("Fatial Error"));
    }

    void standsOverItsOwner()
    {
        QWidget owner;
        owner.show();
        bool modal = false;
        NextBox next([&](QMessageBox& box) {
            modal = box.isModal() && box.parentWidget() == &owner;
            press(box, QMessageBox::Ok);
        });
        showMessage(&owner, {});
        QVERIFY(modal);
        QVERIFY(owner.findChildren<QMessageBox*>().isEmpty());
    }

    void survivesItsOwner()
    {
        auto owner = std::make_unique<QWidget>();
        owner->show();
        NextBox next([&owner](QMessageBox&) { owner.reset(); });
        QCOMPARE(showMessage(owner.get(), {.buttons = BoxButtons::YesNo}), BoxAnswer::No);
        QVERIFY(next.seen());
    }

    void answererTakesTheScreensPlace()
    {
        std::vector<QString> asked;
        const MessageBoxAnswerer outer([&](const MessageBox& box) {
            asked.push_back(QStringLiteral("outer ") + box.text);
            return BoxAnswer::No;
        });
        {
            const MessageBoxAnswerer inner([&](const MessageBox& box) {
                asked.push_back(QStringLiteral("inner ") + box.title);
                return BoxAnswer::Yes;
            });
            QCOMPARE(showMessage(nullptr, {.title = "a"}), BoxAnswer::Yes);
        }
        QCOMPARE(showMessage(nullptr, {.text = "b"}), BoxAnswer::No);
        QCOMPARE(asked, (std::vector<QString>{"inner a", "outer b"}));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void answererMayEndInItsAnswer()
    {
        std::optional<MessageBoxAnswerer> answerer;
        answerer.emplace([&answerer](const MessageBox&) {
            answerer.reset();
            return BoxAnswer::Cancel;
        });
        QCOMPARE(showMessage(nullptr, {}), BoxAnswer::Cancel);
        NextBox next([](QMessageBox& box) { press(box, QMessageBox::Ok); });
        QCOMPARE(showMessage(nullptr, {}), BoxAnswer::Ok);
        QVERIFY(next.seen());
    }

    void theNewestAnswererChoosesTheFolder()
    {
        QStringList asked;
        const FolderBrowserAnswerer older([](const FolderBrowser&) { return QStringLiteral("/older"); });
        {
            const FolderBrowserAnswerer newer([&asked](const FolderBrowser& browser) {
                asked << browser.title << browser.start;
                return QStringLiteral("/newer");
            });
            QCOMPARE(browseForFolder(nullptr, {QStringLiteral("Title"), QStringLiteral("/usr")}),
                     QStringLiteral("/newer"));
        }
        QCOMPARE(asked, QStringList({"Title", "/usr"}));
        QCOMPARE(browseForFolder(nullptr, {}), QStringLiteral("/older"));
    }

    void aFolderIsChosenInTheDialog_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("chosen") << "accept"
                                << "/usr/share";
        QTest::newRow("cancelled") << "reject"
                                   << "";
    }

    void aFolderIsChosenInTheDialog()
    {
        QFETCH(QString, button);
        QTimer timer;
        QString title;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            timer.stop();
            title = dialog->windowTitle();
            QCOMPARE(dialog->directory().path(), QStringLiteral("/usr/share"));
            QMetaObject::invokeMethod(dialog, qPrintable(button), Qt::DirectConnection);
        });
        timer.start(1);
        QTEST(browseForFolder(nullptr, {QStringLiteral("Choose"), QStringLiteral("/usr/share")}), "chosen");
        QCOMPARE(title, QStringLiteral("Choose"));
    }

    void anOwnerThatGoesEndsTheFolderBrowser()
    {
        auto owner = std::make_unique<QWidget>();
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            if (QApplication::activeModalWidget()) {
                timer.stop();
                owner.reset();
            }
        });
        timer.start(1);
        QCOMPARE(browseForFolder(owner.get(), {QStringLiteral("Choose"), QStringLiteral("/usr")}), QString());
        QVERIFY(!owner);
    }
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
