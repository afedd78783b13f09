// The two readers of markup. See markup.h.
#include "tts_engine/markup.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "tts_engine/characters.h"

namespace tts {
namespace {

constexpr std::size_t first_feed = 512;  // so that a long document starts to sound as soon as a short one
constexpr std::size_t usual_feed = 4096;
constexpr std::size_t text_step = 2048;  // of the tolerant reader, in bytes

// What expat may tell in one step, in bytes. A document's own entities can make much out of few bytes, and what is told
// is kept in memory until it is spoken.
constexpr std::size_t most_told = 16384;

// How much a document's own entities may stand for: this many bytes, and beyond that this many times what was read.
constexpr unsigned long long entities_free = 65536;
constexpr float entities_factor = 16;

bool is_markup_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool is_name_start(char c) {
    const auto u = static_cast<unsigned char>(c);
    return ((u | 0x20) >= 'a' && (u | 0x20) <= 'z') || u == '_' || u == ':' || u >= 0x80;
}

bool is_name_char(char c) { return is_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

// The character that `&...;` at the start of `text` stands for, and how many bytes it takes.
std::optional<Decoded> decode_reference(std::string_view text) {
    static constexpr std::pair<std::string_view, char32_t> named[] = {
        {"&amp;", U'&'}, {"&lt;", U'<'}, {"&gt;", U'>'}, {"&quot;", U'"'}, {"&apos;", U'\''}};
    for (const auto& [name, code] : named)
        if (text.substr(0, name.size()) == name) return Decoded{code, name.size()};
    if (text.size() < 4 || text[1] != '#') return std::nullopt;
    const bool hex = text[2] == 'x' || text[2] == 'X';
    const unsigned base = hex ? 16 : 10;
    std::size_t i = hex ? 3 : 2;
    char32_t code = 0;
    const std::size_t first = i;
    for (; i < text.size() && i < first + 10; ++i) {
        const char c = text[i];
        const unsigned digit = c >= '0' && c <= '9'                     ? static_cast<unsigned>(c - '0')
                               : (c | 0x20) >= 'a' && (c | 0x20) <= 'f' ? static_cast<unsigned>((c | 0x20) - 'a' + 10)
                                                                        : 99u;
        if (digit >= base) break;
        code = std::min<char32_t>(code * base + digit, 0x110000);
    }
    if (i == first || i >= text.size() || text[i] != ';') return std::nullopt;
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = U' ';
    return Decoded{code, i + 1};
}

std::string decode_value(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size();) {
        if (value[i] == '&') {
            if (const auto reference = decode_reference(value.substr(i))) {
                append_utf8(result, reference->code);
                i += reference->length;
                continue;
            }
        }
        result.push_back(value[i++]);
    }
    return result;
}

}  // namespace

// ---- The well-formed part

class MarkupReader::Expat {
public:
    Expat(std::string_view document, MarkupHandler& handler) : document_(document), handler_(handler) {
        parser_ = XML_ParserCreate("UTF-8");
        if (parser_ == nullptr) throw std::bad_alloc();
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser_, entities_free);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser_, entities_factor);
        // Expat would wait with what it has until there is twice as much. step() does that where it is needed.
        XML_SetReparseDeferralEnabled(parser_, XML_FALSE);
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, on_start, on_end);
        XML_SetCharacterDataHandler(parser_, on_text);
        XML_SetCdataSectionHandler(parser_, on_cdata_start, on_cdata_end);
    }
    ~Expat() { XML_ParserFree(parser_); }
    Expat(const Expat&) = delete;
    Expat& operator=(const Expat&) = delete;

    enum class Result { more, end, broken };

    Result step() {
        told_ = 0;
        if (!pending_.empty()) {
            tell_pending();
            return Result::more;
        }
        const XML_Status status = parse();
        if (failure_) std::rethrow_exception(failure_);
        if (status == XML_STATUS_ERROR) {
            if (XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
            return Result::broken;
        }
        if (status == XML_STATUS_SUSPENDED) return Result::more;
        // Expat looks at an unfinished tag from its start each time, so it gets more and more of one that does not end.
        feed_ = understood_ == understood_before_ ? std::min<std::size_t>(feed_ * 2, 1u << 24) : usual_feed;
        return fed_ == document_.size() ? Result::end : Result::more;
    }

    // Where the first byte stands that no handler was told of, and whether it stands in a CDATA section.
    std::size_t understood() const { return understood_; }
    bool in_cdata() const { return in_cdata_; }

    std::size_t position() const { return suspended_ ? understood_ : fed_; }

private:
    // Goes on with what expat has, or gives it more.
    XML_Status parse() {
        if (std::exchange(suspended_, false)) return XML_ResumeParser(parser_);
        const std::size_t count = std::min(feed_, document_.size() - fed_);
        const char* const part = document_.data() + fed_;
        fed_ += count;
        understood_before_ = understood_;
        return XML_Parse(parser_, part, static_cast<int>(count), fed_ == document_.size());
    }

    // Counts what is told. Above the limit expat stops until the next step.
    void count_told(std::size_t bytes) {
        told_ += bytes;
        if ((told_ < most_told && pending_.empty()) || suspended_) return;
        suspended_ = XML_StopParser(parser_, XML_TRUE) == XML_STATUS_OK;
    }

    // Nothing may be thrown through expat: the exception waits until XML_Parse returns.
    template <typename Action>
    void guarded(Action action) {
        if (failure_) return;
        try {
            begin_ = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_));
            end_ = begin_ + static_cast<std::size_t>(XML_GetCurrentByteCount(parser_));
            action();
            understood_ = std::max(understood_, end_);
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_, XML_FALSE);
        }
    }

    static void XMLCALL on_start(void* user, const XML_Char* name, const XML_Char** pairs) {
        auto* self = static_cast<Expat*>(user);
        self->guarded([&] {
            MarkupAttributes attributes;
            std::size_t size = element_size;
            for (; *pairs != nullptr; pairs += 2) {
                attributes.emplace_back(pairs[0], pairs[1]);
                size += attributes.back().second.size();
            }
            self->handler_.start_element(name, attributes);
            self->count_told(size);
        });
    }

    static void XMLCALL on_end(void* user, const XML_Char* name) {
        auto* self = static_cast<Expat*>(user);
        self->guarded([&] { self->handler_.end_element(name); });
    }

    static void XMLCALL on_text(void* user, const XML_Char* text, int length) {
        auto* self = static_cast<Expat*>(user);
        self->guarded([&] { self->pass_text({text, static_cast<std::size_t>(length)}); });
    }

    static void XMLCALL on_cdata_start(void* user) {
        auto* self = static_cast<Expat*>(user);
        self->guarded([&] { self->in_cdata_ = true; });
    }

    static void XMLCALL on_cdata_end(void* user) {
        auto* self = static_cast<Expat*>(user);
        self->guarded([&] { self->in_cdata_ = false; });
    }

    void pass_text(std::string_view text) {
        // Other text is that of a reference, or a line end in two bytes.
        is_written_ = document_.substr(begin_, text.size()) == text && (in_cdata_ || text[0] != '&');
        pending_ = is_written_ ? document_.substr(begin_, text.size()) : text;
        tell_pending();
        if (is_written_) end_ = begin_;
        if (is_written_ || pending_.empty()) return;
        // The rest waits for the next step, and expat's text does not live until then.
        kept_ = pending_;
        pending_ = kept_;
    }

    // Tells as much of the pending text as this step still may.
    void tell_pending() {
        const std::string_view text = first_characters(pending_, most_told - std::min(told_, most_told - 4));
        if (is_written_) {
            handler_.text(text, static_cast<std::uint32_t>(begin_));
            begin_ += text.size();
            understood_ = std::max(understood_, begin_);
        } else {
            tell_characters(text);
        }
        pending_.remove_prefix(text.size());
        count_told(text.size());
    }

    void tell_characters(std::string_view text) {
        while (!text.empty()) {
            const Decoded decoded = decode_utf8(text);
            handler_.character(decoded.code, static_cast<std::uint32_t>(begin_), static_cast<std::uint32_t>(end_));
            text.remove_prefix(decoded.length);
        }
    }

    static constexpr std::size_t element_size = 16;  // what an element counts for, with its attributes' values

    std::string_view document_;
    MarkupHandler& handler_;
    XML_Parser parser_;
    std::exception_ptr failure_;
    std::size_t fed_ = 0;
    std::size_t feed_ = first_feed;
    std::size_t told_ = 0;      // in this step
    std::string_view pending_;  // text that expat has told and the handler has not got
    bool is_written_ = false;   // it is in the document as it is, from begin_ on
    std::string kept_;          // where it is if not
    bool suspended_ = false;    // expat has text that it has not read
    std::size_t understood_before_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t understood_ = 0;
    bool in_cdata_ = false;
};

