// The ISO 639 code of a Windows locale (the language part of its name, but for a few that Windows answers otherwise),
// its English name, and its number.

#include "platform/native/locale.h"

#include <new>
#include <string>
#include <string_view>

#include "platform/native/internal.h"
#include "platform/native/locale_english.h"
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

// Empty for an unknown number.
std::string english_name(LCID locale) {
    const LocaleName* const found = find_locale_name(locale);
    return found != nullptr ? english_locale_name(found->name) : std::string();
}

// What GetLocaleInfoW gives for this text; empty means that there is none.
int answer(const std::u16string& text, LPWSTR target, int size) {
    using platform_native::fail;
    if (text.empty() || locale_failure.due()) return fail(ERROR_INVALID_PARAMETER, 0);
    const int needed = static_cast<int>(text.size()) + 1;
    if (size == 0) return needed;
    if (size < needed) return fail(ERROR_INSUFFICIENT_BUFFER, 0);
    text.copy(target, text.size());
    target[text.size()] = 0;
    return needed;
}

}  // namespace

int GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR target, int size) {
    using platform_native::fail;
    if (size < 0 || (size > 0 && target == nullptr)) return fail(ERROR_INVALID_PARAMETER, 0);
    type &= ~LOCALE_NOUSEROVERRIDE;
    if (type != LOCALE_SISO639LANGNAME && type != LOCALE_SENGLISHDISPLAYNAME) return fail(ERROR_INVALID_FLAGS, 0);
    const platform_native::StandIn guard;
    try {
        if (type == LOCALE_SENGLISHDISPLAYNAME)
            return answer(platform_native::widen(english_name(locale)), target, size);
        const std::string_view code = language_code(locale);
        return answer(std::u16string(code.begin(), code.end()), target, size);
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, 0);
    }
}

LCID LocaleNameToLCID(LPCWSTR name, DWORD flags) {
    using platform_native::fail;
    if (name == nullptr || flags != 0) return fail(ERROR_INVALID_PARAMETER, LCID{0});
    const platform_native::StandIn guard;
    try {
        const LocaleName* const found = find_locale(platform_native::narrow(name));
        return found != nullptr ? found->locale : fail(ERROR_INVALID_PARAMETER, LCID{0});
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, LCID{0});
    }
}

namespace platform_native {

void reset_locale() { locale_failure.arm(0); }

}  // namespace platform_native

namespace platform_testing {

void fail_locale(long nth) { locale_failure.arm(nth); }

}  // namespace platform_testing
