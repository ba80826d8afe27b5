// A tab of the list's panel: an icon and a caption in the shape that the desktop gives to tabs. The one in
// front is only looked at; the one behind is a button.
#pragma once

#include "platform/SpokenWidget.h"

#include <QAbstractButton>

class QLabel;

namespace quorvia::collections {

class PanelTab : public QAbstractButton, public platform::SpokenWidget
{
    Q_OBJECT

  public:
    /// `number` completes the names of the tab, its caption and its icon: 1 stands in front, 2 behind.
    PanelTab(int number, QWidget* parent);

    QString caption() const { return accessibleName(); }
    /// Shows another caption and the drawing `icon` of platform::icon().
    void setFace(const QString& caption, const QString& icon);
    /// As high as its caption needs.
    QSize sizeHint() const override;

    QAccessible::Role spokenRole() const override { return QAccessible::PageTab; }
    void addSpokenState(QAccessible::State& state) const override;
    bool isSpokenPressable() const override { return !m_isInFront; }
    void pressSpoken() override { click(); }
    bool hidesItsParts() const override { return true; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void showIcon();
    void showCaption();

    bool m_isInFront;
    QString m_iconName;
    QLabel* m_icon;
    QLabel* m_caption;
};

} // namespace quorvia::collections
