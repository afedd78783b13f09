// The rewriting layer and the passes over rich text, on a megabyte of prose with 10,000 matches and a record every 50
// bytes: `sub` and the scan beside a bare loop over pcre_exec (and other libraries, where they are at hand), rich text
// beside plain text, and four times the text beside the text.

#include <pcre.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cstdlib>
#include <functional>
#include <list>
#include <memory>
#include <regex>

#include "ratio_table.h"
#include "regexp/regexp.h"
#include "regexp/replacer.h"
#include "rewriting_texts.h"

#ifdef NELVA_BENCH_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif
#ifdef NELVA_BENCH_RE2
#include <re2/re2.h>
#endif
#ifdef NELVA_BENCH_ICU
#include <unicode/regex.h>
#endif

namespace {

constexpr std::size_t record_distance = 50;

const char* const dozen =
    "monday|tuesday|wednesday|thursday|friday|saturday|sunday|january|february|april|october|december";

// One substitution, as the different libraries write it.
struct Substitution {
    std::string name;
    std::string pattern;
    std::string rewrite;         // with \1
    std::string dollar_rewrite;  // with $1
    bool caseless = false;
};

const std::vector<Substitution> substitutions = {
    {"literal", "engine", "machine", "machine"}, {"rare_literal", "zebra", "horse", "horse"},
    {"ing", "(\\w+)ing", "\\1ed", "$1ed"},       {"vowels", "[aeiou]", "*", "*"},
    {"decimals", "\\d+\\.\\d+", "some", "some"}, {"dozen", dozen, "someday", "someday", true},
};

regexp::RE_Options options_of(const Substitution& wanted) { return regexp::RE_Options().set_caseless(wanted.caseless); }

// ---- The yardstick: pcre_exec in a loop, UTF-8 checked once --------------------------------------------------------

struct PcreFree {
    void operator()(pcre* compiled) const { pcre_free(compiled); }
};

class BareLoop {
public:
    BareLoop(const std::string& pattern, bool caseless) {
        const char* error = nullptr;
        int offset = 0;
        compiled_.reset(
            pcre_compile(pattern.c_str(), PCRE_UTF8 | (caseless ? PCRE_CASELESS : 0), &error, &offset, nullptr));
    }

