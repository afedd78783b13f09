// Reading and looking up lexicons. See lexicon.h.
#include "tts_engine/lexicon.h"

#include <expat.h>
#include <ucd/ucd.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <memory>
#include <new>
#include <stdexcept>

#include "tts_engine/characters.h"
#include "tts_engine/composition.h"
#include "tts_engine/file_names.h"
#include "tts_engine/sentence.h"

namespace tts {
namespace {

constexpr std::size_t largest_file = std::size_t{64} << 20;
constexpr std::size_t most_words = 32;
constexpr std::string_view pls = "http://www.w3.org/2005/01/pronunciation-lexicon ";
constexpr std::string_view case_attribute = "urn:nelva:lexicon case";
constexpr std::string_view language_attribute = "http://www.w3.org/XML/1998/namespace lang";

// Without differences of case, and without invisible characters. The two small sigmas are one.
std::string folded(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Decoded decoded = decode_utf8(text);
        text.remove_prefix(decoded.length);
        if (decoded.code == 0 || is_invisible(decoded.code)) continue;
        const auto small = static_cast<char32_t>(ucd_tolower(decoded.code));
        append_utf8(result, small == 0x3C2 ? 0x3C3 : small);
    }
    return result;
}

std::string primary(std::string_view language) { return folded(language.substr(0, language.find('-'))); }

// The words of a grapheme, as a sentence of it has them: composed.
std::vector<std::string> words_of(std::string_view grapheme) {
    SentenceCutter cutter;
    while (!grapheme.empty()) {
        const Decoded decoded = decode_utf8(grapheme);
        grapheme.remove_prefix(decoded.length);
        if (decoded.code != 0) cutter.add({decoded.code, 0, 0});
    }
    cutter.finish();
    std::vector<std::string> words;
    for (const Sentence& sentence : cutter.ready())
        for (const Token& token : sentence.tokens) {
            std::string& word = words.emplace_back();
            for (std::uint32_t i = token.first; i < token.last; ++i) append_utf8(word, sentence.text[i].code);
        }
    return words;
}

void join(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

std::string joined(std::span<const std::string> words) {
    std::string text;
    for (const std::string& word : words) join(text, word);
    return text;
}

}  // namespace

void Lexicon::add(const std::vector<std::string>& graphemes, const Pronunciation& pronunciation,
                  std::string_view language, bool exact) {
    for (const std::string& grapheme : graphemes) {
        const std::vector<std::string> words = words_of(grapheme);
        if (words.empty() || words.size() > most_words) continue;
        const std::string written = joined(words);
        entries_[folded(written)].push_back({primary(language), exact ? written : std::string(), pronunciation});
        std::size_t& longest = longest_from_[folded(words[0])];
        longest = std::max(longest, words.size());
        longest_ = std::max(longest_, words.size());
    }
}

const Lexicon::Pronunciation* Lexicon::match(const std::string& key, std::span<const std::string> words,
                                             std::string_view language) const {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return nullptr;
    const std::string own = primary(language);
    for (const Entry& entry : found->second) {
        if (!entry.language.empty() && entry.language != own) continue;
        if (entry.exact.empty() || entry.exact == joined(words)) return &entry.pronunciation;
    }
    return nullptr;
}

Lexicon::Match Lexicon::find(std::span<const std::string> words, std::string_view language) const {
    if (words.empty()) return {};
    const auto first = longest_from_.find(folded(words[0]));
    if (first == longest_from_.end()) return {};
    for (std::size_t count = std::min(first->second, words.size()); count > 0; --count) {
        const auto part = words.first(count);
        if (const Pronunciation* said = match(folded(joined(part)), part, language)) return {count, said};
    }
    return {};
}

namespace {

// One lexicon on its way from expat.
class Parser {
public:
    Parser(const std::string& name, Lexicon& lexicon)
        : name_(name), lexicon_(lexicon), parser_(XML_ParserCreateNS(nullptr, ' ')) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), on_start, on_end);
        XML_SetCharacterDataHandler(parser_.get(), on_text);
        XML_SetStartDoctypeDeclHandler(parser_.get(), on_doctype);
    }

    void parse(std::string_view text) {
        constexpr std::size_t piece = 1 << 16;
        do {
            const auto part = text.substr(0, piece);
            text.remove_prefix(part.size());
            const XML_Status status =
                XML_Parse(parser_.get(), part.data(), static_cast<int>(part.size()), text.empty());
            if (failure_) std::rethrow_exception(failure_);
            if (status == XML_STATUS_OK) continue;
            const XML_Error error = XML_GetErrorCode(parser_.get());
            if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
            fail(XML_ErrorString(error));
        } while (!text.empty());
    }

