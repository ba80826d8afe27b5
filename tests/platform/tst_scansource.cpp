// The dialog in which a scanner is chosen, by keys and mouse.
#include "NextDialog.h"
#include "platform/ScanSource.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace quorvia;
using namespace quorvia::platform;
using test::NextDialog;

class TestScanSource : public QObject
{
    Q_OBJECT

  private:
    const QList<ScanDevice> m_two{{"net:a", "Maker", "One", "flatbed scanner"},
                                  {"usb:b", "", "", "video camera"}};

    static QListWidget* devicesOf(const QDialog& dialog)
    {
        return dialog.findChild<QListWidget*>(QStringLiteral("Devices"));
    }
    static QPushButton* okOf(const QDialog& dialog)
    {
        return dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    }

  private Q_SLOTS:
    void whatItShows()
    {
        QStringList rows;
        QStringList names;
        const NextDialog<QDialog> next([&](QDialog& dialog) {
            QCOMPARE(dialog.objectName(), QStringLiteral("ScanSource"));
            for (int i = 0; i < devicesOf(dialog)->count(); ++i)
                rows.append(devicesOf(dialog)->item(i)->text());
            for (const char* name : {"Devices", "Mode", "Resolution"})
                names.append(dialog.findChild<QWidget*>(QLatin1String(name))->accessibleName());
            QVERIFY(okOf(dialog)->isEnabled());
            dialog.accept();
        });
        const ScanChoice last{"usb:b", ScanMode::Gray, 600};
        QCOMPARE(askScanSource(nullptr, {m_two, last}), std::optional(last)); // as it stands
        QVERIFY(next.seen());
        QCOMPARE(rows, (QStringList{"Maker One (net:a)", "video camera (usb:b)"}));
        QVERIFY(!names.contains(QString()));
    }

    void starts_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("resolution");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<int>("offered");
        QTest::newRow("nothing before") << "" << 300 << "net:a" << 300;
        QTest::newRow("one that has gone") << "usb:gone" << 150 << "net:a" << 150;
        QTest::newRow("an odd resolution") << "usb:b" << 17 << "usb:b" << 300;
    }

    void starts()
    {
        QFETCH(QString, device);
        QFETCH(int, resolution);
        const NextDialog<QDialog> next([](QDialog& dialog) { dialog.accept(); });
        const auto chosen = askScanSource(nullptr, {m_two, {device, ScanMode::Color, resolution}});
        QVERIFY(chosen);
        QTEST(chosen->device, "selected");
        QTEST(chosen->resolution, "offered");
    }

    void byKeys()
    {
        const NextDialog<QDialog> next([](QDialog& dialog) {
            QWidget* const focused = dialog.focusWidget();
            QCOMPARE(focused, devicesOf(dialog));
            QTest::keyClick(focused, Qt::Key_Down);
            QTest::keyClick(dialog.findChild<QComboBox*>(QStringLiteral("Mode")), Qt::Key_Down);
            QTest::keyClick(dialog.findChild<QComboBox*>(QStringLiteral("Resolution")), Qt::Key_Home);
            QTest::keyClick(focused, Qt::Key_Return);
        });
        QCOMPARE(askScanSource(nullptr, {m_two, {}}), std::optional(ScanChoice{"usb:b", ScanMode::Gray, 75}));
    }

    void cancelled()
    {
        const NextDialog<QDialog> next([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(!askScanSource(nullptr, {m_two, {}}));
        QVERIFY(next.seen());
    }

    void aDoubleClickTakesTheRow()
    {
        const NextDialog<QDialog> next([](QDialog& dialog) {
            QListWidget* const list = devicesOf(dialog);
            const QPoint row = list->visualItemRect(list->item(1)).center();
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);
        });
        const auto chosen = askScanSource(nullptr, {m_two, {}});
        QVERIFY(chosen);
        QCOMPARE(chosen->device, QStringLiteral("usb:b"));
    }

    void noDevice()
    {
        QString row;
        const NextDialog<QDialog> next([&](QDialog& dialog) {
            row = devicesOf(dialog)->item(0)->text();
            QVERIFY(!okOf(dialog)->isEnabled());
            QTest::keyClick(devicesOf(dialog), Qt::Key_Return);
            QVERIFY(dialog.isVisible());
            dialog.reject();
        });
        QVERIFY(!askScanSource(nullptr, {{}, {}}));
        QCOMPARE(row, QStringLiteral("No scanner or camera was found."));
    }

    void anOwnerThatGoes()
    {
        auto* const owner = new QWidget;
        const NextDialog<QDialog> next([owner](QDialog&) { delete owner; });
        QVERIFY(!askScanSource(owner, {m_two, {}}));
    }

    void aTestAnswers()
    {
        const ScanSourceAnswerer answerer([](const ScanSourceQuestion& question) {
            return std::optional(ScanChoice{question.devices[1].name, ScanMode::Color, 100});
        });
        QCOMPARE(askScanSource(nullptr, {m_two, {}})->device, QStringLiteral("usb:b"));
    }
};

QTEST_MAIN(TestScanSource)
#include "tst_scansource.moc"