    template <class OnMatch>
    void run(const std::string& text, OnMatch on_match) const {
        int offsets[48];
        const int size = static_cast<int>(text.size());
        int options = 0;
        for (int at = 0; pcre_exec(compiled_.get(), nullptr, text.data(), size, at, options, offsets, 48) > 0;) {
            on_match(offsets);
            at = offsets[1];
            options = PCRE_NO_UTF8_CHECK;
        }
    }

private:
    std::unique_ptr<pcre, PcreFree> compiled_;
};

// The value is the text in front of "\1", if that is there, the group, and the text behind it.
std::string bare_substitute(const Substitution& wanted, const std::string& text) {
    const std::size_t reference = wanted.rewrite.find("\\1");
    const bool has_group = reference != std::string::npos;
    const std::string tail = has_group ? wanted.rewrite.substr(reference + 2) : wanted.rewrite;
    std::string out;
    int copied = 0;
    BareLoop(wanted.pattern, wanted.caseless).run(text, [&](const int* offsets) {
        out.append(text, static_cast<std::size_t>(copied), static_cast<std::size_t>(offsets[0] - copied));
        if (has_group) {
            out.append(text, static_cast<std::size_t>(offsets[2]), static_cast<std::size_t>(offsets[3] - offsets[2]));
        }
        out += tail;
        copied = offsets[1];
    });
    out.append(text, static_cast<std::size_t>(copied), std::string::npos);
    return out;
}

// ---- Other libraries -----------------------------------------------------------------------------------------------

std::string std_substitute(const Substitution& wanted, const std::string& text) {
    const auto flags = wanted.caseless ? std::regex::ECMAScript | std::regex::icase : std::regex::ECMAScript;
    return std::regex_replace(text, std::regex(wanted.pattern, flags), wanted.dollar_rewrite);
}

#ifdef NELVA_BENCH_PCRE2
std::string pcre2_substitute_all(const Substitution& wanted, const std::string& text) {
    const auto bytes = [](const std::string& string) { return reinterpret_cast<PCRE2_SPTR>(string.data()); };
    int error = 0;
    PCRE2_SIZE offset = 0;
    pcre2_code* const code =
        pcre2_compile(bytes(wanted.pattern), wanted.pattern.size(), PCRE2_UTF | (wanted.caseless ? PCRE2_CASELESS : 0),
                      &error, &offset, nullptr);
    std::string out(2 * text.size(), '\0');
    PCRE2_SIZE size = out.size();
    pcre2_substitute(code, bytes(text), text.size(), 0, PCRE2_SUBSTITUTE_GLOBAL, nullptr, nullptr,
                     bytes(wanted.dollar_rewrite), wanted.dollar_rewrite.size(),
                     reinterpret_cast<PCRE2_UCHAR*>(out.data()), &size);
    out.resize(size);
    pcre2_code_free(code);
    return out;
}
#endif

#ifdef NELVA_BENCH_RE2
std::string re2_substitute(const Substitution& wanted, const std::string& text) {
    RE2::Options options;
    options.set_case_sensitive(!wanted.caseless);
    std::string out(text);
    RE2::GlobalReplace(&out, RE2(wanted.pattern, options), wanted.rewrite);
    return out;
}
#endif

#ifdef NELVA_BENCH_ICU
// From UTF-8 and back, as a program with UTF-8 text has to.
std::string icu_substitute(const Substitution& wanted, const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString subject = icu::UnicodeString::fromUTF8(text);
    icu::RegexMatcher matcher(icu::UnicodeString::fromUTF8(wanted.pattern), subject,
                              wanted.caseless ? UREGEX_CASE_INSENSITIVE : 0, status);
    std::string out;
    matcher.replaceAll(icu::UnicodeString::fromUTF8(wanted.dollar_rewrite), status).toUTF8String(out);
    return out;
}
#endif

// ---- Substitution --------------------------------------------------------------------------------------------------

using Body = std::function<void(benchmark::State&)>;

// Short repetitions, but many: one that nothing disturbs is what is looked for.
void add(const std::string& name, const Body& body) {
    repeated(benchmark::RegisterBenchmark(name.c_str(), body))->MinTime(0.02)->Repetitions(21);
}

void require(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "rewriting_bench: %s\n", what.c_str());
    std::exit(2);
}

std::string substituted(const Substitution& wanted, std::string text) {
    regexp::RE::sub(wanted.pattern, wanted.rewrite, &text, options_of(wanted));
    return text;
}

Speechtext substituted(const Substitution& wanted, Speechtext text) {
    regexp::RE::sub(wanted.pattern, wanted.rewrite, &text, options_of(wanted));
    return text;
}

// All libraries have to do the same work.
void add_library(const std::string& library, const Substitution& wanted, const std::string& text,
                 std::string (*substitute)(const Substitution&, const std::string&)) {
    require(substitute(wanted, text) == bare_substitute(wanted, text), library + " gives another text: " + wanted.name);
    add(library + "_" + wanted.name, [wanted, &text, substitute](benchmark::State& state) {
        for (auto _ : state) {
            const std::string out = substitute(wanted, text);
            benchmark::DoNotOptimize(out.data());
        }
    });
}

// The text that is rewritten is copied, and the result freed, outside of the time that counts.
template <class Text>
void add_own(const std::string& name, const Substitution& wanted, const Text& text) {
    add(name, [wanted, &text](benchmark::State& state) {
        const regexp::RE_Options options = options_of(wanted);
        for (auto _ : state) {
            state.PauseTiming();
            Text rewritten(text);
            state.ResumeTiming();
            regexp::RE::sub(wanted.pattern, wanted.rewrite, &rewritten, options);
            state.PauseTiming();
            rewritten = Text();
            state.ResumeTiming();
        }
    });
}

void add_substitutions(const std::string& plain, const Speechtext& rich) {
    for (const Substitution& wanted : substitutions) {
        const std::string expected = bare_substitute(wanted, plain);
        require(substituted(wanted, plain) == expected, "sub gives another text: " + wanted.name);
        require(substituted(wanted, rich).as_string() == expected, "sub gives another rich text: " + wanted.name);
        add_library("bare", wanted, plain, bare_substitute);
        add_own("string_" + wanted.name, wanted, plain);
        add_own("speechtext_" + wanted.name, wanted, rich);
#ifdef NELVA_BENCH_PCRE2
        add_library("pcre2", wanted, plain, pcre2_substitute_all);
#endif
#ifdef NELVA_BENCH_RE2
        add_library("re2", wanted, plain, re2_substitute);
#endif
#ifdef NELVA_BENCH_ICU
        add_library("icu", wanted, plain, icu_substitute);
#endif
        add_library("std", wanted, plain, std_substitute);
    }
}

