// A printer that writes down what it is asked to print.
#pragma once

#include "platform/Printer.h"

#include <functional>
#include <vector>

namespace quorvia::test {

class FakePrinter : public platform::Printer
{
  public:
    struct Job
    {
        QImage picture;
        QRect target;
        QString title;
        int copies;
    };

    QString deviceName() const override { return name; }
    QSize pageSize() const override
    {
        return turned == platform::PageOrientation::Portrait ? paper : paper.transposed();
    }
    int resolution() const override { return dpi; }
    platform::PageOrientation orientation() const override { return turned; }
    void setOrientation(platform::PageOrientation orientation) override { turned = orientation; }
    int copies() const override { return count; }
    void setCopies(int copies) override
    {
        if (copies >= 1)
            count = copies;
    }
    bool printPage(const QImage& picture, const QRect& target, const QString& title, QString* why) override
    {
        jobs.push_back({picture, target, title, count});
        if (meanwhile)
            meanwhile();
        if (!failure.isEmpty() && why)
            *why = failure;
        return failure.isEmpty();
    }

    QString name = QStringLiteral("Office");
    QSize paper{11906, 16838}; ///< upright, twips
    int dpi = 72;
    platform::PageOrientation turned = platform::PageOrientation::Portrait;
    int count = 1;
    QString failure;                 ///< of every print; empty: none fails
    std::function<void()> meanwhile; ///< called while it prints
    std::vector<Job> jobs;
};

} // namespace quorvia::test
