#include "ZeTimeTextFormatter.h"

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"
#include "Foundation/NSLog.h"

#include <cstring>

namespace {

constexpr std::u16string_view kLegalCharacters = u"0123456789,.:% ";
constexpr std::u16string_view kTabsAndLineEnds = u"\t\n\r\x2028\x2029";
constexpr const char* kPosFmtEncoding = "{ZePosFmt=^{ZeFormatterPlatform}iIddqq(?=I{?=SS}{?=SS})I}";

} // namespace

NS_CLASS_TABLE(ZeTimeTextFormatter, NSFormatter, "")
NS_CLASS_TABLE_END

// --- conversions

RetainPtr<NSString> ZeTimeTextFormatter::stringForObjectValue(const NSObject* object) const
{
    const auto* number = asKind<NSNumber>(object);
    if (!number) return nullptr;
    const NSAutoreleasePool pool;
    ZeString text;
    m_PosFmt.stringValue(text, number->longLongValue(), flags());
    return static_cast<NSString*>(text);
}

bool ZeTimeTextFormatter::getObjectValue(RetainPtr<NSObject>* object, const NSString* text,
                                         RetainPtr<NSString>* error) const
{
    if (text && text->units().find_first_not_of(kLegalCharacters) != std::u16string::npos) {
        if (error)
            *error = NSBundle::mainBundle()->localizedStringForKey("This string contains illegal characterst"_ns.get(),
                                                                   ""_ns.get(), nullptr);
        NSLog("This string contains illegal characters: %s", text->utf8().c_str());
        return false;
    }
    if (!object) return true;
    if (const auto shown = stringForObjectValue(m_ObjectValue.get()); shown && shown->isEqualToString(text)) {
        *object = m_ObjectValue;
        return true;
    }
    *object = NSNumber::numberWithLongLong(m_PosFmt.numberValue(ZeString(text), flags()));
    return true;
}

bool ZeTimeTextFormatter::isPartialStringValid(const NSString* partial, RetainPtr<NSString>*,
                                               RetainPtr<NSString>* error) const
{
    return partial->units().find_first_of(kTabsAndLineEnds) == std::u16string::npos ||
           getObjectValue(nullptr, partial, error);
}

// --- the format and its parameters

void ZeTimeTextFormatter::setFormat(int type) { m_PosFmt.setType(static_cast<_qvposfmt_format>(type)); }
void ZeTimeTextFormatter::setFrameRate(double framesPerSecond) { m_PosFmt.dFrameRate = framesPerSecond; }
void ZeTimeTextFormatter::setSampleRate(double samplesPerSecond)
{
    m_PosFmt.dwSampleRate = static_cast<unsigned>(NSTruncate(samplesPerSecond));
}
void ZeTimeTextFormatter::setTempo(double beatsPerMinute) { m_PosFmt.dTempo = beatsPerMinute; }
void ZeTimeTextFormatter::setTimeSignature(unsigned signature) { m_PosFmt.dwTimeSignature = signature; }
void ZeTimeTextFormatter::setTicksPerBeat(unsigned ticks) { m_PosFmt.cTicksPerBeat = ticks; }
void ZeTimeTextFormatter::setPercentBase(double samples) { m_PosFmt.ccPercentBase = NSTruncate(samples); }
void ZeTimeTextFormatter::setIsLength(bool isLength) { m_fIsLength = isLength; }
void ZeTimeTextFormatter::setObjectValue(NSObject* value) { m_ObjectValue = value; }

// --- the format as a value

RetainPtr<NSValue> ZeTimeTextFormatter::posFormatter() const { return NSValue::value(&m_PosFmt, kPosFmtEncoding); }

void ZeTimeTextFormatter::setPosFormatter(const NSValue* boxed)
{
    if (!boxed || std::strcmp(boxed->objCType(), kPosFmtEncoding) != 0) return;
    ZePosFmt other;
    boxed->getValue(&other);
    other.pFormatter = nullptr; // the one in the box belongs to the object that was boxed
    m_PosFmt.Cleanup();
    m_PosFmt.dwSampleRate = other.dwSampleRate;
    m_PosFmt.dFrameRate = other.dFrameRate;
    m_PosFmt.dTempo = other.dTempo;
    m_PosFmt.ntOffset = other.ntOffset;
    m_PosFmt.dwTimeSignature = other.dwTimeSignature;
    m_PosFmt.cTicksPerBeat = other.cTicksPerBeat;
    m_PosFmt.eFormat = other.eFormat;
}

void ZeTimeTextFormatter::cleanup()
{
    m_PosFmt.Cleanup();
    m_ObjectValue.reset();
}
