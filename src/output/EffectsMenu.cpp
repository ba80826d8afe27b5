#include "output/EffectsMenu.h"

#include <QAction>

namespace quorvia::output {

namespace {

struct Effect
{
    const char* name;
    const char* text;
    bool Decorations::*flag;
};

constexpr Effect effects[] = {
    {"mnuShadow", "Shadow", &Decorations::shadow},
    {"mnuLFrame", "Light Frame", &Decorations::lightFrame},
    {"mnuFrame", "Normal Frame", &Decorations::frame},
    {"mnuCircle", "Circle Corners", &Decorations::circle},
    {"mnuSquare", "Square Corners", &Decorations::square},
    {"mnuTile", "Tile Image", &Decorations::tile},
    {"mnuTrail", "Image Trail", &Decorations::trail},
};

} // namespace

EffectsMenu::EffectsMenu(QWidget* parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("FXFeatures"));
    setAccessibleName(QStringLiteral("FX Features"));
    for (const Effect& effect : effects) {
        QAction* const item = addAction(QLatin1String(effect.text));
        item->setObjectName(QLatin1String(effect.name));
        item->setCheckable(true);
        connect(item, &QAction::toggled, this, &EffectsMenu::changed);
    }
}

Decorations EffectsMenu::chosen() const
{
    Decorations chosen;
    const QList<QAction*> items = actions();
    for (size_t i = 0; i < std::size(effects); ++i)
        chosen.*effects[i].flag = items.at(qsizetype(i))->isChecked();
    return chosen;
}

} // namespace quorvia::output
