// Takes the place of functions of the C++ library that a static program would carry for nothing;
// the build gives their calls to these. std::cout and its like must not be used in this program.

#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {
void __wrap__ZNSt8ios_base4InitC1Ev();
void __wrap__ZNSt8ios_base4InitD1Ev();
char* __wrap___cxa_demangle(const char* a_p_name, char* a_p_buffer, std::size_t* a_p_length,
                            int* a_p_status);
}

// Constructor and destructor of std::ios_base::Init: TinyXML's stream operators, which nobody
// calls, would have every start set up the standard streams with all their locales, and bring in a
// quarter of the program's size. Both would be called with the object, of which they need nothing.
void __wrap__ZNSt8ios_base4InitC1Ev() {}
void __wrap__ZNSt8ios_base4InitD1Ev() {}

// What ends the process on an exception that nobody catches then tells the type's name as the
// compiler encodes it ("St9bad_alloc").
char* __wrap___cxa_demangle(const char* /*a_p_name*/, char* /*a_p_buffer*/,
                            std::size_t* /*a_p_length*/, int* a_p_status)
{
    constexpr int NOT_A_NAME = -2;
    *a_p_status = NOT_A_NAME;
    return nullptr;
}
// NOLINTEND(bugprone-reserved-identifier)
