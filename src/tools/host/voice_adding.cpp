// From languages to tokens. See the header.
#include "tools/host/voice_adding.h"

#include <filesystem>
#include <system_error>

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/suggest.h"
#include "tools/host/utf.h"
#include "tools/host/voice_language.h"
#include "tts_engine/file_names.h"

namespace host {

namespace {

constexpr const char* vendor = "Nelva";
constexpr std::string_view usual_rate = "22i";
constexpr HRESULT already_exists = hresult_from_win32(183);  // ERROR_ALREADY_EXISTS

// A voice of which the token is still to be made.
struct Request {
    std::string file_name;
    std::string language;
    std::string variant;
    const VoiceRate* rate;
    bool is_new;  // the file has to be written
};

[[noreturn]] void unknown_to_the_synthesiser(const std::string& kind, const std::string& name,
                                             const std::vector<std::string>& known, const std::string& folder) {
    const std::string meant = closest_name(name, known);
    throw HostError("the synthesiser has no " + kind + " '" + name + "'", SPERR_NOT_FOUND,
                    meant.empty() ? "its data in '" + folder + "' say what there is" : "did you mean '" + meant + "'?");
}

std::string file_name_for(const std::string& language, const std::string& variant, const VoiceRate& rate) {
    return language + (variant.empty() ? "" : "-" + variant) + "-" + rate.suffix;
}

// A file of that very name, or one that says the same.
const VoiceFile* file_for(const std::vector<VoiceFile>& files, const Request& request) {
    for (const VoiceFile& file : files)
        if (file.name == request.file_name) return &file;
    for (const VoiceFile& file : files) {
        const tts::VoiceSettings& settings = file.settings;
        if (file.rate == request.rate && equal_ignoring_case(settings.language, request.language) &&
            settings.variant == request.variant)
            return &file;
    }
    return nullptr;
}

Request request_for(const std::string& name, const VoicesOptions& options, const SynthesiserData& data,
                    const std::vector<VoiceFile>& files, const std::string& folder) {
    const std::string language = ascii_lower(name);
    const VoiceRate* const rate = rate_with(options.rate);
    Request result{file_name_for(language, options.variant, *rate), language, options.variant, rate, true};
    if (const VoiceFile* file = file_for(files, result))
        return {file->name, file->settings.language, file->settings.variant, rate, false};
    if (!data.has_language(language)) unknown_to_the_synthesiser("language", name, data.languages(), folder);
    return result;
}

Request request_of(const VoiceFile& file) {
    return {file.name, file.settings.language, file.settings.variant, file.rate, false};
}

// Every voice file with this rate that the synthesiser can speak, and every language that has none.
std::vector<Request> all_requests(const VoicesOptions& options, const SynthesiserData& data,
                                  const std::vector<VoiceFile>& files) {
    const VoiceRate* const rate = rate_with(options.rate);
    std::vector<Request> result;
    for (const VoiceFile& file : files)
        if (file.rate == rate && data.has_language(file.settings.language)) result.push_back(request_of(file));
    for (const std::string& language : data.languages()) {
        const Request request{file_name_for(language, "", *rate), language, "", rate, true};
        if (!file_for(files, request)) result.push_back(request);
    }
    return result;
}

// "nelva-en-us" for en-us-22i: the usual rate is not worth a word.
std::string id_for(const Request& request) {
    std::string name = ascii_lower(request.file_name);
    if (request.rate->suffix == usual_rate) name.resize(name.size() - usual_rate.size() - 1);
    return "nelva-" + name;
}

std::string shown_name(const Request& request, const VoiceLanguage& language) {
    std::string result = "Nelva " + language.english_name;
    if (!request.variant.empty()) result += ", " + request.variant;
    if (*request.rate->in_words) result += std::string(", ") + request.rate->in_words;
    return result;
}

// One lexicon for all voices of a language: whoever corrects a word means the word.
std::string lexicon_for(const Request& request, const VoicesOptions& options, const VoicePlaces& places) {
    if (options.lexicon) return *options.lexicon;
    if (places.editor.empty() || places.lexicons.empty()) return {};
    return path_in(places.lexicons, request.language + ".pls");
}

KeyData token_of(const Request& request, const VoiceLanguage& language, const SynthesiserData& data,
                 const VoicesOptions& options, const VoicePlaces& places) {
    const std::string name = options.name.empty() ? shown_name(request, language) : options.name;
    const std::string lexicon = lexicon_for(request, options, places);
    const std::string& folder = request.is_new ? places.new_voices : places.voices;
    KeyData token;
    token.values[""] = name;
    token.values["CLSID"] = nelva_class_text;
    token.values["libPath"] = places.data;
    token.values["voxPath"] = path_in(folder, request.file_name);
    if (!lexicon.empty()) token.values["lexPath"] = lexicon;
    if (!places.editor.empty()) token.values["dictEditorPath"] = places.editor;
    auto attributes = std::make_shared<KeyData>();
    attributes->values["Name"] = name;
    attributes->values["Language"] = language.attribute();
    attributes->values["Vendor"] = vendor;
    attributes->values["Gender"] = data.gender(request.variant);
    attributes->values["Age"] = "Adult";
    token.keys["Attributes"] = attributes;
    return token;
}

PlannedVoice plan(const Request& request, const VoiceLanguage& language, const SynthesiserData& data,
                  const VoicesOptions& options, const VoicePlaces& places) {
    PlannedVoice result;
    result.id = id_for(request);
    result.token = token_of(request, language, data, options, places);
    result.file = *result.token.string("voxPath");
    if (request.is_new) result.file_text = text_of_voice_file(language.english_name, request.language, request.variant);
    return result;
}

VoiceLanguage language_chosen(const VoicesOptions& options) {
    if (const auto language = voice_language_from_ids(options.langid)) return *language;
    throw HostError("'" + options.langid + "' is no list of Windows' language ids", E_INVALIDARG,
                    "give hexadecimal numbers with ';' between them, such as '409;9'");
}

std::vector<PlannedVoice> plan_all(const VoicesOptions& options, const VoicePlaces& places, const SynthesiserData& data,
                                   const std::vector<VoiceFile>& files, std::vector<std::string>* notes) {
    std::vector<PlannedVoice> result;
    std::string unnumbered;
    for (const Request& request : all_requests(options, data, files)) {
        if (const auto language = voice_language(request.language))
            result.push_back(plan(request, *language, data, options, places));
        else
            unnumbered += " " + request.language;
    }
    if (!unnumbered.empty()) notes->push_back("left out, since Windows has no number for the language:" + unnumbered);
    return result;
}

}  // namespace

std::vector<PlannedVoice> plan_voices(const VoicesOptions& options, const VoicePlaces& places,
                                      std::vector<std::string>* notes) {
    const SynthesiserData data(places.data);
    const std::vector<VoiceFile> files = voice_files(places.voices, notes);
    if (options.all) return plan_all(options, places, data, files, notes);
    if (!options.variant.empty() && !data.has_variant(options.variant))
        unknown_to_the_synthesiser("variant", options.variant, data.variants(), places.data);
    std::vector<PlannedVoice> result;
    for (const std::string& name : options.names) {
        const Request request = request_for(name, options, data, files, places.data);
        const auto language =
            options.langid.empty() ? voice_language(request.language) : std::optional(language_chosen(options));
        if (!language)
            throw HostError("Windows has no number for the language '" + request.language + "'", SPERR_NOT_FOUND,
                            "give one that hosts shall take it for, with --langid");
        result.push_back(plan(request, *language, data, options, places));
    }
    return result;
}

namespace {

// True for a voice of another engine: nothing of ours has such a class.
bool is_foreign(const Voice& voice) {
    CLSID number;
    return parse_class_id(voice.value("CLSID"), &number) && !voice.is_nelva();
}

void write_voice_file(const PlannedVoice& voice) {
    const std::string folder = folder_of(voice.file);
    try {
        make_folder(folder);
        OutputFile file(voice.file);
        file.write(voice.file_text);
        file.close();
    } catch (const HostError& error) {
        cannot_write("the voice file of '" + voice.id + "'", "'" + folder + "'", error.code());
    }
}

}  // namespace

void add_voice(PlannedVoice voice, const VoicesOptions& options, const VoicePlaces& places) {
    std::vector<std::string> ignored;
    const std::vector<Voice> voices = voices_in(places.store, &ignored);
    const Voice* before = voice_with_id(voices, voice.id);
    if (before && is_foreign(*before))
        throw HostError("the id '" + voice.id + "' is another engine's voice (" + before->place + ")", already_exists,
                        "remove that one first");
    if (before && !options.lexicon && !before->value("lexPath").empty())
        voice.token.values["lexPath"] = before->value("lexPath");
    if (!voice.file_text.empty()) write_voice_file(voice);
    const std::string* lexicon = voice.token.string("lexPath");
    if (lexicon && !options.lexicon) make_folder(folder_of(*lexicon));
    write_voice(places.store, voice.id, voice.token);
}

void take_voice_away(const Voice& voice, const VoicePlaces& places) {
    if (is_foreign(voice))
        throw HostError("the voice '" + voice.id + "' is another engine's (" + voice.place + ")", E_ACCESSDENIED,
                        "remove it with the program that brought it");
    const std::string file = voice.value("voxPath");
    remove_voice(places.store, voice.id);
    if (file.empty() || !is_written_by_us(file)) return;
    std::vector<std::string> ignored;
    for (const Voice& other : find_voices(&ignored))
        if (equal_ignoring_case(other.value("voxPath"), file)) return;
    for (const Voice& other : voices_in(places.store, &ignored))
        if (equal_ignoring_case(other.value("voxPath"), file)) return;
    std::error_code error;
    std::filesystem::remove(tts::path_of(file), error);
}

}  // namespace host
