// What a measurement works with, and what it finds.
#ifndef NELVA_TOOLS_LISTENING_MEASUREMENT_H
#define NELVA_TOOLS_LISTENING_MEASUREMENT_H

#include <cstddef>
#include <string>
#include <vector>

#include "tools/listening/recording.h"
#include "tools/listening/text.h"

namespace listening {

// The voice and what it is to read. Everything outlives the measurements.
struct Subject {
    const EngineFunctions& engine;
    std::string lib_path, vox_path;
    const ListenedVoice& voice;
    std::string language;            // for xml:lang, and for hints of the language's own rules
    std::string text;                // a text in the voice's language, a paragraph a line
    std::vector<std::string> items;  // numbers, dates, prices and the like, one utterance each
    std::size_t most;                // of sentences, borders and the like, so many are enough

    Recording speak(const std::string& body, std::uint32_t samples = usual_samples) const {
        return voice.speak(document_of(language, body).text, samples);
    }
    std::size_t samples(double milliseconds) const {
        return static_cast<std::size_t>(milliseconds * voice.rate() / 1000);
    }
    double milliseconds(std::size_t count) const { return static_cast<double>(count) * 1000 / voice.rate(); }
};

struct Result {
    std::size_t checked = 0;
    std::size_t faults = 0;             // of those that were checked
    std::string figure;                 // the worst, or what is measured without a limit: "45 ms"
    std::vector<std::string> examples;  // the faults, in plain words

    void fault(const std::string& text) {
        ++faults;
        examples.push_back(text);
    }
};

inline std::string in_quotes(const std::string& text) { return "\"" + text + "\""; }

// Rounded to whole units.
inline std::string whole(double value) { return std::to_string(static_cast<long long>(value + 0.5)); }

// A measurement under its name, in the order of the table.
struct Measurement {
    const char* name;    // on the command line
    const char* title;   // above a table's column
    const char* counts;  // what `checked` and `faults` count
    Result (*run)(const Subject& subject);
};
const std::vector<Measurement>& all_measurements();

}  // namespace listening

#endif
