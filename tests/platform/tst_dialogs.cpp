// Message boxes and questions on the (offscreen) screen, answered by keys and clicks, and the seam that
// answers them for a test.
#include "NextDialog.h"
#include "platform/Dialogs.h"

#include <QAccessible>
#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <memory>
#include <optional>
#include <vector>

using namespace quorvia::platform;

Q_DECLARE_METATYPE(quorvia::platform::BoxAnswer)
Q_DECLARE_METATYPE(quorvia::platform::BoxButtons)
Q_DECLARE_METATYPE(quorvia::platform::BoxKind)

namespace {

using NextBox = quorvia::test::NextDialog<QMessageBox>;
using NextQuestion = quorvia::test::NextDialog<QDialog>;

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
        QTest::newRow("ok, not cancel") << BoxButtons::OkCancel << int(QMessageBox::Ok) << BoxAnswer::Ok;
        QTest::newRow("cancel, not ok")
            << BoxButtons::OkCancel << int(QMessageBox::Cancel) << BoxAnswer::Cancel;
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
        QTest::newRow("ok, cancel") << BoxButtons::OkCancel << BoxAnswer::Cancel;
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
        QTest::newRow("ok, cancel") << BoxButtons::OkCancel << BoxAnswer::Ok;
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

    void linesStayAsTheyAreWritten()
    {
        const QString text =
            QStringLiteral("A first line.\nA second one, which is longer than the toolkit lets "
                           "a line be without folding it\nand a third one.");
        int lines = 0;
        NextBox next([&](QMessageBox& box) {
            auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            lines =
                qRound(double(label->heightForWidth(label->width())) / label->fontMetrics().lineSpacing());
            press(box, QMessageBox::Ok);
        });
        showMessage(nullptr, {BoxKind::Question, BoxButtons::Ok, QStringLiteral("Title"), text});
        QCOMPARE(lines, 3);
    }

