#ifndef XPATH_PROCESSOR_H
#define XPATH_PROCESSOR_H

#include <memory>
#include <string>
#include <tinyxml.h>

namespace TinyXPath
{

/// Evaluates one XPath 1.0 expression over a TinyXML tree.
///
/// The interface is that of the TinyXPath library, so that programs compile against either. What
/// is selected follows XPath 1.0 over the tree as TinyXML loaded it:
///   - names are compared as written, prefix included; namespace declarations are no attributes;
///   - every text and every CDATA section is a text node of its own;
///   - the declaration and unknown nodes (DOCTYPE, processing instruction) match node() only;
///   - positions and lengths in strings count bytes;
///   - variables, the namespace axis and id() are not available.
///
/// What cannot be computed (an expression that does not parse, no node to start from) gives the
/// empty result. Every operation may throw std::bad_alloc, and nothing else: a lack of memory must
/// not look like an empty result. All memory comes from operator new: a new-handler that ends the
/// process spares it the rest of an evaluation that can have no result any more.
///
/// The copy of the tree that evaluation needs is made once and shared by all processors over the
/// same tree, until the tree is loaded anew or copied. A tree that is edited in place, be it before
/// its first processor, has to be announced with forget_tree(). The tree must outlive its
/// processors. For one thread.
class xpath_processor
{
public:
    /// a_p_node is the node to start from; null gives a processor whose results are all empty. The
    /// zero-terminated expression is copied.
    xpath_processor(const TiXmlNode* a_p_node, const char* a_p_expression);
    ~xpath_processor();
    xpath_processor(const xpath_processor&) = delete;
    xpath_processor& operator=(const xpath_processor&) = delete;

    /// The number of nodes that the expression selects; 0 as well if its result is a number, a
    /// boolean or a string. Evaluates at the first call only.
    unsigned u_compute_xpath_node_set();

    /// The member at the given index of the node set, in document order; null for an attribute,
    /// for an index past the end, and before u_compute_xpath_node_set().
    TiXmlNode* XNp_get_xpath_node(unsigned a_u_index);

    /// The result of the expression, converted as by string(): of a node set the string value of
    /// its first member in document order.
    std::string S_compute_xpath();

    /// Drops what is known of the tree evaluated last; the next processor looks at it afresh.
    static void forget_tree();

private:
    struct sEvaluation;
    std::unique_ptr<sEvaluation> m_p_evaluation; // null where there is nothing to evaluate
};

} // namespace TinyXPath

#endif
