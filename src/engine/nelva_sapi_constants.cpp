// The constants that make the generic server this engine's.
#include "engine/nelva_sapi_object.h"

extern const CLSID CLSID_TTS_impl = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};
extern const LPCWSTR classname_TTS_impl = NELVA_WIDE("Nelva TTS (OEM)");
LPCWSTR eventlog_source_TTS_impl = NELVA_WIDE("Quillmark NELVA SAPI (OEM)");
extern const LPCWSTR dicteditor_vendor_TTS_impl = NELVA_WIDE("NELVA");
extern const std::size_t TTS_SAPI_size_impl = sizeof(NELVA_SAPI);
