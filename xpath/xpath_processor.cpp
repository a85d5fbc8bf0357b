#include "xpath_processor.h"

#include <cstring>
#include <new>
#include <optional>
#include <string_view>

#include "mirror.h"

namespace TinyXPath
{

namespace
{

constexpr std::string_view PI_TEST = "processing-instruction";
constexpr std::string_view WHITE_SPACE = " \t\r\n";

// The length of the empty pair of parentheses that the text begins with, including white space
// before and inside it; 0 if it begins with anything else.
std::size_t EmptyParenthesesLength(std::string_view a_s_text)
{
    const std::size_t l_u_open = a_s_text.find_first_not_of(WHITE_SPACE);
    if (l_u_open == std::string_view::npos || a_s_text[l_u_open] != '(') {
        return 0;
    }
    const std::size_t l_u_close = a_s_text.find_first_not_of(WHITE_SPACE, l_u_open + 1);
    return l_u_close != std::string_view::npos && a_s_text[l_u_close] == ')' ? l_u_close + 1 : 0;
}

// A mirror holds processing instructions only in place of nodes that XPath must not treat as such.
// They have no name, so a test that asks for a name, even an empty one, does not match them. A
// longer name that ends in the word does not parse before parentheses, whatever they hold.
std::string HideStandIns(std::string_view a_s_expression)
{
    if (a_s_expression.find(PI_TEST) == std::string_view::npos) {
        return std::string(a_s_expression);
    }
    std::string l_s_hidden;
    char l_i_quote = '\0'; // the opening quote of the current literal
    while (!a_s_expression.empty()) {
        const char l_i_byte = a_s_expression[0];
        if (l_i_quote == '\0' && a_s_expression.substr(0, PI_TEST.size()) == PI_TEST) {
            l_s_hidden += PI_TEST;
            a_s_expression.remove_prefix(PI_TEST.size());
            const std::size_t l_u_empty = EmptyParenthesesLength(a_s_expression);
            l_s_hidden += l_u_empty == 0 ? "" : "('')";
            a_s_expression.remove_prefix(l_u_empty);
            continue;
        }
        if (l_i_quote == l_i_byte) {
            l_i_quote = '\0';
        } else if (l_i_quote == '\0' && (l_i_byte == '"' || l_i_byte == '\'')) {
            l_i_quote = l_i_byte;
        }
        l_s_hidden += l_i_byte;
        a_s_expression.remove_prefix(1);
    }
    return l_s_hidden;
}

// The engine gets its memory from operator new, which calls the program's new-handler when memory
// runs out; the engine itself would carry on and report it only at the end. No exception may pass
// through the engine, hence std::nothrow.
void* Allocate(std::size_t a_u_size)
{
    return ::operator new(a_u_size, std::nothrow);
}
void Release(void* a_p_block)
{
    ::operator delete(a_p_block);
}

} // namespace

struct xpath_processor::sEvaluation
{
    const TiXmlNode* m_p_node = nullptr;
    std::string m_s_expression;

    // Set by Prepare(); no query afterwards means that the expression does not parse.
    bool m_b_prepared = false;
    std::optional<pugi::xpath_query> m_c_query;
    std::shared_ptr<const cMirror> m_p_mirror;
    pugi::xml_node m_c_context;

    bool m_b_computed = false;
    pugi::xpath_node_set m_c_nodes;
    pugi::xpath_node m_c_first; // in document order

    // Whether there is a query to evaluate. Throws std::bad_alloc.
    bool Prepare();
    pugi::xpath_node Member(unsigned a_u_index);
};

bool xpath_processor::sEvaluation::Prepare()
{
    if (m_b_prepared) {
        return m_c_query.has_value();
    }
    pugi::set_memory_management_functions(Allocate, Release);
    try {
        m_c_query.emplace(HideStandIns(m_s_expression).c_str());
        m_p_mirror = cMirror::Of(*m_p_node);
        m_c_context = m_p_mirror->Counterpart(*m_p_node);
    } catch (const pugi::xpath_exception&) {
        // The missing query marks the failure.
    }
    m_b_prepared = true;
    return m_c_query.has_value();
}

pugi::xpath_node xpath_processor::sEvaluation::Member(unsigned a_u_index)
{
    if (a_u_index == 0) {
        return m_c_first;
    }
    m_c_nodes.sort();
    return a_u_index < m_c_nodes.size() ? m_c_nodes[a_u_index] : pugi::xpath_node();
}

xpath_processor::xpath_processor(const TiXmlNode* a_p_node, const char* a_p_expression)
{
    if (a_p_node != nullptr && a_p_expression != nullptr) {
        m_p_evaluation = std::make_unique<sEvaluation>();
        m_p_evaluation->m_p_node = a_p_node;
        m_p_evaluation->m_s_expression = a_p_expression;
    }
}

xpath_processor::~xpath_processor() = default;

unsigned xpath_processor::u_compute_xpath_node_set()
{
    if (m_p_evaluation == nullptr) {
        return 0;
    }
    sEvaluation& l_c_this = *m_p_evaluation;
    if (!l_c_this.m_b_computed && l_c_this.Prepare() &&
        l_c_this.m_c_query->return_type() == pugi::xpath_type_node_set) {
        l_c_this.m_c_nodes = l_c_this.m_c_query->evaluate_node_set(l_c_this.m_c_context);
        l_c_this.m_c_first = l_c_this.m_p_mirror->First(l_c_this.m_c_nodes);
    }
    l_c_this.m_b_computed = true;
    return static_cast<unsigned>(l_c_this.m_c_nodes.size());
}

TiXmlNode* xpath_processor::XNp_get_xpath_node(unsigned a_u_index)
{
    if (m_p_evaluation == nullptr) {
        return nullptr;
    }
    const pugi::xml_node l_c_node = m_p_evaluation->Member(a_u_index).node();
    if (l_c_node.empty()) {
        return nullptr;
    }
    // The interface takes a const tree and returns its nodes as non-const, as their owner has them.
    return const_cast<TiXmlNode*>(m_p_evaluation->m_p_mirror->Original(l_c_node)); // NOLINT
}

std::string xpath_processor::S_compute_xpath()
{
    if (m_p_evaluation == nullptr) {
        return {};
    }
    sEvaluation& l_c_this = *m_p_evaluation;
    // An attribute that has already been selected need not be selected again.
    const pugi::xml_attribute l_c_first = l_c_this.m_c_first.attribute();
    if (!l_c_first.empty()) {
        return l_c_first.value();
    }
    return l_c_this.Prepare() ? l_c_this.m_c_query->evaluate_string(l_c_this.m_c_context)
                              : std::string();
}

void xpath_processor::forget_tree()
{
    cMirror::Forget();
}

} // namespace TinyXPath
