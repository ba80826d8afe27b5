// A label that opens a link with the desktop's program for it when it is clicked, or when Enter or the space
// bar is pressed on it: once for each, however long the key is held. Colour, font and background of the label
// are the control's, which begins with a colour of its own.
#pragma once

#include "platform/KeyRepeats.h"
#include "platform/SpokenWidget.h"

#include <QLabel>

#include <functional>

namespace quorvia::controls {

class uLink : public QWidget, public platform::SpokenWidget
{
    Q_OBJECT

  public:
    /// Opens a link; what comes of it does not matter.
    using Opener = std::function<void(const QString& link)>;

    uLink(Opener opener, QWidget* parent = nullptr);

    QString Caption() const { return m_lMsg->text(); }
    /// Also fits the control to the text.
    void SetCaption(const QString& caption);

    /// One value with the tool tip: what the pointer shows is what is opened.
    QString LinkURL() const { return m_lMsg->toolTip(); }
    void SetLinkURL(const QString& link);

    QSize sizeHint() const override { return m_lMsg->sizeHint(); }

    QAccessible::Role spokenRole() const override { return QAccessible::Link; }
    bool isSpokenPressable() const override { return true; }
    void pressSpoken() override { open(); }
    bool hidesItsParts() const override { return true; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void open();
    void showFocus(bool focused);

    Opener m_opener;
    QLabel* m_lMsg;
    platform::KeyRepeats m_repeats;
    bool m_pressed = false; ///< a click has begun here
};

} // namespace quorvia::controls
