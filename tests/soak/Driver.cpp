#include "Driver.h"

#include "app/mMain.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "engine/ImageLoader.h"
#include "Input.h"
#include "viewer/CommandTable.h"
#include "viewer/frmImageView.h"
#include "viewer/LoadStep.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QMessageBox>
#include <QPixmapCache>
#include <QTimer>
#include <QWindow>

#include <array>
#include <cstdlib>
#include <utility>

namespace quorvia::test {

namespace {

constexpr int sessionSalt = 1'000'000;
constexpr int answerSalt = 2'000'000;
constexpr int memoryEvery = 25;
constexpr int patience = 15;                   ///< steps under the same blocker, after which Esc comes
constexpr int saysYesAfter = 2;                ///< to the end of all settings
constexpr int keyboardRests = 110;             ///< milliseconds: keys count only 100 ms after the one before
constexpr int muchPatience = 80;               ///< after which the window is closed
constexpr int noPatience = 400;                ///< after which the run is given up
constexpr qint64 readAhead = 64 * 1024 * 1024; ///< bytes: small, so that the rest is seen in the memory

bool asksToErase(const QWidget* window)
{
    const auto* const box = qobject_cast<const QMessageBox*>(window);
    return box && box->text().contains(QLatin1String("settings to be erased"));
}

QString described(const QWidget& widget)
{
    return QLatin1String(widget.metaObject()->className()) + u' ' + widget.objectName();
}

} // namespace

Driver::Driver(const SoakPlan& plan, const SoakPlaces& places)
    : m_plan(plan), m_places(places), m_journal(places.journal()),
      m_outsider(places.pictures(), places.templates(), places.trash(), Originals::load(places.originals())),
      m_answers([this] { return StepRandom(m_plan.seed, answerSalt + m_step); }, [this] { return m_window; },
                places.pictures()),
      m_step(plan.from - 1), m_done(plan.done)
{
    qApp->installEventFilter(this);
}

void Driver::run()
{
    schedule(0);
    while (!isDone())
        runSession();
    notePeak();
    note(QStringLiteral("end"), {});
}

/// Those of the table, which the journal gets, and some that are not in it.
QStringList Driver::commandNames()
{
    QStringList names;
    for (const commands::Tool& tool : viewer::commandTable(*m_window))
        names.append(QLatin1String(tool.name));
    note(QStringLiteral("table"), names.join(u' '));
    names.append({QStringLiteral("tRecent1"), QStringLiteral("tRecent2"), QStringLiteral("FileX3"),
                  QStringLiteral("FileX40"), QStringLiteral("miMsg_Hello"), QStringLiteral("miCmdNothing"),
                  QStringLiteral("unknown")});
    return names;
}

void Driver::runSession()
{
    const QStringList arguments = sessionArguments();
    note(QStringLiteral("session"), arguments.join(u' '));
    app::openSettings();
    app::prepareDataDirectories(app::InstallPath());
    app::repairDataDirectories(app::InstallPath());
    auto loader = std::make_shared<engine::ImageLoader>();
    loader->setReadAheadCap(readAhead);
    {
        viewer::frmImageView window(loader, app::parseCommandLine(arguments, m_places.home));
        m_window = &window;
        if (m_commands.isEmpty())
            m_commands = commandNames();
        if (viewer::runLoadStep(window, false))
            QCoreApplication::exec();
        m_window = nullptr;
    }
    loader.reset();
    app::closeSettings();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QPixmapCache::clear();
    note(QStringLiteral("heap"), QString::number(heapInUse()));
    notePeak();
}

QStringList Driver::sessionArguments()
{
    StepRandom random(m_plan.seed, sessionSalt + m_step);
    const QStringList names = filesIn(m_places.pictures());
    const QString file = names.isEmpty() ? QString() : m_places.pictures() + u'/' + random.oneOf(names);
    const std::array lines{QStringList{},
                           QStringList{file},
                           QStringList{m_places.pictures()},
                           QStringList{m_places.pictures()},
                           QStringList{m_places.pictures(), QStringLiteral("/miViewFilmstrip")},
                           QStringList{m_places.pictures(), QStringLiteral("/miFullScreen")},
                           QStringList{m_places.pictures(), QStringLiteral("/miSlideShow")},
                           QStringList{m_places.home + QStringLiteral("/nothing")}};
    return random.oneOf(lines);
}

/// A new timer each time: one whose slot still runs does not tick in a dialog's loop.
void Driver::schedule(int milliseconds)
{
    QTimer::singleShot(milliseconds, this, &Driver::step);
}

void Driver::step()
{
    constexpr int betweenSessions = 5;
    if (!m_window)
        return schedule(betweenSessions);
    if (isDone())
        return end();
    if (std::exchange(m_keyRests, false))
        return schedule(keyboardRests);
    ++m_step;
    noteGap();
    StepRandom random(m_plan.seed, m_step);
    const ActionKind kind = drawKind(random);
    // Decoders and timers take their time, too.
    schedule(random.oneIn(10) ? keyboardRests : random.oneIn(5) ? 20 : random.below(3));
    if (m_step % memoryEvery == 0)
        note(QStringLiteral("memory"), QString::number(residentMemory()));
    ++m_depth;
    act(kind, random);
    --m_depth;
}

/// The journal has each gap that is longer than those before.
void Driver::noteGap()
{
    const qint64 gap = m_sinceStep.isValid() ? m_sinceStep.elapsed() : 0;
    m_sinceStep.start();
    if (gap <= m_longestGap)
        return;
    m_longestGap = gap;
    note(QStringLiteral("gap"), QString::number(gap));
}

void Driver::notePeak() const
{
    note(QStringLiteral("peak"), QString::number(peakMemory()));
}

void Driver::end()
{
    constexpr int again = 200; // milliseconds
    schedule(again);
    m_window->closeAll();
}

/// Sees to it that no dialog and no menu holds the run. True when that was all for this step.
bool Driver::answerBlocker(QWindow* window)
{
    QWidget* const now = blocker();
    m_blocked = now && now == m_blocker ? m_blocked + 1 : 0;
    m_blocker = now;
    if (!now)
        return false;
    const bool mayErase = m_done <= m_plan.lastErasing;
    const bool mustNot = asksToErase(now) && !mayErase;
    if (asksToErase(now) && mayErase)
        note(QStringLiteral("asks"), described(*now));
    if (asksToErase(now) && mayErase && window && m_blocked == saysYesAfter) {
        note(QStringLiteral("yes"), described(*now));
        press(window, {Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r")});
        return true;
    }
    if (!mustNot && m_blocked < patience)
        return false;
    if (m_blocked > noPatience) {
        note(QStringLiteral("stuck"), described(*now));
        std::abort();
    }
    note(QStringLiteral("out"), described(*now));
    if (m_blocked > muchPatience)
        now->close();
    else if (window)
        press(window, {Qt::Key_Escape});
    return true;
}

void Driver::act(ActionKind kind, StepRandom& random)
{
    QWindow* const window = inputWindow(m_window);
    if (answerBlocker(window))
        return;
    const bool isFree = m_depth == 1 && !blocker() && !m_window->isLoading() && !m_window->isUnloaded();
    switch (kind) {
    case ActionKind::Outsider:
        return note(nameOf(kind), m_outsider.act(random, m_step));
    case ActionKind::Clipboard:
        return fillClipboard(random);
    case ActionKind::Terminate:
        note(nameOf(kind), {});
        return m_window->closeAll();
    case ActionKind::Resize:
        return resizeMain(random);
    case ActionKind::Command:
        if (isFree)
            return runCommand(random);
        break;
    case ActionKind::Open:
        if (isFree)
            return open(random);
        break;
    default:
        break;
    }
    if (!window)
        return note(QStringLiteral("nothing"), {});
    switch (kind) {
    case ActionKind::Click:
        note(nameOf(kind), window->objectName());
        return clickSomewhere(window, random);
    case ActionKind::Drag:
        note(nameOf(kind), window->objectName());
        return dragSomewhere(window, random);
    case ActionKind::Wheel:
        note(nameOf(kind), window->objectName());
        return turnWheel(window, random);
    default:
        return pressKey(window, random);
    }
}

void Driver::runCommand(StepRandom& random)
{
    const bool isSeen = !QApplication::topLevelWidgets().isEmpty() && inputWindow(m_window);
    QString name = random.oneOf(m_commands);
    if (name == QLatin1String("miExit") && !random.oneIn(4))
        name = QStringLiteral("miNext");
    if (!isSeen && random.oneIn(2))
        name = QStringLiteral("miShow");
    note(nameOf(ActionKind::Command), name);
    ++m_done;
    m_window->RunTool(name);
}

void Driver::pressKey(QWindow* window, StepRandom& random)
{
    const bool isMain = window == m_window->windowHandle();
    const KeyPress key = isMain ? drawMainKey(random) : drawDialogKey(random);
    note(nameOf(ActionKind::Key), QStringLiteral("%1 %2 to %3")
                                      .arg(int(key.modifiers), 0, 16)
                                      .arg(key.key, 0, 16)
                                      .arg(window->objectName()));
    ++m_done;
    m_keyRests = isMain && random.oneIn(2);
    press(window, key);
}

void Driver::resizeMain(StepRandom& random)
{
    const QSize size(200 + random.below(1100), 150 + random.below(800));
    const int state = random.below(8);
    note(nameOf(ActionKind::Resize),
         QStringLiteral("%1 x %2, %3").arg(size.width()).arg(size.height()).arg(state));
    if (state == 0)
        m_window->setWindowState(m_window->windowState() ^ Qt::WindowMaximized);
    else if (state == 1)
        m_window->setWindowState(m_window->windowState() ^ Qt::WindowMinimized);
    else
        m_window->resize(size);
}

void Driver::open(StepRandom& random)
{
    const QStringList names =
        QDir(m_places.pictures())
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System, QDir::Name);
    QString path = m_places.pictures();
    if (!names.isEmpty() && !random.oneIn(10))
        path += u'/' + random.oneOf(names);
    const bool isFolder = QFileInfo(path).isDir();
    note(nameOf(ActionKind::Open), path);
    if (isFolder)
        m_window->OpenDirX(path);
    else
        m_window->OpenX(path);
}

void Driver::fillClipboard(StepRandom& random)
{
    QClipboard* const clipboard = QGuiApplication::clipboard();
    const int which = random.below(3);
    note(nameOf(ActionKind::Clipboard), QString::number(which));
    if (which == 0) {
        QImage image(50 + random.below(300), 40 + random.below(200), QImage::Format_RGB32);
        image.fill(QColor(random.below(256), random.below(256), 99));
        clipboard->setImage(image);
    } else if (which == 1) {
        clipboard->setText(QStringLiteral("Some words\nof two lines"));
    } else {
        clipboard->clear();
    }
}

bool Driver::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MetaCall && watched->isWidgetType())
        countCall(*static_cast<QWidget*>(watched));
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        const auto* const widget = static_cast<QWidget*>(watched);
        if (widget->isWindow() || widget->objectName().startsWith(QLatin1String("frm"))) // a panel
            note(QStringLiteral("window"), described(*widget));
    }
    return false;
}

/// A widget that asks itself to be called again and again holds all else: so do scroll bars that come and go.
void Driver::countCall(const QWidget& widget)
{
    constexpr int restless = 20'000; // calls within one step
    m_calls = m_step == m_stepOfCalls ? m_calls + 1 : 0;
    m_stepOfCalls = m_step;
    if (m_calls < restless)
        return;
    QStringList path;
    for (const QWidget* each = &widget; each; each = each->parentWidget())
        path.append(
            QStringLiteral("%1 %2 x %3").arg(described(*each)).arg(each->width()).arg(each->height()));
    note(QStringLiteral("restless"), path.join(QStringLiteral(" in ")));
    std::abort();
}

void Driver::note(const QString& kind, const QString& detail) const
{
    m_journal.write({m_step, kind, detail});
}

} // namespace quorvia::test