// ---- The rest

class MarkupReader::Tolerant {
public:
    Tolerant(std::string_view document, MarkupHandler& handler, std::size_t start, bool in_cdata)
        : document_(document), handler_(handler), at_(start), in_cdata_(in_cdata) {
        if (start == 0 && document_.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3;
    }

    bool step() {
        if (at_ >= document_.size()) return false;
        if (in_cdata_) return cdata();
        const char c = document_[at_];
        if (c == '<' && markup()) return true;
        if (c == '&' && reference()) return true;
        text();
        return true;
    }

    std::size_t position() const { return at_; }

private:
    std::string_view rest() const { return document_.substr(at_); }

    // Passes text on up to the next thing that might not be text; at least one byte.
    void text() {
        std::size_t end = at_;
        const std::size_t limit = std::min(document_.size(), at_ + text_step);
        while (end < limit && (end == at_ || !at_text_end(end))) {
            const Decoded decoded = decode_utf8(document_.substr(end));
            if (decoded.code == 0) break;
            end += decoded.length;
        }
        if (end > at_) handler_.text(document_.substr(at_, end - at_), static_cast<std::uint32_t>(at_));
        at_ = end;
        while (at_ < document_.size() && decode_utf8(rest()).code == 0) ++at_;
    }

    bool cdata() {
        if (rest().substr(0, 3) == "]]>") {
            at_ += 3;
            in_cdata_ = false;
        } else {
            text();
        }
        return true;
    }

    bool at_text_end(std::size_t at) const {
        if (in_cdata_) return document_.substr(at, 3) == "]]>";
        return document_[at] == '<' || document_[at] == '&';
    }

    bool reference() {
        const auto decoded = decode_reference(rest().substr(0, 16));
        if (!decoded) return false;
        handler_.character(decoded->code, static_cast<std::uint32_t>(at_),
                           static_cast<std::uint32_t>(at_ + decoded->length));
        at_ += decoded->length;
        return true;
    }

    bool markup() {
        if (at_ + 1 >= document_.size()) return false;
        const char next = document_[at_ + 1];
        if (next == '!' || next == '?') return declaration();
        if (next == '/') return end_tag();
        return is_name_start(next) && start_tag();
    }

    bool declaration() {
        if (rest().substr(0, 9) == "<![CDATA[") {
            at_ += 9;
            in_cdata_ = true;
            return true;
        }
        if (rest().substr(0, 4) == "<!--") return pass_over("-->", 4, comment_ends_);
        if (rest().substr(0, 2) == "<?") return pass_over("?>", 2, instruction_ends_);
        return pass_over(">", 2, tag_ends_);
    }

    // Goes behind `terminator`. Where none follows, the markup is text, and `may_end` keeps that nobody looks again.
    bool pass_over(std::string_view terminator, std::size_t skip, bool& may_end) {
        if (!may_end) return false;
        const std::size_t found = document_.find(terminator, at_ + skip);
        may_end = found != std::string_view::npos;
        if (may_end) at_ = found + terminator.size();
        return may_end;
    }

    std::string_view name_at(std::size_t& at) const {
        const std::size_t begin = at;
        while (at < document_.size() && is_name_char(document_[at])) ++at;
        return document_.substr(begin, at - begin);
    }

    bool end_tag() {
        std::size_t at = at_ + 2;
        const std::string_view name = name_at(at);
        if (name.empty() || !pass_over(">", 2, tag_ends_)) return false;
        handler_.end_element(name);
        return true;
    }

    bool start_tag() {
        if (!tag_ends_) return false;
        std::size_t at = at_ + 1;
        const std::string_view name = name_at(at);
        MarkupAttributes attributes;
        bool empty = false;
        if (!read_attributes(at, attributes, empty)) {
            const std::size_t start = at_;
            if (!pass_over(">", 1, tag_ends_)) return false;
            empty = document_[at_ - 2] == '/' && at_ - 2 > start;
        } else {
            at_ = at;
        }
        handler_.start_element(name, attributes);
        if (empty) handler_.end_element(name);
        return true;
    }

    // Reads attributes up to and with the tag's `>`. False if there is no such end.
    bool read_attributes(std::size_t& at, MarkupAttributes& attributes, bool& empty) {
        while (at < document_.size()) {
            const char c = document_[at];
            if (c == '>') {
                empty = document_[at - 1] == '/';
                ++at;
                return true;
            }
            if (!is_name_start(c)) {
                if (c == '<') return false;
                ++at;
                continue;
            }
            const std::string_view name = name_at(at);
            while (at < document_.size() && is_markup_blank(document_[at])) ++at;
            if (at >= document_.size() || document_[at] != '=') continue;
            ++at;
            while (at < document_.size() && is_markup_blank(document_[at])) ++at;
            if (at >= document_.size()) return false;
            if (document_[at] != '"' && document_[at] != '\'') continue;
            std::string_view value;
            if (!read_value(at, value)) return false;
            attributes.emplace_back(name, decode_value(value));
        }
        return false;
    }

    // Reads the value that the quote at `at` opens and goes behind the quote that closes it.
    bool read_value(std::size_t& at, std::string_view& value) {
        const char quote = document_[at];
        bool& may_close = quote == '"' ? double_closes_ : single_closes_;
        if (!may_close) return false;
        bool tag_ended = false;
        for (std::size_t i = at + 1; i < document_.size(); ++i) {
            const char c = document_[i];
            if (c == quote && closes(i)) {
                value = document_.substr(at + 1, i - at - 1);
                at = i + 1;
                return true;
            }
            if (c == '>') tag_ended = true;
            // A tag's end and a new tag inside a value: rather, the value was never closed.
            if (c == '<' && tag_ended) return false;
        }
        may_close = false;
        return false;
    }

    bool closes(std::size_t quote) const {
        if (quote + 1 >= document_.size()) return true;
        const char next = document_[quote + 1];
        return is_markup_blank(next) || next == '/' || next == '>' || next == '?';
    }

    std::string_view document_;
    MarkupHandler& handler_;
    std::size_t at_;
    bool in_cdata_;
    // Whether from here on there may be an end of each kind.
    bool comment_ends_ = true;
    bool instruction_ends_ = true;
    bool tag_ends_ = true;
    bool double_closes_ = true;
    bool single_closes_ = true;
};

// ---- Both

MarkupReader::MarkupReader(std::string_view document, MarkupHandler& handler)
    : document_(document), handler_(handler), expat_(std::make_unique<Expat>(document, handler)) {}

MarkupReader::~MarkupReader() = default;

bool MarkupReader::step() {
    if (tolerant_) return tolerant_->step();
    switch (expat_->step()) {
        case Expat::Result::more:
            return true;
        case Expat::Result::end:
            break;
        case Expat::Result::broken:
            be_tolerant();
            return true;
    }
    tolerant_ = std::make_unique<Tolerant>(document_, handler_, document_.size(), false);
    expat_.reset();
    return false;
}

std::size_t MarkupReader::position() const { return expat_ ? expat_->position() : tolerant_->position(); }

void MarkupReader::be_tolerant() {
    if (!expat_) return;
    tolerant_ = std::make_unique<Tolerant>(document_, handler_, expat_->understood(), expat_->in_cdata());
    expat_.reset();
}

}  // namespace tts
