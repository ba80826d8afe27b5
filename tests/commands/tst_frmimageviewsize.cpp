// The dialog for a size, driven as a user does.
#include "commands/frmImageViewSize.h"
#include "commands/SaverBench.h"
#include "platform/NextDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace quorvia;
using commands::frmImageViewSize;

namespace {

/// What stands in the dialog.
struct Parts
{
    explicit Parts(frmImageViewSize& shown) : dialog(shown) {}

    template <class Widget>
    Widget& part(const char* name) const
    {
        auto* const found = dialog.findChild<Widget*>(QLatin1String(name));
        Q_ASSERT(found);
        return *found;
    }
    QLineEdit& tW() const { return part<QLineEdit>("tW"); }
    QLineEdit& tH() const { return part<QLineEdit>("tH"); }
    QComboBox& cW() const { return part<QComboBox>("cW"); }
    QComboBox& cH() const { return part<QComboBox>("cH"); }
    QCheckBox& Check1() const { return part<QCheckBox>("Check1"); }
    QWidget& iLock() const { return part<QWidget>("iLock"); }
    QString texts() const { return tW().text() + u' ' + tH().text(); }
    /// Types into `field` as a user who has selected all of it.
    static void type(QLineEdit& field, const QString& text)
    {
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, text);
    }

    frmImageViewSize& dialog;
};

} // namespace

class TestFrmImageViewSize : public QObject
{
    Q_OBJECT

  private:
    std::shared_ptr<engine::ImageLoader> m_loader = std::make_shared<engine::ImageLoader>();
    std::unique_ptr<engine::ImageEngine> m_ix1;

    /// Shows the dialog for the image, and calls `act` with it.
    bool show(const std::function<void(const Parts&)>& act) const
    {
        test::NextDialog<frmImageViewSize> next([&](frmImageViewSize& dialog) {
            dialog.activateWindow();
            if (QTest::qWaitForWindowActive(&dialog))
                act(Parts(dialog));
            if (dialog.isVisible())
                dialog.reject();
        });
        frmImageViewSize dialog(m_loader);
        dialog.LoadX(*m_ix1);
        return next.seen();
    }
    QSize size() const { return {m_ix1->ImagePixelWidth(), m_ix1->ImagePixelHeight()}; }

  private Q_SLOTS:
    void init()
    {
        m_ix1 = std::make_unique<engine::ImageEngine>(m_loader);
        m_ix1->SetPicture(test::quarters({200, 100}));
    }
    void cleanup() { m_ix1.reset(); }

    void itShowsTheSizeOfTheImage()
    {
        QStringList said;
        bool isLocked = true;
        QImage copy;
        QVERIFY(show([&](const Parts& parts) {
            said << parts.texts() << parts.dialog.windowTitle() << parts.part<QGroupBox>("Dimensions").title()
                 << parts.Check1().text() << parts.part<QPushButton>("cmdApply").text()
                 << parts.part<QPushButton>("cmdCancel").text();
            for (const QComboBox* unit : {&parts.cW(), &parts.cH()})
                said << QString::number(unit->count()) << unit->itemText(0) << unit->itemText(1)
                     << unit->currentText();
            for (const QLabel* label : parts.dialog.findChildren<QLabel*>())
                said << label->text();
            isLocked = parts.iLock().isVisible() || parts.Check1().isChecked();
            copy = parts.part<engine::ImageEngine>("ixOri").Picture();
        }));
        said.removeAll(QString()); // the lock has no text
        QCOMPARE(said, (QStringList{"200 100", "Custom Resize", "Dimensions", "Constrain Aspects", "Apply",
                                    "Cancel", "2", "Pixels", "Precent %", "Pixels", "2", "Pixels",
                                    "Precent %", "Pixels", "Width:", "Height:"}));
        QVERIFY(!isLocked);
        QCOMPARE(copy, test::quarters({200, 100}));
        QCOMPARE(size(), QSize(200, 100));
    }

    void everyControlHasANameThatCanBeSaid()
    {
        QStringList silent;
        QVERIFY(show([&](const Parts& parts) {
            for (const char* name :
                 {"tW", "tH", "cW", "cH", "Check1", "iLock", "cmdApply", "cmdCancel", "Dimensions"}) {
                if (parts.part<QWidget>(name).accessibleName().isEmpty())
                    silent << QLatin1String(name);
            }
        }));
        QCOMPARE(silent, QStringList());
    }

