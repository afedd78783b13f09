// "Did you mean": the known name that is nearest to what somebody typed.
#ifndef NELVA_TOOLS_HOST_SUGGEST_H
#define NELVA_TOOLS_HOST_SUGGEST_H

#include <string>
#include <vector>

namespace host {

// The known name with the fewest edits from `typed` (a letter changed, put in or left out, or two neighbours swapped),
// case ignored; the first of several. Empty when even the nearest takes more edits than a third of its letters (one
// edit for names of up to five).
std::string closest_name(const std::string& typed, const std::vector<std::string>& known);

}  // namespace host

#endif
