#include "TonaroNotes.h"

#include <cmath>
#include <utility>

namespace {

constexpr double kConcertPitch = 440.0; // Hz, of A4
constexpr int kSemitonesOfA4 = 57;      // above C0
constexpr int kCentsInOctave = 1200;

constexpr int kSemitonesFromC[] = {9, 11, 0, 2, 4, 5, 7}; // of A to G
constexpr const char* kNames[] = {"C", "C♯", "D", "D♯", "E", "F", "F♯", "G", "G♯", "A", "A♯", "B"};

/// Takes one of these off the front.
bool take(std::u16string_view& text, std::u16string_view units)
{
    if (text.empty() || units.find(text.front()) == units.npos) return false;
    text.remove_prefix(1);
    return true;
}

/// Digits off the front, at most 6 of them.
std::optional<int> takeDigits(std::u16string_view& text)
{
    int value = 0;
    std::size_t count = 0;
    for (; count < text.size() && text[count] >= u'0' && text[count] <= u'9'; ++count) {
        if (count == 6) return std::nullopt;
        value = value * 10 + (text[count] - u'0');
    }
    if (count == 0) return std::nullopt;
    text.remove_prefix(count);
    return value;
}

void skipBlanks(std::u16string_view& text)
{
    while (take(text, u" \u00A0")) {
    }
}

/// "+20c", "-5 ct", "+20 cents" or nothing at all.
std::optional<int> takeCents(std::u16string_view& text)
{
    skipBlanks(text);
    if (text.empty()) return 0;
    const bool isNegative = text.front() == u'-' || text.front() == u'\u2212';
    if (!take(text, u"+-\u2212")) return std::nullopt;
    skipBlanks(text);
    const auto cents = takeDigits(text);
    if (!cents) return std::nullopt;
    skipBlanks(text);
    for (const std::u16string_view unit : {u"cents", u"cent", u"ct", u"c", u""})
        if (text == unit) return isNegative ? -*cents : *cents;
    return std::nullopt;
}

} // namespace

std::optional<double> HzFromNote(std::u16string_view text)
{
    if (text.empty()) return std::nullopt;
    const char16_t letter = text.front() | 0x20;
    if (text.front() > u'z' || letter < u'a' || letter > u'g') return std::nullopt;
    text.remove_prefix(1);
    int semitones = kSemitonesFromC[letter - u'a'];
    if (take(text, u"#♯"))
        semitones += take(text, u"#♯") ? 2 : 1;
    else if (take(text, u"b♭"))
        semitones -= take(text, u"b♭") ? 2 : 1;
    const bool below = take(text, u"-\u2212");
    const auto octave = takeDigits(text);
    const auto cents = octave ? takeCents(text) : std::nullopt;
    if (!cents) return std::nullopt;
    const double steps = 12.0 * (below ? -*octave : *octave) + semitones - kSemitonesOfA4;
    const double hz = kConcertPitch * std::exp2((steps * 100.0 + *cents) / kCentsInOctave);
    return std::isfinite(hz) ? std::optional(hz) : std::nullopt;
}

std::string NoteFromHz(double hz)
{
    if (!(hz >= 1.0 && hz <= 1e6)) return {};
    const double cents = kCentsInOctave * std::log2(hz / kConcertPitch);
    const long nearest = std::lround(cents / 100.0);
    const long off = std::lround(cents - 100.0 * static_cast<double>(nearest));
    const long semitone = nearest + kSemitonesOfA4;
    const long octave = (semitone >= 0 ? semitone : semitone - 11) / 12;
    std::string name = kNames[semitone - 12 * octave] + std::to_string(octave);
    if (off != 0) name += (off > 0 ? " +" : " −") + std::to_string(std::labs(off)) + " ct";
    return name;
}
