// The string utilities that look at the bytes of a rich text alone; those that keep its records are in transform.cpp.
#include "regexp/regexp.h"
#include "speechtext/speechtext.h"
#include "text/qm_stringutils.h"

bool startswith(const Speechtext& text, const std::string& prefix) { return startswith(text.as_string(), prefix); }
bool endswith(const Speechtext& text, const std::string& suffix) { return endswith(text.as_string(), suffix); }

int str2int(const Speechtext& text) { return str2int(text.as_string()); }
int str2int(const regexp::Match& match) { return str2int(match.as_string()); }

double str2float(const Speechtext& text) { return str2float(text.as_string()); }
double str2float(const regexp::Match& match) { return str2float(match.as_string()); }