// ---- Scanning ------------------------------------------------------------------------------------------------------

struct Scan {
    std::string name;
    std::string pattern;
};

const std::vector<Scan> scans = {
    {"literal", "(engine)"}, {"ing", "(\\w+)ing"}, {"decimals", "(\\d+\\.\\d+)"}, {"words", "(\\w+)"}};

long scan_bare(const BareLoop& loop, const std::string& text) {
    long bytes = 0;
    loop.run(text, [&bytes](const int* offsets) { bytes += offsets[3] - offsets[2]; });
    return bytes;
}

long scan_own(regexp::RE& re, const Speechtext& text) {
    long bytes = 0;
    regexp::Match rest(text), found;
    while (re.FindAndConsume(&rest, &found)) bytes += found.size();
    return bytes;
}

void add_scans(const std::string& plain, const Speechtext& rich) {
    for (const Scan& scan : scans) {
        const auto loop = std::make_shared<BareLoop>(scan.pattern, false);
        const auto re = std::make_shared<regexp::RE>(scan.pattern);
        require(scan_own(*re, rich) == scan_bare(*loop, plain), "the scan finds something else: " + scan.name);
        add("scan_bare_" + scan.name, [loop, &plain](benchmark::State& state) {
            for (auto _ : state) benchmark::DoNotOptimize(scan_bare(*loop, plain));
        });
        add("scan_own_" + scan.name, [re, &rich](benchmark::State& state) {
            for (auto _ : state) benchmark::DoNotOptimize(scan_own(*re, rich));
        });
    }
}

// ---- Four times the text -------------------------------------------------------------------------------------------

// A text with what is done to it.
struct Job {
    Speechtext text;
    std::list<replacement> edits;
    std::list<textattrmod<std::string>> roles;

    explicit Job(std::size_t size) : text(with_records(prose(size), record_distance)) {
        regexp::RE number("(\\d+\\.\\d+)");
        regexp::Match rest(text), found;
        while (number.FindAndConsume(&rest, &found)) {
            const int start = static_cast<int>(found.data() - text.data());
            edits.emplace_back(start, static_cast<std::size_t>(found.size()), std::string("a number"));
            roles.emplace_back(text, found, "type:number", false);
        }
    }
};

using Jobs = std::list<Job>;

// The jobs of the three columns: one text, four such texts one after the other, and one text of four times the size.
// The records of a megabyte of text fill 15 megabytes, which large caches hold and four times as much they do not. So
// that caches are no matter, the last two need the same memory, and every job begins with cold caches.
struct Columns {
    Jobs one, four_times_one, four;

    explicit Columns(std::size_t size) {
        one.emplace_back(size);
        for (int i = 0; i < 4; ++i) four_times_one.emplace_back(size);
        four.emplace_back(4 * size);
    }
};

bool other_paragraph(const SpeechtextTextAttrs* previous, const SpeechtextTextAttrs* next) {
    return !Textlocation::same_paragraph(previous->location, next->location);
}

bool other_sentence(const SpeechtextTextAttrs* previous, const SpeechtextTextAttrs* next) {
    return previous->location != next->location;
}

// Fills the caches with what no job needs.
void cool_caches() {
    constexpr std::size_t cache_line = 64;
    static std::vector<char> other(std::size_t{256} << 20);
    for (std::size_t i = 0; i < other.size(); i += cache_line) ++other[i];
    benchmark::DoNotOptimize(other.data());
}

// The results live until all jobs are done, and their end counts.
template <class Operation>
void run_jobs(const Jobs& jobs, Operation operation) {
    using Result = decltype(operation(jobs.front()));
    std::list<std::unique_ptr<Result>> results;
    for (const Job& job : jobs) results.emplace_back(new Result(operation(job)));
    benchmark::DoNotOptimize(results.size());
}

