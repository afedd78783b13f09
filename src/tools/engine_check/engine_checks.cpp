// The checks, one function each. See engine_checks.h.
#include "tools/engine_check/engine_checks.h"

#include <algorithm>
#include <cstdint>
#include <thread>

#include "tools/engine_check/findings.h"
#include "tools/engine_check/speaking.h"

namespace engine_check {
namespace {

const char* const three_sentences =
    "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\"><mark name=\"P0\"/>"
    "One sentence stands first. <mark name=\"middle\"/>The second follows it &amp; is longer. "
    "Now caf\xC3\xA9 and the third one.<mark name=\"last one\"/></speak>";

void check_loading(const Bench& bench) {
    const tts_handle handle = bench.engine.create();
    if (handle == nullptr) return bench.findings.fault("tts_create gives null: " + bench.message());
    bench.message();
    const tts_voice voice = bench.load(handle, bench.arguments.lib_path, bench.arguments.vox_path);
    if (voice == nullptr)
        bench.findings.fault("tts_load_voice gives null: " + bench.message());
    else
        bench.engine.unload_voice(voice);
    bench.engine.destroy(handle);
}

void check_failing_voice(const Bench& bench) {
    const tts_handle handle = bench.engine.create();
    const tts_voice voice = bench.load(handle, "/no/such/folder", "/no/such/voice-22i");
    if (voice == nullptr) {
        bench.findings.require(!bench.message().empty(), "tts_errmsg says nothing about a voice that cannot be loaded");
    } else {
        bench.findings.note("a voice of files that do not exist is loaded all the same");
        bench.engine.unload_voice(voice);
    }
    bench.engine.destroy(handle);
}

void check_records(const Bench& bench) {
    const Voice voice(bench);
    Speaking speaking(bench, voice.get(), three_sentences);
    const Heard& heard = speaking.rest();
    bench.findings.require(heard.samples > 0, "no samples come");
    bench.findings.require(heard.samples == 0 || heard.any_sound, "all samples are silent");
    if (heard.words.empty()) bench.findings.note("no word events: hosts cannot show what is spoken");
    if (heard.sentences.empty()) bench.findings.note("no sentence events");
    for (const std::string& word : heard.words)
        bench.findings.require(word.find_first_of("<>") == std::string::npos,
                               "the word " + quoted(word) + " holds a tag");
    bench.findings.require(!speaking.step(), "after the end tts_streamer_synth gives a record again");
    bench.message();
}

void check_marks(const Bench& bench) {
    const Voice voice(bench);
    Speaking speaking(bench, voice.get(), three_sentences);
    const std::vector<std::string> wanted = {"P0", "middle", "last one"};
    const auto& marks = speaking.rest().marks;
    for (const std::string& mark : wanted) {
        const auto times = std::count(marks.begin(), marks.end(), mark);
        if (times != 1) bench.findings.fault("the mark " + quoted(mark) + " comes " + std::to_string(times) + " times");
    }
    if (marks.size() == wanted.size())
        bench.findings.require(marks == wanted, "the marks do not come in the order of the document");
}

void check_chunks(const Bench& bench) {
    const Voice voice(bench);
    std::vector<std::string> words;
    for (const std::uint32_t samples : {usual_samples, 1u, 100u, 1000000u}) {
        Speaking speaking(bench, voice.get(), "<speak>One two three. Four.</speak>");
        const Heard& heard = speaking.rest(samples);
        if (samples == usual_samples) words = heard.words;
        if (samples == usual_samples && heard.most_in_record > 10 * usual_samples)
            bench.findings.note("a record holds " + std::to_string(heard.most_in_record) + " samples where " +
                                std::to_string(samples) + " were asked for: stopping and skipping are slow then");
        bench.findings.require(heard.words == words, "other words come when " + std::to_string(samples) +
                                                         " samples are asked for at a time than with 2205");
    }
}

void check_again(const Bench& bench) {
    const Voice voice(bench);
    const auto words = [&] { return Speaking(bench, voice.get(), three_sentences).rest().words; };
    bench.findings.require(words() == words(), "the same document gives other words the second time");
}

void check_abandoning(const Bench& bench) {
    const Voice voice(bench);
    { Speaking never_asked(bench, voice.get(), three_sentences); }
    {
        Speaking left_early(bench, voice.get(), three_sentences);
        left_early.step();
    }
    Speaking whole(bench, voice.get(), three_sentences);
    bench.findings.require(whole.rest().samples > 0, "after a document that was left early nothing is spoken");
}

// Speaks the first record, jumps, and gives the rest.
Heard after_jump(const Bench& bench, tts_voice voice, std::int32_t count, bool& jumped) {
    Speaking speaking(bench, voice, three_sentences);
    speaking.step();
    jumped = speaking.jump(count);
    speaking.heard() = Heard();
    return speaking.rest();
}

void check_jumps(const Bench& bench) {
    const Voice voice(bench);
    const auto all = Speaking(bench, voice.get(), three_sentences).rest().sentences;
    struct Row {
        std::int32_t count;
        std::size_t goal;
        const char* name;
    };
    for (const Row& row : {Row{0, 0, "to the start of the sentence"}, Row{1, 1, "one sentence forward"},
                           Row{-1, 0, "back beyond the first sentence"}, Row{1000, 2, "beyond the last sentence"},
                           Row{-2147483647 - 1, 0, "as far back as can be"}, Row{2147483647, 2, "as far as can be"}}) {
        bool jumped = false;
        const Heard heard = after_jump(bench, voice.get(), row.count, jumped);
        if (!jumped) {
            bench.findings.note(std::string("the jump ") + row.name + " is refused");
            continue;
        }
        if (all.size() != 3) continue;
        const std::string goes = heard.sentences.empty() ? "none" : quoted(heard.sentences[0]);
        bench.findings.require(!heard.sentences.empty() && heard.sentences[0] == all[row.goal],
                               std::string("the jump ") + row.name + " goes to the sentence " + goes + ", not to " +
                                   quoted(all[row.goal]));
    }
    if (all.size() != 3) bench.findings.note("without three sentence events nobody sees where jumps go");
}

void check_documents(const Bench& bench) {
    const Voice voice(bench);
    for (const char* document :
         {"", " \n ", "plain words", "<speak></speak>", "<speak>not <b>closed", "</x> & < > <",
          "<speak>a<mark name=\"q\"w\"/>b", "\xF0\x9F\x98\x80 \xE4\xBD\xA0\xE5\xA5\xBD\xE3\x80\x82",
          "\xFF\xFE\x80 bytes", "<speak><prosody rate=\"9e99\" pitch=\"x\" volume=\"-1\">odd</prosody></speak>"}) {
        if (voice.get() == nullptr) return;
        std::string copy = document;
        const tts_streamer probe = bench.engine.start(voice.get(), copy.c_str(), -1.0f);
        if (probe == nullptr) {
            bench.findings.require(!bench.message().empty(),
                                   "tts_errmsg says nothing about a document that is refused");
            bench.findings.note("the document " + quoted(document) + " is refused: " + bench.message());
            continue;
        }
        bench.engine.stop(probe);
        Speaking(bench, voice.get(), document).rest();
    }
}

void check_lexicon(const Bench& bench) {
    const Voice voice(bench);
    bench.engine.dict_cleanup(nullptr);
    bench.engine.dict_cleanup(voice.get());
    if (bench.engine.dict_load(voice.get(), "/no/such/lexicon.pls") == 0)
        bench.findings.note("a lexicon that does not exist is loaded all the same");
    if (!bench.arguments.lexicon.empty() && bench.engine.dict_load(voice.get(), bench.arguments.lexicon.c_str()) != 0)
        bench.findings.fault("the lexicon cannot be loaded: " + bench.message());
    Speaking speaking(bench, voice.get(), three_sentences);
    bench.findings.require(speaking.rest().samples > 0, "after loading lexicons nothing is spoken");
    bench.engine.dict_cleanup(voice.get());
}

void check_two_voices(const Bench& bench) {
    const Voice one(bench), other(bench);
    const auto words = Speaking(bench, one.get(), three_sentences).rest().words;
    Speaking first(bench, one.get(), three_sentences), second(bench, other.get(), three_sentences);
    bool more = true;
    for (int i = 0; more && i < 100000; ++i) {
        const bool a = first.step(), b = second.step();
        more = a || b;
    }
    bench.findings.require(!more, "two voices that speak in turns do not end");
    bench.findings.require(first.heard().words == words && second.heard().words == words,
                           "two voices that speak in turns do not give the words that one gives alone");
}

void check_threads(const Bench& bench) {
    const Voice voice(bench);
    const auto words = Speaking(bench, voice.get(), three_sentences).rest().words;
    std::vector<std::string> there;
    std::thread([&] { there = Speaking(bench, voice.get(), three_sentences).rest().words; }).join();
    bench.findings.require(there == words, "a voice speaks otherwise on another thread than that which loaded it");
}

void check_lives(const Bench& bench) {
    for (int i = 0; i < 10; ++i) {
        const tts_handle unused = bench.engine.create();
        bench.findings.require(unused != nullptr, "tts_create gives null after some uses");
        if (unused != nullptr) bench.engine.destroy(unused);
        const Voice voice(bench);
        Speaking(bench, voice.get(), "<speak>Again.</speak>").step();
    }
}

struct Check {
    const char* name;
    void (*run)(const Bench& bench);
};

constexpr Check checks[] = {{"a voice is loaded and unloaded", check_loading},
                            {"a voice that does not exist", check_failing_voice},
                            {"records, events and the end", check_records},
                            {"marks", check_marks},
                            {"records of other sizes", check_chunks},
                            {"the same document twice", check_again},
                            {"documents left early", check_abandoning},
                            {"jumps", check_jumps},
                            {"odd documents", check_documents},
                            {"lexicons", check_lexicon},
                            {"two voices in turns", check_two_voices},
                            {"another thread", check_threads},
                            {"many lives", check_lives}};

}  // namespace

int run_checks(const EngineFunctions& engine, const VoiceArguments& voice, const CheckListener& listener) {
    int failed = 0;
    for (const Check& check : checks) {
        CheckResult result{check.name, {}, {}};
        listener.begins(result.name);
        Findings findings(result);
        check.run({engine, voice, findings});
        listener.ended(result);
        if (result.faults.empty()) continue;
        ++failed;
        if (check.run == check_loading) break;
    }
    return failed;
}

}  // namespace engine_check
