#include "ZeString.h"

#include <algorithm>
#include <cwchar>

#define BOOST_UTF8_BEGIN_NAMESPACE                                                                                     \
    namespace ze {                                                                                                     \
    namespace detail {
#define BOOST_UTF8_END_NAMESPACE                                                                                       \
    }                                                                                                                  \
    }
#define BOOST_UTF8_DECL
#include <boost/detail/utf8_codecvt_facet.hpp>
#include <boost/detail/utf8_codecvt_facet.ipp>

namespace {

using Facet = std::codecvt<wchar_t, char, std::mbstate_t>;

/// @param convert  member of the facet that converts from `From` to `To`
template <typename To, typename From, typename Convert>
To* Converted(To* dest, int destCount, const From* src, int srcCount, const std::locale& loc, Convert convert)
{
    dest[0] = To();
    if (srcCount < 1) return dest;
    const auto& facet = std::use_facet<Facet>(loc);
    std::mbstate_t state{};
    const From* srcNext = src;
    To* destNext = dest;
    (facet.*convert)(state, src, src + srcCount, srcNext, dest, dest + std::max(destCount, 0), destNext);
    *destNext = To();
    return dest;
}

} // namespace

wchar_t* StdConvert(wchar_t* dest, int destCount, const char* src, int srcCount, const std::locale& loc)
{
    return Converted(dest, destCount, src, srcCount, loc, &Facet::in);
}

char* StdConvert(char* dest, int destCount, const wchar_t* src, int srcCount, const std::locale& loc)
{
    return Converted(dest, destCount, src, srcCount, loc, &Facet::out);
}

const std::locale& ZeUTF8Locale()
{
    // The locale owns the facet.
    static const std::locale locale(std::locale::classic(), new ze::detail::utf8_codecvt_facet);
    return locale;
}
