# Makes a test program of a page of docs/library/, so that what the page shows is compiled and run.
#
#     awk -v output=model.cpp -f extract.awk docs/library/README.md docs/library/model.md
#
# The last file is the page. Of the files in front of it only the preludes count. What it knows of a page:
#
#   ```cpp ... ```        a test, named after the heading above it; its lines are the test's statements
#     EXPR;  // -> V      the value of the expression; "V, V" are the elements of a container, {} is an empty one
#     EXPR;  // throws T: M     the exception, its message behind the colon (none: any message)
#     // -> V             on a line of its own: about the statement in front; lines that go on with four blanks or
#                         more behind the slashes are part of the value
#   <!-- prelude -->      the block behind it stands at file scope, in front of all tests, also of later files
#   <!-- values -->       in each row of the table behind it, the second `code` is the value of the first
#   <!-- cells: NAME -->  in each row of the table behind it, NAME(...) is called with the `code` cells as strings
#
# "#include" lines go to the top. A page without any test, or with a block left open, is an error.

function fail(message) {
    printf "%s:%d: %s\n", FILENAME, FNR, message > "/dev/stderr"
    failed = 1
    exit 1
}

function trim(s) {
    gsub(/^[ \t]+|[ \t]+$/, "", s)
    return s
}

function raw_string(s) { return "R\"page(" s ")page\"" }

function emit(line) { body = body line "\n" }

function emit_at(number, line) { emit("#line " number " \"" FILENAME "\"\n" line) }

# A name for the next test: the heading, with a number from the second test under it on.
function open_test(    name) {
    name = heading
    if (++uses[name] > 1) name = name "_" uses[name]
    emit_at(FNR, "TEST(" suite ", " name ") {")
    ++tests
}

# The statement read last waits here, since a line behind it may tell its value.
function flush_statement() {
    if (statement != "") emit_at(statement_line, statement)
    statement = ""
}

function expression() { sub(/;[ \t]*$/, "", statement); return trim(statement) }

function flush_check(    call) {
    if (!checking) return
    checking = 0
    if (value == "{}")
        call = "expect_empty(__FILE__, __LINE__, " expression() ");"
    else
        call = "expect_value(__FILE__, __LINE__, " expression() ", " value ");"
    emit_at(statement_line, call)
    statement = ""
}

function begin_check(text) {
    if (statement == "") fail("a value of nothing")
    checking = 1
    value = trim(text)
}

function expect_exception(text,    type, message) {
    if (statement == "") fail("an exception of nothing")
    type = text
    sub(/[ \t].*/, "", type)
    message = substr(text, length(type) + 1)
    sub(/:$/, "", type)
    emit_at(statement_line, "expect_exception<" type ">(__FILE__, __LINE__, [&] { (void)(" expression() "); }, " \
            raw_string(trim(message)) ");")
    statement = ""
}

# Ends with ; { or }, outside of round brackets?
function is_complete(code) {
    gsub(/"([^"\\]|\\.)*"/, "", code)
    gsub(/\/\/[^\n]*/, "", code)
    return code ~ /[;{}][ \t\n]*$/ && gsub(/\(/, "", code) == gsub(/\)/, "", code)
}

function add_code(code) {
    if (trim(code) == "") return
    if (statement == "" || complete) {
        flush_statement()
        statement_line = FNR
        statement = code
    } else {
        statement = statement "\n" code
    }
    complete = is_complete(statement)
}

function test_line(line,    at) {
    if (checking && line ~ /^[ \t]*\/\/    /) {
        sub(/^[ \t]*\/\//, "", line)
        value = value "\n" line
        return
    }
    flush_check()
    if (line ~ /^#include/) {
        includes = includes line "\n"
    } else if (at = index(line, "// -> ")) {
        add_code(substr(line, 1, at - 1))
        begin_check(substr(line, at + 6))
    } else if (at = index(line, "// throws ")) {
        add_code(substr(line, 1, at - 1))
        expect_exception(substr(line, at + 10))
    } else if (line !~ /^[ \t]*\/\//) {
        add_code(line)
    }
}

function close_test() {
    flush_check()
    flush_statement()
    emit("}\n")
}

# The `code` cells of a row, in cell[1], cell[2], ...; returns how many.
function code_cells(row,    pieces, count, cells, i) {
    gsub(/\\\|/, "\001", row)
    count = split(row, pieces, /\|/)
    cells = 0
    for (i = 2; i < count; ++i) {
        if (trim(pieces[i]) !~ /^`.*`$/) continue
        cell[++cells] = trim(pieces[i])
        gsub(/^`+ ?| ?`+$/, "", cell[cells])
        gsub(/\001/, "|", cell[cells])
    }
    return cells
}

function row_check(row,    count, call, i) {
    count = code_cells(row)
    if (count == 0) return
    open_test()
    if (table == "values") {
        if (count != 2) fail("a row of values has two of them")
        call = (cell[2] == "{}" ? "expect_empty(__FILE__, __LINE__, " cell[1] : \
                "expect_value(__FILE__, __LINE__, " cell[1] ", " cell[2]) ");"
    } else {
        call = table "(__FILE__, __LINE__"
        for (i = 1; i <= count; ++i) call = call ", " raw_string(cell[i])
        call = call ");"
    }
    emit_at(FNR, call)
    emit("}\n")
}

FNR == 1 {
    if (in_block) fail("a block was left open")
    suite = FILENAME
    sub(/.*\//, "", suite)
    sub(/\.md$/, "", suite)
    gsub(/[^A-Za-z0-9]/, "_", suite)
    heading = "page"
    body = ""
    tests = 0
    split("", uses)
}

!in_block && /^#+ / {
    heading = tolower($0)
    sub(/^#+ /, "", heading)
    gsub(/[^a-z0-9]+/, "_", heading)
    gsub(/^_|_$/, "", heading)
}

!in_block && /^<!-- prelude -->$/ { prelude_next = 1; next }
!in_block && /^<!-- values -->$/ { table = "values"; next }
!in_block && /^<!-- cells: [a-z_]+ -->$/ { table = $3; next }
!in_block && /^<!-- / { fail("unknown directive") }

!in_block && /^```/ {
    in_block = 1
    kind = $0 == "```cpp" ? (prelude_next ? "prelude" : "test") : "other"
    if (prelude_next && kind != "prelude") fail("a prelude is ```cpp")
    prelude_next = 0
    statement = ""
    checking = complete = 0
    if (kind == "test") open_test()
    next
}

in_block && /^```$/ {
    in_block = 0
    if (kind == "test") close_test()
    next
}

in_block && kind == "test" { test_line($0) }
in_block && kind == "prelude" {
    if ($0 ~ /^#include/) includes = includes $0 "\n"
    else prelude = prelude "#line " FNR " \"" FILENAME "\"\n" $0 "\n"
}

!in_block && table != "" && !/^\|/ { if (in_table) table = ""; in_table = 0 }
!in_block && table != "" && /^\|/ { in_table = 1; row_check($0) }

END {
    if (failed) exit 1
    if (in_block) fail("a block was left open")
    if (!tests) fail("nothing to test")
    print "#include <gtest/gtest.h>\n" > output
    print includes prelude > output
    print "#include \"docs/expectations.h\"\n" > output
    print body > output
}
