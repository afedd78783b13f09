// Families of byte strings, good and bad, over which the tests hold the passes against the reference.
#pragma once

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace inputs {

inline std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) text += static_cast<char>(value);
    return text;
}

// Calls `use` with each string of one byte and of two.
template <class Use>
void one_and_two_bytes(Use use) {
    for (int a = 0; a < 0x100; ++a) {
        use(bytes({a}));
        for (int b = 0; b < 0x100; ++b) use(bytes({a, b}));
    }
}

// The bytes at which a rule changes: borders of ASCII, of continuation bytes, of leads, and of the units that XML
// drops.
inline const std::vector<int>& border_bytes() {
    static const std::vector<int> borders = {0x00, 0x22, 0x41, 0x7F, 0x80, 0x81, 0x82, 0x9F, 0xA0,
                                             0xBE, 0xBF, 0xC0, 0xC3, 0xE0, 0xED, 0xEF, 0xF0, 0xFF};
    return borders;
}

// Each byte with two border bytes behind it; each four-byte lead, and the bytes beside these, with three.
template <class Use>
void three_and_four_bytes(Use use) {
    for (const int b : border_bytes()) {
        for (const int c : border_bytes()) {
            for (int lead = 0; lead < 0x100; ++lead) use(bytes({lead, b, c}));
            for (const int d : border_bytes()) {
                for (int lead = 0xEF; lead < 0xF9; ++lead) use(bytes({lead, b, c, d}));
            }
        }
    }
}

// All good forms of three bytes one behind the other, and one form of four bytes for each unit.
inline std::string all_three_byte_forms() {
    std::string text;
    for (int unit = 0; unit < 0x10000; ++unit) {
        text += bytes({0xE0 | unit >> 12, 0x80 | (unit >> 6 & 0x3F), 0x80 | (unit & 0x3F)});
    }
    return text;
}
inline std::string all_four_byte_units() {
    std::string text;
    for (int unit = 0; unit < 0x10000; ++unit) {
        const int above = unit * 7 % 32;  // the five bits that the codec cuts off
        text += bytes(
            {0xF0 | above >> 2, 0x80 | (above & 3) << 4 | unit >> 12, 0x80 | (unit >> 6 & 0x3F), 0x80 | (unit & 0x3F)});
    }
    return text;
}

// A mix of pieces in which good text is frequent enough for whole good blocks, and bad text for borders with it.
class random_text {
public:
    explicit random_text(unsigned int seed) : random_(seed) {}

    std::string next() {
        std::string text;
        const std::size_t size = below(400);
        const std::size_t fault_rate = 1 + below(60);  // one piece in so many is anything at all
        while (text.size() < size) text += below(fault_rate) == 0 ? anything() : good();
        return text;
    }

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string good() {
        static const std::vector<std::string> pieces = {"plain text of some length without any trouble ",
                                                        "a",
                                                        " ",
                                                        "<b>",
                                                        "&",
                                                        "\"",
                                                        "'",
                                                        "\n",
                                                        "\t",
                                                        "\f",
                                                        "\x01",
                                                        "caf\xC3\xA9",
                                                        "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82",
                                                        "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E",
                                                        "\xED\x95\x9C\xEA\xB5\xAD",
                                                        "\xF0\x9F\x98\x80",
                                                        "\xEF\xBC\x8C",
                                                        "\xE0\xB8\x81",
                                                        "\x7F"};
        return pieces[below(pieces.size())];
    }
    std::string anything() {
        static const std::vector<std::string> pieces = {"\xC3",
                                                        "\xE2\x82",
                                                        "\xF0\x9F\x98",
                                                        "\xED\xA0\x80",
                                                        "\xEF\xBF\xBF",
                                                        "\xEF\xBF\xBE",
                                                        "\xC0\x80",
                                                        "\xC1\x81",
                                                        "\xE0\x80\xA2",
                                                        "\xF0\x90\x80\xBC",
                                                        "\xF0\x9D\xA0\x80",
                                                        "\xF0\x9F\xBF\xBF",
                                                        "\xF4\x8F\xBF\xBE",
                                                        "\xF8"};
        const std::size_t choice = below(pieces.size() + 3);
        return choice < pieces.size() ? pieces[choice] : bytes({static_cast<int>(below(0x100))});
    }

    std::mt19937 random_;
};

// `middle` in the midst of good text, so that it begins `before` bytes into a block of 64 and a whole block is at hand.
inline std::string embedded(const std::string& middle, std::size_t before) {
    return std::string(before, 'a') + middle + std::string(66, 'z');
}

// Calls `use` with all of these families, the short ones alone and within a block or across its border.
template <class Use>
void all_families(Use use) {
    one_and_two_bytes([&](const std::string& text) {
        use(text);
        use(embedded(text, text.size() == 1 || text[0] % 2 == 0 ? 63 : 62));
    });
    three_and_four_bytes([&](const std::string& text) {
        use(text);
        const bool leads = static_cast<unsigned char>(text[0]) >= 0xC0;  // the others are pairs behind one byte
        if (leads && text[1] != 'A') use(embedded(text, text.size() == 3 ? 61 : 62));
    });
    for (const std::string& forms : {all_three_byte_forms(), all_four_byte_units()}) {
        for (const std::size_t before : {0, 1, 2, 3, 17}) use(embedded(forms, before));
    }
    random_text random(20240611);
    for (int i = 0; i < 10000; ++i) use(random.next());
}

}  // namespace inputs