    void kinds_data()
    {
        QTest::addColumn<BoxKind>("kind");
        QTest::addColumn<int>("icon");
        QTest::newRow("plain") << BoxKind::Plain << int(QMessageBox::NoIcon);
        QTest::newRow("information") << BoxKind::Information << int(QMessageBox::Information);
        QTest::newRow("question") << BoxKind::Question << int(QMessageBox::Question);
        QTest::newRow("critical") << BoxKind::Critical << int(QMessageBox::Critical);
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

    void fonts_data()
    {
        QTest::addColumn<QFont::Weight>("weight");
        QTest::addColumn<bool>("italic");
        QTest::newRow("plain") << QFont::Normal << false;
        QTest::newRow("bold") << QFont::Bold << false;
        QTest::newRow("italic") << QFont::Normal << true;
        QTest::newRow("both") << QFont::Bold << true;
    }
    /// Whatever names the family has for its styles.
    void fonts()
    {
        QFETCH(QFont::Weight, weight);
        QFETCH(bool, italic);
        QFont font(QStringLiteral("DejaVu Sans"), 17, weight, italic);
        font.setUnderline(true);
        QString title;
        quorvia::test::NextDialog<QDialog> accept([&](QDialog& dialog) {
            title = dialog.windowTitle();
            QTest::keyClick(dialog.findChild<QDialogButtonBox*>(QString(), Qt::FindDirectChildrenOnly)
                                ->button(QDialogButtonBox::Ok),
                            Qt::Key_Space);
        });
        const auto chosen = askFont(nullptr, {"Font", {font, Qt::red}});
        QVERIFY(accept.seen() && chosen);
        QCOMPARE(title, QStringLiteral("Font"));
        QCOMPARE(chosen->font.family(), QStringLiteral("DejaVu Sans"));
        QCOMPARE(chosen->font.pointSize(), 17);
        QCOMPARE(chosen->font.bold(), weight == QFont::Bold);
        QCOMPARE(chosen->font.italic(), italic);
        QVERIFY(chosen->font.underline() && !chosen->font.strikeOut());
        QVERIFY(chosen->font.styleName().isEmpty());
        QCOMPARE(chosen->color, QColor(Qt::red));
    }

    void aFontThatIsNotAccepted()
    {
        quorvia::test::NextDialog<QDialog> escape(
            [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(!askFont(nullptr, {"Font", {}}));
        // The same from within the list of families.
        quorvia::test::NextDialog<QDialog> within([](QDialog& dialog) {
            QWidget* const list = dialog.findChild<QListView*>();
            QTest::keyClick(list, Qt::Key_Escape);
        });
        QVERIFY(!askFont(nullptr, {"Font", {}}));
        QVERIFY(escape.seen() && within.seen());
    }

    void enterAcceptsAFont_data()
    {
        QTest::addColumn<QString>("where");
        QTest::newRow("the list of families") << QStringLiteral("QListView");
        QTest::newRow("the line of the size") << QStringLiteral("QLineEdit");
    }

    void enterAcceptsAFont()
    {
        QFETCH(QString, where);
        const QFont font(QStringLiteral("DejaVu Sans"), 17);
        quorvia::test::NextDialog<QDialog> next([&](QDialog& dialog) {
            QWidget* found = dialog.findChild<QListView*>();
            if (where == QLatin1String("QLineEdit")) {
                for (QLineEdit* const line : dialog.findChildren<QLineEdit*>()) {
                    if (line->text() == QLatin1String("17"))
                        found = line;
                }
            }
            const QByteArray kind = where.toLatin1();
            QVERIFY(found->inherits(kind.constData()));
            QTest::keyClick(found, Qt::Key_Return);
            const bool ended = !dialog.isVisible();
            if (!ended)
                dialog.reject(); // else the test would wait for ever
            QVERIFY(ended);
        });
        const auto chosen = askFont(nullptr, {"Font", {font, Qt::red}});
        QVERIFY(next.seen() && chosen);
        QCOMPARE(chosen->font.pointSize(), 17);
    }

    void theColourOfAFont()
    {
        quorvia::test::NextDialog<QDialog> next([](QDialog& dialog) {
            quorvia::test::NextDialog<QColorDialog> colors([](QColorDialog& picker) {
                picker.setCurrentColor(Qt::green);
                picker.accept();
            });
            dialog.findChild<QPushButton*>(QStringLiteral("Color"))->click();
            dialog.accept();
        });
        const auto chosen = askFont(nullptr, {"Font", {}});
        QVERIFY(next.seen() && chosen);
        QCOMPARE(chosen->color, QColor(Qt::green));
    }

    void colors()
    {
        QString title;
        quorvia::test::NextDialog<QColorDialog> accept([&](QColorDialog& picker) {
            title = picker.windowTitle();
            QCOMPARE(picker.currentColor(), QColor(1, 2, 3));
            picker.setCurrentColor(QColor(4, 5, 6));
            picker.accept();
        });
        QCOMPARE(askColor(nullptr, {"Ground", QColor(1, 2, 3)}), std::optional(QColor(4, 5, 6)));
        QCOMPARE(title, QStringLiteral("Ground"));
        quorvia::test::NextDialog<QColorDialog> escape(
            [](QColorDialog& picker) { QTest::keyClick(&picker, Qt::Key_Escape); });
        QCOMPARE(askColor(nullptr, {"Ground", Qt::red}), std::optional<QColor>());
        QVERIFY(accept.seen() && escape.seen());
    }

    void anAnswererOfColors()
    {
        const ColorAnswerer answerer(
            [](const ColorQuestion& question) { return std::optional(question.start.lighter()); });
        QCOMPARE(askColor(nullptr, {"Ground", QColor(40, 40, 40)}),
                 std::optional(QColor(40, 40, 40).lighter()));
    }

    void anAnswererOfFonts()
    {
        FontQuestion asked;
        const FontAnswerer answerer([&](const FontQuestion& question) {
            asked = question;
            return std::optional<ColoredFont>({QFont(), Qt::blue});
        });
        const auto chosen = askFont(nullptr, {"Font", {QFont(), Qt::red}});
        QCOMPARE(asked.start.color, QColor(Qt::red));
        QVERIFY(chosen && chosen->color == QColor(Qt::blue));
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

    void theLineIsAnswered_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("answer");
        QTest::newRow("as it stands") << "" << int(Qt::Key_Return) << "at first";
        QTest::newRow("typed over") << "new & <b>" << int(Qt::Key_Return) << "new & <b>";
        QTest::newRow("keypad") << "new" << int(Qt::Key_Enter) << "new";
        QTest::newRow("escape") << "new" << int(Qt::Key_Escape) << "";
    }
    void theLineIsAnswered()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        NextQuestion next([&](QDialog& dialog) {
            QTRY_VERIFY(dialog.focusWidget()); // it may come a moment later than the dialog
            QTest::keyClicks(dialog.focusWidget(), typed);
            QTest::keyClick(dialog.focusWidget(), Qt::Key(key));
        });
        QTEST(askText(nullptr, {.title = "Title", .text = "Name:", .answer = "at first"}), "answer");
        QVERIFY(next.seen());
    }

    void theButtonsOfAQuestion()
    {
        const auto click = [](QDialogButtonBox::StandardButton button) {
            return [button](QDialog& dialog) {
                QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
            };
        };
        NextQuestion ok(click(QDialogButtonBox::Ok));
        QCOMPARE(askText(nullptr, {.answer = "kept"}), QStringLiteral("kept"));
        NextQuestion cancel(click(QDialogButtonBox::Cancel));
        QCOMPARE(askText(nullptr, {.answer = "kept"}), QString());
        NextQuestion close([](QDialog& dialog) { dialog.close(); });
        QCOMPARE(askText(nullptr, {.answer = "kept"}), QString());
        QVERIFY(ok.seen() && cancel.seen() && close.seen());
    }

    void aQuestionIsShownLetterForLetter()
    {
        QWidget owner;
        owner.show();
        const QString text = QStringLiteral("<b>A&B</b> of /home/a");
        QStringList names;
        QString shown;
        Qt::TextFormat format = Qt::AutoText;
        bool owned = false;
        NextQuestion next([&](QDialog& dialog) {
            const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("Text"));
            const auto* const line = dialog.findChild<QLineEdit*>(QStringLiteral("Answer"));
            shown = label->text();
            format = label->textFormat();
            owned = dialog.isModal() && dialog.parentWidget() == &owner && !label->buddy();
            names << dialog.objectName() << dialog.windowTitle() << dialog.accessibleName()
                  << line->accessibleName() << line->selectedText();
            dialog.reject();
        });
        askText(&owner, {.title = "Rename <it>", .text = text, .answer = "a & b"});
        QVERIFY(next.seen() && owned);
        QCOMPARE(shown, text);
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(names, QStringList({"TextQuestion", "Rename <it>", "Rename <it>", text, "a & b"}));
        QVERIFY(owner.findChildren<QDialog*>().isEmpty());
    }

    void aQuestionSurvivesItsOwner()
    {
        auto owner = std::make_unique<QWidget>();
        owner->show();
        NextQuestion next([&owner](QDialog&) { owner.reset(); });
        QCOMPARE(askText(owner.get(), {.answer = "text"}), QString());
        QVERIFY(next.seen());
    }

    void theNewestAnswererAnswersTheQuestion()
    {
        QStringList asked;
        const TextQuestionAnswerer older([](const TextQuestion&) { return QStringLiteral("older"); });
        {
            const TextQuestionAnswerer newer([&asked](const TextQuestion& question) {
                asked << question.title << question.text << question.answer;
                return QStringLiteral("newer");
            });
            QCOMPARE(askText(nullptr, {.title = "a", .text = "b", .answer = "c"}), QStringLiteral("newer"));
        }
        QCOMPARE(asked, QStringList({"a", "b", "c"}));
        QCOMPARE(askText(nullptr, {}), QStringLiteral("older"));
    }
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
