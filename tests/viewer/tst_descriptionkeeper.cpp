// Which image a description lands on, whatever happens to the image's file, the disk and the box meanwhile.
#include "viewer/DescriptionFile.h"
#include "viewer/PanelBench.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QInputMethodEvent>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

#include <functional>
using namespace quorvia;
using test::PanelBench;

class TestDescriptionKeeper : public QObject, private test::PanelStage
{
    Q_OBJECT

  private:
    void touch() const
    {
        QFile file(imageA());
        if (!file.open(QIODevice::Append) ||
            !file.setFileTime(QDateTime(QDate(2003, 1, 14), QTime(9, 5)), QFileDevice::FileModificationTime))
            qFatal("not touched");
    }
    QString imageA() const { return m_stage->bench.image("a.png"); }
    void append(const QString& text)
    {
        bench().tDes()->setFocus();
        QTest::keyClick(bench().tDes(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(bench().tDes(), text);
    }
    /// What an input method tells: `composed` letters that still change, `ready` ones that are done.
    void compose(const QString& composed, const QString& ready = {})
    {
        QInputMethodEvent event(composed, {});
        event.setCommitString(ready);
        QCoreApplication::sendEvent(bench().tDes(), &event);
    }
    void letDelaysGoBy()
    {
        const QSignalSpy gone(bench().tSaveDes(), &QTimer::timeout);
        bench().tSaveDes()->start(0);
        if (!app::letEventsRunUntil(
                [&] { return gone.count() > 1 || !bench().panel->isDescriptionUnsaved(); }, 5000))
            qFatal("no delay");
    }
    void showNext()
    {
        bench().current = bench().image("b.png");
        bench().panel->showCurrent();
    }
    /// Each step is a word, and what it is done with.
    void run(const QString& step)
    {
        const QString image = imageA();
        const QString aside = image + QStringLiteral(".aside");
        const QString directory = QStringLiteral("root/Description");
        const QString with = step.section(u' ', 1);
        const QHash<QString, std::function<void()>> steps{
            {QStringLiteral("open"), [&] { bench().open(qPrintable(with + QStringLiteral(".png"))); }},
            {QStringLiteral("enter"), [&] { bench().tDes()->setFocus(Qt::TabFocusReason); }},
            {QStringLiteral("return"), [&] { bench().tDes()->setFocus(Qt::ActiveWindowFocusReason); }},
            {QStringLiteral("leave"), [&] { bench().tDes()->clearFocus(); }},
            {QStringLiteral("type"), [&] { bench().typeAnew(with); }},
            {QStringLiteral("compose"), [&] { compose(with); }},
            {QStringLiteral("ready"), [&] { compose({}, with); }},
            {QStringLiteral("delays"), [&] { letDelaysGoBy(); }},
            {QStringLiteral("next"), [&] { showNext(); }},
            {QStringLiteral("append"), [&] { append(with); }},
            {QStringLiteral("save"), [&] { bench().panel->saveDescriptionNow(); }},
            {QStringLiteral("end"), [&] { bench().panel.reset(); }},
            {QStringLiteral("store"), [&] { bench().store("a.png", with); }},
            {QStringLiteral("unreadable"), [&] { QDir().mkpath(viewer::descriptionPath(image)); }},
            {QStringLiteral("readable"), [&] { QDir().rmdir(viewer::descriptionPath(image)); }},
            {QStringLiteral("replace"),
             [&] { m_stage->home.write(QStringLiteral("pics/a.png"), "another one"); }},
            {QStringLiteral("touch"), [&] { touch(); }},
            {QStringLiteral("gone"), [&] { QFile::rename(image, aside); }},
            {QStringLiteral("back"), [&] { QFile::rename(aside, image); }},
            {QStringLiteral("full"), [&] { m_stage->home.write(directory, "a file"); }},
            {QStringLiteral("room"), [&] { QFile::remove(m_stage->home.path(directory)); }}};
        const auto found = steps.find(step.section(u' ', 0, 0));
        if (found == steps.end())
            qFatal("no step %s", qPrintable(step));
        (*found)();
    }
    /// What all sidecars say, in alphabetical order.
    QStringList texts()
    {
        QStringList texts;
        const QStringList sidecars = bench().sidecars();
        for (const QString& name : sidecars) {
            QFile file(app::InstallPath() + QStringLiteral("Description/") + name);
            if (file.open(QIODevice::ReadOnly))
                texts.append(viewer::descriptionText(file.readAll()));
        }
        texts.sort();
        return texts;
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void keeps_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QStringList>("saved");
        const auto row = [](const char* name, const char* steps, const char* box, const QStringList& saved) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(box) << saved;
        };
        row("replaced before the first key", "store old,open a,enter,replace,append new,save", "new",
            {"new", "old"});
        row("typed on after a save", "open a,type old,save,replace,append new,save", "new", {"new", "old"});
        row("touched, and the same words again", "store old,open a,enter,touch,type old,save,open a", "old",
            {"old", "old"});
        row("replaced by what has a description", "store old,open a,enter,replace,store new,append !,save",
            "new!", {"new!", "old"});
        row("replaced while a key waits", "open a,type old,replace,append er,save", "older", {"older"});
        row("gone at the first key, back before the delay", "open a,enter,gone,type x,back,save,open a", "x",
            {"x"});
        row("gone at the save, back later", "open a,type x,gone,save,back,append y,save,open a", "xy",
            {"xy"});
        row("another program writes before the box is entered", "open a,store other,enter", "other",
            {"other"});
        row("and before the window is come back to", "open a,enter,type old,save,leave,store other,return",
            "other", {"other"});
        row("and while a key waits", "open a,type old,leave,store other,enter,save", "old", {"old"});
        row("the program's own word over another", "store old,open a,type auto,save,open b,open a", "old",
            {"old"});
        row("it cannot be read any more", "open a,unreadable,enter,type x,save", "(none)", {});
        row("it can be read again", "unreadable,open a,readable,enter,type x,save", "x", {"x"});
        row("a word is composed", "open a,enter,compose wo,ready word,save", "word", {"word"});
        row("the delay goes by meanwhile", "store old,open a,enter,compose wo,delays", "", {"old"});
        row("the delay goes by after it", "store old,open a,enter,compose wo,ready word,delays", "word",
            {"word"});
        row("the next image comes meanwhile", "open a,enter,compose wo,next,ready word,save", "(none)",
            {"wo"});
        row("the end comes meanwhile", "open a,enter,compose wo,end", "", {"wo"});
        row("no room over two images", "open a,full,type x,open b,open c,room,open b", "(none)", {"x"});
        row("back while there is no room", "open a,full,type x,open b,open a", "x", {});
        row("typed on while there is no room", "open a,full,type x,open b,open a,append y,open b,room,open c",
            "(none)", {"xy"});
        row("room for the next description", "open a,full,type x,open b,room,type y,save", "y", {"x", "y"});
        row("no room, and replaced", "open a,full,type x,save,replace,open a,room,save", "(none)", {"x"});
        row("room at the end only", "open a,full,type x,open b,room,end", "", {"x"});
        row("saved late, and typed anew", "open a,full,type x,open b,room,open a,type y,open b,open a", "y",
            {"y"});
    }

    void keeps()
    {
        QFETCH(QString, steps);
        const QStringList all = steps.split(u',');
        for (const QString& step : all)
            run(step);
        if (bench().panel)
            QTEST(bench().tDes()->toPlainText(), "box");
        QTEST(texts(), "saved");
    }

    void whatWaitedGoesIntoNoOtherDescription_data()
    {
        QTest::addColumn<QString>("next");
        QTest::addColumn<bool>("composed");
        QTest::addColumn<QString>("box");
        QTest::newRow("keys") << "b.png" << false << "of the next";
        QTest::newRow("a composed word") << "b.png" << true << "of the next";
        QTest::newRow("keys, and the same image") << "a.png" << false << "x";
    }

    void whatWaitedGoesIntoNoOtherDescription()
    {
        QFETCH(QString, next);
        QFETCH(bool, composed);
        QVERIFY(bench().store(qPrintable(next), QStringLiteral("of the next")));
        bench().open("a.png");
        QPlainTextEdit* const tDes = bench().tDes();
        tDes->setFocus();
        bench().current = bench().image(qPrintable(next));
        bench().panel->showCurrent();
        auto word = std::make_unique<QInputMethodEvent>();
        word->setCommitString(QStringLiteral("x"));
        auto key =
            std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QCoreApplication::postEvent(tDes, composed ? static_cast<QEvent*>(word.release()) : key.release());
        QCoreApplication::processEvents();
        QTEST(tDes->toPlainText(), "box");
        bench().letInputPass();
        append(QStringLiteral("!"));
        bench().panel->saveDescriptionNow();
        QCOMPARE(bench().stored(qPrintable(next)), tDes->toPlainText());
        QVERIFY(tDes->toPlainText().endsWith(u'!'));
    }

    void ofWhatWaitedOnlyEscIsTheWindows_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("taken");
        QTest::newRow("a letter") << int(Qt::Key_X) << true;
        QTest::newRow("Right") << int(Qt::Key_Right) << true;
        QTest::newRow("Esc") << int(Qt::Key_Escape) << false;
    }

    void ofWhatWaitedOnlyEscIsTheWindows()
    {
        QFETCH(int, key);
        bench().open("a.png");
        bench().tDes()->setFocus();
        showNext();
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString());
        QCoreApplication::sendEvent(bench().tDes(), &event);
        QTEST(event.isAccepted(), "taken");
        QCOMPARE(bench().tDes()->textCursor().selectedText(), QStringLiteral("(none)"));
    }
};

QTEST_MAIN(TestDescriptionKeeper)
#include "tst_descriptionkeeper.moc"
