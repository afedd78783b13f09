// Tells the server's code from everybody else's while a test counts allocations or makes them fail.
//
// The linked server shares its allocators with the test program. A test says with a ServerCode on its stack that it
// calls the server; whoever stands in for the host or the synthesiser says so with a ForeignCode. Only what the server
// itself allocates counts and fails. The real DLL has import tables of its own, so there is nothing to tell.
#ifndef NELVA_TESTS_CODE_OF_H
#define NELVA_TESTS_CODE_OF_H

#ifndef _WIN32
inline thread_local bool in_server_code = false;
#endif

template <bool server>
class CodeOf {
public:
#ifdef _WIN32
    CodeOf() {}
    ~CodeOf() {}
#else
    CodeOf() : before_(in_server_code) { in_server_code = server; }
    ~CodeOf() { in_server_code = before_; }
#endif
    CodeOf(const CodeOf&) = delete;
    CodeOf& operator=(const CodeOf&) = delete;

private:
#ifndef _WIN32
    bool before_;
#endif
};

using ServerCode = CodeOf<true>;
using ForeignCode = CodeOf<false>;

#endif
