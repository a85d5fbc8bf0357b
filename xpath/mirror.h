#ifndef MIRROR_H
#define MIRROR_H

#include <memory>
#include <pugixml.hpp>
#include <tinyxml.h>

namespace TinyXPath
{

/// A pugixml copy of a TinyXML tree, node for node, over which XPath can be evaluated.
///
/// Elements, attributes, texts (CDATA included) and comments become their counterparts. What XPath
/// has no kind of its own for (the declaration; the unknown nodes: DOCTYPE, processing instruction)
/// becomes a nameless, empty processing instruction: the only kind of node that pugixml takes at
/// any depth and that nothing but node() and processing-instruction() matches.
///
/// The tree is copied and walked without recursion, so its depth costs no stack.
class cMirror
{
public:
    /// The mirror of the tree that a_c_node stands in. The mirror asked for last is kept and given
    /// again for as long as the tree is the same. To know the tree again, the top-level node above
    /// a_c_node is marked in its user data with its own address: a node loaded anew bears no mark,
    /// and a copy that of its source. Where an application keeps data of its own there, every call
    /// makes a new mirror instead.
    /// A node edited in place is not noticed: call Forget() after editing.
    /// Throws std::bad_alloc.
    static std::shared_ptr<const cMirror> Of(const TiXmlNode& a_c_node);

    /// Drops the mirror that is kept.
    static void Forget();

    /// Copies the tree below and including a_c_top. Throws std::bad_alloc.
    explicit cMirror(const TiXmlNode& a_c_top);

    /// The counterpart of a node of the tree.
    pugi::xml_node Counterpart(const TiXmlNode& a_c_node) const;

    /// The node of the tree whose counterpart a_c_node is. A top node that is no document counts
    /// as the original of the mirror's document too.
    const TiXmlNode* Original(pugi::xml_node a_c_node) const;

    /// The first in document order of a set of nodes of the mirror; a null node of an empty set. In
    /// linear time also where the set is not sorted. Throws std::bad_alloc.
    pugi::xpath_node First(const pugi::xpath_node_set& a_c_nodes) const;

private:
    const TiXmlNode* m_p_top;
    pugi::xml_document m_c_tree;
    pugi::xml_node m_c_top; // counterpart of m_p_top
};

} // namespace TinyXPath

#endif
