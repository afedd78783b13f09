// Random fragment lists, the same for the same seed.

#ifndef NELVA_TESTS_FRAGMENTS_RANDOM_FRAGMENTS_H
#define NELVA_TESTS_FRAGMENTS_RANDOM_FRAGMENTS_H

#include <random>

#include "fragments/fragment_list.h"

class RandomList {
public:
    enum class Kind {
        any,       // raw markup, lone surrogates, control characters: whatever a host could send
        writable,  // nothing that XML does not allow, and no markup
    };

    explicit RandomList(unsigned seed, Kind kind = Kind::any) : kind_(kind), random_(seed) {
        const int count = below(12);
        for (int i = 0; i < count; ++i) add_fragment();
    }

    FragmentList list;

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    WCHAR random_unit() {
        if (kind_ == Kind::writable) {
            static const WCHAR units[] = {'<', '>', '&', '"', '\'', '\t', '\n', '\v', 0x7F, 0xE9, 0x20AC, 0xFFFD};
            return below(3) == 0 ? units[below(12)] : static_cast<WCHAR>('a' + below(26));
        }
        switch (below(12)) {
            case 0:
                return static_cast<WCHAR>(0xD800 + below(0x400));
            case 1:
                return static_cast<WCHAR>(0xDC00 + below(0x400));
            case 2:
                return static_cast<WCHAR>(below(0x20));
            case 3:
                return static_cast<WCHAR>(0x80 + below(0x780));
            case 4:
                return static_cast<WCHAR>(0x800 + below(0xF800));
            case 5:
                return static_cast<WCHAR>("<>&\"'/"[below(6)]);
            default:
                return static_cast<WCHAR>(0x20 + below(0x60));
        }
    }

    // Stretches of one kind, so that runs of all lengths come about; some texts span several blocks.
    Wide random_text() {
        Wide text;
        const int parts = below(5);
        for (int i = 0; i < parts; ++i) {
            const int length = below(10) == 0 ? below(3000) : below(80);
            const int kind = below(4);
            for (int k = 0; k < length; ++k) {
                if (kind == 0) text.push_back(random_unit());
                if (kind == 1) text.push_back(static_cast<WCHAR>('a' + k % 26));
                if (kind == 2) text.push_back(static_cast<WCHAR>(0x4E00 + k));
                if (kind == 3) text += {static_cast<WCHAR>(0xD83D), static_cast<WCHAR>(0xDE00 + k % 0x40)};
            }
        }
        return text;
    }

    Wide random_markup() {
        static const Wide markups[] = {NELVA_WIDE("<b>"),      NELVA_WIDE("</sub>"),     NELVA_WIDE("<SPEAK a=\"b\">"),
                                       NELVA_WIDE("</speak>"), NELVA_WIDE("<a/> tail"),  NELVA_WIDE("none"),
                                       NELVA_WIDE(">"),        NELVA_WIDE("<s>in</s>x"), NELVA_WIDE("<spea>")};
        return below(4) == 0 ? random_text() : markups[below(9)];
    }

    int random_action() {
        const int action = below(10) < 5 ? 0 : below(9);
        return kind_ == Kind::writable && action == 6 ? 0 : action;
    }

    Wide random_text_for(int action) {
        if (action == 6) return random_markup();
        if (action == 3 && kind_ == Kind::writable) return NELVA_WIDE("place");
        return random_text();
    }

    void add_fragment() {
        static const Wide categories[] = {NELVA_WIDE("date_mdy"),     NELVA_WIDE("Date_"), NELVA_WIDE("TIME"),
                                          NELVA_WIDE("phone_number"), NELVA_WIDE("other"), Wide(300, 'x')};
        static const LANGID languages[] = {0, 0, 0x409, 0x407, 0x540A, 0x3FF};
        static const LONG numbers[] = {0, 0, 0, 3, -4, 0x7FFFFFFF, -0x7FFFFFFF - 1};
        const int action = random_action();
        SPVTEXTFRAG& fragment = list.add(action, random_text_for(action), random_());
        SPVSTATE& state = fragment.State;
        state.SilenceMSecs = random_();
        state.LangID = languages[below(6)];
        state.EmphAdj = numbers[below(7)];
        state.RateAdj = numbers[below(7)];
        state.PitchAdj.MiddleAdj = numbers[below(7)];
        if (below(3) == 0) state.Volume = random_();
        if (below(3) == 0) state.Context.pCategory = categories[below(6)].c_str();
        if (below(20) == 0) fragment.pTextStart = nullptr;
    }

    const Kind kind_;
    std::mt19937 random_;
};

#endif
