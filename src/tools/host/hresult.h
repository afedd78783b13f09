// What a result code is called and what its reader can do about it, and the error that carries one to main.
#ifndef NELVA_TOOLS_HOST_HRESULT_H
#define NELVA_TOOLS_HOST_HRESULT_H

#include <stdexcept>
#include <string>

#include "platform/sapi.h"

namespace host {

// Codes that the platform's headers do not bring in both builds.
inline constexpr HRESULT sperr_no_more_items = static_cast<HRESULT>(0x80045039u);
inline constexpr HRESULT sperr_xml_bad_syntax = static_cast<HRESULT>(0x80045042u);
inline constexpr HRESULT co_e_classstring = static_cast<HRESULT>(0x800401F3u);

// The code of a Win32 error number as an HRESULT: 0x8007 and the number.
constexpr HRESULT hresult_from_win32(DWORD error) {
    return error == 0 ? 0 : static_cast<HRESULT>(0x80070000u | (error & 0xFFFFu));
}

// The Win32 error that says the same as a C library's errno; ERROR_GEN_FAILURE for one without a counterpart.
HRESULT hresult_from_errno(int error);

// "SPERR_NOT_FOUND", or an empty string for a code without a name here.
std::string hresult_name(HRESULT code);

// "0x8004503A (SPERR_NOT_FOUND)"; without a name only the number.
std::string hresult_text(HRESULT code);

// One line on what to do, lower case, without a full stop. Never empty.
std::string hresult_advice(HRESULT code);

// What ends a run with exit status 1. what() is the whole message, without the tool's name:
// "<what failed>: 0x8004503A (SPERR_NOT_FOUND): <what to do>".
class HostError : public std::runtime_error {
public:
    // With the code's own advice, or with one that knows more.
    HostError(const std::string& what, HRESULT code) : HostError(what, code, hresult_advice(code)) {}
    HostError(const std::string& what, HRESULT code, const std::string& advice)
        : std::runtime_error(what + ": " + hresult_text(code) + ": " + advice), code_(code) {}

    HRESULT code() const { return code_; }

private:
    HRESULT code_;
};

// Throws a HostError when `code` is negative.
void require(HRESULT code, const std::string& what);

}  // namespace host

#endif
