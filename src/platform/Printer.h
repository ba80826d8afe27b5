// The system printer: the queue that the desktop names as its own, with the settings of one print. Asking for
// it speaks to the print server, some milliseconds; printing hands the whole document over before it returns.
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

#include <memory>

namespace quorvia::platform {

enum class PageOrientation { Portrait = 1, Landscape = 2 };

class Printer
{
  public:
    virtual ~Printer() = default;

    /// The name of the queue; empty when there is none.
    virtual QString deviceName() const = 0;
    /// Width and height of the paper in twips, as the orientation has it; empty when there is no printer.
    virtual QSize pageSize() const = 0;
    /// Pixels to the inch in which a page is to be composed; above 0.
    virtual int resolution() const = 0;
    virtual PageOrientation orientation() const = 0;
    virtual void setOrientation(PageOrientation orientation) = 0;
    /// How often the page is printed; 1 at first.
    virtual int copies() const = 0;
    /// Numbers below 1 are ignored.
    virtual void setCopies(int copies) = 0;
    /// Prints one page: `picture` scaled into `target`, twips from the paper's upper left corner. `title`
    /// names the job. True when the server has taken the job; `why`, which may be null, then gets nothing,
    /// else one line for the log. Waits for the server for some seconds at most.
    virtual bool printPage(const QImage& picture, const QRect& target, const QString& title,
                           QString* why) = 0;
};

/// Whether a printer can be used that has these two measures (its paper's, in twips) and this name: the first
/// is above 100, or the second is and it has a name.
bool isUsablePrinter(int first, int second, const QString& deviceName);
/// The same of `printer`.
bool isUsablePrinter(const Printer& printer);

/// The system printer as it is now, never null; one without a name when there is none.
std::unique_ptr<Printer> systemPrinter();

} // namespace quorvia::platform
