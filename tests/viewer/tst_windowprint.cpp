// The command that prints, on a machine without a print server: the message, and nothing else.
#include "app/Product.h"
#include "output/frmImagePrint.h"
#include "viewer/ViewerBench.h"

#include <QTest>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

class TestWindowPrint : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

  private Q_SLOTS:
    void initTestCase() { qputenv("CUPS_SERVER", "/nowhere/cups.sock"); }
    void init()
    {
        m_bench = std::make_unique<ViewerBench>();
        m_bench->threePictures();
    }
    void cleanup() { m_bench.reset(); }

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
