#ifndef XPATH_PROCESSOR_H
#define XPATH_PROCESSOR_H

#include <memory>
#include <string>
#include <tinyxml.h>

namespace TinyXPath
{

/// Evaluates one XPath 1.0 expression on a TinyXML tree.
///
/// The interface is the part of the TinyXPath library's that the handler calls. Nodes are selected
/// according to XPath 1.0 from the tree as TinyXML loaded it:
///   - names are compared as written, prefix included; namespace declarations are not attributes;
///   - every text and every CDATA section is a separate text node;
///   - node() also matches the declaration, a DOCTYPE and whatever else TinyXML calls unknown;
///     inside an element, where XML allows none of them, so does processing-instruction();
///   - a processing instruction whose name begins with "xml" counts as a declaration.
/// The engine differs from XPath 1.0 in that
///   - string-length(), substring() and translate() work on bytes;
///   - a relational comparison of a node set with a boolean compares numbers;
///   - lang() is false for an attribute;
///   - id() and the namespace axis select nothing, and an expression with a variable does not
///     parse;
///   - an expression of more than about a thousand operators, steps and predicates does not parse:
///     512 comparisons joined by "or" are too many.
///
/// Anything that cannot be computed (an expression that does not parse, no starting node) has an
/// empty result. Every operation may throw std::bad_alloc, and nothing else: running out of memory
/// must not look like an empty result. All memory comes from operator new, so a new-handler that
/// ends the process spares it the rest of an evaluation that can no longer have a result.
///
/// Evaluation needs a copy of the tree. The first processor that evaluates makes it, and the others
/// on that tree share it as long as one of them lives: keep one to evaluate many expressions. If
/// processors on several trees take turns, only those on the latest tree share its copy.
///
/// While a processor exists, its tree must not be edited, reloaded or destroyed. Not thread-safe.
class xpath_processor
{
public:
    /// a_p_node is the starting node; if it is null, all results are empty. The null-terminated
    /// expression is copied.
    xpath_processor(const TiXmlNode* a_p_node, const char* a_p_expression);
    ~xpath_processor();
    xpath_processor(const xpath_processor&) = delete;
    xpath_processor& operator=(const xpath_processor&) = delete;

    /// The number of nodes that the expression selects; also 0 if its result is a number, a boolean
    /// or a string. Only the first call evaluates.
    unsigned u_compute_xpath_node_set();

    /// The member of the node set at the given index, in document order; null for an attribute, for
    /// an index past the end, and before u_compute_xpath_node_set().
    TiXmlNode* XNp_get_xpath_node(unsigned a_u_index);

    /// The result of the expression, converted as by string(): for a node set, the string value of
    /// its first member in document order.
    std::string S_compute_xpath();

private:
    struct sEvaluation;
    std::unique_ptr<sEvaluation> m_p_evaluation; // null if there is nothing to evaluate
};

} // namespace TinyXPath

#endif