template <class Operation>
void add_operation(const std::string& name, const Columns& columns, Operation operation) {
    const auto body = [operation](const Jobs& jobs) {
        return [&jobs, operation](benchmark::State& state) {
            for (auto _ : state) {
                state.PauseTiming();
                cool_caches();
                state.ResumeTiming();
                run_jobs(jobs, operation);
            }
        };
    };
    add(name + "_1", body(columns.one));
    add(name + "_1111", body(columns.four_times_one));
    add(name + "_4", body(columns.four));
}

// Only the pass counts, not the making of the copy that it works on.
void finalize_copies(const Jobs& jobs, benchmark::State& state) {
    state.PauseTiming();
    std::list<Speechtext> texts;
    for (const Job& job : jobs) texts.push_back(job.text);
    cool_caches();
    state.ResumeTiming();
    for (Speechtext& text : texts) text.finalize(true);
    state.PauseTiming();
    texts.clear();
    state.ResumeTiming();
}

void add_finalize(const std::string& name, const Jobs& jobs) {
    add(name, [&jobs](benchmark::State& state) {
        for (auto _ : state) finalize_copies(jobs, state);
    });
}

void add_linear(const Columns& columns) {
    add_finalize("finalize_1", columns.one);
    add_finalize("finalize_1111", columns.four_times_one);
    add_finalize("finalize_4", columns.four);
    add_operation("adjust_whitespace", columns, [](const Job& job) { return job.text.adjust_whitespace(); });
    add_operation("split_paragraphs", columns,
                  [](const Job& job) { return job.text.split_by_contextattrs(other_paragraph); });
    add_operation("split_sentences", columns,
                  [](const Job& job) { return job.text.split_by_contextattrs(other_sentence); });
    add_operation("do_replacements", columns, [](const Job& job) { return do_replacements(job.text, job.edits); });
    add_operation("do_setroles", columns, [](const Job& job) { return do_setroles(job.text, job.roles); });
    add_operation("copy", columns, [](const Job& job) { return Speechtext(job.text); });
}

// ---- The table -----------------------------------------------------------------------------------------------------

// Keeps what the rows point to.
class Table {
public:
    void row(const std::string& measure, const std::string& numerator, const std::string& denominator, double limit,
             double scale = 1) {
        rows_.push_back({keep(measure), keep(numerator), keep(denominator), scale, limit});
    }
    const std::vector<Ratio>& rows() const { return rows_; }

private:
    const char* keep(const std::string& name) { return kept_.emplace_back(name).c_str(); }

    std::list<std::string> kept_;
    std::vector<Ratio> rows_;
};

Table wanted_ratios() {
    Table table;
    for (const Substitution& wanted : substitutions) {
        const std::string& name = wanted.name;
        const std::string title = "sub, " + name + ": ";
        table.row(title + "string against pcre_exec in a loop", "string_" + name, "bare_" + name, 1.5);
        table.row(title + "Speechtext against string", "speechtext_" + name, "string_" + name, 3);
        for (const char* library : {"pcre2", "re2", "icu", "std"}) {
            table.row(title + library + " against pcre_exec in a loop", library + ("_" + name), "bare_" + name, 0);
        }
    }
    for (const Scan& scan : scans) {
        table.row("scan of a Speechtext, " + scan.name + ": against pcre_exec in a loop", "scan_own_" + scan.name,
                  "scan_bare_" + scan.name, 2);
    }
    for (const char* name : {"finalize", "adjust_whitespace", "split_paragraphs", "split_sentences", "do_replacements",
                             "do_setroles", "copy"}) {
        const std::string row(name);
        table.row(row + ": 4 MB against four texts of 1 MB, times 4", row + "_4", row + "_1111", 4.5, 0.25);
        table.row(row + ": 4 MB against one text of 1 MB", row + "_4", row + "_1", 4.5);
    }
    return table;
}

}  // namespace

int main(int argc, char** argv) {
#ifdef __GLIBC__
    // Memory that was freed stays with the process. Otherwise the C library gives it back to the system whenever the
    // end of its heap happens to be free, and taking it again then costs several times what is to be measured.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
    const std::string plain = prose(megabyte);
    const Speechtext rich = with_records(plain, record_distance);
    const Columns columns(megabyte);
    add_substitutions(plain, rich);
    add_scans(plain, rich);
    add_linear(columns);
    const Table table = wanted_ratios();
    return run_benchmarks_and_print_ratios(argc, argv, table.rows());
}
