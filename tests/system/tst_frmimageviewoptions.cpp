// The preferences: what they read and write, and what their buttons do.
#include "app/Colors.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "support/FileContent.h"
#include "system/OptionRows.h"
#include "system/OptionsBench.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

using namespace quorvia;
using platform::BoxAnswer;
using system::OptionRow;
using test::OptionsBench;

namespace {

const QString section = QStringLiteral("Settings");

bool store(const QString& key, const QVariant& value)
{
    return app::SaveAppSetting(section, key, value);
}

QString stored(const QString& key)
{
    return app::GetAppSetting(section, key, QStringLiteral("absent")).toString();
}

/// What the control of an option shows, as text; the slider beside its number.
QString shown(const OptionsBench& bench, const QString& name)
{
    auto* const control = bench.window->findChild<QWidget*>(name);
    if (auto* const list = qobject_cast<QComboBox*>(control))
        return QString::number(list->currentIndex());
    if (auto* const check = qobject_cast<QCheckBox*>(control))
        return QString::number(int(check->isChecked()));
    if (auto* const label = qobject_cast<QLabel*>(control))
        return label->text() + u'/' +
               QString::number(static_cast<const QScrollBar*>(label->buddy())->value());
    return control ? app::paneColor(control).name() : QStringLiteral("missing");
}

} // namespace

