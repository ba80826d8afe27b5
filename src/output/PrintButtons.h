// The row along the bottom of the print window: its buttons, and what is said of the printer.
#pragma once

#include <QWidget>

class QLabel;

namespace quorvia::output {

class PrintButtons : public QWidget
{
    Q_OBJECT

  public:
    explicit PrintButtons(QWidget* parent);

    void sayPrinter(const QString& text);

  Q_SIGNALS:
    void printWanted();
    void closeWanted();
    void copiesWanted();

  private:
    QLabel* m_lPrinter;
};

} // namespace quorvia::output
