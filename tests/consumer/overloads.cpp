// Every way to write a list in a call, one, two and three long. Fails where one means something else.
#include <cgilib.h>

using tTexts = cCGI::tStrings;
using tMap = cCGI::tOptions;

static bool Same(std::initializer_list<std::string> a_c_texts)
{
    for (const std::string& l_s_text : a_c_texts) {
        if (l_s_text != *a_c_texts.begin()) {
            return false;
        }
    }
    return true;
}

int main()
{
    const cCGI C(cCGI::eXHTML_1_0_STRICT);
    const cCGI::tAttributes N = {{"name", "n"}}, V = {{"value", "1"}};
    const std::string a = "a", b = "b", c = "c";
    const tTexts TWO = {a, b};
    const tMap PLAIN = {{a, {}}, {b, {}}};
    const char* const p = "b";
    const bool l_b_good =
        Same({C.PopupMenu(N, tTexts()), C.PopupMenu(N, {}), C.PopupMenu(N, tMap())}) &&
        Same({C.PopupMenu(N, tTexts{a}), C.PopupMenu(N, {a}), C.PopupMenu(N, {"a"}), C.PopupMenu(N, {{"a"}})}) &&
        Same({C.PopupMenu(N, TWO), C.PopupMenu(N, {a, b}), C.PopupMenu(N, {"a", "b"}), C.PopupMenu(N, {"a", b}),
              C.PopupMenu(N, {a, p}), C.PopupMenu(N, {{a}, {b}}), C.PopupMenu({{"name", "n"}}, {a + "", "b"})}) &&
        Same({C.PopupMenu(N, tTexts{a, b, c}), C.PopupMenu(N, {a, b, c}), C.PopupMenu(N, {"a", p, c})}) &&
        Same({C.PopupMenu({}, PLAIN), C.PopupMenu({}, {{a, {}}, {b, {}}}), C.PopupMenu({}, {{"a", {}}, {"b", {}}})}) &&
        Same(
            {C.PopupMenu(N, tMap{{a, {}}}), C.PopupMenu(N, {{"a", {}}}), C.PopupMenu(N, {{a, tMap::mapped_type()}})}) &&
        Same({C.PopupMenu(N, tMap{{a, V}, {b, {}}, {c, V}}),
              C.PopupMenu(N, {{a, V}, {b, {}}, {"c", {{"value", "1"}}}})}) &&
        Same({C.ScrollList(2, N, TWO), C.ScrollList(2, N, {a, b}), C.ScrollList(2, N, {"a", b})}) &&
        Same({C.ScrollList(2, {}, PLAIN), C.ScrollList(2, {}, {{a, {}}, {"b", {}}})}) &&
        Same({C.ScrollList(N, TWO, 2), C.ScrollList(N, {a, b}, 2), C.ScrollList(N, {"a", "b"}, 2)}) &&
        Same({C.DropDownList(N, TWO), C.DropDownList(N, {a, b}), C.DropDownList(N, {"a", "b"})}) &&
        Same({C.CheckBoxGroup(N, TWO), C.CheckBoxGroup(N, {a, b}), C.CheckBoxGroup(N, {"a", "b"})}) &&
        Same({C.Tr(N, TWO), C.Tr(N, {a, b}), C.Tr(N, {"a", "b"}), C.Tr(N, {a, p})}) &&
        Same({C.Td(N, tTexts{a}), C.Td(N, {a}), C.Td(N, {"a"}), C.Td(N, a), C.Td(N, "a")});
    return l_b_good ? 0 : 1;
}
