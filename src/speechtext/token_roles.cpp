// Reading and editing the role string of a token: items "name:value,value" between blanks.
//
// The tests split on every ASCII blank and take all items of a name together. The edits look for the first item of a
// name and know no separator but the blank character itself; so an item behind a tab is seen by has_role() alone.
#include <set>

#include "speechtext/attribute_values.h"
#include "text/qm_stringutils.h"

namespace {

constexpr auto npos = std::string::npos;

// What stands up to and including the first colon, and what stands behind it. Without a colon all is value.
struct Item {
    std::string prefix;
    std::string value;
};

Item divided(const std::string& item) {
    const std::size_t colon = item.find(':');
    if (colon == npos) return {"", item};
    return {item.substr(0, colon + 1), item.substr(colon + 1)};
}

// A colon with a name in front of it?
bool names_something(const Item& item) { return item.prefix.size() >= 2; }

std::string name_of(const Item& item) { return item.prefix.substr(0, item.prefix.size() - 1); }

// Where the first item with the prefix starts, npos without one.
std::size_t find_item(const std::string& role, const std::string& prefix) {
    if (role.compare(0, prefix.size(), prefix) == 0) return 0;
    const std::size_t blank = role.find(" " + prefix);
    return blank == npos ? npos : blank + 1;
}

bool begins(const std::string& text, const std::string& part) { return text.compare(0, part.size(), part) == 0; }

bool ends(const std::string& text, const std::string& part) {
    return text.size() >= part.size() && text.compare(text.size() - part.size(), npos, part) == 0;
}

// The list without the values, which are taken as one piece of text.
std::string without(std::string list, const std::string& values) {
    const std::size_t between = list.find("," + values + ",");
    if (list == values) {
        list.clear();
    } else if (begins(list, values + ",")) {
        list.erase(0, values.size() + 1);
    } else if (ends(list, "," + values)) {
        list.erase(list.size() - values.size() - 1);
    } else if (between != npos) {
        list.erase(between, values.size() + 1);
    }
    return list;
}

}  // namespace

void Token::set_role(const std::string& role) { role_ = role; }

bool Token::has_role(const std::string& item) const {
    const Item asked = divided(item);
    const std::set<std::string> wanted = split_set_on_char(',', asked.value);
    std::set<std::string> found;
    for (const std::string& held : split_on_asciiws(role_)) {
        if (!startswith(held, asked.prefix)) continue;
        for (const std::string& value : split_on_char(',', held.substr(asked.prefix.size()))) {
            if (wanted.count(value)) found.insert(value);
        }
    }
    return found.size() == wanted.size();
}

std::string Token::get_role_content(const std::string& name) const {
    if (name.empty() || role_.empty()) return "";
    const std::size_t start = find_item(role_, name + ":");
    if (start == npos) return "";
    const std::size_t content = start + name.size() + 1;
    return role_.substr(content, role_.find(' ', content) - content);
}

void Token::replace_role(const std::string& item) {
    const Item asked = divided(item);
    if (!names_something(asked)) return;
    const std::size_t start = find_item(role_, asked.prefix);
    if (start == npos) {
        if (!asked.value.empty()) role_ += (role_.empty() ? "" : " ") + item;
        return;
    }
    std::size_t end = role_.find(' ', start + 1);
    if (end == npos) end = role_.size();
    if (!asked.value.empty()) {
        role_.replace(start, end - start, item);
        return;
    }
    // The blank behind goes with the first item only; the one in front of a later item stays.
    if (start == 0 && end < role_.size()) ++end;
    role_.erase(start, end - start);
}

void Token::add_role(const std::string& item) {
    if (has_role(item)) return;
    const Item asked = divided(item);
    if (!names_something(asked)) return;
    const std::string held = get_role_content(name_of(asked));
    replace_role(held.empty() ? item : asked.prefix + held + "," + asked.value);
}

void Token::remove_role(const std::string& item) {
    const Item asked = divided(item);
    if (!names_something(asked) || !has_role(item)) return;
    const std::string held = get_role_content(name_of(asked));
    const std::string left = without(held, asked.value);
    if (left.size() < held.size()) replace_role(asked.prefix + left);
}

void Token::modify_role(const std::string& edits) {
    const Item asked = divided(edits);
    if (!names_something(asked)) return;
    for (const std::string& edit : split_on_char(',', asked.value)) {
        if (edit.size() < 2) continue;
        if (edit[0] == '+') add_role(asked.prefix + edit.substr(1));
        if (edit[0] == '-') remove_role(asked.prefix + edit.substr(1));
    }
}
