#include "platform/LongWork.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr qint64 millisecondsBetweenTurns = 50;
constexpr qint64 millisecondsWithoutBox = 1000;
constexpr int barLetters = 48; ///< width of the bar

LongWork::Clock clockFromNow()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

QLabel* textLabel(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setObjectName(QStringLiteral("Text"));
    label->setTextFormat(Qt::PlainText); // before the text: a path may hold "<"
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

QProgressBar* progressBar(const QString& text, QWidget* parent)
{
    auto* const bar = new QProgressBar(parent);
    bar->setObjectName(QStringLiteral("Progress"));
    bar->setAccessibleName(text);
    bar->setMinimumWidth(bar->fontMetrics().averageCharWidth() * barLetters);
    return bar;
}

/// Cancel, which Enter does not press: whoever types while the box comes up does not mean it.
QDialogButtonBox* cancelButton(QDialog* parent)
{
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, parent);
    QPushButton* const cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("Cancel"));
    cancel->setAutoDefault(false);
    QObject::connect(buttons, &QDialogButtonBox::rejected, parent, &QDialog::reject);
    return buttons;
}

} // namespace

/// What all work inside one outermost piece has in common.
class LongWork::Run
{
  public:
    Run(const Owner& owner, QString text, Clock clock)
        : m_owner(owner), m_text(std::move(text)), m_clock(std::move(clock)), m_begin(m_clock()),
          m_lastTurn(m_begin)
    {
    }

    void setProgress(int done, int total)
    {
        m_total = std::max(total, 0);
        m_done = std::clamp(done, 0, m_total);
    }
    bool isOver() const { return m_isOver || m_owner.isGone(); }
    void cancel() { m_isOver = true; }
    void letEventsRunWhenDue();
    void end();

  private:
    void showBox();
    void showProgress();

    Owner m_owner;
    QString m_text;
    Clock m_clock;
    qint64 m_begin;
    qint64 m_lastTurn;
    int m_done = 0;
    int m_total = 0;
    bool m_isOver = false;
    QPointer<QDialog> m_box; ///< the owner may take it along
    QProgressBar* m_bar = nullptr;
};

void LongWork::Run::letEventsRunWhenDue()
{
    const qint64 now = m_clock();
    if (now - m_lastTurn < millisecondsBetweenTurns)
        return;
    const bool hasWindows = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (hasWindows && !m_box && now - m_begin >= millisecondsWithoutBox)
        showBox();
    if (m_box)
        showProgress();
    m_lastTurn = now; // for work that begins in the turn
    QCoreApplication::processEvents(m_box ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    m_lastTurn = m_clock(); // else slow events would leave no time for the work
}

/// Ends the work as far as the user sees it.
void LongWork::Run::end()
{
    m_isOver = true;
    delete m_box.data();
    // Some platforms look at input that was left aside only when they are woken.
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
}

void LongWork::Run::showBox()
{
    m_box = new QDialog(m_owner.widget);
    m_box->setObjectName(QStringLiteral("LongWork"));
    m_box->setWindowTitle(m_text);
    m_box->setAccessibleName(m_text);
    m_box->setWindowModality(Qt::ApplicationModal);
    m_bar = progressBar(m_text, m_box);
    auto* const rows = new QVBoxLayout(m_box);
    rows->addWidget(textLabel(m_text, m_box));
    rows->addWidget(m_bar);
    rows->addWidget(cancelButton(m_box));
    QObject::connect(m_box, &QDialog::rejected, m_box, [this] { cancel(); });
    m_box->show();
}

void LongWork::Run::showProgress()
{
    m_bar->setRange(0, m_total); // 0 and 0 make it a busy one
    m_bar->setValue(m_done);
}

LongWork::LongWork(QWidget* owner, const QString& text) : LongWork(owner, text, clockFromNow()) {}

LongWork::LongWork(QWidget* owner, const QString& text, Clock clock)
    : m_owner{owner, owner != nullptr}, m_run(current().lock())
{
    if (m_run)
        return;
    m_run = std::make_shared<Run>(m_owner, text, std::move(clock));
    m_isOutermost = true;
    current() = m_run;
}

LongWork::~LongWork()
{
    if (!m_isOutermost)
        return;
    current().reset();
    m_run->end();
}

bool LongWork::goOn(int done, int total)
{
    if (m_run->isOver() || m_owner.isGone())
        return false;
    if (m_isOutermost)
        m_run->setProgress(done, total);
    m_run->letEventsRunWhenDue();
    return !m_run->isOver() && !m_owner.isGone();
}

void LongWork::cancelAll()
{
    if (const std::shared_ptr<Run> run = current().lock())
        run->cancel();
}

/// The outermost work that goes on, if any.
std::weak_ptr<LongWork::Run>& LongWork::current()
{
    static std::weak_ptr<Run> run;
    return run;
}

} // namespace quorvia::platform
