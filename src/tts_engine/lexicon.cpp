// Reading and looking up lexicons. See lexicon.h.
#include "tts_engine/lexicon.h"

#include <expat.h>
#include <ucd/ucd.h>

#include <algorithm>
#include <exception>
#include <initializer_list>
#include <memory>
#include <new>
#include <stdexcept>

#include "tts_engine/characters.h"
#include "tts_engine/composition.h"
#include "tts_engine/sentence.h"

namespace tts {
namespace {

constexpr std::size_t most_marks = 1'500'000;
constexpr std::size_t most_marks_in_tag = 10'000;
constexpr std::size_t most_namespaces = 1000;
constexpr std::size_t most_foreign = 50'000;  // elements and attributes that PLS does not know
// Of graphemes that are not plain, with the cost of each beside its length.
constexpr std::size_t most_bytes_to_cut = std::size_t{8} << 20;
constexpr std::size_t bytes_of_a_cut = 16;
constexpr std::size_t most_words = 32;
constexpr std::size_t longest_grapheme = 2000;
constexpr std::size_t longest_pronunciation = 20000;
constexpr std::string_view pls = "http://www.w3.org/2005/01/pronunciation-lexicon ";
constexpr std::string_view case_attribute = "urn:nelva:lexicon case";
constexpr std::string_view id_attribute = "http://www.w3.org/XML/1998/namespace id";
constexpr std::string_view language_attribute = "http://www.w3.org/XML/1998/namespace lang";

// Appends a text without differences of case, and without invisible characters. The two small sigmas are one.
void append_folded(std::string& result, std::string_view text) {
    while (!text.empty()) {
        const char first = text.front();
        if (static_cast<unsigned char>(first) < 0x80) {
            text.remove_prefix(1);
            if (first != 0) result += first >= 'A' && first <= 'Z' ? static_cast<char>(first + 32) : first;
            continue;
        }
        const Decoded decoded = decode_utf8(text);
        text.remove_prefix(decoded.length);
        if (decoded.code == 0 || is_invisible(decoded.code)) continue;
        const auto small = static_cast<char32_t>(ucd_tolower(decoded.code));
        append_utf8(result, small == 0x3C2 ? 0x3C3 : small);
    }
}

std::string folded(std::string_view text) {
    std::string result;
    append_folded(result, text);
    return result;
}

std::string primary(std::string_view language) { return folded(language.substr(0, language.find('-'))); }

// Words with one blank between them.
struct Words {
    std::string text;
    std::size_t count = 0;

