// The fonts of a metafile's text: which face stands in for one that is not there, and how it is brought to
// the measures that the file asks for. Dear: asks the system's fonts, which needs the application object.
#pragma once

#include "engine/codecs/wmf/WmfState.h"

#include <QFont>
#include <QString>
#include <QStringList>

#include <vector>

namespace quorvia::engine {

/// A font that is there, and how it is stretched to the measures that are asked for.
struct WmfFace
{
    QFont font;
    double across = 1; ///< factor from the font's own measures to pixels
    double down = 1;
    double ascent = 0; ///< pixels above and below the baseline that a line takes up
    double descent = 0;
};

/// The part of the em above and below the baseline in the usual faces; stands in for that of a face that is
/// not there, since the one in its place may be made for wider lines.
constexpr double wmfUsualAscent = 0.9;
constexpr double wmfUsualDescent = 0.215;

/// The name of the face, without the mark of upright columns.
QString wmfFaceName(const WmfFont& font);

/// The families to look for in place of `face`, best first: itself, faces of the same measures, faces of the
/// same character. `pitchAndFamily` is the font record's field.
QStringList wmfFamilies(const QString& face, int pitchAndFamily);

/// The height that the selected font is asked for, in pixels; 16 where the file gives none.
double wmfTextHeight(const WmfState& state);

/// The faces of the fonts that were selected lately. Needs the application object.
class WmfFaces
{
  public:
    /// The face of the selected font at the present scale; null when it is not known yet. Cheap.
    const WmfFace* find(const WmfState& state) const;
    /// Makes it and keeps it in place of the oldest. Takes the better part of a millisecond.
    const WmfFace* make(const WmfState& state);

  private:
    struct Key
    {
        WmfFont font;
        QPointF scale; ///< pixels of the letters' width and height

        bool operator==(const Key&) const = default;
    };
    struct Entry
    {
        Key key;
        WmfFace face;
    };
    static constexpr size_t mostFaces = 128;

    static Key keyOf(const WmfState& state);

    std::vector<Entry> m_entries;
    size_t m_oldest = 0;
};

} // namespace quorvia::engine
