// Fragments from JSON.
#include "tools/host/fragments_json.h"

#include <gtest/gtest.h>

#include "fragment_view.h"
#include "tools/host/hresult.h"

namespace {

using namespace host;
using Shapes = std::vector<std::string>;

SpeechInput parse(std::string_view json) { return input_from_fragments_json(json, 0x407, "x"); }

SPVSTATE state_of(const SpeechInput& input) { return input.fragments.first()->State; }

std::string message_of(std::string_view json) {
    try {
        parse(json);
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), hresult_from_win32(13));
        const std::string message = error.what();
        return message.substr(0, message.find(": 0x8007000D"));
    }
    return "no error";
}

TEST(FragmentsJson, keys_that_are_missing_are_neutral) {
    const SpeechInput input = parse("[{}]");
    const SPVTEXTFRAG& only = *input.fragments.first();
    EXPECT_EQ(shape_of(only), "0@0:(null)");
    EXPECT_EQ(only.State.LangID, 0x407);
    EXPECT_EQ(only.State.Volume, 100u);
}

TEST(FragmentsJson, empty_array_is_an_empty_list) { EXPECT_EQ(parse("[]").fragments.first(), nullptr); }

TEST(FragmentsJson, every_field_of_the_state) {
    const SpeechInput input = parse(R"([{"text":"x","lang":"409","emph":1,"rate":-10,"pitch":5,"range":-6,"volume":80,
        "silence":250,"part":"verb","category":"time","before":"b","after":"a","phonemes":[25,21]}])");
    const SPVSTATE state = state_of(input);
    EXPECT_EQ(state.LangID, 0x409);
    EXPECT_EQ(state.EmphAdj, 1);
    EXPECT_EQ(state.RateAdj, -10);
    EXPECT_EQ(state.PitchAdj.MiddleAdj, 5);
    EXPECT_EQ(state.PitchAdj.RangeAdj, -6);
    EXPECT_EQ(state.Volume, 80u);
    EXPECT_EQ(state.SilenceMSecs, 250u);
    EXPECT_EQ(state.ePartOfSpeech, SPPS_Verb);
    EXPECT_EQ(to_utf8(state.Context.pCategory), "time");
    EXPECT_EQ(to_utf8(state.Context.pBefore), "b");
    EXPECT_EQ(to_utf8(state.Context.pAfter), "a");
    EXPECT_EQ(WideString(state.pPhoneIds), (WideString{25, 21}));
}

TEST(FragmentsJson, actions_by_name_and_by_number) {
    EXPECT_EQ(shapes(parse(R"([{"action":"speak"},{"action":"silence"},{"action":"pronounce"},{"action":"bookmark"},
        {"action":"Spell_Out"},{"action":"section"},{"action":"parse_unknown_tag"},{"action":99},{"action":-1}])")
                         .fragments),
              (Shapes{"0@0:(null)", "1@0:(null)", "2@0:(null)", "3@0:(null)", "4@0:(null)", "5@0:(null)", "6@0:(null)",
                      "99@0:(null)", "-1@0:(null)"}));
}

TEST(FragmentsJson, without_offset_text_follows_the_text_before) {
    EXPECT_EQ(shapes(parse(R"([{"text":"a\ud83d\ude00"},{"action":"bookmark","text":"mark"},{"text":"b","offset":10},
        {"text":"c"}])")
                         .fragments),
              (Shapes{"0@0:a\xF0\x9F\x98\x80", "3@3:mark", "0@10:b", "0@11:c"}));
}

TEST(FragmentsJson, units_hold_what_utf8_cannot) {
    const SpeechInput input = parse(R"([{"units":[97,55357,0]}])");
    const SPVTEXTFRAG& only = *input.fragments.first();
    EXPECT_EQ(WideString(only.pTextStart, only.ulTextLen), WideString({97, static_cast<WCHAR>(55357), 0}));
}

