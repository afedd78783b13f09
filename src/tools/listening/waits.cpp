// How long first samples take, in processor time, and next to another voice in time by the clock. See measurements.h.
// The figures depend on the machine, so there are no faults; what is compared is the first time with later ones.
// Windows has no processor time that is fine enough: std::clock is the time by the clock there.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include "tools/listening/measurements.h"

namespace listening {
namespace {

using Clock = std::chrono::steady_clock;

double processor_ms() { return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC; }

double clock_ms() { return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count(); }

// Until the first samples of the document have come.
double wait_for_first(const Subject& subject, const ListenedVoice& voice, const std::string& body, double (*now)()) {
    const std::string document = document_of(subject.language, body).text;
    const double begin = now();
    double end = begin;
    voice.speak(document, usual_samples, [&end, now](const Recording& recording) {
        end = now();
        return recording.samples.empty();
    });
    return end - begin;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double usual_wait(const Subject& subject, const std::string& body, double (*now)()) {
    std::vector<double> waits;
    for (int i = 0; i < 21; ++i) waits.push_back(wait_for_first(subject, subject.voice, body, now));
    return median(waits);
}

// The longest of some waits for a letter while another voice speaks the whole text.
double wait_next_to_another(const Subject& subject, const std::string& letter) {
    const ListenedVoice other(subject.engine, subject.lib_path, subject.vox_path);
    std::atomic<bool> stop = false;
    std::thread speaker([&] {
        const std::string document = document_of(subject.language, escaped(subject.text)).text;
        while (!stop) other.speak(document, usual_samples, [&stop](const Recording&) { return !stop; });
    });
    double longest = 0;
    for (int i = 0; i < 30; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        longest = std::max(longest, wait_for_first(subject, subject.voice, letter, clock_ms));
    }
    stop = true;
    speaker.join();
    return longest;
}

}  // namespace

Result measure_waits(const Subject& subject) {
    Result result;
    const std::vector<Token> words = tokens_of(subject.text);
    if (words.empty()) return result;
    const std::string text = escaped(subject.text), letter = escaped(characters_of(words[0].text)[0]);
    const ListenedVoice fresh(subject.engine, subject.lib_path, subject.vox_path);
    const double first = wait_for_first(subject, fresh, text, processor_ms);
    const double again = usual_wait(subject, text, processor_ms);
    const double one = usual_wait(subject, letter, processor_ms);
    const double alone = usual_wait(subject, letter, clock_ms), beside = wait_next_to_another(subject, letter);
    char figure[120];
    std::snprintf(figure, sizeof figure, "%.1f ms, again %.1f, a letter %.1f, beside a voice +%.1f", first, again, one,
                  std::max(0.0, beside - alone));
    result.checked = 4;
    result.figure = figure;
    return result;
}

}  // namespace listening
