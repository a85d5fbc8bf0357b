// Every way to write a list of one or two in a call. Fails if one of them means something else.
#include <cgilib.h>
#include <set>

using tTexts = cCGI::tStrings;
using tMap = cCGI::tOptions;

int main()
{
    const auto Same = [](const std::set<std::string>& a_c_texts) { return a_c_texts.size() == 1; };
    const cCGI C(cCGI::eXHTML_1_0_STRICT);
    const cCGI::tAttributes N = {{"name", "n"}}, V = {{"value", "1"}};
    const std::string a = "a", b = "b";
    const tTexts TWO = {a, b};
    const tMap PLAIN = {{a, {}}, {b, {}}};
    const char* const p = "b";
    const auto O = tMap::mapped_type();
    return !(
        Same({C.PopupMenu(N, tTexts()), C.PopupMenu(N, {}), C.PopupMenu(N, tMap())}) &&
        Same({C.PopupMenu(N, tTexts{a}), C.PopupMenu(N, {a}), C.PopupMenu(N, {"a"}),
              C.PopupMenu(N, {{"a"}})}) &&
        Same({C.PopupMenu(N, TWO), C.PopupMenu(N, {a, b}), C.PopupMenu(N, {"a", "b"}),
              C.PopupMenu(N, {"a", b}), C.PopupMenu(N, {a, p}), C.PopupMenu(N, {{a}, {b}}),
              C.PopupMenu({{"name", "n"}}, {a + "", "b"})}) &&
        Same({C.PopupMenu(N, tMap{{a, O}}), C.PopupMenu(N, {{"a", {}}}),
              C.PopupMenu(N, {{a, O}})}) &&
        Same({C.PopupMenu({}, PLAIN), C.PopupMenu({}, {{a, {}}, {b, {}}}),
              C.PopupMenu({}, {{"a", {}}, {"b", O}})}) &&
        Same({C.PopupMenu(N, tMap{{a, V}, {b, O}}), C.PopupMenu(N, {{a, V}, {"b", {}}})}) &&
        Same({C.ScrollList(2, N, TWO), C.ScrollList(2, N, {a, b}), C.ScrollList(2, N, {"a", b})}) &&
        Same({C.Tr(N, TWO), C.Tr(N, {a, b}), C.Tr(N, {"a", "b"}), C.Tr(N, {a, p})}));
}