private:
    struct Free {
        void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
    };

    // What of a lexicon, or a lexeme in it, holds for its pronunciations.
    struct Scope {
        std::string language;
        bool ipa = true;
        bool exact = false;
    };

    [[noreturn]] void fail(const std::string& reason) const {
        throw std::runtime_error(name_ + ":" + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ": " + reason);
    }

    // Nothing may be thrown through expat: the exception waits until XML_Parse returns.
    template <typename Action>
    void guarded(Action action) {
        if (failure_) return;
        try {
            action();
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    static Parser& of(void* data) { return *static_cast<Parser*>(data); }
    static void XMLCALL on_start(void* data, const XML_Char* name, const XML_Char** attributes) {
        of(data).guarded([&] { of(data).start(name, attributes); });
    }
    static void XMLCALL on_end(void* data, const XML_Char*) {
        of(data).guarded([&] { of(data).end(); });
    }
    static void XMLCALL on_text(void* data, const XML_Char* text, int size) {
        of(data).guarded([&] {
            if (of(data).collects_) of(data).text_.append(text, static_cast<std::size_t>(size));
        });
    }
    static void XMLCALL on_doctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int own) {
        of(data).guarded([&] {
            if (own) of(data).fail("a lexicon may not declare entities or elements of its own");
        });
    }

    static const char* value_of(const XML_Char** attributes, std::string_view name) {
        for (; *attributes != nullptr; attributes += 2)
            if (name == attributes[0]) return attributes[1];
        return nullptr;
    }

    void read_scope(Scope& scope, const XML_Char** attributes) const {
        if (const char* language = value_of(attributes, language_attribute)) scope.language = language;
        if (const char* alphabet = value_of(attributes, "alphabet")) scope.ipa = alphabet == std::string_view("ipa");
        const char* matching = value_of(attributes, case_attribute);
        if (matching == nullptr) return;
        scope.exact = matching == std::string_view("exact");
        if (!scope.exact && matching != std::string_view("any")) fail("case must be \"exact\" or \"any\"");
    }

    // The name of a PLS element, without its namespace; empty for elements of others.
    static std::string_view local(std::string_view name) {
        if (name.starts_with(pls)) return name.substr(pls.size());
        return name.find(' ') == std::string_view::npos ? name : std::string_view();
    }

    void start(std::string_view full_name, const XML_Char** attributes) {
        ++depth_;
        const std::string_view name = local(full_name);
        if (depth_ == 1) {
            if (name != "lexicon") fail("this is no pronunciation lexicon (PLS)");
            read_scope(lexicon_scope_, attributes);
        } else if (depth_ == 2 && name == "lexeme") {
            in_lexeme_ = true;
            scope_ = lexicon_scope_;
            read_scope(scope_, attributes);
            graphemes_.clear();
            has_said_ = preferred_ = false;
        } else if (depth_ == 3 && in_lexeme_ && (name == "grapheme" || name == "phoneme" || name == "alias")) {
            collects_ = true;
            element_ = name;
            text_.clear();
            const char* prefer = value_of(attributes, "prefer");
            prefer_ = prefer != nullptr && prefer == std::string_view("true");
            const char* alphabet = value_of(attributes, "alphabet");
            ipa_ = alphabet == nullptr ? scope_.ipa : alphabet == std::string_view("ipa");
        }
    }

    void end() {
        if (depth_ == 3 && collects_) {
            collects_ = false;
            if (element_ == "grapheme")
                graphemes_.push_back(text_);
            else
                take_pronunciation();
        } else if (depth_ == 2 && in_lexeme_) {
            in_lexeme_ = false;
            if (graphemes_.empty()) fail("this lexeme has no grapheme");
            if (has_said_) lexicon_.add(graphemes_, said_, scope_.language, scope_.exact);
        }
        --depth_;
    }

    void take_pronunciation() {
        const bool phoneme = element_ == "phoneme";
        if (phoneme && !ipa_) return;
        if (text_.find_first_not_of(" \t\r\n") == std::string::npos) return;
        if (has_said_ && (preferred_ || !prefer_)) return;
        said_ = {phoneme ? Lexicon::Kind::ipa : Lexicon::Kind::alias, text_};
        has_said_ = true;
        preferred_ = prefer_;
    }

    const std::string& name_;
    Lexicon& lexicon_;
    std::unique_ptr<XML_ParserStruct, Free> parser_;
    std::exception_ptr failure_;
    unsigned depth_ = 0;
    bool in_lexeme_ = false;
    bool collects_ = false;  // inside an element whose text counts
    std::string element_;
    std::string text_;
    bool prefer_ = false;
    bool ipa_ = true;
    Scope lexicon_scope_;
    Scope scope_;
    std::vector<std::string> graphemes_;
    Lexicon::Pronunciation said_;
    bool has_said_ = false;
    bool preferred_ = false;
};

}  // namespace

Lexicon parse_lexicon(std::string_view text, const std::string& name) {
    Lexicon lexicon;
    Parser(name, lexicon).parse(text);
    return lexicon;
}

std::string read_lexicon_text(const std::string& name) {
    std::ifstream file(path_of(name), std::ios::binary);
    if (!file) throw std::runtime_error("lexicon \"" + name + "\" cannot be opened");
    std::string text;
    char buffer[16384];
    while (text.size() <= largest_file && (file.read(buffer, sizeof buffer), file.gcount() > 0))
        text.append(buffer, static_cast<std::size_t>(file.gcount()));
    if (file.bad()) throw std::runtime_error("lexicon \"" + name + "\" cannot be read");
    if (text.size() > largest_file) throw std::runtime_error("lexicon \"" + name + "\" is too large");
    return text;
}

}  // namespace tts
