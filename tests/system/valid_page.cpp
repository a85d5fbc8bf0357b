// Prints every generator whose markup is valid, at the XHTML level that the argument gives.
#include <cgilib.h>
#include <cstdlib>

struct sPage : cCGI
{
    using cCGI::cCGI;
    const tAttributes N = {{"name", "n"}};
    const tAttributes CHOSEN = {{"DEFAULT", "a"}, {"name", "n"}};
    const tOptions OPTIONS = {{"a", {{"value", "1"}}}, {"b", {{"selected", "selected"}}}};
    const tStrings ITEMS = {Option({{"value", "1"}}, "a"), Option({}, "b")};
    const std::string CONTROLS = Button(N, "v") + CheckBox(N) + DefaultsButton(N) + FileUpload(N) + Hidden(N, "v") +
                                 ImgButton({{"alt", "a"}}) + Password(N) + RadioButton(N) + Submit(N, "v") +
                                 Text(N, "v") + TextArea(N, "t", 2, 20) + PopupMenu(CHOSEN, {"a", "b"}) +
                                 PopupMenu(N, OPTIONS) + ScrollList(2, CHOSEN, {"a", "b"}) + ScrollList(2, N, OPTIONS) +
                                 DropDownList(N, ITEMS) + ScrollList(N, ITEMS, 2);
    const std::string TEXT = A({{"href", "/"}}, "a") + Img({{"alt", "a"}}, "a.png") + Br(2) + Span({}, "s") +
                             Span({}, "") + DecorateText(eDISPLAY_ACRONYM, "a") + DecorateText(eDISPLAY_H6, "h");
    const std::string TABLES = Table({{"border", "1"}}, {Tr({}, Td({}, {"a", ""})), Tr({}, {Td({}, "b")})}) +
                               Table({}, Tr({{"align", "left"}}, Td({}, "d")));
    const std::string LOOSE = Font({{"color", "red"}}, "f") + Script({}, "f();\n") + DecorateText(eDISPLAY_U, "u");

    void Print(bool a_b_strict)
    {
        BeginHtml("Valid", {"id=\"top\""}, {Meta({{"content", "c"}}), Link({{"href", "a.css"}})});
        BeginForm({{"action", "/"}, {"method", "post"}});
        DispText(Div({{"class", "c"}}, CONTROLS + TEXT) + Hr({}) + TABLES);
        EndForm();
        DispLine(Form({{"action", "/"}}, Div({}, "")) + (a_b_strict ? "" : LOOSE));
        EndHtml();
    }
};

int main(int, char* a_p_arguments[])
{
    const auto l_e_level = static_cast<cCGI::eCompliance>(std::atoi(a_p_arguments[1]));
    sPage(l_e_level).Print(l_e_level == cCGI::eXHTML_1_0_STRICT);
}
