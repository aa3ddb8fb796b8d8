// lilv's nodes, freed by themselves.
#pragma once

#include <lilv/lilv.h>
#include <memory>
#include <string>

namespace mirelon::hosting {

struct FreeLv2Node {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Lv2Node = std::unique_ptr<LilvNode, FreeLv2Node>;

struct FreeLv2Nodes {
    void operator()(LilvNodes* nodes) const { lilv_nodes_free(nodes); }
};
using Lv2Nodes = std::unique_ptr<LilvNodes, FreeLv2Nodes>;

inline Lv2Node lv2Uri(LilvWorld* world, const char* uri) {
    return Lv2Node(lilv_new_uri(world, uri));
}

// Empty for null.
inline std::string lv2Text(const LilvNode* node) {
    const char* const text = node != nullptr ? lilv_node_as_string(node) : nullptr;
    return text != nullptr ? text : "";
}

} // namespace mirelon::hosting
