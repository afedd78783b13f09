// A lexicon and its file: saving, and what happens when others write there too.
#include "tools/lexicon/session.h"

#include <gtest/gtest.h>

#include "lexicon/fake_files.h"
#include "lexicon/sample.h"

namespace {

using namespace lexicon;

TEST(Session, save_writes_once_and_only_what_changed) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en-US");
    s.save();
    EXPECT_EQ(files.calls, std::vector<std::string>{"read"});
    s.document().add(words("a", "b"));
    s.save();
    EXPECT_EQ(files.content["a.pls"], s.document().bytes());
    EXPECT_FALSE(s.document().is_changed());
    EXPECT_FALSE(s.is_changed_outside());
}

TEST(Session, missing_and_empty_files_begin_a_lexicon) {
    for (const bool exists : {false, true}) {
        FakeFiles files;
        if (exists) files.content["a.pls"] = "";
        Session s(files, "a.pls", "fr-FR");
        EXPECT_EQ(s.document().language(), "fr-FR");
        s.save();
        EXPECT_EQ(files.content.count("a.pls"), exists ? 1u : 0u);
        s.document().add(words("a", "b"));
        EXPECT_FALSE(s.is_changed_outside());
        s.save();
        EXPECT_EQ(listed(Document::parse(files.content["a.pls"])), "a=(b)");
    }
}

TEST(Session, file_that_cannot_be_read_or_understood_is_not_taken_for_empty) {
    FakeFiles files;
    files.failing = "read";
    EXPECT_THROW(Session(files, "a.pls", "en"), FileError);
    files.failing.clear();
    files.content["a.pls"] = "Dear diary";
    EXPECT_THROW(Session(files, "a.pls", "en"), BadLexicon);
    EXPECT_EQ(files.content["a.pls"], "Dear diary");
}

TEST(Session, failed_save_loses_nothing_and_can_be_tried_again) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en");
    s.document().add(words("a", "b"));
    for (const char* call : {"require_writable", "create", "write", "flush", "close", "replace"}) {
        files.failing = call;
        EXPECT_THROW(s.save(), FileError);
        EXPECT_TRUE(s.document().is_changed());
        EXPECT_EQ(files.content["a.pls"], sample);
    }
    files.failing.clear();
    s.save();
    EXPECT_EQ(files.content["a.pls"], s.document().bytes());
}

TEST(Session, changes_of_others_are_noticed) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en");
    EXPECT_FALSE(s.is_changed_outside());
    files.content["a.pls"] = replaced(sample, "W3C", "w3C");  // of the same size
    EXPECT_TRUE(s.is_changed_outside());
    files.content.erase("a.pls");
    EXPECT_TRUE(s.is_changed_outside());
    files.content["a.pls"] = sample;
    EXPECT_FALSE(s.is_changed_outside());
}

TEST(Session, file_made_by_others_meanwhile_is_noticed) {
    FakeFiles files;
    Session s(files, "a.pls", "en");
    files.content["a.pls"] = "";
    EXPECT_TRUE(s.is_changed_outside());
}

TEST(Session, reload_takes_the_file_and_repeats_what_was_typed) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en");
    s.document().add(words("mine", "my"));
    files.content["a.pls"] = replaced(sample, "Leicester", "Theirs");
    s.reload();
    EXPECT_EQ(listed(s.document()), "Theirs=[ˈlɛstə] W3C=(World Wide Web Consortium) mine=(my)");
    EXPECT_TRUE(s.document().is_changed());
    EXPECT_FALSE(s.is_changed_outside());
}

TEST(Session, reload_of_what_cannot_be_read_changes_nothing) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en");
    s.document().add(words("mine", "my"));
    const std::string before = s.document().bytes();
    files.content["a.pls"] = "no XML";
    EXPECT_THROW(s.reload(), BadLexicon);
    EXPECT_EQ(s.document().bytes(), before);
    EXPECT_TRUE(s.is_changed_outside());
}

TEST(Session, save_copy_leaves_the_file_and_the_work_as_they_are) {
    FakeFiles files;
    files.content["a.pls"] = sample;
    Session s(files, "a.pls", "en");
    s.document().add(words("mine", "my"));
    s.save_copy("b.pls");
    EXPECT_EQ(files.content["a.pls"], sample);
    EXPECT_EQ(files.content["b.pls"], s.document().bytes());
    EXPECT_TRUE(s.document().is_changed());
}

}  // namespace
