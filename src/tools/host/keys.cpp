// Keys by terminals: bytes and escape sequences on Unix, the console's key codes on Windows.
#include "tools/host/keys.h"

#include <cstdio>
#include <string>

#include "tools/host/progress.h"

#ifdef _WIN32
#include <conio.h>
#else
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>
#endif

namespace host {

namespace {

struct Row {
    std::string_view bytes;
    Key key;
};

// Longer ones in front of those that they begin with.
constexpr Row rows[] = {
    {"\x1b[C", Key::next_sentence},
    {"\x1bOC", Key::next_sentence},
    {"\x1b[D", Key::sentence_before},
    {"\x1bOD", Key::sentence_before},
    {"\x1b[A", Key::faster},
    {"\x1bOA", Key::faster},
    {"\x1b[B", Key::slower},
    {"\x1bOB", Key::slower},
    {"n", Key::next_sentence},
    {"p", Key::sentence_before},
    {"f", Key::faster},
    {"s", Key::slower},
    {"+", Key::louder},
    {"=", Key::louder},
    {"-", Key::quieter},
    {"q", Key::stop},
    {" ", Key::stop},
    {"\x1b", Key::stop},
};

bool begins(std::string_view text, std::string_view front) { return text.substr(0, front.size()) == front; }

// The length of an escape sequence of another key: it ends with its first letter or tilde.
std::size_t length_of_sequence(std::string_view bytes) {
    if (!begins(bytes, "\x1b[") && !begins(bytes, "\x1bO")) return 0;
    for (std::size_t i = 2; i < bytes.size(); ++i)
        if (bytes[i] >= '@' && bytes[i] <= '~') return i + 1;
    return 0;
}

const Row* row_at(std::string_view bytes) {
    for (const Row& row : rows)
        if (begins(bytes, row.bytes)) return &row;
    return nullptr;
}

class NoKeys final : public KeySource {
    std::vector<Key> take() override { return {}; }
};

}  // namespace

std::vector<Key> keys_in(std::string_view bytes) {
    std::vector<Key> result;
    while (!bytes.empty()) {
        const Row* const row = row_at(bytes);
        const std::size_t sequence = length_of_sequence(bytes);
        const bool is_other_key = sequence > 0 && (!row || row->bytes.size() == 1);
        if (row && !is_other_key) result.push_back(row->key);
        bytes.remove_prefix(is_other_key ? sequence : row ? row->bytes.size() : 1);
    }
    return result;
}

#ifdef _WIN32

namespace {

// The console tells arrows as two numbers.
class Console final : public KeySource {
    std::vector<Key> take() override {
        std::string bytes;
        while (_kbhit()) {
            const int code = _getch();
            if (code == 0 || code == 0xE0)
                bytes += sequence_of(_getch());
            else
                bytes += static_cast<char>(code);
        }
        return keys_in(bytes);
    }

    static std::string sequence_of(int code) {
        switch (code) {
            case 72:
                return "\x1b[A";
            case 80:
                return "\x1b[B";
            case 77:
                return "\x1b[C";
            case 75:
                return "\x1b[D";
            default:
                return "";
        }
    }
};

}  // namespace

std::unique_ptr<KeySource> open_terminal_keys(bool) {
    if (is_terminal(stdin)) return std::make_unique<Console>();
    return std::make_unique<NoKeys>();
}

#else

namespace {

class Terminal final : public KeySource {
public:
    // Takes the descriptor over unless it is standard input.
    explicit Terminal(int descriptor) : descriptor_(descriptor) {
        is_set_ = ::tcgetattr(descriptor_, &before_) == 0;
        if (!is_set_) return;
        termios now = before_;
        now.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        now.c_cc[VMIN] = 0;
        now.c_cc[VTIME] = 0;
        ::tcsetattr(descriptor_, TCSANOW, &now);
    }
    ~Terminal() override {
        if (is_set_) ::tcsetattr(descriptor_, TCSANOW, &before_);
        if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    std::vector<Key> take() override {
        if (!is_set_) return {};
        char bytes[64];
        const ssize_t count = ::read(descriptor_, bytes, sizeof bytes);
        return count > 0 ? keys_in({bytes, static_cast<std::size_t>(count)}) : std::vector<Key>();
    }

private:
    int descriptor_;
    bool is_set_ = false;
    termios before_{};
};

// A program in the background must not touch the terminal: it would be stopped.
bool is_in_front(int descriptor) { return ::tcgetpgrp(descriptor) == ::getpgrp(); }

}  // namespace

std::unique_ptr<KeySource> open_terminal_keys(bool standard_input_is_free) {
    if (standard_input_is_free && is_terminal(stdin) && is_in_front(STDIN_FILENO))
        return std::make_unique<Terminal>(STDIN_FILENO);
    const int descriptor = is_terminal(stderr) ? ::open("/dev/tty", O_RDONLY | O_CLOEXEC) : -1;
    if (descriptor < 0) return std::make_unique<NoKeys>();
    if (is_in_front(descriptor)) return std::make_unique<Terminal>(descriptor);
    ::close(descriptor);
    return std::make_unique<NoKeys>();
}

#endif

}  // namespace host
