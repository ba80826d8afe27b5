// A row of buttons that goes on in further rows where it is not wide enough, so that no text is cut off.
#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class QAbstractButton;

namespace quorvia::collections {

/// What a button is made of.
struct ButtonParts
{
    const char* name;
    const char* icon = ""; ///< of platform::icon()
    const char* text = "";
    QString toolTip = {};
    QString command = {};   ///< that a click sends; empty: none
    const char* label = ""; ///< text of a label beside the button, which serves as a part of it
    const char* labelName = "";
};

class ButtonRow : public QWidget
{
    Q_OBJECT

  public:
    ButtonRow(const QString& name, QWidget* parent);

    /// Appends a button, with its text or, when it has none, with the icon alone.
    QAbstractButton* addButton(const ButtonParts& parts);
    /// The buttons, in their order.
    const QList<QAbstractButton*>& buttons() const { return m_buttons; }
    /// The height in pixels at `width` pixels, with the air above and below.
    int heightFor(int width) const;

  Q_SIGNALS:
    void wanted(const QString& command, QAbstractButton* button);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* labelled(QAbstractButton* button, const ButtonParts& parts);
    QList<QRect> places(int width) const;

    QList<QWidget*> m_parts;
    QList<QAbstractButton*> m_buttons;
};

} // namespace quorvia::collections
