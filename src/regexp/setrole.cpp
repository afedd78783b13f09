// Token roles over ranges and over the groups of matches.
#include <algorithm>
#include <array>

#include "regexp/regexp.h"
#include "regexp/replacer.h"

namespace {

bool setroles_conflict_check(const SpeechtextTextAttrs* attrs, const std::string&) {
    return !attrs->token.role().empty();
}

void setroles_update(SpeechtextTextAttrs* attrs, const std::string& role) { attrs->token.set_role(role); }

}  // namespace

Speechtext do_setrole(const Speechtext& text, const textattrmod<std::string>& mod) {
    return textattrmod<std::string>::do_textattrmod(text, mod, setroles_conflict_check, setroles_update);
}

Speechtext do_setroles(const Speechtext& text, const std::list<textattrmod<std::string>>& mods) {
    return textattrmod<std::string>::do_textattrmods(text, mods, setroles_conflict_check, setroles_update);
}

namespace regexp {

namespace {

constexpr std::size_t most_roles = 6;

// The pieces between the "|", without the empty one behind a last "|".
std::vector<std::string> divided(const std::string& roles) {
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < roles.size();) {
        const std::size_t end = std::min(roles.find('|', at), roles.size());
        pieces.push_back(roles.substr(at, end - at));
        at = end + 1;
    }
    return pieces;
}

}  // namespace

Speechtext RE::setrole(RE& re, const Speechtext& text, const std::string& roles, bool force) {
    const std::size_t count = 1 + static_cast<std::size_t>(std::count(roles.begin(), roles.end(), '|'));
    if (count > most_roles) throw invalid_regexp_replacement("Too many roles in RE::setrole");
    const std::vector<std::string> pieces = divided(roles);

    Match input(text);
    std::array<Match, most_roles> groups;
    std::array<Match*, most_roles> group_pointers;
    std::transform(groups.begin(), groups.end(), group_pointers.begin(), [](Match& group) { return &group; });
    std::list<textattrmod<std::string>> mods;
    while (re.scan(&input, group_pointers.data(), count)) {
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (groups[i].is_speechtext()) mods.emplace_back(text, groups[i], pieces[i], force);
        }
    }
    return do_setroles(text, mods);
}

Speechtext RE::setrole(const std::string& pattern, const Speechtext& text, const std::string& roles, bool force,
                       const RE_Options& options) {
    RE re(pattern, options);
    return setrole(re, text, roles, force);
}

}  // namespace regexp
