// Steps where the prosody changes inside a sentence. See measurements.h.
#include <algorithm>
#include <array>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double reach = 15;        // ms on each side of the mark belong to the border
constexpr double around = 150;      // ms on each side are compared with it
constexpr double tolerance = 1.05;  // rounding of samples

// An element that changes the prosody, and by how much it may make all steps larger.
struct Change {
    const char* name;
    const char* open;
    const char* close;
    double gain;
};
constexpr std::array<Change, 6> changes = {{{"volume down", "<prosody volume=\"40\">", "</prosody>", 1},
                                            {"volume up", "<prosody volume=\"+6dB\">", "</prosody>", 2},
                                            {"rate", "<prosody rate=\"1.6\">", "</prosody>", 1.2},
                                            {"slow rate", "<prosody rate=\"0.4\">", "</prosody>", 1.2},
                                            {"emphasis", "<emphasis level=\"strong\">", "</emphasis>", 1.6},
                                            {"pitch", "<prosody pitch=\"+40%\">", "</prosody>", 1.4}}};

// Six words of the text: the change is over the third and the fourth.
std::string body_of(const std::vector<Token>& words, std::size_t first, const char* open, const char* close) {
    std::string body;
    for (std::size_t i = 0; i < 6; ++i) {
        if (i == 2) body += std::string("<mark name=\"begin\"/>") + open;
        if (i == 4) body += std::string(close) + "<mark name=\"end\"/>";
        body += escaped(words[(first + i) % words.size()].text) + " ";
    }
    return body;
}

// The steepest steps at a mark and on both sides of it.
struct Steps {
    bool heard = false;
    int at = 0, beside = 0;
};

Steps steps_at(const Subject& subject, const Recording& recording, const std::string& mark) {
    for (const Event& event : recording.events) {
        if (event.type != TTS_EVENT_MARK || event.label != mark) continue;
        const auto place = static_cast<std::size_t>(event.sample);
        const std::size_t near = subject.samples(reach), far = subject.samples(around);
        const Span at = {place < near ? 0 : place - near, place + near};
        const int before = steepest_step(recording.samples, {place < far ? 0 : place - far, at.begin});
        const int after = steepest_step(recording.samples, {at.end, place + far});
        return {true, steepest_step(recording.samples, at), std::max(before, after)};
    }
    return {};
}

// What the words would have at the border without a change counts as speech too: a word may begin with a sharp sound.
void compare(const Change& change, const Steps& plain, const Steps& changed, Result& result, double& worst) {
    if (!plain.heard || !changed.heard) return;
    const double usual = std::max({1.0, static_cast<double>(changed.beside), plain.at * change.gain});
    const double ratio = changed.at / usual;
    ++result.checked;
    worst = std::max(worst, ratio);
    if (ratio > tolerance)
        result.fault(std::string("at a change of ") + change.name + " a step is " + whole(ratio * 100) +
                     "% of the steepest beside it");
}

}  // namespace

Result measure_borders(const Subject& subject) {
    Result result;
    double worst = 0;
    const std::vector<Token> words = tokens_of(subject.text);
    if (words.size() < 6) return result;
    for (std::size_t i = 0; i < subject.most; ++i) {
        const Recording plain = subject.speak(body_of(words, i * 3, "", ""));
        for (const Change& change : changes) {
            const Recording changed = subject.speak(body_of(words, i * 3, change.open, change.close));
            for (const char* mark : {"begin", "end"})
                compare(change, steps_at(subject, plain, mark), steps_at(subject, changed, mark), result, worst);
        }
    }
    result.figure = "worst " + whole(worst * 100) + "%";
    return result;
}

}  // namespace listening
