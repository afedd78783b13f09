// What a check has found so far.
#ifndef NELVA_TOOLS_ENGINE_CHECK_FINDINGS_H
#define NELVA_TOOLS_ENGINE_CHECK_FINDINGS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/engine_check/engine_checks.h"

namespace engine_check {

class Findings {
public:
    explicit Findings(CheckResult& result) : result_(result) {}

    void fault(const std::string& text) { add(text, result_.faults); }
    void note(const std::string& text) { add(text, result_.notes); }
    void require(bool holds, const std::string& text) {
        if (!holds) fault(text);
    }

private:
    // Of what every record shows, the first few are enough.
    static void add(const std::string& text, std::vector<std::string>& texts) {
        constexpr std::size_t enough = 5;
        if (texts.size() < enough) texts.push_back(text);
    }

    CheckResult& result_;
};

inline std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace engine_check

#endif
