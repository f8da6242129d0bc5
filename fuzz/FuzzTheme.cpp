// The settings that a desktop publishes, from which windows learn whether to be dark.

#include "FuzzInput.h"
#include "X11/X11Theme.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::optional<X11Theme> theme = X11ReadTheme({data, size});
    if (!theme) return 0;
    FuzzExpect(theme->name.size() < size, "a name comes out of the bytes");
    const bool isDark = theme->appearance() == NSAppearanceName::dark;
    FuzzExpect(isDark || !theme->prefersDark, "a wish for the dark is heard");
    return 0;
}
