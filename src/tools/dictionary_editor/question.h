// A question with two answers of one's own, and Cancel.
#ifndef NELVA_TOOLS_DICTIONARY_EDITOR_QUESTION_H
#define NELVA_TOOLS_DICTIONARY_EDITOR_QUESTION_H

#include <string>

#include "platform/win32.h"

namespace editor {

// IDC_FIRST, IDC_SECOND or IDCANCEL. "&" in an answer marks its key.
int ask(HWND owner, const std::string& text, const std::string& first, const std::string& second);

}  // namespace editor

#endif
