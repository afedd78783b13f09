// Cutting a command line into arguments.

#include "platform/native/command_line.h"

namespace platform_native {

namespace {

bool is_blank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

void skip_blanks(std::u16string_view* line) {
    while (!line->empty() && is_blank(line->front())) line->remove_prefix(1);
}

std::u16string take_program(std::u16string_view* line) {
    std::u16string program;
    bool quoted = false;
    while (!line->empty() && (quoted || !is_blank(line->front()))) {
        if (line->front() == u'"') {
            quoted = !quoted;
        } else {
            program += line->front();
        }
        line->remove_prefix(1);
    }
    return program;
}

std::size_t take_backslashes(std::u16string_view* line) {
    std::size_t count = 0;
    while (count < line->size() && (*line)[count] == u'\\') ++count;
    line->remove_prefix(count);
    return count;
}

std::u16string take_argument(std::u16string_view* line) {
    std::u16string argument;
    bool quoted = false;
    while (!line->empty() && (quoted || !is_blank(line->front()))) {
        const std::size_t backslashes = take_backslashes(line);
        const bool at_quote = !line->empty() && line->front() == u'"';
        argument.append(at_quote ? backslashes / 2 : backslashes, u'\\');
        if (!at_quote) {
            if (backslashes > 0 || line->empty()) continue;
            argument += line->front();
        } else if (backslashes % 2 != 0) {
            argument += u'"';
        } else if (quoted && line->size() > 1 && (*line)[1] == u'"') {
            argument += u'"';
            line->remove_prefix(1);
        } else {
            quoted = !quoted;
        }
        line->remove_prefix(1);
    }
    return argument;
}

}  // namespace

std::vector<std::u16string> split_command_line(std::u16string_view line) {
    std::vector<std::u16string> arguments = {take_program(&line)};
    skip_blanks(&line);
    while (!line.empty()) {
        arguments.push_back(take_argument(&line));
        skip_blanks(&line);
    }
    return arguments;
}

}  // namespace platform_native
