// Somebody else at work in the folder that is on show: he adds files and changes and removes those of his
// own, moves the user's about, and fetches some back from the trash.
#pragma once

#include "Originals.h"
#include "RandomActions.h"

namespace quorvia::test {

class Outsider
{
  public:
    /// Works in `folder`, takes what he copies from `templates`, fetches from `trash` (its folder of files).
    Outsider(QString folder, QString templates, QString trash, Originals originals);

    /// Does one thing; gives what he did.
    QString act(StepRandom& random, int step) const;

  private:
    QString add(StepRandom& random, int step) const;
    QString change(StepRandom& random) const;
    QString remove(StepRandom& random) const;
    QString moveOriginal(StepRandom& random, int step) const;
    QString fetch(StepRandom& random) const;
    QString ownFile(StepRandom& random) const;

    QString m_folder;
    QString m_templates;
    QString m_trash;
    Originals m_originals;
};

/// The names of the regular files in `folder`, sorted; links are left out.
QStringList filesIn(const QString& folder);

} // namespace quorvia::test
