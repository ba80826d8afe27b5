#include "engine/codecs/wmf/WmfFonts.h"

#include "engine/codecs/wmf/WmfCharset.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::engine {

QString wmfFaceName(const WmfFont& font)
{
    QString name;
    for (const WmfLetter& letter : wmfLetters(font.face, font.charset))
        name += letter.text;
    return name.startsWith(QLatin1Char('@')) ? name.mid(1) : name;
}

QStringList wmfFamilies(const QString& face, int pitchAndFamily)
{
    struct Group
    {
        QStringList marks; ///< parts of names, lower case
        QStringList families;
    };
    static const QStringList serif = {QStringLiteral("Liberation Serif"), QStringLiteral("Nimbus Roman"),
                                      QStringLiteral("DejaVu Serif")};
    static const QStringList mono = {QStringLiteral("Liberation Mono"), QStringLiteral("Nimbus Mono PS"),
                                     QStringLiteral("DejaVu Sans Mono")};
    static const QStringList sans = {QStringLiteral("Liberation Sans"), QStringLiteral("Nimbus Sans"),
                                     QStringLiteral("DejaVu Sans")};
    static const std::array<Group, 3> groups = {
        Group{{QStringLiteral("courier"), QStringLiteral("mono"), QStringLiteral("consol"),
               QStringLiteral("fixedsys"), QStringLiteral("terminal"), QStringLiteral("typewriter")},
              mono},
        Group{{QStringLiteral("sans"), QStringLiteral("arial"), QStringLiteral("helv"),
               QStringLiteral("gothic"), QStringLiteral("system")},
              sans},
        Group{{QStringLiteral("times"), QStringLiteral("roman"), QStringLiteral("serif"),
               QStringLiteral("tms rmn"), QStringLiteral("garamond"), QStringLiteral("bookman"),
               QStringLiteral("georgia"), QStringLiteral("palatino"), QStringLiteral("schoolbook"),
               QStringLiteral("cambria"), QStringLiteral("antiqua"), QStringLiteral("book")},
              serif}};
    const QStringList own = face.isEmpty() ? QStringList() : QStringList(face);
    const QString name = face.toLower();
    for (const Group& group : groups) {
        for (const QString& mark : group.marks) {
            if (name.contains(mark))
                return own + group.families;
        }
    }
    constexpr int fixedPitch = 1;
    constexpr int romanFamily = 0x10;
    constexpr int modernFamily = 0x30;
    const int family = pitchAndFamily & 0xF0;
    if (family == modernFamily || (pitchAndFamily & 3) == fixedPitch)
        return own + mono;
    return own + (family == romanFamily ? serif : sans);
}

namespace {

QStringList familiesOf(const WmfFont& font, const QString& name)
{
    switch (wmfSignsOf(name)) {
    case WmfSigns::Symbol:
        return {QStringLiteral("Liberation Serif"), QStringLiteral("Nimbus Roman"),
                QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Sans")};
    case WmfSigns::Wingdings:
    case WmfSigns::Dingbats:
        return {QStringLiteral("DejaVu Sans"), QStringLiteral("D050000L")};
    case WmfSigns::None:
        break;
    }
    return wmfFamilies(name, font.pitchAndFamily);
}

/// The mean width that the selected font is asked for, in pixels; 0 for the natural one.
double textWidth(const WmfState& state)
{
    return std::abs(state.mapping.mapVector(QPointF(state.font.width, 0)).x());
}

} // namespace

double wmfTextHeight(const WmfState& state)
{
    constexpr double usual = 16; // pixels
    constexpr double greatest = 8000;
    if (state.font.height == 0)
        return usual;
    return std::clamp(std::abs(state.mapping.mapVector(QPointF(0, state.font.height)).y()), 0.5, greatest);
}

namespace {

WmfFace wmfFace(const WmfState& state)
{
    const WmfFont& wanted = state.font;
    const double height = wmfTextHeight(state);
    constexpr double largestLaidOut = 200; // pixels; above it the painter enlarges outlines
    const int pixels = int(std::clamp(std::round(height), 4.0, largestLaidOut));

    WmfFace face;
    const QString name = wmfFaceName(wanted);
    face.font.setFamilies(familiesOf(wanted, name));
    face.font.setPixelSize(pixels);
    face.font.setHintingPreference(QFont::PreferNoHinting);
    constexpr int boldFrom = 600;
    face.font.setBold(wanted.weight >= boldFrom);
    face.font.setItalic(wanted.italic);
    const QFontMetricsF metrics(face.font);
    const bool isThere = QFontInfo(face.font).family().compare(name, Qt::CaseInsensitive) == 0;
    const double ascent = isThere ? metrics.ascent() : wmfUsualAscent * pixels;
    const double descent = isThere ? metrics.descent() : wmfUsualDescent * pixels;
    face.down = height / std::max(wanted.height > 0 ? ascent + descent : pixels, 1.0);
    face.across = face.down;
    face.ascent = ascent * face.down;
    face.descent = descent * face.down;
    const double mean = metrics.averageCharWidth();
    if (wanted.width != 0 && mean > 0) {
        face.across = std::clamp(textWidth(state) / mean, face.down / 8, face.down * 8);
    }
    return face;
}

} // namespace

WmfFaces::Key WmfFaces::keyOf(const WmfState& state)
{
    return {state.font, QPointF(textWidth(state), wmfTextHeight(state))};
}

const WmfFace* WmfFaces::find(const WmfState& state) const
{
    const Key key = keyOf(state);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&key](const Entry& entry) { return entry.key == key; });
    return found != m_entries.end() ? &found->face : nullptr;
}

const WmfFace* WmfFaces::make(const WmfState& state)
{
    Entry entry = {keyOf(state), wmfFace(state)};
    if (m_entries.size() < mostFaces) {
        m_entries.push_back(std::move(entry));
        return &m_entries.back().face;
    }
    Entry& oldest = m_entries[m_oldest];
    m_oldest = (m_oldest + 1) % mostFaces;
    oldest = std::move(entry);
    return &oldest.face;
}

} // namespace quorvia::engine
