#include "mirror.h"

#include <algorithm>
#include <functional>
#include <new>
#include <vector>

namespace TinyXPath
{

namespace
{

void Require(bool a_b_stored)
{
    if (!a_b_stored) {
        throw std::bad_alloc();
    }
}

// With its length, pugixml need not measure the value first; before 1.13 it always does.
template<class tPart> void SetValue(tPart a_c_part, const std::string& a_s_value)
{
#if PUGIXML_VERSION >= 1130
    Require(a_c_part.set_value(a_s_value.c_str(), a_s_value.size()));
#else
    Require(a_c_part.set_value(a_s_value.c_str()));
#endif
}

pugi::xml_node AppendChild(pugi::xml_node a_c_parent, pugi::xml_node_type a_e_type)
{
    const pugi::xml_node l_c_child = a_c_parent.append_child(a_e_type);
    Require(!l_c_child.empty());
    return l_c_child;
}

pugi::xml_node AppendElement(pugi::xml_node a_c_parent, const TiXmlElement& a_c_element)
{
    pugi::xml_node l_c_copy = AppendChild(a_c_parent, pugi::node_element);
    Require(l_c_copy.set_name(a_c_element.Value()));
    for (const TiXmlAttribute* l_p_attribute = a_c_element.FirstAttribute();
         l_p_attribute != nullptr; l_p_attribute = l_p_attribute->Next()) {
        const char* const l_p_name = l_p_attribute->Name();
        const pugi::xml_attribute l_c_attribute = l_c_copy.append_attribute(l_p_name);
        // If there is no memory for its name, the attribute is added all the same, without a name.
        Require(*l_c_attribute.name() == *l_p_name);
        SetValue(l_c_attribute, l_p_attribute->ValueStr());
    }
    return l_c_copy;
}

pugi::xml_node AppendCharacters(pugi::xml_node a_c_parent, pugi::xml_node_type a_e_type,
                                const TiXmlNode& a_c_node)
{
    const pugi::xml_node l_c_copy = AppendChild(a_c_parent, a_e_type);
    SetValue(l_c_copy, a_c_node.ValueStr());
    return l_c_copy;
}

// TinyXML keeps a processing instruction whole, as "?name content?".
pugi::xml_node AppendInstruction(pugi::xml_node a_c_parent, const std::string& a_s_instruction)
{
    constexpr const char* WHITE_SPACE = " \t\r\n";
    std::string l_s_content = a_s_instruction.substr(1);
    if (!l_s_content.empty() && l_s_content.back() == '?') {
        l_s_content.pop_back();
    }
    const std::string l_s_name = l_s_content.substr(0, l_s_content.find_first_of(WHITE_SPACE));
    l_s_content.erase(0, l_s_content.find_first_not_of(WHITE_SPACE, l_s_name.size()));

    pugi::xml_node l_c_copy = AppendChild(a_c_parent, pugi::node_pi);
    Require(l_c_copy.set_name(l_s_name.c_str()));
    SetValue(l_c_copy, l_s_content);
    return l_c_copy;
}

pugi::xml_node AppendCopy(pugi::xml_node a_c_parent, const TiXmlNode& a_c_node)
{
    switch (a_c_node.Type()) {
    case TiXmlNode::TINYXML_ELEMENT:
        return AppendElement(a_c_parent, *a_c_node.ToElement());
    case TiXmlNode::TINYXML_TEXT:
        return AppendCharacters(a_c_parent, pugi::node_pcdata, a_c_node);
    case TiXmlNode::TINYXML_COMMENT:
        return AppendCharacters(a_c_parent, pugi::node_comment, a_c_node);
    default:
        if (a_c_node.ToUnknown() != nullptr && *a_c_node.Value() == '?') {
            return AppendInstruction(a_c_parent, a_c_node.ValueStr());
        }
        // Only node() matches a DOCTYPE, but pugixml accepts none inside an element.
        return AppendChild(a_c_parent, a_c_parent.type() == pugi::node_document ? pugi::node_doctype
                                                                                : pugi::node_pi);
    }
}

// A node of TinyXML's with pugixml's names for the ways from it.
struct sNode
{
    const TiXmlNode* m_p_node;

