// The preferences: how they look, what a screen reader has of them, and their keys.
#include "app/Colors.h"
#include "app/Settings.h"
#include "controls/gnTab.h"
#include "system/OptionsBench.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QWindow>

using namespace quorvia;
using controls::gnTab;
using test::OptionsBench;

namespace {

const QStringList pageNames = {QStringLiteral("fInterface"), QStringLiteral("fFullscreen"),
                               QStringLiteral("fJpeg"), QStringLiteral("fAdvanced")};
QStringList shownPages(const OptionsBench& bench)
{
    QStringList names;
    for (const QString& name : pageNames) {
        if (bench.part(qPrintable(name)).isVisible())
            names.append(name);
    }
    return names;
}

} // namespace

class TestOptionsLook : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<OptionsBench> m_bench;

    gnTab& gTab() const { return m_bench->part<gnTab>("gTab"); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<OptionsBench>(); }
    void cleanup() { m_bench.reset(); }

    // --- what it looks like

    void captionAndTabs()
    {
        const QDialog& window = m_bench->open();
        QCOMPARE(window.windowTitle(), QStringLiteral("Quorvia Preferences"));
        QVERIFY(window.isModal());
        QStringList tabs;
        for (int index = 1; index <= gTab().tabs().count(); ++index)
            tabs.append(gTab().tabs().at(index).Caption + u'|' + gTab().tabs().at(index).Key);
        QCOMPARE(tabs, QStringList({"General Settings|General", "Fullscreen Settings|Fullscreen",
                                    "JPEG Settings|JPEG", "Advanced|Advanced"}));
    }

    void eachTabShowsItsPageAlone_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("page");
        QTest::newRow("General") << "General"
                                 << "fInterface";
        QTest::newRow("Fullscreen") << "Fullscreen"
                                    << "fFullscreen";
        QTest::newRow("JPEG") << "JPEG"
                              << "fJpeg";
        QTest::newRow("Advanced") << "Advanced"
                                  << "fAdvanced";
    }

    void eachTabShowsItsPageAlone()
    {
        QFETCH(QString, key);
        QFETCH(QString, page);
        const QSize size = m_bench->show().size();
        QCOMPARE(shownPages(*m_bench), QStringList({"fInterface"}));
        gTab().SetSelectedTab(key);
        QCOMPARE(shownPages(*m_bench), QStringList({page}));
        QVERIFY(m_bench->window->findChild<QFrame*>(page));
        QCoreApplication::processEvents();
        QCOMPARE(m_bench->window->size(), size); // it does not jump
    }

    void texts_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("text");
        const auto add = [](const char* page, const char* control, const char* text) {
            QTest::newRow(control) << page << control << text;
        };
        add("fInterface", "cView", "Best Fit|Actual  Size");
        add("fInterface", "cmdColor", "Background Color");
        add("fInterface", "chkLoadFileAvail", "Load Image on Startup When Available");
        add("fInterface", "cLoad", "Load Previous Directory / Playlist on Startup");
        add("fInterface", "cLayout", "Load Previous Layout");
        add("fInterface", "cmdAssociate", "Make Quorvia Default Viewer");
        add("fInterface", "cmdAssociateOther", "Select 'Program' For Default Viewer...");
        add("fFullscreen", "cFView", "Actual Size|Best Fit|Stretch");
        add("fFullscreen", "cmdBackFullColor", "Background Color");
        add("fFullscreen", "chkBorder", "Enable Border");
        add("fFullscreen", "cFull", "Enable Full Screen on Startup");
        add("fFullscreen", "cSlide", "Enable Slide Show on Startup");
        add("fJpeg", "cboSample",
            "1:1:1 - None|2:1:1 - 2 to 1 Horizontal|4:1:1 - 2 to 1 Horizontal and Vertical|2:1:1 - 2 to 1 "
            "Vertical");
        add("fJpeg", "chkGray", "Off");
        add("fAdvanced", "chkDyn", "Show Dynamic Links?");
        add("fAdvanced", "chkBeta", "Enable Beta Features");
        add("fAdvanced", "cmdClearThumbs", "Clear Thumbnails");
        add("fAdvanced", "cmdPurge", "Purge Applicaion Registry Settings...");
        add("fAdvanced", "lThumbstats", "Current:");
        add("frmImageViewOptions", "Command2", "Accept");
        add("frmImageViewOptions", "Command1", "Cancel");
    }

    void texts()
    {
        QFETCH(QString, page);
        QFETCH(QString, control);
        QWidget& window = m_bench->open();
        QWidget* const within = page == window.objectName() ? &window : window.findChild<QWidget*>(page);
        QVERIFY(within);
        auto* const widget = within->findChild<QWidget*>(control);
        QVERIFY(widget);
        QStringList lines;
        if (auto* const list = qobject_cast<QComboBox*>(widget)) {
            for (int i = 0; i < list->count(); ++i)
                lines.append(list->itemText(i));
        } else {
            lines.append(widget->property("text").toString());
        }
        QTEST(lines.join(u'|'), "text");
    }

    void headingsAndNotes_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("text");
        QTest::newRow("view") << "fInterface"
                              << "Defualt View:";
        QTest::newRow("association") << "fInterface"
                                     << "Association";
        QTest::newRow("JPEG") << "fJpeg"
                              << "JPEG Settings (Save JPEG Settings)";
        QTest::newRow("luminance") << "fJpeg"
                                   << "Luminance Quality:";
        QTest::newRow("chrominance") << "fJpeg"
                                     << "Chrome Factor:";
        QTest::newRow("grey") << "fJpeg"
                              << "Grayscale:";
        QTest::newRow("hint")
            << "fJpeg"
            << "Lower Value = Better Quality, Less Compression  Higher Value = Less Quality, "
               "Better Compression";
        QTest::newRow("thumbnails") << "fAdvanced"
                                    << "Thumbnail Settings";
        QTest::newRow("beta") << "fAdvanced"
                              << "Some features are hidden while they are being tested. Check \"Enable Beta "
                                 "Features\" to unlock them.";
    }

    void headingsAndNotes()
    {
        QFETCH(QString, page);
        QFETCH(QString, text);
        m_bench->open();
        QStringList texts;
        for (const QLabel* label : m_bench->part(qPrintable(page)).findChildren<QLabel*>())
            texts.append(label->text());
        for (const QGroupBox* group : m_bench->part(qPrintable(page)).findChildren<QGroupBox*>())
            texts.append(group->title());
        QVERIFY2(texts.contains(text), qPrintable(texts.join(u'\n')));
    }

    void allTabsAreSeen()
    {
        m_bench->show();
        const controls::TabRecord last = gTab().tabs().at(gTab().tabs().count());
        QVERIFY(last.Left + last.Width <= gTab().width());
        QVERIFY(!m_bench->part("cmdScroll1").isVisible());
        QFont large = m_bench->window->font();
        large.setPointSizeF(large.pointSizeF() * 2);
        m_bench->window->setFont(large);
        QTRY_VERIFY(gTab().tabs().at(4).Left + gTab().tabs().at(4).Width <= gTab().width());
    }

    void theTabsFollowTheDesktopsColors()
    {
        m_bench->show();
        for (const auto& [page, ink] : {std::pair(Qt::black, Qt::white), {Qt::white, Qt::black}}) {
            QPalette palette;
            palette.setColor(QPalette::Window, page);
            palette.setColor(QPalette::WindowText, ink);
            m_bench->window->setPalette(palette);
            const auto number = [](const QColor& color) { return quint32(app::toColorNumber(color)); };
            QCOMPARE(gTab().ActiveTabBackColor(), number(page));
            QCOMPARE(gTab().ActiveTabTextColor(), number(ink));
            QCOMPARE(gTab().TabTextColor(), number(ink));
            QVERIFY(gTab().BackColor() != number(page));
            QVERIFY(gTab().BackColor() != number(ink));
        }
    }

    void sliders()
    {
        m_bench->open();
        for (const char* name : {"sLum", "sChrome"}) {
            const QScrollBar& slider = m_bench->part<QScrollBar>(name);
            QCOMPARE(slider.orientation(), Qt::Horizontal);
            QCOMPARE(slider.minimum(), 0);
            QCOMPARE(slider.maximum(), 255);
            QCOMPARE(slider.pageStep(), 5);
        }
    }

    void aScreenReaderHasANameForEveryControl()
    {
        m_bench->show();
        for (QWidget* const widget : m_bench->window->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith(u'q') ||
                widget->window() != m_bench->window.get())
                continue; // the toolkit's own
            QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(widget);
            QVERIFY(access);
            QVERIFY2(!access->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
        }
        const auto nameOf = [this](const char* name) { return m_bench->part(name).accessibleName(); };
        QCOMPARE(nameOf("sLum"), QStringLiteral("Luminance Quality"));
        QCOMPARE(nameOf("sChrome"), QStringLiteral("Chrome Factor"));
        QCOMPARE(nameOf("chkGray"), QStringLiteral("Grayscale"));
        QCOMPARE(nameOf("pBack"), QStringLiteral("Background Color"));
        QCOMPARE(m_bench->part("pBack").accessibleDescription(), QStringLiteral("#102030"));
    }

    // --- keys

    void enterAccepts_data()
    {
        QTest::addColumn<QString>("where");
        for (const char* name : {"gTab", "cView", "cLoad"})
            QTest::newRow(name) << name;
    }

    void enterAccepts()
    {
        QFETCH(QString, where);
        m_bench->show();
        QVERIFY(m_bench->part<QPushButton>("Command2").isDefault());
        m_bench->part(qPrintable(where)).setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(!m_bench->window->isVisible());
        QCOMPARE(m_bench->window->result(), int(QDialog::Accepted));
    }

    void theTabulatorGoesFromTopToBottom_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("way");
        QTest::newRow("General") << "General"
                                 << QStringList{"cView",   "cmdColor",     "chkLoadFileAvail",  "cLoad",
                                                "cLayout", "cmdAssociate", "cmdAssociateOther", "Command2",
                                                "Command1"};
        QTest::newRow("Fullscreen") << "Fullscreen"
                                    << QStringList{"cFView", "cmdBackFullColor", "chkBorder", "cFull",
                                                   "cSlide", "Command2",         "Command1"};
        QTest::newRow("JPEG") << "JPEG" << QStringList{"cboSample", "sLum",     "sChrome",
                                                       "chkGray",   "Command2", "Command1"};
        QTest::newRow("Advanced") << "Advanced" << QStringList{"chkDyn",   "chkBeta",  "cmdClearThumbs",
                                                               "cmdPurge", "Command2", "Command1"};
    }

    void theTabulatorGoesFromTopToBottom()
    {
        QFETCH(QString, key);
        m_bench->show();
        gTab().SetSelectedTab(key);
        gTab().setFocus();
        QWidget* const tabs = QApplication::focusWidget();
        QVERIFY(tabs);
        QStringList way;
        for (int i = 0; i < 20; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            if (QApplication::focusWidget() == tabs)
                break;
            way.append(QApplication::focusWidget()->objectName());
        }
        QTEST(way, "way");
    }

    void keysTurnThePages_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("page");
        const int ctrl = Qt::ControlModifier;
        const int shift = Qt::ShiftModifier;
        for (const char* where : {"gTab", "cView", "cLoad", "cmdColor"}) {
            const auto add = [where](const char* name, int key, int modifiers, const char* page) {
                QTest::addRow("%s, %s", where, name) << where << key << modifiers << page;
            };
            add("Ctrl+Tab", Qt::Key_Tab, ctrl, "fFullscreen");
            add("Ctrl+Shift+Tab", Qt::Key_Tab, ctrl | shift, "fAdvanced");
            add("Ctrl+Shift+Backtab", Qt::Key_Backtab, ctrl | shift, "fAdvanced");
            add("Ctrl+PageDown", Qt::Key_PageDown, ctrl, "fFullscreen");
            add("Ctrl+PageUp", Qt::Key_PageUp, ctrl, "fAdvanced");
        }
    }

    void keysTurnThePages()
    {
        QFETCH(QString, where);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, page);
        m_bench->show();
        m_bench->part(qPrintable(where)).setFocus();
        QTest::keyClick(m_bench->window->windowHandle(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(shownPages(*m_bench), QStringList{page});
    }

    void arrowsTurnThePagesOnTheTabs()
    {
        m_bench->show();
        gTab().setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QCOMPARE(shownPages(*m_bench), QStringList{"fFullscreen"});
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
        QCOMPARE(shownPages(*m_bench), QStringList{"fAdvanced"});
    }

    void keysMoveTheSlider()
    {
        m_bench->show();
        gTab().SetSelectedTab(QStringLiteral("JPEG"));
        QScrollBar& slider = m_bench->part<QScrollBar>("sLum");
        slider.setFocus();
        for (const auto& [key, shows] : {std::pair(Qt::Key_Right, "25"),
                                         {Qt::Key_PageUp, "30"},
                                         {Qt::Key_Left, "29"},
                                         {Qt::Key_PageDown, "24"},
                                         {Qt::Key_End, "255"},
                                         {Qt::Key_Home, "0"}}) {
            QTest::keyClick(&slider, key);
            QCOMPARE(m_bench->part<QLabel>("lLum").text(), QLatin1String(shows));
        }
        QCOMPARE(m_bench->part<QLabel>("lChrome").text(), QStringLiteral("20"));
    }

    void aDraggedSliderTellsItsNumber()
    {
        m_bench->open();
        auto& slider = m_bench->part<QScrollBar>("sChrome");
        slider.setTracking(false); // the scroll alone
        slider.setSliderDown(true);
        slider.setSliderPosition(123);
        QCOMPARE(m_bench->part<QLabel>("lChrome").text(), QStringLiteral("123"));
        m_bench->part<QPushButton>("Command2").click();
        QCOMPARE(slider.value(), 20);
        QCOMPARE(app::read(app::setting::JPEGChrome), 123); // the number that was told
        slider.setSliderDown(false);
    }
};

QTEST_MAIN(TestOptionsLook)
#include "tst_optionslook.moc"
