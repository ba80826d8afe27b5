// How the buttons of the toolbar look on a ground: colours without a painter, made from the ground's colour,
// so that they can be read on dark chrome as well as on a light or dark desktop. And the texts that stand on
// them.
#pragma once

#include <QColor>
#include <QString>

class QPalette;

namespace quorvia::platform {

struct ToolValues;

/// Faces and lines are veils of the ink, to be painted over the ground.
struct ToolLook
{
    QColor ink; ///< drawings and captions
    QColor disabledInk;
    QColor hovered;
    QColor pressed;
    QColor checked;
    QColor checkedHovered;
    QColor outline; ///< around a checked button
    QColor line;    ///< separators
};

/// For the ground that `palette` has as its window colour. The ink is the palette's own where that stands out
/// well, else the better one of white and near black.
ToolLook toolLook(const QPalette& palette);

/// A caption without the marks of mnemonics: "&Save" reads "Save", "&&" reads "&".
QString plainCaption(const QString& caption);
/// The caption of a tool without such marks; one that is meant literally has none.
QString plainCaption(const ToolValues& values);
/// The caption of a tool as a menu takes it, where "&" marks a mnemonic.
QString markedCaption(const ToolValues& values);

/// What a button's tool tip says: the tool's own tip, or its caption; as plain text, whatever it spells.
QString tipOf(const ToolValues& values);

} // namespace quorvia::platform
