// Drives the program by chance: one session after the other, each a main window of its own from load to
// close, a step every few milliseconds, also while a dialog or a menu waits.
#pragma once

#include "FileAnswers.h"
#include "Journal.h"
#include "Outsider.h"
#include "SoakPlaces.h"
#include "SoakPlan.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

namespace quorvia::viewer {
class frmImageView;
}

namespace quorvia::test {

class Driver : public QObject
{
    Q_OBJECT

  public:
    Driver(const SoakPlan& plan, const SoakPlaces& places);

    /// Makes all steps.
    void run();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void runSession();
    QStringList sessionArguments();
    void schedule(int milliseconds);
    void step();
    void act(ActionKind kind, StepRandom& random);
    bool answerBlocker(QWindow* window);
    void end();
    bool isDone() const { return m_done >= m_plan.inputs || m_step >= m_plan.last; }
    void noteGap();
    void notePeak() const;
    QStringList commandNames();
    void runCommand(StepRandom& random);
    void pressKey(QWindow* window, StepRandom& random);
    void resizeMain(StepRandom& random);
    void open(StepRandom& random);
    void fillClipboard(StepRandom& random);
    void countCall(const QWidget& widget);
    void note(const QString& kind, const QString& detail) const;

    SoakPlan m_plan;
    SoakPlaces m_places;
    Journal m_journal;
    Outsider m_outsider;
    FileAnswers m_answers;
    viewer::frmImageView* m_window = nullptr; ///< between two sessions null
    QStringList m_commands;
    QPointer<QWidget> m_blocker;
    int m_blocked = 0; ///< steps under the same blocker
    int m_step;
    int m_done;              ///< commands and keys so far
    bool m_keyRests = false; ///< the next step gives the window's keyboard its time first
    QElapsedTimer m_sinceStep;
    qint64 m_longestGap = 0; ///< milliseconds between two steps
    int m_depth = 0;         ///< steps that wait for a dialog, a menu or a long command
    int m_calls = 0;         ///< that widgets asked of themselves in one step
    int m_stepOfCalls = 0;
};

} // namespace quorvia::test
