// The column of panes: folding, rows, keys, and what stays over a change of its panes.
#include "platform/Contrast.h"
#include "platform/PaneBar.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace quorvia::platform;

namespace {

QList<Pane> twoPanes(const QString& text = QStringLiteral("some facts"))
{
    return {{.key = QStringLiteral("one"),
             .title = QStringLiteral(" First"),
             .items = {{.key = QStringLiteral("a"),
                        .text = QStringLiteral("A link"),
                        .tag = QStringLiteral("go")},
                       {.key = QStringLiteral("b"), .text = QStringLiteral("Another")}}},
            {.key = QStringLiteral("two"),
             .title = QStringLiteral("Second:"),
             .items = {{.key = QStringLiteral("c"), .text = text, .kind = PaneItemKind::Text}}}};
}

/// Pixels from the left edge of `part` to the last one of its text.
int drawnWidth(QWidget* part)
{
    constexpr int sign = 30; // a head's, at its right end
    const QImage picture = part->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const int middle = picture.height() / 2;
    for (int x = picture.width() - sign; x > 0; --x) {
        for (int y = middle - 3; y <= middle + 3; ++y) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return x;
        }
    }
    return 0;
}

} // namespace

class TestPaneBar : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<QWidget> m_window;
    PaneBar* m_bar = nullptr;

    QAbstractButton* head(const char* key) const
    {
        return m_bar->findChild<QAbstractButton*>(QLatin1String(key) + QStringLiteral("Head"));
    }
    QLabel* row(const char* key) const { return m_bar->findChild<QLabel*>(QLatin1String(key)); }

  private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        QCursor::setPos(0, 0); // far away
        m_window->setGeometry(150, 150, 200, 400);
        m_bar = new PaneBar(m_window.get());
        m_bar->resize(200, 400);
        m_bar->setPanes(twoPanes());
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup() { m_window.reset(); }

    void panesStandBelowEachOther()
    {
        const auto top = [this](const QWidget* part) { return part->mapTo(m_bar, QPoint()).y(); };
        QVERIFY(top(head("one")) < top(row("a")));
        QVERIFY(top(row("a")) < top(row("b")));
        QVERIFY(top(row("b")) < top(head("two")));
        QVERIFY(top(head("two")) < top(row("c")));
        QCOMPARE(row("c")->text(), QStringLiteral("some facts"));
        QCOMPARE(head("one")->accessibleName(), QStringLiteral("First"));
        QCOMPARE(row("a")->accessibleName(), QStringLiteral("A link"));
    }

    void aClickOnAHeadFoldsItsPane()
    {
        QTest::mouseClick(head("one"), Qt::LeftButton);
        QVERIFY(m_bar->isFolded(QStringLiteral("one")));
        QVERIFY(!row("a")->isVisible());
        QVERIFY(row("c")->isVisible());
        QTest::mouseClick(head("one"), Qt::LeftButton);
        QVERIFY(!m_bar->isFolded(QStringLiteral("one")));
        QVERIFY(row("a")->isVisible());
    }

    void keysFoldAPaneAndChooseARow_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Space") << int(Qt::Key_Space);
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
    }

    void keysFoldAPaneAndChooseARow()
    {
        QFETCH(int, key);
        QSignalSpy clicked(m_bar, &PaneBar::itemClicked);
        QTest::keyClick(head("one"), Qt::Key(key));
        QVERIFY(m_bar->isFolded(QStringLiteral("one")));
        QTest::keyClick(head("one"), Qt::Key(key), Qt::AltModifier);
        QVERIFY(m_bar->isFolded(QStringLiteral("one")));
        QTest::keyClick(row("a"), Qt::Key(key));
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked.at(0), QVariantList({QStringLiteral("a"), QStringLiteral("go")}));
        QTest::keyClick(row("c"), Qt::Key(key)); // a text cannot be chosen by keys
        QCOMPARE(clicked.count(), 1);
    }

    /// The repeats would run what the key means to the window.
    void aHeldKeyChoosesOnceAndStaysHere()
    {
        QSignalSpy clicked(m_bar, &PaneBar::itemClicked);
        for (QWidget* part : {static_cast<QWidget*>(head("one")), static_cast<QWidget*>(row("a"))}) {
            for (const bool repeated : {false, true, true}) {
                QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), repeated);
                QCoreApplication::sendEvent(part, &event);
                QVERIFY(event.isAccepted());
            }
        }
        QVERIFY(m_bar->isFolded(QStringLiteral("one")));
        QCOMPARE(clicked.count(), 1);
    }

    void aHeldKeyWhoseRepeatsAreNotNamed()
    {
        QSignalSpy clicked(m_bar, &PaneBar::itemClicked);
        for (QWidget* part : {static_cast<QWidget*>(head("one")), static_cast<QWidget*>(row("a"))}) {
            for (const ulong time : {1000, 1660, 1700}) {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                press.setTimestamp(time);
                QCoreApplication::sendEvent(part, &press);
                QKeyEvent release(QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier);
                release.setTimestamp(time == 1000 ? 1660 : time);
                QCoreApplication::sendEvent(part, &release);
            }
        }
        QVERIFY(m_bar->isFolded(QStringLiteral("one")));
        QCOMPARE(clicked.count(), 1);
    }

    void aDoubleClickChoosesOnce()
    {
        QSignalSpy clicked(m_bar, &PaneBar::itemClicked);
        QTest::mouseClick(row("c"), Qt::LeftButton);
        const QPointF at(3, 3);
        QMouseEvent second(QEvent::MouseButtonDblClick, at, row("c")->mapToGlobal(at), Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(row("c"), &second);
        QTest::mouseRelease(row("c"), Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }

    void rowsAreClickedOnRelease()
    {
        QSignalSpy clicked(m_bar, &PaneBar::itemClicked);
        QTest::mousePress(row("c"), Qt::LeftButton);
        QCOMPARE(clicked.count(), 0);
        QTest::mouseRelease(row("c"), Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
        QTest::mousePress(row("a"), Qt::LeftButton);
        QTest::mouseRelease(row("a"), Qt::LeftButton, {}, QPoint(-5, -5));
        QTest::mouseClick(row("a"), Qt::RightButton);
        QCOMPARE(clicked.count(), 1);
    }

    void tabLeadsToHeadsAndLinks()
    {
        head("one")->setFocus();
        for (QWidget* next : {static_cast<QWidget*>(row("a")), static_cast<QWidget*>(row("b")),
                              static_cast<QWidget*>(head("two"))}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), next);
        }
        QTest::mouseClick(row("a"), Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), head("two")); // a click leaves the keys where they are
    }

    void theFocusIsSeen_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("on a head") << "oneHead";
        QTest::newRow("on a link") << "a";
    }

    void theFocusIsSeen()
    {
        QFETCH(QString, name);
        auto* const part = m_bar->findChild<QWidget*>(name);
        head("two")->setFocus();
        const auto edge = [part] {
            const QImage picture = part->grab().toImage();
            return picture.copy(0, 0, picture.width(), 3);
        };
        const QImage without = edge();
        part->setFocus();
        QVERIFY(edge() != without);
    }

    void otherTextsKeepTheRows()
    {
        const QPointer<QLabel> before = row("c");
        m_bar->setPanes(twoPanes(QStringLiteral("other facts")));
        QCOMPARE(row("c"), before.data());
        QCOMPARE(row("c")->text(), QStringLiteral("other facts"));
        QCOMPARE(row("c")->accessibleName(), QStringLiteral("other facts"));
    }

    void otherPanesKeepFoldsAndFocus()
    {
        head("two")->click();
        head("one")->setFocus();
        QList<Pane> panes = twoPanes();
        panes.prepend({.key = QStringLiteral("zero"), .title = QStringLiteral("Zeroth"), .items = {}});
        m_bar->setPanes(panes);
        QCOMPARE(m_bar->findChildren<QAbstractButton*>().size(), 3);
        QVERIFY(!row("c")->isVisible());
        QVERIFY(head("one")->hasFocus());
        m_bar->setPanes({panes.at(0), panes.at(2)});
        QVERIFY(head("zero")->hasFocus()); // what had it has gone
        QVERIFY(!row("a"));
        m_bar->setPanes(twoPanes());
        QVERIFY(m_bar->isFolded(QStringLiteral("two")));
        QVERIFY(!m_bar->isFolded(QStringLiteral("one")));
    }

    void aFoldIsKeptWhileItsPaneIsGone()
    {
        head("two")->click();
        m_bar->setPanes({});
        QVERIFY(!head("two"));
        QVERIFY(m_bar->isFolded(QStringLiteral("two")));
        m_bar->setPanes(twoPanes());
        QVERIFY(!head("two")->isChecked());
        QTRY_VERIFY(row("a")->isVisible());
        QVERIFY(!row("c")->isVisible());
        head("two")->click();
        QVERIFY(row("c")->isVisible());
        m_bar->setPanes({});
        QVERIFY(!m_bar->isFolded(QStringLiteral("two")));
        m_bar->setPanes(twoPanes());
        QTRY_VERIFY(row("c")->isVisible());
    }

    void aRowMayChangeThePanesInItsClick()
    {
        connect(m_bar, &PaneBar::itemClicked, m_bar, [this] { m_bar->setPanes({}); });
        QTest::mouseClick(row("a"), Qt::LeftButton);
        QVERIFY(m_bar->panes().isEmpty());
        QVERIFY(!row("a"));
    }

    void aLongTextWrapsAndALongColumnScrolls()
    {
        const int one = row("c")->height();
        m_bar->setPanes(twoPanes(QString(QStringLiteral("many words ")).repeated(20)));
        QTRY_VERIFY(row("c")->height() > 2 * one);
        QVERIFY(row("c")->width() <= m_bar->width());
        m_bar->setPanes(twoPanes(QString(QStringLiteral("many words ")).repeated(500)));
        QTRY_VERIFY(m_bar->verticalScrollBar()->isVisible());
        QTest::keyClick(m_bar, Qt::Key_PageDown);
        QCOMPARE(m_bar->verticalScrollBar()->value(), 0);
    }

    void readsLettersForLetters_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("misread"); // what would be drawn of it
        QTest::newRow("& in a head") << "oneHead"
                                     << "R&D"
                                     << "RD";
        QTest::newRow("& in a link") << "a"
                                     << "R&D"
                                     << "RD";
        QTest::newRow("& in a text") << "c"
                                     << "R&D"
                                     << "RD";
        QTest::newRow("a tag in a head") << "oneHead"
                                         << "<i>x</i>"
                                         << "x";
        QTest::newRow("a tag in a link") << "a"
                                         << "<i>x</i>"
                                         << "x";
        QTest::newRow("a tag in a text") << "c"
                                         << "<i>x</i>"
                                         << "x";
    }

    void readsLettersForLetters()
    {
        QFETCH(QString, part);
        QFETCH(QString, text);
        QFETCH(QString, misread);
        const auto drawn = [&](const QString& words) {
            QList<Pane> panes = twoPanes(words);
            panes[0].title = words;
            panes[0].items[0].text = words;
            m_bar->setPanes(panes);
            return drawnWidth(m_bar->findChild<QWidget*>(part));
        };
        const int letter = m_bar->fontMetrics().horizontalAdvance(u'&');
        QVERIFY(drawn(misread) > 0);
        QVERIFY(drawn(text) > drawn(misread) + letter / 2);
    }

    void oneTextAloneCanChange()
    {
        const QPointer<QLabel> before = row("c");
        m_bar->setItemText(QStringLiteral("c"), QStringLiteral("more"));
        m_bar->setItemText(QStringLiteral("none"), QStringLiteral("of this"));
        QCOMPARE(row("c"), before.data());
        QCOMPARE(row("c")->text(), QStringLiteral("more"));
        QCOMPARE(m_bar->panes(), twoPanes(QStringLiteral("more")));
    }

    /// All lines of a text are set in as far as its leading blanks reach.
    void leadingBlanksSetATextIn()
    {
        QCOMPARE(row("c")->contentsMargins().left(), row("a")->contentsMargins().left());
        m_bar->setPanes(twoPanes(QStringLiteral("     far in")));
        QCOMPARE(row("c")->text(), QStringLiteral("far in"));
        QCOMPARE(row("c")->accessibleName(), QStringLiteral("far in"));
        const int blanks = 5 * row("c")->fontMetrics().horizontalAdvance(u' ');
        QCOMPARE(row("c")->contentsMargins().left(), blanks);
        QVERIFY(blanks > row("a")->contentsMargins().left());
    }

    void textsOfAPaneStandBesideItsIcons()
    {
        QList<Pane> panes = twoPanes();
        const int without = row("a")->contentsMargins().left();
        panes[0].items[0].icon = QStringLiteral("open");
        m_bar->setPanes(panes);
        QVERIFY(row("a")->contentsMargins().left() >= without + 24);
        QCOMPARE(row("b")->contentsMargins().left(), row("a")->contentsMargins().left());
        QCOMPARE(row("c")->contentsMargins().left(), without); // another pane
        const auto leftOfText = [this](const char* key) {
            const QImage picture = row(key)->grab().toImage();
            const int width = int(row("a")->contentsMargins().left() * picture.devicePixelRatio());
            return picture.copy(0, 0, width, picture.height());
        };
        const auto isPlain = [](const QImage& part) {
            QImage plain = part;
            plain.fill(part.pixelColor(0, 0));
            return part == plain;
        };
        QVERIFY(!isPlain(leftOfText("a")));
        QVERIFY(isPlain(leftOfText("b")));
    }

    void aBarCanHaveColoursOfItsOwn()
    {
        const PaneLook look{.headGround = QColor(0, 85, 170),
                            .headText = Qt::white,
                            .link = Qt::darkGreen,
                            .text = Qt::darkRed};
        m_bar->setLook(look);
        const QImage picture = head("one")->grab().toImage();
        QCOMPARE(picture.pixelColor(1, 1), look.headGround);
        QSet<QRgb> seen;
        for (int x = 0; x < picture.width(); ++x)
            seen.insert(picture.pixel(x, picture.height() / 2));
        QVERIFY(seen.contains(QColor(Qt::white).rgb()));
        QCOMPARE(row("a")->palette().color(QPalette::WindowText), look.link);
        QCOMPARE(row("c")->palette().color(QPalette::WindowText), look.text);
    }

    void theFooterStandsBelowAllPanes()
    {
        auto* const footer = new QLabel(QStringLiteral("the end"));
        m_bar->setFooter(footer);
        QTRY_VERIFY(footer->isVisible() && footer->y() > 300); // at the bottom of 400 pixels
        QCOMPARE(footer->geometry().right(), footer->parentWidget()->width() - 1 - 6);
        m_bar->setPanes(twoPanes(QString(QStringLiteral("many words ")).repeated(500)));
        QTRY_VERIFY(footer->y() > 400);
        m_bar->setPanes({twoPanes().at(0)}); // made anew
        QTRY_VERIFY(footer->y() > 300 && footer->y() < 400);
    }

    /// Beside the rows a right click is for whatever the bar stands on; on a row it is for nobody.
    void aRightClickBesideTheRowsGoesOn_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<bool>("goesOn");
        QTest::newRow("link") << "a" << false;
        QTest::newRow("text") << "c" << false;
        QTest::newRow("head") << "oneHead" << true;
        QTest::newRow("free ground") << "" << true;
    }

    void aRightClickBesideTheRowsGoesOn()
    {
        QFETCH(QString, part);
        struct : QObject
        {
            bool eventFilter(QObject*, QEvent* event) override
            {
                releases += event->type() == QEvent::MouseButtonRelease;
                return false;
            }
            int releases = 0;
        } below;
        m_window->installEventFilter(&below);
        if (part.isEmpty())
            QTest::mouseClick(m_bar->widget(), Qt::RightButton, {}, QPoint(100, 390));
        else
            QTest::mouseClick(m_bar->findChild<QWidget*>(part), Qt::RightButton);
        QTEST(below.releases > 0, "goesOn");
    }

    void theHeadsStandOutFromTheGround()
    {
        QPalette colors;
        colors.setColor(QPalette::Window, QColor(0, 121, 191));
        colors.setColor(QPalette::WindowText, Qt::white);
        m_window->setPalette(colors);
        const QImage picture = m_window->grab().toImage();
        const double ratio = m_window->devicePixelRatioF();
        const QPoint inHead = head("one")->mapTo(m_window.get(), QPoint(2, 2)) * ratio;
        QCOMPARE(picture.pixelColor(inHead), tint(colors, 0.14));
        QCOMPARE(picture.pixelColor(QPoint(1, 1)), QColor(0, 121, 191));
        QCOMPARE(row("c")->palette().color(QPalette::WindowText), QColor(Qt::white));
    }
};

QTEST_MAIN(TestPaneBar)
#include "tst_panebar.moc"
