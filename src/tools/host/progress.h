// One line on a terminal that tells how far a run has come: "sentence 3, 12.4 s, 250 times real time: word".
#ifndef NELVA_TOOLS_HOST_PROGRESS_H
#define NELVA_TOOLS_HOST_PROGRESS_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include "tools/host/fragments.h"
#include "tools/host/site.h"

namespace host {

// True when the stream is a terminal that a person looks at.
bool is_terminal(FILE* stream);

class Progress final : public SiteListener {
public:
    using Clock = std::function<double()>;  // seconds, from any start

    // `text` must outlive this. A format that is not known has 0 `bytes_per_second`; then no seconds are shown.
    // The line is drawn anew at most ten times a second.
    Progress(FILE* terminal, const HostText& text, std::uint32_t bytes_per_second, Clock clock);

    HRESULT audio(const void* data, ULONG size) override;
    HRESULT event(const SPEVENT& event) override;

    // Draws the last state and ends the line.
    void finish();

    // What the line says now.
    std::string line() const;

private:
    void draw_if_due();

    FILE* terminal_;
    const HostText& text_;
    std::uint32_t bytes_per_second_;
    Clock clock_;
    double started_;
    double drawn_;
    std::uint64_t bytes_ = 0;
    std::uint64_t sentences_ = 0;
    std::string word_;
};

// The clock that does not jump.
double steady_seconds();

}  // namespace host

#endif
