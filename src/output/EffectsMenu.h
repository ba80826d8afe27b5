// The menu of the printed page's decorations, each of which is switched on and off.
#pragma once

#include "output/PageLayout.h"

#include <QMenu>

namespace quorvia::output {

class EffectsMenu : public QMenu
{
    Q_OBJECT

  public:
    explicit EffectsMenu(QWidget* parent);

    Decorations chosen() const;

  Q_SIGNALS:
    void changed();
};

} // namespace quorvia::output
