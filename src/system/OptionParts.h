// The pieces that the pages of the preferences are made of: each gets its objectName and its accessible name
// where it is made.
#pragma once

#include <QComboBox>
#include <QScrollBar>
#include <QString>
#include <QStringList>

class QBoxLayout;
class QCheckBox;
class QFormLayout;
class QFrame;
class QGroupBox;
class QLabel;
class QPushButton;

namespace quorvia::system {

/// A horizontal scroll bar for a number from 0 to 255, which keys reach and which shows that they do.
class QualityBar : public QScrollBar
{
    Q_OBJECT

  public:
    QualityBar(const char* name, const QString& accessible, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A list that leaves what is pressed with Ctrl to the window.
class OptionList : public QComboBox
{
    Q_OBJECT

  public:
    OptionList(const char* name, const QString& accessible, const QStringList& lines, QWidget* parent);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

/// An empty page.
QFrame* makePage(const char* name, const QString& accessible, QWidget* parent);
QGroupBox* makeGroup(const QString& heading, QWidget* parent);
QCheckBox* makeCheck(const char* name, const QString& text, QWidget* parent);
/// A button that is as wide as its text wants it.
QPushButton* makeButton(const char* name, const QString& text, QWidget* parent);
/// A text of several lines, which shows what it holds letter for letter.
QLabel* makeNote(const QString& text, QWidget* parent);
/// Adds a patch of a colour and, behind it, the button that chooses another.
void addColor(QBoxLayout& rows, const char* patch, const char* button, QWidget* parent);
/// Adds a slider with its caption before it and its number behind it.
void addSlider(QFormLayout& rows, const QString& caption, const char* slider, const char* number,
               QWidget* parent);

} // namespace quorvia::system