    void applying_data()
    {
        QTest::addColumn<bool>("constrained");
        QTest::addColumn<int>("widthUnit");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("texts");
        QTest::addColumn<QSize>("size");
        QTest::newRow("free width") << false << 0 << "tW"
                                    << "50"
                                    << "50 100" << QSize(50, 100);
        QTest::newRow("free height") << false << 0 << "tH"
                                     << "50"
                                     << "200 50" << QSize(200, 50);
        QTest::newRow("width leads") << true << 0 << "tW"
                                     << "50"
                                     << "50 25" << QSize(50, 25);
        QTest::newRow("height leads") << true << 0 << "tH"
                                      << "50"
                                      << "100 50" << QSize(100, 50);
        QTest::newRow("percent") << false << 1 << "tW"
                                 << "150"
                                 << "150 100" << QSize(300, 100);
        QTest::newRow("percent leads") << true << 1 << "tW"
                                       << "50"
                                       << "50 50" << QSize(100, 50);
        QTest::newRow("percent follows") << true << 1 << "tH"
                                         << "50"
                                         << "50 50" << QSize(100, 50);
        QTest::newRow("no number") << false << 0 << "tH"
                                   << "abc"
                                   << "200 0" << QSize(200, 100);
        QTest::newRow("a fraction") << false << 0 << "tH"
                                    << "12x7"
                                    << "200 127" << QSize(200, 127);
    }

    void applying()
    {
        QFETCH(bool, constrained);
        QFETCH(int, widthUnit);
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QString texts;
        QVERIFY(show([&](const Parts& parts) {
            parts.Check1().setChecked(constrained);
            parts.cW().setCurrentIndex(widthUnit);
            Parts::type(parts.part<QLineEdit>(qPrintable(field)), typed);
            texts = parts.texts();
            QTest::mouseClick(&parts.part<QPushButton>("cmdApply"), Qt::LeftButton);
        }));
        QTEST(texts, "texts");
        QTEST(size(), "size");
    }

    void theCheckShowsTheLockAndTakesTheWidthAlong()
    {
        QStringList seen;
        QVERIFY(show([&](const Parts& parts) {
            const auto note = [&] {
                seen << parts.texts() + (parts.iLock().isVisible() ? " locked" : " free");
            };
            Parts::type(parts.tH(), "50");
            note();
            QTest::mouseClick(&parts.Check1(), Qt::LeftButton, {}, QPoint(8, parts.Check1().height() / 2));
            note();
            QTest::mouseClick(&parts.Check1(), Qt::LeftButton, {}, QPoint(8, parts.Check1().height() / 2));
            note();
        }));
        QCOMPARE(seen, (QStringList{"200 50 free", "100 50 locked", "100 50 free"}));
        QCOMPARE(size(), QSize(200, 100));
    }

    void unitsShowTheSameSizeOtherwise()
    {
        QStringList seen;
        QVERIFY(show([&](const Parts& parts) {
            Parts::type(parts.tW(), "50");
            parts.cW().setCurrentIndex(1);
            seen << parts.texts();
            parts.cH().setCurrentIndex(1);
            seen << parts.texts();
            parts.cW().setCurrentIndex(0);
            parts.cH().setCurrentIndex(0);
            seen << parts.texts();
        }));
        QCOMPARE(seen, (QStringList{"25 100", "25 100", "50 100"}));
    }

    void anEmptiedFieldIsReadyForTheNextDigit()
    {
        QStringList seen;
        QVERIFY(show([&](const Parts& parts) {
            parts.tW().setFocus();
            parts.tW().selectAll();
            QTest::keyClick(&parts.tW(), Qt::Key_Delete);
            seen << parts.tW().text();
            QTest::keyClicks(&parts.tW(), "75");
            seen << parts.tW().text();
        }));
        QCOMPARE(seen, (QStringList{"0", "75"}));
    }

