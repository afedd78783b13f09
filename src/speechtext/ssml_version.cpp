// The tags are searched in a probe: the prefixes of the text up to each step inside a raw stretch, one behind the
// other. Written out, that is quadratic. But all prefixes begin alike, so a hit lies inside the longest of them, or
// across a joint of two, within as many bytes on either side as a tag has at most, less one. The subject that is
// searched holds just these pieces, with NULs between them, which no tag holds. A hit across several joints is seen at
// the last one: what is in front of a joint is taken over earlier prefixes, too, and what is behind lies in a single
// prefix.
#include "speechtext/ssml_version.h"

#include <algorithm>
#include <string_view>

#include "regexp/regexp.h"
#include "speechtext/attributes.h"

namespace {

constexpr const char* version_1_1_tags = "<(?:lang|lookup|token|w)[ \t>]";
constexpr std::size_t joint_reach = sizeof "<lookup>" - 1 - 1;

class Probe {
public:
    explicit Probe(std::string_view text) : text_(text) {}

    void append_prefix(std::size_t length) {
        const std::string_view prefix = text_.substr(0, length);
        if (!end_.empty()) add_joint(prefix.substr(0, joint_reach));
        longest_ = std::max(longest_, prefix.size());
        end_ += prefix.substr(prefix.size() - std::min(prefix.size(), joint_reach));
        end_.erase(0, end_.size() - std::min(end_.size(), joint_reach));
    }

    bool empty() const { return longest_ == 0; }

    std::string subject() const {
        std::string out;
        out.reserve(longest_ + joints_.size());
        out += text_.substr(0, longest_);
        return out += joints_;
    }

private:
    void add_joint(std::string_view start) {
        std::string joint = end_;
        joint += start;
        if (joint == last_joint_) return;
        joints_ += '\0';
        joints_ += joint;
        last_joint_ = joint;
    }

    std::string_view text_;
    std::size_t longest_ = 0;
    std::string end_;  // of all prefixes so far
    std::string joints_;
    std::string last_joint_;
};

}  // namespace

std::string ssml_version(const std::string& text, std::span<const SpeechtextAttrsRecord> records) {
    Probe probe(text);
    bool in_raw = false;
    for (const SpeechtextAttrsRecord& record : records) {
        if (in_raw && record.position > 0) probe.append_prefix(static_cast<std::size_t>(record.position));
        if (record.attrs->is_contentattrs()) in_raw = static_cast<const SpeechtextTextAttrs*>(record.attrs)->raw;
    }
    if (in_raw) probe.append_prefix(text.size());
    if (probe.empty()) return "1.0";
    regexp::RE_Options options;
    options.set_caseless(true).set_utf8(false);
    return regexp::RE::search(version_1_1_tags, probe.subject(), options) ? "1.1" : "1.0";
}
