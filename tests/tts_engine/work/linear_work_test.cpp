// Reading a document takes work that grows with its size, whatever is in it. The work is the number of basic blocks of
// the reader, the document and the cutter that run: there is no clock in it.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "tts_engine/document.h"

namespace {

std::uint64_t blocks = 0;

}  // namespace

// The compiler calls it at the start of each block.
extern "C" void __sanitizer_cov_trace_pc();
extern "C" void __sanitizer_cov_trace_pc() { ++blocks; }

namespace {

std::string repeated(const std::string& part, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += part;
    return result;
}

std::string numbered(const std::string& before, const std::string& after, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += before + std::to_string(100000 + i) + after;
    return result;
}

std::uint64_t work_of(const std::string& text) {
    blocks = 0;
    tts::Document document(text);
    tts::Sentence sentence;
    while (document.next(sentence)) {
    }
    return blocks;
}

// Four times as much of everything takes about four times the work.
void expect_linear(const std::function<std::string(std::size_t)>& document) {
    constexpr std::size_t size = 400;
    const std::uint64_t little = work_of(document(size));
    const std::uint64_t much = work_of(document(4 * size));
    EXPECT_GT(little, size);
    EXPECT_LT(static_cast<double>(much), 4.5 * static_cast<double>(little));
}

}  // namespace

TEST(LinearWork, of_open_elements_and_sentences) {
    for (const std::string open : {"<sub alias='x'>", "<w>", "<say-as interpret-as='date'>", "<phoneme ph='a'>",
                                   "<prosody rate='2'>", "<emphasis>", "<p>", "<lang xml:lang='de'>", "<audio>"})
        for (const std::string sentence : {"<s>x", "<s>x</s>", "x. ", "x<p/>", "</s>x", "x</b>"}) {
            SCOPED_TRACE(open + sentence);
            expect_linear([&](std::size_t n) { return repeated(open, n) + repeated(sentence, n); });
            expect_linear([&](std::size_t n) { return repeated(open + "a ", n) + repeated(sentence, n); });
            expect_linear([&](std::size_t n) { return repeated(open + sentence, n); });
        }
}

TEST(LinearWork, of_open_elements_and_pieces_of_a_long_sentence) {
    expect_linear([](std::size_t n) { return repeated("<sub alias='x'>", n) + repeated("and so on ", 50 * n); });
    expect_linear([](std::size_t n) { return repeated("<sub alias='x'>a ", n) + repeated("abc", 100 * n); });
}

TEST(LinearWork, of_elements_in_elements_that_are_closed) {
    for (const std::string name : {"sub alias='x'", "w", "say-as interpret-as='cardinal'", "phoneme ph='a'", "p"}) {
        const std::string end = "</" + name.substr(0, name.find(' ')) + ">";
        for (const std::string inside : {"<mark name='B'/>", "<break/>", "<mark/><break time='1s'/>"}) {
            SCOPED_TRACE(name + inside);
            expect_linear([&](std::size_t n) {
                return "a " + repeated("<" + name + ">", n) + "b" + repeated(inside, n) + "c" + repeated(end, n);
            });
            expect_linear([&](std::size_t n) {
                return "a " + repeated("<" + name + ">", n) + "b" + repeated(inside, n) + repeated("c" + end, n);
            });
        }
    }
}

TEST(LinearWork, of_marks_pauses_and_sentences) {
    for (const std::string mark :
         {"<mark name='B1'/>", "<mark name='P1'/>", "<break/>", "<mark name='P1'/>a ", "<break/>a"})
        for (const std::string sentence : {"<s>x</s>", "x. ", "x", "<s/>"}) {
            SCOPED_TRACE(mark + sentence);
            expect_linear([&](std::size_t n) { return repeated(mark, n) + repeated(sentence, n); });
            expect_linear([&](std::size_t n) { return repeated(mark + sentence, n); });
        }
}

TEST(LinearWork, of_changes_of_attributes_and_languages) {
    expect_linear([](std::size_t n) { return numbered("<lang xml:lang='x", "'>a", n); });
    expect_linear([](std::size_t n) { return numbered("<prosody rate='1.", "'>a", n); });
    expect_linear([](std::size_t n) { return "<prosody" + numbered(" a", "='b'", n) + ">x"; });
    expect_linear([](std::size_t n) { return "<mark" + repeated(" name='b'", n) + "/>x &"; });
}

TEST(LinearWork, of_characters_of_one_kind) {
    for (const std::string part : {"a",
                                   " ",
                                   "\n",
                                   "1",
                                   ".",
                                   "1.",
                                   "1. ",
                                   "a.",
                                   "a. ",
                                   ",",
                                   "\"",
                                   "(",
                                   "\xCC\x81",
                                   "\xC3\xA9",
                                   "\xE6\x97\xA5",
                                   "\xE3\x80\x82",
                                   "\xF0\x9F\x91\x8D",
                                   "\xE2\x80\x8D",
                                   "Dr. ",
                                   "\xFF"}) {
        SCOPED_TRACE(part);
        expect_linear([&](std::size_t n) { return "<speak>" + repeated(part, 10 * n) + "</speak>"; });
        expect_linear([&](std::size_t n) { return "x & " + repeated(part, 10 * n); });
    }
}

TEST(LinearWork, of_markup_that_is_none) {
    for (const std::string part :
         {"<",       "&",       "</",         "<!",  "<?",        "<!--",         "<![CDATA[", "<a b='",
          "<a b=\"", "<a b='>", "<a b=\"x'>", "<a ", "</a ",      "<a b='x'y' ",  "&#",        "&lt",
          "<a b='<", "]]>",     "-->",        "'",   "<a b='>\"", "<a=\"' b='\">"}) {
        SCOPED_TRACE(part);
        for (const std::string end : {"", ">", "'>", "\">", "]]>", "-->"})
            expect_linear([&](std::size_t n) { return repeated(part, n) + end; });
        expect_linear([&](std::size_t n) { return repeated(part + "x ", n) + repeated("y>", n); });
    }
}

TEST(LinearWork, of_entities_of_the_documents_own) {
    const auto chain = [](std::size_t n) {
        std::string text = "<!DOCTYPE a [<!ENTITY e0 'x'>";
        for (std::size_t i = 1; i <= n; ++i)
            text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
        return text + "]>";
    };
    expect_linear([&](std::size_t n) { return chain(n) + "<a>&e" + std::to_string(n) + ";</a>"; });
    const std::string entity = "<!DOCTYPE a [<!ENTITY e 'one <s>two</s> three'>]><a>";
    expect_linear([&](std::size_t n) { return entity + repeated("&e;", n) + "</a>"; });
    expect_linear([&](std::size_t n) { return entity + repeated("<sub alias='&e;'>x", n); });
    // Ten, a hundred, a thousand times each, which would be the square and the third power.
    expect_linear([&](std::size_t n) {
        return "<!DOCTYPE a [<!ENTITY e '" + std::string(n, 'x') + "'><!ENTITY f '" + repeated("&e;", n) +
               "'><!ENTITY g '" + repeated("&f;", n) + "'>]><a>" + repeated("&g; ", n) + std::string(20000, 'y') +
               "</a>";
    });
}
