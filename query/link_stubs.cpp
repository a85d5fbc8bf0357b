// Replacements for functions of the C++ library that a static program would carry for nothing; the
// build redirects their calls here. This program must not use std::cout or its relatives.

#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): the linker forms these names.
extern "C" {
void __wrap__ZNSt8ios_base4InitC1Ev();
void __wrap__ZNSt8ios_base4InitD1Ev();
char* __wrap___cxa_demangle(const char* a_p_name, char* a_p_buffer, std::size_t* a_p_length,
                            int* a_p_status);
}

// Constructor and destructor of std::ios_base::Init. TinyXML's stream operators, which nobody
// calls, would make every start set up the standard streams with all their locales, and would bring
// in a quarter of the program's size. Both are passed the object but do not need it.
void __wrap__ZNSt8ios_base4InitC1Ev() {}
void __wrap__ZNSt8ios_base4InitD1Ev() {}

// As a result, the handler of uncaught exceptions reports the type by its mangled name
// ("St9bad_alloc").
char* __wrap___cxa_demangle(const char* /*a_p_name*/, char* /*a_p_buffer*/,
                            std::size_t* /*a_p_length*/, int* a_p_status)
{
    constexpr int NOT_A_NAME = -2;
    *a_p_status = NOT_A_NAME;
    return nullptr;
}
// NOLINTEND(bugprone-reserved-identifier)
