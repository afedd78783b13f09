// The `--events` file: one JSON object a line, in the order in which the site got things.
//
//   {"event":"word","stream_offset":0,"text_offset":0,"text_length":5,"text":"Hello"}
//   {"event":"sentence", and the same keys}
//   {"event":"bookmark","stream_offset":0,"name":"here"}
//   {"event":"viseme","stream_offset":0,"viseme":8,"next":1,"duration_ms":60}
//   {"event":"other","stream_offset":0,"id":9}
//   {"write":4410}
//
// Offsets into the stream are bytes; text_offset and text_length count UTF-16 units of the host's text and are the
// numbers that the engine gave; text is what they cut out of the host's text, and empty for a range that is none.
// Every line is well-formed UTF-8: a lone surrogate is written as U+FFFD.
#ifndef NELVA_TOOLS_HOST_EVENTS_LOG_H
#define NELVA_TOOLS_HOST_EVENTS_LOG_H

#include <string>

#include "tools/host/files.h"
#include "tools/host/fragments.h"
#include "tools/host/site.h"

namespace host {

// One line, without its end.
std::string event_line(const SPEVENT& event, const HostText& text);
std::string write_line(ULONG size);

class EventsLog final : public SiteListener {
public:
    // Takes over the open file; `text` must outlive the log.
    EventsLog(OutputFile file, const HostText& text) : file_(std::move(file)), text_(text) {}

    HRESULT audio(const void* data, ULONG size) override;
    HRESULT event(const SPEVENT& event) override;

    // Closes the file. Throws HostError when not all could be written.
    void finish() { file_.close(); }

private:
    HRESULT write(std::string line);

    OutputFile file_;
    const HostText& text_;
};

}  // namespace host

#endif
