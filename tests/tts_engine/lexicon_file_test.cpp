// When a lexicon's file is read and parsed: what is counted is not measured.
#include "tts_engine/lexicon_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "test_file.h"

namespace {

using tts::FileStamp;
using tts::LexiconFile;

FileStamp stamp;  // of every file, in tests that set it

bool get_set_stamp(const std::string&, FileStamp& its) {
    its = stamp;
    return true;
}

// Lexicons of the same size.
std::string lexicon_with(char said) {
    return std::string(
               "<lexicon xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\"><lexeme><grapheme>a"
               "</grapheme><alias>") +
           said + "</alias></lexeme></lexicon>";
}

void write(const TestFile& file, const std::string& text) { std::ofstream(file.name(), std::ios::binary) << text; }

std::string said(LexiconFile& file) {
    const std::vector<std::string> words{"a"};
    return std::string(file.load()->find(words, "en").pronunciation->text);
}

std::string refusal(LexiconFile& file) {
    try {
        file.load();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

class LexiconFiles : public testing::Test {
protected:
    void SetUp() override {
        stamp = {1, 2, lexicon_with('b').size(), 100, 100, false};
        before_ = LexiconFile::work();
    }
    unsigned reads() const { return LexiconFile::work().reads - before_.reads; }
    unsigned parses() const { return LexiconFile::work().parses - before_.parses; }

    const TestFile text_{"words.pls", lexicon_with('b')};
    LexiconFile file_{text_.name(), get_set_stamp};

private:
    LexiconFile::Work before_{};
};

}  // namespace

TEST_F(LexiconFiles, old_and_unchanged_is_read_once) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(said(file_), "b");
    EXPECT_EQ(reads(), 1u);
    EXPECT_EQ(parses(), 1u);
}

TEST_F(LexiconFiles, each_part_of_the_stamp_tells_of_a_change) {
    said(file_);
    unsigned changes = 0;
    for (const auto change : std::vector<void (*)()>{[] { ++stamp.device; }, [] { ++stamp.file; }, [] { ++stamp.size; },
                                                     [] { ++stamp.written; }, [] { ++stamp.changed; }}) {
        change();
        write(text_, lexicon_with(static_cast<char>('c' + changes)));
        EXPECT_EQ(said(file_), std::string(1, static_cast<char>('c' + changes)));
        EXPECT_EQ(reads(), ++changes + 1);
    }
}

TEST_F(LexiconFiles, young_one_is_read_again_but_not_parsed) {
    stamp.young = true;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(said(file_), "b");
    EXPECT_EQ(reads(), 3u);
    EXPECT_EQ(parses(), 1u);
}

TEST_F(LexiconFiles, change_within_a_tick_of_the_clock_is_seen) {
    stamp.young = true;
    EXPECT_EQ(said(file_), "b");
    write(text_, lexicon_with('c'));
    EXPECT_EQ(said(file_), "c");
    stamp.young = false;
    EXPECT_EQ(said(file_), "c");
    const unsigned before = reads();
    EXPECT_EQ(said(file_), "c");
    EXPECT_EQ(reads(), before);
}

TEST_F(LexiconFiles, touched_one_is_not_parsed_again) {
    said(file_);
    ++stamp.written;
    said(file_);
    EXPECT_EQ(reads(), 2u);
    EXPECT_EQ(parses(), 1u);
}

TEST_F(LexiconFiles, refused_one_is_remembered_until_it_changes) {
    write(text_, "<lexicon>");
    const std::string reason = refusal(file_);
    EXPECT_NE(reason.find(text_.name() + ":1: "), std::string::npos) << reason;
    EXPECT_EQ(refusal(file_), reason);
    EXPECT_EQ(parses(), 1u);
    EXPECT_EQ(reads(), 1u);
    write(text_, lexicon_with('b'));
    ++stamp.written;
    EXPECT_EQ(said(file_), "b");
}

TEST_F(LexiconFiles, one_that_is_far_too_large_is_not_read_whole) {
    stamp.size = std::uint64_t{1} << 40;
    EXPECT_EQ(said(file_), "b");  // the size was not true, and no memory was asked for it
}

TEST(LexiconFile, is_shared_by_those_who_hold_it) {
    const auto one = LexiconFile::of("a.pls");
    EXPECT_EQ(LexiconFile::of("a.pls"), one);
    EXPECT_NE(LexiconFile::of("b.pls"), one);
}

TEST(LexiconFile, goes_with_the_last_holder) {
    const std::weak_ptr<LexiconFile> gone = LexiconFile::of("a.pls");
    EXPECT_TRUE(gone.expired());
}

TEST(LexiconFile, that_is_missing_or_a_folder_is_told) {
    LexiconFile missing("no-such.pls");
    EXPECT_EQ(refusal(missing), "lexicon \"no-such.pls\" cannot be opened");
    LexiconFile folder(".");
    EXPECT_EQ(refusal(folder), "lexicon \".\" cannot be opened");
}

TEST(FileStamp, differs_after_a_change_of_the_size) {
    const TestFile file("stamp", "one");
    FileStamp before, same, after;
    ASSERT_TRUE(tts::get_stamp(file.name(), before));
    ASSERT_TRUE(tts::get_stamp(file.name(), same));
    EXPECT_TRUE(before.is_same_as(same));
    EXPECT_EQ(before.size, 3u);
    EXPECT_TRUE(before.young);
    write(file, "three");
    ASSERT_TRUE(tts::get_stamp(file.name(), after));
    EXPECT_FALSE(before.is_same_as(after));
}

TEST(FileStamp, differs_for_another_file_of_the_same_size) {
    const TestFile one("stamp", "one"), two("stamp", "two");
    FileStamp first, second;
    ASSERT_TRUE(tts::get_stamp(one.name(), first));
    ASSERT_TRUE(tts::get_stamp(two.name(), second));
    EXPECT_FALSE(first.is_same_as(second));
    EXPECT_FALSE(tts::get_stamp("no/such/file", first));
}
