// The ISO 639 code of a Windows locale: the language part of its name, but for a few that Windows answers otherwise.

#include "platform/native/locale.h"

#include <string_view>

#include "platform/native/internal.h"
#include "platform/native/locale_names.h"
#include "platform/testing.h"

namespace {

platform_native::Countdown locale_failure;

// Numbers that stand for settings of the user, the system or a custom locale. Here they are all English.
constexpr LCID settings[] = {0x0000, LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT, 0x0C00, 0x1000, 0x1400};

// Where the code is not the language part of the name.
struct Exception {
    LCID locale;
    std::string_view code;
};
constexpr Exception exceptions[] = {
    {0x0014, "nb"},   // "no", Norwegian, is answered as Bokmål
    {0x007F, "iv"},   // the invariant locale has no name
    {0x0501, "en"},   // pseudo-locales for testing programs go by the language that they imitate ...
    {0x09FF, "ar"},   // ... but for the East Asian one, which is "qps"
    {0x1007F, "iv"},  // the invariant locale in another sort order
};

// Empty for an unknown number.
std::string_view language_code(LCID locale) {
    for (const LCID setting : settings)
        if (locale == setting) return "en";
    for (const Exception& exception : exceptions)
        if (locale == exception.locale) return exception.code;
    const LocaleName* const found = find_locale_name(locale);
    if (found == nullptr) return {};
    const std::string_view name = found->name;
    return name.substr(0, name.find('-'));
}

}  // namespace

int GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR target, int size) {
    using platform_native::fail;
    if (size < 0 || (size > 0 && target == nullptr)) return fail(ERROR_INVALID_PARAMETER, 0);
    if ((type & ~LOCALE_NOUSEROVERRIDE) != LOCALE_SISO639LANGNAME) return fail(ERROR_INVALID_FLAGS, 0);
    const std::string_view code = language_code(locale);
    if (code.empty() || locale_failure.due()) return fail(ERROR_INVALID_PARAMETER, 0);
    const int needed = static_cast<int>(code.size()) + 1;
    if (size == 0) return needed;
    if (size < needed) return fail(ERROR_INSUFFICIENT_BUFFER, 0);
    for (const char letter : code) *target++ = static_cast<WCHAR>(letter);
    *target = 0;
    return needed;
}

namespace platform_native {

void reset_locale() { locale_failure.arm(0); }

}  // namespace platform_native

namespace platform_testing {

void fail_locale(long nth) { locale_failure.arm(nth); }

}  // namespace platform_testing
