// The arithmetic behind the dialog that asks for a size: two fields, each shown in pixels or percent, which
// may follow each other by the proportions of the original. Values only.
#pragma once

#include <QSize>
#include <QString>

namespace quorvia::commands {

/// How a field is shown; as the entries of its list are counted.
enum class SizeUnit { Pixels = 0, Percent = 1 };

/// The whole number that `text` begins with, blanks before it passed over: 12 for "12.7", 0 for "abc" and for
/// what is below 0. Never above 65535.
int wholeNumber(const QString& text);

/// One of the two fields.
struct SizeField
{
    double target = 0; ///< pixels; a part of one counts until the size is applied
    int original = 0;  ///< pixels; the base of percents
    SizeUnit unit = SizeUnit::Pixels;

    /// What the field shows: a whole number, of pixels or percent, the nearest one.
    QString text() const;
    /// The user's number `text` becomes the target.
    void take(const QString& text);
};

struct SizeFields
{
    SizeField width;
    SizeField height;
    bool constrained = false; ///< a field that is typed in takes the other one along

    /// Both fields at the size of an original of `pixels`.
    static SizeFields of(QSize pixels);
    /// The width or the height becomes what `text` says; with `leads`, while constrained, the other one
    /// follows it by the proportions of the original. An original without a size has none: nothing follows.
    void takeWidth(const QString& text, bool leads);
    void takeHeight(const QString& text, bool leads);
    /// The width then follows the height.
    void constrain(bool on);
    /// The size that is wanted in whole pixels, each 0 to 65535.
    QSize target() const;
};

} // namespace quorvia::commands