    void add(std::string_view word) {
        if (count++ > 0) text += ' ';
        text += word;
    }
};

// How many bytes a blank, a digit or a common letter takes at the start of a text: ASCII, U+00C0 to U+017F and U+0400
// to U+045F, which are all composed. 0 for anything else.
std::size_t plain_size(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const unsigned char small = first | 0x20;
    if ((small >= 'a' && small <= 'z') || (first >= '0' && first <= '9') || first == ' ') return 1;
    if (first < 0xC3 || text.size() < 2) return 0;
    const auto second = static_cast<unsigned char>(text[1]);
    if (second < 0x80 || second > 0xBF) return 0;
    if (first == 0xC3) return second == 0x97 || second == 0xB7 ? 0 : 2;  // the signs of multiplication and division
    if (first == 0xC4 || first == 0xC5 || first == 0xD0) return 2;
    return first == 0xD1 && second <= 0x9F ? 2 : 0;
}

// What nearly all graphemes are: each word is what is between two blanks.
bool is_plain(std::string_view grapheme) {
    while (!grapheme.empty()) {
        const std::size_t size = plain_size(grapheme);
        if (size == 0) return false;
        grapheme.remove_prefix(size);
    }
    return true;
}

void add_plain_words(Words& words, std::string_view grapheme) {
    while (!grapheme.empty()) {
        const std::size_t end = std::min(grapheme.find(' '), grapheme.size());
        if (end > 0) words.add(grapheme.substr(0, end));
        grapheme.remove_prefix(std::min(end + 1, grapheme.size()));
    }
}

// The words of a grapheme, as a sentence of it has them: composed.
Words words_of(std::string_view grapheme) {
    Words words;
    if (is_plain(grapheme)) {
        add_plain_words(words, grapheme);
        return words;
    }
    SentenceCutter cutter;
    while (!grapheme.empty()) {
        const Decoded decoded = decode_utf8(grapheme);
        grapheme.remove_prefix(decoded.length);
        if (decoded.code != 0) cutter.add({decoded.code, 0, 0});
    }
    cutter.finish();
    for (const Sentence& sentence : cutter.ready())
        for (const Token& token : sentence.tokens) {
            std::string word;
            for (std::uint32_t i = token.first; i < token.last; ++i) append_utf8(word, sentence.text[i].code);
            words.add(word);
        }
    return words;
}

std::string joined(std::span<const std::string> list) {
    Words words;
    for (const std::string& word : list) words.add(word);
    return std::move(words.text);
}

// `written` as it is counts only if `exact`.
void make_key(std::string& key, std::string_view written, std::string_view language, bool exact) {
    key.clear();
    append_folded(key, written);
    key += '\0';
    key += language;
    key += '\0';
    if (exact) key += written;
}

}  // namespace

void Lexicon::add_pronunciation(Kind kind, std::string_view text) {
    pronunciations_.push_back({kind, texts_.keep(text)});
}

void Lexicon::add_grapheme(std::string_view grapheme, std::string_view language, bool exact) {
    if (grapheme.size() > longest_grapheme) return;
    const Words words = words_of(grapheme);
    if (words.count == 0 || words.count > most_words) return;
    make_key(key_, words.text, language, exact);
    if (!entries_.add(key_).second) return;
    said_.push_back(static_cast<std::uint32_t>(pronunciations_.size() - 1));
    longest_ = std::max(longest_, words.count);
    if (words.count == 1) return;
    const auto [first, added] = firsts_.add(folded(words.text.substr(0, words.text.find(' '))));
    if (added) longest_from_.push_back(0);
    longest_from_[first] = std::max(longest_from_[first], static_cast<std::uint8_t>(words.count));
}

// Of the four kinds of entry that fit the one that was added first.
const Lexicon::Pronunciation* Lexicon::match(std::string_view written, std::string_view language) const {
    std::uint32_t first = StringTable::none;
    std::string key;
    for (const bool exact : {false, true}) {
        for (const std::string_view its : {std::string_view(), language}) {
            make_key(key, written, its, exact);
            first = std::min(first, entries_.find(key));
        }
    }
    return first == StringTable::none ? nullptr : &pronunciations_[said_[first]];
}

Lexicon::Match Lexicon::find(std::span<const std::string> words, std::string_view language) const {
    if (words.empty() || entries_.empty()) return {};
    const std::string its = primary(language);
    const std::uint32_t first = firsts_.empty() ? StringTable::none : firsts_.find(folded(words[0]));
    const std::size_t most = first == StringTable::none ? 1 : longest_from_[first];
    for (std::size_t count = std::min(most, words.size()); count > 0; --count) {
        if (const Pronunciation* said = match(joined(words.first(count)), its)) return {count, said};
    }
    return {};
}

namespace {

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> list) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

[[noreturn]] void fail_too_large(const std::string& name) {
    throw std::runtime_error(name + ": the lexicon is too large: it may have " + std::to_string(largest_lexicon >> 20) +
                             " MB, " + std::to_string(most_marks) + " tags, attributes and references, " +
                             std::to_string(most_marks_in_tag) + " of them in a tag");
}

// What takes time in XML, in any encoding that has ASCII in it: tags, attributes, references. A lexicon of 200,000
// words has 1.2 million.
bool has_too_many_marks(std::string_view text) {
    std::size_t marks = 0;
    while (!text.empty()) {
        const std::string_view tag = text.substr(0, std::max<std::size_t>(1, std::min(text.find('<', 1), text.size())));
        std::size_t in_tag = 1;
        for (const char c : tag) in_tag += (c == '=') + (c == '&');
        marks += in_tag;
        if (in_tag > most_marks_in_tag || marks > most_marks) return true;
        text.remove_prefix(tag.size());
    }
    return false;
}

// One lexicon on its way from expat.
class Parser {
public:
    Parser(const std::string& name, Lexicon& lexicon)
        : name_(name), lexicon_(lexicon), parser_(XML_ParserCreateNS(nullptr, ' ')) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), on_start, on_end);
        XML_SetStartDoctypeDeclHandler(parser_.get(), on_doctype);
        XML_SetStartNamespaceDeclHandler(parser_.get(), on_namespace);
    }

    // In one piece: expat begins a token that a piece cuts again with the next one.
    void parse(std::string_view text) {
        const XML_Status status = XML_Parse(parser_.get(), text.data(), static_cast<int>(text.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (status == XML_STATUS_OK) return;
        const XML_Error error = XML_GetErrorCode(parser_.get());
        if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
        fail(XML_ErrorString(error));
    }

private:
    struct Free {
        void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
    };

    // What of a lexicon, or a lexeme in it, holds for its pronunciations.
    struct Scope {
        std::string language;  // up to the first hyphen, in small letters
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
        of(data).guarded([&] { of(data).collect({text, static_cast<std::size_t>(size)}); });
    }
    static void XMLCALL on_doctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int own) {
        of(data).guarded([&] {
            if (own) of(data).fail("a lexicon may not declare entities or elements of its own");
        });
    }

    static void XMLCALL on_namespace(void* data, const XML_Char*, const XML_Char*) {
        of(data).guarded([&] {
            if (++of(data).namespaces_ > most_namespaces) of(data).fail("the lexicon declares too many namespaces");
        });
    }

    static const char* value_of(const XML_Char** attributes, std::string_view name) {
        for (; *attributes != nullptr; attributes += 2)
            if (name == attributes[0]) return attributes[1];
        return nullptr;
    }

    // Text outside of the elements that count goes nowhere. Nor does what is too long anyway.
    void collect_text(bool collects) {
        collects_ = collects;
        XML_SetCharacterDataHandler(parser_.get(), collects ? on_text : nullptr);
    }

    void collect(std::string_view text) {
        text_ += text;
        if (text_.size() > longest_pronunciation) XML_SetCharacterDataHandler(parser_.get(), nullptr);
    }

    void read_scope(Scope& scope, const XML_Char** attributes) const {
        if (const char* language = value_of(attributes, language_attribute)) scope.language = primary(language);
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

    // Expat keeps each name that it has met, and that takes longer than all else.
    void count_foreign(std::string_view name, const XML_Char** attributes) {
        foreign_ +=
            !is_one_of(name, {"lexeme", "grapheme", "phoneme", "alias", "example", "lexicon", "meta", "metadata"});
        for (; *attributes != nullptr; attributes += 2)
            foreign_ += !is_one_of(attributes[0], {"prefer", "role", "alphabet", "orthography", "version",
                                                   language_attribute, id_attribute, case_attribute});
        if (foreign_ > most_foreign) fail("the lexicon has too many elements and attributes that PLS does not know");
    }

    void start(std::string_view full_name, const XML_Char** attributes) {
        ++depth_;
        const std::string_view name = local(full_name);
        count_foreign(name, attributes);
        if (depth_ == 1) {
            if (name != "lexicon") fail("this is no pronunciation lexicon (PLS)");
            read_scope(lexicon_scope_, attributes);
        } else if (depth_ == 2 && name == "lexeme") {
            in_lexeme_ = true;
            scope_ = lexicon_scope_;
            read_scope(scope_, attributes);
            grapheme_count_ = 0;
            has_said_ = preferred_ = false;
        } else if (depth_ == 3 && in_lexeme_ && (name == "grapheme" || name == "phoneme" || name == "alias")) {
            collect_text(true);
            element_ = name[0];
            text_.clear();
            const char* prefer = value_of(attributes, "prefer");
            prefer_ = prefer != nullptr && prefer == std::string_view("true");
            const char* alphabet = value_of(attributes, "alphabet");
            ipa_ = alphabet == nullptr ? scope_.ipa : alphabet == std::string_view("ipa");
        }
    }

    void end() {
        if (depth_ == 3 && collects_) {
            collect_text(false);
            if (element_ == 'g')
                take_grapheme();
            else
                take_pronunciation();
        } else if (depth_ == 2 && in_lexeme_) {
            in_lexeme_ = false;
            if (grapheme_count_ == 0) fail("this lexeme has no grapheme");
            if (has_said_) add_lexeme();
        }
        --depth_;
    }

    void add_lexeme() {
        lexicon_.add_pronunciation(said_kind_, said_);
        for (std::size_t i = 0; i < grapheme_count_; ++i)
            lexicon_.add_grapheme(graphemes_[i], scope_.language, scope_.exact);
    }

    // The strings of the list are used again for the next lexeme.
    void take_grapheme() {
        if (!is_plain(text_)) bytes_to_cut_ += std::min(text_.size(), longest_grapheme) + bytes_of_a_cut;
        if (bytes_to_cut_ > most_bytes_to_cut) fail("the lexicon has too many long graphemes");
        if (grapheme_count_ == graphemes_.size()) graphemes_.emplace_back();
        graphemes_[grapheme_count_++].swap(text_);
    }

    void take_pronunciation() {
        const bool phoneme = element_ == 'p';
        if ((phoneme && !ipa_) || text_.size() > longest_pronunciation) return;
        if (text_.find_first_not_of(" \t\r\n") == std::string::npos) return;
        if (has_said_ && (preferred_ || !prefer_)) return;
        said_kind_ = phoneme ? Lexicon::Kind::ipa : Lexicon::Kind::alias;
        said_.swap(text_);
        has_said_ = true;
        preferred_ = prefer_;
    }

    const std::string& name_;
    Lexicon& lexicon_;
    std::unique_ptr<XML_ParserStruct, Free> parser_;
    std::exception_ptr failure_;
    std::size_t namespaces_ = 0;
    std::size_t foreign_ = 0;
    std::size_t bytes_to_cut_ = 0;
    unsigned depth_ = 0;
    bool in_lexeme_ = false;
    bool collects_ = false;  // inside an element whose text counts
    char element_ = 0;       // the first letter of its name
    std::string text_;
    bool prefer_ = false;
    bool ipa_ = true;
    Scope lexicon_scope_;
    Scope scope_;
    std::vector<std::string> graphemes_;
    std::size_t grapheme_count_ = 0;  // of those; what follows is of other lexemes
    Lexicon::Kind said_kind_ = Lexicon::Kind::ipa;
    std::string said_;
    bool has_said_ = false;
    bool preferred_ = false;
};

}  // namespace

Lexicon parse_lexicon(std::string_view text, const std::string& name) {
    if (text.size() > largest_lexicon || has_too_many_marks(text)) fail_too_large(name);
    Lexicon lexicon;
    Parser(name, lexicon).parse(text);
    return lexicon;
}

}  // namespace tts
