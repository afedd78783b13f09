// The codec, cleaning, XML encoding and the string utilities, over any bytes.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/property.h"
#include "fuzz/utf8_check.h"
#include "fuzz/well_formed.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

namespace {

struct Decoded {
    std::vector<unsigned short> units;  // wide_eof for each bad sequence
    bool good = true;
};

Decoded decoded(const std::string& bytes) {
    Decoded result;
    const char* const end = bytes.data() + bytes.size();
    for (const char* p = bytes.data(); p != end;) {
        const char* const before = p;
        result.units.push_back(getwc_utf8(&p, static_cast<std::size_t>(end - p)));
        property(p > before && p <= end, "the cursor moves on, and not behind the end");
        result.good = result.good && result.units.back() != wide_eof;
    }
    return result;
}

void check_units(const std::string& bytes) {
    wide_string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const unsigned int unit =
            static_cast<unsigned char>(bytes[i]) * 256U + static_cast<unsigned char>(bytes[i + 1]);
        if (unit != wide_eof) units += static_cast<unsigned short>(unit);
    }
    const std::string encoded = wstring_to_utf8(units);
    property(wstring_from_utf8(encoded) == units, "units decode to themselves");
    property(clean_utf8(encoded) == encoded, "what the codec wrote is clean");
    char* copy = nullptr;
    std::size_t size = 0;
    std::FILE* const file = open_memstream(&copy, &size);
    for (std::size_t i = 0; i < units.size(); ++i) putwc_utf8file(file, units[i]);
    std::fclose(file);
    property(std::string(copy, size) == encoded, "a file gets the same bytes");
    std::free(copy);
}

void check_cleaning(const std::string& bytes) {
    std::size_t removed = 0;
    const std::string clean = clean_utf8(bytes, &removed);
    property(clean.size() + removed == bytes.size(), "what is not kept was taken out");
    property(decoded(clean).good, "a clean text decodes");
    property(clean_utf8(clean) == clean, "a clean text stays");
    property(utf8_size(clean) == decoded(clean).units.size(), "the size counts what decodes");
    property(utf8_size(makelower(clean)) == utf8_size(clean), "mapping keeps the number of characters");
    property(utf8_size(makeupper(clean)) == utf8_size(clean), "mapping keeps the number of characters");
    if (decoded(bytes).good) property(removed == 0, "nothing is taken out of what decodes");

    const std::string jamo = decompose_utf8(clean);
    for (const unsigned short unit : decoded(jamo).units) {
        property(unit < 0xAC00 || unit > 0xD7A3, "no syllable is left");
    }
    if (jamo.size() == clean.size()) property(jamo == clean, "without syllables nothing changes");
    property(decoded(decompose_utf8(bytes)).good, "a decomposed text decodes");
}

void check_xml(const std::string& bytes) {
    const std::string encoded = encode_xml_utf8(bytes, 0);
    std::string appended = "before";
    append_encoded_xml_utf8(&appended, bytes.data(), bytes.size(), 0);
    property(appended == "before" + encoded, "appending gives the same");
    if (is_strict_utf8(bytes)) property(is_well_formed("<a b=\"" + encoded + "\">" + encoded + "</a>"), "well-formed");

    const std::string ascii = encode_xml_utf8(bytes, encode_xml_opt::entity_encode_high);
    const auto high = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    property(std::none_of(ascii.begin(), ascii.end(), high), "entities are ASCII");
    property(is_well_formed("<a>" + ascii + "</a>"), "entities make any bytes well-formed");

    const std::size_t plain = plain_xml_length(bytes.data(), bytes.size());
    property(plain <= bytes.size() && bytes.compare(0, plain, encoded, 0, plain) == 0, "the plain front stays");
}

// Output buffers of every size up to a little more than enough.
void check_buffers(const std::string& bytes) {
    const std::string input = bytes.substr(0, 24);
    for (std::size_t room = 0; room < 2 * input.size() + 8; ++room) {
        // Of the exact size, so that a byte too many is seen.
        const std::unique_ptr<unsigned short[]> units(new unsigned short[room]);
        const std::ptrdiff_t count = wide_from_utf8(units.get(), room, input.data(), input.size());
        property(count <= static_cast<std::ptrdiff_t>(room), "no more units than there is room for");
        const std::unique_ptr<char[]> copy(new char[room]);
        const std::ptrdiff_t mapped =
            copy_and_transform_mbs(copy.get(), room, input.data(), input.size(), to_uppercase_wchar);
        property(mapped <= static_cast<std::ptrdiff_t>(room), "no more bytes than there is room for");
        if (count <= 0) continue;
        std::vector<unsigned short> terminated(units.get(), units.get() + count);
        terminated.push_back(0);
        const std::ptrdiff_t written =
            wide_to_utf8(copy.get(), room, terminated.data(), static_cast<std::size_t>(count));
        property(written <= static_cast<std::ptrdiff_t>(room), "no more bytes than there is room for");
    }
}

void check_walks(const std::string& bytes) {
    const char* const end = bytes.data() + bytes.size();
    for (const bool wanted : {true, false}) {
        const char* const p = skip_matching_utf8(bytes.data(), is_word_wchar, wanted, end);
        property(p >= bytes.data() && p <= end, "the walk ends within the text");
        const std::vector<unsigned short> front = decoded(std::string(bytes.data(), p)).units;
        const auto differs = [&](unsigned short unit) { return is_word_wchar(unit) != wanted || unit == 0; };
        property(std::none_of(front.begin(), front.end(), differs), "what was passed over is what was wanted");
    }
    // With a null end the terminating 0 ends the text.
    const char* const p = skip_matching_utf8(bytes.c_str(), is_word_wchar, true, nullptr);
    property(p <= bytes.c_str() + std::strlen(bytes.c_str()), "the walk ends at the terminating 0");
}

void check_utilities(const std::string& bytes) {
    if (bytes.empty()) return;
    const char separator = bytes[0];
    std::string joined;
    for (const std::string& piece : split_on_char(separator, bytes)) joined += separator + piece;
    property(joined == separator + bytes, "the pieces, joined, are the text");

    std::string replaced = bytes;
    replace_substr(replaced, bytes.substr(0, 1), "", 0);
    property(replaced.find(separator) == std::string::npos, "what was replaced is gone");
    for (const std::string& word : split_on_asciiws(bytes)) property(!word.empty(), "words are not empty");
    for (const std::string& line : splitlines(bytes)) property(!line.empty(), "the first empty line ends the split");

    std::string trimmed = bytes;
    property(bytes.find(trim(trimmed)) != std::string::npos, "what is trimmed was there");
    const long long c_number = std::strtoll(bytes.c_str(), nullptr, 10);
    if (c_number >= INT32_MIN && c_number <= INT32_MAX) {
        property(str2int(bytes) == c_number, "a number within the range is the C library's");
    }
    str2float(bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    decoded(bytes);
    check_units(bytes);
    check_cleaning(bytes);
    check_xml(bytes);
    check_buffers(bytes);
    check_walks(bytes);
    check_utilities(bytes);
    return 0;
}
