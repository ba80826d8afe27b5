// The five buttons of the playlist editor, each a drawing on a panel of its own.
#pragma once

#include "collections/EditorLayout.h"

#include <QObject>
#include <QString>

#include <array>

class QAbstractButton;
class QWidget;

namespace quorvia::collections {

/// What a button does; the values are the indices of the buttons.
enum class EditorAction { Up, Down, Remove, AddSelected, AddAll };

class EditorButtons : public QObject
{
    Q_OBJECT

  public:
    /// Makes the first two on `moves` and the others, on white, on `changes`. They live as long as these.
    EditorButtons(QWidget* moves, QWidget* changes, QObject* parent);

    /// The panel with the least sides that a button needs, in pixels.
    static int side();
    void place(const std::array<QRect, editorButtons>& twips);
    /// The buttons from above to below, as the Tab key walks them.
    std::array<QWidget*, editorButtons> inTabOrder() const;

  Q_SIGNALS:
    void clicked(EditorAction action);
    /// The pointer moves over a button that has something to say.
    void hovered(const QString& help);
    /// The pointer has left a button.
    void left();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::array<QWidget*, editorButtons> m_pImage{};
    std::array<QAbstractButton*, editorButtons> m_iImg{};
};

} // namespace quorvia::collections
