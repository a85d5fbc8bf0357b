#ifndef MIRROR_H
#define MIRROR_H

#include <memory>
#include <pugixml.hpp>
#include <tinyxml.h>

namespace TinyXPath
{

/// A pugixml copy of a TinyXML tree, node for node, on which XPath can be evaluated.
///
/// Elements, attributes, texts (including CDATA), comments and processing instructions become their
/// counterparts. Whatever else TinyXML loads (the declaration; what it calls unknown, as a DOCTYPE)
/// becomes an empty DOCTYPE, which only node() matches, or inside an element, where pugixml accepts
/// none, an empty processing instruction without a name.
///
/// The tree is copied and walked without recursion, so its depth costs no stack.
class cMirror
{
public:
    /// The mirror of the tree that contains a_c_node: the one returned last if it is of that tree
    /// and still in use, otherwise a new one. Its user keeps the tree as it is; this is why the
    /// address of the tree's top node identifies it. Throws std::bad_alloc.
    static std::shared_ptr<const cMirror> Of(const TiXmlNode& a_c_node);

    /// Copies the tree rooted at a_c_top. Throws std::bad_alloc.
    explicit cMirror(const TiXmlNode& a_c_top);

    /// The counterpart of a node of the tree.
    pugi::xml_node Counterpart(const TiXmlNode& a_c_node) const;

    /// The node of the tree whose counterpart is a_c_node. A top node that is not a document also
    /// counts as the original of the mirror's document.
    const TiXmlNode* Original(pugi::xml_node a_c_node) const;

    /// The first node, in document order, of a set of nodes of the mirror; a null node if the set
    /// is empty. Sorts at most once, even if the set is not sorted. Throws std::bad_alloc.
    pugi::xpath_node First(const pugi::xpath_node_set& a_c_nodes) const;

private:
    const TiXmlNode* m_p_top;
    pugi::xml_document m_c_tree;
    pugi::xml_node m_c_top; // counterpart of m_p_top
};

} // namespace TinyXPath

#endif