    void keys()
    {
        QStringList focused;
        bool isChecked = false;
        QVERIFY(show([&](const Parts& parts) {
            const auto press = [&](Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
                QTest::keyClick(parts.dialog.focusWidget(), key, held);
                focused << parts.dialog.focusWidget()->objectName();
            };
            focused << parts.dialog.focusWidget()->objectName();
            for (int i = 0; i < 6; ++i)
                press(Qt::Key_Tab);
            press(Qt::Key_H, Qt::AltModifier);
            press(Qt::Key_W, Qt::AltModifier);
            press(Qt::Key_C, Qt::AltModifier);
            isChecked = parts.Check1().isChecked();
            QTest::keyClicks(parts.dialog.focusWidget(), "100");
            QTest::keyClick(parts.dialog.focusWidget(), Qt::Key_Return);
        }));
        QCOMPARE(focused,
                 (QStringList{"tW", "cW", "tH", "cH", "Check1", "cmdApply", "cmdCancel", "tH", "tW", "tW"}));
        QVERIFY(isChecked);
        QCOMPARE(size(), QSize(100, 50));
    }

    void escapeAndCancelLeaveTheImage_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Esc") << true;
        QTest::newRow("cmdCancel") << false;
    }

    void escapeAndCancelLeaveTheImage()
    {
        QFETCH(bool, byKey);
        bool isOpen = true;
        QVERIFY(show([&](const Parts& parts) {
            Parts::type(parts.tW(), "50");
            if (byKey)
                QTest::keyClick(&parts.tW(), Qt::Key_Escape);
            else
                QTest::mouseClick(&parts.part<QPushButton>("cmdCancel"), Qt::LeftButton);
            isOpen = parts.dialog.isVisible();
        }));
        QVERIFY(!isOpen);
        QCOMPARE(size(), QSize(200, 100));
    }

    void withoutAnImageNothingHappens()
    {
        m_ix1->SetPicture(QImage());
        QString texts;
        QVERIFY(show([&](const Parts& parts) {
            parts.Check1().setChecked(true);
            parts.cH().setCurrentIndex(1);
            Parts::type(parts.tW(), "50");
            texts = parts.texts();
            QTest::mouseClick(&parts.part<QPushButton>("cmdApply"), Qt::LeftButton);
        }));
        QCOMPARE(texts, QString("50 0"));
        QCOMPARE(size(), QSize(0, 0));
    }

    void aSizeIsOnlyForTheImageThatWasAskedAbout()
    {
        const test::ScratchHome home;
        const QString other = home.write("b.png", test::encoded(test::quarters({60, 30}), "b.png"));
        QVERIFY(show([&](const Parts& parts) {
            m_ix1->SetFileName(other);
            QTest::mouseClick(&parts.part<QPushButton>("cmdApply"), Qt::LeftButton);
        }));
        QCOMPARE(size(), QSize(60, 30));
    }

    void anOwnerThatGoesEndsIt()
    {
        auto owner = std::make_unique<QWidget>();
        auto* const ix1 = new engine::ImageEngine(m_loader, owner.get());
        ix1->SetPicture(test::quarters());
        test::NextDialog<frmImageViewSize> next([&](frmImageViewSize&) { owner.reset(); });
        commands::askForSize(owner.get(), m_loader, *ix1);
        QVERIFY(next.seen() && !owner);
    }

    void theLockIsDrawnInTheColourOfTheText()
    {
        for (const QColor& ink : {QColor(Qt::red), QColor(Qt::green)}) {
            frmImageViewSize dialog(m_loader);
            QPalette colors = dialog.palette();
            colors.setColor(QPalette::WindowText, ink);
            dialog.setPalette(colors);
            const auto* const lock = dialog.findChild<QLabel*>(QStringLiteral("iLock"));
            const QImage picture = lock->pixmap(Qt::ReturnByValue).toImage();
            QCOMPARE(picture.size(), QSize(16, 16) * dialog.devicePixelRatioF());
            int drawn = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    const QColor pixel = picture.pixelColor(x, y);
                    if (pixel.alpha() == 255) {
                        QCOMPARE(pixel.rgb(), ink.rgb());
                        ++drawn;
                    }
                }
            }
            QVERIFY(drawn > 10);
        }
    }
};

QTEST_MAIN(TestFrmImageViewSize)
#include "tst_frmimageviewsize.moc"
