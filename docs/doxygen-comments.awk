# Turns the comments of a header into those that Doxygen reads: "//" becomes "///", and "//" behind code "///<". Lines
# indented by five blanks or more behind an empty one are code; in the others what would be a command or markup is
# escaped. Headings ("// --- Case ---") stay plain comments.

function escaped(s) {
    gsub(/[\\@<>#%&$*"]/, "\\\\&", s)
    return s
}

# In front of what is not code any more.
function end_code() {
    if (code) print indent "/// @endcode"
    code = 0
}

function comment_line(text) {
    if (text ~ /^     / && (code || previous == "")) {
        if (!code) print indent "/// @code{.cpp}"
        code = 1
        print indent "///" text
    } else if (code && text == "") {
        print indent "///"
    } else {
        end_code()
        print indent "///" escaped(text)
    }
    previous = text
}

NR == 1 && /^\/\/ / { print "/// @file" }

/^[ \t]*\/\/ ?---/ { end_code(); print; next }

/^[ \t]*\/\/( |$)/ {
    at = index($0, "//")
    indent = substr($0, 1, at - 1)
    comment_line(substr($0, at + 2))
    next
}

{ end_code(); previous = "" }

/[;,{]  +\/\/ / && !/^[ \t]*[#}]/ {
    at = index($0, "  // ")
    print substr($0, 1, at - 1) "  ///<" escaped(substr($0, at + 4))
    next
}

{ print }
