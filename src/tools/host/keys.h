// The keys that a person presses while the voice speaks.
#ifndef NELVA_TOOLS_HOST_KEYS_H
#define NELVA_TOOLS_HOST_KEYS_H

#include <memory>
#include <string_view>
#include <vector>

namespace host {

enum class Key { stop, next_sentence, sentence_before, faster, slower, louder, quieter };

// What these bytes of a terminal mean, in order; bytes that mean nothing are passed over. An escape sequence that is
// cut off at the end counts as the Escape key.
std::vector<Key> keys_in(std::string_view bytes);

// Where keys come from.
class KeySource {
public:
    virtual ~KeySource() = default;

    // The keys since the last call. Never waits.
    virtual std::vector<Key> take() = 0;
};

// The terminal that this program runs on, with its line editing off until the object goes. Without a terminal a source
// that never has a key. `standard_input_is_free` says that nobody else reads standard input.
std::unique_ptr<KeySource> open_terminal_keys(bool standard_input_is_free);

}  // namespace host

#endif