class TestFrmImageViewOptions : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<OptionsBench> m_bench;

    QPushButton& button(const char* name) const { return m_bench->part<QPushButton>(name); }
    void click(const char* name) const { button(name).click(); }
    QString statistics() const { return m_bench->part<QLabel>("lThumbstats").text(); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<OptionsBench>(); }
    void cleanup() { m_bench.reset(); }

    // --- reading

    void reads_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("shows");
        const auto add = [](const char* key, const QVariant& value, const char* control, const char* shows) {
            QTest::addRow("%s: %s", key, value.isNull() ? "absent" : qPrintable(value.toString()))
                << key << value << control << shows;
        };
        const QVariant absent;
        add("cView", absent, "cView", "0");
        add("cView", 1, "cView", "1");
        add("cView", 2, "cView", "0");
        add("cView", -1, "cView", "0");
        add("cView", "1", "cView", "1");
        add("cView", "so", "cView", "0");
        add("MainBackColor", absent, "pBack", "#102030");
        add("MainBackColor", 255, "pBack", "#102030"); // the viewport's own, whatever is stored
        add("imgAutoLoad", absent, "chkLoadFileAvail", "1");
        add("imgAutoLoad", 0, "chkLoadFileAvail", "0");
        add("imgAutoLoad", "0", "chkLoadFileAvail", "0");
        add("imgAutoLoad", "so", "chkLoadFileAvail", "1"); // no number: as designed
        add("imgAutoLoad", 7, "chkLoadFileAvail", "1");
        add("imgAutoLoad", 70'000, "chkLoadFileAvail", "1");
        add("cLoad", absent, "cLoad", "1");
        add("cLoad", 0, "cLoad", "0");
        add("cLoad", "", "cLoad", "1");
        add("cLoad", "so", "cLoad", "1");
        add("cLayout", absent, "cLayout", "1");
        add("cLayout", 0, "cLayout", "0");
        add("cFView", absent, "cFView", "0");
        add("cFView", 2, "cFView", "2");
        add("cFView", 3, "cFView", "0");
        add("FullBackColor", absent, "pFullBack", "#000000");
        add("FullBackColor", 0x0040ff, "pFullBack", "#ff4000");
        add("cBorder", absent, "chkBorder", "1");
        add("cBorder", 0, "chkBorder", "0");
        add("cFull", absent, "cFull", "0");
        add("cFull", 1, "cFull", "1");
        add("cSlide", absent, "cSlide", "0");
        add("cSlide", 1, "cSlide", "1");
        add("JPEGSampling", absent, "cboSample", "1");
        add("JPEGSampling", 3, "cboSample", "3");
        add("JPEGSampling", 4, "cboSample", "1");
        add("JPEGSampling", "2 and more", "cboSample", "1");
        add("JPEGLum", absent, "lLum", "24/24");
        add("JPEGLum", 0, "lLum", "0/0");
        add("JPEGLum", 255, "lLum", "255/255");
        add("JPEGLum", 256, "lLum", "255/255");
        add("JPEGLum", -5, "lLum", "0/0");
        add("JPEGLum", 32'768, "lLum", "24/24");
        add("JPEGLum", " 80 ", "lLum", "80/80");
        add("JPEGLum", "80%", "lLum", "24/24");
        add("JPEGChrome", absent, "lChrome", "20/20");
        add("JPEGChrome", 90, "lChrome", "90/90");
        add("JPEGChrome", 1000, "lChrome", "255/255");
        add("JPEGGray", absent, "chkGray", "0");
        add("JPEGGray", 1, "chkGray", "1");
        add("DynamicLink", absent, "chkDyn", "1");
        add("DynamicLink", 0, "chkDyn", "0");
        add("ShowBetaFeatures", absent, "chkBeta", "0");
        add("ShowBetaFeatures", 1, "chkBeta", "1");
    }

    void reads()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QString, control);
        if (!value.isNull())
            QVERIFY(store(key, value));
        m_bench->open();
        QTEST(shown(*m_bench, control), "shows");
    }

    void grayIsSaidFromTheStart()
    {
        QVERIFY(store(QStringLiteral("JPEGGray"), 1));
        m_bench->open();
        QCheckBox& gray = m_bench->part<QCheckBox>("chkGray");
        QCOMPARE(gray.text(), QStringLiteral("On"));
        gray.click();
        QCOMPARE(gray.text(), QStringLiteral("Off"));
        gray.click();
        QCOMPARE(gray.text(), QStringLiteral("On"));
    }

    // --- writing

    void acceptWritesWhatIsShown()
    {
        m_bench->open();
        for (const char* list : {"cView", "cFView", "cboSample"}) {
            auto& box = m_bench->part<QComboBox>(list);
            box.setCurrentIndex(box.count() - 1);
        }
        for (const char* check : {"chkLoadFileAvail", "cLoad", "cLayout", "chkBorder", "cFull", "cSlide",
                                  "chkGray", "chkDyn", "chkBeta"})
            m_bench->part<QCheckBox>(check).click();
        m_bench->part<QScrollBar>("sLum").setValue(77);
        m_bench->part<QScrollBar>("sChrome").setSliderPosition(88);
        const platform::ColorAnswerer chosen(
            [](const platform::ColorQuestion& asked) { return asked.start.lighter(); });
        click("cmdColor");
        click("cmdBackFullColor");
        const QColor back = m_bench->backColor.lighter();
        const QColor fullBack = QColor(Qt::black).lighter();
        click("Command2");
        QCOMPARE(m_bench->window->result(), int(QDialog::Accepted));
        const QStringList expected = {"cView 1",
                                      "cFView 2",
                                      "cSlide 1",
                                      "cLoad 0",
                                      "cFull 1",
                                      "cLayout 0",
                                      QStringLiteral("MainBackColor %1").arg(app::toColorNumber(back)),
                                      QStringLiteral("FullBackColor %1").arg(app::toColorNumber(fullBack)),
                                      "cBorder 0",
                                      "JPEGSampling 3",
                                      "JPEGLum 77",
                                      "JPEGChrome 88",
                                      "JPEGGray 1",
                                      "imgAutoLoad 0",
                                      "DynamicLink 0",
                                      "ShowBetaFeatures 1"};
        QStringList all;
        for (const OptionRow& row : system::optionRows())
            all.append(QLatin1String(row.key.name) + u' ' + stored(QLatin1String(row.key.name)));
        QCOMPARE(all, expected);
        QCOMPARE(m_bench->done, QStringList({QStringLiteral("color ") + back.name()}));
    }

    void acceptWritesInItsOrderAndSaysWhatItCannot()
    {
        m_bench->open();
        app::closeSettings(); // each write fails
        click("Command2");
        QCOMPARE(m_bench->window->result(), int(QDialog::Accepted));
        QCOMPARE(m_bench->done, QStringList({"color #102030"}));
        const QString saying = QStringLiteral("Option not saved: ");
        QStringList names;
        for (const QString& line : QString::fromUtf8(test::contentOf(app::logPath())).split(u'\n')) {
            if (const qsizetype at = line.indexOf(saying); at >= 0)
                names.append(line.mid(at + saying.size()));
        }
        QCOMPARE(names,
                 QStringList({"cView", "cFView", "cSlide", "cLoad", "cFull", "cLayout", "MainBackColor",
                              "FullBackColor", "cBorder", "JPEGSampling", "JPEGLum", "JPEGChrome", "JPEGGray",
                              "imgAutoLoad", "DynamicLink", "ShowBetaFeatures"}));
    }

    void acceptMakesAnEmptyValueExplicit()
    {
        QVERIFY(store(QStringLiteral("cLoad"), QStringLiteral("")));
        QCOMPARE(stored(QStringLiteral("cLoad")), QStringLiteral("absent"));
        m_bench->open();
        click("Command2");
        QCOMPARE(stored(QStringLiteral("cLoad")), QStringLiteral("1"));
        QCOMPARE(stored(QStringLiteral("cView")), QStringLiteral("0"));
        QCOMPARE(m_bench->done, QStringList({"color #102030"}));
    }

    void acceptSavesClampedWhatWasOutOfRange()
    {
        QVERIFY(store(QStringLiteral("JPEGLum"), 400));
        QVERIFY(store(QStringLiteral("JPEGChrome"), -2));
        m_bench->open();
        click("Command2");
        QCOMPARE(stored(QStringLiteral("JPEGLum")), QStringLiteral("255"));
        QCOMPARE(stored(QStringLiteral("JPEGChrome")), QStringLiteral("0"));
    }

    void cancelWritesNothing_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("button") << false;
        QTest::newRow("Esc") << true;
    }

    void cancelWritesNothing()
    {
        QFETCH(bool, byKey);
        m_bench->show();
        m_bench->done.clear();
        m_bench->part<QCheckBox>("cLoad").click();
        m_bench->part<QScrollBar>("sLum").setValue(7);
        if (byKey)
            QTest::keyClick(m_bench->window.get(), Qt::Key_Escape);
        else
            click("Command1");
        QVERIFY(!m_bench->window->isVisible());
        QCOMPARE(m_bench->window->result(), int(QDialog::Rejected));
        for (const OptionRow& row : system::optionRows())
            QCOMPARE(stored(QLatin1String(row.key.name)), QStringLiteral("absent"));
        QCOMPARE(m_bench->done, QStringList());
    }

    // --- colours

    void aColorIsChosen_data()
    {
        QTest::addColumn<QString>("buttonName");
        QTest::addColumn<QString>("patch");
        QTest::addColumn<QColor>("before");
        QTest::newRow("viewport") << "cmdColor"
                                  << "pBack" << QColor(0x10, 0x20, 0x30);
        QTest::newRow("full screen") << "cmdBackFullColor"
                                     << "pFullBack" << QColor(Qt::black);
    }

    void aColorIsChosen()
    {
        QFETCH(QString, buttonName);
        QFETCH(QString, patch);
        QFETCH(QColor, before);
        m_bench->open();
        QList<QColor> starts;
        std::optional<QColor> answer;
        const platform::ColorAnswerer answerer([&](const platform::ColorQuestion& asked) {
            starts.append(asked.start);
            return answer;
        });
        click(qPrintable(buttonName));
        QCOMPARE(shown(*m_bench, patch), before.name()); // cancelled
        answer = QColor(200, 100, 50);
        click(qPrintable(buttonName));
        QCOMPARE(shown(*m_bench, patch), QStringLiteral("#c86432"));
        QCOMPARE(m_bench->part(qPrintable(patch)).accessibleDescription(), QStringLiteral("#c86432"));
        QCOMPARE(starts, QList<QColor>({before, before}));
        QCOMPARE(m_bench->done, QStringList()); // until it is accepted
    }

    // --- what is done at once

    void associate_data()
    {
        QTest::addColumn<BoxAnswer>("answer");
        QTest::addColumn<QStringList>("done");
        QTest::addColumn<QString>("kept");
        QTest::newRow("yes") << BoxAnswer::Yes << QStringList{"associate"} << "1";
        QTest::newRow("no") << BoxAnswer::No << QStringList() << "absent";
        QTest::newRow("cancelled") << BoxAnswer::Cancel << QStringList() << "absent";
    }

    void associate()
    {
        m_bench->open();
        QFETCH(BoxAnswer, answer);
        m_bench->answer = answer;
        click("cmdAssociate");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QCOMPARE(m_bench->boxes[0].buttons, platform::BoxButtons::YesNoCancel);
        QVERIFY(m_bench->boxes[0].text.contains(QStringLiteral("become the defualt viewer")));
        QTEST(m_bench->done, "done");
        click("Command1"); // undoes nothing of it
        QTEST(stored(QStringLiteral("Associate")), "kept");
        QTEST(m_bench->done, "done");
    }

    void associateOther_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<bool>("done");
        QTest::newRow("a file") << "program" << true;
        QTest::newRow("no such file") << "nothing" << false;
        QTest::newRow("a folder") << "." << false;
        QTest::newRow("cancelled") << "" << false;
    }

    void associateOther()
    {
        QFETCH(QString, chosen);
        QFETCH(bool, done);
        m_bench->home.write(QStringLiteral("program"), "x");
        const QString path = chosen.isEmpty() ? QString() : m_bench->home.path(chosen);
        m_bench->open();
        QString filters;
        const platform::FileChooserAnswerer answerer([&](const platform::FileChooser& chooser) {
            filters = chooser.filters;
            return path;
        });
        click("cmdAssociateOther");
        QVERIFY(filters.startsWith(QStringLiteral("Application Files|*.exe;*.com;*.bat")));
        QCOMPARE(m_bench->done, done ? QStringList{QStringLiteral("other ") + path} : QStringList());
    }

    void purge_data()
    {
        QTest::addColumn<BoxAnswer>("answer");
        QTest::addColumn<QStringList>("done");
        QTest::addColumn<QString>("kept");
        QTest::newRow("yes") << BoxAnswer::Yes << QStringList{"end"} << "absent";
        QTest::newRow("no") << BoxAnswer::No << QStringList() << "1";
        QTest::newRow("cancelled") << BoxAnswer::Cancel << QStringList() << "1";
    }

    void purge()
    {
        QFETCH(BoxAnswer, answer);
        QVERIFY(store(QStringLiteral("cView"), 1));
        m_bench->open();
        m_bench->answer = answer;
        click("cmdPurge");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(m_bench->boxes[0].text.startsWith(QStringLiteral("Are your sure you want to purge")));
        QTEST(m_bench->done, "done");
        QTEST(stored(QStringLiteral("cView")), "kept");
    }

    // --- thumbnails

    void theCountComesAfterTheWindow()
    {
        m_bench->open();
        QCOMPARE(m_bench->done, QStringList());
        m_bench->window->show();
        QCOMPARE(m_bench->done, QStringList{"count"});
        QCOMPARE(statistics(), QStringLiteral("Current:"));
        m_bench->counts.back()({12, 3.456});
        QCOMPARE(statistics(), QStringLiteral("Current Number of Files: 12\r\nDisk Space Used: 3.46 MB"));
        m_bench->window->hide();
        m_bench->window->show(); // no second one
        QCOMPARE(m_bench->done, QStringList{"count"});
    }

    void aCountThatComesTooLateIsLost()
    {
        m_bench->show();
        m_bench->window.reset();
        m_bench->counts.back()({1, 1});
        QVERIFY(!m_bench->window);
    }

    void clearing_data()
    {
        QTest::addColumn<BoxAnswer>("answer");
        QTest::addColumn<QStringList>("done");
        QTest::newRow("yes") << BoxAnswer::Yes << QStringList{"clear", "count"};
        QTest::newRow("no") << BoxAnswer::No << QStringList{"count"};
        QTest::newRow("cancelled") << BoxAnswer::Cancel << QStringList{"count"};
    }

    void clearing()
    {
        QFETCH(BoxAnswer, answer);
        m_bench->show();
        m_bench->done.clear();
        m_bench->answer = answer;
        click("cmdClearThumbs");
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(m_bench->boxes[0].text.startsWith(QStringLiteral("This will delete all thumbnail files.")));
        QTEST(m_bench->done, "done");
        m_bench->counts.back()({0, 0});
        QCOMPARE(statistics(), QStringLiteral("Current Number of Files: 0\r\nDisk Space Used: 0.00 MB"));
    }

    // --- the end of it while it asks

    void itMayEndWhileItAsks_data()
    {
        QTest::addColumn<QString>("buttonName");
        for (const char* name : {"cmdColor", "cmdBackFullColor", "cmdAssociate", "cmdAssociateOther",
                                 "cmdClearThumbs", "cmdPurge"})
            QTest::newRow(name) << name;
    }

    void itMayEndWhileItAsks()
    {
        QFETCH(QString, buttonName);
        m_bench->open();
        const QPointer<QObject> window = m_bench->window.get();
        // Later than the click itself, as the end of the program comes.
        const auto end = [this] { m_bench->window.reset(); };
        m_bench->whileAsked = end;
        const platform::ColorAnswerer colors([&](const platform::ColorQuestion&) {
            end();
            return std::optional<QColor>(Qt::red);
        });
        const platform::FileChooserAnswerer files([&](const platform::FileChooser&) {
            end();
            return QCoreApplication::applicationFilePath();
        });
        click(qPrintable(buttonName));
        QVERIFY(!window);
        QCOMPARE(m_bench->done, QStringList());
        QCOMPARE(stored(QStringLiteral("Associate")), QStringLiteral("absent"));
    }
};

QTEST_MAIN(TestFrmImageViewOptions)
#include "tst_frmimageviewoptions.moc"
