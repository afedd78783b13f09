// The names and types that programs are written against. A change here breaks them.
#include <type_traits>

#include "engine/nelva_sapi.h"
#include "fragments/spvtextfrags_to_ssml.h"
#include "regexp/regexp.h"
#include "regexp/replacer.h"
#include "sapi/dll_funcs.h"
#include "sapi/sapi_datakey.h"
#include "sapi/sapi_evtlog.h"
#include "sapi/tts_sapi_outqueue.h"
#include "speechtext/speechtext.h"
#include "speechtext/ssml_encoder.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

namespace {

template <typename Type, typename Expected>
constexpr bool is = std::is_same_v<Type, Expected>;

// ---- text/ ----

using CharacterTest = bool (*)(unsigned short);
using Mapping = unsigned short (*)(unsigned short);
static_assert(is<decltype(&is_alnum_wchar), CharacterTest>);
static_assert(is<decltype(&is_word_wchar), CharacterTest>);
static_assert(is<decltype(&is_whitespace_wchar), CharacterTest>);
static_assert(is<decltype(&to_uppercase_wchar), Mapping>);
static_assert(is<decltype(&to_lowercase_wchar), Mapping>);
static_assert(wide_eof == 0xFFFF);
static_assert(is<decltype(getwc_utf8file(nullptr)), unsigned short>);
static_assert(is<decltype(putwc_utf8file(nullptr, 0)), unsigned short>);
static_assert(is<std::remove_cvref_t<decltype(std::declval<wide_string>()[0])>, unsigned short>);
static_assert(is<decltype(std::declval<wide_string>().size()), std::size_t>);
static_assert(is<decltype(splitlines(std::string())), std::list<std::string>>);
static_assert(is<decltype(split_set_on_char(' ', std::string())), std::set<std::string>>);
static_assert(is<decltype(utf8_size(std::string())), std::size_t>);
static_assert(is<decltype(str2int(std::string())), int>);

// ---- speechtext/ ----

static_assert(is<decltype(SpeechtextMark::instance), unsigned int>);
static_assert(is<decltype(SpeechtextBreak::instance), unsigned int>);
static_assert(is<decltype(Audio::speed), float>);
static_assert(is<decltype(Prosody::pitch_value), float>);
static_assert(is<decltype(Textlocation::paragraph), unsigned int>);
static_assert(is<decltype(Voiceinfo::age), int>);
static_assert(is<decltype(Token::label), std::string>);
static_assert(is<decltype(SpeechtextAttrsRecord::position), int>);
static_assert(is<decltype(SpeechtextAttrsRecord::attrs), SpeechtextAttrs*>);
static_assert(is<decltype(&Audio::set_instance), void (Audio::*)(unsigned int)>);
static_assert(is<decltype(&Transcription::set_instance), void (Transcription::*)(unsigned int)>);
static_assert(std::is_constructible_v<Textlocation, unsigned int, unsigned int>);
static_assert(std::is_default_constructible_v<Textlocation>);
static_assert(is<decltype(std::declval<const SpeechtextMark>().id()), std::string>);
static_assert(is<decltype(std::declval<const SayAs>().format()), std::string>);
static_assert(is<decltype(std::declval<const Token>().role()), std::string>);
static_assert(is<decltype(makelower(Speechtext())), Speechtext>);
static_assert(is<decltype(&SpeechtextSsmlEncoder::set_text), void (SpeechtextSsmlEncoder::*)(const Speechtext&)>);

// ---- regexp/ ----

static_assert(std::is_base_of_v<pcrecpp::StringPiece, regexp::Match>);
static_assert(std::is_base_of_v<pcrecpp::RE_Options, regexp::RE_Options>);
static_assert(std::is_base_of_v<std::logic_error, regexp::invalid_regexp_replacement>);
static_assert(std::is_constructible_v<regexp::RE, std::string, regexp::RE_Options>);
using TextEdit = textattrmod<std::string>;
static_assert(std::is_base_of_v<textattrmod_base, TextEdit>);
using Check = decltype(textattrmod_base::functions_record::conflict_check);
using Update = decltype(textattrmod_base::functions_record::update);
static_assert(std::is_invocable_r_v<Speechtext, decltype(&TextEdit::do_textattrmod), const Speechtext&, const TextEdit&,
                                    Check, Update>);
static_assert(std::is_invocable_r_v<Speechtext, decltype(&TextEdit::do_textattrmods), const Speechtext&,
                                    const std::list<TextEdit>&, Check, Update>);
static_assert(is<decltype(do_setrole(Speechtext(), std::declval<TextEdit>())), Speechtext>);
static_assert(is<decltype(do_setroles(Speechtext(), std::list<TextEdit>())), Speechtext>);
static_assert(is<decltype(do_replacement(Speechtext(), std::declval<replacement>())), Speechtext>);
static_assert(is<decltype(do_replacements(std::string(), std::list<replacement>())), std::string>);
static_assert(is<decltype(&replacements_to_debugstr), std::string (*)(const std::list<replacement>&)>);

// ---- fragments/ ----

static_assert(is<decltype(&build_ssml_sapi_posmap),
                 void (*)(std::vector<std::uint32_t>*, const std::string&, const std::vector<std::uint32_t>&)>);
static_assert(
    is<decltype(&spvtextfrags_to_ssml), HRESULT (*)(const SPVTEXTFRAG*, char**, std::uint32_t**, const char*)>);
static_assert(sizeof spvtextfrags_to_ssml_opts_impl == 4 * sizeof(const char*));

// ---- engine/ and sapi/ ----

static_assert(is<decltype(&TTS_SAPI_new_impl), HRESULT (*)(TTS_SAPI**, LPCWSTR)>);
static_assert(is<decltype(&TTS_SAPI_delete_impl), void (*)(TTS_SAPI*)>);
static_assert(
    is<decltype(&TTS_SAPI_init_from_token_impl), HRESULT (*)(TTS_SAPI*, ISpDataKey*, const char*, const char*)>);
static_assert(
    is<decltype(&TTS_SAPI_get_outputformat_impl), HRESULT (*)(TTS_SAPI*, WAVEFORMATEX*, const WAVEFORMATEX*)>);
static_assert(is<decltype(&TTS_SAPI_speak_from_utf8_impl), HRESULT (*)(TTS_SAPI*, const char*, const std::uint32_t*)>);
static_assert(is<decltype(&NELVA_SAPI_viseme_number), std::int32_t (*)(const char*)>);
static_assert(is<decltype(&TTS_SAPI_outqueue_put_audio), HRESULT (*)(TTS_SAPI*, const void*, std::uint64_t)>);
static_assert(is<decltype(&TTS_SAPI_outqueue_put_event), HRESULT (*)(TTS_SAPI*, SPEVENT*)>);
static_assert(is<decltype(&get_datakey_value_utf8), HRESULT (*)(ISpDataKey*, LPCWSTR, char**)>);
static_assert(is<decltype(&lang_from_ms_langcode), char* (*)(DWORD)>);
static_assert(is<decltype(&log_eventA), BOOL (*)(WORD, WORD, DWORD, ...)>);
static_assert(is<decltype(&register_class), HRESULT (*)(REFCLSID, REGSAM, DWORD*)>);

}  // namespace
