// The table of result codes.
#include "tools/host/hresult.h"

#include <cerrno>
#include <cstdio>

namespace host {

namespace {

struct Row {
    HRESULT code;
    const char* name;
    const char* advice;
};

constexpr Row rows[] = {
    {S_OK, "S_OK", "nothing is to be done"},
    {S_FALSE, "S_FALSE", "nothing is to be done"},
    {SP_AUDIO_STOPPED, "SP_AUDIO_STOPPED", "nothing is to be done, the audio's receiver stopped"},
    {E_NOTIMPL, "E_NOTIMPL", "the engine lacks what was asked of it: use another voice"},
    {E_NOINTERFACE, "E_NOINTERFACE", "the class is not a SAPI speech engine: correct the CLSID in the voice's token"},
    {E_POINTER, "E_POINTER", "this is an error in the engine or in nelva-say: report it"},
    {E_ABORT, "E_ABORT", "start it again"},
    {E_FAIL, "E_FAIL", "the event log may say more"},
    {E_UNEXPECTED, "E_UNEXPECTED", "this is an error in the engine or in nelva-say: report it"},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY", "memory ran out: speak the text in smaller parts"},
    {E_INVALIDARG, "E_INVALIDARG",
     "a value is out of range: give a --rate above -15, and SAPI's own range is -10 to 10"},
    {E_ACCESSDENIED, "E_ACCESSDENIED", "ask for the right to use it, or name another"},
    {E_HANDLE, "E_HANDLE", "this is an error in the engine or in nelva-say: report it"},
    {REGDB_E_CLASSNOTREG, "REGDB_E_CLASSNOTREG",
     "the engine's class is not registered: run regsvr32 on the 64-bit nelva_sapi.dll"},
    {CLASS_E_NOAGGREGATION, "CLASS_E_NOAGGREGATION", "this is an error in nelva-say: report it"},
    {CLASS_E_CLASSNOTAVAILABLE, "CLASS_E_CLASSNOTAVAILABLE",
     "the engine does not have this class: correct the CLSID in the voice's token"},
    {co_e_classstring, "CO_E_CLASSSTRING",
     "a class id reads {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}: correct the CLSID in the voice's token"},
    {SPERR_UNINITIALIZED, "SPERR_UNINITIALIZED", "the engine has no voice: this is an error in nelva-say, report it"},
    {SPERR_ALREADY_INITIALIZED, "SPERR_ALREADY_INITIALIZED",
     "the engine got two voices: this is an error in nelva-say, report it"},
    {SPERR_UNSUPPORTED_FORMAT, "SPERR_UNSUPPORTED_FORMAT",
     "the voice has no known audio format: its voxPath has to end in 22i, 16i-mf or 8v"},
    {SPERR_TTS_ENGINE_EXCEPTION, "SPERR_TTS_ENGINE_EXCEPTION",
     "the synthesiser failed: see the event log, and check libPath and voxPath in the voice's token"},
    {SPERR_CANT_CREATE, "SPERR_CANT_CREATE",
     "the voice has no known audio format: its voxPath has to end in 22i, 16i-mf or 8v"},
    {sperr_no_more_items, "SPERR_NO_MORE_ITEMS", "nothing is to be done"},
    {SPERR_NOT_FOUND, "SPERR_NOT_FOUND",
     "the voice's token lacks a value: it needs Name and Language under Attributes; the event log names what is "
     "missing"},
    {sperr_xml_bad_syntax, "SPERR_XML_BAD_SYNTAX", "correct the text there, or leave --xml out to speak it as it is"},
    {hresult_from_win32(ERROR_FILE_NOT_FOUND), "ERROR_FILE_NOT_FOUND", "check the name"},
    {hresult_from_win32(ERROR_PATH_NOT_FOUND), "ERROR_PATH_NOT_FOUND", "check the folder"},
    {hresult_from_win32(4), "ERROR_TOO_MANY_OPEN_FILES", "close other programs"},
    {hresult_from_win32(13), "ERROR_INVALID_DATA", "correct it there"},
    {hresult_from_win32(29), "ERROR_WRITE_FAULT", "check the disk"},
    {hresult_from_win32(30), "ERROR_READ_FAULT", "check the disk"},
    {hresult_from_win32(31), "ERROR_GEN_FAILURE", "check the device and try again"},
    {hresult_from_win32(109), "ERROR_BROKEN_PIPE", "the program that reads the output ended before it was complete"},
    {hresult_from_win32(112), "ERROR_DISK_FULL", "make room, or write to another disk"},
    {hresult_from_win32(ERROR_MOD_NOT_FOUND), "ERROR_MOD_NOT_FOUND",
     "a module is missing: the engine and the synthesiser's tts_engine have to stand side by side"},
    {hresult_from_win32(127), "ERROR_PROC_NOT_FOUND", "the module is not a COM server: put the engine's in its place"},
    {hresult_from_win32(ERROR_BAD_EXE_FORMAT), "ERROR_BAD_EXE_FORMAT",
     "the module is not for this processor: 64-bit modules are needed"},
    {hresult_from_win32(267), "ERROR_DIRECTORY", "name a file, not a folder"},
};

const Row* find_row(HRESULT code) {
    for (const Row& row : rows) {
        if (row.code == code) return &row;
    }
    return nullptr;
}

struct ErrnoRow {
    int error;
    DWORD win32;
};

constexpr ErrnoRow errno_rows[] = {
    {ENOENT, 2}, {ENOTDIR, 3}, {EMFILE, 4},  {EACCES, 5},   {EPERM, 5},
    {EROFS, 5},  {EIO, 29},    {EPIPE, 109}, {ENOSPC, 112}, {EISDIR, 267},
};

}  // namespace

HRESULT hresult_from_errno(int error) {
    if (error == ENOMEM) return E_OUTOFMEMORY;
    for (const ErrnoRow& row : errno_rows) {
        if (row.error == error) return hresult_from_win32(row.win32);
    }
    return hresult_from_win32(31);
}

std::string hresult_name(HRESULT code) {
    const Row* row = find_row(code);
    return row ? row->name : "";
}

std::string hresult_text(HRESULT code) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned int>(code));
    const std::string name = hresult_name(code);
    return name.empty() ? number : number + (" (" + name + ")");
}

std::string hresult_advice(HRESULT code) {
    const Row* row = find_row(code);
    return row ? row->advice : "see the event log, or look this number up";
}

void require(HRESULT code, const std::string& what) {
    if (code < 0) throw HostError(what, code);
}

}  // namespace host
