// Reading fragment lists in tests.
#ifndef NELVA_TESTS_TOOLS_FRAGMENT_VIEW_H
#define NELVA_TESTS_TOOLS_FRAGMENT_VIEW_H

#include <string>
#include <vector>

#include "tools/host/fragments.h"

// The list's records, in order.
inline std::vector<SPVTEXTFRAG> records(const host::FragmentList& list) {
    std::vector<SPVTEXTFRAG> result;
    for (const SPVTEXTFRAG* each = list.first(); each; each = each->pNext) result.push_back(*each);
    return result;
}

inline std::string text_of(const SPVTEXTFRAG& fragment) {
    return fragment.pTextStart ? host::to_utf8({fragment.pTextStart, fragment.ulTextLen}) : "(null)";
}

// One fragment as "action@offset:text", actions by their number.
inline std::string shape_of(const SPVTEXTFRAG& fragment) {
    return std::to_string(fragment.State.eAction) + "@" + std::to_string(fragment.ulTextSrcOffset) + ":" +
           text_of(fragment);
}

inline std::vector<std::string> shapes(const host::FragmentList& list) {
    std::vector<std::string> result;
    for (const SPVTEXTFRAG& each : records(list)) result.push_back(shape_of(each));
    return result;
}

#endif
