// The link of the main window: how it looks on the chrome, and what a click on it does, on a desktop made by
// the test.
#include "controls/uLink.h"
#include "support/ScratchDesktop.h"
#include "viewer/ViewerBench.h"

#include <QLabel>
#include <QSet>
#include <QTest>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

namespace {

/// The links of the main window's addresses are opened by the program "surfer".
class Desktop
{
  public:
    explicit Desktop(const test::ScratchHome& home) : scratch(home)
    {
        scratch.addApplication(QStringLiteral("surfer"), {QStringLiteral("x-scheme-handler/https")},
                               QStringLiteral("Network;"), QStringLiteral("%u"));
        scratch.setDefault(QStringLiteral("x-scheme-handler/https"), QStringLiteral("surfer"));
    }

    test::ScratchDesktop scratch;
};

} // namespace

class TestWindowLink : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_window = &m_bench.load();
        m_link = m_window->panes()->uLink();
        m_link->show();
        m_window->layoutPanes();
        m_desktop.scratch.forget(QStringLiteral("surfer"));
    }

    void isWhiteOnTheChrome()
    {
        const QColor chrome(12, 34, 56);
        m_window->panes()->colourChrome(chrome);
        m_link->SetCaption(QStringLiteral("██  ██"));
        m_window->layoutPanes();
        const QImage shot = m_window->pTop()->grab().toImage();
        const double ratio = shot.devicePixelRatio();
        const QRect place = m_link->geometry();
        QSet<QRgb> seen;
        for (int x = place.left(); x <= place.right(); ++x)
            seen.insert(shot.pixel((QPointF(x, place.center().y()) * ratio).toPoint()));
        QVERIFY(seen.contains(QColor(Qt::white).rgb()));
        QVERIFY(seen.contains(chrome.rgb()));
    }

    void isWhiteFromTheStart()
    {
        const auto* lMsg = m_link->findChild<QLabel*>(QStringLiteral("lMsg"));
        QCOMPARE(lMsg->palette().color(QPalette::WindowText), QColor(Qt::white));
    }

    void opensItsLinkWithTheDesktopsProgram()
    {
        const QString there = QStringLiteral("https://one.example/a%20b?c=d");
        m_link->SetLinkURL(there);
        QTest::mouseClick(m_link, Qt::LeftButton);
        QTRY_VERIFY(!surfed().isEmpty());
        QCOMPARE(surfed().mid(1), QStringList{there});
    }

    void saysNothingOfAFailure_data()
    {
        QTest::addColumn<QString>("link");
        QTest::newRow("no program for it") << "unheard-of://one.example/";
        QTest::newRow("no such file") << "/no/such/page.html";
        QTest::newRow("no such program") << "/no/such/program.exe";
    }

    void saysNothingOfAFailure()
    {
        QFETCH(QString, link);
        const QStringList log = m_bench.logTexts();
        m_link->SetLinkURL(link);
        QTest::mouseClick(m_link, Qt::LeftButton);
        QTest::keyClick(m_link, Qt::Key_Return);
        QVERIFY(m_bench.boxes.empty());
        QCOMPARE(m_bench.logTexts(), log);
        QVERIFY(surfed().isEmpty());
    }

  private:
    QStringList surfed() const { return m_desktop.scratch.record(QStringLiteral("surfer")); }

    ViewerBench m_bench;
    Desktop m_desktop{m_bench.home};
    frmImageView* m_window = nullptr;
    controls::uLink* m_link = nullptr;
};

QTEST_MAIN(TestWindowLink)
#include "tst_windowlink.moc"
