// The command that prints, on a machine without a print server: the message, and nothing else.
#include "app/Product.h"
#include "output/frmImagePrint.h"
#include "viewer/PictureStage.h"

#include <QTest>

using namespace quorvia;
using viewer::frmImageView;

class TestWindowPrint : public QObject, private test::PictureStage
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { qputenv("CUPS_SERVER", "/nowhere/cups.sock"); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void withoutAPrinterThereIsAMessage_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("with an image") << "pics";
        QTest::newRow("without one") << ".";
    }

    void withoutAPrinterThereIsAMessage()
    {
        QFETCH(QString, folder);
        frmImageView& window = m_bench->load({m_bench->in(qPrintable(folder))});
        window.RunTool(QStringLiteral("miPrint"));
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QCOMPARE(m_bench->boxes.front().title, app::productTitle());
        QCOMPARE(m_bench->boxes.front().text,
                 QStringLiteral("Quorvia could not find a printer, or does not support your current default "
                                "printer."));
        QVERIFY(!window.findChild<output::frmImagePrint*>());
    }
};

QTEST_MAIN(TestWindowPrint)
#include "tst_windowprint.moc"