    sNode parent() const { return {m_p_node->Parent()}; }
    sNode previous_sibling() const { return {m_p_node->PreviousSibling()}; }
    sNode next_sibling() const { return {m_p_node->NextSibling()}; }
    sNode first_child() const { return {m_p_node->FirstChild()}; }
    explicit operator bool() const { return m_p_node != nullptr; }
    bool operator!=(sNode a_c_other) const { return m_p_node != a_c_other.m_p_node; }
};

// The node at the same place below a_c_otherTop as a_c_node below a_c_top, or a null node if the
// other tree has no such place.
template<class tNode, class tOther>
tOther SamePlace(tNode a_c_node, tNode a_c_top, tOther a_c_otherTop)
{
    std::vector<unsigned> l_v_places; // among its siblings, from the node upwards
    for (; a_c_node && a_c_node != a_c_top; a_c_node = a_c_node.parent()) {
        unsigned l_u_place = 0;
        for (tNode l_c_before = a_c_node.previous_sibling(); l_c_before;
             l_c_before = l_c_before.previous_sibling()) {
            ++l_u_place;
        }
        l_v_places.push_back(l_u_place);
    }

    tOther l_c_found = a_c_otherTop;
    for (auto l_c_place = l_v_places.rbegin(); l_c_place != l_v_places.rend() && l_c_found;
         ++l_c_place) {
        l_c_found = l_c_found.first_child();
        for (unsigned l_u_skip = *l_c_place; l_u_skip != 0 && l_c_found; --l_u_skip) {
            l_c_found = l_c_found.next_sibling();
        }
    }
    return l_c_found;
}

// The next node in document order, ignoring attributes; a null node at the end.
pugi::xml_node Following(pugi::xml_node a_c_node)
{
    if (!a_c_node.first_child().empty()) {
        return a_c_node.first_child();
    }
    while (!a_c_node.empty() && a_c_node.next_sibling().empty()) {
        a_c_node = a_c_node.parent();
    }
    return a_c_node.next_sibling();
}

// What all references to the same node or attribute have in common.
const void* Identity(const pugi::xpath_node& a_c_node)
{
    const void* const l_p_attribute = a_c_node.attribute().internal_object();
    return l_p_attribute != nullptr ? l_p_attribute : a_c_node.node().internal_object();
}

} // namespace

cMirror::cMirror(const TiXmlNode& a_c_top) : m_p_top(&a_c_top)
{
    const bool l_b_document = a_c_top.Type() == TiXmlNode::TINYXML_DOCUMENT;
    m_c_top = l_b_document ? m_c_tree : AppendCopy(m_c_tree, a_c_top);

    const TiXmlNode* l_p_node = &a_c_top;
    pugi::xml_node l_c_copy = m_c_top;
    while (true) {
        if (l_p_node->FirstChild() != nullptr) {
            l_p_node = l_p_node->FirstChild();
        } else {
            while (l_p_node != &a_c_top && l_p_node->NextSibling() == nullptr) {
                l_p_node = l_p_node->Parent();
                l_c_copy = l_c_copy.parent();
            }
            if (l_p_node == &a_c_top) {
                return;
            }
            l_p_node = l_p_node->NextSibling();
            l_c_copy = l_c_copy.parent();
        }
        l_c_copy = AppendCopy(l_c_copy, *l_p_node);
    }
}

std::shared_ptr<const cMirror> cMirror::Of(const TiXmlNode& a_c_node)
{
    const TiXmlNode* l_p_top = &a_c_node;
    while (l_p_top->Parent() != nullptr) {
        l_p_top = l_p_top->Parent();
    }

    static std::weak_ptr<const cMirror> s_p_latest;
    std::shared_ptr<const cMirror> l_p_mirror = s_p_latest.lock();
    if (l_p_mirror == nullptr || l_p_mirror->m_p_top != l_p_top) {
        l_p_mirror = std::make_shared<const cMirror>(*l_p_top);
        s_p_latest = l_p_mirror;
    }
    return l_p_mirror;
}

pugi::xml_node cMirror::Counterpart(const TiXmlNode& a_c_node) const
{
    return SamePlace(sNode{&a_c_node}, sNode{m_p_top}, m_c_top);
}

pugi::xpath_node cMirror::First(const pugi::xpath_node_set& a_c_nodes) const
{
    // The set itself compares unsorted members with each other, walking along the siblings for
    // every one of them. With many members, a single walk to the first one is cheaper.
    constexpr std::size_t FEW = 64;
    if (a_c_nodes.type() != pugi::xpath_node_set::type_unsorted || a_c_nodes.size() < FEW) {
        return a_c_nodes.first();
    }
    std::vector<const void*> l_v_members;
    l_v_members.reserve(a_c_nodes.size());
    for (const pugi::xpath_node& l_c_member : a_c_nodes) {
        l_v_members.push_back(Identity(l_c_member));
    }
    std::sort(l_v_members.begin(), l_v_members.end(), std::less<>());
    const auto l_c_isMember = [&l_v_members](const pugi::xpath_node& a_c_node) {
        return std::binary_search(l_v_members.begin(), l_v_members.end(), Identity(a_c_node),
                                  std::less<>());
    };
    for (pugi::xml_node l_c_node = m_c_tree; l_c_node; l_c_node = Following(l_c_node)) {
        if (l_c_isMember(l_c_node)) {
            return l_c_node;
        }
        for (const pugi::xml_attribute l_c_attribute : l_c_node.attributes()) {
            const pugi::xpath_node l_c_candidate(l_c_attribute, l_c_node);
            if (l_c_isMember(l_c_candidate)) {
                return l_c_candidate;
            }
        }
    }
    return {};
}

const TiXmlNode* cMirror::Original(pugi::xml_node a_c_node) const
{
    return a_c_node == m_c_tree ? m_p_top : SamePlace(a_c_node, m_c_top, sNode{m_p_top}).m_p_node;
}

} // namespace TinyXPath
