// A person's wishes while the voice speaks, in the form in which an engine asks for them.
#ifndef NELVA_TOOLS_HOST_LIVE_CONTROLS_H
#define NELVA_TOOLS_HOST_LIVE_CONTROLS_H

#include "platform/sapi.h"
#include "tools/host/keys.h"

namespace host {

// Belongs to the thread of Speak, as the site does.
class LiveControls {
public:
    // Rate and volume that are in force at the start.
    LiveControls(LONG rate, USHORT volume) : rate_(rate), volume_(volume) {}

    // One step: a sentence, a rate within -10 to 10, a volume within 0 to 100 by tens.
    void press(Key key);

    bool is_stopped() const { return is_stopped_; }

    // SPVES_ bits of what has changed since the last call; abort and skip stay until they are served.
    DWORD take_actions();

    LONG rate() const { return rate_; }
    USHORT volume() const { return volume_; }

    // Sentences to skip, below 0 backwards.
    LONG skip() const { return skip_; }
    void complete_skip() { skip_ = 0; }

private:
    LONG rate_;
    USHORT volume_;
    LONG skip_ = 0;
    DWORD changes_ = SPVES_CONTINUE;
    bool is_stopped_ = false;
};

}  // namespace host

#endif
