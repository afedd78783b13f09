// Silence as it is asked for. See measurements.h.
#include <algorithm>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double tolerance = 30;  // ms

// Two short sentences of the text's own words.
struct Sentences {
    std::string one, other;
};

Sentences short_sentences(const Subject& subject) {
    const std::vector<Token> words = tokens_of(subject.text);
    const auto sentence = [&words](std::size_t first) {
        std::string text;
        for (std::size_t i = 0; i < 4; ++i) text += (i == 0 ? "" : " ") + words[(first + i) % words.size()].text;
        return escaped(text);
    };
    return {sentence(0), sentence(4)};
}

void check_record_sizes(const Subject& subject, const std::string& name, const std::string& body, Result& result) {
    const Samples usual = subject.speak(body).samples;
    for (const std::uint32_t size : {37u, 441u, 4000u, 1000000u}) {
        const Samples other = subject.speak(body, size).samples;
        ++result.checked;
        if (other.size() != usual.size())
            result.fault(name + " has " + std::to_string(usual.size()) + " samples in records of 2205, " +
                         std::to_string(other.size()) + " in records of " + std::to_string(size));
        else if (other != usual)
            result.fault(name + " sounds different in records of " + std::to_string(size));
    }
}

void check_no_break(const Subject& subject, const Sentences& text, Result& result) {
    const auto pause = [&](const std::string& between) {
        return longest_pause(subject.speak(text.one + between + text.other + ".").samples);
    };
    const std::size_t without = pause(" "), with = pause(" <break time=\"0\"/>");
    ++result.checked;
    if (with > without + subject.samples(tolerance))
        result.fault("<break time=\"0\"/> is a pause of " + whole(subject.milliseconds(with)) + " ms, without it " +
                     whole(subject.milliseconds(without)) + " ms");
}

void check_paragraph(const Subject& subject, const Sentences& text, Result& result) {
    const std::size_t sentence =
        longest_pause(subject.speak("<s>" + text.one + ".</s><s>" + text.other + ".</s>").samples);
    const std::size_t paragraph =
        longest_pause(subject.speak("<p>" + text.one + ".</p><p>" + text.other + ".</p>").samples);
    ++result.checked;
    if (paragraph <= sentence)
        result.fault("a paragraph's pause of " + whole(subject.milliseconds(paragraph)) +
                     " ms is no longer than a sentence's");
}

void check_events_at_the_end(const Subject& subject, const Sentences& text, Result& result) {
    const Recording heard = subject.speak(text.one + ".<mark name=\"last\"/>");
    ++result.checked;
    const auto beyond = std::count_if(heard.events.begin(), heard.events.end(),
                                      [&heard](const Event& event) { return event.sample > heard.samples.size(); });
    if (heard.misplaced > 0 || beyond > 0)
        result.fault("an event after the last sample is not at offset 0 of a record without samples");
}

}  // namespace

Result measure_silences(const Subject& subject) {
    Result result;
    if (tokens_of(subject.text).empty()) return result;
    const Sentences text = short_sentences(subject);
    check_record_sizes(subject, "a sentence", text.one + ".", result);
    check_record_sizes(subject, "a slow sentence", "<prosody rate=\"0.3\">" + text.one + ".</prosody>", result);
    check_record_sizes(subject, "a fast sentence",
                       "<prosody rate=\"3\">" + text.one + ". " + text.other + ".</prosody>", result);
    check_no_break(subject, text, result);
    check_paragraph(subject, text, result);
    check_events_at_the_end(subject, text, result);
    return result;
}

}  // namespace listening
