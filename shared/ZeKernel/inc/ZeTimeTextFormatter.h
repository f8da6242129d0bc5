#pragma once

/// Between a position, a number of samples, and the text of a field, in the format and with the rates it was given.
///
///     auto formatter = make<ZeTimeTextFormatter>();
///     formatter->setSampleRate(48000);
///     formatter->stringForObjectValue(NSNumber::numberWithLongLong(120000).get()); // "00:00:02.500"
///
/// Legal are the digits, comma, full stop, colon, percent sign and space. Legal text that the format can't read stands
/// for whatever its parser answers, mostly 0; it is no error. Setters re-display nothing: that is the field's part.
///
/// Failure: text with any other character is refused, with the main bundle's text for the key "This string contains
/// illegal characterst", and a line in the log.

#include "Foundation/NSFormatter.h"
#include "Foundation/NSNumber.h"

#include "ZePrint.h"

class ZeTimeTextFormatter final : public NSFormatter {
public:
    NS_CLASS(ZeTimeTextFormatter)

    /// Null for anything but a number, of which the whole samples count.
    RetainPtr<NSString> stringForObjectValue(const NSObject* object) const override;
    /// Text that the value set last is shown as gives that very object back: what nobody changed isn't rounded.
    bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text, RetainPtr<NSString>* error) const override;

    /// Tabs and line ends are refused as they come, since a field would turn them into spaces.
    bool isPartialStringValid(const NSString* partial, RetainPtr<NSString>* newString,
                              RetainPtr<NSString>* error) const override;

    void setFormat(int type); ///< any value; timecode and CD time set the frame rate, too
    int format() const { return m_PosFmt.eFormat; }
    void setFrameRate(double framesPerSecond);
    void setSampleRate(double samplesPerSecond); ///< truncated; its low 32 bits count
    void setTempo(double beatsPerMinute);
    void setTimeSignature(unsigned signature); ///< low half beat value, high half beats per measure
    void setTicksPerBeat(unsigned ticks);
    void setPercentBase(double samples); ///< truncated
    void setIsLength(bool isLength);     ///< a length: the format's offset doesn't apply
    bool isLength() const { return m_fIsLength; }
    /// Samples in one step of the format, at the rates as they are.
    long long getIncrement() const { return m_PosFmt.getIncrement(); }

    /// Keeps what the field shows now; null is allowed.
    void setObjectValue(NSObject* value);

    /// A snapshot of the format with all of its parameters, to be handed to another formatter.
    RetainPtr<NSValue> posFormatter() const;
    /// Takes everything but the percent base over. Null, and a value that is no such snapshot, change nothing.
    void setPosFormatter(const NSValue* boxed);

    /// Lets go of the value and of what conversions keep; the next conversion makes it anew.
    void cleanup();

private:
    unsigned flags() const { return m_fIsLength ? kPosFmtLength : 0U; }

    mutable ZePosFmt m_PosFmt; // conversions make its platform part
    bool m_fIsLength = false;
    RetainPtr<NSObject> m_ObjectValue;
};
