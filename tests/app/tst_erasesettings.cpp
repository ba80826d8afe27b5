// The question before the settings are erased, and what goes with them.
#include "app/EraseSettings.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/Dialogs.h"
#include "support/ChildCheck.h"

#include <QTest>

using namespace quorvia;
using platform::BoxAnswer;
namespace setting = app::setting;

class TestEraseSettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void aQuestionComesFirst_data()
    {
        QTest::addColumn<BoxAnswer>("answer");
        QTest::addColumn<bool>("erased");
        QTest::newRow("yes") << BoxAnswer::Yes << true;
        QTest::newRow("no") << BoxAnswer::No << false;
        QTest::newRow("cancelled") << BoxAnswer::Cancel << false;
    }

    void aQuestionComesFirst()
    {
        QFETCH(BoxAnswer, answer);
        QFETCH(bool, erased);
        const test::SettingsHome home;
        app::save(setting::cView, 1);
        app::save(setting::PrintZoom, 5);
        app::save(setting::LastCheck, QStringLiteral("012026"));
        app::saveEarlierOwner(QStringLiteral("Open"), QStringLiteral(".jpg"), QStringLiteral("other"));
        app::save(app::common::ThumbnailPath, QStringLiteral("/thumbs/"));

        QString asked;
        const platform::MessageBoxAnswerer answerer([&](const platform::MessageBox& box) {
            asked = box.text;
            return box.buttons == platform::BoxButtons::YesNoCancel ? answer : BoxAnswer::Ok;
        });
        QCOMPARE(app::askToErase(nullptr), erased);
        QCOMPARE(asked, QStringLiteral("Are your sure you want to purge your registry settings for Quorvia?"
                                       "\n\nNote: Selecting yes will cause all settings to be erased and "
                                       "exit the program."));

        QCOMPARE(app::read(setting::cView), erased ? 0 : 1);
        QCOMPARE(app::read(setting::PrintZoom), erased ? 2 : 5);
        QCOMPARE(app::read(setting::LastCheck), QLatin1String(erased ? "" : "012026"));
        QCOMPARE(app::readEarlierOwner(QStringLiteral("Open"), QStringLiteral(".jpg")),
                 QStringLiteral("other"));
        QCOMPARE(app::read(app::common::ThumbnailPath), QStringLiteral("/thumbs/"));
    }

    void theEndIsAtOnceAndNoFailure()
    {
        QCOMPARE(test::heldInChild([]() -> bool { app::endProcess(); }), 0);
    }
};

QTEST_MAIN(TestEraseSettings)
#include "tst_erasesettings.moc"
