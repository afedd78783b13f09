// The table of measurements.
#include "tools/listening/measurements.h"

namespace listening {

const std::vector<Measurement>& all_measurements() {
    static const std::vector<Measurement> all = {{"script", "words not read", "words", measure_scripts},
                                                 {"words", "without event", "words", measure_words},
                                                 {"stray", "sound without word", "sounds", measure_stray_sound},
                                                 {"times", "early or late", "words", measure_word_times},
                                                 {"sentences", "sentences cut", "sentences", measure_sentences},
                                                 {"spelled", "spelled signs", "signs", measure_signs_spelled},
                                                 {"alone", "signs alone", "signs", measure_signs_alone},
                                                 {"borders", "clicks", "borders", measure_borders},
                                                 {"silence", "silence", "rules", measure_silences},
                                                 {"waits", "first samples", "waits", measure_waits}};
    return all;
}

}  // namespace listening
