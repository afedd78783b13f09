// What the values and exceptions that a page shows turn into. Comes behind the page's prelude, whose shown() gives a
// rich text as a string.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <ranges>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

template <class T>
concept Text = std::is_convertible_v<const T&, std::string>;

// What is compared: rich text as shown, a match by its bytes, strings as such.
template <class T>
decltype(auto) comparable(const T& value) {
    if constexpr (std::is_same_v<T, Speechtext>) {
        return shown(value);
    } else if constexpr (std::is_same_v<T, regexp::Match>) {
        return value.as_string();
    } else if constexpr (Text<T>) {
        return std::string(value);
    } else {
        return value;
    }
}

template <class A, class V>
bool agree(const A& actual, const V& value) {
    if constexpr (std::is_floating_point_v<A>) {
        return actual == static_cast<A>(value) || std::abs(actual - value) < 1e-5 * std::abs(value);
    } else if constexpr (std::is_integral_v<A> && std::is_integral_v<V>) {
        return static_cast<long long>(actual) == static_cast<long long>(value);
    } else {
        return actual == value;
    }
}

template <class A, class V>
void expect_one(const char* file, int line, const A& actual, const V& value) {
    if (agree(comparable(actual), comparable(value))) return;
    ADD_FAILURE_AT(file, line) << "it is " << testing::PrintToString(comparable(actual)) << ", the page says "
                               << testing::PrintToString(comparable(value));
}

template <class A, class... Values>
void expect_value(const char* file, int line, const A& actual, const Values&... values) {
    if constexpr (std::ranges::range<A> && !Text<A> && !std::is_same_v<A, Speechtext>) {
        std::vector<std::string> found, wanted{comparable(values)...};
        for (const auto& element : actual) found.push_back(comparable(element));
        expect_one(file, line, found, wanted);
    } else {
        static_assert(sizeof...(values) == 1, "one value, unless it is a container");
        (expect_one(file, line, actual, values), ...);
    }
}

template <class A>
void expect_empty(const char* file, int line, const A& actual) {
    if (std::ranges::empty(actual)) return;
    ADD_FAILURE_AT(file, line) << "it is " << testing::PrintToString(actual) << ", the page says that it is empty";
}

// Of exactly this type. An empty message stands for any.
template <class Exception, class Action>
void expect_exception(const char* file, int line, Action action, const std::string& message) {
    try {
        action();
    } catch (const std::exception& error) {
        if (typeid(error) != typeid(Exception)) {
            ADD_FAILURE_AT(file, line) << "another exception: " << error.what();
        } else if (!message.empty()) {
            expect_one(file, line, std::string(error.what()), message);
        }
        return;
    }
    ADD_FAILURE_AT(file, line) << "no exception, the page says: " << message;
}

// A row of the table of errors: the replacement string, used for the pattern "(b)" on "abc", and the message.
inline void expect_rewrite_error(const char* file, int line, const std::string& rewrite, const std::string& message) {
    std::string text = "abc";
    expect_exception<regexp::invalid_regexp_replacement>(
        file, line, [&] { regexp::RE::sub("(b)", rewrite, &text, regexp::RE_Options()); }, message);
    expect_one(file, line, text, std::string("abc"));
}

// A row of the table of elements: the replacement string, used for the pattern "(b)" on "abc", and the new text.
inline void expect_rewrite(const char* file, int line, const std::string& rewrite, const std::string& result) {
    std::string text = "abc";
    regexp::RE::sub("(b)", rewrite, &text, regexp::RE_Options());
    expect_one(file, line, text, result);
}
