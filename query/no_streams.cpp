// Stands in for the constructor and the destructor of std::ios_base::Init; the link options tell
// why. Both would be called with the object, of which they need nothing.

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {
void __wrap__ZNSt8ios_base4InitC1Ev();
void __wrap__ZNSt8ios_base4InitD1Ev();
}

void __wrap__ZNSt8ios_base4InitC1Ev() {}
void __wrap__ZNSt8ios_base4InitD1Ev() {}
// NOLINTEND(bugprone-reserved-identifier)