TEST(FragmentsJson, null_text_is_a_null_pointer) {
    EXPECT_EQ(shapes(parse(R"([{"text":null},{"text":""}])").fragments), (Shapes{"0@0:(null)", "0@0:"}));
}

TEST(FragmentsJson, numbers_far_out_of_range_are_passed_on) {
    const SPVSTATE state =
        state_of(parse(R"([{"rate":-2147483648,"pitch":2147483647,"volume":4294967295,"lang":65535}])"));
    EXPECT_EQ(state.RateAdj, INT32_MIN);
    EXPECT_EQ(state.PitchAdj.MiddleAdj, INT32_MAX);
    EXPECT_EQ(state.Volume, 4294967295u);
    EXPECT_EQ(state.LangID, 0xFFFF);
}

TEST(FragmentsJson, numbers_that_do_not_fit_are_refused) {
    EXPECT_EQ(message_of(R"([{"rate":2147483648}])"),
              "x: fragment 1: \"rate\" has to be a whole number from -2147483648 to 2147483647");
    EXPECT_EQ(message_of(R"([{},{"volume":-1}])"),
              "x: fragment 2: \"volume\" has to be a whole number from 0 to 4294967295");
    EXPECT_EQ(message_of(R"([{"volume":18446744073709551615}])"),
              "x: fragment 1: \"volume\" has to be a whole number from 0 to 4294967295");
    EXPECT_EQ(message_of(R"([{"rate":1.5}])").find("x: fragment 1: \"rate\" has to be a whole number"), 0u);
    EXPECT_EQ(message_of(R"([{"units":[65536]}])"),
              "x: fragment 1: \"units\" has to be a whole number from 0 to 65535");
}

TEST(FragmentsJson, unknown_keys_and_actions_get_a_suggestion) {
    EXPECT_EQ(message_of(R"([{"rte":1}])"), "x: fragment 1: \"rte\" is not known: did you mean \"rate\"?");
    EXPECT_EQ(message_of(R"([{"banana":1}])"), "x: fragment 1: \"banana\" is not known");
    EXPECT_EQ(message_of(R"([{"action":"silense"}])"),
              "x: fragment 1: \"action\" is no action: did you mean \"silence\"?");
    EXPECT_EQ(message_of(R"([{"action":null}])").find("x: fragment 1: \"action\" has to be speak"), 0u);
}

TEST(FragmentsJson, wrong_types_are_refused) {
    EXPECT_EQ(message_of(R"([{"text":1}])"), "x: fragment 1: \"text\" has to be a string");
    EXPECT_EQ(message_of(R"([{"units":"a"}])"), "x: fragment 1: \"units\" has to be an array of UTF-16 units");
    EXPECT_EQ(message_of(R"([{"lang":"english"}])"),
              "x: fragment 1: \"lang\" has to be a number or up to four hexadecimal digits");
    EXPECT_EQ(message_of(R"([{"part":"x"}])").find("x: fragment 1: \"part\" has to be unknown, noun"), 0u);
    EXPECT_EQ(message_of("[1]"), "x: fragment 1 has to be an object");
    EXPECT_EQ(message_of("{}"), "x: fragments are a JSON array of objects");
}

TEST(FragmentsJson, bad_json_has_line_and_column) {
    EXPECT_EQ(message_of("[{\"text\":\n \"a\",}]"), "x:2:6: this is not JSON");
    EXPECT_EQ(message_of(""), "x:1:1: this is not JSON");
}

TEST(FragmentsJson, byte_order_mark_is_passed_over) { EXPECT_EQ(parse("\xEF\xBB\xBF[{}]").fragments.size(), 1u); }

TEST(FragmentsJson, host_text_is_made_of_the_fragments) {
    EXPECT_EQ(to_utf8(parse(R"([{"text":"Hel"},{"text":"lo"},{"text":"!","offset":50}])").text.cut(0, 100)), "Hello!");
}

}  // namespace
