// What another set of SAPI headers says: Wine's for the native build, the cross compiler's own for Windows.

#ifndef NELVA_TESTS_PLATFORM_SYSTEM_SAPI_LAYOUT_H
#define NELVA_TESTS_PLATFORM_SYSTEM_SAPI_LAYOUT_H

#ifdef __cplusplus
extern "C" {
#endif

// "SPEVENT.wParam" with its offset, "sizeof SPEVENT", "ISpDataKey.GetStringValue" with its slot, or "SPEI_VISEME" with
// its value. The last entry has no name.
struct SystemSapiFact {
    const char* name;
    long long value;
};
extern const struct SystemSapiFact system_sapi_facts[];

// The interface ids' 16 bytes.
struct SystemSapiGuid {
    const char* name;
    const void* bytes;
};
extern const struct SystemSapiGuid system_sapi_guids[];

#ifdef __cplusplus
}
#endif

#endif
