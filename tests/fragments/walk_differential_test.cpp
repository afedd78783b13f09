// The walk against a slow one that goes by the rules one character and one fragment at a time, over random lists.

#include <gtest/gtest.h>

#include <cmath>

#include "fragments/fragment_list.h"
#include "fragments/random_fragments.h"
#include "sapi/sapi_datakey.h"

namespace {

// ---- The slow walk: no run, no remembered state, each record offered to the text ----

std::string convert(const WCHAR* units, int count) {
    std::string bytes(static_cast<std::size_t>(3 * count + 1), '\0');
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, units, count, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

bool same_letters(std::string a, std::string b) {
    for (std::string* text : {&a, &b}) {
        for (char& c : *text) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return a == b;
}

class SlowWalk {
public:
    explicit SlowWalk(const SPVTEXTFRAG* fragments) {
        for (const SPVTEXTFRAG* fragment = fragments; fragment != nullptr; fragment = fragment->pNext) {
            set_language(*fragment);
            set_prosody(fragment->State);
            out.text += SpeechtextMark(next_mark_++, "P" + std::to_string(fragment->State.PitchAdj.MiddleAdj));
            set_say_as(fragment->State);
            out.text += attrs_;
            act(*fragment);
            previous_ = fragment;
        }
        out.positions.push_back(host_end_);
        out.result = 0;
    }

    Walked out;

private:
    void set_language(const SPVTEXTFRAG& fragment) {
        if (previous_ != nullptr && previous_->State.LangID == fragment.State.LangID) return;
        if (fragment.State.LangID == 0) {
            attrs_.set_language("en");
        } else if (char* code = lang_from_ms_langcode(fragment.State.LangID)) {
            attrs_.set_language(code);
            GlobalFree(code);
        }
    }

    void set_prosody(const SPVSTATE& state) {
        attrs_.emphasis.set_emphasis(state.EmphAdj == 0 ? "" : "moderate");
        const double rate_step = state.RateAdj < 0 ? 0.07 : 0.2;
        const auto rate = static_cast<float>(1.0 + double(float(state.RateAdj)) * rate_step);
        const auto volume = static_cast<float>(double(float(state.Volume)) * 0.01);
        const auto pitch = static_cast<float>(exp2(double(float(state.PitchAdj.MiddleAdj)) / 10.0));
        attrs_.prosody.set_prosody_absolute(0, pitch, rate, volume);
    }

    void set_say_as(const SPVSTATE& state) {
        char category[256];
        const int n = WideCharToMultiByte(CP_UTF8, 0, state.Context.pCategory, -1, category, 256, nullptr, nullptr);
        const std::string name = n == 0 ? "" : category;
        std::string value;
        if (state.eAction == SPVA_SpellOut) {
            value = "spell-out";
        } else if (same_letters(name.substr(0, 5), "date_")) {
            value = "date";
            attrs_.say_as.set_format(name.substr(5));
        } else if (same_letters(name, "time")) {
            value = "time";
        } else if (same_letters(name, "phone_number")) {
            value = "telephone";
        }
        attrs_.say_as.set_interpret_as(value);
    }

    void act(const SPVTEXTFRAG& fragment) {
        const int count = fragment.pTextStart == nullptr ? 0 : static_cast<int>(fragment.ulTextLen);
        switch (static_cast<int>(fragment.State.eAction)) {
            case 0:
            case 2:
            case 4:
                speak(fragment, count);
                break;
            case 1: {
                const std::string time = std::to_string(fragment.State.SilenceMSecs) + "ms";
                out.text += SpeechtextBreak(next_break_++, "", time);
                break;
            }
            case 3:
                if (count > 0) out.text += SpeechtextMark(next_mark_++, "B" + convert(fragment.pTextStart, count));
                break;
            case 6:
                pass_raw(fragment, count);
                break;
            default:
                break;
        }
    }

    void speak(const SPVTEXTFRAG& fragment, int count) {
        int p = 0;
        while (p < count) {
            const WCHAR* unit = fragment.pTextStart + p;
            const bool pair =
                count - p >= 2 && unit[0] >= 0xD800 && unit[0] <= 0xDBFF && unit[1] >= 0xDC00 && unit[1] <= 0xDFFF;
            const std::string bytes = convert(unit, pair ? 2 : 1);
            out.text.append(bytes.data(), bytes.size());
            out.positions.insert(out.positions.end(), bytes.size(), fragment.ulTextSrcOffset + static_cast<ULONG>(p));
            p += pair ? 2 : 1;
        }
        host_end_ = fragment.ulTextSrcOffset + fragment.ulTextLen;
    }

    void pass_raw(const SPVTEXTFRAG& fragment, int count) {
        if (count == 0) return;
        const std::string bytes = convert(fragment.pTextStart, count);
        if (same_letters(bytes.substr(0, 6), "<speak") || same_letters(bytes.substr(0, 7), "</speak")) return;
        std::size_t i = bytes.size() - 1;
        while (i > 0 && bytes[i] != '>') --i;
        SpeechtextTextAttrs raw = attrs_;
        raw.raw = true;
        out.text += raw;
        for (std::size_t k = 0; k <= i; ++k) out.text += bytes[k];
        out.text += attrs_;
        for (std::size_t k = i + 1; k < bytes.size(); ++k) {
            out.text += bytes[k];
            out.positions.push_back(fragment.ulTextSrcOffset);
        }
    }

    SpeechtextTextAttrs attrs_;
    const SPVTEXTFRAG* previous_ = nullptr;
    unsigned int next_mark_ = 1;
    unsigned int next_break_ = 1;
    std::uint32_t host_end_ = 0;
};

}  // namespace

TEST(WalkDifferential, random_lists_give_what_the_slow_walk_gives) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const RandomList random(seed);
        const Walked fast = walk(random.list);
        const Walked slow = SlowWalk(random.list.first()).out;
        ASSERT_EQ(fast.result, slow.result) << "seed " << seed;
        ASSERT_EQ(fast.text.as_string(), slow.text.as_string()) << "seed " << seed;
        ASSERT_EQ(fast.positions, slow.positions) << "seed " << seed;
        ASSERT_EQ(fast.records(), slow.records()) << "seed " << seed;
        for (std::size_t i = 0; i < slow.text.attrsvec_size(); ++i) {
            const auto& a = *(fast.text.attrs_begin() + static_cast<long>(i));
            const auto& b = *(slow.text.attrs_begin() + static_cast<long>(i));
            ASSERT_TRUE(*a.attrs == *b.attrs) << "seed " << seed << ", record " << i;
        }
    }
}
