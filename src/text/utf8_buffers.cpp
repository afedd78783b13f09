// The bounded conversions between buffers, which share their way of ending.
#include "text/textencoding.h"

namespace {

// How the three conversions end: `written` units of `out` are in use, and the input goes on at `in`. The input is not
// looked at for an output of no size, where both answers are 0.
template <class Out, class In>
std::ptrdiff_t finish(Out* out, std::size_t written, std::size_t out_size, const In* in) {
    if (written < out_size) {
        out[written] = 0;
        return static_cast<std::ptrdiff_t>(written);
    }
    return written != 0 && *in == 0 ? static_cast<std::ptrdiff_t>(written) : 0;
}

}  // namespace

std::ptrdiff_t wide_to_utf8(char* out, std::size_t out_size, const unsigned short* in, std::size_t in_count) {
    std::size_t written = 0;
    for (; in_count != 0 && written < out_size; ++in, --in_count) {
        const int octets = putwc_utf8(out + written, *in, out_size - written);
        if (octets < 0) return -1;
        written += static_cast<std::size_t>(octets);
    }
    return finish(out, written, out_size, in);
}

std::ptrdiff_t wide_from_utf8(unsigned short* out, std::size_t out_size, const char* in, std::size_t in_size) {
    const char* const end = in + in_size;
    std::size_t written = 0;
    while (in != end && written < out_size) {
        const unsigned short wc = getwc_utf8(&in, static_cast<std::size_t>(end - in));
        if (wc == wide_eof) return -1;
        out[written++] = wc;
    }
    return finish(out, written, out_size, in);
}

std::ptrdiff_t copy_and_transform_mbs(char* out, std::size_t out_size, const char* in, std::size_t in_size,
                                      unsigned short (*f)(unsigned short)) {
    const char* const end = in + in_size;
    std::size_t written = 0;
    while (in != end && *in != 0 && written < out_size) {
        const unsigned short wc = getwc_utf8(&in, static_cast<std::size_t>(end - in));
        if (wc == wide_eof) return -2;
        const int octets = putwc_utf8(out + written, f(wc), out_size - written);
        if (octets < 0) return -1;
        written += static_cast<std::size_t>(octets);
    }
    return finish(out, written, out_size, in);
}
