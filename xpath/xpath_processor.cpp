#include "xpath_processor.h"

#include <new>
#include <optional>

#include "mirror.h"

namespace TinyXPath
{

namespace
{

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
        m_c_query.emplace(m_s_expression.c_str());
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

} // namespace TinyXPath
