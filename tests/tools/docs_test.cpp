// The examples and schemas of the documents are what the tools read.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/host/files.h"
#include "tools/host/fragments_json.h"
#include "tools/host/hresult.h"
#include "tools/host/voices.h"

namespace {

using namespace host;
using nlohmann::json;

const std::string docs = NELVA_TEST_DATA "/../../docs/";

// The block of a document that begins with "```json <name>".
std::string block_of(const std::string& document, const std::string& name) {
    const std::string text = read_file(docs + document);
    const std::string opening = "```json " + name + "\n";
    const std::size_t begin = text.find(opening);
    if (begin == text.npos) return "there is no such block";
    const std::size_t from = begin + opening.size();
    return text.substr(from, text.find("```", from) - from);
}

TEST(Docs, example_of_a_voice_token_is_one) {
    const Voice voice = voice_from_json(block_of("voice-token.md", "voice-token"), "/v/en.json");
    EXPECT_TRUE(voice.is_nelva());
    EXPECT_EQ(voice.language(), "en");
    EXPECT_EQ(voice.display_name(), "Nelva English (United States)");
}

TEST(Docs, example_of_fragments_is_read) {
    const SpeechInput input = input_from_fragments_json(block_of("nelva-say.md", "fragments"), 0, "x");
    EXPECT_EQ(input.fragments.size(), 5u);
}

TEST(Docs, every_key_of_the_fragments_schema_is_known_and_no_other) {
    const json schema = json::parse(read_file(docs + "fragments.schema.json"));
    const json& properties = schema["items"]["properties"];
    EXPECT_EQ(properties.size(), 16u);
    for (const auto& property : properties.items()) {
        // A value of a kind that no key takes: a known key complains about the value, an unknown one about the key.
        const std::string fragments = json::array({{{property.key(), false}}}).dump();
        try {
            input_from_fragments_json(fragments, 0, "x");
            ADD_FAILURE() << property.key();
        } catch (const HostError& error) {
            EXPECT_EQ(std::string(error.what()).find("is not known"), std::string::npos) << error.what();
        }
    }
}

TEST(Docs, actions_of_the_schema_are_read) {
    const json schema = json::parse(read_file(docs + "fragments.schema.json"));
    for (const json& name : schema["items"]["properties"]["action"]["anyOf"][0]["enum"])
        EXPECT_NO_THROW(input_from_fragments_json(json::array({{{"action", name}}}).dump(), 0, "x")) << name;
}

TEST(Docs, events_are_one_object_a_line) {
    std::istringstream lines(block_of("nelva-say.md", "lines"));
    std::string line;
    int count = 0;
    for (; std::getline(lines, line); ++count) EXPECT_TRUE(json::accept(line)) << line;
    EXPECT_EQ(count, 5);
}

}  // namespace
