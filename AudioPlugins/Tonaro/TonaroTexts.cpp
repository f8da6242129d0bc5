#include "TonaroTexts.h"

#include "Foundation/NSBundle.h"

RetainPtr<NSString> TonaroText(const char* key, std::initializer_list<std::string> arguments)
{
    const std::string text =
        NSBundle::mainBundle()->localizedStringForKey(NSString::string(key).get(), nullptr, nullptr)->utf8();
    std::string filled;
    for (std::size_t i = 0; i < text.size();) {
        const bool isWhole = text[i] == '%' && i + 4 <= text.size() && text.compare(i + 2, 2, "$@") == 0;
        const auto index = static_cast<std::size_t>(isWhole ? text[i + 1] - '1' : 0);
        const bool isMark = isWhole && index < arguments.size();
        filled += isMark ? arguments.begin()[index] : text.substr(i, 1);
        i += isMark ? 4 : 1;
    }
    return NSString::string(filled);
}
